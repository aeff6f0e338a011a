#include "support/program_test.h"

#include <algorithm>
#include <cstdio>

#include "app/clipboard.h"
#include "app/display_scale.h"
#include "datetime/date_time.h"
#include "resource.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

std::string DateText(int year, int month, int day) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%d-%02d-%02d", year, month, day);
    return text.data();
}

std::string TimeText(int hour, int minute, int second) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), " %02d:%02d:%02d", hour, minute, second);
    return text.data();
}

std::string ValueText(const CVelmItem& item, bool date) {
    if (item.state != STATE_VALID) {
        return "none";
    }
    if (date) {
        const DateTime time = DateTime::FromValue(item.value);
        return DateText(time.year, time.month, time.day) + TimeText(time.hour, time.minute, time.second);
    }
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.15g", item.value);
    return text.data();
}

std::string PickerText(const CVelmValueEditor& editor) {
    SYSTEMTIME time{};
    if (DateTime_GetSystemtime(editor.DatePicker(), &time) != GDT_VALID) {
        return "no date";
    }
    const std::string date = DateText(time.wYear, time.wMonth, time.wDay);
    if (!IsWindowVisible(editor.TimePicker())) {
        return date;
    }
    DateTime_GetSystemtime(editor.TimePicker(), &time);
    return date + TimeText(time.wHour, time.wMinute, time.wSecond);
}

}  // namespace

void ProgramTest::StartDistances() {
    SaveConversionFile(program, u"Distances",
                       {{u"miles", 1.0, u"mi"}, {u"kilometers", 1.609344, u"km"}, {u"yards", 1760.0, u"yd"}});
    ASSERT_TRUE(program.Start());
}

void ProgramTest::StartLength() {
    SaveConversionFile(program, u"Length", {{u"meters", 1.0, u"m"}, {u"feet", 3.28084, u"ft"}});
    ASSERT_TRUE(program.Start());
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
        CVelmString rows;
        for (int i = 0; i < frame.List().RowCount(); ++i) {
            const CVelmItemRow& row = frame.List().Row(i);
            rows += (i == 0 ? u"" : u", ") + row.Item().name + u"=" + row.ValueText();
        }
        return ToUtf8(rows);
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
        return std::to_string(list.Top()) + "/" + std::to_string(list.VisibleRows()) + "/" +
               std::to_string(list.Selected());
    });
}

std::string ProgramTest::Entry() {
    return program.Ask([](CVelmFrame& frame) -> std::string {
        const CVelmValuePanel& panel = frame.Panel();
        const CVelmValueEditor& editor = panel.Editor();
        if (!panel.IsShown()) {
            return {};
        }
        const bool date = editor.Control() == editor.DatePicker();
        const CVelmString text = editor.Format() == FMT_COMPOUND ? editor.Compound().Text() : editor.Box().Text();
        const HICON sign = panel.AcceptButton().Icon();
        EXPECT_TRUE(sign == panel.AcceptedIcon() || sign == panel.ErrorIcon());
        const std::string typed = date ? PickerText(editor) : ToUtf8(text);
        return typed + (typed.empty() ? "= " : " = ") + ValueText(*panel.Item(), date) +
               (sign == panel.ErrorIcon() ? " (error)" : "");
    });
}

std::string ProgramTest::Part() {
    return program.Ask([](CVelmFrame& frame) {
        const CVelmCompoundEditor& editor = frame.Panel().Editor().Compound();
        int visible = 0;
        for (int i = 0; i < COMPOUND_PARTS; ++i) {
            visible += IsWindowVisible(editor.Part(i).Handle()) ? 1 : 0;
        }
        return std::to_string(editor.FocusedPart() + 1) + " of " + std::to_string(visible);
    });
}

std::string ProgramTest::Tabs() {
    return program.Ask([](CVelmFrame& frame) {
        std::string text;
        const CVelmValuePanel& panel = frame.Panel();
        for (int i = 0; i < panel.TabCount(); ++i) {
            const std::string caption = ToUtf8(panel.TabButton(i).Text());
            text += (i == 0 ? "" : " | ") + (panel.TabButton(i).IsSelected() ? "[" + caption + "]" : caption);
        }
        return text;
    });
}

void ProgramTest::Allow(int row, std::uint32_t formats, std::uint32_t inputFormat) {
    CVelmValueFormat& format = Item(row).format;
    format.SetAllowedFormats(formats);
    format.displayFormat = inputFormat;
    format.inputFormat = inputFormat;
    Select(row);
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

void ProgramTest::TapRow(int row) {
    const RECT area = program.Ask([row](CVelmFrame& frame) { return frame.List().Row(row).Rectangle(); });
    program.Tap(program.List(), static_cast<int>(area.right) - Scaled(10), static_cast<int>(area.top) + Scaled(6));
    EXPECT_TRUE(program.Eventually([row](CVelmFrame& frame) { return frame.List().Selected() == row; }));
    program.Settle();
}

void ProgramTest::TapFormatButton(int row) {
    program.Tap(program.List(),
                program.Ask([row](CVelmFrame& frame) { return frame.List().Row(row).Button().Rectangle(); }));
}

void ProgramTest::ResizeList(int width, int height) {
    program.Resize(Scaled(width), Scaled(400));
    program.Ask([&](CVelmFrame& frame) {
        MoveWindow(frame.List().Handle(), 0, Scaled(24), Scaled(width), Scaled(height), TRUE);
    });
    program.Settle();
}

void ProgramTest::PutOnClipboard(CVelmStringView text) {
    EXPECT_TRUE(WaitUntil([&] { return SetClipboardText(program.Frame(), text); }));
}

void ProgramTest::EmptyTheClipboard() {
    EXPECT_TRUE(WaitUntil([&] { return OpenClipboard(program.Frame()) != FALSE; }));
    EmptyClipboard();
    CloseClipboard();
}

}  // namespace velm::test
