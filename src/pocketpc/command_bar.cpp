#include "pocketpc/command_bar.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "pocketpc/shell.h"
#include "pocketpc/shell_classes.h"

namespace {

constexpr const wchar_t* BAR_CLASS = L"VlCommandBar";

// Pixels at scale 1.
constexpr int BAR_HEIGHT = 26;
constexpr int TEXT_HEIGHT = 15;
constexpr int IMAGE_SIZE = 16;
constexpr int TOOL_WIDTH = 23;
constexpr int SEPARATOR_WIDTH = 6;
constexpr COLORREF TRANSPARENT_COLOR = RGB(255, 0, 255);

/// Command identifiers for menu titles that have none.
constexpr UINT FIRST_TITLE = 0xF800;

/// Private message: opens the menu of the title whose command is wParam.
constexpr UINT DROP_MENU = WM_APP;

struct Deleter {
    void operator()(HMENU menu) const { DestroyMenu(menu); }
    void operator()(HIMAGELIST images) const { ImageList_Destroy(images); }
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
template <class Handle>
using Owned = std::unique_ptr<std::remove_pointer_t<Handle>, Deleter>;

/// State of one bar. Titles and tools are two toolbar controls side by side, since titles have no images. Both are
/// children and are destroyed first.
struct Bar {
    HWND window = nullptr;
    HWND titles = nullptr;
    HWND tools = nullptr;
    Owned<HMENU> menu;
    Owned<HIMAGELIST> images;
    Owned<HFONT> font;
    std::vector<const wchar_t*> toolTips;  ///< not owned
    int imageCount = 0;
    int scale = 1;

    int Scaled(int length) const { return length * scale; }
};

int Height(const RECT& area) {
    return static_cast<int>(area.bottom - area.top);
}

Bar* BarOf(HWND window) {
    return reinterpret_cast<Bar*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

void Place(HWND window) {
    RECT area{};
    GetClientRect(GetParent(window), &area);
    const int height = BarOf(window)->Scaled(BAR_HEIGHT);
    SetWindowPos(window, nullptr, 0, area.bottom - height, area.right, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

/// Subclass of the parent: keeps the bar along the bottom.
LRESULT CALLBACK FollowParent(HWND parent, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR) {
    if (message == WM_SIZE) {
        Place(reinterpret_cast<HWND>(id));
    }
    return DefSubclassProc(parent, message, wParam, lParam);
}

std::wstring TitleOf(HMENU menu, UINT position) {
    std::array<wchar_t, 64> text{};
    const int length = GetMenuStringW(menu, position, text.data(), static_cast<int>(text.size()), MF_BYPOSITION);
    return {text.data(), static_cast<std::size_t>(length)};
}

UINT CommandOf(HMENU menu, UINT position) {
    MENUITEMINFOW info{};
    info.cbSize = sizeof(info);
    info.fMask = MIIM_ID;
    GetMenuItemInfoW(menu, position, TRUE, &info);
    return info.wID != 0 && info.wID <= 0xFFFF ? info.wID : FIRST_TITLE + position;
}

/// A button for each entry of the menu's first level.
void AddTitles(const Bar& bar) {
    const int count = GetMenuItemCount(bar.menu.get());
    for (int i = 0; i < count; ++i) {
        const auto position = static_cast<UINT>(i);
        const std::wstring title = TitleOf(bar.menu.get(), position);
        const bool isMenu = GetSubMenu(bar.menu.get(), i) != nullptr;
        TBBUTTON button{};
        button.iBitmap = I_IMAGENONE;
        button.idCommand = static_cast<int>(CommandOf(bar.menu.get(), position));
        button.fsState = TBSTATE_ENABLED;
        button.fsStyle = BTNS_AUTOSIZE | BTNS_SHOWTEXT;
        if (isMenu) {
            button.fsStyle |= BTNS_DROPDOWN;
        }
        button.iString = reinterpret_cast<INT_PTR>(title.c_str());
        SendMessageW(bar.titles, TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&button));
    }
}

/// Opens a menu above its title. Commands go to the bar's parent.
void DropMenu(const Bar& bar, int command) {
    const auto position =
        static_cast<int>(SendMessageW(bar.titles, TB_COMMANDTOINDEX, static_cast<WPARAM>(command), 0));
    const HMENU menu = position >= 0 ? GetSubMenu(bar.menu.get(), position) : nullptr;
    if (menu == nullptr) {
        return;
    }
    const HWND titles = bar.titles;
    TPMPARAMS keepFree{sizeof(keepFree), {}};
    SendMessageW(titles, TB_GETITEMRECT, static_cast<WPARAM>(position), reinterpret_cast<LPARAM>(&keepFree.rcExclude));
    MapWindowPoints(titles, nullptr, reinterpret_cast<POINT*>(&keepFree.rcExclude), 2);
    SendMessageW(titles, TB_PRESSBUTTON, static_cast<WPARAM>(command), MAKELPARAM(TRUE, 0));
    TrackPopupMenuEx(menu, TPM_LEFTALIGN | TPM_BOTTOMALIGN | TPM_VERTICAL, keepFree.rcExclude.left,
                     keepFree.rcExclude.top, GetParent(bar.window), &keepFree);
    // The bar is destroyed already if the window was closed while the menu was open.
    SendMessageW(titles, TB_PRESSBUTTON, static_cast<WPARAM>(command), MAKELPARAM(FALSE, 0));
}

/// The commands of all buttons from left to right, without separators.
std::vector<int> ButtonCommands(const Bar& bar) {
    std::vector<int> commands;
    for (const HWND toolbar : {bar.titles, bar.tools}) {
        const auto count = static_cast<int>(SendMessageW(toolbar, TB_BUTTONCOUNT, 0, 0));
        for (int i = 0; i < count; ++i) {
            TBBUTTON button{};
            SendMessageW(toolbar, TB_GETBUTTON, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&button));
            if ((button.fsStyle & BTNS_SEP) == 0) {
                commands.push_back(button.idCommand);
            }
        }
    }
    return commands;
}

void FillToolTip(const Bar& bar, NMTTDISPINFOW& request) {
    const std::vector<int> commands = ButtonCommands(bar);
    const auto found = std::find(commands.begin(), commands.end(), static_cast<int>(request.hdr.idFrom));
    const auto number = static_cast<std::size_t>(found - commands.begin());
    if (found != commands.end() && number < bar.toolTips.size()) {
        request.lpszText = const_cast<wchar_t*>(bar.toolTips[number]);
    }
}

LRESULT HandleNotify(const Bar& bar, LPARAM lParam) {
    const auto* header = reinterpret_cast<const NMHDR*>(lParam);
    if (header->code == TBN_DROPDOWN) {
        // Posted: the toolbar would not survive its window being closed while the menu is open.
        PostMessageW(bar.window, DROP_MENU, static_cast<WPARAM>(reinterpret_cast<const NMTOOLBARW*>(lParam)->iItem), 0);
        return TBDDRET_DEFAULT;
    }
    if (header->code == TTN_GETDISPINFOW) {
        FillToolTip(bar, *reinterpret_cast<NMTTDISPINFOW*>(lParam));
    }
    return 0;
}

/// Titles at the left, tools next to them.
void PlaceToolbars(const Bar& bar) {
    RECT area{};
    GetClientRect(bar.window, &area);
    SIZE titles{};
    SendMessageW(bar.titles, TB_GETMAXSIZE, 0, reinterpret_cast<LPARAM>(&titles));
    const int width = std::min(static_cast<int>(titles.cx), static_cast<int>(area.right));
    MoveWindow(bar.titles, 0, 0, width, Height(area), TRUE);
    MoveWindow(bar.tools, width, 0, static_cast<int>(area.right) - width, Height(area), TRUE);
}

LRESULT CALLBACK BarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    Bar* const bar = BarOf(window);
    if (bar == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    switch (message) {
        case WM_NOTIFY:
            return HandleNotify(*bar, lParam);
        case WM_COMMAND:
            return SendMessageW(GetParent(window), WM_COMMAND, MAKEWPARAM(LOWORD(wParam), 0),
                                reinterpret_cast<LPARAM>(window));
        case DROP_MENU:
            DropMenu(*bar, static_cast<int>(wParam));
            return 0;
        case WM_SIZE:
            PlaceToolbars(*bar);
            return 0;
        case WM_NCDESTROY:
            RemoveWindowSubclass(GetParent(window), FollowParent, reinterpret_cast<UINT_PTR>(window));
            SetWindowLongPtrW(window, GWLP_USERDATA, 0);
            delete bar;
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

HWND CreateToolbar(const Bar& bar, DWORD style, int imageSize, int buttonWidth) {
    const HWND toolbar = CreateWindowExW(0, TOOLBARCLASSNAMEW, L"",
                                         WS_CHILD | WS_VISIBLE | TBSTYLE_FLAT | TBSTYLE_TOOLTIPS | CCS_NOPARENTALIGN |
                                             CCS_NORESIZE | CCS_NODIVIDER | style,
                                         0, 0, 0, 0, bar.window, nullptr, GetModuleHandleW(nullptr), nullptr);
    SendMessageW(toolbar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    SendMessageW(toolbar, WM_SETFONT, reinterpret_cast<WPARAM>(bar.font.get()), FALSE);
    SendMessageW(toolbar, TB_SETBITMAPSIZE, 0, MAKELPARAM(bar.Scaled(imageSize), bar.Scaled(imageSize)));
    SendMessageW(toolbar, TB_SETBUTTONSIZE, 0, MAKELPARAM(bar.Scaled(buttonWidth), bar.Scaled(BAR_HEIGHT)));
    return toolbar;
}

}  // namespace

bool RegisterCommandBarClass() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = BarProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = BAR_CLASS;
    return RegisterShellClass(windowClass);
}

BOOL SHCreateMenuBar(SHMENUBARINFO* info) {
    auto bar = std::make_unique<Bar>();
    bar->menu.reset(LoadMenuW(info->hInstRes, MAKEINTRESOURCEW(info->nToolBarId)));
    bar->scale = info->nScale;
    bar->font.reset(CreateFontW(bar->Scaled(TEXT_HEIGHT), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE,
                                L"Tahoma"));
    if (!bar->menu) {
        return FALSE;
    }
    const HWND window = CreateWindowExW(0, BAR_CLASS, L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 0, 0,
                                        info->hwndParent, nullptr, GetModuleHandleW(nullptr), nullptr);
    if (window == nullptr) {
        return FALSE;
    }
    bar->window = window;
    bar->titles = CreateToolbar(*bar, TBSTYLE_LIST, 0, 0);
    bar->tools = CreateToolbar(*bar, 0, IMAGE_SIZE, TOOL_WIDTH);
    if (bar->titles == nullptr || bar->tools == nullptr) {
        DestroyWindow(window);
        return FALSE;
    }
    AddTitles(*bar);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(bar.release()));
    SetWindowSubclass(info->hwndParent, FollowParent, reinterpret_cast<UINT_PTR>(window), 0);
    Place(window);
    info->hwndMB = window;
    return TRUE;
}

int CommandBar_Height(HWND bar) {
    RECT area{};
    return bar != nullptr && GetWindowRect(bar, &area) ? Height(area) : 0;
}

RECT CommandBar_AreaAbove(HWND parent, HWND bar) {
    RECT area{};
    GetClientRect(parent, &area);
    area.bottom = std::max<LONG>(0, area.bottom - CommandBar_Height(bar));
    return area;
}

bool CommandBar_AddBitmap(HWND window, HINSTANCE instance, UINT bitmap, int size) {
    Bar* const bar = BarOf(window);
    const Owned<HBITMAP> strip(
        static_cast<HBITMAP>(LoadImageW(instance, MAKEINTRESOURCEW(bitmap), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
    // A palettized list would quantize the colors.
    bar->images.reset(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 0, 1));
    if (!strip || !bar->images || ImageList_AddMasked(bar->images.get(), strip.get(), TRANSPARENT_COLOR) < 0) {
        return false;
    }
    SendMessageW(bar->tools, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(bar->images.get()));
    return true;
}

bool CommandBar_AddButtons(HWND window, std::span<const WORD> commands) {
    Bar* const bar = BarOf(window);
    std::vector<TBBUTTON> buttons;
    for (const WORD command : commands) {
        TBBUTTON button{};
        button.fsState = TBSTATE_ENABLED;
        button.fsStyle = command == 0 ? BTNS_SEP : BTNS_BUTTON;
        button.iBitmap = command == 0 ? bar->Scaled(SEPARATOR_WIDTH) : bar->imageCount++;
        button.idCommand = command;
        buttons.push_back(button);
    }
    return SendMessageW(bar->tools, TB_ADDBUTTONSW, buttons.size(), reinterpret_cast<LPARAM>(buttons.data())) != FALSE;
}

void CommandBar_AddToolTips(HWND window, std::span<const wchar_t* const> texts) {
    BarOf(window)->toolTips.assign(texts.begin(), texts.end());
}

void CommandBar_EnableButton(HWND window, WORD command, bool on) {
    const HWND toolbar = BarOf(window)->tools;
    const bool isOn = SendMessageW(toolbar, TB_ISBUTTONENABLED, command, 0) != 0;
    if (isOn != on) {
        SendMessageW(toolbar, TB_ENABLEBUTTON, command, MAKELPARAM(on, 0));
    }
}

bool CommandBar_OpenMenu(HWND window, wchar_t letter) {
    const Bar* const bar = BarOf(window);
    UINT command = CommandOf(bar->menu.get(), 0);
    if (letter != 0 && !SendMessageW(bar->titles, TB_MAPACCELERATORW, letter, reinterpret_cast<LPARAM>(&command))) {
        return false;
    }
    const auto position = static_cast<int>(SendMessageW(bar->titles, TB_COMMANDTOINDEX, command, 0));
    if (GetSubMenu(bar->menu.get(), position) != nullptr) {
        DropMenu(*bar, static_cast<int>(command));
    } else {
        PostMessageW(bar->window, WM_COMMAND, command, 0);
    }
    return true;
}

HMENU CommandBar_GetMenu(HWND window) {
    return BarOf(window)->menu.get();
}
