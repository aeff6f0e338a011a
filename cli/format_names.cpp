#include "format_names.h"

namespace velm {

std::uint32_t AllFormats() {
    std::uint32_t all = 0;
    for (const FormatName& format : FORMAT_NAMES) {
        all |= format.code;
    }
    return all;
}

std::optional<std::uint32_t> FormatCode(std::string_view name) {
    for (const FormatName& format : FORMAT_NAMES) {
        if (format.name == name) {
            return format.code;
        }
    }
    return std::nullopt;
}

std::string_view NameOfFormat(std::uint32_t code) {
    for (const FormatName& format : FORMAT_NAMES) {
        if (format.code == code) {
            return format.name;
        }
    }
    return {};
}

std::vector<std::string> FormatWords() {
    std::vector<std::string> words;
    words.reserve(FORMAT_NAMES.size());
    for (const FormatName& format : FORMAT_NAMES) {
        words.emplace_back(format.name);
    }
    return words;
}

std::vector<std::string_view> NamesOfFormats(const CVelmValueFormat& format) {
    std::vector<std::string_view> names;
    if (const std::string_view shown = NameOfFormat(format.displayFormat); !shown.empty()) {
        names.push_back(shown);
    }
    for (const FormatName& other : FORMAT_NAMES) {
        if ((format.allowedFormats & other.code) != 0 && other.code != format.displayFormat) {
            names.push_back(other.name);
        }
    }
    return names;
}

}  // namespace velm
