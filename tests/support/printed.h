#pragma once

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

namespace tarnex::test {

/// What a call writes on standard output.
template <class Call>
std::string printed(Call&& call) {
    testing::internal::CaptureStdout();
    call();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

} // namespace tarnex::test
