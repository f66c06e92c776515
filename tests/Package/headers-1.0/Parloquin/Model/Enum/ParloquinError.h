#pragma once

enum class ParloquinError {
    authorizationError,
    serverError,
    urlSchemeError,
};
