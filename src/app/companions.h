#pragma once

#include <windows.h>

namespace velm {

class CVelmFrame;

/// Brings the calculator to the front, starting it when it does not run, and hands it the current item's value.
void OpenCalculator(CVelmFrame& frame, WORD id);

/// Shows the manual in the system's help viewer.
void ShowHelp(CVelmFrame& frame, WORD id);

}  // namespace velm
