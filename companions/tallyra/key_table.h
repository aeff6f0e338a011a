#pragma once

#include <span>

#include "platform/text.h"

namespace velm {

/// Action of a keypad button.
enum class KeyAction { Insert, Backspace, Clear, Compute };

struct CalculatorKey {
    const char16_t* caption;
    KeyAction action;
    const char16_t* text;  ///< what Insert puts into the expression
};

constexpr int KEY_COLUMNS = 6;

/// The keypad, row by row from the top left, KEY_COLUMNS to a row.
std::span<const CalculatorKey> CalculatorKeys();

}  // namespace velm
