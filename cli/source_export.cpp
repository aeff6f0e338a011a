#include "source_export.h"

#include <fmt/ranges.h>

#include <bit>
#include <cmath>
#include <limits>

#include "data_file.h"
#include "formats/format_table.h"
#include "model/identifier_match.h"
#include "number_text.h"
#include "source_keys.h"

namespace velm {

namespace {

std::string TextAsUnits(CVelmStringView text) {
    std::string units;
    for (const char16_t unit : text) {
        units += fmt::format("{}{:04X}", units.empty() ? "" : " ", static_cast<unsigned>(unit));
    }
    return fmt::format("{{ {} = \"{}\" }}", KEY_UTF16, units);
}

std::string TextAsToml(CVelmStringView text) {
    const std::string utf8 = ToUtf8(text);
    // Half a surrogate pair has no form in UTF-8.
    if (FromUtf8(utf8) != text) {
        return TextAsUnits(text);
    }
    std::string quoted = "\"";
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (byte < 0x20 || byte == 0x7F) {
            quoted += fmt::format("\\u{:04X}", static_cast<unsigned>(byte));
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

std::string NumberAsToml(double value) {
    if (std::isnan(value)) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        const auto plain = std::bit_cast<std::uint64_t>(std::numeric_limits<double>::quiet_NaN());
        return bits == plain ? "nan" : fmt::format("\"0x{:016X}\"", bits);
    }
    // A whole number of TOML has 64 bits and no negative zero.
    const bool isSmallWhole = std::abs(value) < 1e15 && value == std::floor(value);
    const std::string text = ShortestText(value);
    return isSmallWhole && std::signbit(value) && value == 0.0                ? "-0.0"
           : !isSmallWhole && text.find_first_of(".ein") == std::string::npos ? text + ".0"
                                                                              : text;
}

std::string FlagAsToml(std::int32_t flag) {
    return flag == 0 ? "false" : flag == 1 ? "true" : std::to_string(flag);
}

class Exporter {
public:
    Exporter(const CVelmDocument& document, const CVelmRateDays& days)
        : document_(document), days_(days), units_(document) {}

    std::string Run() {
        Write(KEY_TITLE, TextAsToml(document_.title));
        Write(KEY_CATEGORY, TextAsToml(document_.category));
        Write(KEY_UPDATED, TextAsToml(document_.updatedText));
        Write(KEY_KIND, fmt::format("\"{}\"", KindWord(document_.GetKind())));
        for (const auto& item : document_.items) {
            WriteItem(*item);
        }
        if (const auto* conversions = ConversionsOf(document_)) {
            for (const auto& conversion : *conversions) {
                WriteConversion(*conversion);
            }
        }
        return std::move(text_);
    }

private:
    void Write(std::string_view key, std::string_view value) { text_ += fmt::format("{} = {}\n", key, value); }
    void BeginTable(std::string_view key) { text_ += fmt::format("\n[[{}]]\n", key); }

    void WriteItem(const CVelmItem& item) {
        BeginTable(KEY_ITEM);
        if (!item.identifier.empty()) {
            Write(KEY_ID, TextAsToml(item.identifier));
        }
        Write(KEY_NAME, TextAsToml(item.name));
        const bool isFormulaType = item.GetType() == ITEM_FORMULA;
        if (isFormulaType != (document_.GetKind() == KIND_CALCULATION)) {
            Write(KEY_TYPE, fmt::format("\"{}\"", isFormulaType ? WORD_FORMULA : WORD_VALUE));
        }
        WriteValue(item);
        if (item.shown != 1) {
            Write(KEY_SHOWN, FlagAsToml(item.shown));
        }
        WriteFormats(item.format);
    }

    void WriteValue(const CVelmItem& item) {
        if (item.IsOutput()) {
            Write(KEY_FORMULA, TextAsToml(item.valueText));
            return;
        }
        if (!item.valueText.empty()) {
            Write(KEY_VALUE, TextAsToml(item.valueText));
        }
        const auto* formulaItem = dynamic_cast<const CVelmFormulaItem*>(&item);
        if (formulaItem != nullptr && formulaItem->output != 0) {
            Write(KEY_OUTPUT, FlagAsToml(formulaItem->output));
        }
    }

    void WriteFormats(const CVelmValueFormat& format) {
        if (!HasNames(format)) {
            Write(KEY_FORMATS, std::to_string(format.allowedFormats));
            Write(KEY_DISPLAY, std::to_string(format.displayFormat));
            Write(KEY_INPUT, std::to_string(format.inputFormat));
        } else if (format.allowedFormats != FMT_DECIMAL) {
            WriteFormatNames(format);
        }
        if ((format.allowedFormats & FMT_COMPOUND) != 0) {
            WriteParts(format);
        }
    }

    /// A set of known formats, not empty, with both codes in it.
    static bool HasNames(const CVelmValueFormat& format) {
        const auto isIn = [&](std::uint32_t code) {
            return (code & format.allowedFormats) != 0 && FindFormat(code) != nullptr;
        };
        const auto codes = static_cast<std::size_t>(std::popcount(format.allowedFormats));
        return isIn(format.displayFormat) && isIn(format.inputFormat) && FormatWords(format).size() == codes;
    }

    void WriteFormatNames(const CVelmValueFormat& format) {
        Write(KEY_FORMATS, fmt::format("[\"{}\"]", fmt::join(FormatWords(format), "\", \"")));
        if (format.inputFormat != format.displayFormat) {
            Write(KEY_INPUT, fmt::format("\"{}\"", FormatOf(format.inputFormat).word));
        }
    }

    void WriteParts(const CVelmValueFormat& format) {
        const auto isLeftOut = [](const CVelmCompoundPart& part) {
            return part.label.empty() && std::bit_cast<std::uint64_t>(part.factor) == 0;
        };
        std::size_t count = format.compoundParts.size();
        while (count > 0 && isLeftOut(format.compoundParts[count - 1])) {
            --count;
        }
        std::string list;
        for (std::size_t i = 0; i < count; ++i) {
            const CVelmCompoundPart& part = format.compoundParts[i];
            list += fmt::format("{}[{}, {}]", i == 0 ? "" : ", ", TextAsToml(part.label), NumberAsToml(part.factor));
        }
        Write(KEY_PARTS, "[" + list + "]");
    }

    void WriteConversion(const CVelmConversion& conversion) {
        BeginTable(KEY_CONVERSION);
        Write(KEY_FROM, UnitAsToml(*conversion.unit1));
        Write(KEY_TO, UnitAsToml(*conversion.unit2));
        if (conversion.formulaFlag != (conversion.IsFormula() ? 1 : 0)) {
            Write(KEY_FLAG, std::to_string(conversion.formulaFlag));
        }
        if (!conversion.IsFormula()) {
            Write(KEY_FACTOR, NumberAsToml(conversion.factor));
            if (std::bit_cast<std::uint64_t>(conversion.offset) != 0) {
                Write(KEY_OFFSET, NumberAsToml(conversion.offset));
            }
            if (const auto day = days_.DayOf(conversion)) {
                Write(KEY_DATE, ToUtf8(DayText(*day)));
            }
            return;
        }
        if (conversion.WorksForward() || !conversion.WorksInReverse()) {
            Write(KEY_FORWARD, TextAsToml(conversion.forwardFormula));
        }
        if (conversion.WorksInReverse()) {
            Write(KEY_REVERSE, TextAsToml(conversion.reverseFormula));
        }
    }

    /// What import finds this very item by.
    std::string UnitAsToml(const CVelmItem& item) const {
        for (const CVelmString& text : {item.identifier, item.name}) {
            const std::span<CVelmItem* const> found = units_.FindExact(text);
            if (found.size() == 1 && found.front() == &item) {
                return TextAsToml(text);
            }
        }
        return std::to_string(item.index);
    }

    const CVelmDocument& document_;
    const CVelmRateDays& days_;
    CVelmIdentifierIndex units_;
    std::string text_;
};

}  // namespace

std::string SourceFromDocument(const CVelmDocument& document, const CVelmRateDays& days) {
    return Exporter(document, days).Run();
}

}  // namespace velm
