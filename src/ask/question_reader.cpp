#include "ask/question_reader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "ask/date_reader.h"
#include "ask/number_reader.h"
#include "datetime/date_parser.h"
#include "formula/operators.h"
#include "formula/tokenizer.h"

namespace velm {

namespace {

constexpr int MAX_DEPTH = 64;

/// Operators in words.
struct WordOperator {
    CVelmStringView word;
    std::int32_t code;
};
constexpr std::array WORD_OPERATORS = {WordOperator{u"plus", OP_ADD},       WordOperator{u"minus", OP_SUBTRACT},
                                       WordOperator{u"times", OP_MULTIPLY}, WordOperator{u"divided by", OP_DIVIDE},
                                       WordOperator{u"over", OP_DIVIDE},    WordOperator{u"of", OP_MULTIPLY},
                                       WordOperator{u"per", OP_DIVIDE},     WordOperator{u"x", OP_MULTIPLY}};

struct PowerWord {
    CVelmStringView word;
    double exponent;
};
constexpr std::array POWERS_BEFORE = {PowerWord{u"square", 2.0}, PowerWord{u"sq", 2.0}, PowerWord{u"cubic", 3.0},
                                      PowerWord{u"cu", 3.0}};
constexpr std::array POWERS_BEHIND = {PowerWord{u"squared", 2.0}, PowerWord{u"cubed", 3.0}};

constexpr std::array<CVelmStringView, 5> KEYWORDS = {u"in", u"to", u"as", u"into", u"and"};
constexpr const char16_t* INCOMPLETE = u"The question is incomplete: something is missing at the end";

class ValueReader {
public:
    ValueReader(const QuestionReaderSetup& setup, Question& question, std::size_t end, QuestionTree& tree,
                QuestionFault& fault)
        : setup_(setup),
          question_(question),
          text_(CVelmStringView(question.text).substr(0, end)),
          tree_(tree),
          fault_(fault) {}

    bool Read(std::size_t start) {
        at_ = start;
        Skip();
        if (at_ >= text_.size()) {
            return Fail(at_, 0, u"Something is missing here");
        }
        tree_.root = ReadOperation(0);
        if (tree_.root == NO_NODE) {
            return false;
        }
        Skip();
        if (at_ < text_.size()) {
            FailAtWord();
            return false;
        }
        return true;
    }

    /// One value of a list, and its end.
    bool ReadListed(std::size_t start, std::size_t& next) {
        at_ = start;
        tree_.root = ReadPrefixed();
        next = at_;
        return tree_.root != NO_NODE;
    }

private:
    bool Fail(std::size_t position, std::size_t length, CVelmString message) {
        if (!failed_) {
            failed_ = true;
            fault_ = {{std::move(message), position, length}};
        }
        return false;
    }
    std::int32_t FailNode(std::size_t position, std::size_t length, CVelmString message) {
        Fail(position, length, std::move(message));
        return NO_NODE;
    }

    /// The word or character here is unknown or out of place.
    std::int32_t FailAtWord() {
        if (at_ >= text_.size()) {
            return FailNode(at_, 0, INCOMPLETE);
        }
        if (BeginsNumber(text_[at_])) {
            return FailAtNumber();
        }
        if (!BeginsUnitWord(text_[at_])) {
            const CVelmString sign = u"\"" + Quote(at_, at_ + 1) + u"\"";
            std::int32_t code = 0;
            const bool isOperator = text_[at_] < 0x80 && IsOperatorToken(text_.substr(at_, 1), code);
            return FailNode(at_, 1, isOperator ? u"A value is missing before " + sign : sign + u" cannot stand here");
        }
        const std::size_t end = WordEnd(text_, at_);
        const CVelmString word(text_.substr(at_, end - at_));
        const bool isKeyword =
            std::ranges::any_of(KEYWORDS, [&](CVelmStringView keyword) { return EqualsNoCase(word, keyword); });
        if (isKeyword && at_ > 0 && SkipBlanks(text_, end) == text_.size()) {
            return FailNode(text_.size(), 0, INCOMPLETE);
        }
        if (isKeyword || !FindQuestionWord(setup_, text_, at_, text_.size()).readings.empty()) {
            return FailNode(at_, end - at_, u"\"" + word + u"\" cannot stand here");
        }
        return FailUnknown(at_, end - at_);
    }

    std::int32_t FailUnknown(std::size_t position, std::size_t length) {
        const bool isNew = !failed_;
        Fail(position, length, Quote(position, position + length));
        if (isNew) {
            fault_.isUnknownWord = true;
            fault_.isFirst = SkipBlanks(text_, 0) == position;
        }
        return NO_NODE;
    }

    /// What looks like a number is none, or stands where an operator should.
    std::int32_t FailAtNumber() {
        std::size_t start = at_;
        while (start > 0 && (IsDigit(text_[start - 1]) || text_[start - 1] == u'.' || text_[start - 1] == u':')) {
            --start;
        }
        std::size_t end = at_;
        while (end < text_.size() &&
               (IsDigit(text_[end]) || IsLetter(text_[end]) || text_[end] == u'.' || text_[end] == u':')) {
            ++end;
        }
        end = std::max(end, at_ + 1);
        const CVelmString number = u"\"" + Quote(start, end) + u"\"";
        return FailNode(start, end - start,
                        start < at_ || IsLoneNumber(start, end) ? number + u" is not a number"
                                                                : u"An operator or a unit is missing before " + number);
    }

    /// Whether a text without blanks is one thing, such as 0xfg, 1e400 and 1:75:00, that should have been a number.
    bool IsLoneNumber(std::size_t start, std::size_t end) const {
        const CVelmStringView text = text_.substr(start, end - start);
        const bool hasBase = text.size() > 2 && text[0] == u'0' && IsLetter(text[1]) && !IsDigit(text[1]);
        return hasBase || !ReadTypedNumber(text_, start, Rules()) || text.find(u':') != CVelmStringView::npos;
    }

    CVelmString Quote(std::size_t start, std::size_t end) const {
        return CVelmString(text_.substr(start, end - start));
    }

    void Skip() { at_ = SkipBlanks(text_, at_); }
    char16_t Peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : u'\0'; }

    std::int32_t Add(QuestionNode node, std::size_t start) {
        node.position = start;
        node.length = at_ - start;
        tree_.nodes.push_back(std::move(node));
        return static_cast<std::int32_t>(tree_.nodes.size() - 1);
    }

    std::int32_t AddNumber(double number, std::size_t start) {
        QuestionNode node;
        node.number = number;
        return Add(std::move(node), start);
    }

    std::int32_t AddPair(QuestionNodeKind kind, std::int32_t left, std::int32_t right, std::int32_t code = 0) {
        QuestionNode node;
        node.kind = kind;
        node.code = code;
        node.left = left;
        node.right = right;
        return Add(std::move(node), tree_.At(left).position);
    }

    std::int32_t AddPrefix(QuestionNodeKind kind, std::int32_t operand, std::int32_t code, std::size_t start) {
        QuestionNode node;
        node.kind = kind;
        node.code = code;
        node.left = operand;
        return Add(std::move(node), start);
    }

    /// Whether a word stands here, and where it ends.
    bool IsWordHere(CVelmStringView word, std::size_t& end) const {
        end = at_ + word.size();
        return StartsWithNoCase(text_.substr(std::min(at_, text_.size())), word) &&
               (end >= text_.size() || !(IsWordUnit(text_[end]) || IsDigit(text_[end])));
    }

    bool TakeWord(CVelmStringView word) {
        std::size_t end = 0;
        if (!IsWordHere(word, end)) {
            return false;
        }
        at_ = end;
        return true;
    }

    /// An infix operator at the position; its end is left in `end`.
    std::optional<std::int32_t> InfixHere(std::size_t& end) const {
        std::int32_t code = 0;
        const char16_t unit = Peek();
        if (unit < 0x80 && IsOperatorToken(text_.substr(at_, 1), code) &&
            OPERATORS[static_cast<std::size_t>(code)].place == OperatorPlace::Infix) {
            end = at_ + 1;
            return code;
        }
        for (const WordOperator& row : WORD_OPERATORS) {
            if (IsWordHere(row.word, end) && !IsUnitBeyond(end)) {
                return row.code;
            }
        }
        return std::nullopt;
    }

    std::int32_t ReadOperation(int leastPrecedence) {
        if (++depth_ > MAX_DEPTH) {
            return FailNode(at_, 0, u"The question is nested too deeply");
        }
        const CVelmDepth leaving(depth_);
        std::int32_t left = ReadPrefixed();
        while (left != NO_NODE) {
            left = ReadPostfix(left);
            const std::size_t before = at_;
            Skip();
            std::size_t end = 0;
            const auto code = at_ < text_.size() ? InfixHere(end) : std::nullopt;
            const int precedence = code ? OPERATORS[static_cast<std::size_t>(*code)].precedence : -1;
            if (!code || precedence <= leastPrecedence) {
                at_ = before;
                if (!code && ReadsOn(left) && leastPrecedence < OPERATORS[OP_MULTIPLY].precedence) {
                    Skip();
                    const std::int32_t right = ReadOperation(OPERATORS[OP_MULTIPLY].precedence);
                    left = right == NO_NODE ? NO_NODE : AddPair(QuestionNodeKind::Operator, left, right, OP_MULTIPLY);
                    continue;
                }
                return left;
            }
            at_ = end;
            // A unit behind an exponent belongs to the whole power.
            const std::int32_t right = *code == OP_POWER ? ReadExponent() : ReadOperation(precedence);
            left = right == NO_NODE ? NO_NODE : AddPair(QuestionNodeKind::Operator, left, right, *code);
        }
        return left;
    }

    /// A bracket behind a value multiplies, and so does a unit behind a function or a power: 2(3+4), sqrt(2) m, 2^10 B.
    bool ReadsOn(std::int32_t left) const {
        const std::size_t next = SkipBlanks(text_, at_);
        if (next >= text_.size()) {
            return false;
        }
        const QuestionNode& node = tree_.At(left);
        const bool isPower =
            node.kind == QuestionNodeKind::Operator &&
            (node.code == OP_POWER || node.code == OP_SQUARE || node.code == OP_CUBE || node.code == OP_FACTORIAL);
        const bool takesUnit =
            node.kind == QuestionNodeKind::Function || node.kind == QuestionNodeKind::Conditional || isPower;
        return text_[next] == u'(' || (takesUnit && BeginsUnitWord(text_[next]) && !IsKeywordAt(next));
    }

    std::int32_t ReadExponent() {
        Skip();
        const auto number = at_ < text_.size() && BeginsNumber(Peek())
                                ? ReadTypedNumber(text_, at_, {callDepth_ == 0, false})
                                : std::nullopt;
        if (!number) {
            return ReadOperation(OPERATORS[OP_POWER].precedence);
        }
        const std::size_t start = at_;
        at_ = number->end;
        return AddNumber(number->value, start);
    }

    std::int32_t ReadPrefixed() {
        Skip();
        const std::size_t start = at_;
        if (Peek() == u'+') {
            ++at_;
            return ReadPrefixed();
        }
        if (Peek() == u'-' || Peek() == u'~') {
            if (++depth_ > MAX_DEPTH) {
                return FailNode(at_, 0, u"The question is nested too deeply");
            }
            const CVelmDepth leaving(depth_);
            const std::int32_t code = Peek() == u'-' ? OP_NEGATE : OP_NOT;
            ++at_;
            const std::int32_t operand = ReadPrefixed();
            return operand == NO_NODE ? NO_NODE : AddPrefix(QuestionNodeKind::Operator, operand, code, start);
        }
        return ReadPrimary();
    }

    std::int32_t ReadPostfix(std::int32_t operand) {
        for (;;) {
            const char16_t unit = Peek();
            const std::int32_t code = unit == u'!'   ? OP_FACTORIAL
                                      : unit == u'²' ? OP_SQUARE
                                      : unit == u'³' ? OP_CUBE
                                                     : -1;
            if (code < 0) {
                return operand;
            }
            ++at_;
            operand = AddPrefix(QuestionNodeKind::Operator, operand, code, tree_.At(operand).position);
        }
    }

    std::int32_t ReadPrimary() {
        if (at_ >= text_.size()) {
            return FailAtWord();
        }
        const char16_t unit = Peek();
        if (unit == u'(') {
            return ReadBracket();
        }
        if (unit == u'{') {
            return ReadBraces();
        }
        if (setup_.onlyFile == INDEX_NO_ITEM && (IsLetter(unit) || IsDigit(unit))) {
            if (const std::int32_t moment = ReadMoment(); moment != NO_NODE || failed_) {
                return moment;
            }
        }
        if (BeginsNumber(unit)) {
            return ReadLiteral();
        }
        if (const std::int32_t money = ReadSignedMoney(); money != NO_NODE || failed_) {
            return money;
        }
        if (IsLetter(unit) || unit == u'π' || unit == u'_') {
            if (const std::int32_t named = ReadNamed(); named != NO_NODE || failed_) {
                return named;
            }
        }
        const std::int32_t phrase = ReadUnitPhrase();
        return phrase == NO_NODE ? FailAtWord() : ReadNumberBehind(phrase);
    }

    /// gas mark 4, USD 100
    std::int32_t ReadNumberBehind(std::int32_t unit) {
        const std::size_t before = at_;
        Skip();
        const auto number = at_ < text_.size() && tree_.At(unit).kind == QuestionNodeKind::Unit && BeginsNumber(Peek())
                                ? ReadTypedNumber(text_, at_, Rules())
                                : std::nullopt;
        if (!number) {
            at_ = before;
            return unit;
        }
        const std::size_t start = at_;
        at_ = number->end;
        const std::int32_t value = AddNumber(number->value, start);
        const std::int32_t product = AddPair(QuestionNodeKind::UnitTimes, value, unit);
        tree_.nodes[static_cast<std::size_t>(product)].position = tree_.At(unit).position;
        tree_.nodes[static_cast<std::size_t>(product)].length = at_ - tree_.At(unit).position;
        return product;
    }

    std::int32_t ReadBracket() {
        const std::size_t start = at_++;
        const std::int32_t inner = ReadOperation(0);
        if (inner == NO_NODE) {
            return NO_NODE;
        }
        Skip();
        if (Peek() != u')') {
            return at_ < text_.size() && !IsKeywordHere() ? FailAtWord()
                                                          : FailNode(start, 1, u"The closing \")\" is missing");
        }
        ++at_;
        tree_.nodes[static_cast<std::size_t>(inner)].position = start;
        tree_.nodes[static_cast<std::size_t>(inner)].length = at_ - start;
        const std::size_t before = at_;
        Skip();
        const std::int32_t phrase =
            IsKeywordHere() || !BeginsUnitWord(Peek()) || IsInfixWordHere() ? NO_NODE : ReadUnitPhrase();
        if (phrase == NO_NODE) {
            at_ = before;
            return inner;
        }
        return AddPair(QuestionNodeKind::Operator, inner, phrase, OP_MULTIPLY);
    }

    /// A date as the formula language groups it.
    std::int32_t ReadBraces() {
        const std::size_t start = at_;
        const std::size_t end = text_.find(u'}', at_);
        const CVelmStringView inner =
            end == CVelmStringView::npos ? CVelmStringView() : Trim(text_.substr(at_ + 1, end - at_ - 1), u" ");
        const DateTime date = ParseDate(inner, setup_.clock);
        if (inner.empty() || date.month == 0) {
            const std::size_t close = std::min(end, text_.size() - 1) + 1;
            return FailNode(start, close - start, Quote(start, close) + u" is not a date");
        }
        at_ = end + 1;
        QuestionNode node;
        node.kind = QuestionNodeKind::Moment;
        node.number = date.value;
        node.hasTime = EqualsNoCase(inner, u"now");
        return Add(std::move(node), start);
    }

    std::int32_t ReadMoment() {
        const auto moment = ReadTypedMoment(text_, at_, setup_.clock);
        if (const std::size_t wrong = moment ? 0 : WrongDateEnd(text_, at_); wrong > 0) {
            return FailNode(at_, wrong - at_, u"\"" + Quote(at_, wrong) + u"\" is not a date");
        }
        if (!moment || (!moment->isMoment && moment->isTimeOfDay && setup_.isSecondTry)) {
            return NO_NODE;
        }
        if (moment->isMoment && IsLetter(Peek()) && IsName(Quote(at_, moment->end))) {
            return NO_NODE;
        }
        const std::size_t start = at_;
        at_ = moment->end;
        QuestionNode node;
        node.kind = moment->isMoment ? QuestionNodeKind::Moment : QuestionNodeKind::Clock;
        node.number = moment->value;
        node.hasTime = moment->hasTime;
        node.isClockOnly = moment->isTimeOfDay;
        const std::int32_t value = Add(std::move(node), start);
        return ReadZone(value);
    }

    /// A time zone behind a time: 9:30 New York, 9:30 in New York.
    std::int32_t ReadZone(std::int32_t value) {
        const std::size_t before = at_;
        Skip();
        if (!IsWordUnit(Peek()) || IsKeywordHere() || IsInfixWordHere()) {
            at_ = before;
            return value;
        }
        QuestionWord word = FindQuestionWord(setup_, text_, at_, text_.size());
        std::erase_if(word.readings,
                      [this](const CVelmReading& reading) { return setup_.index.FileOf(reading).isDate == 0; });
        if (word.readings.empty()) {
            at_ = before;
            return value;
        }
        const std::int32_t zone = AddUnit(std::move(word));
        return AddPair(QuestionNodeKind::UnitTimes, value, zone);
    }

    bool IsName(CVelmStringView word) const {
        return std::ranges::any_of(setup_.names, [word](const CVelmString& name) { return name == word; });
    }

    /// A kept value, a constant or a function.
    std::int32_t ReadNamed() {
        const std::size_t start = at_;
        const std::size_t end = text_[at_] == u'π' ? at_ + 1 : WordEnd(text_, at_);
        const CVelmString word = Quote(start, end);
        if (const auto name = std::ranges::find(setup_.names, word); name != setup_.names.end()) {
            at_ = end;
            QuestionNode node;
            node.kind = QuestionNodeKind::Name;
            node.word = static_cast<std::uint32_t>(name - setup_.names.begin());
            return Add(std::move(node), start);
        }
        const CVelmString function = word == u"π" ? CVelmString(u"pi") : ToLowerAscii(word);
        if (end < text_.size() && text_[end] == u'(') {
            return IsFunction(function) ? ReadCall(function, end) : NO_NODE;
        }
        const FunctionRow* const constant = FindFunction(function, 0);
        // Only "E" would be a constant in capitals; it is none.
        if (constant == nullptr || (word != function && word != u"π" && word.size() == 1)) {
            return NO_NODE;
        }
        at_ = end;
        QuestionNode node;
        node.kind = QuestionNodeKind::Function;
        node.function = constant;
        return Add(std::move(node), start);
    }

    static bool IsFunction(CVelmStringView name) {
        return name == CONDITIONAL_NAME || std::ranges::any_of(Functions(), [name](const FunctionRow& row) {
                   return row.name == name && row.arity > 0;
               });
    }

    std::int32_t ReadCall(const CVelmString& name, std::size_t bracket) {
        const std::size_t start = at_;
        at_ = bracket + 1;
        QuestionNode node;
        ++callDepth_;
        for (;;) {
            const std::int32_t argument = ReadOperation(0);
            if (argument == NO_NODE) {
                return NO_NODE;
            }
            node.arguments.push_back(argument);
            Skip();
            if (Peek() == u')') {
                break;
            }
            if (Peek() != u',') {
                return at_ < text_.size() ? FailAtWord() : FailNode(bracket, 1, u"The closing \")\" is missing");
            }
            ++at_;
        }
        --callDepth_;
        ++at_;
        const std::size_t count = node.arguments.size();
        if (name == CONDITIONAL_NAME) {
            node.kind = QuestionNodeKind::Conditional;
            return count >= 3 && count % 2 == 1
                       ? Add(std::move(node), start)
                       : FailNode(start, at_ - start, u"iif takes pairs of a condition and a value, and a last value");
        }
        node.kind = QuestionNodeKind::Function;
        node.function = FindFunction(name, static_cast<std::int32_t>(count));
        return node.function != nullptr ? Add(std::move(node), start)
                                        : FailNode(start, at_ - start, name + u" takes another number of arguments");
    }

    /// $5, €3.49/L
    std::int32_t ReadSignedMoney() {
        const std::size_t start = at_;
        std::size_t sign = at_;
        while (sign < text_.size() && IsLetter(text_[sign]) && sign < start + 3) {
            ++sign;
        }
        if (sign >= text_.size() || !IsCurrencySign(text_[sign])) {
            return NO_NODE;
        }
        const std::size_t numberAt = SkipBlanks(text_, sign + 1);
        if (numberAt >= text_.size() || !BeginsNumber(text_[numberAt])) {
            return NO_NODE;
        }
        QuestionWord word{start, sign + 1 - start, {}};
        setup_.index.FindUnits(text_.substr(start, word.length), word.readings);
        if (word.readings.empty()) {
            return FailUnknown(start, word.length);
        }
        at_ = sign + 1;
        const std::int32_t unit = AddUnit(std::move(word), false);
        at_ = numberAt;
        const auto number = ReadTypedNumber(text_, at_, Rules());
        if (!number) {
            return FailAtWord();
        }
        at_ = number->end;
        const std::int32_t value = AddNumber(number->value, numberAt);
        // The sign stands first, and the rest of its unit behind the number.
        const std::int32_t phrase = ReadUnitRest(unit);
        const std::int32_t product = AddPair(QuestionNodeKind::UnitTimes, value, phrase);
        tree_.nodes[static_cast<std::size_t>(product)].position = start;
        tree_.nodes[static_cast<std::size_t>(product)].length = at_ - start;
        return product;
    }

    NumberRules Rules() const { return {callDepth_ == 0, !setup_.isList, setup_.isSecondTry}; }

    /// A number, its unit, and further parts of a compound.
    std::int32_t ReadLiteral() {
        std::int32_t value = ReadNumberWithUnit();
        while (value != NO_NODE && hasUnit_) {
            const std::size_t before = at_;
            Skip();
            if (TakeWord(u"and")) {
                Skip();
            }
            const std::uint32_t lastMark = lastWord_;
            if (!BeginsNumber(Peek()) || !HasUnitBehind(lastMark)) {
                // 5'11 is five feet eleven.
                const bool isMark =
                    question_.TextOf(question_.words[lastMark]) == u"'" && IsDigit(Peek()) && before == at_;
                if (!isMark) {
                    at_ = before;
                    return value;
                }
            }
            const std::int32_t part = ReadNumberWithUnit(question_.TextOf(question_.words[lastMark]) == u"'");
            value = part == NO_NODE ? NO_NODE : AddPair(QuestionNodeKind::Sum, value, part);
        }
        return value;
    }

    /// Whether the number here has a unit behind it, so that it can be a further part.
    bool HasUnitBehind(std::uint32_t before) const {
        const auto number = ReadTypedNumber(text_, at_, Rules());
        if (!number) {
            return false;
        }
        const std::size_t next = SkipBlanks(text_, number->end);
        if (next >= text_.size() || text_[next] == u'%' || !BeginsUnitWord(text_[next])) {
            return false;
        }
        const QuestionWord word = FindQuestionWord(setup_, text_, next, text_.size());
        return !word.readings.empty() && (!setup_.isList || IsSmallerUnit(question_.words[before], word));
    }

    /// Whether a unit can be a further part behind another one.
    bool IsSmallerUnit(const QuestionWord& larger, const QuestionWord& smaller) const {
        const CVelmUnitIndex& index = setup_.index;
        return std::ranges::any_of(larger.readings, [&](const CVelmReading& a) {
            return std::ranges::any_of(smaller.readings, [&](const CVelmReading& b) {
                return index.FactorOf(b) > 0.0 && index.FactorOf(b) < index.FactorOf(a) &&
                       index.FileOf(a).Dimension() == index.FileOf(b).Dimension();
            });
        });
    }

    std::int32_t ReadNumberWithUnit(bool isBehindFoot = false) {
        const std::size_t start = at_;
        hasUnit_ = false;
        const auto number = ReadTypedNumber(text_, at_, Rules());
        if (!number || IsWrongBase(*number) ||
            (number->end < text_.size() && text_[number->end] == u':' && number->isWhole)) {
            return FailAtNumber();
        }
        at_ = number->end;
        double amount = number->value;
        if (const auto fraction = FractionHere(*number)) {
            amount = fraction->value;
            at_ = fraction->end;
        }
        std::int32_t value = AddNumber(amount, start);
        const std::size_t numberEnd = at_;
        Skip();
        if (setup_.isList && IsInputNameHere()) {
            at_ = numberEnd;
            return value;
        }
        std::size_t percentEnd = 0;
        const bool isPercent =
            at_ < text_.size() && (Peek() == u'%' ? (percentEnd = at_ + 1) > 0 : IsWordHere(u"percent", percentEnd));
        if (isPercent && setup_.onlyFile == INDEX_NO_ITEM && !IsUnitBeyond(percentEnd)) {
            at_ = percentEnd;
            return AddPrefix(QuestionNodeKind::Percent, value, 0, start);
        }
        if (isBehindFoot && (at_ >= text_.size() || !BeginsUnitWord(Peek()) || IsKeywordHere())) {
            return AddInches(value, numberEnd);
        }
        // "5 in" has a unit, "5 to" has not.
        const bool isInch = IsWordHereExactly(u"in");
        if (BeginsUnitHere() && (isInch || !IsKeywordHere()) && !IsInfixWordHere()) {
            if (const std::int32_t constant = ReadConstant(); constant != NO_NODE) {
                return AddPair(QuestionNodeKind::Operator, value, constant, OP_MULTIPLY);
            }
            const std::int32_t phrase = ReadUnitPhrase();
            if (phrase == NO_NODE && setup_.isList) {
                at_ = numberEnd;
                return value;
            }
            if (phrase == NO_NODE) {
                return FailAtWord();
            }
            hasUnit_ = true;
            value = AddPair(QuestionNodeKind::UnitTimes, value, phrase);
            tree_.nodes[static_cast<std::size_t>(value)].position = start;
            tree_.nodes[static_cast<std::size_t>(value)].length = at_ - start;
            return value;
        }
        at_ = numberEnd;
        return value;
    }

    /// Whether the word here is the name of the next input: percent=18.
    bool IsInputNameHere() const {
        std::size_t end = at_;
        while (end < text_.size() && (IsWordUnit(text_[end]) || IsDigit(text_[end]))) {
            ++end;
        }
        const std::size_t sign = SkipBlanks(text_, end);
        return end > at_ && sign < text_.size() && (text_[sign] == u'=' || text_[sign] == u':');
    }

    /// 0xfg, 0b102: only the first digit is a number.
    bool IsWrongBase(const TypedNumber& number) const {
        constexpr CVelmStringView LETTERS = u"xXoO";
        const bool isZero = number.end == at_ + 1 && text_[at_] == u'0' && number.end + 1 < text_.size();
        const char16_t letter = isZero ? text_[number.end] : u'\0';
        return isZero && (LETTERS.find(letter) != CVelmStringView::npos ||
                          (ToLowerAscii(letter) == u'b' && IsDigit(text_[number.end + 1])));
    }

    bool IsWordHereExactly(CVelmStringView word) const {
        std::size_t end = 0;
        return IsWordHere(word, end);
    }

    /// "1/2" before a unit is a fraction: half a cup, not one in two cups.
    std::optional<TypedNumber> FractionHere(const TypedNumber& numerator) const {
        if (!numerator.isWhole || numerator.end + 1 >= text_.size() || text_[numerator.end] != u'/' ||
            !IsDigit(text_[numerator.end + 1])) {
            return std::nullopt;
        }
        auto denominator = ReadTypedNumber(text_, numerator.end + 1, {false, false});
        if (!denominator || !denominator->isWhole || denominator->value == 0.0) {
            return std::nullopt;
        }
        const std::size_t next = SkipBlanks(text_, denominator->end);
        if (next >= text_.size() || !BeginsUnitWord(text_[next]) || IsKeywordAt(next, true)) {
            return std::nullopt;
        }
        denominator->value = numerator.value / denominator->value;
        return denominator;
    }

    std::int32_t ReadConstant() {
        const std::size_t end = text_[at_] == u'π' ? at_ + 1 : TokenEnd(text_, at_);
        const bool isPi = text_[at_] == u'π' || EqualsNoCase(text_.substr(at_, end - at_), u"pi");
        return isPi ? ReadNamed() : NO_NODE;
    }

    std::int32_t AddInches(std::int32_t value, std::size_t end) {
        at_ = end;
        QuestionWord word{end, 0, {}};
        setup_.index.FindUnits(u"\"", word.readings);
        if (word.readings.empty()) {
            return FailNode(end, 0, u"A unit is missing here");
        }
        const std::int32_t unit = AddUnit(std::move(word), false);
        return AddPair(QuestionNodeKind::UnitTimes, value, unit);
    }

    bool IsKeywordAt(std::size_t at, bool butInch = false) const {
        const std::size_t end = WordEnd(text_, at);
        const CVelmStringView word = text_.substr(at, end - at);
        return std::ranges::any_of(KEYWORDS, [&](CVelmStringView keyword) {
            return EqualsNoCase(word, keyword) && !(butInch && keyword == u"in");
        });
    }
    bool IsKeywordHere() const { return at_ < text_.size() && IsKeywordAt(at_) && !IsUnitBeyond(WordEnd(text_, at_)); }

    /// An operator in words, unless a unit's name begins with it: "Times as loud", "Per liter".
    bool IsInfixWordHere() const {
        std::size_t end = 0;
        const bool isWord =
            std::ranges::any_of(WORD_OPERATORS, [&](const WordOperator& row) { return IsWordHere(row.word, end); });
        return isWord && !IsUnitBeyond(end);
    }

    /// Whether a unit's name begins here and goes on behind a position.
    bool IsUnitBeyond(std::size_t end) const {
        const QuestionWord word = FindQuestionWord(setup_, text_, at_, text_.size());
        return !word.readings.empty() && word.position + word.length > end;
    }

    /// In questions about one file a unit may begin with a sign: /L
    bool BeginsUnitHere() const {
        return at_ < text_.size() && (BeginsUnitWord(Peek()) || (setup_.onlyFile != INDEX_NO_ITEM && Peek() == u'/'));
    }

    std::int32_t AddUnit(QuestionWord word, bool moves = true) {
        const std::size_t start = word.position;
        if (moves) {
            at_ = word.position + word.length;
        }
        lastWord_ = static_cast<std::uint32_t>(question_.words.size());
        QuestionNode node;
        node.kind = QuestionNodeKind::Unit;
        node.word = lastWord_;
        node.position = start;
        node.length = word.length;
        question_.words.push_back(std::move(word));
        tree_.nodes.push_back(std::move(node));
        return static_cast<std::int32_t>(tree_.nodes.size() - 1);
    }

    /// Units multiplied and divided: m/s^2, kW h, J/(kg K), miles per hour. NO_NODE, without a fault and with nothing
    /// read, when there is none.
    std::int32_t ReadUnitPhrase() {
        const std::int32_t first = ReadUnitFactor();
        return first == NO_NODE ? NO_NODE : ReadUnitRest(first);
    }

    std::int32_t ReadUnitRest(std::int32_t left) {
        for (;;) {
            const std::size_t before = at_;
            const bool touches = !(at_ < text_.size() && IsQuestionBlank(text_[at_]));
            Skip();
            QuestionNodeKind kind = QuestionNodeKind::UnitTimes;
            if (at_ >= text_.size()) {
                at_ = before;
                return left;
            }
            if (Peek() == u'/' || TakeWord(u"per")) {
                at_ += Peek() == u'/' ? 1 : 0;
                kind = QuestionNodeKind::UnitOver;
            } else if (Peek() == u'*' || (touches && (Peek() == u'-' || Peek() == u'.'))) {
                ++at_;
            } else if (touches || IsKeywordHere() || IsInfixWordHere() || !IsWordUnit(Peek())) {
                at_ = before;
                return left;
            }
            Skip();
            const std::int32_t right = ReadUnitOperand();
            if (right == NO_NODE) {
                at_ = before;
                return left;
            }
            left = AddPair(kind, left, right);
        }
    }

    std::int32_t ReadUnitOperand() {
        const std::size_t behindSign =
            at_ < text_.size() && IsCurrencySign(Peek()) ? SkipBlanks(text_, at_ + 1) : text_.size();
        if (at_ >= text_.size() || (behindSign < text_.size() && BeginsNumber(text_[behindSign]))) {
            return NO_NODE;
        }
        if (Peek() == u'(') {
            const std::size_t before = at_;
            ++at_;
            Skip();
            const std::int32_t inner = at_ < text_.size() && BeginsUnitWord(Peek()) ? ReadUnitPhrase() : NO_NODE;
            Skip();
            if (inner == NO_NODE || Peek() != u')') {
                at_ = before;
                return NO_NODE;
            }
            ++at_;
            return inner;
        }
        // L/100km: a number only where the unit follows at once.
        if (IsDigit(Peek())) {
            const std::size_t before = at_;
            const auto number = ReadTypedNumber(text_, at_, {false, false});
            if (!number || text_[at_ - 1] != u'/' || number->end >= text_.size() || !IsWordUnit(text_[number->end])) {
                return NO_NODE;
            }
            at_ = number->end;
            const std::int32_t value = AddNumber(number->value, before);
            const std::int32_t unit = ReadUnitFactor();
            if (unit == NO_NODE) {
                at_ = before;
                return NO_NODE;
            }
            return AddPair(QuestionNodeKind::UnitTimes, value, unit);
        }
        return ReadUnitFactor();
    }

    std::int32_t ReadUnitFactor() {
        if (!BeginsUnitHere()) {
            return NO_NODE;
        }
        const std::size_t start = at_;
        const std::size_t nameEnd = IsWordUnit(Peek()) ? WordEnd(text_, at_) : at_;
        if (IsName(text_.substr(at_, nameEnd - at_)) || (nameEnd < text_.size() && text_[nameEnd] == u'(' &&
                                                         IsFunction(ToLowerAscii(text_.substr(at_, nameEnd - at_))))) {
            return NO_NODE;
        }
        QuestionWord word = FindQuestionWord(setup_, text_, at_, text_.size());
        if (!word.readings.empty()) {
            return ReadPower(AddUnit(std::move(word)), start);
        }
        for (const PowerWord& power : POWERS_BEFORE) {
            if (!TakeWord(power.word)) {
                continue;
            }
            if (Peek() == u'.') {
                ++at_;
            }
            Skip();
            const std::int32_t unit = ReadUnitFactor();
            if (unit == NO_NODE) {
                break;
            }
            return AddPower(unit, power.exponent, start);
        }
        at_ = start;
        return NO_NODE;
    }

    std::int32_t ReadPower(std::int32_t unit, std::size_t start) {
        if (Peek() == u'²' || Peek() == u'³') {
            const double exponent = Peek() == u'²' ? 2.0 : 3.0;
            ++at_;
            return AddPower(unit, exponent, start);
        }
        // km3, s2
        if ((Peek() == u'2' || Peek() == u'3') && at_ > 0 && IsLetter(text_[at_ - 1]) &&
            !(at_ + 1 < text_.size() &&
              (IsWordUnit(text_[at_ + 1]) || IsDigit(text_[at_ + 1]) || text_[at_ + 1] == u'.'))) {
            const double exponent = Peek() - u'0';
            ++at_;
            return AddPower(unit, exponent, start);
        }
        const std::size_t before = at_;
        if (Peek() == u'^') {
            ++at_;
            const bool negative = Peek() == u'-';
            at_ += negative ? 1 : 0;
            if (const auto number = BeginsNumber(Peek()) ? ReadTypedNumber(text_, at_, {false, false}) : std::nullopt) {
                at_ = number->end;
                return AddPower(unit, negative ? -number->value : number->value, start);
            }
            at_ = before;
            return unit;
        }
        Skip();
        for (const PowerWord& power : POWERS_BEHIND) {
            if (TakeWord(power.word)) {
                return AddPower(unit, power.exponent, start);
            }
        }
        at_ = before;
        return unit;
    }

    std::int32_t AddPower(std::int32_t unit, double exponent, std::size_t start) {
        const std::int32_t power = AddNumber(exponent, at_);
        QuestionNode node;
        node.kind = QuestionNodeKind::UnitPower;
        node.left = unit;
        node.right = power;
        return Add(std::move(node), start);
    }

    /// Leaves a level when its scope ends.
    class CVelmDepth {
    public:
        explicit CVelmDepth(int& depth) : depth_(depth) {}
        ~CVelmDepth() { --depth_; }
        CVelmDepth(const CVelmDepth&) = delete;
        CVelmDepth& operator=(const CVelmDepth&) = delete;

    private:
        int& depth_;
    };

    const QuestionReaderSetup& setup_;
    Question& question_;
    CVelmStringView text_;
    QuestionTree& tree_;
    QuestionFault& fault_;
    std::size_t at_ = 0;
    int depth_ = 0;
    int callDepth_ = 0;
    bool failed_ = false;
    bool hasUnit_ = false;        ///< the number read last has a unit
    std::uint32_t lastWord_ = 0;  ///< the unit word read last
};

}  // namespace

bool ReadListedValue(const QuestionReaderSetup& setup, Question& question, std::size_t start, std::size_t& next,
                     QuestionTree& tree, QuestionFault& fault) {
    tree = {};
    return ValueReader(setup, question, question.text.size(), tree, fault).ReadListed(start, next);
}

bool ReadQuestionUnit(const QuestionReaderSetup& setup, Question& question, std::size_t start, std::size_t end,
                      QuestionTree& tree) {
    QuestionWord word = FindQuestionWord(setup, question.text, start, end);
    if (word.readings.empty() || word.length != end - start) {
        return false;
    }
    tree = {};
    QuestionNode node;
    node.kind = QuestionNodeKind::Unit;
    node.word = static_cast<std::uint32_t>(question.words.size());
    node.position = start;
    node.length = word.length;
    tree.nodes.push_back(std::move(node));
    tree.root = 0;
    question.words.push_back(std::move(word));
    return true;
}

bool ReadQuestionValue(const QuestionReaderSetup& setup, Question& question, std::size_t start, std::size_t end,
                       QuestionTree& tree, QuestionFault& fault) {
    tree = {};
    return ValueReader(setup, question, end, tree, fault).Read(start);
}

}  // namespace velm
