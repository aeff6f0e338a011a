#pragma once

#include <string>
#include <string_view>

namespace velm {

/// Standard output, collected until there is enough of it to be worth a call of the system. What is not flushed is
/// never written, so that a command that fails prints nothing.
class CVelmOutput {
public:
    void Write(std::string_view bytes);
    void WriteLine(std::string_view bytes);

    /// Hands everything to the system; ends the command when it does not take it.
    void Flush();

private:
    std::string buffer_;
};

/// Writes "velmora: ", the text on one line, and a line end to standard error.
void PrintError(std::string_view text);

}  // namespace velm
