#include <algorithm>
#include <cstring>
#include <fstream>
#include <map>
#include <regex>

#include "formats/decimal_format.h"
#include "formats/format_table.h"
#include "platform/wide_text_win32.h"
#include "pocketpc/command_bar.h"
#include "resource.h"
#include "support/program_test.h"
#include "support/sample_documents.h"
#include "support/table.h"
#include "support/waiting.h"
#include "ui/clipboard.h"
#include "ui/display_scale.h"
#include "version.h"

namespace velm::test {
namespace {

constexpr UINT_PTR COMMIT_TIMER = 1;

const std::map<std::string, WORD> KEYS = {
    {"Tab", VK_TAB},       {"Enter", VK_RETURN},  {"Escape", VK_ESCAPE}, {"Delete", VK_DELETE}, {"Back", VK_BACK},
    {"Left", VK_LEFT},     {"Right", VK_RIGHT},   {"Up", VK_UP},         {"Down", VK_DOWN},     {"PageUp", VK_PRIOR},
    {"PageDown", VK_NEXT}, {"Insert", VK_INSERT}, {"Space", VK_SPACE},   {"F1", VK_F1},         {"F4", VK_F4},
    {"Shift", VK_SHIFT},   {"Ctrl", VK_CONTROL},  {"Alt", VK_MENU}};

/// Repeats what stands in braces: "{n*128}".
std::string Spoken(const std::string& text) {
    std::smatch match;
    if (!std::regex_search(text, match, std::regex("\\{([^{}*]+)\\*(\\d+)\\}"))) {
        return text;
    }
    std::string repeated;
    for (int times = std::stoi(match[2]); times > 0; --times) {
        repeated += match[1];
    }
    return match.prefix().str() + repeated + Spoken(match.suffix().str());
}

/// What is seen at this scale: "this || and that at the double one" where odd numbers of pixels part them.
std::string Expected(const std::string& words) {
    const Texts both = Split(words, " || ");
    return Spoken(DisplayScale() == 1 ? both.front() : both.back());
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

std::string YesNo(bool is) {
    return is ? "yes" : "no";
}

/// "left,top right,bottom" in pixels of an ordinary screen; one that lies between two of them reads "20.5".
std::string Words(const RECT& area) {
    const auto scaled = [](LONG number) { return static_cast<double>(number) / DisplayScale(); };
    return Print("%g,%g %g,%g", scaled(area.left), scaled(area.top), scaled(area.right), scaled(area.bottom));
}

}  // namespace

/// What stands behind a verb.
struct ProgramTest::Said {
    std::string operator[](std::size_t i) const { return Split(rest, " ").at(i); }
    std::string Behind() const { return rest.substr(std::min(rest.size(), (*this)[0].size() + 1)); }
    int Number(std::size_t i = 0) const { return std::stoi((*this)[i]); }
    int Id() const { return NumberOf((*this)[0]); }
    CVelmString Name() const { return FromUtf8((*this)[0]); }

    std::string rest;
};

std::map<std::string, std::function<void(const ProgramTest::Said&)>> ProgramTest::Acts() {
    using W = const Said&;
    return {
        {"start", [&](W) { EXPECT_TRUE(program.Start()); }},
        {"close", [&](W) { EXPECT_TRUE(program.Close()); }},
        {"exit", [&](W) { EXPECT_TRUE(program.Close(ID_EXIT)); }},
        {"file", [&](W w) { SaveFile(w.rest); }},
        {"recent", [&](W w) { StoreRecent(w.rest); }},
        {"bytes", [&](W w) { WriteBytes(program, w.Name(), w.Behind()); }},
        {"serve", [&](W w) { Serve(w[0], InFull(w.Behind())); }},
        {"remember", [&](W w) { remembered_ = ReadBytes(program, FromUtf8(w.rest)); }},
        {"lock",  // nobody else can open the file
         [&](W w) {
             const CVelmString path = program.DataFolder() + w.Name();
             locked_ = CreateFileW(Wide(path), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
         }},
        {"unlock", [&](W) { EXPECT_TRUE(CloseHandle(locked_)); }},
        {"library",
         [&](W) { CopyFileW(TEXT(VELMORA_HTMLVIEW), Wide(program.ProgramFolder() + u"htmlview.dll"), FALSE); }},
        {"touch", [&](W w) { Document().Touch(FromUtf8(w.rest)); }},
        {"rename", [&](W w) { Document().GetItem(0)->name = FromUtf8(w.rest); }},
        {"store", [&](W w) { Item(w.Number()).valueText = FromUtf8(w.Behind()); }},
        {"clear", [&](W w) { Item(w.Number()).state = STATE_NONE; }},
        {"end-session", [&](W w) { SendMessageW(program.Frame(), WM_ENDSESSION, w.rest == "yes" ? TRUE : FALSE, 0); }},
        {"do", [&](W w) { program.Command(w.Id()); }},
        {"shut", [&](W) { PostMessageW(program.Frame(), WM_CLOSE, 0, 0); }},
        {"size", [&](W w) { program.Resize(Scaled(w.Number(0)), Scaled(w.Number(1))); }},
        {"type", [&](W w) { program.Type(w.rest); }},
        {"press", [&](W w) { Press(w.rest); }},
        {"enter", [&](W w) { Enter(w.rest); }},
        {"paste", [&](W w) { Paste(w.rest); }},
        {"empty-clipboard", [&](W) { Paste(""); }},
        {"accept", [&](W) { TapPart(program.Panel(), "accept"); }},
        {"restore", [&](W) { TapPart(program.Panel(), "restore"); }},
        {"tab", [&](W w) { TapTab(w.rest); }},
        {"pick", [&](W w) { Pick(w.rest); }},
        {"wait", [&](W) { WaitForCommit(); }},
        {"row", [&](W w) { TapRow(w.Number()); }},
        {"give", [&](W w) { GiveText(w.rest); }},
        {"allow", [&](W w) { Allow(w.Number(), w.Behind()); }},
        {"unselect",  // as in a file whose input format is none of those allowed
         [&](W w) {
             Item(w.Number()).format.inputFormat = 0;
             Select(w.Number());
         }},
        {"compound", [&](W w) { SetParts(w.Number(), w.Behind()); }},
        {"focus", [&](W w) { Focus(Window(w.rest)); }},
        {"context", [&](W) { PostMessageW(program.Focus(), WM_CONTEXTMENU, 0, -1); }},
        {"menu", [&](W w) { EXPECT_TRUE(program.Choose(w.rest)); }},
        {"lines", [&](W w) { ResizeList(240, 21 * w.Number()); }},
        {"list-width", [&](W w) { ResizeList(w.Number(), 100); }},
        {"list-height", [&](W w) { ResizeList(240, w.Number()); }},
        {"scroll", [&](W w) { SendMessageW(program.List(), WM_VSCROLL, static_cast<WPARAM>(w.Number()), 0); }},
        {"wheel", [&](W w) { program.Wheel(w.Number()); }},
        {"tap-at", [&](W w) { program.Tap(Window(w[0]), Scaled(w.Number(1)), Scaled(w.Number(2))); }},
        {"right-tap-at", [&](W w) { program.RightClick(Window(w[0]), w.Number(1), w.Number(2)); }},
        {"pen-up", [&](W w) { program.PenUp(Window(w.rest), 0, 0); }},
        {"drag",  // presses the pen at a place and moves it so far
         [&](W w) {
             program.PenDown(Window(w[0]), w.Number(1), w.Number(2));
             program.PenMove(Window(w[0]), w.Number(1) + w.Number(3), w.Number(2) + w.Number(4));
         }},
        {"fill", [&](W w) { Dialog().Fill(w.Id(), InFull(w.Behind())); }},
        {"choose", [&](W w) { Dialog().Choose(w.Id(), w.Number(1)); }},
        {"click", [&](W w) { Dialog().Send(w.Id(), BM_CLICK); }},
        {"go", [&](W w) { Dialog().Focus(w.Id()); }},
        {"do-here", [&](W w) { Dialog().Command(w.Id()); }},
        {"select", [&](W w) { Dialog().SelectRow(IDC_LIST, w.Number()); }},
        {"tap", [&](W w) { Dialog().TapRow(IDC_LIST, w.Number()); }},
        {"tick", [&](W w) { Dialog().TickRow(IDC_LIST, w.Number(), !Dialog().IsTicked(IDC_LIST, w.Number())); }},
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
        {"label",
         [&](W w) {
             return ToUtf8(program.Ask([&](CVelmFrame& f) { return f.List().Row(w.Number()).NameLabel().text; }));
         }},
        {"place", [&](W w) { return Words(PlaceOfPart(w.rest)); }},
        {"across", [&](W w) { return std::regex_replace(Words(PlaceOfPart(w.rest)), std::regex(",\\d+"), ""); }},
        {"tabs", [&](W) { return Tabs(); }},
        {"part", [&](W) { return Part(); }},
        {"red", [&](W) { return YesNo(IsRed()); }},
        {"tools", [&](W) { return Tools(); }},
        {"focused", [&](W w) { return YesNo(program.Focus() == Window(w.rest)); }},
        {"menus", [&](W) { return std::to_string(ThreadWindows(program.Thread(), L"#32768").size()); }},
        {"clipboard", [&](W) { return ToUtf8(GetClipboardText(program.Frame()).value_or(u"")); }},
        {"saved", [&](W w) { return Describe(LoadFile(program, FromUtf8(w.rest)).get()); }},
        {"restamped", [&](W w) { return YesNo(LoadFile(program, FromUtf8(w.rest))->updatedText != u"yesterday"); }},
        {"unchanged", [&](W w) { return YesNo(ReadBytes(program, FromUtf8(w.rest)) == remembered_); }},
        {"stamp", [&](W) { return ToUtf8(Document().updatedText); }},
        {"exists", [&](W w) { return YesNo(!ReadBytes(program, w.Name()).empty()); }},
        {"parts", [&](W w) { return Parts(w.Number()); }},
        {"stored", [&](W) { return Stored(); }},
        {"caption", [&](W) { return Dialog().Caption(); }},
        {"titles", [&](W) { return "[" + Titles() + "]"; }},
        {"text", [&](W w) { return Shortened(FirstLine(Dialog().Text(w.Id()))); }},
        {"icon", [&](W w) { return YesNo(Dialog().Send(w.Id(), STM_GETICON) != 0); }},
        {"page", [&](W) { return FirstLineOfPage(); }},
        {"shown", [&](W w) { return YesNo(IsWindowVisible(Dialog().Control(w.Id())) != FALSE); }},
        {"checked", [&](W w) { return YesNo(Dialog().Send(w.Id(), BM_GETCHECK) == BST_CHECKED); }},
        {"ticked", [&](W w) { return YesNo(Dialog().IsTicked(IDC_LIST, w.Number())); }},
        {"entries", [&](W w) { return Join(Dialog().Entries(w.Id())); }},
        {"table", [&](W) { return Join(Dialog().Rows(IDC_LIST)); }},
        {"columns",
         [&](W) {
             const auto width = [&](WPARAM i) {
                 return Dialog().Send(IDC_LIST, LVM_GETCOLUMNWIDTH, i) / DisplayScale();
             };
             return std::to_string(width(0)) + " " + std::to_string(width(1));
         }},
    };
}

/// Acts that have an answer.
std::map<std::string, std::function<std::string(const ProgramTest::Said&)>> ProgramTest::Questions() {
    using W = const Said&;
    return {
        {"open", [&](W w) { return DialogDriver(program, Over(w.Id())).Caption(); }},
        {"ask", [&](W w) { return Ask(Over(w.Id()), NumberOf(w.rest == w[0] ? "OK" : w[1])); }},
        {"answer", [&](W w) { return Ask(nullptr, w.Id()); }},
        {"words", [&](W) { return program.WaitForMenu().value().Words(); }},
        {"menu-at",  // the place of the menu that is open, from the frame's corner
         [&](W) {
             program.WaitForMenu();
             RECT menu{};
             RECT frame{};
             GetWindowRect(ThreadWindows(program.Thread(), L"#32768").front(), &menu);
             GetWindowRect(program.Frame(), &frame);
             OffsetRect(&menu, -frame.left, -frame.top);
             return Words(menu).substr(0, Words(menu).find(' '));
         }},
        {"formats",
         [&](W w) {
             TapPart(program.List(), "button" + w.rest);
             return program.WaitForMenu().value().Words();
         }},
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

void ProgramTest::Play(const std::vector<Texts>& lines) {
    for (const Texts& line : lines) {
        SCOPED_TRACE(Join(line, " -> "));
        const std::string seen = Do(line[0]);
        const std::string last = Split(line[0], "; ").back();
        if (line.size() > 1 && Looks().contains(last.substr(0, last.find(' ')))) {
            EXPECT_BECOMES(Do(last), Expected(line[1]));
        } else if (line.size() > 1) {
            EXPECT_EQ(seen, Expected(line[1]));
        }
        if (HasFailure()) {
            return;  // what follows builds on it
        }
    }
}

/// "Length = meters|m, feet|ft|3.28084" or "Tip.cal = Bill|bill, Tip|tip|bill * 0.15"
void ProgramTest::SaveFile(const std::string& text) {
    const Texts parts = Split(text, " = ");
    const bool calculation = parts[0].ends_with(".cal");
    const auto document = CreateDocument(calculation ? KIND_CALCULATION : KIND_CONVERSION, SystemServices());
    document->title = document->fileName = FromUtf8(parts[0].substr(0, parts[0].find(".cal")));
    for (const std::string& words : Split(parts.at(1), ", ")) {
        const Texts fields = Split(words + "||", "|");
        CVelmItem& item = *document->AddItem(CreateItem(calculation ? ITEM_FORMULA : ITEM_VALUE));
        item.name = FromUtf8(fields[0]);
        item.identifier = FromUtf8(fields[1]);
        if (calculation) {
            item.valueText = FromUtf8(fields[2]);
            static_cast<CVelmFormulaItem&>(item).output = fields[2].empty() ? 0 : 1;
        } else if (document->ItemCount() > 1) {
            Join(static_cast<CVelmConversionDoc&>(*document), 0, document->ItemCount() - 1,
                 fields[2].empty() ? 1.0 : std::stod(fields[2]));
        }
    }
    EXPECT_TRUE(document->Save(program.DataFolder())) << text;
}

void ProgramTest::StoreRecent(const std::string& names) {
    program.StoreSettings([&names](CVelmSettings& settings) {
        std::fill(std::begin(settings.openFiles), std::end(settings.openFiles), u'\0');
        char16_t* next = settings.openFiles;
        for (const std::string& name : Split(names, ", ")) {
            next = std::ranges::copy(FromUtf8(name), next).out + 1;
        }
    });
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

/// With no text there is nothing to paste.
void ProgramTest::Paste(const std::string& text) {
    EXPECT_TRUE(WaitUntil([&] { return SetClipboardText(program.Frame(), FromUtf8(text)); }));
    if (text.empty()) {
        EXPECT_TRUE(WaitUntil([&] { return OpenClipboard(program.Frame()) != FALSE; }));
        EmptyClipboard();
        CloseClipboard();
    } else {
        program.Command(ID_PASTE);
    }
}

void ProgramTest::TapPart(HWND window, const std::string& name) {
    program.Tap(window, PlaceOfPart(name));
}

/// The tab of that caption.
void ProgramTest::TapTab(const std::string& caption) {
    program.Tap(program.Panel(), program.Ask([&](CVelmFrame& frame) {
        const CVelmValuePanel& panel = frame.Panel();
        std::size_t tab = 0;
        while (tab + 1 < panel.TabCount() && ToUtf8(panel.TabButton(tab).Text()) != caption) {
            ++tab;
        }
        return panel.TabButton(tab).Rectangle();
    }));
}

void ProgramTest::TapRow(int row) {
    const RECT area = PlaceOfPart("row" + std::to_string(row));
    program.Tap(program.List(), static_cast<int>(area.right) - Scaled(10), static_cast<int>(area.top) + Scaled(6));
    const auto selected = [](CVelmFrame& frame) { return frame.List().Selected(); };
    EXPECT_BECOMES(program.Ask(selected), row);
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
        const HWND picker = date ? program.DatePicker() : program.TimePicker();
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

/// "hex decimal": the formats, first of them the one that the row is typed and shown in.
void ProgramTest::Allow(int row, const std::string& formats) {
    CVelmValueFormat& format = Item(row).format;
    std::uint32_t allowed = 0;
    for (const std::string& name : Split(formats, " ")) {
        allowed |= FindFormat(name)->code;
    }
    format.SetAllowedFormats(allowed);
    format.displayFormat = format.inputFormat = FindFormat(Split(formats, " ")[0])->code;
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
    Allow(row, "compound decimal");
    Focus(program.Panel());
}

std::string ProgramTest::Parts(int row) {
    Texts parts;
    for (const CVelmCompoundPart& part : Item(row).format.compoundParts) {
        parts.push_back(ToUtf8(FormatDecimal(part.factor, false) + (part.label.empty() ? u"" : u" ") + part.label));
    }
    return Join(parts);
}

/// The titles on a dialog's menu bar.
std::string ProgramTest::Titles() {
    const HWND bar = FindWindowExW(Dialog().Window(), nullptr, L"VlCommandBar", nullptr);
    return OpenMenu(nullptr, program.Ask([bar](CVelmFrame&) { return CommandBar_GetMenu(bar); })).Words();
}

HWND ProgramTest::Window(const std::string& name) {
    const std::map<std::string, HWND> windows = Windows();
    const auto window = windows.find(name);
    if (name == "page") {
        return GetWindow(Dialog().Control(IDC_HTML), GW_CHILD);
    }
    return window != windows.end() ? window->second : Dialog().Control(NumberOf(name));
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

/// The record in the registry: how long it is and which texts and numbers lie where in it.
std::string ProgramTest::Stored() {
    const std::vector<std::byte> bytes = program.StoredBytes();
    CVelmString units(bytes.size() / 2, u'\0');
    std::memcpy(units.data(), bytes.data(), 2 * units.size());
    std::string text = std::to_string(bytes.size()) + " bytes";
    for (std::size_t at = 0; (at = units.find_first_not_of(u'\0', at)) != CVelmString::npos;) {
        const CVelmString word = units.substr(at, units.find(u'\0', at) - at);
        text += ", " + std::to_string(2 * at) + ": " + (word == u"\1" ? "1" : ToUtf8(word));
        at += word.size();
    }
    return Shortened(text);
}

/// Presses a button of a message box; what it said, in one line.
std::string ProgramTest::Ask(HWND box, int button) {
    return Shortened(Join(Split(program.Answer(button, box), "\n"), "\\n"));
}

/// $FOLDER stands for the data folder, $SERVER for the server, $VERSION for the program's version.
std::string ProgramTest::InFull(const std::string& text) const {
    return Replaced(Replaced(text, "$FOLDER", ToUtf8(program.DataFolder())), "$SERVER", server_.Address(""));
}

std::string ProgramTest::Shortened(const std::string& text) const {
    return Replaced(Replaced(Replaced(text, ToUtf8(program.DataFolder()), "$FOLDER"), server_.Address(""), "$SERVER"),
                    VELMORA_VERSION, "$VERSION");
}

/// With no text there is never an answer. A text with a head of its own is sent as it is.
void ProgramTest::Serve(const std::string& path, const std::string& text) {
    const std::string page = Replaced(Replaced(text, "|", "\r\n"), "\\t", "\t");
    page.empty() || page.starts_with("HTTP/") ? server_.ServeRaw(path, page) : server_.Serve(path, page);
}

}  // namespace velm::test
