#include <gtest/gtest.h>

#include <cstring>

#include "app/display_scale.h"
#include "app/single_instance.h"
#include "app/wide_text.h"
#include "resource.h"
#include "support/files.h"
#include "support/running_program.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

std::string Title(RunningProgram& program) {
    return program.Ask([](CVelmFrame& frame) { return ToUtf8(frame.TitleButton().Text()); });
}

/// The document's kind as the header's icon tells it.
int IconKind(RunningProgram& program) {
    const HICON shown = program.Ask([](CVelmFrame& frame) { return frame.TitleButton().Icon(); });
    return shown == program.Ask([](CVelmFrame& frame) { return frame.IconOf(KIND_CALCULATION); }) ? KIND_CALCULATION
                                                                                                  : KIND_CONVERSION;
}

std::vector<std::string> StoredNames(const RunningProgram& program) {
    const CVelmSettings settings = program.StoredSettings();
    std::vector<std::string> names;
    for (const char16_t* name = settings.openFiles; *name != 0; name += std::char_traits<char16_t>::length(name) + 1) {
        names.push_back(ToUtf8(name));
    }
    return names;
}

TEST(Scale, IsTwoExactlyAt192DotsPerInch) {
    const char* const dotsPerInch = std::getenv("VELMORA_DPI");
    ASSERT_NE(dotsPerInch, nullptr) << "the test is started without its screen";
    EXPECT_EQ(DisplayScale(), std::string(dotsPerInch) == "192" ? 2 : 1);
}

TEST(Start, OpensTheLastUsedFile) {
    RunningProgram program;
    SaveConversionFile(program, u"Area", {{u"ares"}, {u"acres", 0.0247}});
    SaveConversionFile(program, u"Length", {{u"meters"}, {u"feet", 3.28084}});
    program.StoreRecentFiles({u"LENGTH.CNV", u"Area.cnv"});
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(Title(program), "Length");
    EXPECT_EQ(IconKind(program), KIND_CONVERSION);
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.List().RowCount(); }), 2);
}

TEST(Start, ShowsNoFileInAnEmptyFolder) {
    RunningProgram program;
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(Title(program), "(No file)");
    EXPECT_EQ(IconKind(program), KIND_CONVERSION);
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.List().RowCount(); }), 0);
    EXPECT_FALSE(IsWindowVisible(program.Panel()));
    EXPECT_TRUE(program.Close());
    EXPECT_TRUE(StoredNames(program).empty());
}

TEST(Start, ShowsNoFileWhenTheFolderIsMissing) {
    RunningProgram program;
    program.StoreSettings([](CVelmSettings& settings) { SetField(settings.dataFolder, u"C:\\no such folder\\"); });
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(Title(program), "(No file)");
}

TEST(Start, OpensTheFirstFileThereIsWhenTheLastUsedOneIsGone) {
    RunningProgram program;
    SaveCalculationFile(program, u"Tip", {{u"bill", u"bill"}});
    program.StoreRecentFiles({u"Gone.cnv", u"Tip.cal"});
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(Title(program), "Tip");
    EXPECT_EQ(IconKind(program), KIND_CALCULATION);
}

TEST(Start, FailsWithoutItsWindowClass) {
    RunningProgram program;
    WNDCLASSW taken{};
    taken.lpfnWndProc = DefWindowProcW;
    taken.hInstance = GetModuleHandleW(nullptr);
    taken.lpszClassName = WINDOW_CLASS;
    RegisterClassW(&taken);
    EXPECT_FALSE(program.Start());
    EXPECT_EQ(FindWindowW(FRAME_CLASS, nullptr), nullptr);
    UnregisterClassW(WINDOW_CLASS, taken.hInstance);
}

/// Eight files, titled from "File 1" to "File 8", of which `recent` were used last.
void SaveEightFiles(const RunningProgram& program) {
    for (char16_t number = u'1'; number <= u'8'; ++number) {
        SaveConversionFile(program, CVelmString(u"File ") + number, {{u"unit"}});
    }
    program.StoreRecentFiles({u"File 5.cnv", u"File 3.cnv"});
}

TEST(QuickFileMenu, OffersTheSixFilesUsedLast) {
    RunningProgram program;
    SaveEightFiles(program);
    ASSERT_TRUE(program.Start());
    program.Tap(program.Frame(), Scaled(40), Scaled(10));
    const auto menu = program.WaitForMenu();
    ASSERT_TRUE(menu);
    const std::vector<std::string> texts = menu->Texts();
    ASSERT_EQ(texts.size(), 8U);
    EXPECT_EQ(texts[0], "File 5");
    EXPECT_EQ(texts[1], "File 3");
    EXPECT_EQ(texts[6], "-");
    EXPECT_EQ(texts[7], "More...");
    EXPECT_TRUE(menu->Find("File 5")->checked);
    EXPECT_FALSE(menu->Find("File 3")->checked);

    RECT frame{};
    RECT place{};
    GetWindowRect(program.Frame(), &frame);
    GetWindowRect(menu->Window(), &place);
    EXPECT_EQ(place.left, frame.left);
    EXPECT_EQ(place.top, frame.top + Scaled(49));

    ASSERT_TRUE(menu->Choose("File 3"));
    EXPECT_TRUE(program.Eventually([](CVelmFrame& shown) { return shown.TitleButton().Text() == u"File 3"; }));
    EXPECT_TRUE(program.Close());
    const std::vector<std::string> names = StoredNames(program);
    ASSERT_EQ(names.size(), 6U);
    EXPECT_EQ(names[0], "File 3.cnv");
    EXPECT_EQ(names[1], "File 5.cnv");
}

TEST(QuickFileMenu, ShowsTitlesLetterForLetter) {
    RunningProgram program;
    SaveConversionFile(program, u"Bed & Breakfast", {{u"night"}});
    ASSERT_TRUE(program.Start());
    program.Key(VK_F4);
    const auto menu = program.WaitForMenu();
    ASSERT_TRUE(menu);
    EXPECT_TRUE(menu->Find("Bed & Breakfast"));
    menu->Close();
}

TEST(Close, WritesTheSettingsByteForByte) {
    RunningProgram program;
    SaveConversionFile(program, u"Length", {{u"meters"}});
    SaveConversionFile(program, u"Area", {{u"ares"}});
    program.StoreRecentFiles({u"Area.cnv", u"Length.cnv"});
    ASSERT_TRUE(program.Start());
    program.Command(ID_QUICK_FILE_FIRST + 1);
    program.Command(ID_ROW_SIZE);
    program.Settle();
    ASSERT_TRUE(program.Close());

    const std::vector<std::byte> stored = program.StoredBytes();
    ASSERT_EQ(stored.size(), 900U);
    std::vector<std::byte> expected(384);
    const CVelmStringView names(u"Length.cnv\0Area.cnv\0", 20);
    std::memcpy(expected.data(), names.data(), names.size() * 2);
    EXPECT_EQ(std::vector<std::byte>(stored.begin(), stored.begin() + 384), expected);
    EXPECT_EQ(stored[896], std::byte{1});
}

TEST(Close, KeepsTheEditsOfTheOpenFile) {
    RunningProgram program;
    SaveConversionFile(program, u"Length", {{u"meters"}, {u"feet", 3.28}});
    ASSERT_TRUE(program.Start());
    program.Ask([](CVelmFrame& frame) {
        frame.Document()->GetItem(1)->name = u"international feet";
        frame.Document()->Touch();
    });
    ASSERT_TRUE(program.Close());
    const auto document = LoadFile(program, u"Length.cnv");
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->GetItem(1)->name, u"international feet");
}

TEST(EndOfSession, WritesTheOpenFileAndTheSettings) {
    RunningProgram program;
    SaveConversionFile(program, u"Length", {{u"meters"}});
    ASSERT_TRUE(program.Start());
    program.Ask([](CVelmFrame& frame) {
        frame.Document()->GetItem(0)->name = u"metres";
        frame.Document()->Touch();
    });
    EXPECT_EQ(SendMessageW(program.Frame(), WM_QUERYENDSESSION, 0, 0), TRUE);
    SendMessageW(program.Frame(), WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(LoadFile(program, u"Length.cnv")->GetItem(0)->name, u"metres");
    EXPECT_EQ(StoredNames(program), std::vector<std::string>{"Length.cnv"});
}

TEST(SelectFile, WritesBackTheFileThatWasOpen) {
    RunningProgram program;
    SaveConversionFile(program, u"Length", {{u"meters"}});
    SaveConversionFile(program, u"Area", {{u"ares"}});
    program.StoreRecentFiles({u"Length.cnv"});
    ASSERT_TRUE(program.Start());
    program.Ask([](CVelmFrame& frame) {
        frame.Document()->GetItem(0)->name = u"metres";
        frame.Document()->Touch();
    });
    program.Command(ID_QUICK_FILE_FIRST + 1);
    ASSERT_TRUE(program.Eventually([](CVelmFrame& frame) { return frame.TitleButton().Text() == u"Area"; }));
    EXPECT_EQ(LoadFile(program, u"Length.cnv")->GetItem(0)->name, u"metres");
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.Catalog().documents.front()->title; }), u"Area");
}

TEST(SelectFile, StaysWithAFileThatCannotBeWritten) {
    RunningProgram program;
    SaveConversionFile(program, u"Length", {{u"meters"}});
    SaveConversionFile(program, u"Area", {{u"ares"}});
    program.StoreRecentFiles({u"Length.cnv"});
    ASSERT_TRUE(program.Start());
    const CVelmString path = program.DataFolder() + u"Length.cnv";
    const HANDLE held = CreateFileW(Wide(path), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    program.Ask([](CVelmFrame& frame) { frame.Document()->Touch(); });
    program.Command(ID_QUICK_FILE_FIRST + 1);
    const auto box = program.WaitForMessageBox();
    ASSERT_TRUE(box);
    EXPECT_EQ(box->Caption(), "Save");
    EXPECT_NE(box->Text().find("Length.cnv"), std::string::npos) << box->Text();
    EXPECT_TRUE(box->Press(IDOK));
    program.Settle();
    EXPECT_EQ(Title(program), "Length");
    CloseHandle(held);
}

TEST(SecondStart, BringsTheFirstWindowToTheFrontAndEnds) {
    RunningProgram program;
    ASSERT_TRUE(program.Start());
    const CVelmSingleInstance first(L"Local\\Corvane.Velmora", FRAME_CLASS);
    ASSERT_TRUE(first.IsFirst());
    ShowWindow(program.Frame(), SW_MINIMIZE);
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    PROCESS_INFORMATION process{};
    std::wstring path = TEXT(VELMORA_PROGRAM);
    ASSERT_TRUE(CreateProcessW(nullptr, path.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
    EXPECT_EQ(WaitForSingleObject(process.hProcess, 20000), WAIT_OBJECT_0);
    DWORD status = 1;
    GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    EXPECT_EQ(status, 0U);
    EXPECT_TRUE(
        WaitUntil([&program] { return !IsIconic(program.Frame()) && GetForegroundWindow() == program.Frame(); }));
}

}  // namespace
}  // namespace velm::test
