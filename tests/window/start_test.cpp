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
