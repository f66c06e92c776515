#pragma once

enum class ParloquinEnvironment {
    debug,
    prod,
};
