#include <windows.h>

#include "platform/options_store.h"
#include "platform/scope_exit.h"
#include "platform/wide_text_win32.h"

namespace velm {
namespace {

constexpr const wchar_t* OPTIONS_VALUE = L"Options";

class CVelmRegistryOptions : public CVelmOptionsStore {
public:
    explicit CVelmRegistryOptions(const CVelmString& path) : path_(path) {}

    std::optional<std::vector<std::byte>> Read(std::size_t limit) override {
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, Wide(path_), 0, KEY_READ, &key) != ERROR_SUCCESS) {
            return std::nullopt;
        }
        const CVelmScopeExit closing([key] { RegCloseKey(key); });
        std::vector<std::byte> bytes(limit);
        DWORD type = REG_NONE;
        auto size = static_cast<DWORD>(limit);
        const LSTATUS status =
            RegQueryValueExW(key, OPTIONS_VALUE, nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
        if (status != ERROR_SUCCESS || type != REG_BINARY) {
            return std::nullopt;
        }
        bytes.resize(size);
        return bytes;
    }

    std::int32_t Write(const void* bytes, std::size_t count) override {
        HKEY key = nullptr;
        const LSTATUS created =
            RegCreateKeyExW(HKEY_CURRENT_USER, Wide(path_), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
        if (created != ERROR_SUCCESS) {
            return static_cast<std::int32_t>(created);
        }
        const CVelmScopeExit closing([key] { RegCloseKey(key); });
        return static_cast<std::int32_t>(RegSetValueExW(key, OPTIONS_VALUE, 0, REG_BINARY,
                                                        static_cast<const BYTE*>(bytes), static_cast<DWORD>(count)));
    }

private:
    CVelmString path_;
};

}  // namespace

CVelmString DefaultOptionsLocation() {
    return u"Software\\Corvane\\Velmora\\Settings";
}

std::unique_ptr<CVelmOptionsStore> OpenOptionsStore(const CVelmString& location) {
    return std::make_unique<CVelmRegistryOptions>(location);
}

}  // namespace velm
