#pragma once

#include <initializer_list>
#include <memory>
#include <string>

#include "model/document.h"
#include "model/item.h"
#include "support/test_services.h"

namespace velm::test {

/// A conversion document with one unit for each identifier; a unit's name is its identifier followed by " unit".
inline std::unique_ptr<CVelmConversionDoc> MakeConversionDoc(const CVelmServices& services, const CVelmString& fileName,
                                                             std::initializer_list<const char16_t*> identifiers = {}) {
    auto document = std::make_unique<CVelmConversionDoc>(services);
    document->fileName = fileName;
    document->title = u"Title of " + fileName;
    for (const char16_t* identifier : identifiers) {
        auto item = std::make_unique<CVelmValueItem>();
        item->identifier = identifier;
        item->name = item->identifier + u" unit";
        document->AddItem(std::move(item));
    }
    return document;
}

/// Joins two units by their positions: unit 2 = unit 1 x factor + offset.
inline CVelmConversion& Join(CVelmConversionDoc& document, std::size_t unit1, std::size_t unit2, double factor,
                             double offset = 0.0) {
    CVelmConversion* conversion = document.AddConversion(std::make_unique<CVelmConversion>(document));
    conversion->unit1 = document.GetItem(unit1);
    conversion->unit2 = document.GetItem(unit2);
    conversion->factor = factor;
    conversion->offset = offset;
    return *conversion;
}

/// The conversions of a document in order: "USD*0.5=EUR " or, with formulas, "USD{x+1|x-1}EUR ".
inline std::string Conversions(const CVelmConversionDoc& document) {
    std::string text;
    for (const auto& conversion : document.conversions) {
        const std::string unit1 = ToUtf8(conversion->unit1->identifier);
        const std::string unit2 = ToUtf8(conversion->unit2->identifier);
        if (conversion->IsFormula()) {
            text += unit1 + "{" + ToUtf8(conversion->forwardFormula + u"|" + conversion->reverseFormula) + "}";
        } else {
            std::string factor = std::to_string(conversion->factor);
            factor.erase(factor.find_last_not_of('0') + 1);
            text += unit1 + "*" + factor + (conversion->offset == 0.0 ? "=" : "+offset=");
        }
        text += unit2 + " ";
    }
    return text;
}

}  // namespace velm::test
