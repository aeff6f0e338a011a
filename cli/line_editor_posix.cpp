#include "line_editor.h"

#include <clocale>
#include <csignal>
#include <cstdio>
#include <utility>

#include "edit_library_posix.h"
#include "line_history_posix.h"
#include "platform/terminal.h"

namespace velm {

namespace {

/// How many code points of UTF-8 text.
int CodePoints(std::string_view text) {
    int count = 0;
    for (const char byte : text) {
        count += (static_cast<unsigned char>(byte) & 0xC0) != 0x80 ? 1 : 0;
    }
    return count;
}

/// The text without the line end behind it.
std::string WithoutEnd(std::string_view line) {
    return std::string(line.substr(0, line.find_last_not_of("\r\n") + 1));
}

class CVelmEditedLines : public CVelmLineEditor {
public:
    CVelmEditedLines(std::string prompt, const CVelmString& historyFile, CompleteFunction complete)
        : prompt_(std::move(prompt)), file_(ToUtf8(historyFile)), complete_(std::move(complete)) {
        // The library reads and measures characters by the process's locale. The program's text is UTF-8 in any.
        if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) {
            std::setlocale(LC_CTYPE, "");
        }
        editor_.reset(Edit().open("velmora", stdin, stdout, stderr));
        history_.reset(Edit().openHistory());
        if (!IsOpen()) {
            return;
        }
        RecallEarlierLines();
        const auto set = [this](auto... values) { Edit().set(editor_.get(), values...); };
        // The narrow call makes copies of the texts that are never freed.
        const auto add = [this](const wchar_t* name, const wchar_t* help, auto function) {
            Edit().setWide(editor_.get(), EL_ADDFN, name, help, function);
        };
        set(EL_CLIENTDATA, this);
        set(EL_PROMPT, &Prompt);
        set(EL_SIGNAL, 1);
        set(EL_EDITOR, "emacs");
        set(EL_HIST, Edit().changeHistory, history_.get());
        add(L"velmora-complete", L"Complete the word", &Complete);
        add(L"velmora-drop", L"Drop the line", &Drop);
        add(L"velmora-suspend", L"Suspend the program", &Suspend);
        Edit().source(editor_.get(), nullptr);  // the user's own keys, of ~/.editrc
        set(EL_BIND, "^I", "velmora-complete", nullptr);
        // While a line is edited, Ctrl+C and Ctrl+Z are keys and not signals.
        set(EL_SETTY, "-d", "-isig", nullptr);
        set(EL_BIND, "^C", "velmora-drop", nullptr);
        set(EL_BIND, "^Z", "velmora-suspend", nullptr);
    }

    bool IsOpen() const { return editor_ != nullptr && history_ != nullptr; }

    std::optional<std::string> ReadLine() override {
        dropped_ = false;
        int length = 0;
        const char* typed = Edit().read(editor_.get(), &length);
        if (typed == nullptr || length <= 0) {
            return std::nullopt;
        }
        std::string line = WithoutEnd({typed, static_cast<std::size_t>(length)});
        if (dropped_) {
            return "";
        }
        if (line.find_first_not_of(' ') != std::string::npos && line != last_) {
            file_.Add(line);
            Remember(line);
        }
        return line;
    }

private:
    static CVelmEditedLines& Self(EditLine* editor) {
        void* self = nullptr;
        Edit().get(editor, EL_CLIENTDATA, &self);
        return *static_cast<CVelmEditedLines*>(self);
    }

    static char* Prompt(EditLine* editor) { return Self(editor).prompt_.data(); }

    static unsigned char Drop(EditLine* editor, int) {
        Self(editor).dropped_ = true;
        Edit().push(editor, "\n");
        return CC_NORM;
    }

    static unsigned char Suspend(EditLine*, int) {
        std::raise(SIGTSTP);
        return CC_NORM;
    }

    static unsigned char Complete(EditLine* editor, int) { return Self(editor).CompleteLine(); }

    unsigned char CompleteLine() {
        const LineInfo* line = Edit().line(editor_.get());
        const std::string typed(line->buffer, line->cursor);
        const LineCompletion completion = complete_(typed);
        const std::string_view replaced = std::string_view(typed).substr(typed.size() - completion.replaced);
        if (replaced != completion.text) {
            Edit().erase(editor_.get(), CodePoints(replaced));
            Edit().insert(editor_.get(), completion.text.c_str());
            return CC_REFRESH;
        }
        if (completion.choices.empty()) {
            return CC_REFRESH_BEEP;
        }
        WriteStandardOutput("\n" + completion.choices);
        return CC_REDISPLAY;
    }

    void RecallEarlierLines() {
        HistEvent event{};
        Edit().changeHistory(history_.get(), &event, H_SETSIZE, static_cast<int>(CVelmLineHistory::MAX_LINES));
        for (const std::string& line : file_.Load()) {
            Remember(line);
        }
    }

    void Remember(const std::string& line) {
        HistEvent event{};
        Edit().changeHistory(history_.get(), &event, H_ENTER, line.c_str());
        last_ = line;
    }

    struct EditorCloser {
        void operator()(EditLine* editor) const { Edit().close(editor); }
    };
    struct HistoryCloser {
        void operator()(History* lines) const { Edit().closeHistory(lines); }
    };

    std::string prompt_;
    CVelmLineHistory file_;
    CompleteFunction complete_;
    std::unique_ptr<History, HistoryCloser> history_;
    std::unique_ptr<EditLine, EditorCloser> editor_;
    std::string last_;  ///< the newest line of the history
    bool dropped_ = false;
};

/// The terminal's own line input, which knows how to rub out.
class CVelmPlainLines : public CVelmLineEditor {
public:
    explicit CVelmPlainLines(std::string prompt) : prompt_(std::move(prompt)) {}

    std::optional<std::string> ReadLine() override {
        WriteStandardOutput(prompt_);
        std::string line;
        for (char byte = 0; byte != '\n'; line += byte) {
            if (ReadStandardInput(&byte, 1) != 1) {
                return line.empty() ? std::nullopt : std::optional(line);
            }
        }
        return WithoutEnd(line);
    }

private:
    std::string prompt_;
};

}  // namespace

std::unique_ptr<CVelmLineEditor> OpenLineEditor(const std::string& prompt, const CVelmString& historyFile,
                                                CompleteFunction complete) {
    if (Edit().ready) {
        auto editor = std::make_unique<CVelmEditedLines>(prompt, historyFile, std::move(complete));
        if (editor->IsOpen()) {
            return editor;
        }
    }
    return std::make_unique<CVelmPlainLines>(prompt);
}

}  // namespace velm
