#pragma once

#include <windows.h>

namespace velm {

class CVelmFrame;

// What commands do that open a dialog.
void ShowAbout(CVelmFrame& frame, WORD id);
void OpenDataFile(CVelmFrame& frame, WORD id);
void MakeNewFile(CVelmFrame& frame, WORD id);
void EditFileProperties(CVelmFrame& frame, WORD id);
void AddUnit(CVelmFrame& frame, WORD id);
void EditUnit(CVelmFrame& frame, WORD id);
void EditConversions(CVelmFrame& frame, WORD id);
void EditOptions(CVelmFrame& frame, WORD id);
void ChooseShownUnits(CVelmFrame& frame, WORD id);

}  // namespace velm
