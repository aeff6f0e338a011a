#pragma once

#include <string>
#include <string_view>

namespace velm {

/// Buffered standard output. Unflushed text is never written, so that a failing command prints nothing.
class CVelmOutput {
public:
    void Write(std::string_view bytes);
    void WriteLine(std::string_view bytes);

    /// Writes everything; ends the command on failure.
    void Flush();

private:
    std::string buffer_;
};

/// Writes "velmora: ", the text on one line, and a line end to standard error.
void PrintError(std::string_view text);

}  // namespace velm
