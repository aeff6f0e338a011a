#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "platform/file.h"
#include "platform/file_time.h"
#include "platform/scope_exit.h"

namespace velm {

const char16_t FolderSeparator = u'/';

namespace {

/// Preserves errno across cleanup calls.
auto KeepError() {
    return CVelmScopeExit([error = errno] { errno = error; });
}

/// The path in UTF-8; nothing for one with an embedded NUL, which the system would truncate.
std::optional<std::string> SystemPath(const CVelmString& path) {
    if (path.empty() || path.find(u'\0') != CVelmString::npos) {
        return std::nullopt;
    }
    return ToUtf8(path);
}

class PosixFile : public CVelmFile {
public:
    explicit PosixFile(int descriptor) : descriptor_(descriptor) {}
    ~PosixFile() override { close(descriptor_); }
    PosixFile(const PosixFile&) = delete;
    PosixFile& operator=(const PosixFile&) = delete;

    bool IsRegular() const {
        const auto status = Status();
        return status && S_ISREG(status->st_mode);
    }

    std::int64_t Read(void* buffer, std::size_t count) override {
        return Transfer(count, [&](std::size_t done) {
            return read(descriptor_, static_cast<char*>(buffer) + done, count - done);
        });
    }

    std::int64_t Write(const void* buffer, std::size_t count) override {
        return Transfer(count, [&](std::size_t done) {
            return write(descriptor_, static_cast<const char*>(buffer) + done, count - done);
        });
    }

    bool Seek(std::uint64_t position) override {
        return lseek(descriptor_, static_cast<off_t>(position), SEEK_SET) >= 0;
    }

    bool SeekToEnd() override { return lseek(descriptor_, 0, SEEK_END) >= 0; }

    std::optional<std::uint64_t> Size() override {
        const auto status = Status();
        return status ? std::optional(static_cast<std::uint64_t>(status->st_size)) : std::nullopt;
    }

    std::optional<CVelmFileTimes> Times() override {
        const auto status = Status();
        if (!status) {
            return std::nullopt;
        }
        return CVelmFileTimes{ToFileTime(status->st_mtim.tv_sec, status->st_mtim.tv_nsec),
                              ToFileTime(status->st_atim.tv_sec, status->st_atim.tv_nsec)};
    }

    bool Flush() override { return fsync(descriptor_) == 0; }

private:
    /// Repeats a call that moves bytes until all are moved, it moves none, or it fails.
    template <typename Step>
    static std::int64_t Transfer(std::size_t count, Step step) {
        std::size_t done = 0;
        while (done < count) {
            const ssize_t moved = step(done);
            if (moved < 0 && errno == EINTR) {
                continue;
            }
            if (moved < 0 && done == 0) {
                return -1;
            }
            if (moved <= 0) {
                break;
            }
            done += static_cast<std::size_t>(moved);
        }
        return static_cast<std::int64_t>(done);
    }

    std::optional<struct stat> Status() const {
        struct stat status {};
        return fstat(descriptor_, &status) == 0 ? std::optional(status) : std::nullopt;
    }

    int descriptor_;
};

int OpenFlags(FileMode mode) {
    switch (mode) {
        case FileMode::Read:
            return O_RDONLY | O_NONBLOCK;  // do not block on a pipe without a writer
        case FileMode::Write:
            return O_WRONLY | O_CREAT | O_TRUNC;
        case FileMode::Append:
            return O_WRONLY | O_NONBLOCK;  // or without a reader
        case FileMode::CreateNew:
            return O_WRONLY | O_CREAT | O_EXCL;
    }
    return O_RDONLY;
}

/// Flushes a folder's entries to the disk. A file system that cannot flush folders is not a failure.
bool FlushFolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return true;
    }
    const CVelmScopeExit closing([descriptor] { close(descriptor); });
    return fsync(descriptor) == 0 || errno != EIO;
}

bool IsFolder(DIR* folder, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK) {
        return entry.d_type == DT_DIR;
    }
    struct stat status {};
    return fstatat(dirfd(folder), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

/// readdir() order is unspecified.
void SortByName(std::vector<CVelmFolderEntry>& entries) {
    std::vector<std::pair<CVelmString, std::size_t>> keys;
    keys.reserve(entries.size());
    for (const CVelmFolderEntry& entry : entries) {
        keys.emplace_back(FoldCase(entry.name), keys.size());
    }
    std::sort(keys.begin(), keys.end());
    std::vector<CVelmFolderEntry> sorted;
    sorted.reserve(entries.size());
    for (const auto& [key, position] : keys) {
        sorted.push_back(std::move(entries[position]));
    }
    entries = std::move(sorted);
}

class PosixFileSystem : public CVelmFileSystem {
public:
    std::unique_ptr<CVelmFile> Open(const CVelmString& path, FileMode mode) override {
        const auto name = SystemPath(path);
        if (!name) {
            return nullptr;
        }
        const int descriptor = open(name->c_str(), OpenFlags(mode) | O_CLOEXEC, 0666);
        if (descriptor < 0) {
            return nullptr;
        }
        auto file = std::make_unique<PosixFile>(descriptor);
        if ((mode == FileMode::Read && !file->IsRegular()) || (mode == FileMode::Append && !file->SeekToEnd())) {
            return nullptr;
        }
        return file;
    }

    bool Replace(const CVelmString& from, const CVelmString& to) override {
        const auto source = SystemPath(from);
        const auto target = SystemPath(to);
        if (!source || !target) {
            return false;
        }
        struct stat status {};
        if (stat(target->c_str(), &status) == 0) {
            if (!S_ISREG(status.st_mode)) {
                errno = EOPNOTSUPP;  // renaming over a device or a pipe would remove it
                return false;
            }
            // The new file keeps the old one's permissions, where the file system has any.
            [[maybe_unused]] const int ignored = chmod(source->c_str(), status.st_mode & 07777);
        }
        return rename(source->c_str(), target->c_str()) == 0 && FlushFolderOf(*target);
    }

    bool Remove(const CVelmString& path) override {
        const auto keeper = KeepError();
        const auto name = SystemPath(path);
        return name && unlink(name->c_str()) == 0;
    }

    CVelmString ResolveLinks(const CVelmString& path) override {
        const auto name = SystemPath(path);
        struct stat status {};
        if (!name || lstat(name->c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) {
            return path;
        }
        const std::unique_ptr<char, decltype(&std::free)> target(realpath(name->c_str(), nullptr), &std::free);
        return target == nullptr ? path : FromUtf8(target.get());
    }

    bool Exists(const CVelmString& path) override {
        const auto keeper = KeepError();
        const auto name = SystemPath(path);
        struct stat status {};
        return name && stat(name->c_str(), &status) == 0;
    }

    std::optional<CVelmFileStamp> Stamp(const CVelmString& path) override {
        const auto keeper = KeepError();
        const auto name = SystemPath(path);
        struct stat status {};
        if (!name || stat(name->c_str(), &status) != 0) {
            return std::nullopt;
        }
        return CVelmFileStamp{static_cast<std::uint64_t>(status.st_size),
                              ToFileTime(status.st_mtim.tv_sec, status.st_mtim.tv_nsec)};
    }

    bool CreateFolder(const CVelmString& path) override {
        const auto name = SystemPath(path);
        std::error_code error;
        return name && (std::filesystem::create_directories(*name, error) || !error);
    }

    std::optional<std::vector<CVelmFolderEntry>> List(const CVelmString& folder) override {
        const auto name = SystemPath(folder.empty() ? CVelmString(u".") : folder);
        if (!name) {
            return std::nullopt;
        }
        DIR* const handle = opendir(name->c_str());
        if (handle == nullptr) {
            return std::nullopt;
        }
        const CVelmScopeExit closing([handle] { closedir(handle); });
        std::vector<CVelmFolderEntry> entries;
        while (const dirent* entry = readdir(handle)) {
            const std::string_view entryName(entry->d_name);
            if (entryName != "." && entryName != "..") {
                entries.push_back({FromUtf8(entryName), IsFolder(handle, *entry)});
            }
        }
        SortByName(entries);
        return entries;
    }
};

}  // namespace

CVelmFileSystem& SystemFiles() {
    static PosixFileSystem files;
    return files;
}

}  // namespace velm
