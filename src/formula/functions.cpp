#include "formula/functions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include "datetime/time_zones.h"
#include "formula/formula_context.h"

namespace velm {

namespace {

using Context = FormulaContext;

constexpr double HALF_PI = 1.5707963267948966;
constexpr double PI = 2.0 * HALF_PI;
constexpr double FAILURE = std::numeric_limits<double>::quiet_NaN();

double ToRadians(const Context& context, double angle) {
    switch (context.Angle()) {
        case AngleMode::Degrees:
            return angle * 0.011111111111111112 * HALF_PI;
        case AngleMode::Grads:
            return angle * 0.01 * HALF_PI;
        default:
            return angle;
    }
}

double FromRadians(const Context& context, double radians) {
    switch (context.Angle()) {
        case AngleMode::Degrees:
            return radians / HALF_PI * 90.0;
        case AngleMode::Grads:
            return radians / HALF_PI * 100.0;
        default:
            return radians;
    }
}

/// abs(fmod(angle, 2 pi)), without the division for an angle within one turn.
double WithinTurn(double angle) {
    const double size = std::fabs(angle);
    return size < 2.0 * PI ? size : std::fmod(size, 2.0 * PI);
}

double Sin(Context& context, double angle, double) {
    const double turn = WithinTurn(HALF_PI - ToRadians(context, angle));
    // Folded about pi, not 2 pi as in Cos. Deliberate: files rely on the resulting sign beyond pi.
    return std::sin(HALF_PI - (turn > PI ? PI - turn : turn));
}

double Cos(Context& context, double angle, double) {
    const double turn = WithinTurn(ToRadians(context, angle));
    return std::sin(HALF_PI - (turn > PI ? 2.0 * PI - turn : turn));
}

double Tan(Context& context, double angle, double) {
    const double turn = std::fmod(ToRadians(context, angle), PI);
    return std::fabs(turn) == HALF_PI ? FAILURE : std::tan(turn);
}

bool IsSine(double value) {
    return value >= -1.0 && value <= 1.0;
}

double Asin(Context& context, double value, double) {
    return IsSine(value) ? FromRadians(context, std::asin(value)) : FAILURE;
}

double Acos(Context& context, double value, double) {
    return IsSine(value) ? FromRadians(context, std::acos(value)) : FAILURE;
}

double Atan(Context& context, double value, double) {
    return FromRadians(context, std::atan(value));
}

double FromUtcOf(Context&, double zone, double time) {
    return FromUtc(zone, time) ? time : FAILURE;
}

double ToUtcOf(Context&, double zone, double time) {
    return ToUtc(zone, time) ? time : FAILURE;
}

double TimeInZone(Context& context, double zone, double) {
    double time = 0.0;
    return ZoneTimeNow(zone, context.Clock(), time) ? time : FAILURE;
}

double LocalTime(Context& context, double, double) {
    return TimeInZone(context, -1.0, 0.0);
}

double Random(Context& context, double, double) {
    return context.Random().Next() * 3.051850947599719e-5;
}

// A cosine hyperbolic is never zero, so "tanh" has no failure of its own.
constexpr auto FUNCTIONS = std::to_array<FunctionRow>({
    {u"abs", 1, [](Context&, double a, double) { return std::fabs(a); }},
    {u"acos", 1, Acos},
    {u"asin", 1, Asin},
    {u"atan", 1, Atan},
    {u"cos", 1, Cos},
    {u"cosh", 1, [](Context&, double a, double) { return std::cosh(a); }},
    {u"e", 0, [](Context&, double, double) { return 2.718281828459045; }},
    {u"err", 0, [](Context&, double, double) { return FAILURE; }},
    {u"fromutc", 2, FromUtcOf},
    {u"inttime", 1, TimeInZone, true},
    {u"lg", 1, [](Context&, double a, double) { return a > 0.0 ? std::log10(a) : FAILURE; }},
    {u"ln", 1, [](Context&, double a, double) { return a > 0.0 ? std::log(a) : FAILURE; }},
    {u"neg", 1, [](Context&, double a, double) { return -a; }},
    {u"pi", 0, [](Context&, double, double) { return PI; }},
    {u"rand", 0, Random, true},
    // Deliberate: halves go up below zero too, so that round(-2.5) is -2.
    {u"round", 1, [](Context&, double a, double) { return std::floor(a + 0.5); }},
    {u"sin", 1, Sin},
    {u"sinh", 1, [](Context&, double a, double) { return std::sinh(a); }},
    {u"sqrt", 1, [](Context&, double a, double) { return a < 0.0 ? FAILURE : std::sqrt(a); }},
    {u"tan", 1, Tan},
    {u"tanh", 1, [](Context&, double a, double) { return std::tanh(a); }},
    {u"time", 0, LocalTime, true},
    {u"toutc", 2, ToUtcOf},
});

static_assert(std::ranges::is_sorted(FUNCTIONS, {}, &FunctionRow::name));

/// Packs a name of up to eight ASCII characters into a number that sorts like the name; 0 for any other text. Speeds up
/// name lookup, a good part of the parsing time.
constexpr std::uint64_t KeyOf(CVelmStringView name) {
    std::uint64_t key = 0;
    if (name.empty() || name.size() > sizeof(key)) {
        return key;
    }
    for (const char16_t character : name) {
        if (character == 0 || character > 0x7F) {
            return 0;
        }
        key = key << 8 | character;
    }
    return key << 8 * (sizeof(key) - name.size());
}

constexpr auto KEYS = [] {
    std::array<std::uint64_t, FUNCTIONS.size()> keys{};
    std::ranges::transform(FUNCTIONS, keys.begin(), KeyOf, &FunctionRow::name);
    return keys;
}();

static_assert(KEYS.front() != 0 && std::ranges::is_sorted(KEYS), "no name is longer than eight characters");

}  // namespace

std::span<const FunctionRow> Functions() {
    return FUNCTIONS;
}

const FunctionRow* FindFunction(CVelmStringView name, std::int32_t arity) {
    const std::uint64_t key = KeyOf(name);
    const auto found = std::ranges::lower_bound(KEYS, key);
    if (found == KEYS.end() || *found != key) {
        return nullptr;
    }
    const FunctionRow& row = FUNCTIONS[static_cast<std::size_t>(found - KEYS.begin())];
    return row.arity == arity ? &row : nullptr;
}

}  // namespace velm
