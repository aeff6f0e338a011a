#pragma once

#include <windows.h>

namespace velm {

// The converter sends the calculator a value as WM_COPYDATA to the window with this title.

inline constexpr const wchar_t* CALCULATOR_TITLE = L"Tallyra";

/// The code of the data, which is eight bytes: a double.
constexpr ULONG_PTR COPYDATA_VALUE = 1;

}  // namespace velm
