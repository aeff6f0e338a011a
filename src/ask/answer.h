#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/text.h"

namespace velm {

/// Why a question has no answer.
struct CVelmQuestionFault {
    CVelmString message;
    std::size_t position = 0;  ///< of the wrong part, in the question's UTF-16 units
    std::size_t length = 0;    ///< 0 at the end of the question
};

/// One line of an answer: the value in a unit, or an output of a calculation sheet.
struct CVelmAnswerRow {
    CVelmString
        identifier;    ///< the unit's or output's; a unit put together as it was asked for ("EUR/L"); may be empty
    CVelmString name;  ///< for a list; empty where there is only the identifier
    CVelmString text;  ///< the value as it is shown, its unit behind it only where the format writes one
    double value = 0.0;
    bool hasValue = false;  ///< false for an output in error; the text then says so

    /// "42.1648128 km": the text, and the identifier behind it unless the text has its units already.
    CVelmString TextWithUnit() const;

    /// "Kilometers: 42.1648128 km", for one of several rows.
    CVelmString NamedText() const;
    bool textHasUnit = false;
};

/// A value of an item of a data file.
struct CVelmPlacedValue {
    std::int32_t item = -1;  ///< its position
    double value = 0.0;
};

/// Where the program's window can show an answer. Empty without a file behind the answer.
struct CVelmAnswerPlace {
    CVelmString fileName;                  ///< with extension
    std::int32_t item = -1;                ///< position of the unit that was asked from; -1: none
    double value = 0.0;                    ///< to enter there
    std::int32_t targetItem = -1;          ///< position of the unit asked for; -1: none, or all
    std::vector<CVelmPlacedValue> inputs;  ///< of a calculation: those that the question gives
};

/// A unit that an answer is made of.
struct CVelmAnswerUnit {
    CVelmString fileName;   ///< with extension
    std::int32_t item = 0;  ///< position in that file
};

/// The answer to a question.
struct CVelmAnswer {
    bool ok = false;
    CVelmString understood;            ///< the question as it was read: "26.2 mi"
    std::vector<CVelmAnswerRow> rows;  ///< at least one in an answer; several without a target and for a sheet
    std::vector<CVelmString> notes;    ///< one line each: other readings, defaults, what was assumed
    CVelmQuestionFault fault;          ///< unless `ok`
    CVelmAnswerPlace place;
    std::vector<CVelmAnswerUnit> units;  ///< those that the question names

    /// "26.2 mi = 42.1648128 km" for an answer of one row.
    CVelmString Line() const;
};

}  // namespace velm
