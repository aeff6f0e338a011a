#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ask/answer.h"
#include "ask/unit_index.h"
#include "datetime/date_time.h"
#include "formula/functions.h"
#include "platform/text.h"

namespace velm {

enum class QuestionNodeKind : std::uint8_t {
    Number,
    Unit,       ///< a word; `word` tells which
    Percent,    ///< `left` hundredths; added to something, hundredths of that
    Operator,   ///< `code` of the formula language, on `left` and, if infix, `right`
    UnitTimes,  ///< a number and its unit, or two units: binds closer than the operators
    UnitOver,
    UnitPower,
    Sum,          ///< the parts of a compound: 5 ft 11 in
    Function,     ///< `function` of the `arguments`
    Conditional,  ///< of the `arguments`
    Name,         ///< a value kept earlier; `word` tells which
    Moment,       ///< a date, or a date and time; `number` is its value
    Clock,        ///< a time of day, or hours, minutes and seconds; `number` in seconds
};

constexpr std::int32_t NO_NODE = -1;

struct QuestionNode {
    QuestionNodeKind kind = QuestionNodeKind::Number;
    std::int32_t code = 0;
    std::int32_t left = NO_NODE;
    std::int32_t right = NO_NODE;
    std::uint32_t word = 0;
    double number = 0.0;
    const FunctionRow* function = nullptr;
    std::vector<std::int32_t> arguments = {};
    std::size_t position = 0;  ///< in the question, of all that belongs to the node
    std::size_t length = 0;
    bool hasTime = false;      ///< of a moment: a time of day too
    bool isClockOnly = false;  ///< of a clock: with "am" or "pm", never a duration
};

/// A word of a question, and what it can mean.
struct QuestionWord {
    std::size_t position = 0;
    std::size_t length = 0;
    std::vector<CVelmReading> readings;
};

/// A value as it was typed. Nodes refer to each other and to words by position.
struct QuestionTree {
    std::vector<QuestionNode> nodes;
    std::int32_t root = NO_NODE;

    const QuestionNode& At(std::int32_t node) const { return nodes[static_cast<std::size_t>(node)]; }
    const QuestionNode& Root() const { return At(root); }
};

enum class QuestionTargetKind : std::uint8_t {
    None,
    Unit,      ///< a unit or a product of units: `tree`
    Compound,  ///< units of one kind, largest first: `parts`
    Format,    ///< a format of the program: `format`
    Fraction,  ///< a whole number and `denominator`-ths of the unit `tree`, or of the value's own unit
    Percent,
};

struct QuestionTarget {
    QuestionTargetKind kind = QuestionTargetKind::None;
    QuestionTree tree;
    std::vector<std::uint32_t> parts;  ///< words
    std::uint32_t format = 0;
    int denominator = 0;
    int decimals = -1;  ///< rounded to so many; -1: as they are
    int significant = -1;
    std::size_t position = 0;
    std::size_t length = 0;
};

/// What is wrong with a question's text.
struct QuestionFault : CVelmQuestionFault {
    bool isUnknownWord = false;  ///< the message is only the word: looking for the nearest ones takes its time
    bool isFirst = false;        ///< nothing stands before the word
};

/// A question without its answer.
struct Question {
    CVelmString text;
    std::vector<QuestionWord> words;  ///< of the value and of the target
    QuestionTree value;
    QuestionTarget target;

    CVelmStringView TextOf(std::size_t position, std::size_t length) const {
        return CVelmStringView(text).substr(position, length);
    }
    CVelmStringView TextOf(const QuestionWord& word) const { return TextOf(word.position, word.length); }
    CVelmStringView TextOf(const QuestionNode& node) const { return TextOf(node.position, node.length); }
};

}  // namespace velm
