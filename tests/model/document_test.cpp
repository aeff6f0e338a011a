#include "model/document.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

class Document : public testing::Test {
protected:
    Document() {
        for (const char16_t* name : {u"m", u"ft", u"in", u"mi"}) {
            document.AddItem(CreateItem(ITEM_VALUE))->name = name;
        }
    }

    MemoryFiles files;
    TestServices services{files};
    CVelmConversionDoc document{services.Services()};
};

TEST_F(Document, RemovingItemsRemovesTheConversionsThatReferToThem) {
    CVelmItem* const meter = document.GetItem(0);
    CVelmItem* const foot = document.GetItem(1);
    Join(document, 0, 1);
    Join(document, 1, 2);
    Join(document, 0, 3);
    EXPECT_EQ(document.FindConversion(document.GetItem(2), meter), nullptr);
    document.currentItem = foot;
    document.RemoveItem(foot);
    EXPECT_EQ(Conversions(document), "m*1=mi ");
    EXPECT_EQ(document.currentItem, nullptr);
    document.currentItem = meter;
    document.RemoveItems(1, 100);
    document.RemoveItems(7, 1);
    EXPECT_EQ(document.ItemCount(), 1U) << "a count beyond the end stops there";
    EXPECT_EQ(document.currentItem, meter);
    EXPECT_EQ(CreateDocument(3, services.Services()), nullptr);
    EXPECT_EQ(CreateItem(3), nullptr);
}

TEST_F(Document, CopiedItemsKeepTheirPlaceInTheList) {
    CVelmFormulaItem source;
    source.name = u"Tip";
    source.identifier = u"tip";
    source.valueText = u"bill*0.15";
    source.value = 6.0;
    source.state = STATE_VALID;
    source.shown = 0;
    source.index = 4;
    source.output = 1;
    source.format.allowedFormats = FMT_CURRENCY | FMT_DECIMAL;
    source.format.displayFormat = FMT_CURRENCY;
    CVelmFormulaItem copy;
    copy.CopyFrom(source);
    EXPECT_EQ(Describe(copy), "Tip (tip) = bill*0.15 257 256 256 output") << "typed as it is shown, and not hidden";
    EXPECT_EQ(copy.ShortName(), u"tip");
    EXPECT_TRUE(copy.value == 6.0 && copy.state == STATE_VALID && copy.index == 0);
    copy.CopyFrom(*document.GetItem(0));
    EXPECT_EQ(copy.ShortName(), u"m") << "without an identifier the name stands in";
    EXPECT_TRUE(copy.IsOutput()) << "an item of the other type has no output flag to copy";
    copy.output = 2;
    EXPECT_FALSE(copy.IsOutput());
}

}  // namespace
}  // namespace velm::test
