#include <gtest/gtest.h>

#include <cstring>

#include "app/display_scale.h"
#include "app/single_instance.h"
#include "app/wide_text.h"
#include "resource.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

class StartTest : public ProgramTest {
protected:
    /// The title, behind the kind that the header's icon tells.
    std::string Header() {
        return program.Ask([](CVelmFrame& frame) {
            const bool calculation = frame.TitleButton().Icon() == frame.IconOf(KIND_CALCULATION);
            return (calculation ? "calculation " : "conversion ") + ToUtf8(frame.TitleButton().Text());
        });
    }

    Texts StoredNames() {
        const CVelmSettings settings = program.StoredSettings();
        Texts names;
        for (CVelmStringView name = settings.openFiles; !name.empty(); name = name.data() + name.size() + 1) {
            names.push_back(ToUtf8(CVelmString(name)));
        }
        return names;
    }

    void EditName(CVelmStringView name) {
        Document().GetItem(0)->name = name;
        Document().Touch();
    }
};

TEST_F(StartTest, OpensTheLastUsedFile) {
    struct Case {
        std::vector<CVelmString> recent;
        std::string header;
        std::string rows;
    };
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(Header(), "conversion (No file)") << "in an empty folder";
    EXPECT_EQ(Rows(), "");
    EXPECT_FALSE(IsWindowVisible(program.Panel()));
    EXPECT_TRUE(program.Close());
    EXPECT_EQ(StoredNames(), Texts{});
    SaveConversionFile(program, u"Length", {{u"meters"}, {u"feet", 3.28084}});
    SaveCalculationFile(program, u"Tip", {{u"bill", u"bill"}});
    for (const Case& row : {Case{{u"LENGTH.CNV", u"Tip.cal"}, "conversion Length", "meters=, feet="},
                            Case{{u"Gone.cnv", u"Tip.cal"}, "calculation Tip", "bill="},
                            Case{{}, "conversion Length", "meters=, feet="}}) {
        program.StoreRecentFiles(row.recent);
        ASSERT_TRUE(program.Start());
        EXPECT_EQ(Header(), row.header);
        EXPECT_EQ(Rows(), row.rows);
        EXPECT_TRUE(program.Close());
    }
    program.StoreSettings([](CVelmSettings& settings) { SetField(settings.dataFolder, u"C:\\no such folder\\"); });
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(Header(), "conversion (No file)") << "in a folder that is missing";
}

TEST_F(StartTest, FailsWithoutItsWindowClass) {
    WNDCLASSW taken{};
    taken.lpfnWndProc = DefWindowProcW;
    taken.hInstance = GetModuleHandleW(nullptr);
    taken.lpszClassName = WINDOW_CLASS;
    RegisterClassW(&taken);
    EXPECT_FALSE(program.Start());
    EXPECT_EQ(FindWindowW(FRAME_CLASS, nullptr), nullptr);
    UnregisterClassW(WINDOW_CLASS, taken.hInstance);
}

TEST_F(StartTest, QuickFileMenuOffersTheSixFilesUsedLast) {
    for (const CVelmStringView title : {u"A", u"B", u"C", u"D", u"E & F", u"G", u"H", u"I"}) {
        SaveConversionFile(program, title, {{u"unit"}});
    }
    program.StoreRecentFiles({u"H.cnv", u"E & F.cnv"});
    ASSERT_TRUE(program.Start());
    program.Tap(program.Frame(), Scaled(40), Scaled(10));
    const auto menu = program.WaitForMenu();
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->Words(), "*H, E & F, A, B, C, D, -, More...") << "titles letter for letter";
    RECT frame{};
    RECT place{};
    GetWindowRect(program.Frame(), &frame);
    GetWindowRect(menu->Window(), &place);
    EXPECT_EQ(place.left, frame.left);
    EXPECT_EQ(place.top, frame.top + Scaled(49));
    EXPECT_TRUE(program.Choose("C"));
    EXPECT_EQ(Title(), "C");
    program.Key(VK_F4);
    EXPECT_TRUE(program.Choose("More..."));
    const DialogDriver open(program, program.WaitForDialog());
    EXPECT_EQ(open.Caption(), "Open File");
    EXPECT_TRUE(open.Cancel());
    EXPECT_TRUE(program.Close());
    EXPECT_EQ(StoredNames(), (Texts{"C.cnv", "H.cnv", "E & F.cnv", "A.cnv", "B.cnv", "D.cnv"}));
}

TEST_F(StartTest, NothingIsLostAtTheEnd) {
    SaveConversionFile(program, u"Length", {{u"meters"}});
    SaveConversionFile(program, u"Area", {{u"ares"}});
    program.StoreRecentFiles({u"Area.cnv", u"Length.cnv"});
    ASSERT_TRUE(program.Start());
    EditName(u"square feet");
    program.Command(ID_QUICK_FILE_FIRST + 1);
    program.Command(ID_ROW_SIZE);
    EXPECT_BECOMES(Title(), "Length");
    EXPECT_EQ(LoadFile(program, u"Area.cnv")->GetItem(0)->name, u"square feet") << "by opening another file";
    EditName(u"metres");
    EXPECT_EQ(SendMessageW(program.Frame(), WM_QUERYENDSESSION, 0, 0), TRUE);
    SendMessageW(program.Frame(), WM_ENDSESSION, FALSE, 0);
    EXPECT_EQ(StoredNames(), (Texts{"Area.cnv", "Length.cnv"})) << "the session goes on";
    SendMessageW(program.Frame(), WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(LoadFile(program, u"Length.cnv")->GetItem(0)->name, u"metres") << "by the end of the session";
    EXPECT_EQ(StoredNames(), (Texts{"Length.cnv", "Area.cnv"}));
    EditName(u"feet");
    program.Key('F', VK_MENU);
    const auto menu = program.WaitForMenu();
    EXPECT_TRUE(menu && menu->Choose("Exit"));
    EXPECT_TRUE(WaitUntil([this] { return !IsWindow(program.Frame()); }));
    ASSERT_TRUE(program.Close());
    EXPECT_EQ(LoadFile(program, u"Length.cnv")->GetItem(0)->name, u"feet") << "by leaving the program";

    const std::vector<std::byte> stored = program.StoredBytes();
    ASSERT_EQ(stored.size(), 900U);
    std::vector<std::byte> names(384);
    std::memcpy(names.data(), u"Length.cnv\0Area.cnv", 40);
    EXPECT_TRUE(std::equal(names.begin(), names.end(), stored.begin()));
    EXPECT_EQ(stored[896], std::byte{1});
}

TEST_F(StartTest, ASecondStartBringsTheFirstWindowToTheFrontAndEnds) {
    ASSERT_TRUE(program.Start());
    const CVelmSingleInstance first(L"Local\\Corvane.Velmora", FRAME_CLASS);
    ASSERT_TRUE(first.IsFirst());
    ShowWindow(program.Frame(), SW_MINIMIZE);
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    PROCESS_INFORMATION process{};
    std::wstring path = TEXT(VELMORA_PROGRAM);
    ASSERT_TRUE(CreateProcessW(nullptr, path.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
    EXPECT_EQ(WaitForSingleObject(process.hProcess, 60000), WAIT_OBJECT_0);
    DWORD status = 1;
    GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    EXPECT_EQ(status, 0U);
    EXPECT_TRUE(WaitUntil([this] { return !IsIconic(program.Frame()) && GetForegroundWindow() == program.Frame(); }));
}

}  // namespace
}  // namespace velm::test
