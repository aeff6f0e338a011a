#include "ask/sheet_question.h"

#include <algorithm>
#include <array>
#include <utility>

#include "ask/number_reader.h"
#include "ask/question_messages.h"
#include "ask/question_reader.h"
#include "ask/resolution.h"
#include "formats/decimal_format.h"
#include "model/calculation_document.h"
#include "platform/text_distance.h"

namespace velm {

namespace {

using Kind = CVelmAskedValue::Kind;

constexpr std::size_t MAX_NAME_WORDS = 5;
constexpr std::array<CVelmStringView, 12> FILLERS = {u"at", u"for", u"with", u"and",   u"of", u"over",
                                                     u"a",  u"on",  u"in",   u"split", u"by", u"between"};

bool IsWordPart(char16_t unit) {
    return IsLetter(unit) || IsDigit(unit) || unit == u'_' || unit == u'\'' || unit >= 0xC0;
}

std::size_t NameEnd(CVelmStringView text, std::size_t at) {
    while (at < text.size() && IsWordPart(text[at])) {
        ++at;
    }
    return at;
}

/// A value of the question, and the input that it is for.
struct SheetValue {
    CVelmAskedValue value;
    std::uint32_t input = INDEX_NO_ITEM;
    std::size_t position = 0;
    std::size_t length = 0;
};

class SheetReader {
public:
    SheetReader(CVelmWordFolder& folder, const CVelmUnitIndex& index, const CVelmString& text, std::uint32_t file,
                std::span<const CVelmKeptValue> kept, CVelmAnswer& answer)
        : folder_(folder), index_(index), text_(text), file_(file), kept_(kept), answer_(answer) {
        for (const CVelmKeptValue& value : kept) {
            names_.push_back(value.name);
        }
    }

    bool Read(std::size_t start) {
        for (at_ = SkipFillers(start); at_ < text_.size(); at_ = SkipFillers(at_)) {
            if (!ReadOne()) {
                return false;
            }
        }
        return Assign();
    }

    const std::vector<SheetValue>& Values() const { return values_; }

    /// The number of an input in its own unit.
    double NumberFor(const SheetValue& value) const {
        const std::uint32_t input = value.input;
        const CVelmAskedValue& asked = value.value;
        const std::optional<CVelmReading> unit = UnitOf(input, asked);
        if (asked.isPercent) {
            return index_.Text(index_.items[input].unit) == u"%" ? asked.amount * 100.0 : asked.amount;
        }
        if (asked.kind == Kind::Quantity && !asked.dimension.IsNone() && unit && index_.FactorOf(*unit) > 0.0) {
            return asked.unit && asked.isExact && IsSameUnit(index_, *asked.unit, *unit)
                       ? asked.number
                       : asked.amount / index_.FactorOf(*unit);
        }
        return asked.unit ? asked.number : asked.amount;
    }

private:
    bool Fail(std::size_t position, std::size_t length, CVelmString message) {
        answer_.fault = {std::move(message), position, length};
        return false;
    }

    CVelmString Title() const { return CVelmString(index_.Text(index_.files[file_].title)); }

    std::size_t SkipFillers(std::size_t at) const {
        for (;;) {
            at = SkipBlanks(text_, at);
            if (at < text_.size() && (text_[at] == u',' || text_[at] == u';')) {
                ++at;
                continue;
            }
            const std::size_t end = NameEnd(text_, at);
            const CVelmStringView word = CVelmStringView(text_).substr(at, end - at);
            const bool isFiller =
                std::ranges::any_of(FILLERS, [&](CVelmStringView filler) { return EqualsNoCase(filler, word); });
            const std::size_t next = SkipBlanks(text_, end);
            const bool isName = next < text_.size() && (text_[next] == u'=' || text_[next] == u':');
            if (!isFiller || isName) {
                return at;
            }
            at = end;
        }
    }

    /// The input that words here name, the longest name first.
    std::uint32_t InputHere(std::size_t at, std::size_t& end) const {
        std::array<std::size_t, MAX_NAME_WORDS> ends{};
        std::size_t count = 0;
        std::size_t next = at;
        while (count < ends.size() && next < text_.size() && IsLetter(text_[next])) {
            next = NameEnd(text_, next);
            ends[count++] = next;
            next = SkipBlanks(text_, next);
        }
        while (count > 0) {
            end = ends[--count];
            const auto found = index_.FindInputs(CVelmStringView(text_).substr(at, end - at), file_);
            const auto input = std::ranges::find_if(
                found, [this](std::uint32_t item) { return (index_.items[item].flags & INDEX_ITEM_OUTPUT) == 0; });
            if (input != found.end()) {
                return *input;
            }
        }
        return INDEX_NO_ITEM;
    }

    bool IsGiven(std::uint32_t input) const {
        return std::ranges::any_of(values_, [input](const SheetValue& value) { return value.input == input; });
    }

    bool ReadOne() {
        std::size_t end = at_;
        std::uint32_t input = INDEX_NO_ITEM;
        if (IsLetter(text_[at_])) {
            input = InputHere(at_, end);
            const std::size_t wordEnd = NameEnd(text_, at_);
            const std::size_t sign = SkipBlanks(text_, input == INDEX_NO_ITEM ? wordEnd : end);
            const bool hasSign = sign < text_.size() && (text_[sign] == u'=' || text_[sign] == u':');
            if (input == INDEX_NO_ITEM && hasSign) {
                return FailUnknownInput(at_, wordEnd - at_);
            }
            if (input != INDEX_NO_ITEM) {
                at_ = SkipBlanks(text_, hasSign ? sign + 1 : end);
                if (at_ >= text_.size()) {
                    return Fail(at_, 0,
                                u"The value of " + CVelmString(index_.Text(index_.items[input].name)) + u" is missing");
                }
            }
        }
        return ReadValue(input);
    }

    bool FailUnknownInput(std::size_t position, std::size_t length) {
        const CVelmString word = text_.substr(position, length);
        CVelmString nearest;
        int least = 1 << 20;
        const IndexFile& file = index_.files[file_];
        for (std::uint32_t i = file.firstItem; i < file.firstItem + file.itemCount; ++i) {
            const CVelmStringView name = index_.Text(index_.items[i].identifier);
            const int distance = TextDistance(word, name);
            if ((index_.items[i].flags & INDEX_ITEM_OUTPUT) == 0 && distance < least) {
                least = distance;
                nearest = name;
            }
        }
        return Fail(position, length, Title() + u" has no input \"" + word + u"\"; did you mean " + nearest + u"?");
    }

    bool ReadValue(std::uint32_t input) {
        Question question;
        question.text = text_;
        const QuestionReaderSetup setup{index_, folder_.Services().clock, names_, false, true};
        std::size_t next = at_;
        const std::size_t start = at_;
        QuestionFault fault;
        if (!ReadListedValue(setup, question, at_, next, question.value, fault)) {
            answer_.fault = fault;
            if (fault.isUnknownWord) {
                answer_.fault.message = Title() + u" has no input \"" + fault.message + u"\"";
            }
            return false;
        }
        const CVelmResolutions resolutions = Resolve(index_, folder_.Context(), question, kept_);
        if (resolutions.found.empty()) {
            answer_.fault = ResolutionFault(index_, question, resolutions, folder_.Services().locale);
            return false;
        }
        SheetValue value{ChooseReading(resolutions, input), input, start, next - start};
        at_ = next;
        if (input == INDEX_NO_ITEM && value.value.dimension.IsNone() && !value.value.unit && !value.value.isPercent) {
            // 3 people
            const std::size_t behind = SkipBlanks(text_, at_);
            std::size_t end = behind;
            const std::uint32_t named =
                behind < text_.size() && IsLetter(text_[behind]) ? InputHere(behind, end) : INDEX_NO_ITEM;
            const std::size_t sign = SkipBlanks(text_, end);
            const bool isNext = sign < text_.size() && (text_[sign] == u'=' || BeginsNumber(text_[sign]));
            if (named != INDEX_NO_ITEM && !IsGiven(named) && !(isNext && text_[sign] == u'=')) {
                value.input = named;
                at_ = end;
            }
        }
        values_.push_back(value);
        return true;
    }

    /// Of several readings of a value the first that an input takes.
    CVelmAskedValue ChooseReading(const CVelmResolutions& resolutions, std::uint32_t input) const {
        for (const CVelmResolution& resolution : resolutions.found) {
            const bool fits = input != INDEX_NO_ITEM ? Takes(input, resolution.value)
                                                     : FindInputFor(resolution.value) != INDEX_NO_ITEM;
            if (fits) {
                return resolution.value;
            }
        }
        return resolutions.found.front().value;
    }

    /// The reading of an input's unit that a value can be converted to.
    std::optional<CVelmReading> UnitOf(std::uint32_t input, const CVelmAskedValue& value) const {
        std::vector<CVelmReading> readings;
        index_.FindUnits(index_.Text(index_.items[input].unit), readings);
        for (const CVelmReading& reading : readings) {
            const bool isFactor = value.kind == Kind::Quantity && index_.FactorOf(reading) > 0.0 &&
                                  reading.rank != RANK_SECONDARY &&
                                  DimensionsFit(index_.FileOf(reading).Dimension(), value.dimension);
            const bool isItself = value.unit && value.isExact && value.unit->item == reading.item;
            if (isFactor || isItself) {
                return reading;
            }
        }
        return std::nullopt;
    }

    bool Takes(std::uint32_t input, const CVelmAskedValue& value) const {
        const IndexItem& item = index_.items[input];
        const CVelmStringView unit = index_.Text(item.unit);
        if (value.isPercent) {
            return unit == u"%";
        }
        if (value.kind == Kind::Moment) {
            return (item.flags & INDEX_ITEM_DATE) != 0;
        }
        if (value.kind == Kind::Quantity && value.dimension.IsNone()) {
            return (item.flags & INDEX_ITEM_DATE) == 0;
        }
        if (value.unit && (index_.ItemOf(*value.unit).flags & INDEX_ITEM_MONEY) != 0 &&
            index_.Text(item.unit).empty()) {
            return (item.flags & INDEX_ITEM_MONEY) != 0;
        }
        return !unit.empty() && UnitOf(input, value).has_value();
    }

    std::uint32_t FindInputFor(const CVelmAskedValue& value) const {
        const IndexFile& file = index_.files[file_];
        for (std::uint32_t i = file.firstItem; i < file.firstItem + file.itemCount; ++i) {
            const bool isInput = (index_.items[i].flags & (INDEX_ITEM_OUTPUT | INDEX_ITEM_SHOWN)) == INDEX_ITEM_SHOWN;
            if (isInput && !IsGiven(i) && Takes(i, value)) {
                return i;
            }
        }
        return INDEX_NO_ITEM;
    }

    /// Values with a unit first: plain numbers take what is left, in order.
    bool Assign() {
        for (const bool plain : {false, true}) {
            for (SheetValue& value : values_) {
                const bool isPlain =
                    value.value.kind == Kind::Quantity && value.value.dimension.IsNone() && !value.value.isPercent;
                if (value.input != INDEX_NO_ITEM || isPlain != plain) {
                    continue;
                }
                value.input = FindInputFor(value.value);
                if (value.input == INDEX_NO_ITEM) {
                    return FailNoInput(value);
                }
            }
        }
        return std::ranges::all_of(values_, [this](const SheetValue& value) {
            const bool isPlain = value.value.kind == Kind::Quantity && value.value.dimension.IsNone();
            return isPlain || Takes(value.input, value.value) || FailNoInput(value);
        });
    }

    bool FailNoInput(const SheetValue& value) {
        return Fail(value.position, value.length,
                    Title() + u" has no input for " + text_.substr(value.position, value.length));
    }

    CVelmWordFolder& folder_;
    const CVelmUnitIndex& index_;
    const CVelmString& text_;
    std::uint32_t file_;
    std::span<const CVelmKeptValue> kept_;
    std::vector<CVelmString> names_;
    CVelmAnswer& answer_;
    std::vector<SheetValue> values_;
    std::size_t at_ = 0;
};

void AddOutputs(const CVelmDocument& document, const CVelmLocale& locale, CVelmAnswer& answer) {
    for (const auto& item : document.items) {
        if (!item->IsOutput() || item->shown == 0) {
            continue;
        }
        CVelmAnswerRow row;
        row.identifier = item->identifier;
        row.name = item->name;
        row.value = item->value;
        row.hasValue = item->state == STATE_VALID;
        row.text = item->ValueInList(locale);
        row.text.erase(row.text.find_last_not_of(u' ') + 1);
        row.textHasUnit = true;
        answer.rows.push_back(std::move(row));
    }
}

/// The inputs as they were taken, and which kept their stored values.
void Describe(const CVelmUnitIndex& index, const CVelmDocument& document, const IndexFile& file,
              const std::vector<SheetValue>& values, const CVelmLocale& locale, CVelmAnswer& answer) {
    CVelmString kept;
    answer.understood = CVelmString(index.Text(file.title)) + u":";
    for (std::uint32_t i = 0; i < file.itemCount; ++i) {
        const CVelmItem& item = *document.GetItem(i);
        if (item.IsOutput() || item.shown == 0 || item.state != STATE_VALID) {
            continue;
        }
        CVelmString text = item.name + u" " + item.format.FormatValue(item.value, locale);
        text.erase(text.find_last_not_of(u' ') + 1);
        const bool isGiven =
            std::ranges::any_of(values, [&](const SheetValue& value) { return value.input == file.firstItem + i; });
        if (isGiven) {
            answer.understood += (answer.understood.back() == u':' ? u" " : u"; ") + text;
        } else if (item.value != 0.0) {
            kept += (kept.empty() ? u"as stored: " : u"; ") + text;
        }
    }
    if (!kept.empty()) {
        answer.notes.push_back(std::move(kept));
    }
}

}  // namespace

std::optional<CVelmSheetName> FindSheet(const CVelmUnitIndex& index, CVelmStringView text) {
    std::array<std::size_t, MAX_NAME_WORDS> ends{};
    std::size_t count = 0;
    const std::size_t start = SkipBlanks(text, 0);
    for (std::size_t at = start; count < ends.size() && at < text.size() && IsLetter(text[at]);) {
        at = NameEnd(text, at);
        ends[count++] = at;
        const auto [first, last] = index.RangeOf(text.substr(start, at - start));
        if (first == last) {
            --count;
            break;
        }
        at = SkipBlanks(text, at);
    }
    while (count > 0) {
        const std::size_t end = ends[--count];
        for (const std::uint32_t file : index.FindFiles(text.substr(start, end - start))) {
            if (index.files[file].kind == KIND_CALCULATION) {
                return CVelmSheetName{file, end};
            }
        }
    }
    return std::nullopt;
}

bool AnswerSheet(CVelmWordFolder& folder, const CVelmUnitIndex& index, const CVelmString& text,
                 const CVelmSheetName& sheet, std::span<const CVelmKeptValue> kept, CVelmAnswer& answer,
                 bool& isStale) {
    SheetReader reader(folder, index, text, sheet.file, kept, answer);
    if (!reader.Read(sheet.end)) {
        return false;
    }
    const IndexFile& file = index.files[sheet.file];
    CVelmDocument* const document = folder.Document(sheet.file, isStale);
    if (document == nullptr) {
        answer.fault.message = CVelmString(index.Text(file.name)) + u" cannot be loaded";
        return false;
    }
    for (const auto& item : document->items) {
        item->state = STATE_NONE;
    }
    for (const SheetValue& value : reader.Values()) {
        const std::uint32_t position = index.items[value.input].position;
        document->GetItem(position)->SetValue(reader.NumberFor(value));
        answer.place.inputs.push_back({static_cast<std::int32_t>(position), document->GetItem(position)->value});
    }
    document->Recalculate(folder.Context());
    const CVelmLocale& locale = folder.Services().locale;
    AddOutputs(*document, locale, answer);
    Describe(index, *document, file, reader.Values(), locale, answer);
    answer.place.fileName = index.Text(file.name);
    answer.ok = std::ranges::any_of(answer.rows, &CVelmAnswerRow::hasValue);
    if (!answer.ok) {
        answer.fault = {answer.understood + u" has no result", 0, text.size()};
    }
    return answer.ok;
}

}  // namespace velm
