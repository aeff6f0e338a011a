#include "source_import.h"

#include <fmt/format.h>

#include <limits>
#include <optional>

#include "cli_error.h"
#include "data_file.h"
#include "find_item.h"
#include "formats/format_table.h"
#include "model/document_edits.h"
#include "model/identifier_match.h"
#include "source_keys.h"
#include "suggest.h"

namespace velm {

namespace {

std::uint32_t ReadFormatName(const SourceFile& file, const toml::node& node) {
    const auto* name = node.as_string();
    if (name == nullptr) {
        FailAt(file, node, "a format must be one of the words in docs/data-files.md");
    }
    const FormatKind* const format = FindFormat(name->get());
    if (format == nullptr) {
        FailAt(file, node,
               fmt::format("unknown format {}; {}", Quoted(name->get()), DidYouMean(name->get(), FormatWords())));
    }
    return format->code;
}

/// A whole number that is stored as it is; nothing when the key is anything else.
std::optional<std::uint32_t> RawMask(const CVelmSourceTable& table, std::string_view key) {
    const auto* integer = table.Has(key) ? table.At(key).as_integer() : nullptr;
    if (integer == nullptr) {
        return std::nullopt;
    }
    if (integer->get() < 0 || integer->get() > std::numeric_limits<std::uint32_t>::max()) {
        table.FailAtKey(key, fmt::format("{} must be from 0 to 4294967295", key));
    }
    return static_cast<std::uint32_t>(integer->get());
}

/// Sets the allowed set and, as its first word says, the other two.
void ReadAllowedFormats(const CVelmSourceTable& table, CVelmValueFormat& format) {
    if (const auto mask = RawMask(table, KEY_FORMATS)) {
        format.SetAllowedFormats(*mask);
        format.allowedFormats = *mask;
        return;
    }
    const auto* list = table.At(KEY_FORMATS).as_array();
    if (list == nullptr || list->empty()) {
        table.FailAtKey(KEY_FORMATS, "formats must be a list of formats");
    }
    format.allowedFormats = 0;
    for (const toml::node& node : *list) {
        format.allowedFormats |= ReadFormatName(table.File(), node);
    }
    format.displayFormat = ReadFormatName(table.File(), *list->get(0));
    format.inputFormat = format.displayFormat;
}

void ReadFormat(const CVelmSourceTable& table, std::string_view key, const CVelmValueFormat& format,
                std::uint32_t& code) {
    if (const auto mask = RawMask(table, key)) {
        code = *mask;
    } else if (table.Has(key)) {
        code = ReadFormatName(table.File(), table.At(key));
        if ((code & format.allowedFormats) == 0) {
            table.FailAtKey(key, fmt::format("{} {} is not among the item's formats", key, FormatOf(code).word));
        }
    }
}

void ReadParts(const CVelmSourceTable& table, CVelmValueFormat& format) {
    if ((format.allowedFormats & FMT_COMPOUND) == 0) {
        table.FailAtKey(KEY_PARTS, "parts require \"compound\" among the item's formats");
    }
    const auto* list = table.At(KEY_PARTS).as_array();
    if (list == nullptr || list->size() > COMPOUND_PARTS) {
        table.FailAtKey(KEY_PARTS, "parts must be a list of at most four pairs of label and factor");
    }
    format.compoundParts = {};
    for (std::size_t i = 0; i < list->size(); ++i) {
        const toml::node& node = *list->get(i);
        const auto* pair = node.as_array();
        if (pair == nullptr || pair->size() != 2) {
            FailAt(table.File(), node, "a part must be a pair of label and factor, as in [\"ft\", 1]");
        }
        format.compoundParts[i].label = ReadText(table.File(), *pair->get(0), "the label of a part");
        format.compoundParts[i].factor = ReadNumber(table.File(), *pair->get(1), "the factor of a part");
    }
}

std::int32_t ReadType(const CVelmSourceTable& table, std::int32_t kind) {
    if (!table.Has(KEY_TYPE)) {
        return ItemTypeOf(kind);
    }
    const CVelmString word = table.Text(KEY_TYPE);
    if (word != FromUtf8(WORD_VALUE) && word != FromUtf8(WORD_FORMULA)) {
        table.FailAtKey(KEY_TYPE, "type must be \"value\" or \"formula\"");
    }
    return word == FromUtf8(WORD_VALUE) ? ITEM_VALUE : ITEM_FORMULA;
}

void ReadOutput(const CVelmSourceTable& table, CVelmItem& item) {
    const bool hasFormula = table.Has(KEY_FORMULA);
    auto* formulaItem = dynamic_cast<CVelmFormulaItem*>(&item);
    if (formulaItem == nullptr) {
        if (hasFormula || table.Has(KEY_OUTPUT)) {
            table.FailAtKey(hasFormula ? KEY_FORMULA : KEY_OUTPUT, "only calculation files have outputs");
        }
        return;
    }
    formulaItem->output = table.Flag(KEY_OUTPUT, hasFormula ? 1 : 0);
    if (hasFormula && !formulaItem->IsOutput()) {
        table.FailAtKey(KEY_OUTPUT, "an item with a formula is an output");
    }
}

class Importer {
public:
    Importer(const SourceFile& file, CVelmDocument& document, CVelmRateDays& days)
        : file_(file), document_(document), days_(days) {}

    void Read(const toml::table& source) {
        const CVelmSourceTable table(file_, source, "a data file", FILE_KEYS);
        if (table.Has(KEY_KIND) && table.Text(KEY_KIND) != FromUtf8(KindWord(document_.GetKind()))) {
            table.FailAtKey(KEY_KIND, "kind does not match the extension of the output file");
        }
        document_.title = table.RequiredText(KEY_TITLE);
        document_.category = table.Text(KEY_CATEGORY);
        if (table.Has(KEY_UPDATED)) {
            document_.updatedText = table.Text(KEY_UPDATED);
        }
        ForEachTable(table, KEY_ITEM, [this](const toml::table& item) { ReadItem(item); });
        const CVelmIdentifierIndex units(document_);
        auto* conversionDoc = dynamic_cast<CVelmConversionDoc*>(&document_);
        if (table.Has(KEY_CONVERSION) && conversionDoc == nullptr) {
            table.FailAtKey(KEY_CONVERSION, "a calculation file has no conversions");
        }
        ForEachTable(table, KEY_CONVERSION,
                     [&](const toml::table& conversion) { ReadConversion(conversion, units, *conversionDoc); });
    }

private:
    template <typename Read>
    void ForEachTable(const CVelmSourceTable& table, std::string_view key, Read read) {
        if (!table.Has(key)) {
            return;
        }
        const auto* list = table.At(key).as_array();
        if (list == nullptr || !list->is_homogeneous<toml::table>()) {
            table.FailAtKey(key, fmt::format("{0} must be written as [[{0}]]", key));
        }
        for (const toml::node& node : *list) {
            read(*node.as_table());
        }
    }

    void ReadItem(const toml::table& source) {
        const CVelmSourceTable table(file_, source, "an item", ITEM_KEYS);
        CVelmItem& item = *document_.AddItem(CreateItem(ReadType(table, document_.GetKind())));
        item.name = table.RequiredText(KEY_NAME);
        item.identifier = table.Text(KEY_ID);
        item.shown = table.Flag(KEY_SHOWN, 1);
        if (table.Has(KEY_VALUE) && table.Has(KEY_FORMULA)) {
            table.FailAtKey(KEY_FORMULA, "an item can have a value or a formula, not both");
        }
        item.valueText = table.Has(KEY_FORMULA) ? table.Text(KEY_FORMULA) : table.TextOrNumber(KEY_VALUE);
        ReadOutput(table, item);
        if (table.Has(KEY_FORMATS)) {
            ReadAllowedFormats(table, item.format);
        }
        ReadFormat(table, KEY_DISPLAY, item.format, item.format.displayFormat);
        ReadFormat(table, KEY_INPUT, item.format, item.format.inputFormat);
        if (table.Has(KEY_PARTS)) {
            ReadParts(table, item.format);
        }
    }

    void ReadConversion(const toml::table& source, const CVelmIdentifierIndex& units, CVelmConversionDoc& document) {
        const CVelmSourceTable table(file_, source, "a conversion", CONVERSION_KEYS);
        CVelmConversion& conversion = *document.AddConversion(std::make_unique<CVelmConversion>(document));
        conversion.unit1 = &ReadUnit(table, units, KEY_FROM);
        conversion.unit2 = &ReadUnit(table, units, KEY_TO);
        const bool hasFormula = table.Has(KEY_FORWARD) || table.Has(KEY_REVERSE);
        for (const std::string_view key : {KEY_FACTOR, KEY_OFFSET}) {
            if (hasFormula && table.Has(key)) {
                table.FailAtKey(key, fmt::format("a conversion can have {} or formulas, not both", key));
            }
        }
        conversion.formulaFlag = table.Flag(KEY_FLAG, hasFormula ? 1 : 0);
        if (conversion.IsFormula() != hasFormula) {
            table.FailAtKey(KEY_FLAG, "flag contradicts the conversion's other keys");
        }
        conversion.factor = table.Number(KEY_FACTOR, 1.0);
        conversion.offset = table.Number(KEY_OFFSET, 0.0);
        conversion.forwardFormula = table.Text(KEY_FORWARD);
        conversion.reverseFormula = table.Text(KEY_REVERSE);
        if (table.Has(KEY_DATE)) {
            ReadDate(table, conversion);
        }
    }

    void ReadDate(const CVelmSourceTable& table, const CVelmConversion& conversion) {
        const auto* date = table.At(KEY_DATE).as_date();
        if (date == nullptr) {
            table.FailAtKey(KEY_DATE, "date must be a date, as in 2026-09-29");
        }
        const CVelmDay day(std::chrono::year(date->get().year), std::chrono::month(date->get().month),
                           std::chrono::day(date->get().day));
        days_.Set(conversion, day);
        if (!days_.DayOf(conversion)) {
            table.FailAtKey(KEY_DATE, "only a factor without an offset, between items with an id, can have a date");
        }
    }

    /// By identifier or name, exactly; or by number.
    CVelmItem& ReadUnit(const CVelmSourceTable& table, const CVelmIdentifierIndex& units, std::string_view key) const {
        if (!table.Has(key)) {
            table.FailHere(fmt::format("a conversion has no {}", key));
        }
        if (const auto* index = table.At(key).as_integer()) {
            if (index->get() < 0 || index->get() >= static_cast<std::int64_t>(document_.ItemCount())) {
                table.FailAtKey(key, fmt::format("there is no item {}", index->get()));
            }
            return *document_.GetItem(static_cast<std::size_t>(index->get()));
        }
        const CVelmString text = table.Text(key);
        const std::span<CVelmItem* const> found = units.FindExact(text);
        if (found.size() > 1) {
            table.FailAtKey(key,
                            fmt::format("several items are called {}; give the number of the item, counting from 0",
                                        Quoted(ToUtf8(text))));
        }
        if (found.empty()) {
            table.FailAtKey(
                key, fmt::format("there is no unit {}; {}", Quoted(ToUtf8(text)), DidYouMeanItem(document_, text, 1)));
        }
        return *found.front();
    }

    const SourceFile& file_;
    CVelmDocument& document_;
    CVelmRateDays& days_;
};

}  // namespace

toml::table ParseSource(const SourceFile& file, std::string_view text) {
    toml::parse_result source = toml::parse(text);
    if (!source) {
        Fail(fmt::format("{}:{}: {}", file.name, source.error().source().begin.line, source.error().description()));
    }
    return std::move(source).table();
}

std::unique_ptr<CVelmDocument> DocumentFromSource(const SourceFile& file, const toml::table& source, std::int32_t kind,
                                                  const CVelmServices& services, CVelmRateDays& days) {
    std::unique_ptr<CVelmDocument> document = CreateDocument(kind, services);
    Importer(file, *document, days).Read(source);
    return document;
}

}  // namespace velm
