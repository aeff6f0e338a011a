#include "support/program_test.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <regex>
#include <set>

#include "app/clipboard.h"
#include "app/display_scale.h"
#include "datetime/date_time.h"
#include "formats/decimal_format.h"
#include "resource.h"
#include "support/table.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

constexpr UINT_PTR COMMIT_TIMER = 1;

/// An act that shows nothing of its own shows what the value entry panel shows.
const std::string SHOW_ENTRY = "entry";

/// What may be asked again.
const std::set<std::string> QUERIES = {"title", "rows", "entry", "list", "tabs", "caption", "clipboard", "table"};

const std::map<std::string, std::uint32_t> FORMATS = {
    {"decimal", FMT_DECIMAL}, {"currency", FMT_CURRENCY}, {"hex", FMT_HEX},           {"octal", FMT_OCTAL},
    {"binary", FMT_BINARY},   {"date", FMT_DATE},         {"datetime", FMT_DATETIME}, {"compound", FMT_COMPOUND}};

std::string Join(const Texts& texts) {
    std::string words;
    for (const std::string& text : texts) {
        words += (words.empty() ? "" : ", ") + text;
    }
    return words;
}

/// Repeats what stands in braces: "{n*128}".
std::string Spoken(const std::string& text) {
    std::smatch match;
    if (!std::regex_search(text, match, std::regex("\\{(.)\\*(\\d+)\\}"))) {
        return text;
    }
    return match.prefix().str() + std::string(std::stoul(match[2]), match[1].str()[0]) + Spoken(match.suffix().str());
}

/// A control's or command's number by its name without "IDC_" or "ID_".
int NumberOf(const std::string& name) {
    static const std::map<std::string, int> NUMBERS = [] {
        std::map<std::string, int> numbers = {
            {"QUICK_NEXT", ID_QUICK_FILE_FIRST + 1}, {"OK", IDOK}, {"CANCEL", IDCANCEL}, {"YES", IDYES}, {"NO", IDNO}};
        std::ifstream header(VELMORA_RESOURCES);
        for (std::string define, key, value; header >> define;) {
            if (define == "#define" && header >> key >> value && key.starts_with("ID")) {
                numbers[key.substr(key.find('_') + 1)] = std::stoi(value, nullptr, 0);
            }
        }
        return numbers;
    }();
    return NUMBERS.at(name);
}

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

/// A key with "Shift+" and the like before it.
void Press(RunningProgram& program, std::string name) {
    static const std::map<std::string, WORD> KEYS = {
        {"Tab", VK_TAB},      {"Enter", VK_RETURN}, {"Escape", VK_ESCAPE}, {"Delete", VK_DELETE},
        {"Back", VK_BACK},    {"Left", VK_LEFT},    {"Right", VK_RIGHT},   {"Up", VK_UP},
        {"Down", VK_DOWN},    {"PageUp", VK_PRIOR}, {"PageDown", VK_NEXT}, {"Insert", VK_INSERT},
        {"Space", VK_SPACE},  {"F1", VK_F1},        {"F4", VK_F4},         {"Shift", VK_SHIFT},
        {"Ctrl", VK_CONTROL}, {"Alt", VK_MENU}};
    const std::size_t plus = name.find('+');
    const WORD held = plus == std::string::npos ? 0 : KEYS.at(name.substr(0, plus));
    name.erase(0, plus == std::string::npos ? 0 : plus + 1);
    program.Key(name.size() == 1 ? static_cast<WORD>(name[0]) : KEYS.at(name), held);
}

/// "title (category): name|identifier|text, ...; m*3.28+0=ft, m{x+1|x-1}ft", with marks behind items: -hidden, -output.
std::string Describe(const CVelmDocument& document) {
    CVelmString words = document.title + u" (" + document.category + u"):";
    for (const auto& item : document.items) {
        words += (words.back() == u':' ? u" " : u", ") + item->name + u"|" + item->identifier + u"|" + item->valueText;
        words += (item->shown == 0 ? u" -hidden" : u"");
        words += item->IsOutput() ? u" -output" : u"";
    }
    if (document.GetKind() != KIND_CONVERSION) {
        return ToUtf8(words);
    }
    for (const auto& conversion : static_cast<const CVelmConversionDoc&>(document).conversions) {
        words += u"; " + conversion->unit1->ShortName();
        words += conversion->IsFormula() ? u"{" + conversion->forwardFormula + u"|" + conversion->reverseFormula + u"}"
                                         : u"*" + FormatDecimal(conversion->factor, false) + u"+" +
                                               FormatDecimal(conversion->offset, false) + u"=";
        words += conversion->unit2->ShortName();
    }
    return ToUtf8(words);
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

std::string ProgramTest::Do(const std::string& acts) {
    std::string seen;
    for (const std::string& act : Split(acts, "; ")) {
        if (program.IsRunning()) {
            program.Settle();  // what was begun before
            // From now on the panel's timer ticks when an act says so; a test of its own has the real ticks.
            program.Ask([](CVelmFrame& frame) { KillTimer(frame.Panel().Handle(), COMMIT_TIMER); });
        }
        const std::size_t space = std::min(act.find(' '), act.size());
        const std::map<std::string, Verb> verbs = Verbs();
        const auto verb = verbs.find(act.substr(0, space));
        if (verb == verbs.end()) {
            ADD_FAILURE() << "nobody knows how to " << act;
            return {};
        }
        seen = verb->second(Spoken(act.substr(std::min(space + 1, act.size()))));
        if (program.IsRunning()) {
            program.Settle();
            seen = seen == SHOW_ENTRY ? Entry() : seen;
        }
    }
    return seen;
}

std::map<std::string, ProgramTest::Verb> ProgramTest::Verbs() {
    const auto tap = [this](auto button) {
        program.Tap(program.Panel(), program.Ask([&](CVelmFrame& frame) { return button(frame.Panel()).Rectangle(); }));
        return SHOW_ENTRY;
    };
    const auto act = [](auto what) {
        return [what](const std::string& rest) {
            what(rest);
            return SHOW_ENTRY;
        };
    };
    std::map<std::string, Verb> verbs = {
        {"entry", [this](const std::string&) { return Entry(); }},
        {"title", [this](const std::string&) { return Title(); }},
        {"rows", [this](const std::string&) { return Rows(); }},
        {"list", [this](const std::string&) { return ListState(); }},
        {"tabs", [this](const std::string&) { return Tabs(); }},
        {"type", act([this](const std::string& text) { program.Type(text); })},
        {"press", act([this](const std::string& key) { Press(program, key); })},
        {"wait", act([this](const std::string&) { WaitForCommit(); })},
        {"pick", act([this](const std::string& date) { Pick(date); })},
        {"row", act([this](const std::string& row) { TapRow(std::stoi(row)); })},
        {"do", act([this](const std::string& command) { program.Command(NumberOf(command)); })},
        {"give", act([this](const std::string& text) {
             double value = 0.0;
             const int row = program.Ask([&](CVelmFrame& frame) {
                 frame.Document()->currentItem->format.ParseValueText(FromUtf8(text), frame.Program().context, value);
                 return frame.List().Selected();
             });
             Give(row, value);
         })},
        {"clear", act([this](const std::string& row) {
             Item(std::stoi(row)).state = STATE_NONE;
             Select(std::stoi(row));
         })},
        {"allow", act([this](const std::string& rest) {
             const Texts words = Split(rest, " ");
             std::uint32_t formats = 0;
             for (std::size_t i = 1; i < words.size(); ++i) {
                 formats |= FORMATS.at(words[i]);
             }
             Allow(std::stoi(words[0]), formats, FORMATS.at(words[1]));
         })},
        {"compound", act([this](const std::string& rest) {
             CVelmCompoundParts parts{};
             const Texts texts = Split(rest.substr(2), ", ");
             for (std::size_t i = 0; i < texts.size(); ++i) {
                 const Texts words = Split(texts[i], " ");
                 parts[i] = {FromUtf8(words[1]), std::stod(words[0])};
             }
             Item(std::stoi(rest)).format.compoundParts = parts;
             Allow(std::stoi(rest), FMT_DECIMAL | FMT_COMPOUND, FMT_COMPOUND);
             program.Ask([](CVelmFrame& frame) { SetFocus(frame.Panel().Handle()); });
         })},
        {"clipboard", [this](const std::string&) { return ToUtf8(GetClipboardText(program.Frame()).value_or(u"")); }},
        {"context", act([this](const std::string&) {
             PostMessageW(program.Focus(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(program.Focus()), -1);
         })},
        {"rename", act([this](const std::string& name) {
             Document().GetItem(0)->name = FromUtf8(name);
             Document().Touch();
         })},
        {"end-session", act([this](const std::string& yes) {
             EXPECT_EQ(SendMessageW(program.Frame(), WM_QUERYENDSESSION, 0, 0), TRUE);
             SendMessageW(program.Frame(), WM_ENDSESSION, yes == "yes" ? TRUE : FALSE, 0);
         })},
        {"part", [this](const std::string&) { return Part(); }},
        {"focus", act([this](const std::string& where) {
             program.Ask([&](CVelmFrame& frame) {
                 SetFocus(where == "list" ? frame.List().Handle() : frame.Panel().Handle());
             });
         })},
        {"enter", act([this](const std::string& text) {
             program.Ask([&](CVelmFrame& frame) { SetFocus(frame.Panel().Handle()); });
             SendMessageW(program.Focus(), EM_SETSEL, 0, -1);
             program.Key(VK_DELETE);
             program.Type(text);
         })},
        {"paste", act([this](const std::string& text) {
             PutOnClipboard(FromUtf8(text));
             program.Command(ID_PASTE);
         })},
        {"accept", [tap](const std::string&) { return tap([](const auto& panel) { return panel.AcceptButton(); }); }},
        {"restore", [tap](const std::string&) { return tap([](const auto& panel) { return panel.RestoreButton(); }); }},
        {"tab", [tap](const std::string& caption) {
             return tap([&](const CVelmValuePanel& panel) {
                 int tab = 0;
                 while (tab + 1 < panel.TabCount() && ToUtf8(panel.TabButton(tab).Text()) != caption) {
                     ++tab;
                 }
                 return panel.TabButton(tab);
             });
         }}};
    verbs.merge(FileVerbs());
    verbs.merge(DialogVerbs());
    return verbs;
}

std::map<std::string, ProgramTest::Verb> ProgramTest::FileVerbs() {
    // "file Length = meters|m, feet|ft|3.28084" or "file Tip.cal = Bill|bill, Tip|tip|bill * 0.15"
    const auto save = [this](const std::string& rest) {
        const Texts parts = Split(rest, " = ");
        const bool calculation = parts[0].ends_with(".cal");
        std::vector<std::array<CVelmString, 3>> items;
        for (const std::string& text : Split(parts[1], ", ")) {
            const Texts fields = Split(text + "||", "|");
            items.push_back({FromUtf8(fields[0]), FromUtf8(fields[1]), FromUtf8(fields[2])});
        }
        std::vector<UnitFactor> units;
        std::vector<CalculationItem> inputs;
        for (const auto& [name, identifier, third] : items) {
            inputs.push_back({name, identifier, third});
            units.push_back({name, third.empty() || calculation ? 1.0 : std::stod(ToUtf8(third)), identifier});
        }
        if (calculation) {
            SaveCalculationFile(program, FromUtf8(parts[0].substr(0, parts[0].size() - 4)), inputs);
        } else {
            SaveConversionFile(program, FromUtf8(parts[0]), units);
        }
        return parts[0];
    };
    return {
        {"file", save},
        {"recent",
         [this](const std::string& names) {
             std::vector<CVelmString> list;
             for (const std::string& name : Split(names, ", ")) {
                 list.push_back(FromUtf8(name));
             }
             program.StoreRecentFiles(list);
             return names;
         }},
        {"start", [this](const std::string&) { return program.Start() ? SHOW_ENTRY : "no start"; }},
        {"close", [this](const std::string&) { return program.Close() ? "closed" : "open"; }},
        {"saved",
         [this](const std::string& name) {
             const auto document = LoadFile(program, FromUtf8(name));
             return document == nullptr ? "nothing" : Describe(*document);
         }},
        {"stamped",
         [this](const std::string& name) {
             const std::string text = ToUtf8(LoadFile(program, FromUtf8(name))->updatedText);
             return text == "rates of yesterday" ? text : "anew";
         }},
        {"touch",
         [this](const std::string& text) {
             Document().Touch(FromUtf8(text));
             return text;
         }},
        {"bytes",
         [this](const std::string& rest) {
             const std::size_t space = rest.find(' ');
             WriteBytes(program, FromUtf8(rest.substr(0, space)), rest.substr(space + 1));
             return rest;
         }},
        {"remember",
         [this](const std::string& name) {
             remembered_ = ReadBytes(program, FromUtf8(name));
             return name;
         }},
        {"unchanged",
         [this](const std::string& name) { return ReadBytes(program, FromUtf8(name)) == remembered_ ? "yes" : "no"; }},
        {"store",
         [this](const std::string& rest) {
             Item(std::stoi(rest)).valueText = FromUtf8(rest.substr(std::min<std::size_t>(2, rest.size())));
             return rest;
         }},
        {"parts",
         [this](const std::string& row) {
             Texts parts;
             for (const CVelmCompoundPart& part : Item(std::stoi(row)).format.compoundParts) {
                 parts.push_back(
                     ToUtf8(FormatDecimal(part.factor, false) + (part.label.empty() ? u"" : u" ") + part.label));
             }
             return Join(parts);
         }},
    };
}

std::string ProgramTest::OneLine(std::string text) const {
    const std::string folder = ToUtf8(program.DataFolder());
    if (const std::size_t at = text.find(folder); at != std::string::npos) {
        text.replace(at, folder.size(), "$FOLDER");
    }
    return std::regex_replace(text, std::regex("\n"), "\\n");
}

std::string ProgramTest::MenuWords() {
    const auto menu = program.WaitForMenu();
    return menu ? menu->Words() : "no menu";
}

HWND ProgramTest::TopDialog() const {
    const std::vector<HWND> dialogs = ThreadWindows(program.Thread(), L"#32770");
    return dialogs.empty() ? nullptr : dialogs.front();
}

std::map<std::string, ProgramTest::Verb> ProgramTest::DialogVerbs() {
    const auto command = [this](const std::string& name) {
        const HWND below = TopDialog();
        if (below == nullptr) {
            program.Command(NumberOf(name));
        } else {
            Dialog().Command(NumberOf(name));
        }
        return below;
    };
    const auto yes = [](bool is) { return std::string(is ? "yes" : "no"); };
    return {
        {"open",
         [=, this](const std::string& name) {
             const HWND below = command(name);
             return DialogDriver(program, WaitForDialog(program.Thread(), below)).Caption();
         }},
        {"ask",
         [=, this](const std::string& rest) {
             const Texts words = Split(rest + " OK", " ");
             const OpenMessageBox box(WaitForDialog(program.Thread(), command(words[0])));
             const std::string said = box.Words();
             EXPECT_TRUE(box.Press(NumberOf(words[1]))) << said;
             return OneLine(said);
         }},
        {"answer", [this](const std::string& button) { return OneLine(program.Answer(NumberOf(button))); }},
        {"ok", [this](const std::string&) { return Dialog().Ok() ? SHOW_ENTRY : "stays"; }},
        {"cancel", [this](const std::string&) { return Dialog().Cancel() ? SHOW_ENTRY : "stays"; }},
        {"leave",
         [this](const std::string& key) {
             return Dialog().EndsWith(key == "Enter" ? VK_RETURN : VK_ESCAPE) ? SHOW_ENTRY : "stays";
         }},
        {"do-here",
         [this](const std::string& name) {
             Dialog().Command(NumberOf(name));
             return name;
         }},
        {"fields",
         [this](const std::string&) {
             const DialogDriver dialog = Dialog();
             Texts fields;
             for (const std::string name : {"FACTOR", "OFFSET", "FORWARD", "REVERSE"}) {
                 const std::string text = dialog.Text(NumberOf(name));
                 if (dialog.IsVisible(NumberOf(name))) {
                     fields.push_back(name + (text.empty() ? "" : " ") + text);
                 }
             }
             return Join(fields);
         }},
        {"caption", [this](const std::string&) { return Dialog().Caption(); }},
        {"fill",
         [this](const std::string& rest) {
             const std::size_t space = std::min(rest.find(' '), rest.size());
             Dialog().Fill({{NumberOf(rest.substr(0, space)), rest.substr(std::min(space + 1, rest.size()))}});
             return rest;
         }},
        {"text", [this](const std::string& name) { return Dialog().Text(NumberOf(name)); }},
        {"shown", [=, this](const std::string& name) { return yes(Dialog().IsVisible(NumberOf(name))); }},
        {"focused", [=, this](const std::string& name) { return yes(Dialog().GetsFocus(NumberOf(name))); }},
        {"go",
         [this](const std::string& name) {
             Dialog().Focus(NumberOf(name));
             return name;
         }},
        {"entries", [this](const std::string& name) { return Join(Dialog().Entries(NumberOf(name))); }},
        {"choose",
         [this](const std::string& rest) {
             const Texts words = Split(rest, " ");
             Dialog().Choose(NumberOf(words[0]), std::stoi(words[1]));
             return rest;
         }},
        {"click",
         [=, this](const std::string& name) {
             Dialog().Click(NumberOf(name));
             return yes(Dialog().IsChecked(NumberOf(name)));
         }},
        {"checked", [=, this](const std::string& name) { return yes(Dialog().IsChecked(NumberOf(name))); }},
        {"table",
         [this](const std::string&) {
             const DialogDriver dialog = Dialog();
             Texts rows = dialog.Rows(IDC_LIST);
             for (std::size_t i = 0; i < rows.size(); ++i) {
                 const std::string count = dialog.RowText(IDC_LIST, static_cast<int>(i), 1);
                 rows[i] += (count.empty() ? "" : " ") + count;
             }
             return Join(rows);
         }},
        {"select",
         [this](const std::string& row) {
             Dialog().SelectRow(IDC_LIST, std::stoi(row));
             return row;
         }},
        {"tap",
         [this](const std::string& row) {
             Dialog().TapRow(IDC_LIST, std::stoi(row));
             return row;
         }},
        {"tick",
         [this](const std::string& row) {
             const DialogDriver dialog = Dialog();
             dialog.TickRow(IDC_LIST, std::stoi(row), !dialog.IsTicked(IDC_LIST, std::stoi(row)));
             return row;
         }},
        {"ticked", [=, this](const std::string& row) { return yes(Dialog().IsTicked(IDC_LIST, std::stoi(row))); }},
        {"formats",
         [this](const std::string& row) {
             TapFormatButton(std::stoi(row));
             return MenuWords();
         }},
        {"words", [this](const std::string&) { return MenuWords(); }},
        {"menu", [this](const std::string& entry) { return program.Choose(entry) ? SHOW_ENTRY : "no entry"; }},
    };
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
        const std::string seen = Do(step.act);
        const std::string last = Split(step.act, "; ").back();
        if (step.seen && (look || QUERIES.contains(last))) {
            EXPECT_BECOMES(look ? look() : Do(last), Spoken(*step.seen));
        } else if (step.seen) {
            EXPECT_EQ(seen, Spoken(*step.seen));
        }
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
