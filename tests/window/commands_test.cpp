#include <gtest/gtest.h>

#include <atomic>
#include <cstring>

#include "app/clipboard.h"
#include "app/command_table.h"
#include "app/display_scale.h"
#include "app/wide_text.h"
#include "pocketpc/command_bar.h"
#include "resource.h"
#include "support/program_test.h"
#include "support/test_window.h"

namespace velm::test {
namespace {

using CommandsTest = ProgramTest;

TEST_F(CommandsTest, DeletingAsksAndSavesAtOnce) {
    StartDistances();
    const std::string bridge =
        "? Delete: \"miles\" has multiple direct conversion formulas attached to it. It may be used as a bridge to "
        "convert between other units.\nDo you really want to delete?";
    const auto remove = [this](int row, const std::string& question, int answer, const std::string& left) {
        Select(row);
        program.Command(ID_DELETE_UNIT);
        EXPECT_EQ(program.Answer(answer), question);
        EXPECT_EQ(Rows(), left);
    };
    remove(1, "? Delete: Do you want to delete \"kilometers\"?", IDNO, "miles=, kilometers=, yards=");
    remove(0, bridge, IDNO, "miles=, kilometers=, yards=");
    remove(1, "? Delete: Do you want to delete \"kilometers\"?", IDYES, "miles=, yards=");
    EXPECT_EQ(ListState().back(), '0') << "the first row is selected";
    const auto saved = LoadFile(program, u"Distances.cnv");
    EXPECT_EQ(saved->ItemCount(), 2U) << "the file has it at once";
    EXPECT_EQ(static_cast<CVelmConversionDoc&>(*saved).conversions.size(), 1U);
    EXPECT_EQ(saved->DroppedRecords(), 0);
    EXPECT_FALSE(saved->updatedText.empty());
    remove(0, "? Delete: Do you want to delete \"miles\"?", IDYES, "yards=");
    remove(0, "? Delete: Do you want to delete \"yards\"?", IDYES, "");
    EXPECT_FALSE(IsWindowVisible(program.Panel()));

    SaveCalculationFile(program, u"Tip", {{u"bill", u"bill"}, {u"tip", u"tip", u"bill*0.25"}});
    program.Ask([](CVelmFrame& frame) {
        frame.Catalog().ScanFolder();
        frame.SelectFile(frame.Catalog().GetDocument(u"Tip.cal", false));
    });
    remove(1, "? Delete: \"tip\" may be used to calculate other output values.\nDo you really want to delete?", IDYES,
           "bill=");
    EXPECT_EQ(LoadFile(program, u"Tip.cal")->ItemCount(), 1U);
}

TEST_F(CommandsTest, WaitWhileAMessageBoxIsOpen) {
    StartDistances();
    program.Command(ID_DELETE_UNIT);
    ASSERT_TRUE(program.WaitForMessageBox());
    program.Command(ID_REMOVE_FROM_LIST);
    program.Command(ID_DELETE_UNIT);
    program.Settle();
    program.Answer(IDNO);
    EXPECT_EQ(Rows(), "miles=, kilometers=, yards=");
    EXPECT_FALSE(program.IsAsking());
}

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

TEST_F(CommandsTest, AFileThatCannotBeReadIsLeft) {
    SaveConversionFile(program, u"Area", {{u"ares"}});
    StartLength();
    const bool isFirst = Title() == "Area";
    WriteBytes(program, isFirst ? u"Length.cnv" : u"Area.cnv", "broken since it was listed");
    program.Command(ID_QUICK_FILE_FIRST + 1);
    program.Settle();
    for (const int command : {ID_SAVE, ID_QUICK_FILE_FIRST + 1}) {
        program.Command(command);
        const std::string told = program.Answer();
        EXPECT_NE(told.find("What it holds could not be read."), std::string::npos) << told;
    }
    EXPECT_EQ(Title(), isFirst ? "Area" : "Length");
    EXPECT_EQ(ReadBytes(program, isFirst ? u"Length.cnv" : u"Area.cnv").size(), 26U) << "and it is left alone";
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
    EXPECT_EQ(Entry(), " = none");
    PostMessageW(box, WM_CONTEXTMENU, 0, -1);
    choose("(Cut), (Copy), Paste, -, Select All", "Paste");
    Play({{"wait", "12 = 12", "what is pasted is committed like what is typed"}});
}

TEST_F(CommandsTest, CopyAndPasteNumbersAsTheListShowsThem) {
    StartDistances();
    Give(0, 1234567.25);
    program.Command(ID_COPY);
    program.Settle();
    EXPECT_EQ(GetClipboardText(program.Frame()), u"1,234,567.25");
    Do("row 1; focus list");
    program.Command(ID_PASTE);
    Play({{"wait", "1234567.25 = 1234567.25", "with the focus on the list it goes into the editor"},
          {"enter ; paste -1,234.5; wait", "-1234.5 = -1234.5"},
          {"enter ; paste max(1,234); wait", "max(1,234) = -1234.5 (error)"},
          {"enter ; paste 2*3; wait", "2*3 = 6"},
          {"enter ; paste 1,5; wait", "1,5 = 6 (error)", "is left alone"},
          {"enter ; paste 1,234,; wait", "1,234, = 6 (error)"}});
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

TEST_F(CommandsTest, MissingCompanionsAreTold) {
    StartDistances();
    program.Key('K', VK_CONTROL);
    EXPECT_EQ(program.Answer(),
              "x Calculator: Tallyra application could not be started. Please reinstall the software to fix the "
              "problem.");
    program.Key(VK_F1);
    EXPECT_EQ(program.Answer(),
              "x Help: The help viewer could not be started. Please reinstall the software to fix the problem.");
}

TEST_F(CommandsTest, KeysWorkWhereTheyMeanTheCommand) {
    StartDistances();
    Give(0, 5);
    Play({{"row 0; press Delete", " = 5", "Delete in the edit box deletes text"}});
    EXPECT_FALSE(program.IsAsking());
    Do("focus list; press Delete");
    EXPECT_EQ(program.Answer(IDNO).substr(0, 9), "? Delete:") << "and on the list the unit";
    for (const auto& [key, caption] : {std::pair{'O', "Open File"}, {'U', "Units/Items"}}) {
        program.Key(static_cast<WORD>(key), VK_CONTROL);
        const DialogDriver dialog(program, program.WaitForDialog());
        EXPECT_EQ(dialog.Caption(), caption);
        EXPECT_TRUE(dialog.Cancel());
    }
    Do("focus list; press Enter");
    const DialogDriver dialog(program, program.WaitForDialog());
    EXPECT_EQ(dialog.Caption(), "Unit Properties");
    EXPECT_TRUE(dialog.Cancel());
    program.Key('C', VK_CONTROL);
    EXPECT_EQ(GetClipboardText(program.Frame()), u"5");
    Do("row 1; focus list");
    program.Key('V', VK_CONTROL);
    Play({{"wait", "5 = 5"}});
    const std::string oneLine = ListState();
    program.Key('L', VK_CONTROL);
    EXPECT_NE(ListState(), oneLine);
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
