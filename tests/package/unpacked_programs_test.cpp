#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cwchar>
#include <memory>
#include <vector>

#include "app/main_frame.h"
#include "peghelp/help_window.h"
#include "platform/options_store.h"
#include "platform/wide_text_win32.h"
#include "settings/settings.h"
#include "support/waiting.h"
#include "tallyra/calculator_window.h"
#include "ui/clipboard.h"

namespace velm::test {
namespace {

/// A program is given this long to come up on a busy machine.
constexpr std::chrono::milliseconds START_PATIENCE{30000};

/// The programs of the folder that VELMORA_PACKAGE names, started as a user starts them, and a user at the keyboard.
class UnpackedPrograms : public testing::Test {
protected:
    void SetUp() override {
        const char* const folder = std::getenv("VELMORA_PACKAGE");
        ASSERT_NE(folder, nullptr);
        folder_ = WithSeparator(FromUtf8(folder));
        ForgetFolder();
    }

    void TearDown() override {
        for (const wchar_t* name : {CALCULATOR_CLASS, HELP_CLASS, FRAME_CLASS}) {
            Close(FindWindowW(name, nullptr));
        }
        for (const Process& process : started_) {
            EXPECT_EQ(WaitForSingleObject(process.get(), 20000), WAIT_OBJECT_0);
        }
        ForgetFolder();
    }

    /// The programs store the data folder, which whoever uses this Wine prefix next does not have.
    static void ForgetFolder() {
        CVelmSettings settings;
        std::copy_n(u"Length.cnv", 10, settings.openFiles);
        ASSERT_EQ(SaveSettings(settings, *OpenOptionsStore(DefaultOptionsLocation())), 0);
    }

    /// The process stays this object's.
    HANDLE Start(const CVelmString& program, const CVelmString& arguments = {}) {
        std::wstring line = ToWide(u"\"" + folder_ + program + u"\" " + arguments);
        STARTUPINFOW startup{};
        PROCESS_INFORMATION process{};
        EXPECT_TRUE(
            CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process));
        CloseHandle(process.hThread);
        started_.emplace_back(process.hProcess, CloseHandle);
        return process.hProcess;
    }

    static HWND WaitForWindow(const wchar_t* className) {
        HWND window = nullptr;
        EXPECT_TRUE(WaitUntil(
            [&] {
                window = FindWindowW(className, nullptr);
                return window != nullptr && IsWindowVisible(window);
            },
            START_PATIENCE));
        return window;
    }

    static void Close(HWND window) {
        PostMessageW(window, WM_CLOSE, 0, 0);
        EXPECT_TRUE(WaitUntil([window] { return !IsWindow(window); })) << "a program does not end";
    }

    /// Starts the program and waits until it gets the keys that are pressed.
    void StartVelmora() {
        Start(u"Velmora.exe");
        WaitForKeys(WaitForWindow(FRAME_CLASS));
    }

    static void WaitForKeys(HWND frame) {
        ASSERT_TRUE(WaitUntil([frame] { return GetForegroundWindow() == frame; }));
    }

    /// The calculator as Velmora opens it, with the value handed to it.
    static HWND OpenCalculator() {
        Press('K', VK_CONTROL);
        return FindWindowExW(WaitForWindow(CALCULATOR_CLASS), nullptr, L"EDIT", nullptr);
    }

    static void Press(WORD key, WORD held = 0, int times = 1) {
        for (int i = 0; i < 2 * times; ++i) {
            for (const WORD code : {held, key}) {
                keybd_event(static_cast<BYTE>(code), 0, i % 2 == 0 ? 0 : KEYEVENTF_KEYUP, 0);
            }
        }
    }

    static std::string Text(HWND window) {
        std::array<wchar_t, 100> text{};
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
        return ToUtf8(FromWide(text.data()));
    }

    static std::string ClipboardText() { return ToUtf8(GetClipboardText(nullptr).value_or(u"")); }

    /// What the help viewer shows in its first line.
    static std::string FirstHelpLine() {
        HWND page = WaitForWindow(HELP_CLASS);
        while (const HWND child = GetWindow(page, GW_CHILD)) {
            page = child;
        }
        const LRESULT line = SendMessageW(page, EM_GETFIRSTVISIBLELINE, 0, 0);
        std::array<wchar_t, 200> text{static_cast<wchar_t>(text.size() - 1)};
        SendMessageW(page, EM_GETLINE, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(text.data()));
        return ToUtf8(FromWide(std::wstring(text.data()).substr(0, std::wcscspn(text.data(), L"\r\n"))));
    }

    CVelmString folder_;

private:
    using Process = std::unique_ptr<void, decltype(&CloseHandle)>;
    std::vector<Process> started_;
};

TEST_F(UnpackedPrograms, ConvertMilesAndHandThemToTheCalculator) {
    StartVelmora();
    EXPECT_EQ(Text(OpenCalculator()), "") << "there is no value yet";
    Close(FindWindowW(CALCULATOR_CLASS, nullptr));
    WaitForKeys(FindWindowW(FRAME_CLASS, nullptr));
    constexpr int ROWS_FROM_KILOMETERS_TO_MILES = 7;
    Press(VK_DOWN);
    Press(VK_DOWN, 0, ROWS_FROM_KILOMETERS_TO_MILES);
    Press(VK_TAB);
    for (const WORD key : std::array<WORD, 5>{'2', '6', VK_OEM_PERIOD, '2', VK_RETURN}) {
        Press(key);
    }
    Press(VK_TAB);
    Press(VK_UP, 0, ROWS_FROM_KILOMETERS_TO_MILES);
    EXPECT_TRUE(WaitUntil([] {
        Press('C', VK_CONTROL);
        Sleep(300);
        return ClipboardText() == "42.1648128";
    })) << ClipboardText();
    Press(VK_DOWN, 0, ROWS_FROM_KILOMETERS_TO_MILES);
    const HWND expression = OpenCalculator();
    EXPECT_TRUE(WaitUntil([&] { return Text(expression) == "26.2"; })) << Text(expression);
}

TEST_F(UnpackedPrograms, ShowTheContentsOfTheHelp) {
    StartVelmora();
    Press(VK_F1);
    EXPECT_TRUE(WaitUntil([] { return FirstHelpLine() == "Velmora Help"; }, START_PATIENCE)) << FirstHelpLine();
}

TEST_F(UnpackedPrograms, HelpOpensAtAnyOfItsPlaces) {
    for (const auto& [anchor, heading] : {std::pair{u"formulas", "Formulas"}, {u"rates", "Updating exchange rates"}}) {
        Start(u"peghelp.exe", CVelmString(u"file:velmora.htm#") + anchor);
        EXPECT_TRUE(WaitUntil([heading = heading] { return FirstHelpLine() == heading; }, START_PATIENCE))
            << FirstHelpLine();
        Close(FindWindowW(HELP_CLASS, nullptr));
    }
}

TEST_F(UnpackedPrograms, ASecondStartBringsTheFirstToTheFront) {
    for (const auto& [program, name] : {std::pair{u"Tallyra.exe", CALCULATOR_CLASS}, {u"Velmora.exe", FRAME_CLASS}}) {
        Start(program);
        const HWND window = WaitForWindow(name);
        ShowWindow(window, SW_MINIMIZE);
        EXPECT_EQ(WaitForSingleObject(Start(program), 20000), WAIT_OBJECT_0) << "the second one stays";
        EXPECT_TRUE(WaitUntil([&] { return !IsIconic(window) && GetForegroundWindow() == window; }));
    }
}

}  // namespace
}  // namespace velm::test
