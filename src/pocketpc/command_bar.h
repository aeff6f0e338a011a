#pragma once

#include <windows.h>

#include <commctrl.h>

#include <span>

// The handheld's command bar: menus and tool buttons in one row along the bottom of its parent window. Commands go to
// the parent as WM_COMMAND; menus open upward and are initialized by the parent (WM_INITMENUPOPUP).

/// Height of the bar in pixels.
int CommandBar_Height(HWND bar);

/// The parent's client area above the bar; all of it without a bar.
RECT CommandBar_AreaAbove(HWND parent, HWND bar);

/// Loads a strip of square images, `size` pixels each; magenta is transparent. False on failure.
bool CommandBar_AddBitmap(HWND bar, HINSTANCE instance, UINT bitmap, int size);

/// Appends a button for each command, with the images in their order; a command of 0 is a separator.
bool CommandBar_AddButtons(HWND bar, std::span<const WORD> commands);

/// The tooltips of all buttons from left to right, menu titles included, separators excluded. The texts are not copied
/// and outlive the bar.
void CommandBar_AddToolTips(HWND bar, std::span<const wchar_t* const> texts);

/// Enables or disables a button.
void CommandBar_EnableButton(HWND bar, WORD command, bool on);

/// Opens the menu or presses the button with this mnemonic; the first menu for 0. False when there is none.
bool CommandBar_OpenMenu(HWND bar, wchar_t letter);

/// The menu that the bar was created from.
HMENU CommandBar_GetMenu(HWND bar);
