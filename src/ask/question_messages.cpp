#include "ask/question_messages.h"

#include <algorithm>
#include <cmath>

#include "formats/date_format.h"
#include "formats/decimal_format.h"
#include "formula/operators.h"

namespace velm {

namespace {

using Kind = CVelmAskedValue::Kind;

/// The file that a dimension is named after: one whose units results are shown in before any other.
const IndexFile* FileOfDimension(const CVelmUnitIndex& index, const CVelmDimension& dimension) {
    const IndexFile* found = nullptr;
    for (const IndexFile& file : index.files) {
        const bool names = file.hasDimension != 0 && file.quantity.length > 0 && file.Dimension() == dimension;
        if (names && (found == nullptr || (found->resultCount == 0 && file.resultCount > 0))) {
            found = &file;
        }
    }
    return found;
}

/// Without the article.
CVelmString Bare(const CVelmString& quantity) {
    for (const CVelmStringView article : {u"a ", u"an "}) {
        if (quantity.starts_with(article)) {
            return quantity.substr(article.size());
        }
    }
    return quantity;
}

/// The name of a dimension that has one, without the article.
CVelmString NameOf(const CVelmUnitIndex& index, const CVelmDimension& dimension) {
    const IndexFile* const file = FileOfDimension(index, dimension);
    return file == nullptr ? CVelmString() : Bare(CVelmString(index.Text(file->quantity)));
}

/// "mass times acceleration would fit", or nothing.
CVelmString Hint(const CVelmUnitIndex& index, const CVelmDimension& have, const CVelmDimension& wanted) {
    const CVelmString name = NameOf(index, have);
    const auto quotient = wanted.Over(have);
    const auto reciprocal = have.Over(wanted);
    const CVelmString factor = quotient ? NameOf(index, *quotient) : CVelmString();
    const CVelmString divisor = reciprocal ? NameOf(index, *reciprocal) : CVelmString();
    if (name.empty()) {
        return {};
    }
    // The divisor is what people know where it is one of the simplest quantities: length divided by time.
    const auto size = [](const std::optional<CVelmDimension>& dimension) {
        int sum = 0;
        for (const std::int8_t halves : dimension ? dimension->halves : CVelmDimension().halves) {
            sum += std::abs(halves) + (halves < 0 ? 1 : 0);
        }
        return sum;
    };
    if (!divisor.empty() && (factor.empty() || size(reciprocal) < size(quotient))) {
        return name + u" divided by " + divisor + u" would fit";
    }
    return factor.empty() ? CVelmString() : name + u" times " + factor + u" would fit";
}

/// What a value is, in words.
CVelmString KindText(const CVelmUnitIndex& index, const CVelmAskedValue& value) {
    if (value.kind == Kind::Moment) {
        return u"a date";
    }
    if (value.kind == Kind::InUnit || (value.unit && value.isExact)) {
        const CVelmStringView quantity = index.Text(index.FileOf(*value.unit).quantity);
        if (!quantity.empty()) {
            return CVelmString(quantity);
        }
        if (value.kind == Kind::InUnit) {
            return u"a unit of " + CVelmString(index.Text(index.FileOf(*value.unit).title));
        }
    }
    return QuantityText(index, value.dimension);
}

/// Writes trees as text.
class TreeWriter {
public:
    TreeWriter(const CVelmUnitIndex& index, const Question& question, const QuestionTree& tree,
               const std::vector<std::uint8_t>& choice, const CVelmLocale* locale)
        : index_(index), question_(question), tree_(tree), choice_(choice), locale_(locale) {}

    CVelmString Text(std::int32_t number) const {
        const QuestionNode& node = tree_.At(number);
        switch (node.kind) {
            case QuestionNodeKind::Number:
                return FormatDecimal(node.number, true);
            case QuestionNodeKind::Unit:
                return Label(node);
            case QuestionNodeKind::Percent:
                return Text(node.left) + u"%";
            case QuestionNodeKind::Moment:
                return locale_ == nullptr ? CVelmString() : FormatDate(node.number, node.hasTime, *locale_);
            case QuestionNodeKind::UnitTimes:
                return UnitTimes(node);
            case QuestionNodeKind::UnitOver:
                return Text(node.left) + u"/" + InBrackets(node.right);
            case QuestionNodeKind::UnitPower:
                return Power(node);
            case QuestionNodeKind::Sum:
                return Text(node.left) + u" " + Text(node.right);
            case QuestionNodeKind::Operator:
                return Operator(node);
            case QuestionNodeKind::Function:
            case QuestionNodeKind::Conditional:
                return Call(node);
            case QuestionNodeKind::Clock:
            case QuestionNodeKind::Name:
                return CVelmString(question_.TextOf(node));
        }
        return {};
    }

private:
    CVelmString Label(const QuestionNode& node) const {
        const CVelmReading& reading = question_.words[node.word].readings[choice_[node.word]];
        return index_.FileOf(reading).isDate != 0 ? index_.NameOf(reading) : index_.LabelOf(reading);
    }

    static bool IsValue(QuestionNodeKind kind) {
        return kind == QuestionNodeKind::Number || kind == QuestionNodeKind::Moment || kind == QuestionNodeKind::Clock;
    }

    CVelmString UnitTimes(const QuestionNode& node) const {
        const bool isNumber = IsValue(tree_.At(node.left).kind);
        return Text(node.left) + (isNumber ? u" " : u"\u00B7") + Text(node.right);
    }

    CVelmString InBrackets(std::int32_t number) const {
        const QuestionNodeKind kind = tree_.At(number).kind;
        const bool isProduct = kind == QuestionNodeKind::UnitTimes || kind == QuestionNodeKind::UnitOver;
        return isProduct ? u"(" + Text(number) + u")" : Text(number);
    }

    CVelmString Power(const QuestionNode& node) const {
        const double exponent = tree_.At(node.right).number;
        const bool isDigit = exponent == 2.0 || exponent == 3.0;
        return InBrackets(node.left) + (isDigit ? u"" : u"^") + FormatDecimal(exponent, false);
    }

    static int Precedence(const QuestionNode& node) {
        constexpr int HIGHEST = 9;
        return node.kind == QuestionNodeKind::Operator ? OPERATORS[static_cast<std::size_t>(node.code)].precedence
                                                       : HIGHEST;
    }

    /// A number with its unit, whose text a power behind it would take for one of the unit: (3 m)^2.
    static bool IsAmount(QuestionNodeKind kind) {
        return kind == QuestionNodeKind::UnitTimes || kind == QuestionNodeKind::UnitOver ||
               kind == QuestionNodeKind::Sum;
    }

    /// In brackets unless the part binds closer than the whole.
    CVelmString Part(const QuestionNode& whole, std::int32_t part, bool isRight) const {
        if (whole.code == OP_POWER && IsAmount(tree_.At(part).kind)) {
            return u"(" + Text(part) + u")";
        }
        const int precedence = Precedence(tree_.At(part));
        const bool binds = precedence > Precedence(whole) || (precedence == Precedence(whole) && !isRight);
        return binds ? Text(part) : u"(" + Text(part) + u")";
    }

    CVelmString Operator(const QuestionNode& node) const {
        const OperatorRow& row = OPERATORS[static_cast<std::size_t>(node.code)];
        const CVelmString sign(1, static_cast<char16_t>(row.character == u'*' ? 0xD7 : row.character));
        if (row.place == OperatorPlace::Prefix) {
            return sign + Part(node, node.left, false);
        }
        if (row.place == OperatorPlace::Postfix) {
            return Part(node, node.left, false) + sign;
        }
        const CVelmString blank = node.code == OP_POWER ? u"" : u" ";
        return Part(node, node.left, false) + blank + sign + blank + Part(node, node.right, true);
    }

    CVelmString Call(const QuestionNode& node) const {
        CVelmString text(node.function != nullptr ? node.function->name : CONDITIONAL_NAME);
        for (const std::int32_t argument : node.arguments) {
            text += argument == node.arguments.front() ? u"(" : u", ";
            text += Text(argument);
        }
        return node.arguments.empty() ? text : text + u")";
    }

    const CVelmUnitIndex& index_;
    const Question& question_;
    const QuestionTree& tree_;
    const std::vector<std::uint8_t>& choice_;
    const CVelmLocale* locale_;
};

CVelmQuestionFault At(const QuestionNode& node, CVelmString message) {
    return {std::move(message), node.position, node.length};
}

CVelmString WithFile(const CVelmUnitIndex& index, const CVelmReading& reading) {
    return index.NameOf(reading) + u" (" + CVelmString(index.Text(index.FileOf(reading).title)) + u")";
}

/// The word for a difference in a unit: "delta C".
CVelmString DifferenceWord(const CVelmUnitIndex& index, const CVelmReading& reading) {
    const CVelmString word = u"delta " + index.LabelOf(reading);
    std::vector<CVelmReading> readings;
    index.FindUnits(word, readings);
    return readings.empty() ? CVelmString() : word;
}

CVelmQuestionFault EvaluationText(const CVelmUnitIndex& index, const Question& question, const QuestionTree& tree,
                                  const EvaluationError& error, const std::vector<std::uint8_t>& choice,
                                  const CVelmLocale& locale) {
    const QuestionNode& node = tree.At(error.node);
    const TreeWriter writer(index, question, tree, choice, &locale);
    switch (error.fault) {
        case EvaluationFault::Unfit: {
            const QuestionNode& second = tree.At(error.secondNode);
            return At(second, writer.Text(error.firstNode) + u" is " + QuantityText(index, error.first) + u", " +
                                  writer.Text(error.secondNode) + u" is " + QuantityText(index, error.second) +
                                  u": they cannot be added or compared");
        }
        case EvaluationFault::NoFactor: {
            const QuestionWord& word = question.words[error.word];
            const CVelmReading& reading = word.readings[choice[error.word]];
            CVelmString text = index.NameOf(reading) + u" cannot be computed with, only converted";
            if (const CVelmString difference = DifferenceWord(index, reading); !difference.empty()) {
                text += u"; for a difference write " + difference;
            } else {
                text += u" (" + index.LabelOf(reading) + u" in " +
                        CVelmString(index.Text(index.FileOf(reading).title)) + u")";
            }
            return {std::move(text), word.position, word.length};
        }
        case EvaluationFault::NeedsNumber:
            return At(node,
                      writer.Text(error.node) + u" needs a plain number, not " + QuantityText(index, error.first));
        case EvaluationFault::NeedsAngle:
            return At(node, writer.Text(error.node) + u" needs an angle, not " + QuantityText(index, error.first));
        case EvaluationFault::Moment:
            return At(node, error.first.IsNone()
                                ? CVelmString(u"A date cannot be computed with in this way: add a time to it, or "
                                              u"subtract another date")
                                : u"A date and " + QuantityText(index, error.first) + u" cannot be added");
        case EvaluationFault::Zero:
            return At(tree.At(error.secondNode), writer.Text(error.node) + u" divides by zero");
        case EvaluationFault::OutOfRange:
        case EvaluationFault::None:
            break;
    }
    return At(node, writer.Text(error.node) + u" has no value");
}

}  // namespace

CVelmString QuantityText(const CVelmUnitIndex& index, const CVelmDimension& dimension) {
    if (dimension.IsNone()) {
        return u"a number";
    }
    if (const IndexFile* const file = FileOfDimension(index, dimension)) {
        return CVelmString(index.Text(file->quantity));
    }
    // Money per volume: a quantity that results are shown in, times what there is, is another one.
    for (const IndexFile& divisor : index.files) {
        const auto dividend = divisor.hasDimension != 0 && divisor.resultCount > 0 && !divisor.Dimension().IsNone()
                                  ? dimension.Times(divisor.Dimension())
                                  : std::nullopt;
        const IndexFile* const file = dividend ? FileOfDimension(index, *dividend) : nullptr;
        if (file != nullptr && file->resultCount > 0) {
            return CVelmString(index.Text(file->quantity)) + u" per " + Bare(CVelmString(index.Text(divisor.quantity)));
        }
    }
    return DimensionText(dimension);
}

CVelmString UnitLabel(const CVelmUnitIndex& index, const Question& question, const QuestionTree& tree,
                      const std::vector<std::uint8_t>& choice) {
    return TreeWriter(index, question, tree, choice, nullptr).Text(tree.root);
}

CVelmString UnderstoodText(const CVelmUnitIndex& index, const Question& question,
                           const std::vector<std::uint8_t>& choice, const CVelmLocale& locale) {
    return TreeWriter(index, question, question.value, choice, &locale).Text(question.value.root);
}

CVelmQuestionFault ResolutionFault(const CVelmUnitIndex& index, const Question& question,
                                   const CVelmResolutions& resolutions, const CVelmLocale& locale) {
    const CVelmResolution& tried = resolutions.tried;
    if (!resolutions.isUnfit) {
        return EvaluationText(index, question, resolutions.isTargetError ? question.target.tree : question.value,
                              resolutions.error, tried.choice, locale);
    }
    const CVelmString value = UnderstoodText(index, question, tried.choice, locale);
    CVelmQuestionFault fault;
    fault.position = question.target.position;
    fault.length = question.target.length;
    CVelmString wanted;
    CVelmString wantedKind;
    if (question.target.tree.nodes.empty()) {
        wanted = CVelmString(question.TextOf(question.target.position, question.target.length));
        wantedKind = QuantityText(index, tried.target.dimension);
    } else {
        wanted = UnitLabel(index, question, question.target.tree, tried.choice);
        wantedKind = KindText(index, tried.target);
    }
    fault.message = value + u" is " + KindText(index, tried.value) + u", " + wanted + u" " + wantedKind;
    const bool isKnown = tried.value.kind == Kind::Quantity && tried.target.kind == Kind::Quantity;
    if (const CVelmString hint = isKnown ? Hint(index, tried.value.dimension, tried.target.dimension) : CVelmString();
        !hint.empty()) {
        fault.message += u": " + hint;
    }
    return fault;
}

void AddReadingNotes(const CVelmUnitIndex& index, const Question& question, const CVelmResolutions& resolutions,
                     std::vector<CVelmString>& notes) {
    static constexpr std::size_t MOST = 4;
    const CVelmResolution& best = resolutions.found.front();
    // Whatever words mean can be computed with: only a target, or a list of units, makes the others worth a line.
    const bool isComputed = question.target.kind == QuestionTargetKind::None && !best.value.isExact;
    for (std::size_t i = 0; i < question.words.size(); ++i) {
        const QuestionWord& word = question.words[i];
        const CVelmReading& read = word.readings[best.choice[i]];
        std::vector<CVelmString> others;
        for (const CVelmResolution& other : resolutions.found) {
            if (isComputed) {
                break;
            }
            const CVelmReading& reading = word.readings[other.choice[i]];
            const bool counts = reading.rank < RANK_UNLIKELY || read.rank >= RANK_UNLIKELY;
            const CVelmString text = WithFile(index, reading);
            if (counts && text != WithFile(index, read) && !IsSameUnit(index, reading, read) && others.size() < MOST &&
                std::ranges::find(others, text) == others.end()) {
                others.push_back(text);
            }
        }
        // The first reading is what the word means by itself.
        const bool isUsual = IsSameUnit(index, word.readings.front(), read) || word.readings.front().rank == read.rank;
        if (others.empty() && isUsual) {
            continue;
        }
        CVelmString note = CVelmString(question.TextOf(word)) + u" was read as " + WithFile(index, read);
        for (const CVelmString& other : others) {
            note += other == others.front() ? u"; it can also mean " : u", ";
            note += other;
        }
        notes.push_back(std::move(note));
    }
}

CVelmString UnknownWordText(const CVelmUnitIndex& index, CVelmStringView word, bool isFirst) {
    static constexpr std::size_t NEAREST = 3;
    CVelmString text = u"There is no unit \"" + CVelmString(word) + u"\"";
    const auto nearest = index.Nearest(word, NEAREST, isFirst);
    if (!nearest.empty() && EqualsNoCase(nearest.front().word, word)) {
        return text + u"; it is the name of a file";
    }
    for (std::size_t i = 0; i < nearest.size(); ++i) {
        const CVelmStringView file = index.Text(index.files[nearest[i].file].title);
        text += i == 0 ? u"; did you mean " : i + 1 == nearest.size() ? u" or " : u", ";
        text += nearest[i].word + u" (" + CVelmString(file) + u")";
    }
    return text + (nearest.empty() ? u"" : u"?");
}

}  // namespace velm
