#include "line_stream.h"

#include <fmt/format.h>

#include <cstdint>
#include <cstring>

#include "cli_error.h"
#include "platform/terminal.h"

namespace velm {

namespace {

constexpr std::size_t MAX_LINE_LENGTH = 1 << 20;
constexpr std::size_t CHUNK = 1 << 16;

class LineStream {
public:
    LineStream(CommandContext& context, const AnswerFunction& answer) : context_(context), answer_(answer) {}

    int Run() {
        std::string chunk(CHUNK, '\0');
        for (;;) {
            const std::int64_t got = ReadStandardInput(chunk.data(), chunk.size());
            if (got < 0) {
                context_.out.Flush();
                Fail("cannot read standard input");
            }
            if (got == 0) {
                break;
            }
            Take(std::string_view(chunk).substr(0, static_cast<std::size_t>(got)));
            context_.out.Flush();
        }
        if (!begun_.empty() || tooLong_) {
            Answer({});
        }
        return failed_ ? STATUS_FAILED : STATUS_OK;
    }

private:
    void Take(std::string_view bytes) {
        for (;;) {
            const std::size_t end = bytes.find('\n');
            if (end == std::string_view::npos) {
                Begin(bytes);
                return;
            }
            Answer(bytes.substr(0, end));
            bytes.remove_prefix(end + 1);
        }
    }

    /// Buffers an incomplete line.
    void Begin(std::string_view bytes) {
        if (tooLong_) {
            return;
        }
        begun_ += bytes;
        if (begun_.size() > MAX_LINE_LENGTH) {
            tooLong_ = true;
            begun_.resize(64);
        }
    }

    void Answer(std::string_view rest) {
        ++number_;
        result_.text.clear();
        result_.fault.clear();
        result_.notes.clear();
        if (begun_.empty() && !tooLong_) {
            AnswerLine(rest);
            return;
        }
        Begin(rest);
        if (tooLong_) {
            Refuse(NoResult(begun_ + "..."));
        } else {
            AnswerLine(begun_);
        }
        begun_.clear();
        tooLong_ = false;
    }

    void AnswerLine(std::string_view line) {
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (answer_(line, result_)) {
            context_.out.WriteLine(result_.text);
        } else {
            Refuse(result_.fault.empty() ? NoResult(std::string(line)) : result_.fault);
        }
        for (const std::string& note : result_.notes) {
            Report(note);
        }
    }

    static std::string NoResult(const std::string& line) { return "no result for " + Quoted(line); }

    void Refuse(const std::string& fault) {
        failed_ = true;
        context_.out.WriteLine(result_.text.empty() ? "error" : result_.text);
        Report(fault);
    }

    void Report(const std::string& text) const { PrintError(fmt::format("line {}: {}", number_, text)); }

    CommandContext& context_;
    const AnswerFunction& answer_;
    std::string begun_;
    bool tooLong_ = false;
    LineResult result_;
    std::uint64_t number_ = 0;
    bool failed_ = false;
};

}  // namespace

int StreamLines(CommandContext& context, const LineFunction& convert) {
    return StreamAnswers(context, [&](std::string_view line, LineResult& result) {
        const bool converted = convert(line, result.text);
        if (!converted) {
            result.text.clear();
        }
        return converted;
    });
}

int StreamAnswers(CommandContext& context, const AnswerFunction& answer) {
    return LineStream(context, answer).Run();
}

}  // namespace velm
