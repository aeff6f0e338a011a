#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/text.h"

namespace velm {

/// What the Tab key does to a line. All text is UTF-8.
struct LineCompletion {
    std::size_t replaced = 0;  ///< how many bytes before the cursor the text replaces
    std::string text;
    std::string choices;  ///< lines to show under the line being typed; empty for none
};

/// Completes a line of which the text before the cursor is given.
using CompleteFunction = std::function<LineCompletion(std::string_view typed)>;

/// Reads lines that a user types and edits at a terminal.
class CVelmLineEditor {
public:
    virtual ~CVelmLineEditor() = default;

    /// Writes the prompt and returns the next line without its end, UTF-8: empty for one that Ctrl+C dropped, nothing
    /// at the end of the input.
    virtual std::optional<std::string> ReadLine() = 0;
};

/// An editor on standard input and output, which are terminals. Lines are kept in the history file, and those that it
/// holds can be recalled, where the system's terminal leaves that to the program; an empty path keeps none.
std::unique_ptr<CVelmLineEditor> OpenLineEditor(const std::string& prompt, const CVelmString& historyFile,
                                                CompleteFunction complete);

}  // namespace velm
