#include "model/file_replacement.h"

#include <cstdint>
#include <string>

namespace velm {

namespace {

constexpr int MAX_TEMPORARY_NAMES = 100;

/// Creates a file under an unused name; null on failure. Leftovers of a crashed run count as used.
std::unique_ptr<CVelmFile> CreateTemporary(CVelmFileSystem& files, const CVelmString& path, CVelmString& temporary) {
    for (int number = 1; number <= MAX_TEMPORARY_NAMES; ++number) {
        temporary = path + u".tmp" + (number > 1 ? IntegerText(number) : CVelmString());
        auto file = files.Open(temporary, FileMode::CreateNew);
        if (file != nullptr || !files.Exists(temporary)) {
            return file;
        }
    }
    return nullptr;
}

}  // namespace

bool ReplaceFile(CVelmFileSystem& files, const CVelmString& path, std::string_view bytes) {
    const CVelmString target = files.ResolveLinks(path);
    // Where only the folder's permissions count, a write-protected file could be replaced as well.
    if (files.Exists(target) && files.Open(target, FileMode::Append) == nullptr) {
        return false;
    }
    CVelmString temporary;
    auto file = CreateTemporary(files, target, temporary);
    if (file == nullptr) {
        return false;
    }
    const bool written =
        file->Write(bytes.data(), bytes.size()) == static_cast<std::int64_t>(bytes.size()) && file->Flush();
    file.reset();
    if (written && files.Replace(temporary, target)) {
        return true;
    }
    files.Remove(temporary);
    return false;
}

bool CopyFileTo(CVelmFileSystem& files, const CVelmString& source, const CVelmString& path) {
    const auto file = files.Open(source, FileMode::Read);
    std::string bytes;
    return file != nullptr && ReadToEnd(*file, SIZE_MAX, bytes) && ReplaceFile(files, path, bytes);
}

}  // namespace velm
