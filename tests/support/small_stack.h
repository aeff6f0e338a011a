#pragma once

#include <cstddef>
#include <functional>

/// Runs `work` on a thread of its own with a stack of that many bytes and waits for its end. False when the system
/// gives no such thread.
bool RunOnStackOf(std::size_t bytes, std::function<void()> work);
