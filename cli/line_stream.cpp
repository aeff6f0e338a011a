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
    LineStream(CommandContext& context, const LineFunction& convert) : context_(context), convert_(convert) {}

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
        if (begun_.empty() && !tooLong_) {
            AnswerLine(rest);
            return;
        }
        Begin(rest);
        if (tooLong_) {
            Refuse(begun_ + "...");
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
        result_.clear();
        if (convert_(line, result_)) {
            context_.out.WriteLine(result_);
        } else {
            Refuse(std::string(line));
        }
    }

    void Refuse(const std::string& line) {
        failed_ = true;
        context_.out.WriteLine("error");
        PrintError(fmt::format("line {}: no result for {}", number_, Quoted(line)));
    }

    CommandContext& context_;
    const LineFunction& convert_;
    std::string begun_;
    bool tooLong_ = false;
    std::string result_;
    std::uint64_t number_ = 0;
    bool failed_ = false;
};

}  // namespace

int StreamLines(CommandContext& context, const LineFunction& convert) {
    return LineStream(context, convert).Run();
}

}  // namespace velm
