#include <windows.h>

#include "platform/options_store.h"
#include "platform/wide_text_win32.h"

namespace velm {
namespace {

constexpr const wchar_t* OPTIONS_VALUE = L"Options";

class CVelmRegistryKey {
public:
    CVelmRegistryKey() = default;
    ~CVelmRegistryKey() {
        if (key_ != nullptr) {
            RegCloseKey(key_);
        }
    }
    CVelmRegistryKey(const CVelmRegistryKey&) = delete;
    CVelmRegistryKey& operator=(const CVelmRegistryKey&) = delete;

    HKEY* Receive() { return &key_; }
    HKEY Get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

class CVelmRegistryOptions : public CVelmOptionsStore {
public:
    explicit CVelmRegistryOptions(const CVelmString& path) : path_(path) {}

    std::optional<std::vector<std::byte>> Read(std::size_t limit) override {
        CVelmRegistryKey key;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, Wide(path_), 0, KEY_READ, key.Receive()) != ERROR_SUCCESS) {
            return std::nullopt;
        }
        std::vector<std::byte> bytes(limit);
        DWORD type = REG_NONE;
        auto size = static_cast<DWORD>(limit);
        const LSTATUS status =
            RegQueryValueExW(key.Get(), OPTIONS_VALUE, nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
        if (status != ERROR_SUCCESS || type != REG_BINARY) {
            return std::nullopt;
        }
        bytes.resize(size);
        return bytes;
    }

    std::int32_t Write(const void* bytes, std::size_t count) override {
        CVelmRegistryKey key;
        const LSTATUS created =
            RegCreateKeyExW(HKEY_CURRENT_USER, Wide(path_), 0, nullptr, 0, KEY_WRITE, nullptr, key.Receive(), nullptr);
        if (created != ERROR_SUCCESS) {
            return static_cast<std::int32_t>(created);
        }
        return static_cast<std::int32_t>(RegSetValueExW(key.Get(), OPTIONS_VALUE, 0, REG_BINARY,
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
