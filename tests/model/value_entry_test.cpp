#include "model/value_entry.h"

#include <gtest/gtest.h>

#include <array>

#include "support/sample_documents.h"

namespace velm::test {
namespace {

TEST(ValueEntry, ATypedValueIsTheCurrentItemsAndReachesTheOthersAndTheHiddenOnesAskedFor) {
    const auto document = MakeConversionDoc(SystemServices(), u"f", {u"m", u"cm", u"mm", u"um"});
    Join(*document, 0, 1, 100.0);
    Join(*document, 0, 2, 1000.0);
    Join(*document, 0, 3, 1e6);
    document->items[2]->shown = document->items[3]->shown = 0;
    FormulaContext context(SystemClock());
    CVelmItem* const m = document->GetItem(0);
    const std::array<const CVelmItem*, 1> asked = {document->GetItem(2)};
    EXPECT_TRUE(EnterText(*document, *m, u"1/2", context, asked));
    EXPECT_EQ(Values(*document, 9), "0.5 50 500 none");
    EXPECT_EQ(document->currentItem, m);
    EXPECT_EQ(document->items[2]->shown, 0);

    CVelmItem& cm = *document->GetItem(1);
    EXPECT_FALSE(EnterText(*document, cm, u"far", context));
    EXPECT_FALSE(EnterText(*document, cm, u"{someday}", context));
    EXPECT_EQ(Values(*document, 9), "0.5 50 500 none") << "and nothing else has changed";
    EXPECT_EQ(document->currentItem, m);
    EnterValue(*document, cm, 7.0, context);
    EXPECT_EQ(Values(*document, 9), "0.07 7 none none");
}

}  // namespace
}  // namespace velm::test
