#pragma once

#include <windows.h>

// The window class and messages of "htmlview.dll", as on the handheld.

namespace velm {

constexpr wchar_t DISPLAY_CLASS[] = L"DISPLAYCLASS";

/// The library's initialization entry, exported at this ordinal: BOOL InitHTMLControl(HINSTANCE program). It must
/// succeed before a display window is created; further calls are harmless.
constexpr WORD INIT_HTML_CONTROL_ORDINAL = 1;
using InitHtmlControl = BOOL(WINAPI*)(HINSTANCE);

/// Appends text to the page. wParam: nonzero for plain text, zero for HTML; lParam: a NUL-ended text.
constexpr UINT DTM_ADDTEXT = WM_USER + 101;   ///< lParam: const char*, Windows code page
constexpr UINT DTM_ADDTEXTW = WM_USER + 102;  ///< lParam: const wchar_t*

/// All text has been added: lays the page out and shows its beginning.
constexpr UINT DTM_ENDOFSOURCE = WM_USER + 104;

/// Scrolls to a named anchor. lParam: const wchar_t*, without "#". Returns nonzero when the page has it.
constexpr UINT DTM_ANCHORW = WM_USER + 106;

/// wParam: nonzero shrinks tables to the window's width.
constexpr UINT DTM_ENABLESHRINK = WM_USER + 107;

constexpr UINT DTM_SELECTALL = WM_USER + 110;

/// Clears the page.
constexpr UINT DTM_CLEAR = WM_USER + 113;

/// Sent to the parent as WM_NOTIFY when a link out of the page is tapped.
constexpr UINT NM_HOTSPOT = 0U - 1001U;
struct HtmlHotspot {
    NMHDR header;
    const wchar_t* target;
};

}  // namespace velm
