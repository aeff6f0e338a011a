#include "formats/compound_format.h"

#include <cmath>

#include "formats/decimal_format.h"

namespace velm {
namespace {

using CompoundNumbers = std::array<double, COMPOUND_PARTS>;

/// Splits a magnitude by the factors; returns how many numbers there are.
std::size_t SplitNumbers(const CVelmCompoundParts& parts, double magnitude, CompoundNumbers& numbers) {
    std::size_t count = 0;
    while (count < parts.size() && parts[count].factor != 0.0) {
        const double x = parts[count].factor * magnitude;
        const bool last = count + 1 == parts.size() || parts[count + 1].factor == 0.0;
        numbers[count] = last ? std::floor(x * 1000 + 0.5) * 0.001 : std::floor(x);
        magnitude = x - numbers[count];
        ++count;
    }
    return count;
}

bool IsNumberUnit(char16_t unit) {
    return IsDigit(unit) || unit == u'.';
}

/// A run of digits and points; points after the first are skipped.
double ReadRun(CVelmStringView run) {
    double number = 0.0;
    double place = 0.0;
    for (const char16_t unit : run) {
        if (unit == u'.') {
            place = place == 0.0 ? 1.0 : place;
        } else if (place == 0.0) {
            number = number * 10 + (unit - u'0');
        } else {
            place *= 10;
            number += (unit - u'0') / place;
        }
    }
    return number;
}

CompoundNumbers ReadNumbers(CVelmStringView group) {
    CompoundNumbers numbers = {};
    std::size_t count = 0;
    group = group.substr(0, group.find(u']'));
    for (std::size_t i = 0; i < group.size() && count < numbers.size();) {
        std::size_t end = i;
        while (end < group.size() && IsNumberUnit(group[end])) {
            ++end;
        }
        if (end == i) {
            ++i;
            continue;
        }
        numbers[count++] = ReadRun(group.substr(i, end - i));
        i = end;
    }
    return numbers;
}

}  // namespace

CVelmString FormatCompound(const CVelmCompoundParts& parts, double value) {
    CompoundNumbers numbers;
    const std::size_t count = SplitNumbers(parts, std::fabs(value), numbers);
    CVelmString text;
    if (value < 0) {
        text += u'(';
    }
    // Deliberate: every part is followed by a space, the last one too.
    for (std::size_t i = 0; i < count; ++i) {
        text += NumberToText(numbers[i]) + u' ';
        if (!parts[i].label.empty()) {
            text += parts[i].label + u' ';
        }
    }
    if (value < 0) {
        text += u')';
    }
    return text;
}

int SplitCompound(const CVelmCompoundParts& parts, double value, std::array<CVelmString, COMPOUND_PARTS>& texts) {
    CompoundNumbers numbers;
    const std::size_t count = SplitNumbers(parts, std::fabs(value), numbers);
    for (std::size_t i = 0; i < count; ++i) {
        texts[i] = NumberToText(numbers[i]);
    }
    return static_cast<int>(count);
}

double ParseCompound(const CVelmCompoundParts& parts, CVelmStringView group) {
    const CompoundNumbers numbers = ReadNumbers(group);
    double value = 0.0;
    double divisor = 1.0;
    // Ends at a negative factor too, unlike the writing. Deliberate: the numbers of a group only add up.
    for (std::size_t i = 0; i < parts.size() && parts[i].factor > 0.0; ++i) {
        divisor *= parts[i].factor;
        value += numbers[i] / divisor;
    }
    return value;
}

}  // namespace velm
