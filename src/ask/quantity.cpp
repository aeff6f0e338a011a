#include "ask/quantity.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace velm {

namespace {

constexpr int MAX_HALVES = 100;

/// In the order of BaseDimension.
constexpr std::array<CVelmStringView, BASE_COUNT> BASE_NAMES = {
    u"length", u"mass",  u"time",       u"temperature", u"current", u"amount", u"luminous intensity",
    u"money",  u"angle", u"information"};

template <typename Operation>
std::optional<CVelmDimension> Combine(const CVelmDimension& a, const CVelmDimension& b, Operation operation) {
    CVelmDimension result;
    for (std::size_t i = 0; i < BASE_COUNT; ++i) {
        const int halves = operation(int{a.halves[i]}, int{b.halves[i]});
        if (std::abs(halves) > MAX_HALVES) {
            return std::nullopt;
        }
        result.halves[i] = static_cast<std::int8_t>(halves);
    }
    return result;
}

/// Reads "NAME" or "NAME^DIGITS".
std::optional<CVelmDimension> ParseFactor(CVelmStringView text) {
    const std::size_t caret = text.find(u'^');
    const CVelmStringView name = Trim(text.substr(0, caret), u" ");
    CVelmDimension factor;
    if (name == u"1") {
        return factor;
    }
    const auto* const found = std::ranges::find(BASE_NAMES, name);
    if (found == BASE_NAMES.end()) {
        return std::nullopt;
    }
    int exponent = 1;
    if (caret != CVelmStringView::npos) {
        const CVelmStringView digits = Trim(text.substr(caret + 1), u" ");
        if (digits.size() != 1 || !IsDigit(digits[0])) {
            return std::nullopt;
        }
        exponent = digits[0] - u'0';
    }
    factor.halves[static_cast<std::size_t>(found - BASE_NAMES.begin())] = static_cast<std::int8_t>(2 * exponent);
    return factor;
}

void AppendFactor(CVelmString& text, CVelmStringView name, int halves) {
    text += name;
    if (halves == 2) {
        return;
    }
    text += u'^';
    text += halves % 2 == 0 ? IntegerText(halves / 2) : u"(" + IntegerText(halves) + u"/2)";
}

}  // namespace

std::optional<CVelmDimension> CVelmDimension::Times(const CVelmDimension& other) const {
    return Combine(*this, other, [](int a, int b) { return a + b; });
}

std::optional<CVelmDimension> CVelmDimension::Over(const CVelmDimension& other) const {
    return Combine(*this, other, [](int a, int b) { return a - b; });
}

std::optional<CVelmDimension> CVelmDimension::Power(double exponent) const {
    CVelmDimension result;
    for (std::size_t i = 0; i < BASE_COUNT; ++i) {
        const double power = halves[i] * exponent;
        if (!(std::fabs(power) <= MAX_HALVES) || std::fabs(power - std::round(power)) > 1e-9) {
            return std::nullopt;
        }
        result.halves[i] = static_cast<std::int8_t>(std::lround(power));
    }
    return result;
}

CVelmDimension CVelmDimension::WithoutAngle() const {
    CVelmDimension result = *this;
    result.halves[BASE_ANGLE] = 0;
    return result;
}

std::optional<CVelmDimension> ParseDimension(CVelmStringView text) {
    CVelmDimension result;
    bool divides = false;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find_first_of(u"*/", start), text.size());
        const auto factor = ParseFactor(text.substr(start, end - start));
        if (!factor) {
            return std::nullopt;
        }
        const auto product = divides ? result.Over(*factor) : result.Times(*factor);
        if (!product) {
            return std::nullopt;
        }
        result = *product;
        divides = end < text.size() && text[end] == u'/';
        start = end + 1;
    }
    return result;
}

CVelmString DimensionText(const CVelmDimension& dimension) {
    CVelmString text;
    for (std::size_t i = 0; i < BASE_COUNT; ++i) {
        if (dimension.halves[i] > 0) {
            text += text.empty() ? u"" : u"*";
            AppendFactor(text, BASE_NAMES[i], dimension.halves[i]);
        }
    }
    for (std::size_t i = 0; i < BASE_COUNT; ++i) {
        if (dimension.halves[i] < 0) {
            text += text.empty() ? u"1/" : u"/";
            AppendFactor(text, BASE_NAMES[i], -dimension.halves[i]);
        }
    }
    return text.empty() ? CVelmString(u"number") : text;
}

}  // namespace velm
