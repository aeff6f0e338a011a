#include <gtest/gtest.h>

#include <atomic>
#include <cstring>

#include "app/clipboard.h"
#include "app/command_table.h"
#include "app/display_scale.h"
#include "platform/wide_text_win32.h"
#include "pocketpc/command_bar.h"
#include "resource.h"
#include "support/program_test.h"
#include "support/test_window.h"

namespace velm::test {
namespace {

using CommandsTest = ProgramTest;

TEST_F(CommandsTest, AnEditThatCannotBeSavedIsToldAndKept) {
    SaveConversionFile(program, u"Area", {{u"ares"}});
    StartDistances();
    program.Ask([](CVelmFrame& frame) { frame.SelectFile(frame.Catalog().GetDocument(u"Distances.cnv", false)); });
    const CVelmString path = program.DataFolder() + u"Distances.cnv";
    const HANDLE held = CreateFileW(Wide(path), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    for (const int command : {ID_REMOVE_FROM_LIST, ID_QUICK_FILE_FIRST + 1}) {
        program.Command(command);
        const std::string told = program.Answer();
        const std::string start = "x Save: " + ToUtf8(path) + " could not be written.\n";
        EXPECT_TRUE(told.starts_with(start) && told.size() > start.size()) << "and why: " << told;
        EXPECT_EQ(Rows(), "kilometers=, yards=") << "the edit stays, and the file open";
    }
    PostMessageW(program.Frame(), WM_CLOSE, 0, 0);
    EXPECT_EQ(program.Answer().substr(0, 7), "x Save:");
    EXPECT_EQ(program.Answer(IDNO), "? Save: Do you want to close and lose what was edited?");
    EXPECT_TRUE(IsWindow(program.Frame()));
    CloseHandle(held);
    EXPECT_TRUE(program.Close());
    EXPECT_EQ(LoadFile(program, u"Distances.cnv")->items[0]->shown, 0) << "and reaches the file as soon as it can";
}

TEST_F(CommandsTest, EditBoxHasAContextMenu) {
    StartDistances();
    Do("row 0; type 12");
    EmptyTheClipboard();
    const HWND box = program.Focus();
    const auto choose = [&](const std::string& words, const std::string& entry) {
        const auto menu = program.WaitForMenu();
        EXPECT_EQ(menu ? menu->Words() : "no menu", words);
        EXPECT_TRUE(program.Choose(entry));
    };
    program.PenDown(box, Scaled(40), Scaled(6));  // and held in place
    choose("(Cut), (Copy), (Paste), -, Select All", "Select All");
    program.PenUp(box, Scaled(40), Scaled(6));
    program.RightClick(box, Scaled(40), Scaled(6));
    choose("Cut, Copy, (Paste), -, Select All", "Cut");
    EXPECT_EQ(Entry(), "= none");
    PostMessageW(box, WM_CONTEXTMENU, 0, -1);
    choose("(Cut), (Copy), Paste, -, Select All", "Paste");
    Play({{"wait", "12 = 12", "what is pasted is committed like what is typed"}});
}

TEST_F(CommandsTest, TheCalculatorIsGivenTheCurrentValue) {
    StartDistances();
    std::atomic<HWND> calculator = nullptr;
    std::atomic<bool> closed = false;
    std::vector<std::string> received;
    std::thread thread([&] {
        TestWindow window;
        SetWindowTextW(window.Handle(), L"Tallyra");
        window.handler = [&](UINT message, WPARAM wParam, LPARAM lParam) {
            if (message == WM_COPYDATA) {
                const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
                double value = 0.0;
                std::memcpy(&value, data.lpData, sizeof(value));
                received.push_back(std::to_string(data.dwData) + " " + std::to_string(data.cbData) + " " +
                                   std::to_string(value));
                EXPECT_EQ(reinterpret_cast<HWND>(wParam), program.Frame());
            }
            return message == WM_COPYDATA;
        };
        calculator = window.Handle();
        PumpUntil([&] { return closed.load(); });
    });
    EXPECT_TRUE(WaitUntil([&] { return calculator.load(); }));
    program.Command(ID_OPEN_CALCULATOR);
    program.Settle();
    EXPECT_TRUE(WaitUntil([&] { return GetForegroundWindow() == calculator; }));
    EXPECT_EQ(received, Texts{}) << "no value yet";
    Give(0, 26.2);
    program.Command(ID_OPEN_CALCULATOR);
    program.Settle();
    EXPECT_EQ(received, Texts{"1 8 26.200000"});
    closed = true;
    thread.join();
}

TEST_F(CommandsTest, AreDisabledWhereTheyCannotBeRun) {
    SaveCalculationFile(program, u"Tip", {{u"bill", u"bill"}, {u"tip", u"tip", u"bill*0.25"}});
    ASSERT_TRUE(program.Start());
    // A letter for each enabled one; the toolbar follows by itself.
    const auto enabled = [this](HWND tools) {
        return program.Ask([tools](CVelmFrame& frame) {
            std::string letters;
            for (const auto& [id, letter] :
                 {std::pair{ID_COPY, 'c'}, {ID_PASTE, 'p'}, {ID_EDIT_UNIT, 'e'}, {ID_CONVERSIONS, 'v'}}) {
                const auto command = static_cast<WORD>(id);
                const bool on = tools == nullptr ? IsCommandEnabled(frame, command)
                                                 : SendMessageW(tools, TB_ISBUTTONENABLED, command, 0) != 0;
                letters += on ? std::string(1, letter) : "";
            }
            return letters;
        });
    };
    const HWND tools = CommandBar_GetTools(program.CommandBar());
    const auto expect = [&](const std::string& letters) {
        EXPECT_EQ(enabled(nullptr), letters);
        EXPECT_BECOMES(enabled(tools), letters);
    };
    PutOnClipboard(u"5");
    expect("pe");
    Give(0, 10);
    expect("cpe");
    Select(1);
    expect("ce");  // an output takes no value
    Select(0);
    EmptyTheClipboard();
    expect("ce");
    Select(-1);
    expect("");
    EXPECT_FALSE(program.Ask([](CVelmFrame& frame) { return IsCommandEnabled(frame, 0x1234); })) << "no command at all";
}

}  // namespace
}  // namespace velm::test
