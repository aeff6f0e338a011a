#pragma once

#include <windows.h>

namespace velm {

class CVelmFrame;

// Conditions for commands.
bool Always(const CVelmFrame& frame);
bool HasDocument(const CVelmFrame& frame);
bool HasCurrentItem(const CVelmFrame& frame);
bool IsConversionFile(const CVelmFrame& frame);

/// The current item holds a valid value.
bool HasCurrentValue(const CVelmFrame& frame);

/// The current item is an input, and the clipboard holds text.
bool CanPaste(const CVelmFrame& frame);

// Commands without a dialog.
void ExitProgram(CVelmFrame& frame, WORD id);
void Calculate(CVelmFrame& frame, WORD id);
void RemoveFromList(CVelmFrame& frame, WORD id);
void DeleteUnit(CVelmFrame& frame, WORD id);
void SaveFormats(CVelmFrame& frame, WORD id);
void CopyValue(CVelmFrame& frame, WORD id);
void PasteText(CVelmFrame& frame, WORD id);
void ToggleRowSize(CVelmFrame& frame, WORD id);
void ShowFormats(CVelmFrame& frame, WORD id);
void SelectQuickFile(CVelmFrame& frame, WORD id);
void ShowQuickFileMenu(CVelmFrame& frame, WORD id);

// Commands that open a dialog.
void ShowAbout(CVelmFrame& frame, WORD id);
void OpenDataFile(CVelmFrame& frame, WORD id);
void MakeNewFile(CVelmFrame& frame, WORD id);
void EditFileProperties(CVelmFrame& frame, WORD id);
void AddUnit(CVelmFrame& frame, WORD id);
void EditUnit(CVelmFrame& frame, WORD id);
void EditConversions(CVelmFrame& frame, WORD id);
void EditOptions(CVelmFrame& frame, WORD id);
void ChooseShownUnits(CVelmFrame& frame, WORD id);

/// Opens the file that a question leads to, with its unit selected and its value entered.
void FindByQuestion(CVelmFrame& frame, WORD id);

/// Downloads updates with a line of progress in the title button until Escape is pressed, merges what came for the
/// current file, and reports the result.
void DownloadUpdates(CVelmFrame& frame, WORD id);

/// Brings the calculator to the front, starting it if necessary, and sends it the current item's value.
void OpenCalculator(CVelmFrame& frame, WORD id);

/// Shows the manual in the system's help viewer.
void ShowHelp(CVelmFrame& frame, WORD id);

}  // namespace velm
