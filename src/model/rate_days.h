#pragma once

#include <map>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>

#include "datetime/calendar_day.h"
#include "model/conversion_engine.h"
#include "platform/services.h"
#include "platform/text.h"

namespace velm {

class CVelmConversionDoc;

/// Rates older than this many days are called old.
constexpr int MAX_RATE_AGE = 30;

/// The oldest day among the rates by which each item got its value; items without a dated rate are left out.
using CVelmItemDays = std::unordered_map<const CVelmItem*, CVelmDay>;

/// The days of a conversion document's rates. They stand in a text file beside the document, "Currency.rates" for
/// "Currency.cnv", with one rate in each line: two identifiers, the factor and the day, separated by tabs. A day counts
/// only while the conversion has the line's factor, so an edit takes the day away.
class CVelmRateDays {
public:
    /// The days in the file of that document; none when it is missing or cannot be read.
    static CVelmRateDays Read(const CVelmConversionDoc& document, const CVelmString& folder, CVelmFileSystem& files);

    /// Replaces the file by the days of the document's conversions; removes it when none has a day. False on failure.
    bool Write(const CVelmConversionDoc& document, const CVelmString& folder, CVelmFileSystem& files) const;

    /// Dates a linear conversion between two units with identifiers; any other is left without a day.
    void Set(const CVelmConversion& conversion, const CVelmDay& day);

    bool IsEmpty() const { return rates_.empty(); }

    std::optional<CVelmDay> DayOf(const CVelmConversion& conversion) const;

    /// The day of an item's own rate: of its only dated conversion.
    std::optional<CVelmDay> DayOf(const CVelmItem& item, const CVelmConversionDoc& document) const;

    /// From the steps of a calculation, in their order.
    CVelmItemDays DaysOfValues(std::span<const CVelmStepTaken> steps) const;

    /// The first and last day among the document's rates; nothing when none is dated.
    std::optional<std::pair<CVelmDay, CVelmDay>> Range(const CVelmConversionDoc& document) const;

private:
    struct Rate {
        double factor;
        CVelmDay day;
    };
    using Key = std::pair<CVelmString, CVelmString>;

    void ReadLine(CVelmStringView line);

    std::map<Key, Rate> rates_;  ///< by the identifiers of the two units
};

}  // namespace velm
