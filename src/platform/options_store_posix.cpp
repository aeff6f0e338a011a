#include <cerrno>
#include <filesystem>

#include "platform/file.h"
#include "platform/options_store.h"
#include "platform/xdg_folder_posix.h"

namespace velm {
namespace {

class CVelmOptionsFile : public CVelmOptionsStore {
public:
    explicit CVelmOptionsFile(const CVelmString& path) : path_(path) {}

    std::optional<std::vector<std::byte>> Read(std::size_t limit) override {
        const auto file = path_.empty() ? nullptr : SystemFiles().Open(path_, FileMode::Read);
        if (!file) {
            return std::nullopt;
        }
        // Read one byte more than the limit to detect a longer file.
        std::vector<std::byte> bytes(limit + 1);
        const std::int64_t count = file->Read(bytes.data(), bytes.size());
        if (count < 0 || static_cast<std::size_t>(count) > limit) {
            return std::nullopt;
        }
        bytes.resize(static_cast<std::size_t>(count));
        return bytes;
    }

    std::int32_t Write(const void* bytes, std::size_t count) override {
        if (path_.empty()) {
            return ENOENT;
        }
        std::error_code error;
        std::filesystem::create_directories(std::filesystem::path(ToUtf8(path_)).parent_path(), error);
        if (error) {
            return error.value();
        }
        const CVelmString target = SystemFiles().ResolveLinks(path_);
        const CVelmString draft = target + u".new";
        if (!WriteDraft(draft, bytes, count) || !SystemFiles().Replace(draft, target)) {
            const int status = errno != 0 ? errno : EIO;
            SystemFiles().Remove(draft);
            return status;
        }
        return 0;
    }

private:
    static bool WriteDraft(const CVelmString& path, const void* bytes, std::size_t count) {
        const auto file = SystemFiles().Open(path, FileMode::Write);
        return file && file->Write(bytes, count) == static_cast<std::int64_t>(count) && file->Flush();
    }

    CVelmString path_;
};

}  // namespace

CVelmString DefaultOptionsLocation() {
    const CVelmString folder = XdgFolder(u"XDG_CONFIG_HOME", u".config");
    return folder.empty() ? folder : folder + u"options";
}

std::unique_ptr<CVelmOptionsStore> OpenOptionsStore(const CVelmString& location) {
    return std::make_unique<CVelmOptionsFile>(location);
}

}  // namespace velm
