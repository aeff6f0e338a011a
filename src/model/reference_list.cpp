#include "model/reference_list.h"

#include <string>
#include <string_view>

namespace velm {
namespace {

constexpr CVelmStringView EXTENSION = u".htm";
constexpr std::size_t MAX_PAGE_SIZE = 16 << 20;

CVelmString Decode(std::string_view bytes) {
    if (bytes.starts_with(UTF8_MARK)) {
        return FromUtf8(bytes.substr(UTF8_MARK.size()));
    }
    CVelmString text = FromUtf8(bytes);
    if (text.find(u'\uFFFD') == CVelmString::npos) {
        return text;
    }
    // Pages made on older handhelds are in the system's 8-bit characters.
    text.clear();
    for (const char byte : bytes) {
        text += static_cast<char16_t>(static_cast<unsigned char>(byte));
    }
    return text;
}

}  // namespace

void CVelmReferenceList::ScanReferences(const CVelmString& folder) {
    folder_ = WithSeparator(folder);
    const auto entries = services_.files.List(folder_);
    if (!entries) {
        return;
    }
    for (const CVelmFolderEntry& entry : *entries) {
        if (!entry.isFolder && entry.name.size() > EXTENSION.size() && EndsWithNoCase(entry.name, EXTENSION)) {
            names.push_back(entry.name.substr(0, entry.name.size() - EXTENSION.size()));
        }
    }
}

bool CVelmReferenceList::ReadReference(std::size_t index, CVelmString& text) const {
    if (index >= names.size()) {
        return false;
    }
    const auto name = FindInFolder(services_.files, folder_, names[index] + CVelmString(EXTENSION));
    const auto file = name ? services_.files.Open(folder_ + *name, FileMode::Read) : nullptr;
    std::string bytes;
    if (file) {
        ReadToEnd(*file, MAX_PAGE_SIZE, bytes);  // keep what could be read
    }
    if (bytes.empty()) {
        return false;
    }
    text = Decode(bytes);
    return true;
}

}  // namespace velm
