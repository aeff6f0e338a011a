#include "source_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "cli_error.h"
#include "formula/formula_errors.h"
#include "model/file_stream.h"
#include "number_text.h"
#include "source_keys.h"
#include "suggest.h"

namespace velm {

namespace {

/// The whole text as a number in the given base; nothing when it is anything else.
template <typename Number, typename... Base>
std::optional<Number> ReadWhole(std::string_view text, Base... base) {
    Number number{};
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number, base...);
    return !text.empty() && end.ec == std::errc() && end.ptr == text.data() + text.size() ? std::optional(number)
                                                                                          : std::nullopt;
}

std::optional<CVelmString> ReadUnits(std::string_view list) {
    CVelmString text;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(' '), list.size());
        const auto unit = ReadWhole<std::uint16_t>(list.substr(0, end), 16);
        if (!unit || end != 4) {
            return std::nullopt;
        }
        text += static_cast<char16_t>(*unit);
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return text;
}

double NumberOfText(const SourceFile& file, const toml::node& node, const std::string& text, std::string_view what) {
    constexpr std::size_t BITS_LENGTH = 18;
    if (text.starts_with("0x") && text.size() == BITS_LENGTH) {
        if (const auto bits = ReadWhole<std::uint64_t>(std::string_view(text).substr(2), 16)) {
            return std::bit_cast<double>(*bits);
        }
    }
    // Correctly rounded, unlike the digit-by-digit reading of formulas.
    if (const auto decimal = ReadWhole<double>(text); decimal && std::isfinite(*decimal)) {
        return *decimal;
    }
    double value = 0.0;
    if (!EvaluateFormula(file.formulas, FromUtf8(text), value)) {
        FailAt(file, node,
               fmt::format("cannot evaluate {} of {}: {}", Quoted(text), what,
                           ToUtf8(ExplainFailure(file.formulas, FromUtf8(text)).message)));
    }
    return value;
}

}  // namespace

void FailAt(const SourceFile& file, const toml::node& node, const std::string& text) {
    Fail(fmt::format("{}:{}: {}", file.name, node.source().begin.line, text));
}

CVelmString ReadText(const SourceFile& file, const toml::node& node, std::string_view what) {
    std::optional<CVelmString> text;
    if (const auto* string = node.as_string()) {
        text = FromUtf8(string->get());
    } else if (const auto* table = node.as_table(); table != nullptr && table->size() == 1) {
        const auto* units = table->get_as<std::string>(KEY_UTF16);
        text = units != nullptr ? ReadUnits(units->get()) : std::nullopt;
    }
    if (!text) {
        FailAt(file, node, fmt::format("{} must be a text or {{ utf16 = \"0041 D800\" }}", what));
    }
    if (text->size() > static_cast<std::size_t>(CVelmFileStream::MAX_STRING)) {
        FailAt(file, node, fmt::format("{} is longer than {} characters", what, CVelmFileStream::MAX_STRING));
    }
    return *text;
}

double ReadNumber(const SourceFile& file, const toml::node& node, std::string_view what) {
    if (const auto* integer = node.as_integer()) {
        return static_cast<double>(integer->get());
    }
    if (const auto* real = node.as_floating_point()) {
        return real->get();
    }
    if (const auto* text = node.as_string()) {
        return NumberOfText(file, node, text->get(), what);
    }
    FailAt(file, node, fmt::format("{} must be a number or a formula in quotation marks", what));
}

CVelmSourceTable::CVelmSourceTable(const SourceFile& file, const toml::table& table, const char* what,
                                   std::span<const std::string_view> keys)
    : file_(file), table_(table), what_(what) {
    for (const auto& [key, node] : table) {
        if (std::find(keys.begin(), keys.end(), key.str()) == keys.end()) {
            const std::vector<std::string> known(keys.begin(), keys.end());
            FailAt(file, node,
                   fmt::format("there is no key {} in {}; {}", Quoted(std::string(key.str())), what,
                               DidYouMean(key.str(), known)));
        }
    }
    for (const std::string_view key : REMARK_KEYS) {
        Texts(key);
    }
}

void CVelmSourceTable::FailAtKey(std::string_view key, const std::string& text) const {
    FailAt(file_, At(key), text);
}

CVelmString CVelmSourceTable::Text(std::string_view key) const {
    return Has(key) ? ReadText(file_, At(key), key) : CVelmString();
}

CVelmString CVelmSourceTable::RequiredText(std::string_view key) const {
    if (!Has(key)) {
        FailHere(fmt::format("{} has no {}", what_, key));
    }
    return Text(key);
}

CVelmString CVelmSourceTable::TextOrNumber(std::string_view key) const {
    if (!Has(key) || !At(key).is_number()) {
        return Text(key);
    }
    if (const auto* integer = At(key).as_integer()) {
        return IntegerText(integer->get());
    }
    std::string text = ShortestText(Number(key, 0.0));
    // Formulas have no "+" in an exponent.
    text.erase(std::remove(text.begin(), text.end(), '+'), text.end());
    return FromUtf8(text);
}

std::vector<CVelmString> CVelmSourceTable::Texts(std::string_view key) const {
    if (!Has(key)) {
        return {};
    }
    if (At(key).is_string()) {
        return {Text(key)};
    }
    const auto* list = At(key).as_array();
    if (list == nullptr) {
        FailAtKey(key, fmt::format("{} must be a text or a list of texts", key));
    }
    std::vector<CVelmString> texts;
    for (const toml::node& node : *list) {
        texts.push_back(ReadText(file_, node, key));
    }
    return texts;
}

double CVelmSourceTable::Number(std::string_view key, double otherwise) const {
    return Has(key) ? ReadNumber(file_, At(key), key) : otherwise;
}

std::int32_t CVelmSourceTable::Flag(std::string_view key, std::int32_t otherwise) const {
    if (!Has(key)) {
        return otherwise;
    }
    if (const auto* boolean = At(key).as_boolean()) {
        return boolean->get() ? 1 : 0;
    }
    const auto* integer = At(key).as_integer();
    using Limits = std::numeric_limits<std::int32_t>;
    if (integer == nullptr || integer->get() < Limits::min() || integer->get() > Limits::max()) {
        FailAtKey(key, fmt::format("{} must be true, false or a 32-bit integer", key));
    }
    return static_cast<std::int32_t>(integer->get());
}

}  // namespace velm
