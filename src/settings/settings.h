#pragma once

#include <cstdint>

#include "platform/text.h"

namespace velm {

class CVelmCatalog;
class CVelmOptionsStore;

/// Fields of the options record: a text, and a list of names; both ended by a NUL.
using CVelmSettingsText = char16_t[128];
using CVelmSettingsList = char16_t[192];

/// The options record, kept byte for byte: 900 bytes, text as UTF-16LE, unused bytes zero.
struct CVelmSettings {
    CVelmSettingsList openFiles = {};   ///< names of at most six files, each ended by a NUL, the list by one more
    CVelmSettingsText dataFolder = {};  ///< ends with a folder separator
    CVelmSettingsText updateUrl = {};
    std::uint32_t twoLineRows = 0;
};
static_assert(sizeof(CVelmSettings) == 900);

/// The address of the update list until the user names another. Its host never resolves.
constexpr CVelmStringView DEFAULT_UPDATE_URL = u"http://updates.corvane.example/velm/convupd.txt";

/// Loads the stored record when it is 900 bytes of the right type, then sets every empty field but `twoLineRows` to its
/// default. `programFolder` ends with a folder separator; a default data folder too long for its field is left out
/// (DataFolder still finds it). Every text is NUL-terminated afterwards.
void LoadSettings(CVelmSettings& settings, CVelmOptionsStore& store, const CVelmString& programFolder);

/// The same without the defaults: the stored record, or no change.
void ReadStoredSettings(CVelmSettings& settings, CVelmOptionsStore& store);

/// Stores the record. Returns the system's status, 0 on success.
std::int32_t SaveSettings(const CVelmSettings& settings, CVelmOptionsStore& store);

/// Fills `openFiles` with the file names of the catalog's first six documents. A name that no longer fits whole is
/// left out.
void SaveOpenFileList(CVelmSettings& settings, const CVelmCatalog& catalog);

/// The list as CVelmCatalog::AddFiles takes it, and its first name (empty when there is none).
CVelmStringView OpenFileList(const CVelmSettings& settings);
CVelmStringView FirstOpenFile(const CVelmSettings& settings);

/// The texts up to their NUL; the folder is the default one when the field is empty, with a separator behind it.
CVelmString DataFolder(const CVelmSettings& settings, const CVelmString& programFolder);
CVelmString UpdateUrl(const CVelmSettings& settings);

/// Copies a text into a field, truncated to fit with its NUL; the rest of the field is zeroed.
void SetField(CVelmSettingsText& field, CVelmStringView text);

}  // namespace velm
