#include "support/program_test.h"

#include <cstdio>
#include <map>

#include "app/clipboard.h"
#include "app/display_scale.h"
#include "datetime/date_time.h"
#include "resource.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

constexpr UINT_PTR COMMIT_TIMER = 1;

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

WORD KeyNamed(const std::string& name) {
    static const std::map<std::string, WORD> KEYS = {{"Tab", VK_TAB},       {"Enter", VK_RETURN}, {"Escape", VK_ESCAPE},
                                                     {"Delete", VK_DELETE}, {"Back", VK_BACK},    {"Left", VK_LEFT},
                                                     {"Right", VK_RIGHT},   {"Up", VK_UP},        {"Down", VK_DOWN},
                                                     {"PageUp", VK_PRIOR},  {"PageDown", VK_NEXT}};
    return KEYS.at(name);
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
        return (date ? PickerText(editor) : ToUtf8(text)) + " = " + ValueText(*panel.Item(), date) +
               (sign == panel.ErrorIcon() ? " (error)" : "");
    });
}

std::string ProgramTest::Tabs() {
    return program.Ask([](CVelmFrame& frame) {
        std::string text;
        const CVelmValuePanel& panel = frame.Panel();
        for (int i = 0; i < panel.TabCount(); ++i) {
            const std::string caption = ToUtf8(panel.TabButton(i).Text());
            text += (i == 0 ? "" : " | ") + (i == panel.SelectedTab() ? "[" + caption + "]" : caption);
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

void ProgramTest::Do(const std::string& acts) {
    program.Settle();  // what was begun before
    // From now on the panel's timer ticks when an act says so; a test of its own has the real ticks.
    program.Ask([](CVelmFrame& frame) { KillTimer(frame.Panel().Handle(), COMMIT_TIMER); });
    for (std::size_t start = 0; start < acts.size();) {
        const std::size_t end = std::min(acts.find("; ", start), acts.size());
        const std::string act = acts.substr(start, end - start);
        const std::size_t space = std::min(act.find(' '), act.size());
        Act(act.substr(0, space), act.substr(std::min(space + 1, act.size())));
        program.Settle();
        start = end + 2;
    }
}

void ProgramTest::Act(const std::string& verb, const std::string& rest) {
    const auto tap = [&](auto button) {
        program.Tap(program.Panel(), program.Ask([&](CVelmFrame& frame) { return button(frame.Panel()).Rectangle(); }));
    };
    if (verb == "type") {
        program.Type(rest);
    } else if (verb == "enter") {
        Act("focus", "panel");
        SendMessageW(program.Focus(), EM_SETSEL, 0, -1);
        program.Key(VK_DELETE);
        program.Type(rest);
    } else if (verb == "press") {
        const bool shift = rest.starts_with("Shift+");
        program.Key(KeyNamed(rest.substr(shift ? 6 : 0)), shift ? VK_SHIFT : 0);
    } else if (verb == "paste") {
        PutOnClipboard(FromUtf8(rest));
        program.Command(ID_PASTE);
    } else if (verb == "accept") {
        tap([](const CVelmValuePanel& panel) { return panel.AcceptButton(); });
    } else if (verb == "restore") {
        tap([](const CVelmValuePanel& panel) { return panel.RestoreButton(); });
    } else if (verb == "tab") {
        tap([&](const CVelmValuePanel& panel) {
            int tab = 0;
            while (tab + 1 < panel.TabCount() && ToUtf8(panel.TabButton(tab).Text()) != rest) {
                ++tab;
            }
            return panel.TabButton(tab);
        });
    } else if (verb == "pick") {
        Pick(rest);
    } else if (verb == "row") {
        TapRow(std::stoi(rest));
    } else if (verb == "give") {
        Give(program.Ask([](CVelmFrame& frame) { return frame.List().Selected(); }), std::stod(rest));
    } else if (verb == "wait") {
        WaitForCommit();
    } else if (verb == "focus") {
        program.Ask([&](CVelmFrame& frame) { SetFocus(rest == "list" ? program.List() : frame.Panel().Handle()); });
    } else {
        FAIL() << "nobody knows how to " << verb;
    }
}

void ProgramTest::WaitForCommit() {
    EXPECT_TRUE(WaitUntil([this] {
        SendMessageW(program.Panel(), WM_TIMER, COMMIT_TIMER, 0);
        return program.Ask([](CVelmFrame& frame) { return !frame.Panel().HasPendingEdits(); });
    }));
}

/// As a picker's calendar or arrows do.
void ProgramTest::Pick(const std::string& text) {
    program.Ask([&](CVelmFrame& frame) {
        const bool date = text.find(':') == std::string::npos;
        const HWND picker = date ? frame.Panel().Editor().DatePicker() : frame.Panel().Editor().TimePicker();
        SYSTEMTIME time{};
        DateTime_GetSystemtime(picker, &time);
        const auto fields = date ? std::array{&time.wYear, &time.wMonth, &time.wDay}
                                 : std::array{&time.wHour, &time.wMinute, &time.wSecond};
        std::sscanf(text.c_str(), date ? "%hu-%hu-%hu" : "%hu:%hu:%hu", fields[0], fields[1], fields[2]);
        DateTime_SetSystemtime(picker, GDT_VALID, &time);
        NMDATETIMECHANGE change{{picker, 0, static_cast<UINT>(DTN_DATETIMECHANGE)}, GDT_VALID, time};
        SendMessageW(frame.Panel().Handle(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&change));
    });
}

void ProgramTest::Play(const std::vector<Step>& steps, const std::function<std::string()>& look) {
    for (const Step& step : steps) {
        SCOPED_TRACE(step.act + "  " + step.why);
        Do(step.act);
        EXPECT_BECOMES(look ? look() : Entry(), step.seen);
    }
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
