#pragma once

#include <windows.h>

// The handheld's shell library under its own names. On the handheld this folder is not needed.

/// Requested state of the soft input panel. On a desktop the state is stored and nothing is shown.
enum SIPSTATE { SIP_UP = 0, SIP_DOWN, SIP_FORCEDOWN, SIP_UNCHANGED };

/// Stores the state for the top-level window of `window`. SIP_UNCHANGED has no effect.
BOOL SHSipPreference(HWND window, SIPSTATE state);

/// The last requested state; initially SIP_DOWN.
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

/// Makes a dialog cover its owner's client area and follow it while both exist.
BOOL SHInitDialog(SHINITDLGINFO* info);

struct SHMENUBARINFO {
    DWORD cbSize;
    HWND hwndParent;
    UINT nToolBarId;  ///< a menu resource: the bar gets a button for each entry of its first level
    HINSTANCE hInstRes;
    int nScale;   ///< display scale; a handheld's shell asks the screen
    HWND hwndMB;  ///< out: the command bar, a child of hwndParent along its bottom
};

/// Creates a command bar. False when the menu is missing or a window cannot be created.
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

/// Call on pen down: waits until the pen has been held in place for the shell's time (GN_CONTEXTMENU), or is moved or
/// lifted (0). The message that ends the wait stays in the queue.
DWORD SHRecognizeGesture(const SHRGINFO* info);
