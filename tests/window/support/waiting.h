#pragma once

#include <chrono>
#include <functional>

namespace velm::test {

/// As long as a test waits for something that must come; only a failing test ever waits this long.
constexpr std::chrono::milliseconds PATIENCE{5000};

/// Asks again and again until the condition holds; false when it does not hold in time.
bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds patience = PATIENCE);

}  // namespace velm::test
