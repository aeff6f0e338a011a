#pragma once

#include <initializer_list>
#include <memory>
#include <string_view>

#include "model/calculation_document.h"
#include "model/conversion_document.h"
#include "model/file_format.h"
#include "support/memory_files.h"
#include "support/test_services.h"

namespace velm::test {

/// A unit, and how many of the file's first unit make one of it; 0: none.
struct SmallUnit {
    const char16_t* identifier;
    const char16_t* name;
    double factor;
};

/// A data folder in memory with a few small files, and words for them.
class SmallFolder {
public:
    SmallFolder() {
        AddConversions(u"Length", {{u"m", u"Meters", 1}, {u"ft", u"Feet", 0.3048}, {u"in", u"Inches", 0.0254}});
        AddConversions(u"Time", {{u"s", u"Seconds", 1}, {u"min", u"Minutes", 60}, {u"h", u"Hours", 3600}});
        AddConversions(u"Mass", {{u"kg", u"Kilograms", 1}, {u"g", u"Grams", 0.001}});
        AddConversions(u"Force", {{u"N", u"Newtons", 1}});
        AddConversions(u"Money", {{u"EUR", u"Euro", 1}, {u"USD", u"US dollar", 0.8}});
        AddTemperature();
        AddTip();
        files.AddText(u"Units.words", WORDS);
    }

    CVelmServices Services() { return services_.Services(); }

    void AddConversions(const CVelmString& file, std::initializer_list<SmallUnit> units) {
        CVelmConversionDoc document(Services());
        for (const SmallUnit& unit : units) {
            CVelmItem& item = AddUnit(document, unit.identifier, unit.name);
            if (document.ItemCount() > 1 && unit.factor > 0.0) {
                auto conversion = std::make_unique<CVelmConversion>(document);
                conversion->unit1 = &item;
                conversion->unit2 = document.GetItem(0);
                conversion->factor = unit.factor;
                document.AddConversion(std::move(conversion));
            }
        }
        Save(document, file);
    }

    MemoryFiles files;

private:
    static constexpr std::string_view WORDS =
        "[prefixes]\nk = kilo, 1000\nM = mega, 1e6\nm = milli, 0.001\n"
        "[spelling]\nµ = u\nmetre = meter\n"
        "[Length]\nquantity: a length\ndimension: length\ncoherent: m\nresults: m\nprefixes: m\n"
        "ft = foot, '!\nin = inch, \"!\n"
        "[Time]\nquantity: a time\ndimension: time\ncoherent: s\nresults: s, min, h\nmin = m\n"
        "[Mass]\nquantity: a mass\ndimension: mass\ncoherent: kg\nresults: g, kg\nprefixes: g\n"
        "[Force]\nquantity: a force\ndimension: mass*length/time^2\ncoherent: N\nresults: N\n"
        "[Money]\nquantity: money\ndimension: money\ncoherent: EUR\nresults: EUR\nUSD = $!\nEUR = €!\n"
        "[Temperature]\nquantity: a temperature\ndimension: temperature\ncoherent: K\nC = °C\nF = °F\n"
        "[Tip]\ncalled: gratuity\npercent = @%\npeople = persons\n";

    static CVelmItem& AddUnit(CVelmDocument& document, CVelmStringView identifier, CVelmStringView name) {
        CVelmItem& item = *document.AddItem(CreateItem(ITEM_VALUE));
        item.identifier = identifier;
        item.name = name;
        return item;
    }

    void AddTemperature() {
        CVelmConversionDoc document(Services());
        for (const char16_t* const identifier : {u"K", u"C", u"F"}) {
            AddUnit(document, identifier, identifier);
        }
        AddFormulas(document, 1, u"x+273.15", u"x-273.15");
        AddFormulas(document, 2, u"(x+459.67)*5/9", u"x*9/5-459.67");
        Save(document, u"Temperature");
    }

    static void AddFormulas(CVelmConversionDoc& document, std::size_t unit, CVelmStringView forward,
                            CVelmStringView reverse) {
        CVelmConversion& conversion = *document.AddConversion(std::make_unique<CVelmConversion>(document));
        conversion.unit1 = document.GetItem(unit);
        conversion.unit2 = document.GetItem(0);
        conversion.formulaFlag = 1;
        conversion.forwardFormula = forward;
        conversion.reverseFormula = reverse;
    }

    void AddTip() {
        CVelmCalculationDoc document(Services());
        const auto add = [&document](CVelmStringView identifier, CVelmStringView text, bool isOutput) {
            auto item = std::make_unique<CVelmFormulaItem>();
            item->identifier = identifier;
            item->name = identifier;
            item->valueText = text;
            item->output = isOutput ? 1 : 0;
            document.AddItem(std::move(item));
        };
        add(u"bill", u"40", false);
        add(u"percent", u"15", false);
        add(u"people", u"2", false);
        add(u"total", u"bill*(1+percent/100)", true);
        add(u"each", u"total/people", true);
        Save(document, u"Tip");
    }

    void Save(CVelmDocument& document, const CVelmString& name) {
        document.title = name;
        const std::string bytes = DocumentBytes(document).value();
        files.Add(document.GetKind() == KIND_CONVERSION ? name + u".cnv" : name + u".cal",
                  Bytes(bytes.begin(), bytes.end()), {++stamp_, 0});
    }

    TestServices services_{files};
    std::uint64_t stamp_ = 0;
};

}  // namespace velm::test
