#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "model/catalog.h"
#include "platform/options_store.h"
#include "settings/settings.h"
#include "support/memory_files.h"
#include "support/test_services.h"

namespace velm::test {
namespace {

void Expect(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

class InputOptions : public CVelmOptionsStore {
public:
    explicit InputOptions(std::vector<std::byte> stored) : stored_(std::move(stored)) {}

    std::optional<std::vector<std::byte>> Read(std::size_t limit) override {
        return stored_.size() <= limit ? std::optional(stored_) : std::nullopt;
    }
    std::int32_t Write(const void* bytes, std::size_t count) override {
        const auto* first = static_cast<const std::byte*>(bytes);
        stored_.assign(first, first + count);
        return 0;
    }

private:
    std::vector<std::byte> stored_;
};

template <std::size_t SIZE>
bool HasEnd(const char16_t (&field)[SIZE]) {
    return std::find(std::begin(field), std::end(field), u'\0') != std::end(field);
}

void Use(std::vector<std::byte> stored) {
    InputOptions store(std::move(stored));
    const CVelmString programFolder = WithSeparator(u"program");
    CVelmSettings settings;
    LoadSettings(settings, store, programFolder);
    Expect(HasEnd(settings.openFiles) && HasEnd(settings.dataFolder) && HasEnd(settings.updateUrl), "texts have ends");
    Expect(!FirstOpenFile(settings).empty() && !UpdateUrl(settings).empty(), "empty fields have defaults");
    Expect(DataFolder(settings, programFolder).back() == FolderSeparator, "the folder ends with a separator");

    MemoryFiles files;
    TestServices services(files);
    CVelmCatalog catalog(services.Services());
    catalog.SetFolder(DataFolder(settings, programFolder));
    catalog.AddFiles(OpenFileList(settings));
    SaveOpenFileList(settings, catalog);
    SetField(settings.updateUrl, UpdateUrl(settings));

    Expect(SaveSettings(settings, store) == 0, "saved");
    CVelmSettings again;
    ReadStoredSettings(again, store);
    Expect(std::memcmp(&again, &settings, sizeof settings) == 0, "what is saved comes back");
}

}  // namespace
}  // namespace velm::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto* first = reinterpret_cast<const std::byte*>(data);
    velm::test::Use({first, first + size});
    return 0;
}
