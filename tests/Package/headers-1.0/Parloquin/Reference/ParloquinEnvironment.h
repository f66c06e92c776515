#pragma once

/// \brief Which environment of the verification service the host means.
///
/// Carried with the options; the service has one address, so nothing branches on it yet.
/// \since 1.0
enum class ParloquinEnvironment {
    debug,
    prod,
};
