#include <algorithm>
#include <filesystem>
#include <regex>

#include "formats/decimal_format.h"
#include "formats/format_table.h"
#include "listview/value_panel.h"
#include "platform/services.h"
#include "platform/wide_text_win32.h"
#include "pocketpc/command_bar.h"
#include "support/picture.h"
#include "support/program_test.h"
#include "support/sample_documents.h"
#include "support/table.h"
#include "support/waiting.h"
#include "ui/clipboard.h"
#include "ui/display_scale.h"
#include "ui/window_text.h"
#include "version.h"

namespace velm::test {
namespace {

using T = ProgramTest&;

/// The words that follow a verb.
struct Words {
    explicit Words(const std::string& text) : rest(text), words(Split(text, " ")) {}

    const std::string& operator[](std::size_t i) const { return words.at(i); }
    bool Has(std::size_t i) const { return words.size() > i; }
    int Number(std::size_t i) const { return std::stoi(words.at(i)); }
    std::string BehindFirst() const { return rest.substr(std::min(rest.size(), words[0].size() + 1)); }

    std::string rest;
    Texts words;
};
using W = const Words&;

const std::map<std::string, WORD> KEYS = {
    {"Tab", VK_TAB},       {"Enter", VK_RETURN},  {"Escape", VK_ESCAPE}, {"Delete", VK_DELETE}, {"Back", VK_BACK},
    {"Left", VK_LEFT},     {"Right", VK_RIGHT},   {"Up", VK_UP},         {"Down", VK_DOWN},     {"PageUp", VK_PRIOR},
    {"Space", VK_SPACE},   {"PageDown", VK_NEXT}, {"F1", VK_F1},         {"F3", VK_F3},         {"F4", VK_F4},
    {"Insert", VK_INSERT}, {"Shift", VK_SHIFT},   {"Ctrl", VK_CONTROL},  {"Alt", VK_MENU},      {"F10", VK_F10}};

const std::map<std::string, WPARAM> SCROLLS = {{"up", SB_LINEUP},      {"down", SB_LINEDOWN},
                                               {"page-up", SB_PAGEUP}, {"page-down", SB_PAGEDOWN},
                                               {"top", SB_TOP},        {"bottom", SB_BOTTOM}};

/// Expands repetitions: "{n*128}" is 128 times n.
std::string Spoken(const std::string& text) {
    static const std::regex REPEATED("\\{([^{}*]+)\\*(\\d+)\\}");
    std::smatch match;
    if (!std::regex_search(text, match, REPEATED)) {
        return text;
    }
    std::string repeated;
    for (int times = std::stoi(match[2]); times > 0; --times) {
        repeated += match[1];
    }
    return match.prefix().str() + repeated + Spoken(match.suffix().str());
}

/// Replaces $FOLDER by the data folder and $SERVER by the server's address; Shortened does the opposite.
std::string InFull(T t, const std::string& text) {
    return Replaced(Replaced(text, "$FOLDER", ToUtf8(t.program.DataFolder())), "$SERVER", t.server.Address(""));
}

std::string Shortened(T t, const std::string& text) {
    const std::string inFolder = Replaced(text, ToUtf8(t.program.DataFolder()), "$FOLDER");
    return Replaced(Replaced(inFolder, t.server.Address(""), "$SERVER"), VELMORA_VERSION, "$VERSION");
}

/// "Length = meters|m, feet|ft|3.28084" or "Tip.cal = Bill|bill, Tip|tip|bill * 0.15"
void SaveFile(T t, W w) {
    const Texts parts = Split(w.rest, " = ");
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
    EXPECT_TRUE(document->Save(t.program.DataFolder())) << w.rest;
}

void Write(T t, W w) {
    const CVelmString name = FromUtf8(w[0]);
    WriteBytes(t.program, name, w.BehindFirst());
    if (w.BehindFirst() == "$HTMLVIEW") {
        CopyFileW(TEXT(VELMORA_HTMLVIEW), Wide(t.program.DataFolder() + name), FALSE);
    }
    t.known[w[0]] = ReadBytes(t.program, name);
}

void StoreRecent(T t, W w) {
    t.program.StoreSettings([&w](CVelmSettings& settings) {
        std::fill(std::begin(settings.openFiles), std::end(settings.openFiles), u'\0');
        char16_t* next = settings.openFiles;
        for (const std::string& name : Split(w.rest, ", ")) {
            next = std::ranges::copy(FromUtf8(name), next).out + 1;
        }
    });
}

/// Without a text the server never answers. A text that begins with an HTTP head is sent unchanged.
void Serve(T t, W w) {
    const std::string page = Replaced(Replaced(InFull(t, w.BehindFirst()), "|", "\r\n"), "\\t", "\t");
    page.empty() || page.starts_with("HTTP/") ? t.server.ServeRaw(w[0], page) : t.server.Serve(w[0], page);
}

void Lock(T t, W w) {
    if (w.rest.empty()) {
        EXPECT_TRUE(CloseHandle(t.locked));
        return;
    }
    const CVelmString path = t.program.DataFolder() + FromUtf8(w.rest);
    t.locked = CreateFileW(Wide(path), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
}

std::map<std::string, Bytes> Files(const RunningProgram& program) {
    std::map<std::string, Bytes> files;
    const std::filesystem::path folder(program.DataFolder());
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            const CVelmString name = entry.path().lexically_relative(folder).generic_u16string();
            files[ToUtf8(name)] = ReadBytes(program, name);
        }
    }
    return files;
}

void Start(T t, W) {
    t.known = Files(t.program);
    EXPECT_TRUE(t.program.Start());
}

void Focus(T t, W w) {
    const HWND window = t.Find(w[0]).window;
    if (std::isupper(w[0][0])) {
        SendMessageW(t.Dialog(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(window), TRUE);
        // An editable drop-down box passes the focus to its edit box.
        EXPECT_TRUE(WaitUntil([&] { return t.program.Focus() == window || IsChild(window, t.program.Focus()); }));
    } else {
        t.program.Ask([window](CVelmFrame&) { SetFocus(window); });
    }
}

/// The code of a format; 0 for an unknown word.
std::uint32_t CodeOf(const std::string& word) {
    const FormatKind* const format = FindFormat(word);
    return format != nullptr ? format->code : 0;
}

/// "1 ft, 12 in"
CVelmCompoundParts CompoundParts(const std::string& text) {
    CVelmCompoundParts parts{};
    const Texts texts = Split(text, ", ");
    for (std::size_t i = 0; i < texts.size(); ++i) {
        parts.at(i) = {FromUtf8(texts[i].substr(texts[i].find(' ') + 1)), std::stod(texts[i])};
    }
    return parts;
}

void Set(T t, W w) {
    const std::string value = w.BehindFirst();
    if (w[0] == "stamp") {
        t.program.Ask([&](CVelmFrame& frame) { frame.Document()->Touch(FromUtf8(value)); });
        return;
    }
    const auto [field, row] = KindAndNumber(w[0]);
    CVelmItem& item = t.Item(row);
    const std::map<std::string, CVelmString*> texts = {{"name", &item.name}, {"text", &item.valueText}};
    if (field == "formats") {
        std::uint32_t allowed = 0;
        for (const std::string& format : Split(value, " ")) {
            allowed |= CodeOf(format);
        }
        item.format.SetAllowedFormats(allowed);
        item.format.displayFormat = item.format.inputFormat = CodeOf(w[1]);
        t.Select(row);
    } else if (field == "typed") {
        item.format.inputFormat = CodeOf(value);
        t.Select(row);
    } else if (field == "parts") {
        item.format.compoundParts = CompoundParts(value);
    } else if (field == "value" && value.empty()) {
        item.state = STATE_NONE;
    } else {
        *ValueOf(texts, field) = FromUtf8(value);
    }
}

void Give(T t, W w) {
    double value = 0.0;
    const int row = t.program.Ask([&](CVelmFrame& frame) {
        frame.Document()->currentItem->format.ParseValueText(FromUtf8(w.rest), frame.Program().context, value);
        return frame.List().Selected();
    });
    t.Give(row, value);
}

HWND BarOf(HWND dialog) {
    return FindWindowExW(dialog, nullptr, L"VlCommandBar", nullptr);
}

/// Sends a command to the topmost dialog, or else to the frame.
void Command(T t, int id) {
    const HWND dialog = t.program.TopDialog();
    const HWND bar = dialog != nullptr ? BarOf(dialog) : nullptr;  // a message box has none
    PostMessageW(bar != nullptr ? bar : t.program.Frame(), WM_COMMAND, MAKEWPARAM(id, 0), 0);
}

void Leave(T t, int id) {
    const HWND dialog = t.Dialog();
    Command(t, id);
    EXPECT_TRUE(WaitUntil([dialog] { return !IsWindow(dialog); })) << "the dialog stays open";
}

/// Sends a command and returns the dialog or message box that it opens.
HWND Over(T t, int command) {
    const HWND below = t.program.TopDialog();
    Command(t, command);
    const HWND opened = WaitForDialog(t.program.Thread(), below);
    EXPECT_NE(opened, nullptr) << "nothing opens";
    return opened;
}

/// Presses a button of a message box. Its text, in one line, is the answer.
void Answer(T t, HWND box, int button) {
    t.heard = Shortened(t, Join(Split(t.program.Answer(button, box), "\n"), "\\n"));
}

void Press(T t, W w) {
    if (t.program.TopDialog() != nullptr) {
        t.Dialog();  // it gets the focus back some time after a message box is closed
    }
    const Texts keys = Split(w.rest, "+");
    const auto code = [](const std::string& key) {
        return key.size() == 1 ? static_cast<WORD>(key[0]) : ValueOf(KEYS, key);
    };
    t.program.Key(code(keys.back()), keys.size() > 1 ? code(keys[0]) : WORD{0});
}

void Enter(T t, W w) {
    Focus(t, Words("panel"));
    SendMessageW(t.program.Focus(), EM_SETSEL, 0, -1);
    t.program.Key(VK_DELETE);
    t.program.Type(w.rest);
}

void WaitForCommit(T t, W) {
    constexpr int TICKS_TO_COMMIT = 4;
    t.program.Settle();
    for (int tick = 0; tick < TICKS_TO_COMMIT; ++tick) {
        SendMessageW(t.program.Panel(), WM_TIMER, COMMIT_TIMER, 0);
    }
}

void Fill(T t, W w) {
    const std::string text = InFull(t, w.BehindFirst());
    const HWND frame = t.program.Frame();
    if (w[0] != "clipboard") {
        SetWindowTextW(t.Find(w[0]).window, Wide(FromUtf8(text)));
        return;
    }
    EXPECT_TRUE(WaitUntil([&] { return SetClipboardText(frame, FromUtf8(text)); }));
    if (text.empty()) {  // an empty text would still be a text
        EXPECT_TRUE(WaitUntil([&] { return OpenClipboard(frame) != FALSE; }));
        EmptyClipboard();
        CloseClipboard();
    }
}

/// Lifts the pen if it is down. Returns the window that is tapped next.
HWND LiftPen(T t, HWND window) {
    if (t.penDown != nullptr) {
        t.program.PenUp(std::exchange(t.penDown, nullptr), 0, 0);
    }
    return window;
}

void Tap(T t, W w) {
    const ProgramTest::Part part = t.Find(w[0]);
    const HWND window = LiftPen(t, part.window);
    if (w.Has(1)) {
        t.program.Tap(window, Scaled(w.Number(1)), Scaled(w.Number(2)));
    } else {
        t.program.Tap(window, part.drawn.value());
    }
}

/// Taps the row beside its button.
void TapRow(T t, W w) {
    const RECT row = t.PlaceOfPart("row" + w.rest);
    t.program.Tap(LiftPen(t, t.program.List()), static_cast<int>(row.right) - Scaled(10),
                  static_cast<int>(row.top) + Scaled(6));
    EXPECT_BECOMES(t.program.Ask([](CVelmFrame& frame) { return frame.List().Selected(); }), w.Number(0));
}

void TapTab(T t, W w) {
    const Texts tabs = Split(Replaced(Replaced(t.Tabs(), "[", ""), "]", ""), ", ");
    const auto tab = std::ranges::find(tabs, w.rest);
    EXPECT_NE(tab, tabs.end()) << "there is no such tab";
    Tap(t, Words("tab" + std::to_string(tab - tabs.begin())));
}

void Drag(T t, W w) {
    const HWND window = LiftPen(t, t.Find(w[0]).window);
    t.program.PenDown(window, Scaled(w.Number(1)), Scaled(w.Number(2)));
    t.program.PenMove(window, Scaled(w.Number(1) + w.Number(3)), Scaled(w.Number(2) + w.Number(4)));
    t.penDown = window;
}

void Scroll(T t, W w) {
    if (const auto by = SCROLLS.find(w[0]); by != SCROLLS.end()) {
        SendMessageW(t.program.List(), WM_VSCROLL, by->second, 0);
    } else {
        t.program.Wheel(w.Number(0));
    }
}

void Size(T t, W w) {
    if (w[0] == "list") {
        t.ResizeList(w.Number(1), w.Number(2));
    } else {
        t.program.Resize(Scaled(w.Number(1)), Scaled(w.Number(2)));
    }
}

/// The first visible line of a reference.
std::string FirstLineOfPage(T t) {
    std::array<wchar_t, 64> line{static_cast<wchar_t>(line.size() - 1)};
    const HWND text = t.Find("page").window;
    const LRESULT first = SendMessageW(text, EM_GETFIRSTVISIBLELINE, 0, 0);
    SendMessageW(text, EM_GETLINE, static_cast<WPARAM>(first), reinterpret_cast<LPARAM>(line.data()));
    return Split(ToUtf8(FromWide(line.data())), "\r")[0];
}

std::string TextOf(T t, const std::string& name) {
    const auto [kind, number] = KindAndNumber(name);
    if (kind == "name") {
        const auto label = [row = number](CVelmFrame& frame) { return frame.List().Row(row).NameLabel().text; };
        return ToUtf8(t.program.Ask(label));
    }
    return name == "clipboard" ? ToUtf8(GetClipboardText(t.program.Frame()).value_or(u""))
           : name == "panel"   ? t.Entry()
           : name == "page"    ? FirstLineOfPage(t)
           : name == "day"     ? t.program.Ask([](CVelmFrame& frame) { return ToUtf8(frame.TitleButton().Note()); })
                               : Split(Replaced(ToUtf8(WindowText(t.Find(name).window)), "\r", ""), "\n")[0];
}

/// "1 ft, 12 in, 0, 0"
std::string PartsOf(const CVelmItem& item) {
    Texts parts;
    for (const CVelmCompoundPart& part : item.format.compoundParts) {
        parts.push_back(ToUtf8(FormatDecimal(part.factor, false) + (part.label.empty() ? u"" : u" ") + part.label));
    }
    return Join(parts);
}

std::string EntriesOf(T t, W w) {
    if (w[0] == "menu") {
        const auto menu = TopMenu(t.program.Thread());
        return menu ? menu->Words() : "";
    }
    if (w[0] == "bar") {
        const auto menu = [bar = BarOf(t.Dialog())](CVelmFrame&) { return CommandBar_GetMenu(bar); };
        return "[" + OpenMenu(nullptr, t.program.Ask(menu)).Words() + "]";
    }
    const auto [kind, number] = KindAndNumber(w[0]);
    return kind == "tabs"    ? t.Tabs()
           : kind == "tools" ? t.Tools()
           : kind == "parts" ? PartsOf(t.Item(number))
                             : Join(Entries(t.Find(w[0]).window));
}

std::string StateOf(T t, W w) {
    if (w[0] == "HTML" && GetDlgItem(t.Dialog(), IDC_HTML) == nullptr) {
        return "hidden";  // without its library a page has no control
    }
    const HWND window = t.Find(w[0]).window;
    const std::string kind = ClassOf(window);
    const auto answers = [window](UINT message) { return SendMessageW(window, message, 0, 0) != 0; };
    const Picture picture = Picture::OfWindow(window);
    const bool red = kind == "Edit" && picture.Count({0, 0, picture.Width(), picture.Height()}, RGB(255, 0, 0)) > 0;
    return std::string(IsWindowVisible(window) ? "shown" : "hidden") +
           (t.program.Focus() == window ? ", focused" : "") +
           (kind == "Button" && answers(BM_GETCHECK) ? ", checked" : "") +
           (kind == "Static" && answers(STM_GETICON) ? ", icon" : "") + (red ? ", red" : "");
}

/// "left,top right,bottom" in pixels at scale 1; an odd pixel at scale 2 reads "20.5".
std::string PlaceIn(T t, W w) {
    const RECT area = t.PlaceOfPart(w[0]);
    const auto scaled = [](LONG number) { return static_cast<double>(number) / DisplayScale(); };
    return Print("%g,%g %g,%g", scaled(area.left), scaled(area.top), scaled(area.right), scaled(area.bottom));
}

/// A file's content, preceded by its update text in brackets unless that is a time of day.
std::string Saved(T t, W w) {
    const auto document = LoadFile(t.program, FromUtf8(w.rest));
    const std::string stamp = document == nullptr ? "" : ToUtf8(document->updatedText);
    const bool isTime = stamp.empty() || std::regex_search(stamp, std::regex("\\d:\\d\\d:\\d\\d"));
    return (isTime ? "" : "[" + stamp + "] ") + Describe(document.get());
}

/// The files that have changed since the start, or since a session wrote them.
std::string Changes(T t, W) {
    std::map<std::string, Bytes> now = Files(t.program);
    std::map<std::string, Bytes> all = t.known;
    all.insert(now.begin(), now.end());
    Texts changes;
    for (const auto& [name, bytes] : all) {
        if (now[name] != t.known[name]) {
            changes.push_back(name);
        }
    }
    return Join(changes);
}

const std::map<std::string, void (*)(T, W)> ACTS = {
    // What happens before the program starts, or outside it.
    {"file", SaveFile},
    {"write", Write},
    {"recent", StoreRecent},
    {"serve", Serve},
    {"lock", Lock},
    {"set", Set},
    {"give", Give},
    {"start", Start},
    {"close", [](T t, W w) { EXPECT_TRUE(t.program.Close(w.rest.empty() ? 0 : IdOf(w[0]))); }},
    {"end-session",
     [](T t, W w) { SendMessageW(t.program.Frame(), WM_ENDSESSION, w.rest == "yes" ? TRUE : FALSE, 0); }},
    // Commands, dialogs, message boxes and menus.
    {"do", [](T t, W w) { Command(t, IdOf(w[0])); }},
    {"open",
     [](T t, W w) {
         Over(t, IdOf(w[0]));
         t.Dialog();
         t.heard = t.Title();
     }},
    {"ask", [](T t, W w) { Answer(t, Over(t, IdOf(w[0])), w.Has(1) ? IdOf(w[1]) : IDOK); }},
    {"answer", [](T t, W w) { Answer(t, nullptr, IdOf(w[0])); }},
    {"ok", [](T t, W) { Leave(t, IDOK); }},
    {"cancel", [](T t, W) { Leave(t, IDCANCEL); }},
    {"menu", [](T t, W w) { EXPECT_TRUE(t.program.Choose(w.rest)) << "the menu has no such entry"; }},
    // Keys and texts.
    {"press", Press},
    {"type", [](T t, W w) { t.program.Type(w.rest); }},
    {"enter", Enter},
    {"wait", WaitForCommit},
    {"fill", Fill},
    {"focus", Focus},
    // The pen and the mouse.
    {"tap", Tap},
    {"row", TapRow},
    {"tab", TapTab},
    {"drag", Drag},
    {"right-click",
     [](T t, W w) { t.program.RightClick(LiftPen(t, t.Find(w[0]).window), Scaled(w.Number(1)), Scaled(w.Number(2))); }},
    {"choose", [](T t, W w) { Choose(t.Find(w[0]).window, w.BehindFirst()); }},
    {"tick", [](T t, W w) { Tick(t.Find(w[0]).window, w.Has(1) ? w.Number(1) : 0); }},
    {"scroll", Scroll},
    {"size", Size},
};

const std::map<std::string, std::string (*)(T, W)> LOOKS = {
    {"title", [](T t, W) { return t.Title(); }},
    {"rows", [](T t, W) { return t.Rows(); }},
    {"list", [](T t, W) { return t.ListState(); }},
    {"text", [](T t, W w) { return Shortened(t, TextOf(t, w[0])); }},
    {"entries", EntriesOf},
    {"state", StateOf},
    {"place", PlaceIn},
    {"across", [](T t, W w) { return std::regex_replace(PlaceIn(t, w), std::regex(",[-\\d.]+"), ""); }},
    {"saved", Saved},
    {"changes", Changes},
};

std::string VerbOf(const std::string& act) {
    return act.substr(0, act.find(' '));
}

/// The expectation for this scale: "at scale 1 || at scale 2" where odd pixels make a difference.
std::string Expected(const std::string& words) {
    const Texts both = Split(words, " || ");
    return Spoken(DisplayScale() == 1 ? both.front() : both.back());
}

/// Both texts, one below the other, with a mark under the first character that differs.
std::string Difference(const std::string& expected, const std::string& seen) {
    const auto differing = static_cast<std::size_t>(std::ranges::mismatch(expected, seen).in1 - expected.begin());
    return "  expected: " + expected + "\n      seen: " + seen + "\n" + std::string(12 + differing, ' ') + "^";
}

}  // namespace

std::string ProgramTest::DoOne(const std::string& act) {
    if (program.IsRunning()) {
        program.Settle();  // finishes the previous act
        // The commit timer fires only when a session says `wait`; value_entry_test.cpp has the real timer.
        program.Ask([](CVelmFrame& frame) { KillTimer(frame.Panel().Handle(), COMMIT_TIMER); });
    }
    const std::string verb = VerbOf(act);
    const Words words(Spoken(act.substr(std::min(act.size(), verb.size() + 1))));
    if (const auto look = LOOKS.find(verb); look != LOOKS.end()) {
        return look->second(*this, words);
    }
    heard.reset();
    ValueOf(ACTS, verb)(*this, words);
    if (!program.IsRunning()) {
        return {};
    }
    program.Settle();
    return heard ? *heard : Entry();
}

std::string ProgramTest::Do(const std::string& acts) {
    std::string seen;
    for (const std::string& act : Split(acts, "; ")) {
        seen = DoOne(act);
    }
    return seen;
}

void ProgramTest::Play(const std::vector<SessionLine>& lines) {
    for (const SessionLine& line : lines) {
        const testing::ScopedTrace trace(line.file.c_str(), line.number, line.acts);
        try {
            std::string seen = Do(line.acts);
            const std::string expected = line.expected ? Expected(*line.expected) : seen;
            const std::string last = Split(line.acts, "; ").back();
            if (LOOKS.contains(VerbOf(last))) {
                seen = Becomes([&] { return DoOne(last); }, expected);
            }
            if (seen != expected) {
                ADD_FAILURE_AT(line.file.c_str(), line.number) << Difference(expected, seen);
            }
        } catch (const std::exception& error) {
            ADD_FAILURE_AT(line.file.c_str(), line.number) << error.what();
        }
        if (HasFailure()) {
            return;  // the following lines depend on this one
        }
    }
}

}  // namespace velm::test
