#include "support/program_test.h"

#include <algorithm>
#include <stdexcept>

#include "datetime/date_time.h"
#include "platform/services.h"
#include "platform/wide_text_win32.h"
#include "support/table.h"
#include "support/waiting.h"
#include "ui/display_scale.h"
#include "ui/window_text.h"

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

std::pair<std::string, int> KindAndNumber(const std::string& name) {
    const std::size_t digits = std::min(name.find_first_of("0123456789"), name.size());
    return {name.substr(0, digits), digits < name.size() ? std::stoi(name.substr(digits)) : 0};
}

CVelmItem& ProgramTest::Item(int row) {
    return *program.Ask([row](CVelmFrame& frame) { return &frame.List().Row(row).Item(); });
}

HWND ProgramTest::Dialog() {
    const HWND dialog = program.WaitForDialog();
    EXPECT_NE(dialog, nullptr) << "no dialog opens";
    EXPECT_TRUE(WaitUntil([&] { return program.Focus() == dialog || IsChild(dialog, program.Focus()); }));
    program.Settle();
    return dialog;
}

ProgramTest::Part ProgramTest::Find(const std::string& name) {
    using F = CVelmFrame&;
    using P = const RunningProgram&;
    static const std::map<std::string, Part (*)(F, P, int)> PARTS = {
        {"frame",
         [](F f, P, int) {
             return Part{f.Handle(), {}};
         }},
        {"title",
         [](F f, P, int) {
             return Part{f.Handle(), f.TitleButton().Rectangle()};
         }},
        {"units",
         [](F f, P, int) {
             return Part{f.Handle(), f.ShowUnitsButton().Rectangle()};
         }},
        {"bar",
         [](F, P p, int) {
             return Part{p.CommandBar(), {}};
         }},
        {"titles",
         [](F, P p, int) {
             return Part{p.Titles(), {}};
         }},
        {"menu",
         [](F, P p, int) {
             return Part{TopMenu(p.Thread()).value().Window(), {}};
         }},
        {"list",
         [](F, P p, int) {
             return Part{p.List(), {}};
         }},
        {"row",
         [](F f, P p, int n) {
             return Part{p.List(), f.List().Row(n).Rectangle()};
         }},
        {"button",
         [](F f, P p, int n) {
             return Part{p.List(), f.List().Row(n).Button().Rectangle()};
         }},
        {"name",
         [](F f, P p, int n) {
             return Part{p.List(), f.List().Row(n).NameLabel().area};
         }},
        {"value",
         [](F f, P p, int n) {
             return Part{p.List(), f.List().Row(n).ValueLabel().area};
         }},
        {"panel",
         [](F, P p, int) {
             return Part{p.Panel(), {}};
         }},
        {"accept",
         [](F f, P p, int) {
             return Part{p.Panel(), f.Panel().AcceptButton().Rectangle()};
         }},
        {"restore",
         [](F f, P p, int) {
             return Part{p.Panel(), f.Panel().RestoreButton().Rectangle()};
         }},
        {"tab",
         [](F f, P p, int n) {
             return Part{p.Panel(), f.Panel().TabButton(n).Rectangle()};
         }},
        {"box",
         [](F f, P, int) {
             return Part{f.Panel().Editor().Box().Handle(), {}};
         }},
        {"part",
         [](F f, P, int n) {
             return Part{f.Panel().Editor().Compound().Part(n).Handle(), {}};
         }},
        {"date",
         [](F, P p, int) {
             return Part{p.DatePicker(), {}};
         }},
        {"time",
         [](F, P p, int) {
             return Part{p.TimePicker(), {}};
         }},
    };
    const auto [kind, number] = KindAndNumber(name);
    if (std::isupper(name[0])) {
        const HWND control = GetDlgItem(Dialog(), IdOf(name));
        return control != nullptr ? Part{control, {}} : throw std::runtime_error("the dialog has no " + name);
    }
    if (kind == "entry" || kind == "column") {
        const HWND list = Find("LIST").window;
        return {list, kind == "entry" ? PlaceOfEntry(list, number) : PlaceOfColumn(list, number)};
    }
    if (kind == "page") {
        return {GetWindow(Find("HTML").window, GW_CHILD), {}};
    }
    const auto find = ValueOf(PARTS, kind);
    return program.Ask([&, number = number](CVelmFrame& frame) { return find(frame, program, number); });
}

RECT ProgramTest::PlaceOfPart(const std::string& name) {
    const Part part = Find(name);
    return part.drawn ? *part.drawn : PlaceOf(part.window);
}

std::string ProgramTest::Title() {
    if (const HWND dialog = program.TopDialog()) {
        return ToUtf8(WindowText(dialog));
    }
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

std::string ProgramTest::Tabs() {
    return program.Ask([](CVelmFrame& frame) {
        Texts tabs;
        for (std::size_t i = 0; i < frame.Panel().TabCount(); ++i) {
            const CVelmDrawnButton& tab = frame.Panel().TabButton(i);
            tabs.push_back(tab.IsSelected() ? "[" + ToUtf8(tab.Text()) + "]" : ToUtf8(tab.Text()));
        }
        return Join(tabs);
    });
}

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
