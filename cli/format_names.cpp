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

}  // namespace velm
