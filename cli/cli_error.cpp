#include "cli_error.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/fetch.h"

namespace velm {

void Fail(const std::string& text) {
    throw CVelmCliError(STATUS_FAILED, text);
}

void FailUsage(const std::string& text) {
    throw CVelmCliError(STATUS_USAGE, text);
}

void CheckHttp(const CVelmString& url) {
    if (!StartsWithNoCase(url, HTTP_SCHEME)) {
        Fail(Quoted(ToUtf8(url)) + " does not begin with " + ToUtf8(HTTP_SCHEME));
    }
}

void CheckWebAddress(const CVelmString& url) {
    if (!IsWebAddress(url)) {
        Fail(fmt::format("{} does not begin with {} or {}", Quoted(ToUtf8(url)), ToUtf8(HTTP_SCHEME),
                         ToUtf8(HTTPS_SCHEME)));
    }
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    quoted += text;
    quoted += '"';
    return quoted;
}

std::string OneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
    return text;
}

}  // namespace velm
