#include <algorithm>
#include <cstring>

#include "fuzz/fuzz.h"
#include "model/catalog.h"
#include "settings/settings.h"
#include "support/memory_files.h"
#include "support/memory_options.h"
#include "support/test_services.h"

namespace velm::test {
namespace {

template <std::size_t SIZE>
bool HasEnd(const char16_t (&field)[SIZE]) {
    return std::find(std::begin(field), std::end(field), u'\0') != std::end(field);
}

}  // namespace

void Try(Input input) {
    MemoryOptions store;
    store.Write(input.data(), input.size());
    const CVelmString programFolder = WithSeparator(u"program");
    CVelmSettings settings;
    LoadSettings(settings, store, programFolder);
    Require(HasEnd(settings.openFiles) && HasEnd(settings.dataFolder) && HasEnd(settings.updateUrl), "texts have ends");
    Require(!FirstOpenFile(settings).empty() && !UpdateUrl(settings).empty(), "empty fields have defaults");
    Require(DataFolder(settings, programFolder).back() == FolderSeparator, "the folder ends with a separator");

    MemoryFiles files;
    TestServices services(files);
    CVelmCatalog catalog(services.Services());
    catalog.SetFolder(DataFolder(settings, programFolder));
    catalog.AddFiles(OpenFileList(settings));
    SaveOpenFileList(settings, catalog);
    SetField(settings.updateUrl, UpdateUrl(settings));

    Require(SaveSettings(settings, store) == 0, "saved");
    CVelmSettings again;
    ReadStoredSettings(again, store);
    Require(std::memcmp(&again, &settings, sizeof settings) == 0, "what is saved comes back");
}

}  // namespace velm::test
