#pragma once

#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>

#include "formats/decimal_format.h"
#include "model/conversion_document.h"
#include "support/table.h"
#include "support/test_services.h"

namespace velm::test {

/// A conversion document with one unit for each identifier; a unit's name is its identifier followed by " unit".
inline std::unique_ptr<CVelmConversionDoc> MakeConversionDoc(const CVelmServices& services, const CVelmString& fileName,
                                                             std::initializer_list<const char16_t*> identifiers = {}) {
    auto document = std::make_unique<CVelmConversionDoc>(services);
    document->fileName = fileName;
    document->title = u"Title of " + fileName;
    for (const char16_t* identifier : identifiers) {
        CVelmItem& item = *document->AddItem(CreateItem(ITEM_VALUE));
        item.identifier = identifier;
        item.name = item.identifier + u" unit";
    }
    return document;
}

/// Joins two units by their positions: unit 2 = unit 1 x factor + offset.
inline CVelmConversion& Join(CVelmConversionDoc& document, std::size_t unit1, std::size_t unit2, double factor = 1.0,
                             double offset = 0.0) {
    CVelmConversion& conversion = *document.AddConversion(std::make_unique<CVelmConversion>(document));
    conversion.unit1 = document.GetItem(unit1);
    conversion.unit2 = document.GetItem(unit2);
    conversion.factor = factor;
    conversion.offset = offset;
    return conversion;
}

inline CVelmConversion& JoinByFormulas(CVelmConversionDoc& document, std::size_t unit1, std::size_t unit2,
                                       CVelmStringView forward, CVelmStringView reverse) {
    CVelmConversion& conversion = Join(document, unit1, unit2);
    conversion.formulaFlag = 1;
    conversion.forwardFormula = forward;
    conversion.reverseFormula = reverse;
    return conversion;
}

/// The conversions of a document in order: "USD*0.5+32=EUR " or, with formulas, "USD{x+1|x-1}EUR ".
inline std::string Conversions(const CVelmConversionDoc& document) {
    CVelmString text;
    for (const auto& conversion : document.conversions) {
        const CVelmString offset = FormatDecimal(conversion->offset, false);
        text += conversion->unit1->ShortName();
        text += conversion->IsFormula()
                    ? u"{" + conversion->forwardFormula + u"|" + conversion->reverseFormula + u"}"
                    : u"*" + FormatDecimal(conversion->factor, false) + (offset == u"0" ? u"=" : u"+" + offset + u"=");
        text += conversion->unit2->ShortName() + u" ";
    }
    return ToUtf8(text);
}

/// The values of all items to that many digits: "3 none error 2.5".
inline std::string Values(const CVelmDocument& document, int digits) {
    std::ostringstream text;
    text.precision(digits);
    for (const auto& item : document.items) {
        text << (text.tellp() > 0 ? " " : "");
        if (item->state == STATE_VALID) {
            text << item->value;
        } else {
            text << (item->state == STATE_NONE ? "none" : "error");
        }
    }
    return text.str();
}

/// The item in one line: "name (identifier) = text", its three formats, its parts and what it is.
inline std::string Describe(const CVelmItem& item) {
    std::string text = ToUtf8(item.name + u" (" + item.identifier + u") = " + item.valueText);
    for (const std::uint32_t code : {item.format.allowedFormats, item.format.displayFormat, item.format.inputFormat}) {
        text += " " + std::to_string(code);
    }
    for (const CVelmCompoundPart& part : item.format.compoundParts) {
        text += part.label.empty() ? "" : " " + ToUtf8(part.label) + ":" + std::to_string(part.factor).substr(0, 4);
    }
    return text + (item.shown == 1 ? "" : " hidden") + (item.IsOutput() ? " output" : "");
}

/// "title (category): name|identifier|text, ...; m*3.28=ft m{x+1|x-1}ft", with marks behind items: -hidden, -output.
inline std::string Describe(const CVelmDocument* document) {
    if (document == nullptr) {
        return "nothing";
    }
    std::vector<std::string> items;
    for (const auto& item : document->items) {
        items.push_back(ToUtf8(item->name + u"|" + item->identifier + u"|" + item->valueText +
                               (item->shown == 0 ? u" -hidden" : u"") + (item->IsOutput() ? u" -output" : u"")));
    }
    const std::string conversions =
        document->GetKind() == KIND_CONVERSION ? Conversions(static_cast<const CVelmConversionDoc&>(*document)) : "";
    return ToUtf8(document->title + u" (" + document->category + u"):") + (items.empty() ? "" : " ") + Join(items) +
           (conversions.empty() ? "" : "; " + conversions.substr(0, conversions.size() - 1));
}

}  // namespace velm::test
