#pragma once

/// \brief Why a verification failed.
/// \since 1.0
enum class ParloquinError {
    /// The service answered, and the number is not verified.
    authorizationError,
    /// A request failed: no network, no answer, or one that cannot be read.
    serverError,
    /// A messaging app cannot be reached. Declared for hosts; nothing raises it.
    urlSchemeError,
};
