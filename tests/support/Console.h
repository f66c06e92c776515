#pragma once

#include <gtest/gtest.h>

#include <string>

/// \return what the call prints. Nothing is expected within it: a failure would be printed as well.
template <class Call> std::string printedBy(const Call &call)
{
    testing::internal::CaptureStdout();
    call();
    return testing::internal::GetCapturedStdout();
}
