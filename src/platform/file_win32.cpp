#include <windows.h>

#include <algorithm>
#include <filesystem>

#include "platform/file.h"
#include "platform/scope_exit.h"
#include "platform/wide_text_win32.h"

namespace velm {

const char16_t FolderSeparator = u'\\';

namespace {

/// The path for the system; nothing for one with an embedded NUL, which the system would truncate.
std::optional<std::wstring> SystemPath(const CVelmString& path) {
    if (path.empty() || path.find(u'\0') != CVelmString::npos) {
        return std::nullopt;
    }
    return ToWide(path);
}

std::uint64_t ToTicks(const FILETIME& time) {
    return (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

class Win32File : public CVelmFile {
public:
    explicit Win32File(HANDLE handle) : handle_(handle) {}
    ~Win32File() override { CloseHandle(handle_); }
    Win32File(const Win32File&) = delete;
    Win32File& operator=(const Win32File&) = delete;

    std::int64_t Read(void* buffer, std::size_t count) override {
        return Transfer(count, [&](std::size_t done, DWORD size, DWORD& moved) {
            return ReadFile(handle_, static_cast<char*>(buffer) + done, size, &moved, nullptr);
        });
    }

    std::int64_t Write(const void* buffer, std::size_t count) override {
        return Transfer(count, [&](std::size_t done, DWORD size, DWORD& moved) {
            return WriteFile(handle_, static_cast<const char*>(buffer) + done, size, &moved, nullptr);
        });
    }

    bool Seek(std::uint64_t position) override { return SeekFrom(static_cast<LONGLONG>(position), FILE_BEGIN); }
    bool SeekToEnd() override { return SeekFrom(0, FILE_END); }

    std::optional<std::uint64_t> Size() override {
        LARGE_INTEGER size{};
        if (!GetFileSizeEx(handle_, &size)) {
            return std::nullopt;
        }
        return static_cast<std::uint64_t>(size.QuadPart);
    }

    std::optional<CVelmFileTimes> Times() override {
        FILETIME access{};
        FILETIME write{};
        if (!GetFileTime(handle_, nullptr, &access, &write)) {
            return std::nullopt;
        }
        return CVelmFileTimes{ToTicks(write), ToTicks(access)};
    }

    bool Flush() override { return FlushFileBuffers(handle_) != 0; }

private:
    static constexpr std::size_t MAX_STEP = std::size_t{1} << 30;

    bool SeekFrom(LONGLONG distance, DWORD origin) {
        LARGE_INTEGER move{};
        move.QuadPart = distance;
        return SetFilePointerEx(handle_, move, nullptr, origin) != 0;
    }

    /// Repeats a call that moves bytes until all are moved, it moves none, or it fails.
    template <typename Step>
    static std::int64_t Transfer(std::size_t count, Step step) {
        std::size_t done = 0;
        while (done < count) {
            DWORD moved = 0;
            if (!step(done, static_cast<DWORD>(std::min(count - done, MAX_STEP)), moved)) {
                return done == 0 ? -1 : static_cast<std::int64_t>(done);
            }
            if (moved == 0) {
                break;
            }
            done += moved;
        }
        return static_cast<std::int64_t>(done);
    }

    HANDLE handle_;
};

struct OpenParameters {
    DWORD access;
    DWORD share;
    DWORD creation;
};

OpenParameters ParametersOf(FileMode mode) {
    switch (mode) {
        case FileMode::Read:
            return {GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING};
        case FileMode::Write:
            return {GENERIC_WRITE, 0, CREATE_ALWAYS};
        case FileMode::Append:
            return {GENERIC_WRITE, 0, OPEN_EXISTING};
        case FileMode::CreateNew:
            return {GENERIC_WRITE, 0, CREATE_NEW};
    }
    return {GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING};
}

/// Preserves the last error across cleanup calls.
auto KeepError() {
    return CVelmScopeExit([error = GetLastError()] { SetLastError(error); });
}

class Win32FileSystem : public CVelmFileSystem {
public:
    std::unique_ptr<CVelmFile> Open(const CVelmString& path, FileMode mode) override {
        const auto name = SystemPath(path);
        if (!name) {
            return nullptr;
        }
        const OpenParameters how = ParametersOf(mode);
        const HANDLE handle =
            CreateFileW(name->c_str(), how.access, how.share, nullptr, how.creation, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle == INVALID_HANDLE_VALUE) {
            return nullptr;
        }
        auto file = std::make_unique<Win32File>(handle);
        if (mode == FileMode::Append && !file->SeekToEnd()) {
            return nullptr;
        }
        return file;
    }

    bool Replace(const CVelmString& from, const CVelmString& to) override {
        const auto source = SystemPath(from);
        const auto target = SystemPath(to);
        return source && target &&
               MoveFileExW(source->c_str(), target->c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    }

    bool Remove(const CVelmString& path) override {
        const auto keeper = KeepError();
        const auto name = SystemPath(path);
        return name && DeleteFileW(name->c_str());
    }

    bool Exists(const CVelmString& path) override {
        const auto keeper = KeepError();
        const auto name = SystemPath(path);
        return name && GetFileAttributesW(name->c_str()) != INVALID_FILE_ATTRIBUTES;
    }

    std::optional<CVelmFileStamp> Stamp(const CVelmString& path) override {
        const auto keeper = KeepError();
        const auto name = SystemPath(path);
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!name || !GetFileAttributesExW(name->c_str(), GetFileExInfoStandard, &data)) {
            return std::nullopt;
        }
        return CVelmFileStamp{static_cast<std::uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow,
                              ToTicks(data.ftLastWriteTime)};
    }

    bool CreateFolder(const CVelmString& path) override {
        const auto name = SystemPath(path);
        std::error_code error;
        return name && (std::filesystem::create_directories(*name, error) || !error);
    }

    std::optional<std::vector<CVelmFolderEntry>> List(const CVelmString& folder) override {
        const auto pattern = SystemPath(InFolder(folder, u"*"));
        if (!pattern) {
            return std::nullopt;
        }
        WIN32_FIND_DATAW found{};
        const HANDLE search = FindFirstFileW(pattern->c_str(), &found);
        if (search == INVALID_HANDLE_VALUE) {
            return GetLastError() == ERROR_FILE_NOT_FOUND ? std::optional(std::vector<CVelmFolderEntry>())
                                                          : std::nullopt;
        }
        const CVelmScopeExit closing([search] { FindClose(search); });
        std::vector<CVelmFolderEntry> entries;
        do {
            CVelmString name = FromWide(found.cFileName);
            if (name != u"." && name != u"..") {
                entries.push_back({std::move(name), (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
            }
        } while (FindNextFileW(search, &found) != 0);
        return entries;
    }
};

}  // namespace

CVelmFileSystem& SystemFiles() {
    static Win32FileSystem files;
    return files;
}

}  // namespace velm
