#pragma once

#include <windows.h>

// What the handheld's shell library gives, under the calls' own names. On the handheld this folder falls away.

/// Where the soft input panel is wanted. A desktop has a keyboard: the state is kept, and nothing is shown.
enum SIPSTATE { SIP_UP = 0, SIP_DOWN, SIP_FORCEDOWN, SIP_UNCHANGED };

/// Keeps the state for the top-level window that `window` belongs to. SIP_UNCHANGED leaves it.
BOOL SHSipPreference(HWND window, SIPSTATE state);

/// The state last asked for; SIP_DOWN before the first.
SIPSTATE SHGetSipPreference(HWND window);

/// Registers the shell's controls: the command bar, and "SIPPREF", which a dialog carries hidden and which raises
/// the soft input panel while one of the dialog's edit boxes has the focus.
BOOL SHInitExtraControls();

constexpr UINT SHIDIM_FLAGS = 1;
constexpr DWORD SHIDIF_SIZEDLGFULLSCREEN = 4;

struct SHINITDLGINFO {
    DWORD dwMask;
    HWND hDlg;
    DWORD dwFlags;
};

/// Lets a dialog cover its owner's client area, and follow it, for as long as both live.
BOOL SHInitDialog(SHINITDLGINFO* info);

struct SHMENUBARINFO {
    DWORD cbSize;
    HWND hwndParent;
    UINT nToolBarId;  ///< a menu resource: the bar gets a button for each entry of its first level
    HINSTANCE hInstRes;
    int nScale;   ///< pixels of this screen to one of an ordinary screen; a handheld's shell asks its own screen
    HWND hwndMB;  ///< out: the command bar, a child of hwndParent along its bottom
};

/// Makes a command bar. False when the menu is missing or a window cannot be made.
BOOL SHCreateMenuBar(SHMENUBARINFO* info);

/// Results of a gesture.
constexpr DWORD GN_CONTEXTMENU = 1000;
constexpr DWORD SHRG_RETURNCMD = 1;

struct SHRGINFO {
    DWORD cbSize;
    HWND hwndClient;
    POINT ptDown;  ///< where the pen went down, in client coordinates
    DWORD dwFlags;
};

/// To be called when the pen went down: waits until it was held in place for the shell's time (GN_CONTEXTMENU), or
/// was moved or lifted (0). What ends the wait is left in the queue.
DWORD SHRecognizeGesture(const SHRGINFO* info);
