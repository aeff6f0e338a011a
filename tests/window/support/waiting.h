#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace velm::test {

/// As long as a test waits for something that must come; only a failing test ever waits this long.
constexpr std::chrono::milliseconds PATIENCE{20000};

/// Asks again and again until the answer is true, a window, anything but nothing; gives back the last answer.
template <typename Ask>
auto WaitUntil(Ask ask, std::chrono::milliseconds patience = PATIENCE) {
    const auto end = std::chrono::steady_clock::now() + patience;
    auto answer = ask();
    while (!answer && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        answer = ask();
    }
    return answer;
}

/// The answer as soon as it is the expected one, or the last one.
template <typename Ask, typename Expected>
auto Becomes(Ask ask, const Expected& expected) {
    WaitUntil([&] { return ask() == expected; });
    return ask();
}

#define EXPECT_BECOMES(actual, expected) EXPECT_EQ(velm::test::Becomes([&] { return (actual); }, expected), expected)

}  // namespace velm::test
