#pragma once

#include <windows.h>

#include <commctrl.h>

#include <span>

// The handheld's command bar: menus and tool buttons in one row along the bottom of its parent window, which it
// follows. Its commands go to the parent as WM_COMMAND, its menus open upwards and are initialized by the parent
// (WM_INITMENUPOPUP).

/// Pixels that the bar takes from the bottom of its parent.
int CommandBar_Height(HWND bar);

/// What is left of the parent's client area above the bar; all of it without a bar.
RECT CommandBar_AreaAbove(HWND parent, HWND bar);

/// Takes a strip of square images, `size` pixels each; magenta is transparent. False when it cannot be loaded.
bool CommandBar_AddBitmap(HWND bar, HINSTANCE instance, UINT bitmap, int size);

/// Appends a button for each command, with the images in their order; a command of 0 is a separator.
bool CommandBar_AddButtons(HWND bar, std::span<const WORD> commands);

/// The tooltips of all buttons from the left, menu titles included, separators not. The texts are not copied and
/// outlive the bar.
void CommandBar_AddToolTips(HWND bar, std::span<const wchar_t* const> texts);

/// Enables or disables a button; nothing happens when it is so already.
void CommandBar_EnableButton(HWND bar, WORD command, bool on);

/// Opens the menu, or presses the button, whose title has that letter underlined; the first menu for 0.
/// False when there is none.
bool CommandBar_OpenMenu(HWND bar, wchar_t letter);

/// The menu that the bar was made of.
HMENU CommandBar_GetMenu(HWND bar);
