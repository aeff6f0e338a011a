#include "line_history_posix.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/file.h"
#include "platform/scope_exit.h"
#include "platform/write_all_posix.h"

namespace velm {

namespace {

constexpr mode_t OWNER_ONLY = S_IRUSR | S_IWUSR;
constexpr std::size_t MAX_BYTES = 16 << 20;

/// Writes to the end of a file that only its owner can read, whoever could before.
bool Append(const std::string& path, int flags, std::string_view bytes) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, OWNER_ONLY);
    if (file < 0) {
        return false;
    }
    const bool written = fchmod(file, OWNER_ONLY) == 0 && WriteAll(file, bytes);
    return close(file) == 0 && written;
}

/// Another session may do the same: the last one that replaces the file wins, and both have the same lines.
void Rewrite(const std::string& path, const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    const std::string draft = path + "." + std::to_string(getpid());
    if (!Append(draft, O_EXCL, text) || std::rename(draft.c_str(), path.c_str()) != 0) {
        unlink(draft.c_str());
    }
}

}  // namespace

std::vector<std::string> CVelmLineHistory::Load() const {
    const auto file = path_.empty() ? nullptr : SystemFiles().Open(FromUtf8(path_), FileMode::Read);
    std::string bytes;
    if (file == nullptr || !ReadToEnd(*file, MAX_BYTES, bytes)) {
        return {};
    }
    std::vector<std::string> lines;
    for (std::string_view left = bytes; !left.empty();) {
        const std::size_t end = std::min(left.find('\n'), left.size());
        if (end > 0) {
            lines.emplace_back(left.substr(0, end));
        }
        left.remove_prefix(std::min(end + 1, left.size()));
    }
    if (lines.size() > MAX_LINES) {
        const bool grown = lines.size() >= 2 * MAX_LINES;
        lines.erase(lines.begin(), lines.end() - MAX_LINES);
        if (grown) {
            Rewrite(path_, lines);
        }
    }
    return lines;
}

void CVelmLineHistory::Add(std::string_view line) const {
    if (path_.empty()) {
        return;
    }
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), ignored);
    Append(path_, O_APPEND, std::string(line) + "\n");
}

}  // namespace velm
