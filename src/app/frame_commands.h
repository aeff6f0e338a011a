#pragma once

#include <windows.h>

namespace velm {

class CVelmFrame;

// When commands can be run.
bool Always(const CVelmFrame& frame);
bool HasDocument(const CVelmFrame& frame);
bool HasCurrentItem(const CVelmFrame& frame);
bool IsConversionFile(const CVelmFrame& frame);

/// The current item holds a valid value.
bool HasCurrentValue(const CVelmFrame& frame);

/// The current item is an input, and the clipboard holds text.
bool CanPaste(const CVelmFrame& frame);

// What commands do that need no dialog.
void ExitProgram(CVelmFrame& frame, WORD id);
void Calculate(CVelmFrame& frame, WORD id);
void RemoveFromList(CVelmFrame& frame, WORD id);
void DeleteUnit(CVelmFrame& frame, WORD id);
void SaveEdits(CVelmFrame& frame, WORD id);
void CopyValue(CVelmFrame& frame, WORD id);
void PasteText(CVelmFrame& frame, WORD id);
void ToggleRowSize(CVelmFrame& frame, WORD id);
void ShowFormats(CVelmFrame& frame, WORD id);
void SelectQuickFile(CVelmFrame& frame, WORD id);
void ShowQuickFileMenu(CVelmFrame& frame, WORD id);

}  // namespace velm
