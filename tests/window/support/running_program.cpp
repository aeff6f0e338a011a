#include "support/running_program.h"

#include <gtest/gtest.h>

#include <array>

#include "platform/services.h"
#include "platform/wide_text_win32.h"

namespace velm::test {
namespace {

constexpr const wchar_t* HELPER_CLASS = L"VelmoraTestHelper";
constexpr UINT MESSAGE_CALL = WM_APP + 1;
constexpr UINT MESSAGE_MARK = WM_APP + 2;
constexpr UINT CALL_PATIENCE_MS = 20000;

/// Commands that are posted while a message is handled come behind it, and may post again.
constexpr int SETTLE_ROUNDS = 4;

LRESULT CALLBACK HelperProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == MESSAGE_CALL) {
        (*reinterpret_cast<const std::function<void()>*>(lParam))();
        return 1;
    }
    if (message == MESSAGE_MARK) {
        SetEvent(reinterpret_cast<HANDLE>(lParam));
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND CreateHelper() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = HelperProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = HELPER_CLASS;
    RegisterClassW(&windowClass);
    return CreateWindowExW(0, HELPER_CLASS, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, windowClass.hInstance, nullptr);
}

}  // namespace

RunningProgram::RunningProgram()
    : keyPath_(u"Software\\Corvane\\VelmoraTest\\" + FromUtf8(std::to_string(GetCurrentProcessId()))),
      options_(OpenOptionsStore(keyPath_)) {
    CreateDirectoryW(Wide(DataFolder()), nullptr);
    StoreSettings([this](CVelmSettings& settings) { SetField(settings.dataFolder, DataFolder()); });
}

RunningProgram::~RunningProgram() {
    Close();
    RegDeleteTreeW(HKEY_CURRENT_USER, Wide(keyPath_));
}

void RunningProgram::StoreSettings(const std::function<void(CVelmSettings&)>& change) const {
    CVelmSettings settings;
    ReadStoredSettings(settings, *options_);
    change(settings);
    EXPECT_EQ(SaveSettings(settings, *options_), 0);
}

bool RunningProgram::Start() {
    std::promise<bool> started;
    thread_ = std::thread([this, &started] { Run(started); });
    const bool up = started.get_future().get();
    if (up) {
        Settle();
    }
    return up;
}

void RunningProgram::Run(std::promise<bool>& started) {
    threadId_ = GetCurrentThreadId();
    helper_ = CreateHelper();
    CVelmApplication application(SystemServices(), *options_, ProgramFolder(), folder_.PathOf(u"Cache\\"));
    const bool up = application.InitInstance(SW_SHOWNORMAL);
    frame_ = up ? application.Frame() : nullptr;
    window_ = up ? frame_->Handle() : nullptr;
    started.set_value(up);
    if (up) {
        exitStatus_ = application.Run();
        frame_ = nullptr;
        application.ExitInstance();
    }
    DestroyWindow(helper_);
    UnregisterClassW(WINDOW_CLASS, GetModuleHandleW(nullptr));
}

bool RunningProgram::Close(int command) {
    if (!thread_.joinable()) {
        return true;
    }
    PostMessageW(window_, command == 0 ? WM_CLOSE : WM_COMMAND, static_cast<WPARAM>(command), 0);
    const auto handle = reinterpret_cast<HANDLE>(pthread_gethandle(thread_.native_handle()));
    if (WaitForSingleObject(handle, CALL_PATIENCE_MS) != WAIT_OBJECT_0) {
        std::fprintf(stderr, "The program does not end; neither can its test.\n");
        std::abort();
    }
    thread_.join();
    return exitStatus_ == 0;
}

void RunningProgram::Call(const std::function<void()>& function) const {
    DWORD_PTR answered = 0;
    const LRESULT sent = SendMessageTimeoutW(helper_, MESSAGE_CALL, 0, reinterpret_cast<LPARAM>(&function), SMTO_BLOCK,
                                             CALL_PATIENCE_MS, &answered);
    ASSERT_TRUE(sent != 0 && answered == 1) << "the program's thread does not answer";
}

void RunningProgram::Settle() {
    const HANDLE reached = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    for (int round = 0; round < SETTLE_ROUNDS; ++round) {
        PostMessageW(helper_, MESSAGE_MARK, 0, reinterpret_cast<LPARAM>(reached));
        EXPECT_EQ(WaitForSingleObject(reached, CALL_PATIENCE_MS), WAIT_OBJECT_0) << "the program hangs";
    }
    CloseHandle(reached);
    Call([this] { RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN); });
}

void RunningProgram::Post(UINT message, WPARAM wParam, LPARAM lParam) const {
    PostMessageW(WaitUntil([this] { return Focus(); }), message, wParam, lParam);
}

void RunningProgram::Key(WORD key, WORD held) {
    const auto hold = [this, held](BYTE state) {
        Call([held, state] {
            std::array<BYTE, 256> keys{};
            GetKeyboardState(keys.data());
            keys[held] = held == 0 ? keys[held] : state;
            SetKeyboardState(keys.data());
        });
    };
    hold(0x80);
    const LPARAM context = held == VK_MENU ? LPARAM{1} << 29 : 0;
    const bool isSystemKey = held == VK_MENU || key == VK_F10;
    Post(isSystemKey ? WM_SYSKEYDOWN : WM_KEYDOWN, key, context | 1);
    Post(isSystemKey ? WM_SYSKEYUP : WM_KEYUP, key, context | static_cast<LPARAM>(0xC0000001));
    Settle();
    hold(0);
}

void RunningProgram::Type(std::string_view text) const {
    for (const char16_t unit : FromUtf8(text)) {
        Post(WM_CHAR, unit, 1);
    }
}

HWND RunningProgram::Focus() const {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    GetGUIThreadInfo(threadId_, &info);
    return info.hwndFocus;
}

void RunningProgram::Resize(int width, int height) {
    Call([this, width, height] {
        RECT area{0, 0, width, height};
        AdjustWindowRectEx(&area, static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE)), FALSE, 0);
        SetWindowPos(window_, nullptr, 0, 0, static_cast<int>(area.right - area.left),
                     static_cast<int>(area.bottom - area.top), SWP_NOZORDER | SWP_NOMOVE | SWP_NOACTIVATE);
    });
    Settle();
}

bool RunningProgram::Choose(const std::string& entry) {
    const auto menu = WaitForMenu();
    const bool chosen = menu && menu->Choose(entry);
    Settle();
    return chosen;
}

std::string RunningProgram::Answer(int button, HWND box) {
    if (box == nullptr || GetDlgItem(box, button) == nullptr) {  // a box gets its buttons some time after it opens
        box = WaitUntil([&] { return GetDlgItem(WaitForDialog(), button) != nullptr ? WaitForDialog() : nullptr; });
    }
    WaitUntil([&] { return IsChild(box, Focus()); },
              std::chrono::seconds(2));  // or the dialog below never gets it back
    const std::string words = WordsOfBox(box);
    EXPECT_TRUE(PressInBox(box, button)) << words;
    Settle();
    return words;
}

RECT PlaceOf(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&area), 2);
    return area;
}

RECT ClientOf(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    return area;
}

}  // namespace velm::test
