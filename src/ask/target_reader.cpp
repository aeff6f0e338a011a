#include "ask/target_reader.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "ask/number_reader.h"
#include "formats/format_table.h"

namespace velm {

namespace {

/// Other words for formats.
struct FormatWord {
    CVelmStringView word;
    std::uint32_t code;
};
constexpr std::array FORMAT_WORDS = {FormatWord{u"hexadecimal", FMT_HEX}, FormatWord{u"bin", FMT_BINARY},
                                     FormatWord{u"oct", FMT_OCTAL},       FormatWord{u"dec", FMT_DECIMAL},
                                     FormatWord{u"money", FMT_CURRENCY},  FormatWord{u"date and time", FMT_DATETIME}};

constexpr std::array<CVelmStringView, 5> PERCENT_WORDS = {u"%", u"percent", u"percentage", u"a percentage",
                                                          u"per cent"};
constexpr std::array<CVelmStringView, 3> FRACTION_WORDS = {u"fraction", u"a fraction", u"fractions"};
constexpr std::array<CVelmStringView, 4> TARGET_WORDS = {u"into", u"in", u"to", u"as"};
constexpr std::array<CVelmStringView, 9> OPENINGS = {u"what is ",     u"what's ",       u"whats ",
                                                     u"how much is ", u"how much are ", u"convert ",
                                                     u"what are ",    u"calculate ",    u"compute "};
constexpr std::array<CVelmStringView, 7> DECIMAL_WORDS = {
    u"decimals", u"decimal", u"decimal places", u"decimal place", u"places", u"place", u"dp"};
constexpr std::array<CVelmStringView, 5> DIGIT_WORDS = {u"digits", u"significant digits", u"significant figures",
                                                        u"figures", u"sig figs"};
constexpr int MAX_DECIMALS = 15;
constexpr int MAX_DENOMINATOR = 1024;

bool IsWordPart(char16_t unit) {
    return IsLetter(unit) || IsDigit(unit) || unit == u'_' || unit >= 0xC0;
}

template <typename List>
bool IsOneOf(const List& list, CVelmStringView word) {
    return std::ranges::any_of(list, [word](CVelmStringView entry) { return EqualsNoCase(entry, word); });
}

/// A part of the question's text.
struct Span {
    std::size_t start = 0;
    std::size_t end = 0;

    CVelmStringView In(CVelmStringView text) const { return text.substr(start, end - start); }
    bool IsEmpty() const { return start >= end; }
};

Span TrimSpan(CVelmStringView text, Span span) {
    span.start = std::min(SkipBlanks(text, span.start), span.end);
    while (span.end > span.start && IsQuestionBlank(text[span.end - 1])) {
        --span.end;
    }
    return span;
}

/// Where a question could be split.
struct Split {
    std::size_t start;
    std::size_t end;
};

/// The words and signs before targets, the last one first; not those in brackets.
std::vector<Split> FindSplits(CVelmStringView text, Span span) {
    std::vector<Split> splits;
    int depth = 0;
    for (std::size_t at = span.start; at < span.end; ++at) {
        const char16_t unit = text[at];
        depth += unit == u'(' || unit == u'{' ? 1 : unit == u')' || unit == u'}' ? -1 : 0;
        if (depth > 0) {
            continue;
        }
        if (unit == u'→' || unit == u'=') {
            splits.push_back({at, at + 1});
        } else if (unit == u'-' && at + 1 < span.end && text[at + 1] == u'>') {
            splits.push_back({at, at + 2});
        } else if (at > span.start && !IsWordPart(text[at - 1])) {
            for (const CVelmStringView word : TARGET_WORDS) {
                const std::size_t end = at + word.size();
                if (end < span.end && EqualsNoCase(text.substr(at, word.size()), word) && !IsWordPart(text[end])) {
                    splits.push_back({at, end});
                    break;
                }
            }
        }
    }
    std::ranges::reverse(splits);
    return splits;
}

/// A small whole number and the word behind it: "2 decimals".
bool ReadCount(CVelmStringView text, int& count, CVelmStringView& word) {
    std::size_t at = 0;
    count = 0;
    while (at < text.size() && IsDigit(text[at]) && at < 4) {
        count = count * 10 + (text[at++] - u'0');
    }
    word = Trim(text.substr(at), u" ");
    return at > 0;
}

bool ReadRounding(CVelmStringView text, QuestionTarget& target) {
    int count = 0;
    CVelmStringView word;
    if (!ReadCount(text, count, word) || count > MAX_DECIMALS) {
        return false;
    }
    if (IsOneOf(DECIMAL_WORDS, word)) {
        target.decimals = count;
        return true;
    }
    if (IsOneOf(DIGIT_WORDS, word) && count > 0) {
        target.significant = count;
        return true;
    }
    return false;
}

class TargetReader {
public:
    TargetReader(const QuestionReaderSetup& setup, Question& question, Span span, QuestionTarget& target,
                 QuestionFault& fault)
        : setup_(setup), question_(question), text_(question.text), span_(span), target_(target), fault_(fault) {}

    bool Read() {
        span_ = TrimSpan(text_, span_);
        if (span_.IsEmpty()) {
            fault_ = {{u"Something is missing here", span_.start, 0}};
            return false;
        }
        target_.position = span_.start;
        target_.length = span_.end - span_.start;
        if (setup_.onlyFile == INDEX_NO_ITEM) {
            return ReadFormat() || ReadFraction() || ReadCompound() || ReadUnit();
        }
        return ReadUnit();
    }

private:
    bool ReadFormat() {
        const CVelmStringView word = span_.In(text_);
        if (IsOneOf(PERCENT_WORDS, word)) {
            target_.kind = QuestionTargetKind::Percent;
            return true;
        }
        if (IsOneOf(FRACTION_WORDS, word)) {
            target_.kind = QuestionTargetKind::Fraction;
            return true;
        }
        const auto* const other =
            std::ranges::find_if(FORMAT_WORDS, [word](const FormatWord& row) { return EqualsNoCase(row.word, word); });
        const FormatKind* const format = FindFormat(ToUtf8(ToLowerAscii(word)));
        if (other == FORMAT_WORDS.end() && (format == nullptr || format->code == FMT_COMPOUND)) {
            return false;
        }
        target_.kind = QuestionTargetKind::Format;
        target_.format = other != FORMAT_WORDS.end() ? other->code : format->code;
        return true;
    }

    /// in/16, 1/16 in, 16ths
    bool ReadFraction() {
        const CVelmStringView text = span_.In(text_);
        std::size_t digits = 0;
        while (digits < text.size() && IsDigit(text[text.size() - 1 - digits])) {
            ++digits;
        }
        if (digits > 0 && digits + 1 < text.size() && text[text.size() - 1 - digits] == u'/') {
            return ReadDenominator(text.substr(text.size() - digits)) &&
                   ReadFractionUnit({span_.start, span_.end - digits - 1});
        }
        if (!text.starts_with(u"1/")) {
            return false;
        }
        digits = 2;
        while (digits < text.size() && IsDigit(text[digits])) {
            ++digits;
        }
        return ReadDenominator(text.substr(2, digits - 2)) && ReadFractionUnit({span_.start + digits, span_.end});
    }

    bool ReadDenominator(CVelmStringView digits) {
        int denominator = 0;
        CVelmStringView rest;
        if (!ReadCount(digits, denominator, rest) || !rest.empty() || denominator < 2 ||
            denominator > MAX_DENOMINATOR) {
            return false;
        }
        target_.denominator = denominator;
        return true;
    }

    bool ReadFractionUnit(Span span) {
        span = TrimSpan(text_, span);
        if (span.IsEmpty()) {
            return false;
        }
        const std::size_t words = question_.words.size();
        const auto word = FindQuestionWord(setup_, text_, span.start, span.end);
        QuestionFault ignored;
        if (word.length != span.end - span.start ||
            !ReadQuestionValue(setup_, question_, span.start, span.end, target_.tree, ignored)) {
            question_.words.resize(words);
            target_.denominator = 0;
            return false;
        }
        target_.kind = QuestionTargetKind::Fraction;
        return true;
    }

    /// Units of one kind, each smaller than the one before it: ft in, h min s, "pounds and ounces".
    bool ReadCompound() {
        std::vector<QuestionWord> words;
        for (std::size_t at = span_.start; at < span_.end;) {
            QuestionWord word = FindQuestionWord(setup_, text_, at, span_.end);
            if (word.readings.empty()) {
                return false;
            }
            at = SkipSeparator(word.position + word.length);
            words.push_back(std::move(word));
        }
        if (words.size() < 2 || !KeepSharedReadings(words)) {
            return false;
        }
        target_.kind = QuestionTargetKind::Compound;
        for (QuestionWord& word : words) {
            target_.parts.push_back(static_cast<std::uint32_t>(question_.words.size()));
            question_.words.push_back(std::move(word));
        }
        return true;
    }

    std::size_t SkipSeparator(std::size_t at) const {
        at = SkipBlanks(text_, at);
        if (at < span_.end && (text_[at] == u',' || text_[at] == u'+' || text_[at] == u':' || text_[at] == u';')) {
            at = SkipBlanks(text_, at + 1);
        }
        if (at + 4 <= span_.end && EqualsNoCase(CVelmStringView(text_).substr(at, 4), u"and ")) {
            at = SkipBlanks(text_, at + 4);
        }
        return at;
    }

    bool IsPart(const CVelmReading& larger, const CVelmReading& smaller) const {
        const CVelmUnitIndex& index = setup_.index;
        return larger.rank != RANK_SECONDARY && smaller.rank != RANK_SECONDARY && index.FactorOf(smaller) > 0.0 &&
               index.FactorOf(larger) > index.FactorOf(smaller) &&
               index.FileOf(larger).Dimension() == index.FileOf(smaller).Dimension();
    }

    /// Keeps only readings that the word before, or for the first one the word behind, has a larger or smaller unit
    /// for.
    bool KeepSharedReadings(std::vector<QuestionWord>& words) const {
        for (std::size_t i = words.size(); i-- > 1;) {
            std::erase_if(words[i - 1].readings, [&](const CVelmReading& larger) {
                return std::ranges::none_of(words[i].readings,
                                            [&](const CVelmReading& smaller) { return IsPart(larger, smaller); });
            });
        }
        for (std::size_t i = 1; i < words.size(); ++i) {
            std::erase_if(words[i].readings, [&](const CVelmReading& smaller) {
                return std::ranges::none_of(words[i - 1].readings,
                                            [&](const CVelmReading& larger) { return IsPart(larger, smaller); });
            });
        }
        return std::ranges::none_of(words, [](const QuestionWord& word) { return word.readings.empty(); });
    }

    bool ReadUnit() {
        if (ReadQuestionUnit(setup_, question_, span_.start, span_.end, target_.tree)) {
            target_.kind = QuestionTargetKind::Unit;
            return true;
        }
        if (!ReadQuestionValue(setup_, question_, span_.start, span_.end, target_.tree, fault_)) {
            return false;
        }
        const bool hasUnit = std::ranges::any_of(
            target_.tree.nodes, [](const QuestionNode& node) { return node.kind == QuestionNodeKind::Unit; });
        if (!hasUnit) {
            fault_ = {{u"A unit is missing here", span_.start, span_.end - span_.start}};
            return false;
        }
        target_.kind = QuestionTargetKind::Unit;
        return true;
    }

    const QuestionReaderSetup& setup_;
    Question& question_;
    CVelmStringView text_;
    Span span_;
    QuestionTarget& target_;
    QuestionFault& fault_;
};

class WholeReader {
public:
    WholeReader(const QuestionReaderSetup& setup, Question& question, QuestionFault& fault)
        : setup_(setup), question_(question), text_(question.text), fault_(fault) {}

    bool Read() {
        Span span = TrimSpan(text_, {0, text_.size()});
        span = SkipOpening(span);
        if (ReadHowMany(span)) {
            return true;
        }
        span = TakeRounding(span);
        std::optional<QuestionFault> first;
        for (const Split& split : FindSplits(text_, span)) {
            if (ReadParts({span.start, split.start}, {split.end, span.end})) {
                return true;
            }
            first = first ? first : std::optional(fault_);
        }
        if (ReadValue(span)) {
            return true;
        }
        // What is wrong behind the last "in" explains more than how "in" could not be read as inches.
        fault_ = first && first->position >= fault_.position ? *first : fault_;
        return false;
    }

private:
    Span SkipOpening(Span span) const {
        while (span.end > span.start && (text_[span.end - 1] == u'?' || text_[span.end - 1] == u'=')) {
            span = TrimSpan(text_, {span.start, span.end - 1});
        }
        for (const CVelmStringView opening : OPENINGS) {
            if (StartsWithNoCase(span.In(text_), opening)) {
                return TrimSpan(text_, {span.start + opening.size(), span.end});
            }
        }
        return span;
    }

    /// how many cups are in 2 gallons
    bool ReadHowMany(Span span) {
        constexpr CVelmStringView HOW_MANY = u"how many ";
        if (!StartsWithNoCase(span.In(text_), HOW_MANY)) {
            return false;
        }
        span.start += HOW_MANY.size();
        for (const Split& split : FindSplits(text_, span)) {
            Span target = TrimSpan(text_, {span.start, split.start});
            for (const CVelmStringView verb : {u" are there", u" are", u" is"}) {
                target.end -= EndsWithNoCase(target.In(text_), verb) ? verb.size() : 0;
            }
            Span value = TrimSpan(text_, {split.end, span.end});
            for (const CVelmStringView article : {u"a ", u"an ", u"one "}) {
                value.start += StartsWithNoCase(value.In(text_), article) ? article.size() : 0;
            }
            if (ReadParts(value, target)) {
                return true;
            }
        }
        return false;
    }

    Span TakeRounding(Span span) {
        for (const Split& split : FindSplits(text_, span)) {
            QuestionTarget rounding;
            const Span behind = TrimSpan(text_, {split.end, span.end});
            if (!ReadRounding(behind.In(text_), rounding)) {
                continue;
            }
            rounding_ = rounding;
            span = TrimSpan(text_, {span.start, split.start});
            for (const CVelmStringView word : {u" rounded", u" round"}) {
                span.end -= EndsWithNoCase(span.In(text_), word) ? word.size() : 0;
            }
            return TrimSpan(text_, span);
        }
        return span;
    }

    bool ReadParts(Span value, Span target) {
        Clear();
        if (!ReadQuestionTarget(setup_, question_, target.start, target.end, question_.target, fault_)) {
            return false;
        }
        value = TrimSpan(text_, value);
        if (!ReadQuestionValue(setup_, question_, value.start, value.end, question_.value, fault_)) {
            return false;
        }
        SetRounding();
        return true;
    }

    bool ReadValue(Span span) {
        Clear();
        if (!ReadQuestionValue(setup_, question_, span.start, span.end, question_.value, fault_)) {
            return false;
        }
        SetRounding();
        return true;
    }

    void Clear() {
        question_.words.clear();
        question_.value = {};
        question_.target = {};
    }

    void SetRounding() {
        question_.target.decimals = rounding_.decimals;
        question_.target.significant = rounding_.significant;
    }

    const QuestionReaderSetup& setup_;
    Question& question_;
    CVelmStringView text_;
    QuestionFault& fault_;
    QuestionTarget rounding_;
};

}  // namespace

bool ReadQuestionTarget(const QuestionReaderSetup& setup, Question& question, std::size_t start, std::size_t end,
                        QuestionTarget& target, QuestionFault& fault) {
    target = {};
    return TargetReader(setup, question, {start, end}, target, fault).Read();
}

bool ReadQuestion(const QuestionReaderSetup& setup, Question& question, QuestionFault& fault) {
    return WholeReader(setup, question, fault).Read();
}

}  // namespace velm
