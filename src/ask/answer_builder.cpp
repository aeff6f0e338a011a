#include "ask/answer_builder.h"

#include <array>
#include <cmath>
#include <utility>

#include "ask/question_messages.h"
#include "datetime/date_time.h"
#include "formats/currency_format.h"
#include "formats/date_format.h"
#include "formats/decimal_format.h"
#include "formats/format_table.h"
#include "formula/operators.h"
#include "formula/program.h"
#include "model/conversion_engine.h"

namespace velm {

namespace {

using Kind = CVelmAskedValue::Kind;

double RoundTo(double value, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double scaled = value * scale;
    return std::fabs(scaled) < 1e15 ? std::round(scaled) / scale : value;
}

/// A rounded number with all the decimals asked for.
CVelmString FixedText(double value, int decimals) {
    CVelmString text = FormatDecimal(RoundTo(value, decimals), true);
    if (decimals <= 0 || text.find(u'e') != CVelmString::npos || text.find(u' ') != CVelmString::npos) {
        return text;
    }
    std::size_t point = text.find(u'.');
    if (point == CVelmString::npos) {
        point = text.size();
        text += u'.';
    }
    while (text.size() - point - 1 < static_cast<std::size_t>(decimals)) {
        text += u'0';
    }
    return text;
}

/// Decimals that leave so many significant digits.
int DecimalsOf(double value, int significant) {
    return value == 0.0 ? 0 : significant - 1 - static_cast<int>(std::floor(std::log10(std::fabs(value))));
}

/// Without the blank that ends compound values.
CVelmString TrimEnd(CVelmString text) {
    text.erase(text.find_last_not_of(u' ') + 1);
    return text;
}

DateTime StartOfDay(double moment) {
    const DateTime fields = DateTime::FromValue(moment);
    return DateTime::FromFields(fields.year, fields.month, fields.day);
}

}  // namespace

BuildStatus CVelmAnswerBuilder::NotThis(CVelmString message) {
    message_ = std::move(message);
    return BuildStatus::NotThis;
}

BuildStatus CVelmAnswerBuilder::Build() {
    answer_.rows.clear();
    answer_.place = {};
    answer_.understood = UnderstoodText(index_, question_, resolution_.choice, folder_.Services().locale);
    const CVelmAskedValue& value = resolution_.value;
    const QuestionTargetKind kind = question_.target.kind;
    if (kind == QuestionTargetKind::Format) {
        return BuildFormat();
    }
    if (kind == QuestionTargetKind::Percent) {
        return BuildPercent();
    }
    if (kind == QuestionTargetKind::Compound) {
        return BuildCompound();
    }
    if (kind == QuestionTargetKind::Fraction) {
        return BuildFraction();
    }
    if (kind == QuestionTargetKind::Unit) {
        const bool isZoneTarget = resolution_.target.unit && index_.FileOf(*resolution_.target.unit).isDate != 0;
        return isZoneTarget ? BuildZone() : resolution_.isInFile ? BuildInFile() : BuildUnit();
    }
    const bool isZone = value.unit && index_.FileOf(*value.unit).isDate != 0;
    if (value.kind == Kind::Moment || isZone) {
        return isZone ? BuildZone() : BuildMoment();
    }
    return value.unit && IsGivenInUnits() && !IsRounded() ? BuildListing() : BuildComputed();
}

/// Whether the value was not computed: 5 km, -40 C, 5 ft 11 in. Such a value is listed in all units.
bool CVelmAnswerBuilder::IsGivenInUnits() const {
    const QuestionNode* root = &question_.value.Root();
    while (root->kind == QuestionNodeKind::Operator && root->code == OP_NEGATE) {
        root = &question_.value.At(root->left);
    }
    const bool isLiteral = root->kind == QuestionNodeKind::UnitTimes || root->kind == QuestionNodeKind::Unit;
    return root->kind == QuestionNodeKind::Sum || (isLiteral && resolution_.value.isExact) ||
           resolution_.value.kind == Kind::InUnit;
}

CVelmDocument* CVelmAnswerBuilder::Load(std::uint32_t file, BuildStatus& status) {
    bool isStale = false;
    CVelmDocument* const document = folder_.Document(file, isStale);
    status = document != nullptr ? BuildStatus::Ok : isStale ? BuildStatus::Stale : BuildStatus::CannotLoad;
    return document;
}

void CVelmAnswerBuilder::SetPlace(const CVelmReading& from, const CVelmReading* to, double value) {
    answer_.place.fileName = index_.Text(index_.FileOf(from).name);
    answer_.place.item = static_cast<std::int32_t>(index_.ItemOf(from).position);
    answer_.place.value = value;
    if (to != nullptr && to->file == from.file) {
        answer_.place.targetItem = static_cast<std::int32_t>(index_.ItemOf(*to).position);
    }
}

/// Enters the question's value in its unit's file and carries it to the items asked for.
BuildStatus CVelmAnswerBuilder::EnterValue(CVelmConversionDoc& document, std::span<const CVelmItem* const> asked) {
    const CVelmReading& unit = *resolution_.value.unit;
    const double scale = unit.prefix == INDEX_NO_ITEM ? 1.0 : index_.prefixes[unit.prefix].factor;
    CVelmItem& item = *document.GetItem(index_.ItemOf(unit).position);
    item.SetValue(resolution_.value.number * scale);
    document.currentItem = &item;
    SolveConversions(document.items, document.conversions, &item, asked, folder_.Context());
    SetPlace(unit, nullptr, item.value);
    return BuildStatus::Ok;
}

BuildStatus CVelmAnswerBuilder::BuildInFile() {
    BuildStatus status = BuildStatus::Ok;
    const CVelmReading& from = *resolution_.value.unit;
    const CVelmReading& to = *resolution_.target.unit;
    auto* const document = dynamic_cast<CVelmConversionDoc*>(Load(from.file, status));
    if (document == nullptr) {
        return status == BuildStatus::Ok ? BuildStatus::CannotLoad : status;
    }
    const CVelmItem* const target = document->GetItem(index_.ItemOf(to).position);
    EnterValue(*document, {&target, 1});
    SetPlace(from, &to, answer_.place.value);
    if (target->state != STATE_VALID) {
        return target->state == STATE_NONE ? BuildStatus::NoRoute : BuildStatus::NoValue;
    }
    const double scale = to.prefix == INDEX_NO_ITEM ? 1.0 : index_.prefixes[to.prefix].factor;
    const std::uint32_t special = FMT_COMPOUND | FMT_HEX | FMT_OCTAL | FMT_BINARY;
    if (to.prefix == INDEX_NO_ITEM && !IsRounded() && (target->format.displayFormat & special) != 0) {
        CVelmAnswerRow row;
        row.identifier = index_.LabelOf(to);
        row.name = index_.NameOf(to);
        row.value = target->value;
        row.hasValue = true;
        row.text = TrimEnd(target->ValueInList(folder_.Services().locale));
        row.textHasUnit = target->format.displayFormat == FMT_COMPOUND;
        answer_.rows.push_back(std::move(row));
        return BuildStatus::Ok;
    }
    AddNumber(index_.LabelOf(to), index_.NameOf(to), target->value / scale,
              (index_.ItemOf(to).flags & INDEX_ITEM_MONEY) != 0);
    return BuildStatus::Ok;
}

BuildStatus CVelmAnswerBuilder::BuildListing() {
    BuildStatus status = BuildStatus::Ok;
    const CVelmReading& from = *resolution_.value.unit;
    auto* const document = dynamic_cast<CVelmConversionDoc*>(Load(from.file, status));
    if (document == nullptr) {
        return status == BuildStatus::Ok ? BuildStatus::CannotLoad : status;
    }
    EnterValue(*document, {});
    for (std::size_t i = 0; i < document->ItemCount(); ++i) {
        const CVelmItem& item = *document->GetItem(i);
        if (item.shown == 0 || item.state != STATE_VALID ||
            (&item == document->currentItem && from.prefix == INDEX_NO_ITEM)) {
            continue;
        }
        CVelmAnswerRow row;
        row.identifier = item.identifier;
        row.name = item.name;
        row.value = item.value;
        row.hasValue = true;
        row.text = TrimEnd(item.ValueInList(folder_.Services().locale));
        row.textHasUnit = item.format.displayFormat == FMT_COMPOUND;
        answer_.rows.push_back(std::move(row));
    }
    if (answer_.rows.empty()) {
        AddNumber(index_.LabelOf(from), index_.NameOf(from), resolution_.value.number, false);
    }
    return BuildStatus::Ok;
}

CVelmString CVelmAnswerBuilder::NumberText(double& value, bool isMoney) const {
    const QuestionTarget& target = question_.target;
    if (target.decimals >= 0) {
        value = RoundTo(value, target.decimals);
        return FixedText(value, target.decimals);
    }
    if (target.significant > 0) {
        value = RoundTo(value, DecimalsOf(value, target.significant));
        return FormatDecimal(value, true);
    }
    // Less than a cent is not shown as nothing.
    static constexpr double LEAST_MONEY = 0.01;
    const bool isShownAsMoney = isMoney && (value == 0.0 || std::fabs(value) >= LEAST_MONEY);
    return isShownAsMoney ? FormatCurrency(value, true) : FormatDecimal(value, true);
}

void CVelmAnswerBuilder::AddNumber(CVelmString identifier, CVelmString name, double value, bool isMoney) {
    CVelmAnswerRow row;
    row.identifier = std::move(identifier);
    row.name = std::move(name);
    row.value = value;
    row.hasValue = true;
    row.text = NumberText(row.value, isMoney);
    answer_.rows.push_back(std::move(row));
}

BuildStatus CVelmAnswerBuilder::BuildUnit() {
    const CVelmAskedValue& target = resolution_.target;
    const bool isSingle = target.unit && target.isExact && target.number == 1.0;
    const double value = resolution_.value.amount / target.amount;
    if (!(std::fabs(value) <= VALUE_LIMIT)) {
        return BuildStatus::NoValue;
    }
    AddNumber(UnitLabel(index_, question_, question_.target.tree, resolution_.choice),
              isSingle ? index_.NameOf(*target.unit) : CVelmString(), value,
              isSingle && (index_.ItemOf(*target.unit).flags & INDEX_ITEM_MONEY) != 0);
    if (isSingle) {
        SetPlace(*target.unit, nullptr, value);
    }
    return BuildStatus::Ok;
}

BuildStatus CVelmAnswerBuilder::BuildCompound() {
    std::vector<const CVelmReading*> parts;
    for (const std::uint32_t word : question_.target.parts) {
        parts.push_back(&question_.words[word].readings[resolution_.choice[word]]);
    }
    const double smallest = index_.FactorOf(*parts.back());
    const int decimals = question_.target.decimals >= 0 ? question_.target.decimals : 3;
    double rest = RoundTo(std::fabs(resolution_.value.amount) / smallest, decimals);
    CVelmAnswerRow row;
    row.value = resolution_.value.amount / smallest;
    row.hasValue = true;
    row.textHasUnit = true;
    row.text = resolution_.value.amount < 0.0 ? u"-" : u"";
    for (const CVelmReading* part : parts) {
        const bool isLast = part == parts.back();
        const double ratio = index_.FactorOf(*part) / smallest;
        // A hair below a whole number is that number: the ratios of factors are rounded.
        const double count = isLast ? RoundTo(rest, decimals) : std::floor(rest / ratio + 1e-10);
        rest = std::fmax(rest - count * ratio, 0.0);
        row.text += (part == parts.front() ? u"" : u" ") + FormatDecimal(count, true) + u" " + index_.LabelOf(*part);
        row.identifier += (part == parts.front() ? u"" : u" ") + index_.LabelOf(*part);
    }
    answer_.rows.push_back(std::move(row));
    return BuildStatus::Ok;
}

BuildStatus CVelmAnswerBuilder::BuildFraction() {
    static constexpr int FINEST = 64;
    const CVelmAskedValue& value = resolution_.value;
    double amount = value.unit ? value.number : value.amount;
    CVelmString label = value.unit ? index_.LabelOf(*value.unit) : CVelmString();
    if (!question_.target.tree.nodes.empty()) {
        amount = value.amount / resolution_.target.amount;
        label = UnitLabel(index_, question_, question_.target.tree, resolution_.choice);
    } else if (!value.unit && !value.dimension.IsNone()) {
        return NotThis(u"Say in fractions of which unit");
    }
    int denominator = question_.target.denominator;
    for (int tried = 1; denominator == 0; tried *= 2) {
        const double parts = amount * tried;
        denominator =
            std::fabs(parts - std::round(parts)) < 1e-9 * std::fmax(1.0, parts) || tried == FINEST ? tried : 0;
    }
    // Thirds and the like, where halves of halves do not give the number.
    if (question_.target.denominator == 0) {
        for (int tried = 2; tried < FINEST; ++tried) {
            const double parts = amount * tried;
            if (std::fabs(parts - std::round(parts)) < 1e-9 * std::fmax(1.0, std::fabs(parts))) {
                denominator = tried;
                break;
            }
        }
    }
    const double parts = std::round(std::fabs(amount) * denominator);
    double whole = std::floor(parts / denominator);
    auto numerator = static_cast<std::int64_t>(parts - whole * denominator);
    std::int64_t below = denominator;
    for (std::int64_t factor = numerator; factor > 1; --factor) {
        if (numerator % factor == 0 && below % factor == 0) {
            numerator /= factor;
            below /= factor;
        }
    }
    CVelmAnswerRow row;
    row.identifier = std::move(label);
    row.value = amount;
    row.hasValue = true;
    row.text = amount < 0.0 ? u"-" : u"";
    if (whole != 0.0 || numerator == 0) {
        row.text += FormatDecimal(whole, true);
    }
    if (numerator != 0) {
        row.text += (whole != 0.0 ? u" " : u"") + IntegerText(numerator) + u"/" + IntegerText(below);
    }
    answer_.rows.push_back(std::move(row));
    return BuildStatus::Ok;
}

BuildStatus CVelmAnswerBuilder::BuildFormat() {
    const CVelmAskedValue& value = resolution_.value;
    const FormatKind& format = FormatOf(question_.target.format);
    const bool isDate = (format.code & (FMT_DATE | FMT_DATETIME)) != 0;
    CVelmAnswerRow row;
    row.hasValue = true;
    row.value = value.unit && value.kind != Kind::Moment ? value.number : value.amount;
    if (isDate || value.kind == Kind::Moment) {
        if (!isDate || (value.kind != Kind::Moment && !value.dimension.IsNone())) {
            return NotThis(isDate ? answer_.understood + u" is not a date" : CVelmString(u"A date is no number"));
        }
        row.text = FormatDate(row.value, format.code == FMT_DATETIME, folder_.Services().locale);
        row.textHasUnit = true;
        answer_.rows.push_back(std::move(row));
        return BuildStatus::Ok;
    }
    const bool takesUnits = format.code == FMT_CURRENCY;
    if (!takesUnits && (value.kind != Kind::Quantity || !value.dimension.IsNone())) {
        return NotThis(answer_.understood + u" is " + QuantityText(index_, value.dimension) + u", not a plain number");
    }
    row.text = format.digitBits != 0         ? format.write(row.value, true)
               : format.code == FMT_CURRENCY ? FormatCurrency(row.value, true)
                                             : NumberText(row.value, false);
    if (format.digitBits != 0 && row.text.starts_with(u"Dec:")) {
        return NotThis(FormatDecimal(row.value, true) + u" is not a whole number of 32 bits");
    }
    row.identifier = value.unit ? index_.LabelOf(*value.unit) : CVelmString();
    answer_.rows.push_back(std::move(row));
    return BuildStatus::Ok;
}

BuildStatus CVelmAnswerBuilder::BuildPercent() {
    const CVelmAskedValue& value = resolution_.value;
    if (value.kind != Kind::Quantity || !value.dimension.WithoutAngle().IsNone()) {
        return NotThis(answer_.understood + u" is " + QuantityText(index_, value.dimension) + u", not a plain number");
    }
    AddNumber(u"%", {}, value.amount * 100.0, false);
    return BuildStatus::Ok;
}

/// The unit that a person would use for the value's dimension: the largest one of the file's result units that is not
/// above the value.
const CVelmReading* CVelmAnswerBuilder::ResultUnit() const {
    const CVelmAskedValue& value = resolution_.value;
    for (std::uint32_t i = 0; i < index_.files.size(); ++i) {
        const IndexFile& file = index_.files[i];
        if (file.hasDimension == 0 || file.resultCount == 0 || file.Dimension() != value.dimension) {
            continue;
        }
        for (std::uint32_t result = file.firstResult; result < file.firstResult + file.resultCount; ++result) {
            const std::uint32_t item = index_.results[result];
            const bool isFirst = result == file.firstResult;
            const double factor = index_.items[item].factor;
            if (factor > 0.0 && (isFirst || std::fabs(value.amount) >= factor * (1.0 - 1e-12))) {
                resultUnit_ = {item, i, INDEX_NO_ITEM, RANK_NORMAL, false};
            }
        }
        return resultUnit_.item == INDEX_NO_ITEM ? nullptr : &resultUnit_;
    }
    return nullptr;
}

/// The coherent units of the base dimensions: "kg·m2/s3".
CVelmString CVelmAnswerBuilder::BaseLabel() const {
    CVelmString above;
    CVelmString below;
    for (std::size_t base = 0; base < BASE_COUNT; ++base) {
        const int halves = int{resolution_.value.dimension.halves[base]};
        CVelmDimension dimension;
        dimension.halves[base] = 2;
        CVelmString label = DimensionText(dimension);
        for (const IndexFile& file : index_.files) {
            if (file.hasDimension != 0 && file.coherentItem != INDEX_NO_ITEM && file.Dimension() == dimension &&
                index_.items[file.coherentItem].factor == 1.0) {
                label = index_.Text(index_.items[file.coherentItem].identifier);
                break;
            }
        }
        if (halves == 0) {
            continue;
        }
        CVelmString& side = halves > 0 ? above : below;
        const int size = std::abs(halves);
        side += (side.empty() ? u"" : u"·") + label;
        side += size == 2 ? CVelmString() : size % 2 == 0 ? IntegerText(size / 2) : u"^(" + IntegerText(size) + u"/2)";
    }
    if (below.empty()) {
        return above;
    }
    const bool isProduct = below.find(u'·') != CVelmString::npos;
    return (above.empty() ? CVelmString(u"1") : above) + u"/" + (isProduct ? u"(" + below + u")" : below);
}

BuildStatus CVelmAnswerBuilder::BuildComputed() {
    const CVelmAskedValue& value = resolution_.value;
    if (value.unit) {
        AddNumber(index_.LabelOf(*value.unit), index_.NameOf(*value.unit), value.number,
                  (index_.ItemOf(*value.unit).flags & INDEX_ITEM_MONEY) != 0);
        SetPlace(*value.unit, nullptr, value.number);
    } else if (value.dimension.IsNone()) {
        AddNumber({}, {}, value.amount, false);
    } else if (const CVelmReading* const unit = ResultUnit()) {
        const double number = value.amount / index_.FactorOf(*unit);
        AddNumber(index_.LabelOf(*unit), index_.NameOf(*unit), number,
                  (index_.ItemOf(*unit).flags & INDEX_ITEM_MONEY) != 0);
        SetPlace(*unit, nullptr, number);
        AddOtherResults(*unit);
    } else {
        AddNumber(BaseLabel(), {}, value.amount, false);
    }
    return BuildStatus::Ok;
}

/// The value in the other units that its dimension is shown in, as far as they are of a handy size.
void CVelmAnswerBuilder::AddOtherResults(const CVelmReading& shown) {
    static constexpr double LEAST = 0.01;
    static constexpr double MOST = 1e6;
    const IndexFile& file = index_.FileOf(shown);
    for (std::uint32_t result = file.firstResult; result < file.firstResult + file.resultCount; ++result) {
        const std::uint32_t item = index_.results[result];
        const double factor = index_.items[item].factor;
        const double number = factor > 0.0 ? resolution_.value.amount / factor : 0.0;
        if (item != shown.item && std::fabs(number) >= LEAST && std::fabs(number) < MOST) {
            const CVelmReading reading{item, shown.file, INDEX_NO_ITEM, RANK_NORMAL, false};
            AddNumber(index_.LabelOf(reading), index_.NameOf(reading), number, false);
        }
    }
}

BuildStatus CVelmAnswerBuilder::BuildMoment() {
    const CVelmAskedValue& value = resolution_.value;
    CVelmAnswerRow row;
    row.value = value.amount;
    row.hasValue = true;
    row.text = FormatDate(value.amount, value.hasTime, folder_.Services().locale);
    row.textHasUnit = true;
    answer_.rows.push_back(std::move(row));
    return BuildStatus::Ok;
}

/// A time in another zone, or what time it is in a zone that stands alone. Times without a zone are the user's own,
/// whose distance to universal time is today's.
BuildStatus CVelmAnswerBuilder::BuildZone() {
    BuildStatus status = BuildStatus::Ok;
    const CVelmAskedValue& value = resolution_.value;
    const CVelmReading& zone =
        value.unit && index_.FileOf(*value.unit).isDate != 0 ? *value.unit : *resolution_.target.unit;
    auto* const document = dynamic_cast<CVelmConversionDoc*>(Load(zone.file, status));
    const std::uint32_t coherent = index_.files[zone.file].coherentItem;
    if (document == nullptr || coherent == INDEX_NO_ITEM) {
        return document == nullptr && status != BuildStatus::Ok ? status : BuildStatus::CannotLoad;
    }
    const CVelmClock& clock = folder_.Services().clock;
    CVelmItem& utc = *document->GetItem(index_.items[coherent].position);
    CVelmItem* from = &utc;
    double moment = value.amount;
    const double localNow = DateTime::Now(clock).value;
    const double utcNow = DateTime::FromSystemTime(clock.UtcTime()).value;
    const auto carry = [&](CVelmItem& source, double at, const CVelmItem& target) {
        const CVelmItem* const asked = &target;
        source.SetValue(at);
        document->currentItem = &source;
        SolveConversions(document->items, document->conversions, &source, {&asked, 1}, folder_.Context());
        return target.state == STATE_VALID;
    };
    const bool isBareZone = value.kind == Kind::InUnit;
    if (isBareZone) {
        moment = utcNow;
    } else if (value.unit) {
        from = document->GetItem(index_.ItemOf(*value.unit).position);
        if (value.isTimeOfDay) {
            const double today = carry(utc, utcNow, *from) ? from->value : utcNow;
            moment = StartOfDay(today).value + value.amount / 86400.0;
        }
    } else {
        moment = value.kind == Kind::Moment ? value.amount : StartOfDay(localNow).value + value.amount / 86400.0;
        moment += utcNow - localNow;
    }
    const CVelmReading* const target = resolution_.target.unit ? &*resolution_.target.unit
                                       : isBareZone            ? &zone
                                                               : nullptr;
    CVelmItem& shown = target == nullptr ? utc : *document->GetItem(index_.ItemOf(*target).position);
    if (&shown != from && !carry(*from, moment, shown)) {
        return BuildStatus::NoValue;
    }
    const double result = &shown == from ? moment : shown.value;
    CVelmAnswerRow row;
    row.identifier = shown.identifier;
    row.name = shown.name;
    row.value = result;
    row.hasValue = true;
    row.text = FormatDate(result, true, folder_.Services().locale);
    answer_.rows.push_back(std::move(row));
    answer_.place.fileName = index_.Text(index_.files[zone.file].name);
    return BuildStatus::Ok;
}

}  // namespace velm
