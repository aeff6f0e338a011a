#include <gtest/gtest.h>

#include <array>

#include "app/display_scale.h"
#include "app/wide_text.h"
#include "htmlview/display_messages.h"
#include "resource.h"
#include "support/dialog_driver.h"
#include "support/files.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

/// What the keyboard alone, a missing folder, a link and very long texts lead to.
class DialogDetailsTest : public testing::Test {
protected:
    void Start() {
        SaveConversionFile(program, u"Length", {{u"meters"}, {u"feet", 3.28084}, {u"miles", 0.000621371}});
        ASSERT_TRUE(program.Start());
    }

    /// The first line of a rich text control that is in sight.
    static std::string FirstLine(HWND text) {
        std::array<wchar_t, 64> line{static_cast<wchar_t>(line.size())};
        const LRESULT first = SendMessageW(text, EM_GETFIRSTVISIBLELINE, 0, 0);
        const LRESULT length =
            SendMessageW(text, EM_GETLINE, static_cast<WPARAM>(first), reinterpret_cast<LPARAM>(line.data()));
        return ToUtf8(FromWide({line.data(), static_cast<std::size_t>(length)}));
    }

    RunningProgram program;
};

TEST_F(DialogDetailsTest, KeysOpenTheMenusOfTheChosenRow) {
    Start();
    program.Ask([](CVelmFrame& frame) {
        frame.Document()->items[1]->format.SetAllowedFormats(FMT_DECIMAL | FMT_HEX);
        frame.Document()->Touch(u"rates of yesterday");
        frame.List().SelectRow(1);
        SetFocus(frame.Panel().Handle());
    });
    program.Key('F', VK_CONTROL);
    auto menu = program.WaitForMenu();
    ASSERT_TRUE(menu && menu->Choose("Hexadecimal"));
    EXPECT_TRUE(program.Eventually([](CVelmFrame& frame) { return !frame.Document()->IsModified(); }));
    const auto saved = LoadFile(program, u"Length.cnv");
    EXPECT_EQ(saved->items[1]->format.displayFormat, FMT_HEX);
    EXPECT_EQ(saved->updatedText, u"rates of yesterday") << "a value shown in another way is no newer data";
    program.Ask([](CVelmFrame& frame) { SetFocus(frame.List().Handle()); });
    PostMessageW(program.List(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(program.List()), -1);
    menu = program.WaitForMenu();
    ASSERT_TRUE(menu && menu->Choose("Remove from List"));
    EXPECT_TRUE(program.Eventually([](CVelmFrame& frame) { return frame.List().RowCount() == 2; }));
}

TEST_F(DialogDetailsTest, NewOffersToMakeAMissingDataFolder) {
    const CVelmString folder = program.ProgramFolder() + u"not\\yet\\";
    program.StoreSettings([&](CVelmSettings& settings) { SetField(settings.dataFolder, folder); });
    ASSERT_TRUE(program.Start());
    for (const int answer : {IDNO, IDYES}) {
        program.Command(ID_NEW_CONVERSION_FILE);
        const auto question = program.WaitForMessageBox();
        ASSERT_TRUE(question);
        EXPECT_EQ(question->Caption() + ": " + question->Text(),
                  "New File: The data folder \"" + ToUtf8(folder) + "\" does not exist. Do you want to make it?");
        EXPECT_TRUE(question->Press(answer));
        program.Settle();
    }
    const DialogDriver dialog(program, program.WaitForDialog());
    dialog.SetText(IDC_FILE_TITLE, "Own");
    EXPECT_TRUE(dialog.Ok());
    EXPECT_TRUE(WaitUntil([&] { return SystemFiles().Exists(folder + u"Own.cnv"); }));
}

TEST_F(DialogDetailsTest, PagesKeepTheirPlaceAndALinkOutAsksFirst) {
    Start();
    ASSERT_TRUE(CopyFileW(Wide(FromUtf8(VELMORA_HTMLVIEW)), Wide(program.ProgramFolder() + u"htmlview.dll"), FALSE));
    std::string page = "<h1><a href='http://127.0.0.1:9/x'>a link of some length</a></h1>";
    for (int i = 0; i < 99; ++i) {
        const std::string number = std::to_string(i);
        page += "<h2><a name=h" + number + "></a>Heading " + number +
                "</h2><p>Enough words for some lines of small text.</p>";
    }
    WriteBytes(program, u"Page.htm", page);
    const DialogDriver open(program, ID_OPEN_FILE);
    open.Choose(IDC_CATEGORY, static_cast<int>(open.Entries(IDC_CATEGORY).size()) - 1);
    open.TapRow(IDC_LIST, 0);
    ASSERT_TRUE(WaitUntil([&] { return program.WaitForDialog() != open.Window(); }));
    program.Settle();
    const DialogDriver viewer(program, program.WaitForDialog());
    const HWND text = GetWindow(viewer.Control(IDC_HTML), GW_CHILD);
    ASSERT_TRUE(WaitUntil([&] { return !WindowText(text).empty(); }));
    program.Tap(text, Scaled(20), Scaled(8));
    ASSERT_TRUE(WaitUntil([&] { return program.WaitForDialog() != viewer.Window(); }));
    const OpenMessageBox question(program.WaitForDialog());
    EXPECT_EQ(question.Caption() + ": " + question.Text(),
              "Page: Do you want to open http://127.0.0.1:9/x in the web browser?");
    EXPECT_TRUE(question.Press(IDNO));
    SendMessageW(viewer.Control(IDC_HTML), DTM_ANCHORW, 0, reinterpret_cast<LPARAM>(L"h50"));
    EXPECT_TRUE(FirstLine(text).starts_with("Heading 50")) << FirstLine(text);
    program.Resize(Scaled(400), Scaled(400));
    EXPECT_TRUE(FirstLine(text).starts_with("Heading 50")) << "with lines that break anew: " << FirstLine(text);
    EXPECT_TRUE(viewer.Ok());
    EXPECT_TRUE(open.Cancel());
}

TEST_F(DialogDetailsTest, LongTextsAreKeptWhole) {
    Start();
    const std::string label(300, 'l');
    const std::string formula = "x" + std::string(33000, ' ') + "+1";
    program.Key('F', VK_CONTROL);
    const auto menu = program.WaitForMenu();
    ASSERT_TRUE(menu && menu->Choose("Customize..."));
    const DialogDriver formats(program, program.WaitForDialog());
    SendMessageW(formats.Control(IDC_FORMAT_COMPOUND), BM_CLICK, 0, 0);
    formats.SetText(IDC_PART_FACTOR_2, "12");
    formats.SetText(IDC_PART_FACTOR_3, "10");
    formats.SetText(IDC_PART_LABEL_3, label);
    EXPECT_TRUE(formats.Ok());
    const DialogDriver dialog(program, ID_CONVERSIONS);
    dialog.Choose(IDC_CONVERSION_LIST, 0);
    dialog.Focus(IDC_FACTOR);
    dialog.Command(ID_ADD_ADVANCED);
    ASSERT_TRUE(WaitUntil([&] { return program.WaitForDialog() != dialog.Window(); }));
    program.Settle();
    const DialogDriver add(program, program.WaitForDialog());
    add.Choose(IDC_UNIT1, 1);
    add.Choose(IDC_UNIT2, 2);
    add.SetText(IDC_FORWARD, formula);
    EXPECT_TRUE(add.Ok());
    EXPECT_TRUE(dialog.GetsFocus(IDC_CONVERSION_LIST)) << "the box that had the focus is hidden now";
    dialog.Focus(IDC_FORWARD);
    EXPECT_TRUE(dialog.Ok());
    program.Ask([&](CVelmFrame& frame) {
        const auto& document = static_cast<const CVelmConversionDoc&>(*frame.Document());
        EXPECT_EQ(document.conversions.back()->forwardFormula.size(), formula.size());
        EXPECT_EQ(document.items[0]->format.compoundParts[2].label.size(), label.size());
    });
}

}  // namespace
}  // namespace velm::test
