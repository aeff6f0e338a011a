#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// The lines typed in earlier sessions: a text file with one line for each, which its owner alone can read. Several
/// sessions may add to it at the same time. Without a path, or when the file cannot be written, nothing is kept.
class CVelmLineHistory {
public:
    static constexpr std::size_t MAX_LINES = 1000;

    explicit CVelmLineHistory(std::string path) : path_(std::move(path)) {}

    /// The last lines, oldest first. A file that has grown to twice as many is cut down to them.
    std::vector<std::string> Load() const;

    /// Adds a line at the end; creates the file and its folders when needed.
    void Add(std::string_view line) const;

private:
    std::string path_;
};

}  // namespace velm
