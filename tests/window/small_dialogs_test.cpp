#include <gtest/gtest.h>

#include "app/display_scale.h"
#include "app/wide_text.h"
#include "resource.h"
#include "support/dialog_driver.h"
#include "support/files.h"
#include "support/waiting.h"
#include "version.h"

namespace velm::test {
namespace {

/// Settings, shown units, text references and the About box.
class SmallDialogsTest : public testing::Test {
protected:
    void Start() {
        SaveConversionFile(program, u"Length", {{u"meters"}, {u"feet", 3.28084}, {u"miles", 0.000621371}});
        ASSERT_TRUE(program.Start());
    }

    void ProvideLibrary() {
        ASSERT_TRUE(
            CopyFileW(Wide(FromUtf8(VELMORA_HTMLVIEW)), Wide(program.ProgramFolder() + u"htmlview.dll"), FALSE));
    }

    RunningProgram program;
};

TEST_F(SmallDialogsTest, SettingsAreStoredAtOnceAndUsedAtTheNextStart) {
    Start();
    {
        const DialogDriver dialog(program, ID_OPTIONS);
        EXPECT_EQ(dialog.Caption(), "Velmora Settings");
        EXPECT_EQ(dialog.Text(IDC_LABEL_1), "&Data File Location:");
        EXPECT_EQ(dialog.Text(IDC_LABEL_2), "Currency &Update Download Source:");
        EXPECT_EQ(dialog.Text(IDC_LABEL_3), "All changes will take effect after restarting the application.");
        EXPECT_EQ(dialog.Text(IDC_DATA_FOLDER), ToUtf8(program.DataFolder()));
        dialog.SetText(IDC_DATA_FOLDER, "C:\\elsewhere");
        const auto before = program.StoredBytes();
        EXPECT_TRUE(dialog.Cancel());
        EXPECT_EQ(program.StoredBytes(), before);
    }
    const DialogDriver dialog(program, ID_OPTIONS);
    dialog.SetText(IDC_DATA_FOLDER, "C:\\no\\such\\folder");
    dialog.SetText(IDC_UPDATE_URL, std::string(128, 'u'));
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(CVelmString(program.StoredSettings().dataFolder), u"C:\\no\\such\\folder");
    EXPECT_EQ(CVelmString(program.StoredSettings().updateUrl), CVelmString(127, u'u'));
    EXPECT_TRUE(program.Close());
    ASSERT_TRUE(program.Start());
    program.Ask([](CVelmFrame& frame) {
        EXPECT_EQ(frame.TitleButton().Text(), u"(No file)");
        EXPECT_TRUE(IsCommandEnabled(frame, ID_NEW_CONVERSION_FILE));
        EXPECT_TRUE(IsCommandEnabled(frame, ID_OPTIONS));
    });
}

TEST_F(SmallDialogsTest, TickedUnitsAreShown) {
    Start();
    const auto before = ReadBytes(program, u"Length.cnv");
    {
        const DialogDriver dialog(program, ID_SHOW_UNITS);
        EXPECT_EQ(dialog.Caption(), "Units/Items");
        ASSERT_EQ(dialog.RowCount(IDC_LIST), 3);
        EXPECT_EQ(dialog.RowText(IDC_LIST, 1), "feet");
        EXPECT_TRUE(dialog.IsTicked(IDC_LIST, 1));
        dialog.TickRow(IDC_LIST, 0, false);
        EXPECT_TRUE(dialog.Cancel());
        EXPECT_EQ(ReadBytes(program, u"Length.cnv"), before);
    }
    {
        const DialogDriver dialog(program, ID_SHOW_UNITS);
        EXPECT_TRUE(dialog.IsTicked(IDC_LIST, 0));
        program.Key(VK_DOWN);
        program.Key(VK_SPACE);
        program.Settle();
        EXPECT_FALSE(dialog.IsTicked(IDC_LIST, 1)) << "the space key takes the tick away";
        program.Key(VK_RETURN);
        EXPECT_TRUE(dialog.IsGone());
    }
    EXPECT_TRUE(program.Eventually([](CVelmFrame& frame) { return frame.List().RowCount() == 2; }));
    EXPECT_TRUE(program.Close());
    EXPECT_EQ(LoadFile(program, u"Length.cnv")->GetItem(1)->shown, 0);
    ASSERT_TRUE(program.Start());
    const DialogDriver dialog(program, ID_SHOW_UNITS);
    EXPECT_FALSE(dialog.IsTicked(IDC_LIST, 1));
    dialog.TickRow(IDC_LIST, 1, true);
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.List().RowCount(); }), 3);
}

TEST_F(SmallDialogsTest, ReferencesAreReadInTheViewer) {
    Start();
    WriteBytes(program, u"Time zones.htm", "<h1>Zones</h1><p>The <b>world</b> has 24.</p>");
    WriteBytes(program, u"empty.htm", "");
    const DialogDriver open(program, ID_OPEN_FILE);
    open.Choose(IDC_CATEGORY, static_cast<int>(open.Entries(IDC_CATEGORY).size()) - 1);
    ASSERT_EQ(open.RowCount(IDC_LIST), 2);
    const int page = open.RowText(IDC_LIST, 0) == "Time zones" ? 0 : 1;
    EXPECT_EQ(open.RowText(IDC_LIST, page), "Time zones");
    EXPECT_EQ(open.RowText(IDC_LIST, page, 1), "");

    open.TapRow(IDC_LIST, 1 - page);
    program.Settle();
    EXPECT_EQ(program.WaitForDialog(), open.Window()) << "an empty page is not shown";

    const auto show = [&] {
        open.TapRow(IDC_LIST, page);
        HWND window = nullptr;
        EXPECT_TRUE(WaitUntil([&] {
            window = program.WaitForDialog();
            return window != open.Window();
        }));
        program.Settle();
        return DialogDriver(program, window);
    };
    {
        const DialogDriver viewer = show();
        EXPECT_EQ(viewer.Caption(), "Time zones");
        EXPECT_EQ(viewer.MenuBar(), (std::vector<std::string>{"  Done  "}));
        EXPECT_EQ(viewer.Control(IDC_HTML), nullptr) << "the library is missing";
        EXPECT_TRUE(viewer.Ok());
    }
    ProvideLibrary();
    for (int time = 0; time < 2; ++time) {
        const DialogDriver viewer = show();
        const HWND control = viewer.Control(IDC_HTML);
        ASSERT_NE(control, nullptr);
        const RECT place = PlaceOf(control);
        RECT client{};
        GetClientRect(viewer.Window(), &client);
        EXPECT_EQ(place.left, 0);
        EXPECT_EQ(place.top, Scaled(25));
        EXPECT_EQ(place.right, client.right);
        const HWND text = GetWindow(control, GW_CHILD);
        EXPECT_TRUE(WaitUntil([&] { return ToUtf8(WindowText(text)).find("The world has 24.") != std::string::npos; }))
            << ToUtf8(WindowText(text));
        program.Key(VK_ESCAPE);
        EXPECT_TRUE(viewer.IsGone());
        program.Settle();
    }
    EXPECT_TRUE(IsWindow(open.Window())) << "the list stays open behind the page";
    EXPECT_TRUE(open.Cancel());
}

TEST_F(SmallDialogsTest, AboutTellsVersionUpdatesAndLicense) {
    Start();
    const DialogDriver dialog(program, ID_ABOUT);
    EXPECT_EQ(dialog.Caption(), "Corvane Velmora");
    EXPECT_EQ(dialog.Text(IDC_ABOUT_VERSION), "Version " VELMORA_VERSION);
    EXPECT_EQ(dialog.Text(IDC_ABOUT_UPDATES), ToUtf8(DEFAULT_UPDATE_URL));
    EXPECT_NE(dialog.Text(IDC_ABOUT_LICENSE).find("MIT License"), std::string::npos);
    EXPECT_NE(SendMessageW(dialog.Control(IDC_ABOUT_PICTURE), STM_GETICON, 0, 0), 0);
    EXPECT_TRUE(dialog.Ok());
}

}  // namespace
}  // namespace velm::test
