#include "model/file_replacement.h"

#include <array>

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

bool KeepOriginal(const CVelmServices& services, const CVelmString& path) {
    const CVelmString backup = path + u".bak";
    if (services.files.Exists(backup) || !services.files.Exists(path)) {
        return true;
    }
    CVelmFileStream original(services.files, services.clock);
    if (!original.OpenRead(path)) {
        return false;
    }
    return ReplaceFile(services, backup, [&original](CVelmFileStream& copy) {
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

}  // namespace velm
