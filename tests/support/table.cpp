#include "support/table.h"

#include <fstream>

namespace velm::test {

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(separator, at), text.size());
        const std::string part = text.substr(at, end - at);
        const std::size_t first = std::min(part.find_first_not_of(' '), part.size());
        parts.push_back(part.substr(first, part.find_last_not_of(' ') + 1 - first));
        at = end + separator.size();
    }
    return parts;
}

std::string Join(const std::vector<std::string>& texts, const std::string& separator) {
    std::string joined;
    for (const std::string& text : texts) {
        joined += (&text == texts.data() ? "" : separator) + text;
    }
    return joined;
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::vector<std::vector<std::string>> ReadTable(const std::string& path, const std::string& separator) {
    std::vector<std::vector<std::string>> rows;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && !line.starts_with("# ")) {
            rows.push_back(Split(line, separator));
        }
    }
    return rows.empty() ? throw std::runtime_error("nothing to read in " + path) : rows;
}

}  // namespace velm::test
