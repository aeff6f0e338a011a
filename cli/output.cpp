#include "output.h"

#include "cli_error.h"
#include "platform/system_error.h"
#include "platform/terminal.h"

namespace velm {

void CVelmOutput::Write(std::string_view bytes) {
    constexpr std::size_t ENOUGH = 1 << 16;
    buffer_ += bytes;
    if (buffer_.size() >= ENOUGH) {
        Flush();
    }
}

void CVelmOutput::WriteLine(std::string_view bytes) {
    buffer_ += bytes;
    Write("\n");
}

void CVelmOutput::Flush() {
    const bool written = WriteStandardOutput(buffer_);
    buffer_.clear();
    if (!written) {
        Fail("cannot write to standard output: " + ToUtf8(LastErrorText()));
    }
}

void PrintError(std::string_view text) {
    // A failure here cannot be reported anywhere.
    WriteStandardError("velmora: " + OneLine(std::string(text)) + "\n");
}

}  // namespace velm
