#include "support/program_test.h"

#include <algorithm>

#include "datetime/date_time.h"
#include "platform/services.h"
#include "platform/wide_text_win32.h"
#include "resource.h"
#include "support/picture.h"
#include "support/table.h"
#include "support/waiting.h"
#include "ui/display_scale.h"

namespace velm::test {
namespace {

std::string ValueText(const CVelmItem& item, bool date) {
    const DateTime time = DateTime::FromValue(item.value);
    return item.state != STATE_VALID ? "none"
           : date ? Print("%d-%02d-%02d %02d:%02d:%02d", time.year, time.month, time.day, time.hour, time.minute,
                          time.second)
                  : Print("%.15g", item.value);
}

std::string PickerText(const RunningProgram& program) {
    SYSTEMTIME time{};
    if (DateTime_GetSystemtime(program.DatePicker(), &time) != GDT_VALID) {
        return "no date";
    }
    const std::string date = Print("%d-%02d-%02d", time.wYear, time.wMonth, time.wDay);
    if (!IsWindowVisible(program.TimePicker())) {
        return date;
    }
    DateTime_GetSystemtime(program.TimePicker(), &time);
    return date + Print(" %02d:%02d:%02d", time.wHour, time.wMinute, time.wSecond);
}

}  // namespace

std::unique_ptr<CVelmDocument> LoadFile(const RunningProgram& program, CVelmStringView name) {
    auto document = CreateDocument(KindOfFileName(name), SystemServices());
    const CVelmString bare(name.substr(0, name.size() - 4));
    return document != nullptr && document->Load(program.DataFolder(), true, bare) ? std::move(document) : nullptr;
}

CVelmDocument& ProgramTest::Document() {
    return *program.Ask([](CVelmFrame& frame) { return frame.Document(); });
}

CVelmItem& ProgramTest::Item(int row) {
    return *program.Ask([row](CVelmFrame& frame) { return &frame.List().Row(row).Item(); });
}

std::string ProgramTest::Title() {
    return program.Ask([](CVelmFrame& frame) { return ToUtf8(frame.TitleButton().Text()); });
}

std::string ProgramTest::Rows() {
    return program.Ask([](CVelmFrame& frame) {
        Texts rows;
        for (int i = 0; i < frame.List().RowCount(); ++i) {
            const CVelmItemRow& row = frame.List().Row(i);
            rows.push_back(ToUtf8(row.Item().name + u"=" + row.ValueText()));
        }
        return Join(rows);
    });
}

std::string ProgramTest::ListState() {
    return program.Ask([](CVelmFrame& frame) {
        const CVelmItemList& list = frame.List();
        SCROLLINFO bar{sizeof(bar), SIF_ALL, 0, 0, 0, 0, 0};
        GetScrollInfo(list.Handle(), SB_VERT, &bar);
        EXPECT_EQ(bar.nMax, std::max(0, list.RowCount() - 1)) << "the scroll bar tells of another list";
        EXPECT_EQ(bar.nPos, list.Top());
        EXPECT_EQ(static_cast<int>(bar.nPage), std::min(list.VisibleRows(), bar.nMax + 1));
        return Print("%d/%d/%d", list.Top(), list.VisibleRows(), list.Selected());
    });
}

std::string ProgramTest::Entry() {
    return program.Ask([this](CVelmFrame& frame) -> std::string {
        const CVelmValuePanel& panel = frame.Panel();
        const CVelmValueEditor& editor = panel.Editor();
        if (!panel.IsShown()) {
            return {};
        }
        const bool date = editor.Control() == program.DatePicker();
        const CVelmString text = editor.Format() == FMT_COMPOUND ? editor.Compound().Text() : editor.Box().Text();
        const HICON sign = panel.AcceptButton().Icon();
        EXPECT_TRUE(sign == panel.AcceptedIcon() || sign == panel.ErrorIcon());
        const std::string typed = date ? PickerText(program) : ToUtf8(text);
        return typed + (typed.empty() ? "= " : " = ") + ValueText(*panel.Item(), date) +
               (sign == panel.ErrorIcon() ? " (error)" : "");
    });
}

/// The part of the compound editor that has the focus, of how many that are shown: "1 of 3".
std::string ProgramTest::Part() {
    return program.Ask([](CVelmFrame& frame) {
        const CVelmCompoundEditor& editor = frame.Panel().Editor().Compound();
        int visible = 0;
        for (int i = 0; i < COMPOUND_PARTS; ++i) {
            visible += IsWindowVisible(editor.Part(i).Handle()) ? 1 : 0;
        }
        return Print("%d of %d", editor.FocusedPart() + 1, visible);
    });
}

/// The captions of the panel's tabs, the selected one in brackets.
std::string ProgramTest::Tabs() {
    return program.Ask([](CVelmFrame& frame) {
        Texts tabs;
        for (std::size_t i = 0; i < frame.Panel().TabCount(); ++i) {
            const CVelmDrawnButton& tab = frame.Panel().TabButton(i);
            tabs.push_back(tab.IsSelected() ? "[" + ToUtf8(tab.Text()) + "]" : ToUtf8(tab.Text()));
        }
        return Join(tabs, " | ");
    });
}

/// The tips of the tools on the command bar; in parentheses where a tool is disabled.
std::string ProgramTest::Tools() {
    return program.Ask([this](CVelmFrame&) {
        const HWND tools = program.Tools();
        EXPECT_NE(SendMessageW(tools, TB_GETTOOLTIPS, 0, 0), 0);
        Texts texts;
        for (WPARAM i = 0; i < static_cast<WPARAM>(SendMessageW(tools, TB_BUTTONCOUNT, 0, 0)); ++i) {
            TBBUTTON button{};
            SendMessageW(tools, TB_GETBUTTON, i, reinterpret_cast<LPARAM>(&button));
            NMTTDISPINFOW asked{};
            asked.hdr = {nullptr, static_cast<UINT_PTR>(button.idCommand), TTN_GETDISPINFOW};
            asked.lpszText = asked.szText;
            SendMessageW(program.CommandBar(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&asked));
            const std::string tip = ToUtf8(FromWide(asked.lpszText));
            const bool enabled = (button.fsState & TBSTATE_ENABLED) != 0;
            texts.push_back((button.fsStyle & BTNS_SEP) != 0 ? "-" : enabled ? tip : "(" + tip + ")");
        }
        return Join(texts);
    });
}

/// Whether text that does not parse is marked.
bool ProgramTest::IsRed() {
    const Picture picture = Picture::OfWindow(Window("box"));
    return picture.Count({0, 0, picture.Width(), picture.Height()}, RGB(255, 0, 0)) > 0;
}

/// The page's first line that is in sight.
std::string ProgramTest::FirstLineOfPage() {
    std::array<wchar_t, 64> line{static_cast<wchar_t>(line.size() - 1)};
    const HWND text = Window("page");
    const LRESULT first = SendMessageW(text, EM_GETFIRSTVISIBLELINE, 0, 0);
    SendMessageW(text, EM_GETLINE, static_cast<WPARAM>(first), reinterpret_cast<LPARAM>(line.data()));
    return Split(ToUtf8(FromWide(line.data())), "\r")[0];
}

std::map<std::string, HWND> ProgramTest::Windows() {
    return program.Ask([this](CVelmFrame& frame) {
        return std::map<std::string, HWND>{
            {"frame", frame.Handle()},         {"list", frame.List().Handle()},
            {"panel", frame.Panel().Handle()}, {"bar", program.CommandBar()},
            {"titles", program.Titles()},      {"date", program.DatePicker()},
            {"time", program.TimePicker()},    {"box", frame.Panel().Editor().Box().Handle()}};
    });
}

RECT ProgramTest::PlaceOfPart(const std::string& name) {
    const auto windowless = program.Ask([&](CVelmFrame& frame) -> std::optional<RECT> {
        const CVelmValuePanel& panel = frame.Panel();
        const int number = name.back() - '0';
        const std::map<std::string, std::function<RECT()>> parts = {
            {"title", [&] { return frame.TitleButton().Rectangle(); }},
            {"units", [&] { return frame.ShowUnitsButton().Rectangle(); }},
            {"accept", [&] { return panel.AcceptButton().Rectangle(); }},
            {"restore", [&] { return panel.RestoreButton().Rectangle(); }},
            {"tab", [&] { return panel.TabButton(number).Rectangle(); }},
            {"part", [&] { return PlaceOf(panel.Editor().Compound().Part(number).Handle()); }},
            {"row", [&] { return frame.List().Row(number).Rectangle(); }},
            {"button", [&] { return frame.List().Row(number).Button().Rectangle(); }},
            {"name", [&] { return frame.List().Row(number).NameLabel().area; }},
            {"value", [&] { return frame.List().Row(number).ValueLabel().area; }},
        };
        const auto part = parts.find(name.substr(0, name.find_first_of("0123456789")));
        return part == parts.end() ? std::nullopt : std::optional(part->second());
    });
    return windowless ? *windowless : PlaceOf(Window(name));
}

void ProgramTest::Give(int row, double value) {
    Item(row).value = value;
    Item(row).state = STATE_VALID;
    Select(row);
    program.Command(ID_CALCULATE);
    program.Settle();
}

void ProgramTest::Select(int row) {
    program.Ask([row](CVelmFrame& frame) {
        frame.List().SelectRow(row == frame.List().Selected() ? -1 : row);
        frame.List().SelectRow(row);
    });
}

void ProgramTest::ResizeList(int width, int height) {
    program.Resize(Scaled(width), Scaled(400));
    program.Ask([&](CVelmFrame& frame) {
        MoveWindow(frame.List().Handle(), 0, Scaled(24), Scaled(width), Scaled(height), TRUE);
    });
    program.Settle();
}

}  // namespace velm::test
