#include "model/file_names.h"

#include <algorithm>
#include <array>

#include "model/catalog.h"

namespace velm {
namespace {

constexpr CVelmStringView FORBIDDEN_CHARACTERS = u"\\/:*?\"<>|";

constexpr std::array<CVelmStringView, 7> DEVICES = {u"con", u"prn", u"aux", u"nul", u"conin$", u"conout$", u"clock$"};

/// What tells a new file from another of its name.
constexpr CVelmStringView NEW_FILE_MARK = u"_new";

/// Devices that carry a digit behind them.
constexpr std::array<CVelmStringView, 2> NUMBERED_DEVICES = {u"com", u"lpt"};

constexpr CVelmStringView DEVICE_DIGITS = u"0123456789\u00B9\u00B2\u00B3";

bool IsControl(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

/// A device keeps its meaning with any extension and with blanks behind its name.
bool IsDeviceName(CVelmStringView name) {
    CVelmStringView stem = name.substr(0, name.find(u'.'));
    stem = stem.substr(0, stem.find_last_not_of(u' ') + 1);
    const auto is = [&](CVelmStringView device) { return EqualsNoCase(stem, device); };
    if (std::any_of(DEVICES.begin(), DEVICES.end(), is)) {
        return true;
    }
    if (stem.empty() || DEVICE_DIGITS.find(stem.back()) == CVelmStringView::npos) {
        return false;
    }
    stem.remove_suffix(1);
    return std::any_of(NUMBERED_DEVICES.begin(), NUMBERED_DEVICES.end(), is);
}

}  // namespace

bool IsFileNameAllowed(CVelmStringView name) {
    if (name.empty() || name.back() == u'.' || name.back() == u' ') {
        return false;
    }
    return name.find_first_of(FORBIDDEN_CHARACTERS) == CVelmStringView::npos &&
           std::none_of(name.begin(), name.end(), IsControl) && !IsDeviceName(name);
}

bool IsFileNameTaken(const CVelmCatalog& catalog, std::int32_t kind, const CVelmString& name) {
    const CVelmString file = WithExtension(name, kind);
    return catalog.FindDocument(file) >= 0 ||
           FindInFolder(catalog.Services().files, catalog.Folder(), file).has_value();
}

CVelmString MakeNewFileName(const CVelmCatalog& catalog, std::int32_t kind, CVelmString name) {
    if (!IsFileNameAllowed(name)) {
        return name;  // the system says that a file of a device's name exists
    }
    while (IsFileNameTaken(catalog, kind, name)) {
        name += NEW_FILE_MARK;
    }
    return name.substr(0, FILE_NAME_MAX_LENGTH);
}

}  // namespace velm
