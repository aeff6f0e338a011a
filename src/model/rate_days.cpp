#include "model/rate_days.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "formats/decimal_format.h"
#include "model/conversion_document.h"
#include "model/file_replacement.h"

namespace velm {
namespace {

constexpr CVelmStringView RATES_EXTENSION = u".rates";
constexpr std::size_t MAX_SIZE = 16 << 20;
constexpr std::string_view HEADER =
    "# The day of the table that each rate comes from. A line counts while the data file has its factor.\n";

CVelmString PathOf(const CVelmConversionDoc& document, const CVelmString& folder) {
    return InFolder(folder, document.fileName + CVelmString(RATES_EXTENSION));
}

std::optional<double> ReadNumber(CVelmStringView text) {
    const std::string utf8 = ToUtf8(text);
    double value = 0.0;
    const auto result = std::from_chars(utf8.data(), utf8.data() + utf8.size(), value);
    return result.ec == std::errc() && result.ptr == utf8.data() + utf8.size() ? std::optional(value) : std::nullopt;
}

bool CanHaveDay(const CVelmConversion& conversion) {
    return !conversion.IsFormula() && conversion.offset == 0.0 && !conversion.unit1->identifier.empty() &&
           !conversion.unit2->identifier.empty();
}

}  // namespace

CVelmRateDays CVelmRateDays::Read(const CVelmConversionDoc& document, const CVelmString& folder,
                                  CVelmFileSystem& files) {
    CVelmRateDays days;
    const auto file = files.Open(PathOf(document, folder), FileMode::Read);
    std::string bytes;
    if (file == nullptr || !ReadToEnd(*file, MAX_SIZE, bytes)) {
        return days;
    }
    const CVelmString text = FromUtf8(bytes);
    for (CVelmStringView left = text; !left.empty();) {
        const std::size_t end = std::min(left.find(u'\n'), left.size());
        days.ReadLine(Trim(left.substr(0, end), u"\r"));
        left.remove_prefix(std::min(end + 1, left.size()));
    }
    return days;
}

void CVelmRateDays::ReadLine(CVelmStringView line) {
    std::array<CVelmStringView, 4> fields;
    for (CVelmStringView& field : fields) {
        const std::size_t end = std::min(line.find(u'\t'), line.size());
        field = line.substr(0, end);
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    const auto factor = ReadNumber(fields[2]);
    const auto day = ReadDay(fields[3]);
    if (factor && day) {
        rates_.insert_or_assign(Key(fields[0], fields[1]), Rate{*factor, *day});
    }
}

bool CVelmRateDays::Write(const CVelmConversionDoc& document, const CVelmString& folder, CVelmFileSystem& files) const {
    std::string text;
    for (const auto& conversion : document.conversions) {
        if (const auto day = DayOf(*conversion)) {
            text += ToUtf8(conversion->unit1->identifier + u'\t' + conversion->unit2->identifier + u'\t') +
                    ShortestText(conversion->factor) + '\t' + ToUtf8(DayText(*day)) + '\n';
        }
    }
    const CVelmString path = PathOf(document, folder);
    if (text.empty()) {
        return !files.Exists(path) || files.Remove(path);
    }
    return ReplaceFile(files, path, std::string(HEADER) + text);
}

void CVelmRateDays::Set(const CVelmConversion& conversion, const CVelmDay& day) {
    if (CanHaveDay(conversion)) {
        rates_.insert_or_assign(Key(conversion.unit1->identifier, conversion.unit2->identifier),
                                Rate{conversion.factor, day});
    }
}

std::optional<CVelmDay> CVelmRateDays::DayOf(const CVelmConversion& conversion) const {
    if (rates_.empty() || !CanHaveDay(conversion)) {
        return std::nullopt;
    }
    const auto found = rates_.find(Key(conversion.unit1->identifier, conversion.unit2->identifier));
    return found != rates_.end() && found->second.factor == conversion.factor ? std::optional(found->second.day)
                                                                              : std::nullopt;
}

std::optional<CVelmDay> CVelmRateDays::DayOf(const CVelmItem& item, const CVelmConversionDoc& document) const {
    std::optional<CVelmDay> found;
    for (const auto& conversion : document.conversions) {
        if (conversion->unit1 != &item && conversion->unit2 != &item) {
            continue;
        }
        const auto day = DayOf(*conversion);
        if (day && found) {
            return std::nullopt;
        }
        found = day ? day : found;
    }
    return found;
}

CVelmItemDays CVelmRateDays::DaysOfValues(std::span<const CVelmStepTaken> steps) const {
    CVelmItemDays days;
    for (const CVelmStepTaken& taken : steps) {
        const CVelmConversion& conversion = *taken.step.conversion;
        const auto source = days.find(taken.step.forward ? conversion.unit1 : conversion.unit2);
        const auto own = DayOf(conversion);
        if (own && source != days.end()) {
            days[taken.unit] = std::min(*own, source->second);
        } else if (own || source != days.end()) {
            days[taken.unit] = own ? *own : source->second;
        }
    }
    return days;
}

std::optional<std::pair<CVelmDay, CVelmDay>> CVelmRateDays::Range(const CVelmConversionDoc& document) const {
    std::optional<std::pair<CVelmDay, CVelmDay>> range;
    for (const auto& conversion : document.conversions) {
        if (const auto day = DayOf(*conversion)) {
            range =
                range ? std::pair(std::min(range->first, *day), std::max(range->second, *day)) : std::pair(*day, *day);
        }
    }
    return range;
}

}  // namespace velm
