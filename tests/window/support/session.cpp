#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>

#include "app/clipboard.h"
#include "app/display_scale.h"
#include "formats/decimal_format.h"
#include "resource.h"
#include "support/program_test.h"
#include "support/table.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

constexpr UINT_PTR COMMIT_TIMER = 1;

const std::map<std::string, std::uint32_t> FORMATS = {
    {"decimal", FMT_DECIMAL}, {"currency", FMT_CURRENCY}, {"hex", FMT_HEX},           {"octal", FMT_OCTAL},
    {"binary", FMT_BINARY},   {"date", FMT_DATE},         {"datetime", FMT_DATETIME}, {"compound", FMT_COMPOUND}};

const std::map<std::string, WORD> KEYS = {
    {"Tab", VK_TAB},       {"Enter", VK_RETURN},  {"Escape", VK_ESCAPE}, {"Delete", VK_DELETE}, {"Back", VK_BACK},
    {"Left", VK_LEFT},     {"Right", VK_RIGHT},   {"Up", VK_UP},         {"Down", VK_DOWN},     {"PageUp", VK_PRIOR},
    {"PageDown", VK_NEXT}, {"Insert", VK_INSERT}, {"Space", VK_SPACE},   {"F1", VK_F1},         {"F4", VK_F4},
    {"Shift", VK_SHIFT},   {"Ctrl", VK_CONTROL},  {"Alt", VK_MENU}};

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

/// "title (category): name|identifier|text, ...; m*3.28+0=ft, m{x+1|x-1}ft", with marks behind items: -hidden, -output.
std::string Describe(const CVelmDocument* loaded) {
    if (loaded == nullptr) {
        return "nothing";
    }
    const CVelmDocument& document = *loaded;
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

std::string YesNo(bool is) {
    return is ? "yes" : "no";
}

}  // namespace

/// What stands behind a verb.
struct ProgramTest::Said {
    std::string operator[](std::size_t i) const { return Split(rest, " ").at(i); }
    std::string Behind() const { return rest.substr(std::min(rest.size(), (*this)[0].size() + 1)); }
    int Row() const { return std::stoi(rest); }
    int Id() const { return NumberOf((*this)[0]); }
    CVelmString Name() const { return FromUtf8((*this)[0]); }

    std::string rest;
};

std::map<std::string, std::function<void(const ProgramTest::Said&)>> ProgramTest::Acts() {
    using W = const Said&;
    return {
        {"start", [&](W) { EXPECT_TRUE(program.Start()); }},
        {"close", [&](W) { EXPECT_TRUE(program.Close()); }},
        {"file", [&](W w) { SaveFile(w.rest); }},
        {"recent", [&](W w) { StoreRecent(w.rest); }},
        {"bytes", [&](W w) { WriteBytes(program, w.Name(), w.Behind()); }},
        {"remember", [&](W w) { remembered_ = ReadBytes(program, FromUtf8(w.rest)); }},
        {"touch", [&](W w) { Document().Touch(FromUtf8(w.rest)); }},
        {"rename", [&](W w) { Document().GetItem(0)->name = FromUtf8(w.rest); }},
        {"store", [&](W w) { Item(w.Row()).valueText = FromUtf8(w.Behind()); }},
        {"clear", [&](W w) { Item(w.Row()).state = STATE_NONE; }},
        {"end-session", [&](W w) { SendMessageW(program.Frame(), WM_ENDSESSION, w.rest == "yes" ? TRUE : FALSE, 0); }},
        {"do", [&](W w) { program.Command(w.Id()); }},
        {"type", [&](W w) { program.Type(w.rest); }},
        {"press", [&](W w) { Press(w.rest); }},
        {"enter", [&](W w) { Enter(w.rest); }},
        {"paste", [&](W w) { Paste(w.rest); }},
        {"accept", [&](W) { TapPanel("accept"); }},
        {"restore", [&](W) { TapPanel("restore"); }},
        {"tab", [&](W w) { TapPanel(w.rest); }},
        {"pick", [&](W w) { Pick(w.rest); }},
        {"wait", [&](W) { WaitForCommit(); }},
        {"row", [&](W w) { TapRow(w.Row()); }},
        {"give", [&](W w) { GiveText(w.rest); }},
        {"allow", [&](W w) { AllowNamed(w.rest); }},
        {"unselect", [&](W w) { Unselect(w.Row()); }},
        {"compound", [&](W w) { SetParts(w.Row(), w.Behind()); }},
        {"focus", [&](W w) { Focus(w.rest == "list" ? program.List() : program.Panel()); }},
        {"context", [&](W) { PostMessageW(program.Focus(), WM_CONTEXTMENU, 0, -1); }},
        {"menu", [&](W w) { EXPECT_TRUE(program.Choose(w.rest)); }},
        {"lines", [&](W w) { ResizeList(240, 21 * w.Row()); }},
        {"scroll", [&](W w) { SendMessageW(program.List(), WM_VSCROLL, static_cast<WPARAM>(w.Row()), 0); }},
        {"wheel", [&](W w) { program.Wheel(w.Row()); }},
        {"fill",
         [&](W w) {
             Dialog().Fill({{w.Id(), w.Behind()}});
         }},
        {"choose", [&](W w) { Dialog().Choose(w.Id(), std::stoi(w[1])); }},
        {"click", [&](W w) { Dialog().Click(w.Id()); }},
        {"go", [&](W w) { Dialog().Focus(w.Id()); }},
        {"do-here", [&](W w) { Dialog().Command(w.Id()); }},
        {"select", [&](W w) { Dialog().SelectRow(IDC_LIST, w.Row()); }},
        {"tap", [&](W w) { Dialog().TapRow(IDC_LIST, w.Row()); }},
        {"tick", [&](W w) { Dialog().TickRow(IDC_LIST, w.Row(), !Dialog().IsTicked(IDC_LIST, w.Row())); }},
        {"ok", [&](W) { EXPECT_TRUE(Dialog().Ok()); }},
        {"cancel", [&](W) { EXPECT_TRUE(Dialog().Cancel()); }},
        {"leave", [&](W w) { EXPECT_TRUE(Dialog().EndsWith(KEYS.at(w.rest))); }},
    };
}

std::map<std::string, std::function<std::string(const ProgramTest::Said&)>> ProgramTest::Looks() {
    using W = const Said&;
    return {
        {"title", [&](W) { return Title(); }},
        {"rows", [&](W) { return Rows(); }},
        {"entry", [&](W) { return Entry(); }},
        {"list", [&](W) { return ListState(); }},
        {"tabs", [&](W) { return Tabs(); }},
        {"part", [&](W) { return Part(); }},
        {"clipboard", [&](W) { return ToUtf8(GetClipboardText(program.Frame()).value_or(u"")); }},
        {"saved", [&](W w) { return Describe(LoadFile(program, FromUtf8(w.rest)).get()); }},
        {"restamped", [&](W w) { return YesNo(LoadFile(program, FromUtf8(w.rest))->updatedText != u"yesterday"); }},
        {"unchanged", [&](W w) { return YesNo(ReadBytes(program, FromUtf8(w.rest)) == remembered_); }},
        {"parts", [&](W w) { return Parts(w.Row()); }},
        {"caption", [&](W) { return Dialog().Caption(); }},
        {"text", [&](W w) { return Shortened(Dialog().Text(w.Id())); }},
        {"shown", [&](W w) { return YesNo(Dialog().IsVisible(w.Id())); }},
        {"focused", [&](W w) { return YesNo(Dialog().GetsFocus(w.Id())); }},
        {"checked", [&](W w) { return YesNo(Dialog().IsChecked(w.Id())); }},
        {"ticked", [&](W w) { return YesNo(Dialog().IsTicked(IDC_LIST, w.Row())); }},
        {"entries", [&](W w) { return Join(Dialog().Entries(w.Id())); }},
        {"table", [&](W) { return Join(Dialog().Rows(IDC_LIST)); }},
        {"fields", [&](W) { return Fields(); }},
    };
}

/// Acts that have an answer.
std::map<std::string, std::function<std::string(const ProgramTest::Said&)>> ProgramTest::Questions() {
    using W = const Said&;
    return {
        {"open", [&](W w) { return DialogDriver(program, Over(w.Id())).Caption(); }},
        {"ask", [&](W w) { return Ask(Over(w.Id()), NumberOf(w.rest == w[0] ? "OK" : w[1])); }},
        {"answer", [&](W w) { return Ask(program.WaitForDialog(), w.Id()); }},
        {"words", [&](W) { return program.WaitForMenu().value().Words(); }},
        {"formats", [&](W w) { return FormatMenu(w.Row()); }},
    };
}

std::string ProgramTest::Do(const std::string& acts) {
    std::string seen;
    for (const std::string& act : Split(acts, "; ")) {
        if (program.IsRunning()) {
            program.Settle();  // what was begun before
            // From now on the panel's timer ticks when an act says so; a test of its own has the real ticks.
            program.Ask([](CVelmFrame& frame) { KillTimer(frame.Panel().Handle(), COMMIT_TIMER); });
        }
        const std::string verb = act.substr(0, act.find(' '));
        const Said words{Spoken(act.substr(std::min(act.size(), verb.size() + 1)))};
        auto looks = Looks();
        looks.merge(Questions());
        if (const auto look = looks.find(verb); look != looks.end()) {
            seen = look->second(words);
            continue;
        }
        Acts().at(verb)(words);
        if (program.IsRunning()) {
            program.Settle();
            seen = Entry();
        }
    }
    return seen;
}

void ProgramTest::Play(const std::vector<Step>& steps, const std::function<std::string()>& look) {
    for (const Step& step : steps) {
        SCOPED_TRACE(step.act + "  " + step.why);
        const std::string seen = Do(step.act);
        const std::string last = Split(step.act, "; ").back();
        if (step.seen && (look || Looks().contains(last.substr(0, last.find(' '))))) {
            EXPECT_BECOMES(look ? look() : Do(last), Spoken(*step.seen));
        } else if (step.seen) {
            EXPECT_EQ(seen, Spoken(*step.seen));
        }
        if (HasFatalFailure() || HasNonfatalFailure()) {
            return;  // what follows builds on it
        }
    }
}

/// "Length = meters|m, feet|ft|3.28084" or "Tip.cal = Bill|bill, Tip|tip|bill * 0.15"
void ProgramTest::SaveFile(const std::string& text) {
    const Texts parts = Split(text, " = ");
    const bool calculation = parts[0].ends_with(".cal");
    std::vector<std::array<CVelmString, 3>> items;
    for (const std::string& item : Split(parts[1], ", ")) {
        const Texts fields = Split(item + "||", "|");
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
}

void ProgramTest::StoreRecent(const std::string& names) {
    std::vector<CVelmString> list;
    for (const std::string& name : Split(names, ", ")) {
        list.push_back(FromUtf8(name));
    }
    program.StoreRecentFiles(list);
}

/// A key, with "Shift+" and the like before it.
void ProgramTest::Press(const std::string& name) {
    const Texts keys = Split(name, "+");
    const auto code = [](const std::string& key) { return key.size() == 1 ? static_cast<WORD>(key[0]) : KEYS.at(key); };
    program.Key(code(keys.back()), keys.size() > 1 ? code(keys[0]) : WORD{0});
}

void ProgramTest::Focus(HWND window) {
    program.Ask([window](CVelmFrame&) { SetFocus(window); });
}

void ProgramTest::Enter(const std::string& text) {
    Focus(program.Panel());
    SendMessageW(program.Focus(), EM_SETSEL, 0, -1);
    program.Key(VK_DELETE);
    program.Type(text);
}

void ProgramTest::Paste(const std::string& text) {
    PutOnClipboard(FromUtf8(text));
    program.Command(ID_PASTE);
}

/// The accept or restore button or the tab of that caption.
void ProgramTest::TapPanel(const std::string& name) {
    program.Tap(program.Panel(), program.Ask([&](CVelmFrame& frame) {
        const CVelmValuePanel& panel = frame.Panel();
        if (name == "accept" || name == "restore") {
            return (name == "accept" ? panel.AcceptButton() : panel.RestoreButton()).Rectangle();
        }
        int tab = 0;
        while (tab + 1 < panel.TabCount() && ToUtf8(panel.TabButton(tab).Text()) != name) {
            ++tab;
        }
        return panel.TabButton(tab).Rectangle();
    }));
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

void ProgramTest::GiveText(const std::string& text) {
    double value = 0.0;
    const int row = program.Ask([&](CVelmFrame& frame) {
        frame.Document()->currentItem->format.ParseValueText(FromUtf8(text), frame.Program().context, value);
        return frame.List().Selected();
    });
    Give(row, value);
}

/// "1 hex decimal": the row, then the formats, first of them the one that it is typed and shown in.
void ProgramTest::AllowNamed(const std::string& text) {
    const Texts words = Split(text, " ");
    std::uint32_t formats = 0;
    for (std::size_t i = 1; i < words.size(); ++i) {
        formats |= FORMATS.at(words[i]);
    }
    Allow(std::stoi(words[0]), formats, FORMATS.at(words[1]));
}

/// As in a file whose input format is none of those allowed.
void ProgramTest::Unselect(int row) {
    Item(row).format.inputFormat = 0;
    Select(row);
}

/// "1 ft, 12 in"
void ProgramTest::SetParts(int row, const std::string& text) {
    CVelmCompoundParts parts{};
    const Texts texts = Split(text, ", ");
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::size_t space = texts[i].find(' ');
        parts[i] = {FromUtf8(texts[i].substr(space + 1)), std::stod(texts[i])};
    }
    Item(row).format.compoundParts = parts;
    Allow(row, FMT_DECIMAL | FMT_COMPOUND, FMT_COMPOUND);
    Focus(program.Panel());
}

std::string ProgramTest::Parts(int row) {
    Texts parts;
    for (const CVelmCompoundPart& part : Item(row).format.compoundParts) {
        parts.push_back(ToUtf8(FormatDecimal(part.factor, false) + (part.label.empty() ? u"" : u" ") + part.label));
    }
    return Join(parts);
}

/// Gives a command to the dialog on top, or to the frame, and waits for the dialog or message box that it opens.
HWND ProgramTest::Over(int command) {
    const std::vector<HWND> dialogs = ThreadWindows(program.Thread(), L"#32770");
    if (dialogs.empty()) {
        program.Command(command);
        return program.WaitForDialog();
    }
    Dialog().Command(command);
    return WaitForDialog(program.Thread(), dialogs.front());
}

/// Presses a button of a message box; what it said, in one line.
std::string ProgramTest::Ask(HWND box, int button) {
    const std::string words = OpenMessageBox(box).Words();
    EXPECT_TRUE(OpenMessageBox(box).Press(button)) << words;
    program.Settle();
    return Shortened(std::regex_replace(words, std::regex("\n"), "\\n"));
}

/// $FOLDER stands for the data folder.
std::string ProgramTest::Shortened(std::string text) const {
    const std::string folder = ToUtf8(program.DataFolder());
    const std::size_t at = text.find(folder);
    return at == std::string::npos ? text : text.replace(at, folder.size(), "$FOLDER");
}

std::string ProgramTest::FormatMenu(int row) {
    TapFormatButton(row);
    return program.WaitForMenu().value().Words();
}

/// The boxes of a conversion that are visible: "FACTOR 3.28084, OFFSET 0".
std::string ProgramTest::Fields() {
    const DialogDriver dialog = Dialog();
    Texts fields;
    for (const std::string name : {"FACTOR", "OFFSET", "FORWARD", "REVERSE"}) {
        const std::string text = dialog.Text(NumberOf(name));
        if (dialog.IsVisible(NumberOf(name))) {
            fields.push_back(name + (text.empty() ? "" : " ") + text);
        }
    }
    return Join(fields);
}

}  // namespace velm::test
