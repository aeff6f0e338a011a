#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "app/application.h"
#include "app/main_frame.h"
#include "platform/options_store.h"
#include "resource.h"
#include "settings/settings.h"
#include "support/popups.h"
#include "support/temporary_folder.h"
#include "support/waiting.h"

namespace velm::test {

/// The program itself, running on a thread of its own with a data folder and a registry key of its own, and a user
/// on the test's thread who taps, types, chooses and looks.
class RunningProgram {
public:
    /// Makes the folder and the key. The program starts with Start.
    RunningProgram();

    /// Closes the program and removes the folder and the key.
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    /// The data folder, with a separator behind it. The program's own folder is the one above it.
    CVelmString DataFolder() const { return folder_.PathOf(u"Conversions\\"); }
    CVelmString ProgramFolder() const { return folder_.Path(); }
    const TemporaryFolder& Folder() const { return folder_; }

    /// What the next start finds in the registry.
    void StoreSettings(const std::function<void(CVelmSettings&)>& change) const;

    /// Starts the program. False when it does not come up.
    bool Start();

    /// Closes the window as its close button does, or by a command, and waits until the program has ended. True when
    /// it ends in good order.
    bool Close(int command = 0);
    bool IsRunning() const { return frame_ != nullptr; }

    DWORD Thread() const { return threadId_; }
    HWND Frame() const { return window_; }
    HWND List() const { return GetDlgItem(window_, IDC_ITEM_LIST); }
    HWND Panel() const { return GetDlgItem(window_, IDC_VALUE_PANEL); }

    /// The command bar's two parts are its children, the titles before the tools.
    HWND CommandBar() const { return FindWindowExW(window_, nullptr, L"VlCommandBar", nullptr); }
    HWND Titles() const { return FindWindowExW(CommandBar(), nullptr, TOOLBARCLASSNAMEW, nullptr); }
    HWND Tools() const { return FindWindowExW(CommandBar(), Titles(), TOOLBARCLASSNAMEW, nullptr); }

    /// The pickers are the panel's children, the date's before the time's.
    HWND DatePicker() const { return FindWindowExW(Panel(), nullptr, DATETIMEPICK_CLASSW, nullptr); }
    HWND TimePicker() const { return FindWindowExW(Panel(), DatePicker(), DATETIMEPICK_CLASSW, nullptr); }

    /// Runs a function on the program's thread, between its messages, and gives back what it gives back. Modal
    /// dialogs, menus and message boxes let it through too.
    template <typename Function>
    auto Ask(Function function) {
        using Answer = std::invoke_result_t<Function, CVelmFrame&>;
        if constexpr (std::is_void_v<Answer>) {
            Call([&] { function(*frame_); });
        } else {
            Answer answer{};
            Call([&] { answer = function(*frame_); });
            return answer;
        }
    }

    /// Waits until the program has done everything that is in its queue, painting included.
    void Settle();

    /// The pen, in client coordinates of a window.
    void PenDown(HWND window, int x, int y) const {
        PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    }
    void PenMove(HWND window, int x, int y) const { PostMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x, y)); }
    void PenUp(HWND window, int x, int y) const { PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y)); }
    void Tap(HWND window, int x, int y) const {
        PenDown(window, x, y);
        PenUp(window, x, y);
    }
    void Tap(HWND window, const RECT& area) const {
        Tap(window, static_cast<int>(area.left + area.right) / 2, static_cast<int>(area.top + area.bottom) / 2);
    }
    void RightClick(HWND window, int x, int y) const {
        PostMessageW(window, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(x, y));
        PostMessageW(window, WM_RBUTTONUP, 0, MAKELPARAM(x, y));
    }
    void Wheel(int distance) const { Post(WM_MOUSEWHEEL, MAKEWPARAM(0, distance), 0); }

    /// A key pressed and released in the window that has the focus, with VK_CONTROL, VK_SHIFT or VK_MENU held; waits
    /// for what it does.
    void Key(WORD key, WORD held = 0);
    void Type(std::string_view text) const;

    /// A command as a menu sends it.
    void Command(int id) const { PostMessageW(window_, WM_COMMAND, MAKEWPARAM(id, 0), 0); }

    /// The window that has the focus; null while the screen has not given it to one.
    HWND Focus() const;

    /// Makes the client area as large as given, the command bar included, and waits for the layout.
    void Resize(int width, int height);

    std::optional<OpenMenu> WaitForMenu() const { return test::WaitForMenu(threadId_); }
    HWND TopDialog() const { return test::TopDialog(threadId_); }
    HWND WaitForDialog() const { return test::WaitForDialog(threadId_); }

    /// Chooses from the menu that is open or opens, and waits for what that does. False when there is no such entry.
    bool Choose(const std::string& entry);

    /// Answers the message box given, or the one that is open or opens; what it said, as WordsOfBox has it.
    std::string Answer(int button = IDOK, HWND box = nullptr);

private:
    void Run(std::promise<bool>& started);
    void Call(const std::function<void()>& function) const;
    void Post(UINT message, WPARAM wParam, LPARAM lParam) const;

    TemporaryFolder folder_;
    CVelmString keyPath_;
    std::unique_ptr<CVelmOptionsStore> options_;
    std::thread thread_;
    DWORD threadId_ = 0;
    HWND helper_ = nullptr;  ///< a window of the program's thread that runs what the test asks
    HWND window_ = nullptr;
    CVelmFrame* frame_ = nullptr;  ///< not owned
    int exitStatus_ = -1;
};

/// Where a window lies in its parent's client area, and its own client area.
RECT PlaceOf(HWND window);
RECT ClientOf(HWND window);

}  // namespace velm::test
