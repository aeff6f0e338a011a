#include "htmlview/display_control.h"

#include <commctrl.h>
#include <commdlg.h>
#include <richedit.h>

#include <algorithm>
#include <cstring>

#include "htmlview/rtf_writer.h"
#include "platform/wide_text_win32.h"
#include "ui/display_messages.h"
#include "ui/gdi.h"

namespace velm {

namespace {

constexpr int BODY_POINTS = 9;
constexpr int MARGIN_PIXELS = 4;
constexpr int TWIPS_PER_INCH = 1440;

int DotsPerInch(HWND window) {
    const CVelmWindowDc dc(window);
    return dc.Get() != nullptr ? std::max(GetDeviceCaps(dc.Get(), LOGPIXELSX), 1) : 96;
}

CVelmString TextOf(const wchar_t* text) {
    return text != nullptr ? FromWide(text) : CVelmString();
}

std::u16string FromAnsi(const char* text) {
    if (text == nullptr) {
        return {};
    }
    const int bytes = static_cast<int>(strlen(text));
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text, bytes, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text, bytes, wide.data(), static_cast<int>(wide.size()));
    return FromWide(wide);
}

std::u16string EscapePlainText(std::u16string_view text) {
    std::u16string html = u"<pre>";
    for (const char16_t unit : text) {
        if (unit == u'<') {
            html += u"&lt;";
        } else if (unit == u'&') {
            html += u"&amp;";
        } else {
            html += unit;
        }
    }
    return html + u"</pre>";
}

struct RtfSource {
    const std::string& rtf;
    std::size_t at = 0;
};

DWORD CALLBACK ReadRtf(DWORD_PTR cookie, LPBYTE buffer, LONG room, LONG* moved) {
    auto& source = *reinterpret_cast<RtfSource*>(cookie);
    const std::size_t count = std::min(source.rtf.size() - source.at, static_cast<std::size_t>(room));
    std::memcpy(buffer, source.rtf.data() + source.at, count);
    source.at += count;
    *moved = static_cast<LONG>(count);
    return 0;
}

/// The page is only read: in a dialog Enter, Escape and Tab are the dialog's, and getting the focus selects nothing.
LRESULT CALLBACK LeaveKeysToDialog(HWND text, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR) {
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(text, LeaveKeysToDialog, id);
    }
    const LRESULT result = DefSubclassProc(text, message, wParam, lParam);
    constexpr LRESULT TAKEN = DLGC_WANTALLKEYS | DLGC_WANTTAB | DLGC_HASSETSEL;
    return message == WM_GETDLGCODE ? result & ~TAKEN : result;
}

}  // namespace

bool HtmlDisplay::Register(HINSTANCE library) {
    // Never unloaded: the control's windows live as long as the program.
    static const HMODULE richText = LoadLibraryW(L"RICHED20.DLL");
    if (richText == nullptr) {
        return false;
    }
    WNDCLASSW windowClass = {};
    windowClass.style = CS_GLOBALCLASS;
    windowClass.lpfnWndProc = WindowProc;
    windowClass.hInstance = library;
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = DISPLAY_CLASS;
    return RegisterClassW(&windowClass) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

LRESULT CALLBACK HtmlDisplay::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* display = reinterpret_cast<HtmlDisplay*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_NCCREATE) {
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(new HtmlDisplay(window)));
        return DefWindowProcW(window, message, wParam, lParam);
    }
    if (display == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    const LRESULT result = display->Handle(message, wParam, lParam);
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        delete display;
    }
    return result;
}

LRESULT HtmlDisplay::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            return CreateText() ? 0 : -1;
        case WM_SIZE:
            Resize(LOWORD(lParam), HIWORD(lParam));
            return 0;
        case WM_SETFOCUS:
            SetFocus(text_);
            return 0;
        case WM_NOTIFY: {
            const auto* link = reinterpret_cast<const ENLINK*>(lParam);
            if (link->nmhdr.code == EN_LINK && link->msg == WM_LBUTTONUP) {
                Follow(link->chrg.cpMin);
            }
            return 0;
        }
        case WM_COPY:
            return SendMessageW(text_, WM_COPY, 0, 0);
        case WM_MOUSEWHEEL:
            return SendMessageW(text_, message, wParam, lParam);
        case DTM_ADDTEXT:
            AddText(FromAnsi(reinterpret_cast<const char*>(lParam)), wParam != 0);
            return 1;
        case DTM_ADDTEXTW:
            AddText(TextOf(reinterpret_cast<const wchar_t*>(lParam)), wParam != 0);
            return 1;
        case DTM_ENDOFSOURCE:
            ShowPage();
            return 1;
        case DTM_ANCHORW:
            return ScrollToAnchor(TextOf(reinterpret_cast<const wchar_t*>(lParam))) ? 1 : 0;
        case DTM_ENABLESHRINK:
            if (shrink_ != (wParam != 0)) {
                shrink_ = wParam != 0;
                if (shown_) {
                    ShowPage();
                }
            }
            return 1;
        case DTM_SELECTALL:
            return SendMessageW(text_, EM_SETSEL, 0, -1);
        case DTM_CLEAR:
            Clear();
            return 1;
        default:
            return DefWindowProcW(window_, message, wParam, lParam);
    }
}

bool HtmlDisplay::CreateText() {
    text_ = CreateWindowExW(0, L"RichEdit20W", L"",
                            WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_TABSTOP | ES_MULTILINE | ES_READONLY | ES_NOHIDESEL,
                            0, 0, 0, 0, window_, nullptr, nullptr, nullptr);
    if (text_ == nullptr) {
        return false;
    }
    SetWindowSubclass(text_, LeaveKeysToDialog, 0, 0);
    SendMessageW(text_, EM_SETEVENTMASK, 0, ENM_LINK);
    SendMessageW(text_, EM_SETBKGNDCOLOR, 1, 0);
    SendMessageW(text_, EM_EXLIMITTEXT, 0, 0x7FFFFFF);
    SendMessageW(text_, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(MARGIN_PIXELS, MARGIN_PIXELS));
    return true;
}

void HtmlDisplay::AddText(std::u16string text, bool plain) {
    source_ += plain ? EscapePlainText(text) : text;
}

void HtmlDisplay::Clear() {
    source_.clear();
    document_ = {};
    links_.clear();
    anchors_.clear();
    shown_ = false;
    SetWindowTextW(text_, L"");
}

int HtmlDisplay::RoomInTwips() const {
    const RECT room = ClientArea(window_);
    const int pixels = room.right - GetSystemMetrics(SM_CXVSCROLL) - 4 * MARGIN_PIXELS;
    return std::max(pixels, 40) * TWIPS_PER_INCH / DotsPerInch(window_);
}

void HtmlDisplay::ShowPage() {
    document_ = ReadHtml(source_);
    RtfLayout layout;
    layout.fontHalfPoints = BODY_POINTS * 2;
    layout.widthTwips = RoomInTwips();
    layout.shrinkToFit = shrink_;
    const std::string rtf = WriteRtf(document_, layout);

    SendMessageW(text_, WM_SETREDRAW, FALSE, 0);
    RtfSource source{rtf};
    EDITSTREAM stream = {};
    stream.dwCookie = reinterpret_cast<DWORD_PTR>(&source);
    stream.pfnCallback = ReadRtf;
    SendMessageW(text_, EM_STREAMIN, SF_RTF, reinterpret_cast<LPARAM>(&stream));
    PlaceMarks();
    SendMessageW(text_, EM_SETSEL, 0, 0);
    SendMessageW(text_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(text_, nullptr, TRUE);

    shown_ = true;
    laidOutWidth_ = layout.widthTwips;
}

bool HtmlDisplay::TakeMark(char16_t mark, LONG from, LONG& at) {
    const wchar_t wanted[] = {static_cast<wchar_t>(mark), L'\0'};
    FINDTEXTEXW find = {};
    find.chrg = {from, -1};
    find.lpstrText = wanted;
    if (SendMessageW(text_, EM_FINDTEXTEXW, FR_DOWN | FR_MATCHCASE, reinterpret_cast<LPARAM>(&find)) < 0) {
        return false;
    }
    at = find.chrgText.cpMin;
    SendMessageW(text_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&find.chrgText));
    SendMessageW(text_, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(L""));
    return true;
}

void HtmlDisplay::PlaceMarks() {
    // The marks are taken out in the order of the page, so that a place found is not moved by the ones behind it.
    // Anchors go first: the places of links are then final.
    anchors_.clear();
    links_.clear();
    LONG at = 0;
    while (anchors_.size() < document_.anchors.size() && TakeMark(ANCHOR, at, at)) {
        anchors_.push_back(at);
    }
    at = 0;
    while (links_.size() < document_.links.size()) {
        LONG first = 0;
        LONG last = 0;
        if (!TakeMark(LINK_START, at, first) || !TakeMark(LINK_END, first, last)) {
            break;
        }
        for (LONG& anchor : anchors_) {
            anchor -= (anchor > first ? 1 : 0) + (anchor > last ? 1 : 0);
        }
        CHARRANGE range = {first, last};
        SendMessageW(text_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
        CHARFORMAT2W format = {};
        format.cbSize = sizeof format;
        format.dwMask = CFM_LINK;
        format.dwEffects = CFE_LINK;
        SendMessageW(text_, EM_SETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
        links_.push_back({first, last});
        at = last;
    }
}

bool HtmlDisplay::ScrollToAnchor(std::u16string_view name) {
    const auto found = std::find(document_.anchors.begin(), document_.anchors.end(), name);
    const auto index = static_cast<std::size_t>(found - document_.anchors.begin());
    if (index >= anchors_.size()) {
        return false;
    }
    ScrollTo(anchors_[index]);
    return true;
}

void HtmlDisplay::ScrollTo(LONG place) {
    CHARRANGE range = {place, place};
    SendMessageW(text_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
    // In pixels: lines are not all of one height, and a row of a table counts as several.
    POINTL distance = {};
    SendMessageW(text_, EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&distance), place);
    POINT scrolled = {};
    SendMessageW(text_, EM_GETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&scrolled));
    scrolled.y += distance.y;
    SendMessageW(text_, EM_SETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&scrolled));
}

void HtmlDisplay::Follow(LONG position) {
    const auto link = std::find_if(links_.begin(), links_.end(), [position](const Link& candidate) {
        return position >= candidate.first && position < candidate.last;
    });
    if (link == links_.end()) {
        return;
    }
    const std::u16string target = document_.links[static_cast<std::size_t>(link - links_.begin())];
    if (target.starts_with(u'#')) {
        ScrollToAnchor(std::u16string_view(target).substr(1));
        return;
    }
    HtmlHotspot hotspot = {};
    hotspot.header.hwndFrom = window_;
    hotspot.header.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(window_));
    hotspot.header.code = NM_HOTSPOT;
    hotspot.target = Wide(target);
    SendMessageW(GetParent(window_), WM_NOTIFY, hotspot.header.idFrom, reinterpret_cast<LPARAM>(&hotspot));
}

void HtmlDisplay::Resize(int width, int height) {
    const auto top = SendMessageW(text_, EM_GETFIRSTVISIBLELINE, 0, 0);
    const auto place = static_cast<LONG>(SendMessageW(text_, EM_LINEINDEX, static_cast<WPARAM>(top), 0));
    MoveWindow(text_, 0, 0, width, height, TRUE);
    if (shown_ && shrink_ && RoomInTwips() != laidOutWidth_) {
        ShowPage();
        ScrollTo(place);
    }
}

}  // namespace velm
