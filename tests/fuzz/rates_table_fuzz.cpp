#include "fuzz/fuzz.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"
#include "support/test_services.h"
#include "update/table_merge.h"

namespace velm::test {

/// A table changes nothing or leaves a document of usable rates, one for each pair, that loads as it was saved.
void Try(Input input) {
    MemoryFiles files;
    TestServices services(files);
    const auto document =
        MakeConversionDoc(services.Services(), u"Currency", {u"EUR", u"USD", u"GBP", u"AED", u"JPY", u"usd"});
    Join(*document, 0, 1, 1.5);
    Join(*document, 2, 0, 1.25);
    Join(*document, 1, 3, 3.5);
    JoinByFormulas(*document, 3, 2, u"x*2", u"x/2");
    Require(document->Save(u"data"), "saved");
    const std::string before = Conversions(*document);
    const CVelmTableMerge result =
        MergeTable(*document, u"data", Characters(input), TableAge::NotOlder, services.Services());
    if (!result.merged) {
        Require(!result.errorText.empty(), "there is a reason");
        Require(!document->modified && Conversions(*document) == before, "what is refused changes nothing");
        return;
    }
    Require(result.rateCount > 0 && result.day.ok(), "there are rates of a day");
    for (const auto& conversion : document->conversions) {
        const double factor = conversion->factor;
        Require(conversion->IsFormula() || (factor > 0.0 && 1.0 / factor > 0.0 && factor - factor == 0.0),
                "a rate can be used in both directions");
        Require(document->FindConversion(conversion->unit1, conversion->unit2) == conversion.get(),
                "one for each pair");
    }
    CVelmConversionDoc again(services.Services());
    Require(again.Load(u"data", true, u"Currency"), "loads after the merge");
    Require(Conversions(again) == Conversions(*document), "the same after the merge");
}

}  // namespace velm::test
