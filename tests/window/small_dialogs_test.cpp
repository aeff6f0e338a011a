#include <gtest/gtest.h>

#include <array>

#include "app/display_scale.h"
#include "app/window_text.h"
#include "htmlview/display_messages.h"
#include "platform/wide_text_win32.h"
#include "resource.h"
#include "support/program_test.h"
#include "version.h"

namespace velm::test {
namespace {

/// Settings, shown units, text references and the About box.
class SmallDialogsTest : public ProgramTest {
protected:
    /// The first line of a rich text control that is in sight.
    static std::string FirstLine(HWND text) {
        std::array<wchar_t, 64> line{static_cast<wchar_t>(line.size())};
        const LRESULT first = SendMessageW(text, EM_GETFIRSTVISIBLELINE, 0, 0);
        SendMessageW(text, EM_GETLINE, static_cast<WPARAM>(first), reinterpret_cast<LPARAM>(line.data()));
        const std::string words = ToUtf8(FromWide(line.data()));
        return words.substr(0, words.find_first_of("\r\n"));
    }
};

TEST_F(SmallDialogsTest, ReferencesAreReadInTheViewer) {
    StartLength();
    std::string html = "<a href='http://127.0.0.1:9/x'>The <b>world</b></a> has 24.";
    for (int i = 0; i < 99; ++i) {
        const std::string number = std::to_string(i);
        html += "<h2><a name=h" + number + "></a>Zone " + number + "</h2><p>Enough words for some lines of text.</p>";
    }
    WriteBytes(program, u"Time zones.htm", html);
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
    for (const bool library : {false, true, true}) {
        if (library) {
            CopyFileW(Wide(FromUtf8(VELMORA_HTMLVIEW)), Wide(program.ProgramFolder() + u"htmlview.dll"), FALSE);
        }
        open.SelectRow(IDC_LIST, page);
        const DialogDriver viewer = open.Over(IDOK);
        EXPECT_EQ(viewer.Caption(), "Time zones");
        EXPECT_EQ(viewer.MenuBar(), Texts{"  Done  "});
        const HWND control = viewer.Control(IDC_HTML);
        ASSERT_EQ(control != nullptr, library);
        if (library) {
            const RECT client = ClientOf(viewer.Window());
            EXPECT_EQ(Words(PlaceOf(control)), Words(RECT{0, Scaled(25), client.right, client.bottom - Scaled(26)}));
            const HWND text = GetWindow(control, GW_CHILD);
            EXPECT_TRUE(WaitUntil([&] { return WindowText(text).find(u"The world has 24.") != CVelmString::npos; }));
            program.Tap(text, Scaled(20), Scaled(8));
            const DialogDriver question(program, WaitForDialog(program.Thread(), viewer.Window()));
            EXPECT_EQ(program.Answer(IDNO),
                      "? Time zones: Do you want to open http://127.0.0.1:9/x in the web browser?");
            viewer.Send(IDC_HTML, DTM_ANCHORW, 0, reinterpret_cast<LPARAM>(L"h50"));
            for (const int size : {400, 240}) {
                program.Resize(Scaled(size), Scaled(size));
                EXPECT_EQ(FirstLine(text), "Zone 50") << "with lines that break anew";
            }
        }
        EXPECT_TRUE(library ? viewer.EndsWith(VK_ESCAPE) : viewer.Ok());
    }
    EXPECT_TRUE(IsWindow(open.Window())) << "the list stays open behind the page";
    EXPECT_TRUE(open.Cancel());
}

TEST_F(SmallDialogsTest, AboutTellsVersionUpdatesAndLicense) {
    StartLength();
    const DialogDriver dialog(program, ID_ABOUT);
    EXPECT_EQ(dialog.Caption(), "Corvane Velmora");
    EXPECT_EQ(dialog.Text(IDC_ABOUT_VERSION), "Version " VELMORA_VERSION);
    EXPECT_EQ(dialog.Text(IDC_ABOUT_UPDATES), ToUtf8(DEFAULT_UPDATE_URL));
    EXPECT_NE(dialog.Text(IDC_ABOUT_LICENSE).find("MIT License"), std::string::npos);
    EXPECT_NE(dialog.Send(IDC_ABOUT_PICTURE, STM_GETICON), 0);
    EXPECT_TRUE(dialog.Ok());
}

}  // namespace
}  // namespace velm::test
