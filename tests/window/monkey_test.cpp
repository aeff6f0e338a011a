#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>

#include "app/command_table.h"
#include "platform/wide_text_win32.h"
#include "resource.h"
#include "support/files.h"
#include "support/holdings.h"
#include "ui/window_text.h"

namespace velm::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds MAX_HANG{2000};
constexpr int DEFAULT_SECONDS = 120;

/// Brushes of system colors and the like, which the system makes when they are first needed and keeps.
constexpr int MADE_ONCE = 8;

constexpr std::array<WORD, 15> KEYS = {VK_UP,   VK_DOWN,   VK_LEFT,   VK_RIGHT, VK_PRIOR, VK_NEXT, VK_TAB, VK_RETURN,
                                       VK_HOME, VK_DELETE, VK_INSERT, VK_BACK,  VK_SPACE, VK_F1,   VK_F4};
constexpr std::array<WORD, 7> MENU_KEYS = {VK_DOWN, VK_DOWN, VK_DOWN, VK_UP, VK_RIGHT, VK_RETURN, VK_ESCAPE};
constexpr std::array<WORD, 4> BUTTONS = {IDOK, IDOK, IDYES, IDCANCEL};
constexpr std::array TEXTS = {"26.2", "-7", "5 ft 3 in", "[5 3]", "{3/5/2004}", "1f", "x*9/5+32", "(", "1e308", "9"};

int FromEnvironment(const char* name, int otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr ? std::atoi(text) : otherwise;
}

/// Somebody who taps, types and chooses without looking, in whatever is in front.
class MonkeyTest : public testing::Test {
protected:
    void SetUp() override {
        for (const auto& entry : std::filesystem::directory_iterator(VELMORA_DATA_FOLDER)) {
            std::filesystem::copy(entry, std::filesystem::path(Wide(program.DataFolder())) / entry.path().filename());
        }
        CopyFileW(Wide(FromUtf8(VELMORA_HTMLVIEW)), Wide(program.ProgramFolder() + u"htmlview.dll"), TRUE);
        for (WORD id = 0x8000; id < 0xF000; ++id) {
            if (id != ID_EXIT && FindCommand(id) != nullptr) {
                commands.push_back(id);
            }
        }
        ASSERT_TRUE(program.Start());
    }

    int Roll(int below) { return static_cast<int>(random.operator()() % static_cast<unsigned>(below)); }

    template <typename List>
    auto OneOf(const List& list) {
        return list[static_cast<std::size_t>(Roll(static_cast<int>(std::size(list))))];
    }

    HWND Menu() const {
        const auto menu = TopMenu(program.Thread());
        return menu ? menu->Window() : nullptr;
    }
    HWND Dialog() const { return program.TopDialog(); }

    void Act() {
        const int kind = Roll(20);
        last = (Menu() != nullptr ? "menu " : ToUtf8(WindowText(Dialog())) + " ") + std::to_string(kind);
        if (const HWND menu = Menu()) {
            PressInMenu(menu, OneOf(MENU_KEYS));
        } else if (kind < 9) {
            Poke(Dialog() != nullptr ? Dialog() : program.Frame());
        } else if (kind < 12) {
            program.Key(OneOf(KEYS));
        } else if (kind < 15) {
            program.Type(OneOf(TEXTS));
        } else if (const HWND dialog = Dialog()) {
            Leave(dialog, OneOf(BUTTONS));
        } else {
            GiveOrder();
        }
    }

    /// The program is left in no other way than a test's own.
    static void PressInMenu(HWND window, WORD key) {
        const auto menu = reinterpret_cast<HMENU>(SendMessageW(window, MN_GETHMENU, 0, 0));
        const UINT exit = GetMenuState(menu, ID_EXIT, MF_BYCOMMAND);
        const bool leaves = exit != static_cast<UINT>(-1) && (exit & MF_HILITE) != 0;
        PostMessageW(window, WM_KEYDOWN, leaves && key == VK_RETURN ? VK_ESCAPE : key, 0);
    }

    /// Taps, holds, drags or right-clicks somewhere in a window or in one of its parts.
    void Poke(HWND top) {
        std::vector<HWND> windows = {top};
        const auto collect = [](HWND child, LPARAM list) {
            if (IsWindowVisible(child) && IsWindowEnabled(child)) {
                reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
            }
            return TRUE;
        };
        EnumChildWindows(top, collect, reinterpret_cast<LPARAM>(&windows));
        const HWND window = OneOf(windows);
        RECT area{};
        GetClientRect(window, &area);
        const int x = Roll(static_cast<int>(area.right) + 1);
        const int y = Roll(static_cast<int>(area.bottom) + 1);
        const int kind = Roll(20);
        if (kind == 0) {
            program.Wheel((Roll(5) - 2) * WHEEL_DELTA);
        } else if (kind < 3) {
            program.RightClick(window, x, y);
        } else {
            program.PenDown(window, x, y);
            Sleep(kind == 3 ? 700 : 0);
            if (kind == 4) {
                program.PenMove(window, Roll(300), Roll(300));
            }
            program.PenUp(window, x, y);
        }
    }

    void GiveOrder() {
        const int kind = Roll(10);
        if (kind == 0) {
            program.Resize(160 + Roll(400), 160 + Roll(400));
        } else if (kind == 1) {
            PostMessageW(program.Frame(), WM_SYSCOLORCHANGE, 0, 0);
        } else if (kind == 2) {
            program.Key(OneOf("FE"), VK_MENU);
        } else if (kind < 6) {
            program.Command(static_cast<WORD>(ID_QUICK_FILE_FIRST + Roll(6)));
        } else {
            program.Command(OneOf(commands));
        }
    }

    /// A box without the button is left by the one that it has.
    static void Leave(HWND dialog, WORD button) {
        const bool isBox = GetDlgItem(dialog, IDOK) != nullptr;
        PostMessageW(dialog, WM_COMMAND, isBox && GetDlgItem(dialog, button) == nullptr ? IDOK : button, 0);
    }

    /// Waits until the last action is done. False when that takes too long.
    bool Answers() {
        const Clock::time_point start = Clock::now();
        program.Settle();
        program.Ask([](CVelmFrame& frame) {
            // Updates are asked for where nobody answers, whatever was typed into the settings.
            SetField(frame.Program().settings.updateUrl, u"http://127.0.0.1:9/");
        });
        const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
        longest = std::max(longest, took);
        return took < MAX_HANG;
    }

    /// What is held when neither a menu nor a dialog is open and the first file is shown.
    Holdings AtRest() {
        for (int calm = 0; calm < 5;) {
            calm = Menu() == nullptr && Dialog() == nullptr ? calm + 1 : 0;
            if (Menu() != nullptr) {
                PressInMenu(Menu(), VK_ESCAPE);
            } else if (Dialog() != nullptr) {
                Leave(Dialog(), IDCANCEL);
            }
            EXPECT_TRUE(Answers());
            Sleep(20);  // a dialog comes up when its program has nothing else to do
        }
        program.Ask([](CVelmFrame& frame) { frame.SelectFile(frame.Catalog().GetDocument(u"Length.cnv", false)); });
        program.Resize(240, 320);
        return CountHoldings();
    }

    RunningProgram program;
    std::vector<WORD> commands;
    std::mt19937 random;
    std::chrono::milliseconds longest{};  ///< that an answer has taken
    std::string last;                     ///< where the last action was done and of which kind it was
};

TEST_F(MonkeyTest, HarmsNothing) {
    const int seed = FromEnvironment("VELMORA_MONKEY_SEED", static_cast<int>(std::random_device()() >> 1));
    const int seconds = FromEnvironment("VELMORA_MONKEY_SECONDS", DEFAULT_SECONDS);
    std::printf("VELMORA_MONKEY_SEED=%d VELMORA_MONKEY_SECONDS=%d\n", seed, seconds);
    std::fflush(stdout);
    random.seed(static_cast<unsigned>(seed));
    // After a quarter of the time nearly every dialog has been open, and what the system keeps for good is there.
    const Clock::time_point warm = Clock::now() + std::chrono::seconds(seconds) / 4;
    const Clock::time_point end = Clock::now() + std::chrono::seconds(seconds);
    std::optional<Holdings> early;
    int step = 0;
    for (; Clock::now() < end; ++step) {
        if (!early && Clock::now() > warm) {
            early = AtRest();
        }
        Act();
        ASSERT_TRUE(Answers()) << "a hang of " << longest.count() << " ms at step " << step << ": " << last;
    }
    const Holdings late = AtRest();
    ASSERT_TRUE(early);
    std::cout << step << " steps, the longest " << longest.count() << " ms; " << *early << "; then " << late << "\n";
    EXPECT_LE(late.gdi, early->gdi + MADE_ONCE);
    EXPECT_LE(late.user, early->user + MADE_ONCE);
    EXPECT_LE(late.handles, early->handles + MADE_ONCE);
    EXPECT_TRUE(program.Close());
    for (const auto& entry : std::filesystem::directory_iterator(Wide(program.DataFolder()))) {
        const CVelmString name = FromWide(entry.path().filename().c_str());
        EXPECT_FALSE(name.ends_with(u".bak") || name.ends_with(u".tmp")) << ToUtf8(name);
        if (KindOfFileName(name) != 0) {
            const auto document = LoadFile(program, name);
            EXPECT_TRUE(document != nullptr && document->droppedRecords == 0) << ToUtf8(name);
        }
    }
}

}  // namespace
}  // namespace velm::test
