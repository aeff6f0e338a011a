#pragma once

#include <windows.h>

#include <span>

#include "ui/gdi.h"

namespace velm {

class CVelmFrame;

/// When a command's key works: anywhere in the frame, or only while no text is being edited there.
enum class KeyPlace { Anywhere, OutsideText };

/// A key of the desktop's keyboard. Key 0 is none.
struct CVelmCommandKey {
    WORD key = 0;
    BYTE modifiers = 0;  ///< FCONTROL, FSHIFT, FALT
    KeyPlace place = KeyPlace::Anywhere;
};

/// One command of the program, wherever it comes from: menu, toolbar, key, button or row menu.
struct CVelmCommand {
    WORD first;  ///< the identifiers from `first` to `last` are one command
    WORD last;
    bool (*enabled)(const CVelmFrame& frame);
    void (*run)(CVelmFrame& frame, WORD id);
    CVelmCommandKey key;
    bool whileBusy;  ///< runs also while a dialog or message box is open over the frame
};

/// A button of the toolbar. Command 0 is a separator.
struct CVelmTool {
    WORD command = 0;
    UINT toolTip = 0;  ///< a text of the string table
};

/// The toolbar from the left.
std::span<const CVelmTool> Toolbar();

/// Null for an unknown identifier.
const CVelmCommand* FindCommand(WORD id);

/// Whether the command exists and can be run now.
bool IsCommandEnabled(const CVelmFrame& frame, WORD id);

/// Runs an enabled command; false for any other, and for most while a dialog or message box is open.
bool RunCommand(CVelmFrame& frame, WORD id);

/// The keys of all commands of that place.
CVelmAccelerators MakeAccelerators(KeyPlace place);

}  // namespace velm
