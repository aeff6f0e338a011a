#include "cli/process.h"

#include <algorithm>
#include <stdexcept>

namespace velm::test {

namespace {

std::string Describe(const ProcessResult& result) {
    return "status " + std::to_string(result.status) + ": " + result.out + result.err;
}

}  // namespace

std::string Out(const Words& arguments, std::string_view input) {
    const ProcessResult result = RunVelmora(arguments, input);
    return result.status == 0 && result.err.empty() ? result.out : Describe(result);
}

std::string Refusal(const Words& arguments) {
    const ProcessResult result = RunVelmora(arguments);
    const std::string_view prefix = "velmora: ";
    const bool isOneLine = std::count(result.err.begin(), result.err.end(), '\n') == 1 && result.err.ends_with('\n');
    if (result.status == 0 || !result.out.empty() || !isOneLine || !result.err.starts_with(prefix)) {
        return Describe(result);
    }
    return std::to_string(result.status) + ": " +
           result.err.substr(prefix.size(), result.err.size() - prefix.size() - 1);
}

void DataSources::Add(const std::string& name, std::string_view source) {
    folder_.WriteText(u"source.toml", source);
    if (const std::string text = Out({"import", PathOf("source.toml"), PathOf(name)}); !text.empty()) {
        throw std::runtime_error(text);
    }
}

Words DataSources::With(Words arguments) const {
    arguments.insert(arguments.begin(), {"--data", ToUtf8(folder_.Path())});
    return arguments;
}

std::string DataSources::PathOf(const std::string& name) const {
    return ToUtf8(folder_.PathOf(FromUtf8(name)));
}

}  // namespace velm::test
