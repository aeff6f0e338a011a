#include <gtest/gtest.h>

#include <cstring>

#include "app/clipboard.h"
#include "app/command_table.h"
#include "app/display_scale.h"
#include "app/wide_text.h"
#include "resource.h"
#include "support/value_entry.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

class CommandsTest : public ValueEntryTest {
protected:
    /// Chooses Delete Unit for the item of a row, answers, and gives back what was asked.
    std::string Delete(int row, int answer) {
        program.Ask([row](CVelmFrame& frame) { frame.List().SelectRow(row); });
        program.Command(ID_DELETE_UNIT);
        const auto box = program.WaitForMessageBox();
        if (!box) {
            ADD_FAILURE() << "nothing is asked";
            return {};
        }
        EXPECT_EQ(box->Caption(), "Delete");
        EXPECT_EQ(box->Icon(), IDI_QUESTION);
        const std::string text = box->Text();
        EXPECT_TRUE(box->Press(answer));
        program.Settle();
        return text;
    }

    std::string Names() {
        return program.Ask([](CVelmFrame& frame) {
            std::string names;
            for (int i = 0; i < frame.List().RowCount(); ++i) {
                names += ToUtf8(frame.List().Row(i).Item().name) + " ";
            }
            return names;
        });
    }

    void PutOnClipboard(CVelmStringView text) {
        program.Ask([text](CVelmFrame& frame) { EXPECT_TRUE(SetClipboardText(frame.Handle(), text)); });
    }

    void EmptyTheClipboard() {
        program.Ask([](CVelmFrame& frame) {
            OpenClipboard(frame.Handle());
            EmptyClipboard();
            CloseClipboard();
        });
    }

    HWND Box() {
        return program.Ask([](CVelmFrame& frame) { return frame.Panel().Editor().Box().Handle(); });
    }
};

TEST_F(CommandsTest, DeletingAUnitAsksAndSavesAtOnce) {
    StartDistances();
    Give(1, 5);
    EXPECT_EQ(Delete(1, IDNO), "Do you want to delete \"kilometers\"?") << "one conversion makes no bridge";
    EXPECT_EQ(Names(), "miles kilometers yards ");
    EXPECT_EQ(Delete(0, IDNO),
              "\"miles\" has multiple direct conversion formulas attached to it. It may be used as a bridge to convert "
              "between other units.\nDo you really want to delete?");
    Delete(1, IDYES);
    EXPECT_EQ(Names(), "miles yards ");
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.List().Selected(); }), 0);
    const auto saved = LoadFile(program, u"Distances.cnv");
    ASSERT_EQ(saved->ItemCount(), 2U) << "the file has it at once";
    EXPECT_EQ(static_cast<CVelmConversionDoc&>(*saved).conversions.size(), 1U);
    EXPECT_EQ(saved->DroppedRecords(), 0);
    EXPECT_FALSE(saved->updatedText.empty());
    Delete(0, IDYES);
    Delete(0, IDYES);
    EXPECT_EQ(Names(), "");
    EXPECT_FALSE(IsWindowVisible(program.Panel()));
}

TEST_F(CommandsTest, DeletingAnItemOfACalculationFileAsksAboutOutputs) {
    SaveCalculationFile(program, u"Tip", {{u"bill", u"bill"}, {u"tip", u"tip", u"bill*0.25"}});
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(Delete(1, IDYES), "\"tip\" may be used to calculate other output values.\nDo you really want to delete?");
    EXPECT_EQ(Names(), "bill ");
    EXPECT_EQ(LoadFile(program, u"Tip.cal")->ItemCount(), 1U);
}

TEST_F(CommandsTest, CommandsWaitWhileAMessageBoxIsOpen) {
    StartDistances();
    program.Command(ID_DELETE_UNIT);
    const auto box = program.WaitForMessageBox();
    ASSERT_TRUE(box);
    program.Command(ID_REMOVE_FROM_LIST);
    program.Command(ID_DELETE_UNIT);
    program.Settle();
    EXPECT_EQ(Names(), "miles kilometers yards ");
    EXPECT_TRUE(box->Press(IDNO));
    program.Settle();
    EXPECT_TRUE(ThreadWindows(program.Thread(), L"#32770").empty());
}

TEST_F(CommandsTest, AnEditThatCannotBeSavedIsToldAndKept) {
    StartDistances();
    const CVelmString folder = program.DataFolder();
    const CVelmString away = program.ProgramFolder() + u"Away";
    ASSERT_TRUE(MoveFileW(Wide(folder.substr(0, folder.size() - 1)), Wide(away)));
    program.Command(ID_REMOVE_FROM_LIST);
    const auto box = program.WaitForMessageBox();
    ASSERT_TRUE(box);
    EXPECT_EQ(box->Caption(), "Save");
    EXPECT_NE(box->Text().find("Conversions\\Distances.cnv"), std::string::npos) << box->Text();
    EXPECT_NE(box->Text().find('\n'), std::string::npos) << "and why: " << box->Text();
    EXPECT_EQ(box->Icon(), IDI_ERROR);
    EXPECT_TRUE(box->Press(IDOK));
    EXPECT_EQ(Names(), "kilometers yards ") << "the edit stays";
    PostMessageW(program.Frame(), WM_CLOSE, 0, 0);
    const auto again = program.WaitForMessageBox();
    ASSERT_TRUE(again && again->Press(IDOK));
    const auto question = program.WaitForMessageBox();
    ASSERT_TRUE(question);
    EXPECT_EQ(question->Text(), "Do you want to close and lose what was edited?");
    EXPECT_TRUE(question->Press(IDNO));
    program.Settle();
    EXPECT_TRUE(IsWindow(program.Frame()));
    ASSERT_TRUE(MoveFileW(Wide(away), Wide(folder.substr(0, folder.size() - 1))));
    EXPECT_TRUE(program.Close());
    EXPECT_EQ(LoadFile(program, u"Distances.cnv")->items[0]->shown, 0) << "and reaches the file as soon as it can";
}

TEST_F(CommandsTest, EditBoxHasAContextMenu) {
    StartDistances();
    TapRow(0);
    program.Type("12");
    program.Settle();
    EmptyTheClipboard();
    const auto open = [this] {
        program.PenDown(Box(), Scaled(40), Scaled(6));
        return program.WaitForMenu();
    };
    auto menu = open();
    ASSERT_TRUE(menu) << "held in place";
    EXPECT_EQ(menu->Texts(), (std::vector<std::string>{"Cut", "Copy", "Paste", "-", "Select All"}));
    EXPECT_FALSE(menu->Find("Cut")->enabled) << "nothing is selected";
    EXPECT_FALSE(menu->Find("Copy")->enabled);
    EXPECT_FALSE(menu->Find("Paste")->enabled) << "nothing is on the clipboard";
    EXPECT_TRUE(menu->Choose("Select All"));
    program.PenUp(Box(), Scaled(40), Scaled(6));
    program.Settle();

    program.RightClick(Box(), Scaled(40), Scaled(6));
    menu = program.WaitForMenu();
    ASSERT_TRUE(menu) << "a desktop's way";
    EXPECT_TRUE(menu->Find("Cut")->enabled);
    EXPECT_TRUE(menu->Find("Copy")->enabled);
    EXPECT_FALSE(menu->Find("Paste")->enabled);
    EXPECT_TRUE(menu->Choose("Cut"));
    program.Settle();
    EXPECT_EQ(Typed(), "");

    menu = open();
    ASSERT_TRUE(menu);
    EXPECT_FALSE(menu->Find("Copy")->enabled);
    EXPECT_TRUE(menu->Find("Paste")->enabled);
    EXPECT_TRUE(menu->Choose("Paste"));
    program.PenUp(Box(), Scaled(40), Scaled(6));
    EXPECT_TRUE(Shows(0, "12")) << "what is pasted is committed like what is typed";
}

TEST_F(CommandsTest, PastesNumbersAsTheListShowsThem) {
    StartDistances();
    Give(0, 1234567.5);
    program.Command(ID_COPY);
    program.Settle();
    TapRow(1);
    program.Ask([](CVelmFrame& frame) { SetFocus(frame.List().Handle()); });
    program.Command(ID_PASTE);
    EXPECT_TRUE(Shows(1, "1,234,567.5")) << "with the focus on the list it goes into the editor";
    EXPECT_EQ(Typed(), "1234567.5");

    PutOnClipboard(u"-1,234.5");
    Enter("");
    program.Command(ID_PASTE);
    program.Settle();
    EXPECT_EQ(Typed(), "-1234.5") << "with the focus on the edit box it goes there";
    for (const char* const text : {"max(1,234)", "1,5", "1,234,", "2*3"}) {
        PutOnClipboard(FromUtf8(text));
        Enter("");
        program.Command(ID_PASTE);
        program.Settle();
        EXPECT_EQ(Typed(), text) << "is left alone";
    }
}

TEST_F(CommandsTest, PastesIntoCompoundParts) {
    StartDistances();
    program.Ask([](CVelmFrame& frame) {
        frame.Document()->items[0]->format.compoundParts = {{{u"ft", 1.0}, {u"in", 12.0}, {}, {}}};
    });
    Allow(0, FMT_COMPOUND, FMT_COMPOUND);
    program.Ask([](CVelmFrame& frame) { SetFocus(frame.List().Handle()); });
    PutOnClipboard(u"-1,234.5");
    program.Command(ID_PASTE);
    program.Settle();
    EXPECT_EQ(Typed(), "-[1234.5 0]");
    PutOnClipboard(u"5 ft");
    program.Command(ID_PASTE);
    program.Settle();
    EXPECT_EQ(Typed(), "-[1234.5 0]") << "a part takes plain numbers only";
}

/// A window titled "Tallyra" on a thread of its own, that keeps what it is sent.
class Calculator {
public:
    Calculator() : ready_(CreateEventW(nullptr, TRUE, FALSE, nullptr)), thread_([this] { Run(); }) {
        WaitForSingleObject(ready_, 5000);
    }
    ~Calculator() {
        PostMessageW(window_, WM_CLOSE, 0, 0);
        thread_.join();
        CloseHandle(ready_);
    }
    Calculator(const Calculator&) = delete;
    Calculator& operator=(const Calculator&) = delete;

    HWND Window() const { return window_; }

    struct Received {
        ULONG_PTR code = 0;
        DWORD length = 0;
        double value = 0;
        HWND from = nullptr;
        int count = 0;
    };
    Received Last() const { return received_; }

private:
    static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* const calculator = reinterpret_cast<Calculator*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_COPYDATA) {
            const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
            Received& received = calculator->received_;
            received.code = data.dwData;
            received.length = data.cbData;
            received.from = reinterpret_cast<HWND>(wParam);
            std::memcpy(&received.value, data.lpData, std::min<std::size_t>(data.cbData, sizeof(double)));
            ++received.count;
            return TRUE;
        }
        if (message == WM_DESTROY) {
            PostQuitMessage(0);
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }

    void Run() {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = Proc;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"VelmoraTestCalculator";
        RegisterClassW(&windowClass);
        window_ = CreateWindowExW(0, windowClass.lpszClassName, L"Tallyra", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 300, 300,
                                  200, 100, nullptr, nullptr, windowClass.hInstance, nullptr);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetEvent(ready_);
        MSG message{};
        while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            DispatchMessageW(&message);
        }
    }

    HANDLE ready_;
    HWND window_ = nullptr;
    Received received_;
    std::thread thread_;
};

TEST_F(CommandsTest, TheCalculatorIsGivenTheCurrentValue) {
    StartDistances();
    Calculator calculator;
    program.Command(ID_OPEN_CALCULATOR);
    program.Settle();
    EXPECT_EQ(calculator.Last().count, 0) << "no value yet";
    Give(0, 26.2);
    program.Command(ID_OPEN_CALCULATOR);
    program.Settle();
    EXPECT_EQ(calculator.Last().count, 1);
    EXPECT_EQ(calculator.Last().code, 1U);
    EXPECT_EQ(calculator.Last().length, 8U);
    EXPECT_EQ(calculator.Last().value, 26.2);
    EXPECT_EQ(calculator.Last().from, program.Frame());
    EXPECT_EQ(GetForegroundWindow(), calculator.Window());
}

TEST_F(CommandsTest, MissingCompanionsAreTold) {
    StartDistances();
    program.Command(ID_OPEN_CALCULATOR);
    auto box = program.WaitForMessageBox();
    ASSERT_TRUE(box);
    EXPECT_EQ(box->Caption(), "Calculator");
    EXPECT_EQ(box->Text(),
              "Tallyra application could not be started. Please reinstall the software to fix the problem.");
    EXPECT_EQ(box->Icon(), IDI_ERROR);
    EXPECT_TRUE(box->Press(IDOK));
    program.Key(VK_F1);
    box = program.WaitForMessageBox();
    ASSERT_TRUE(box);
    EXPECT_EQ(box->Caption(), "Help");
    EXPECT_TRUE(box->Press(IDOK));
}

TEST_F(CommandsTest, KeysWorkWhereTheyMeanTheCommand) {
    StartDistances();
    Give(0, 5);
    TapRow(0);
    program.Key(VK_DELETE);
    program.Settle();
    EXPECT_EQ(Typed(), "") << "Delete in the edit box deletes text";
    EXPECT_TRUE(ThreadWindows(program.Thread(), L"#32770").empty());
    program.Ask([](CVelmFrame& frame) { SetFocus(frame.List().Handle()); });
    program.Key(VK_DELETE);
    const auto box = program.WaitForMessageBox();
    ASSERT_TRUE(box) << "and on the list the unit";
    EXPECT_TRUE(box->Press(IDNO));
}

}  // namespace
}  // namespace velm::test
