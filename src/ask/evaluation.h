#pragma once

#include <optional>
#include <span>
#include <vector>

#include "ask/answer.h"
#include "ask/quantity.h"
#include "ask/question_tree.h"
#include "ask/unit_index.h"
#include "formula/formula_context.h"

namespace velm {

/// The value of a part of a question.
struct CVelmAskedValue {
    enum class Kind : std::uint8_t {
        Quantity,  ///< `amount` coherent units of `dimension`
        InUnit,    ///< `number` of a unit that is no factor, such as degrees Celsius
        Moment,    ///< the date-time value `amount`, local time; with a unit: `number` in that time zone
    };
    Kind kind = Kind::Quantity;
    double amount = 0.0;
    CVelmDimension dimension;

    /// The value as one number of one unit, as far as it is one; `isExact` when nothing was computed but the number, so
    /// that the file's own conversions can be applied to it.
    std::optional<CVelmReading> unit;
    double number = 0.0;
    bool isExact = false;
    bool hasTime = false;  ///< of a moment
    bool isPercent = false;
    bool isTimeOfDay = false;  ///< of a quantity: may be a time of day as well as a duration
};

/// A name that a value was kept under.
struct CVelmKeptValue {
    CVelmString name;
    CVelmAskedValue value;
};

/// Why a part of a question has no value.
enum class EvaluationFault : std::uint8_t {
    None,
    Unfit,        ///< two dimensions that do not go together: `first`, `second`
    NoFactor,     ///< a unit that is no factor in a computation: `word`
    NeedsNumber,  ///< a plain number: `first` is what there is
    NeedsAngle,
    Moment,  ///< a date where it cannot be computed with
    Zero,    ///< a division by zero
    OutOfRange,
};

struct EvaluationError {
    EvaluationFault fault = EvaluationFault::None;
    std::int32_t node = NO_NODE;  ///< the operation
    std::int32_t firstNode = NO_NODE;
    std::int32_t secondNode = NO_NODE;
    CVelmDimension first;
    CVelmDimension second;
    std::uint32_t word = 0;
};

/// Computes trees of a question with one reading chosen for each of its words.
class CVelmEvaluation {
public:
    /// All outlive the evaluation.
    CVelmEvaluation(const CVelmUnitIndex& index, FormulaContext& context, const Question& question,
                    std::span<const CVelmKeptValue> kept)
        : index_(index), context_(context), question_(question), kept_(kept) {}

    /// The reading of each word of the question, by position among its readings.
    std::vector<std::uint8_t> choice;

    /// Nothing when it has no value; Error tells why.
    std::optional<CVelmAskedValue> Evaluate(const QuestionTree& tree);
    const EvaluationError& Error() const { return error_; }

    const CVelmReading& ReadingOf(std::uint32_t word) const { return question_.words[word].readings[choice[word]]; }

private:
    using Result = std::optional<CVelmAskedValue>;

    Result Node(std::int32_t number);
    Result Unit(const QuestionNode& node) const;
    Result UnitTimes(const QuestionNode& node);
    Result Operation(std::int32_t number);
    Result Add(std::int32_t number, const CVelmAskedValue& left, const CVelmAskedValue& right, double sign);
    Result AddToMoment(std::int32_t number, const CVelmAskedValue& moment, const CVelmAskedValue& span, double sign);
    Result Multiply(std::int32_t number, const CVelmAskedValue& left, const CVelmAskedValue& right);
    Result Divide(std::int32_t number, const CVelmAskedValue& left, const CVelmAskedValue& right);
    Result Power(std::int32_t number, const CVelmAskedValue& base, const CVelmAskedValue& exponent);
    Result Plain(std::int32_t number, const CVelmAskedValue& left, const CVelmAskedValue* right, std::int32_t code);
    Result Call(std::int32_t number);
    Result Choose(const QuestionNode& node);
    Result Sum(std::int32_t number);
    Result Fail(EvaluationFault fault, std::int32_t node, const CVelmDimension& first = {},
                const CVelmDimension& second = {});
    Result FailNoFactor(std::int32_t node, const CVelmAskedValue& value);
    Result Quantity(std::int32_t node, double amount, const std::optional<CVelmDimension>& dimension);
    bool IsComputable(std::int32_t node, const CVelmAskedValue& value);

    const CVelmUnitIndex& index_;
    FormulaContext& context_;
    const Question& question_;
    std::span<const CVelmKeptValue> kept_;
    const QuestionTree* tree_ = nullptr;
    EvaluationError error_;
};

/// Whether a value of one dimension can be shown in a unit of the other: angles count as numbers where they must.
bool DimensionsFit(const CVelmDimension& a, const CVelmDimension& b);

}  // namespace velm
