#include "settings/settings.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "model/catalog.h"
#include "platform/file.h"
#include "platform/options_store.h"

namespace velm {
namespace {

constexpr std::size_t OPEN_FILES = 6;

constexpr char16_t DEFAULT_OPEN_FILES[] =
    u"Currency.cnv\0Weight.cnv\0Length.cnv\0TipCalc.cal\0TimeZones.cnv\0ComputerBase.cnv\0\0";
static_assert(sizeof(DEFAULT_OPEN_FILES) == 160);

template <std::size_t SIZE>
CVelmStringView TextOf(const char16_t (&field)[SIZE]) {
    const auto* end = std::find(std::begin(field), std::end(field), u'\0');
    return {field, static_cast<std::size_t>(end - field)};
}

/// Terminates the list with a NUL by dropping a name that runs to the end of the field.
void EndOpenFiles(CVelmSettingsList& list) {
    for (std::size_t at = std::size(list); at > 0 && list[at - 1] != 0; --at) {
        list[at - 1] = 0;
    }
}

CVelmString DefaultDataFolder(const CVelmString& programFolder) {
    return WithSeparator(programFolder + u"Conversions");
}

}  // namespace

void ReadStoredSettings(CVelmSettings& settings, CVelmOptionsStore& store) {
    const auto bytes = store.Read(sizeof settings);
    if (bytes && bytes->size() == sizeof settings) {
        std::memcpy(&settings, bytes->data(), sizeof settings);
    }
    EndOpenFiles(settings.openFiles);
    *std::rbegin(settings.dataFolder) = 0;
    *std::rbegin(settings.updateUrl) = 0;
}

void LoadSettings(CVelmSettings& settings, CVelmOptionsStore& store, const CVelmString& programFolder) {
    ReadStoredSettings(settings, store);
    if (settings.openFiles[0] == 0) {
        std::copy(std::begin(DEFAULT_OPEN_FILES), std::end(DEFAULT_OPEN_FILES), settings.openFiles);
    }
    const CVelmString folder = DefaultDataFolder(programFolder);
    // Half a path would name another folder.
    if (settings.dataFolder[0] == 0 && folder.size() < std::size(settings.dataFolder)) {
        SetField(settings.dataFolder, folder);
    }
    if (settings.updateUrl[0] == 0) {
        SetField(settings.updateUrl, DEFAULT_UPDATE_URL);
    }
}

std::int32_t SaveSettings(const CVelmSettings& settings, CVelmOptionsStore& store) {
    return store.Write(&settings, sizeof settings);
}

void SaveOpenFileList(CVelmSettings& settings, const CVelmCatalog& catalog) {
    std::fill(std::begin(settings.openFiles), std::end(settings.openFiles), u'\0');
    const std::size_t count = std::min(OPEN_FILES, catalog.documents.size());
    std::size_t used = 0;
    for (std::size_t at = 0; at < count; ++at) {
        const CVelmDocument& document = *catalog.documents[at];
        // A document without a name adds an empty name, which ends the list for readers.
        const CVelmString name = document.fileName.empty() ? CVelmString() : document.FileNameWithExtension();
        // Room for the name's own NUL and for the one that ends the list.
        if (used + name.size() + 2 > std::size(settings.openFiles)) {
            continue;
        }
        std::copy(name.begin(), name.end(), settings.openFiles + used);
        used += name.size() + 1;
    }
}

CVelmStringView OpenFileList(const CVelmSettings& settings) {
    return {settings.openFiles, std::size(settings.openFiles)};
}

CVelmStringView FirstOpenFile(const CVelmSettings& settings) {
    return TextOf(settings.openFiles);
}

CVelmString DataFolder(const CVelmSettings& settings, const CVelmString& programFolder) {
    const CVelmStringView folder = TextOf(settings.dataFolder);
    return folder.empty() ? DefaultDataFolder(programFolder) : WithSeparator(CVelmString(folder));
}

CVelmString UpdateUrl(const CVelmSettings& settings) {
    return CVelmString(TextOf(settings.updateUrl));
}

void SetField(CVelmSettingsText& field, CVelmStringView text) {
    // A copy, because the text may be the field's own.
    const CVelmString kept(text.substr(0, std::size(field) - 1));
    std::fill(std::begin(field), std::end(field), u'\0');
    std::copy(kept.begin(), kept.end(), field);
}

}  // namespace velm
