#include "app/main_frame.h"

#include <algorithm>
#include <array>

#include "app/commands.h"
#include "dialogs/dialogs.h"
#include "platform/system_error.h"
#include "platform/wide_text_win32.h"
#include "pocketpc/command_bar.h"
#include "pocketpc/shell.h"
#include "resource.h"
#include "settings/settings.h"
#include "ui/bitmap.h"
#include "ui/display_scale.h"
#include "ui/frame_window.h"
#include "ui/wait_cursor.h"
#include "ui/window_text.h"
#include "update/merge.h"

namespace velm {
namespace {

// Pixels at scale 1.
constexpr int HEADER_HEIGHT = 24;
constexpr int PANEL_HEIGHT = 42;
constexpr int FIRST_LIST_MARGIN = 70;
constexpr int BUTTON_MARGIN = 2;
constexpr int BUTTON_BOTTOM = 22;
constexpr int FIRST_SHOW_UNITS_BOTTOM = 20;
constexpr int SHOW_UNITS_ROOM = 24;
constexpr int SHOW_UNITS_LEFT = 22;
constexpr int TITLE_FONT = 20;
constexpr int DAY_FONT = 14;

constexpr COLORREF HEADER_COLOR = RGB(255, 255, 255);
constexpr COLORREF DAY_COLOR = RGB(96, 96, 96);
constexpr COLORREF OLD_DAY_COLOR = RGB(176, 0, 0);

constexpr const wchar_t* SAVE_CAPTION = L"Save";

RECT TitlePlace(const RECT& area) {
    const LONG margin = Scaled(BUTTON_MARGIN);
    return {margin, margin, area.right - Scaled(SHOW_UNITS_ROOM), Scaled(BUTTON_BOTTOM)};
}

RECT ShowUnitsPlace(const RECT& area, int bottom) {
    const LONG margin = Scaled(BUTTON_MARGIN);
    return {area.right - Scaled(SHOW_UNITS_LEFT), margin, area.right - margin, Scaled(bottom)};
}

/// The document string's first part, up to the line end, is the window's title.
CVelmString FrameTitle() {
    const CVelmString text = LoadText(IDS_DOCUMENT);
    return text.substr(0, text.find(u'\n'));
}

}  // namespace

CVelmFrame::CVelmFrame(const CVelmProgram& program)
    : program_(program),
      panel_(program.context),
      list_({program.services.locale, program.settings, program.formatIcons, ShowFormatsDialog}, panel_),
      catalog_(program.services),
      references_(program.services),
      htmlLibrary_(program.programFolder),
      titleFont_(CreateProgramFont(TITLE_FONT, true)),
      dayFont_(CreateProgramFont(DAY_FONT, false)),
      conversionIcon_(LoadProgramIcon(IDI_CONVERSION_FILE)),
      calculationIcon_(LoadProgramIcon(IDI_CALCULATION_FILE)),
      showUnitsIcon_(LoadProgramIcon(IDI_SHOW_UNITS)),
      keys_(MakeAccelerators(KeyPlace::Anywhere)),
      keysOutsideText_(MakeAccelerators(KeyPlace::OutsideText)) {}

bool CVelmFrame::CreateFrame(int showCommand) {
    const HICON icon = LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_CONVERSION_FILE));
    if (!RegisterWindowClass(FRAME_CLASS, icon)) {
        return false;
    }
    const HWND window = CreateFrameWindow(*this, FRAME_CLASS, Wide(FrameTitle()));
    if (window == nullptr) {
        return false;
    }
    ShowWindow(window, showCommand);
    return true;
}

bool CVelmFrame::OnCreate() {
    if (!CreateCommandBar()) {
        return false;
    }
    const RECT area = CommandBar_AreaAbove(Handle(), commandBar_);
    const int width = static_cast<int>(area.right);
    const int height = static_cast<int>(area.bottom);
    if (panel_.Create(WS_CHILD | WS_DISABLED | WS_CLIPCHILDREN, 0, height - Scaled(PANEL_HEIGHT), width,
                      Scaled(PANEL_HEIGHT), Handle(), IDC_VALUE_PANEL, L"") == nullptr ||
        list_.Create(WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_CLIPSIBLINGS, 0, Scaled(HEADER_HEIGHT), width,
                     height - Scaled(FIRST_LIST_MARGIN), Handle(), IDC_ITEM_LIST, L"") == nullptr) {
        return false;
    }
    CreateHeader(area);
    OpenStartupFile();
    return true;
}

bool CVelmFrame::CreateCommandBar() {
    std::vector<WORD> commands;
    toolTips_ = {LoadText(IDS_FILE_MENU), LoadText(IDS_EDIT_MENU)};
    for (const CVelmTool& tool : Toolbar()) {
        commands.push_back(tool.command);
        if (tool.command != 0) {
            toolTips_.push_back(LoadText(tool.toolTip));
        }
    }
    std::vector<const wchar_t*> texts;
    for (const CVelmString& toolTip : toolTips_) {
        texts.push_back(Wide(toolTip));
    }
    SHMENUBARINFO info{sizeof(info), Handle(), IDM_MAIN, GetModuleHandleW(nullptr), DisplayScale(), nullptr};
    if (!SHCreateMenuBar(&info)) {
        return false;
    }
    commandBar_ = info.hwndMB;
    const UINT images = DisplayScale() == 2 ? IDB_TOOLBAR_LARGE : IDB_TOOLBAR;
    CommandBar_AddToolTips(commandBar_, texts);
    return CommandBar_AddBitmap(commandBar_, info.hInstRes, images, Scaled(ICON_SIZE)) &&
           CommandBar_AddButtons(commandBar_, commands);
}

void CVelmFrame::CreateHeader(const RECT& area) {
    titleButton_.Init(TitlePlace(area), Handle(), IDC_TITLE);
    titleButton_.SetFont(titleFont_.get());
    titleButton_.SetNoteFont(dayFont_.get());
    titleButton_.SetMenuSign(true);
    showUnitsButton_.Init(ShowUnitsPlace(area, FIRST_SHOW_UNITS_BOTTOM), Handle(), ID_SHOW_UNITS);
    showUnitsButton_.SetIcon(showUnitsIcon_.get());
}

void CVelmFrame::OpenStartupFile() {
    CVelmDocument* document = nullptr;
    {
        const auto wait = ShowWaitCursor();
        MergeWhenOpened(catalog_, program_.context);
        catalog_.SetFolder(DataFolder(program_.settings, program_.programFolder));
        // Recent files first: the catalog keeps them before the folder's other files.
        catalog_.AddFiles(OpenFileList(program_.settings));
        catalog_.ScanFolder();
        const CVelmStringView recent = FirstOpenFile(program_.settings);
        document = recent.empty() ? nullptr : catalog_.GetDocument(recent, false);
    }
    if (document == nullptr && !catalog_.documents.empty()) {
        document = catalog_.documents.front().get();
    }
    if (document != nullptr && document->GetKind() == KIND_CONVERSION) {
        // It is the catalog's open document already, and the catalog merges into those that it opens only.
        Merge(static_cast<CVelmConversionDoc&>(*document), catalog_, program_.context);
    }
    SelectFile(document);
}

void CVelmFrame::SelectFile(CVelmDocument* document) {
    if (document != document_) {
        // Edits of an unreadable file cannot be saved and must not block access to the other files.
        if (!SaveDocument() && document_->loaded) {
            return;
        }
        list_.Release();  // the items of the document that is about to be unloaded
    }
    const auto& documents = catalog_.documents;
    const auto found = std::find_if(documents.begin(), documents.end(),
                                    [document](const auto& entry) { return entry.get() == document; });
    document_ = nullptr;
    if (found != documents.end()) {
        const auto wait = ShowWaitCursor();
        document_ = catalog_.Activate(static_cast<int>(found - documents.begin()));
    }
    titleButton_.SetIcon(IconOf(document_ != nullptr ? document_->GetKind() : KIND_CONVERSION));
    RefreshTitle();
    list_.SetDocument(document_);
    RefreshRateDays();
}

HICON CVelmFrame::IconOf(std::int32_t kind) const {
    return kind == KIND_CONVERSION ? conversionIcon_.get() : calculationIcon_.get();
}

void CVelmFrame::RefreshTitle() {
    if (document_ == nullptr) {
        titleButton_.SetText(u"(No file)");
    } else {
        titleButton_.SetText(document_->loaded ? document_->title : u"(unreadable) " + document_->title);
    }
}

void CVelmFrame::ShowTitle(const CVelmString& text) {
    titleButton_.SetText(text);
}

void CVelmFrame::RefreshRateDays() {
    rateDays_ = {};
    latestRate_.reset();
    if (document_ != nullptr && document_->GetKind() == KIND_CONVERSION) {
        const auto& document = static_cast<const CVelmConversionDoc&>(*document_);
        rateDays_ = CVelmRateDays::Read(document, catalog_.Folder(), catalog_.Services().files);
        if (const auto range = rateDays_.Range(document)) {
            latestRate_ = range->second;
        }
    }
    ShowRateDay();
}

void CVelmFrame::ShowRateDay() {
    if (!latestRate_) {
        titleButton_.SetNote({}, DAY_COLOR);
        return;
    }
    const auto& document = static_cast<const CVelmConversionDoc&>(*document_);
    const CVelmItem* const item = document.currentItem;
    const auto own = item != nullptr ? rateDays_.DayOf(*item, document) : std::nullopt;
    const CVelmDay day = own.value_or(*latestRate_);
    const bool isOld = DaysBetween(day, Today(catalog_.Services().clock)) > MAX_RATE_AGE;
    titleButton_.SetNote(DayText(day), isOld ? OLD_DAY_COLOR : DAY_COLOR);
}

bool CVelmFrame::SaveDocument() {
    const CVelmString problem = WriteBack();
    if (!problem.empty()) {
        MessageBoxW(Handle(), Wide(problem), SAVE_CAPTION, MB_OK | MB_ICONSTOP);
    }
    return problem.empty();
}

/// Writes the current document when it has edits. Returns which file could not be written and why; empty when there
/// was no error.
CVelmString CVelmFrame::WriteBack() {
    if (document_ == nullptr || !document_->modified || document_->Save(catalog_.Folder())) {
        return {};
    }
    const CVelmString reason = document_->loaded ? LastErrorText() : u"What it holds could not be read.";
    return document_->PathIn(catalog_.Folder()) + u" could not be written.\n" + reason;
}

CVelmQuestions& CVelmFrame::Questions() {
    if (questions_ == nullptr) {
        questions_ = std::make_unique<CVelmQuestions>(program_.services, program_.context, catalog_.Folder(),
                                                      program_.cacheFolder);
    }
    return *questions_;
}

void CVelmFrame::UpdateCommands() {
    for (const CVelmTool& tool : Toolbar()) {
        if (tool.command != 0) {
            CommandBar_EnableButton(commandBar_, tool.command, IsCommandEnabled(*this, tool.command));
        }
    }
    ShowRateDay();
}

void CVelmFrame::Layout() {
    const RECT area = CommandBar_AreaAbove(Handle(), commandBar_);
    const int width = static_cast<int>(area.right);
    const int height = static_cast<int>(area.bottom);
    const int header = Scaled(HEADER_HEIGHT);
    const int panel = Scaled(PANEL_HEIGHT);
    MoveWindow(panel_.Handle(), 0, height - panel, width, panel, TRUE);
    MoveWindow(list_.Handle(), 0, header, width, std::max(0, height - header - (panel_.IsShown() ? panel : 0)), TRUE);
    titleButton_.Move(TitlePlace(area));
    showUnitsButton_.Move(ShowUnitsPlace(area, BUTTON_BOTTOM));
}

void CVelmFrame::Paint() {
    const CVelmPainter painter(Handle());
    FillColor(painter.Dc(), painter.UpdateArea(), HEADER_COLOR);
    for (const CVelmDrawnButton* const button : {&titleButton_, &showUnitsButton_}) {
        RECT common{};
        if (IntersectRect(&common, &button->Rectangle(), &painter.UpdateArea())) {
            button->Draw(painter.Dc());
        }
    }
}

LRESULT CVelmFrame::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    const std::array<CVelmPressButton*, 2> buttons = {&titleButton_, &showUnitsButton_};
    if (router_.Route(buttons, message, wParam, lParam)) {
        return 0;
    }
    switch (message) {
        case WM_CREATE:
            return OnCreate() ? 0 : -1;
        case WM_SIZE:
            if (wParam != SIZE_MINIMIZED) {
                Layout();
            }
            return 0;
        case WM_GETMINMAXINFO:
            LimitFrameSize(Handle(), *reinterpret_cast<MINMAXINFO*>(lParam));
            return 0;
        case WM_ERASEBKGND: {
            RECT header = ClientArea(Handle());
            header.bottom = Scaled(HEADER_HEIGHT);
            FillColor(reinterpret_cast<HDC>(wParam), header, HEADER_COLOR);
            return 1;
        }
        case WM_PAINT:
            Paint();
            return 0;
        case WM_SETFOCUS:
            SetFocus(list_.Handle());
            return 0;
        case WM_ACTIVATE:
            OnActivate(LOWORD(wParam) != WA_INACTIVE);
            return 0;
        case WM_SETCURSOR:
            // The program's window classes have no cursor, so nothing else resets the resize cursor.
            if (LOWORD(lParam) == HTCLIENT && GetClassLongPtrW(reinterpret_cast<HWND>(wParam), GCLP_HCURSOR) == 0) {
                SetCursor(LoadCursorW(nullptr, busy_ ? IDC_WAIT : IDC_ARROW));
                return TRUE;
            }
            break;
        case WM_COMMAND:
            RunCommand(*this, LOWORD(wParam));
            return 0;
        case WM_INITMENUPOPUP:
            OnInitMenu(reinterpret_cast<HMENU>(wParam));
            return 0;
        case WM_SYSCOMMAND:
            if (OnSysCommand(wParam, lParam)) {
                return 0;
            }
            break;
        case WM_SYSCOLORCHANGE:
            program_.formatIcons.Reload(IDB_FORMAT_ICONS, BaseColor());
            RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
            break;
        case WM_CLOSE:
            if (!MayClose()) {
                return 0;
            }
            break;
        case WM_ENDSESSION:
            if (wParam != FALSE) {
                OnEndSession();
            }
            return 0;
        case WM_DESTROY:
            OnDestroy();
            return 0;
        default:
            break;
    }
    return CVelmWindow::WindowProc(message, wParam, lParam);
}

bool CVelmFrame::PreTranslate(MSG& message) {
    if (message.hwnd != Handle() && !IsChild(Handle(), message.hwnd)) {
        return false;
    }
    if (message.message == WM_MOUSEWHEEL) {
        list_.ScrollByWheel(GET_WHEEL_DELTA_WPARAM(message.wParam));
        return false;
    }
    if (message.message == WM_SYSCHAR && CommandBar_OpenMenu(commandBar_, static_cast<wchar_t>(message.wParam))) {
        return true;
    }
    if (message.message == WM_KEYDOWN && OnKeyDown(message)) {
        return true;
    }
    return TranslateAcceleratorW(Handle(), keys_.get(), &message) != 0 ||
           (!IsEditingText() && TranslateAcceleratorW(Handle(), keysOutsideText_.get(), &message) != 0);
}

bool CVelmFrame::OnKeyDown(const MSG& message) {
    if (list_.HandleKey(message.wParam)) {
        return true;
    }
    if (message.wParam == VK_TAB) {
        if (!panel_.HandleTab(GetKeyState(VK_SHIFT) < 0)) {
            MoveFocus();
        }
        return true;
    }
    return false;
}

void CVelmFrame::MoveFocus() {
    const bool toPanel = panel_.IsShown() && !IsEditingText();
    SetFocus(toPanel ? panel_.Handle() : list_.Handle());
}

bool CVelmFrame::IsEditingText() const {
    const HWND focus = GetFocus();
    return focus == panel_.Handle() || IsChild(panel_.Handle(), focus);
}

void CVelmFrame::OnInitMenu(HMENU menu) const {
    const int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        const UINT id = GetMenuItemID(menu, i);
        if (id <= 0xFFFF && FindCommand(static_cast<WORD>(id)) != nullptr) {
            const bool on = IsCommandEnabled(*this, static_cast<WORD>(id));
            EnableMenuItem(menu, id, static_cast<UINT>(MF_BYCOMMAND) | (on ? MF_ENABLED : MF_GRAYED));
        }
    }
}

void CVelmFrame::OnActivate(bool active) {
    if (!active) {
        lastFocus_ = GetFocus();
    } else if (!IsIconic(Handle())) {
        const bool back = IsChild(Handle(), lastFocus_) && IsWindowVisible(lastFocus_) && IsWindowEnabled(lastFocus_);
        SetFocus(back ? lastFocus_ : list_.Handle());
    }
}

bool CVelmFrame::OnSysCommand(WPARAM command, LPARAM key) {
    constexpr WPARAM COMMAND_BITS = 0xFFF0;
    if ((command & COMMAND_BITS) != SC_KEYMENU || key == VK_SPACE) {
        return false;
    }
    return CommandBar_OpenMenu(commandBar_, static_cast<wchar_t>(key));
}

bool CVelmFrame::MayClose() {
    return SaveDocument() || MessageBoxW(Handle(), L"Do you want to close and lose what was edited?", SAVE_CAPTION,
                                         MB_YESNO | MB_DEFBUTTON2 | MB_ICONQUESTION) == IDYES;
}

void CVelmFrame::OnEndSession() {
    WriteBack();  // a failure can no longer be reported
    SaveOpenFileList(program_.settings, catalog_);
    SaveSettings(program_.settings, program_.options);
}

void CVelmFrame::OnDestroy() {
    WriteBack();
    // The application writes them. A frame that could not be created gets here too, before any file is listed.
    SaveOpenFileList(program_.settings, catalog_);
    PostQuitMessage(0);
}

}  // namespace velm
