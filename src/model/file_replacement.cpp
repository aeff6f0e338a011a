#include "model/file_replacement.h"

#include <algorithm>
#include <array>
#include <string>

namespace velm {

namespace {

constexpr int MAX_TEMPORARY_NAMES = 100;

/// Opens a file of a name that is not in use; its path, empty on failure. What a broken run left behind is in use.
CVelmString OpenTemporary(CVelmFileStream& stream, CVelmFileSystem& files, const CVelmString& path) {
    for (int number = 1; number <= MAX_TEMPORARY_NAMES; ++number) {
        CVelmString temporary = path + u".tmp";
        if (number > 1) {
            temporary += IntegerText(number);
        }
        if (stream.OpenNew(temporary)) {
            return temporary;
        }
        if (!files.Exists(temporary)) {
            break;
        }
    }
    return {};
}

/// A file to write into that stays in memory.
class CVelmMemoryFile : public CVelmFile {
public:
    explicit CVelmMemoryFile(std::string& bytes) : bytes_(bytes) {}

    std::int64_t Read(void*, std::size_t) override { return -1; }
    std::int64_t Write(const void* buffer, std::size_t count) override {
        bytes_.replace(position_, std::min(count, bytes_.size() - position_), static_cast<const char*>(buffer), count);
        position_ += count;
        return static_cast<std::int64_t>(count);
    }
    bool Seek(std::uint64_t position) override {
        position_ = static_cast<std::size_t>(position);
        return position <= bytes_.size();
    }
    bool SeekToEnd() override { return Seek(bytes_.size()); }
    std::optional<std::uint64_t> Size() override { return bytes_.size(); }
    std::optional<CVelmFileTimes> Times() override { return std::nullopt; }
    bool Flush() override { return true; }

private:
    std::string& bytes_;
    std::size_t position_ = 0;
};

/// Opens the same file in memory under every name.
class CVelmMemoryFiles : public CVelmFileSystem {
public:
    std::unique_ptr<CVelmFile> Open(const CVelmString&, FileMode) override {
        return std::make_unique<CVelmMemoryFile>(bytes);
    }
    bool Replace(const CVelmString&, const CVelmString&) override { return false; }
    bool Remove(const CVelmString&) override { return false; }
    bool Exists(const CVelmString&) override { return false; }
    std::optional<std::vector<CVelmFolderEntry>> List(const CVelmString&) override { return std::nullopt; }

    std::string bytes;
};

bool MayWrite(CVelmFileSystem& files, const CVelmString& path) {
    return !files.Exists(path) || files.Open(path, FileMode::Append) != nullptr;
}

}  // namespace

bool ReplaceFile(const CVelmServices& services, const CVelmString& path,
                 const std::function<bool(CVelmFileStream&)>& write) {
    const CVelmString target = services.files.ResolveLinks(path);
    // A write-protected file could be replaced all the same where only the folder's rights count.
    if (!MayWrite(services.files, target)) {
        return false;
    }
    CVelmFileStream stream(services.files, services.clock);
    const CVelmString temporary = OpenTemporary(stream, services.files, target);
    if (temporary.empty()) {
        return false;
    }
    const bool written = write(stream) && stream.Flush();
    if (stream.Close() && written && services.files.Replace(temporary, target)) {
        return true;
    }
    services.files.Remove(temporary);
    return false;
}

bool ReplaceFile(const CVelmServices& services, const CVelmString& path, std::string_view bytes) {
    return ReplaceFile(services, path, [bytes](CVelmFileStream& stream) {
        return stream.Write(bytes.data(), bytes.size()) == static_cast<std::int64_t>(bytes.size());
    });
}

bool CopyFileTo(const CVelmServices& services, const CVelmString& source, const CVelmString& path) {
    CVelmFileStream original(services.files, services.clock);
    return original.OpenRead(source) && ReplaceFile(services, path, [&original](CVelmFileStream& copy) {
               std::array<char, 4096> block{};
               std::int32_t count = 0;
               while ((count = original.Read(block.size(), block.data())) > 0) {
                   if (copy.Write(block.data(), static_cast<std::size_t>(count)) != count) {
                       return false;
                   }
               }
               return count == 0;
           });
}

bool HoldsAlready(const CVelmServices& services, const CVelmString& path,
                  const std::function<bool(CVelmFileStream&)>& write) {
    CVelmMemoryFiles memory;
    CVelmFileStream stream(memory, services.clock);
    if (!stream.OpenWrite(path) || !write(stream) || !stream.Close()) {
        return false;
    }
    const auto file = services.files.Open(path, FileMode::Read);
    if (file == nullptr || file->Size() != memory.bytes.size()) {
        return false;
    }
    std::string held(memory.bytes.size(), '\0');
    return file->Read(held.data(), held.size()) == static_cast<std::int64_t>(held.size()) && held == memory.bytes;
}

bool KeepOriginal(const CVelmServices& services, const CVelmString& path) {
    const CVelmString backup = path + u".bak";
    return services.files.Exists(backup) || !services.files.Exists(path) || CopyFileTo(services, path, backup);
}

}  // namespace velm
