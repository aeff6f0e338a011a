#pragma once

#include <windows.h>

namespace velm {

// How the converter hands the calculator a value: it finds its window by the title and sends it WM_COPYDATA.

inline constexpr const wchar_t* CALCULATOR_TITLE = L"Tallyra";

/// The code of the data, which is eight bytes: a double.
constexpr ULONG_PTR COPYDATA_VALUE = 1;

}  // namespace velm
