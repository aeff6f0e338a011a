#include "model/document.h"

#include <gtest/gtest.h>

#include "support/faulty_files.h"
#include "support/temporary_folder.h"
#include "support/test_services.h"

namespace velm {
namespace {

using test::FaultyFiles;
using test::TemporaryFolder;
using test::TestServices;

class Document : public testing::Test {
protected:
    CVelmItem* AddUnit(CVelmStringView name) {
        auto item = CreateItem(ITEM_VALUE);
        item->name = name;
        return document.AddItem(std::move(item));
    }

    CVelmConversion* Join(CVelmItem* unit1, CVelmItem* unit2) {
        auto conversion = std::make_unique<CVelmConversion>(document);
        conversion->unit1 = unit1;
        conversion->unit2 = unit2;
        return document.AddConversion(std::move(conversion));
    }

    TestServices services;
    CVelmConversionDoc document{services.Services()};
};

TEST_F(Document, KindsFollowTheExtensionInAnyLetterCase) {
    EXPECT_EQ(KindOfFileName(u"Length.CNV"), KIND_CONVERSION);
    EXPECT_EQ(KindOfFileName(u"TipCalc.cal"), KIND_CALCULATION);
    EXPECT_EQ(KindOfFileName(u"Length.cnv.bak"), 0);
    EXPECT_EQ(KindOfFileName(u"cnv"), 0);
    EXPECT_EQ(ExtensionOfKind(KIND_CALCULATION), u".cal");
    EXPECT_EQ(ExtensionOfKind(3), u"");
    EXPECT_EQ(CreateDocument(KIND_CONVERSION, services.Services())->GetKind(), KIND_CONVERSION);
    EXPECT_EQ(CreateDocument(KIND_CALCULATION, services.Services())->GetKind(), KIND_CALCULATION);
    EXPECT_EQ(CreateDocument(3, services.Services()), nullptr);
    EXPECT_EQ(CreateItem(ITEM_FORMULA)->GetType(), ITEM_FORMULA);
    EXPECT_EQ(CreateItem(0), nullptr);
}

TEST_F(Document, StartsEmptyLoadedAndStampedWithTheCurrentTime) {
    EXPECT_TRUE(document.loaded);
    EXPECT_FALSE(document.IsModified());
    EXPECT_EQ(document.updatedText, u"Fri 7/5/2024 9:05:03");
    EXPECT_EQ(static_cast<int>(document.updatedTime), 2460496);
    services.clock.now.hour = 10;
    document.Touch();
    EXPECT_EQ(document.updatedText, u"Fri 7/5/2024 10:05:03");
    EXPECT_TRUE(document.IsModified());
    document.Touch(u"rates of Monday");
    EXPECT_EQ(document.updatedText, u"rates of Monday");
}

TEST_F(Document, RemovingItemsRemovesTheConversionsThatReferToThem) {
    CVelmItem* metre = AddUnit(u"Metre");
    CVelmItem* foot = AddUnit(u"Foot");
    CVelmItem* inch = AddUnit(u"Inch");
    CVelmItem* mile = AddUnit(u"Mile");
    Join(metre, foot);
    const CVelmConversion* toInch = Join(foot, inch);
    CVelmConversion* toMile = Join(metre, mile);
    EXPECT_EQ(document.FindConversion(inch, foot), toInch) << "in either order";
    EXPECT_EQ(document.FindConversion(inch, mile), nullptr);
    EXPECT_EQ(document.CountConversions(foot), 2);
    EXPECT_EQ(toMile->DisplayText(), u"Metre <-> Mile");

    document.currentItem = foot;
    document.RemoveItem(foot);
    EXPECT_EQ(document.ItemCount(), 3U);
    ASSERT_EQ(document.conversions.size(), 1U);
    EXPECT_EQ(document.conversions[0].get(), toMile);
    EXPECT_EQ(document.currentItem, nullptr);
    document.RemoveConversion(toMile);
    EXPECT_TRUE(document.conversions.empty());

    document.currentItem = metre;
    document.RemoveItems(1, 100);
    EXPECT_EQ(document.ItemCount(), 1U) << "a count beyond the end stops there";
    EXPECT_EQ(document.currentItem, metre);
    document.RemoveItem(inch);
    document.RemoveItems(7, 1);
    EXPECT_EQ(document.ItemCount(), 1U);
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
    EXPECT_EQ(copy.name, u"Tip");
    EXPECT_EQ(copy.ShortName(), u"tip");
    EXPECT_EQ(copy.valueText, u"bill*0.15");
    EXPECT_EQ(copy.value, 6.0);
    EXPECT_EQ(copy.state, STATE_VALID);
    EXPECT_EQ(copy.format.inputFormat, FMT_CURRENCY) << "a copied format is typed as it is shown";
    EXPECT_TRUE(copy.IsOutput());
    EXPECT_EQ(copy.shown, 1);
    EXPECT_EQ(copy.index, 0);

    CVelmValueItem plain;
    plain.name = u"Bill";
    copy.CopyFrom(plain);
    EXPECT_EQ(copy.ShortName(), u"Bill") << "without an identifier the name stands in";
    EXPECT_TRUE(copy.IsOutput()) << "an item of the other type has no output flag to copy";
    copy.output = 2;
    EXPECT_FALSE(copy.IsOutput());
}

TEST_F(Document, UnloadSavesAndKeepsTheCount) {
    const TemporaryFolder folder;
    document.fileName = u"Length";
    AddUnit(u"Metre");
    AddUnit(u"Foot");
    EXPECT_TRUE(document.Unload(folder.Path()));
    EXPECT_FALSE(document.loaded);
    EXPECT_EQ(document.ItemCount(), 0U);
    EXPECT_EQ(document.storedItemCount, 2);
    EXPECT_FALSE(document.Save(folder.Path())) << "an unloaded document has nothing to put in the place of its file";
    EXPECT_TRUE(document.Unload(folder.Path()));
    EXPECT_TRUE(document.EnsureLoaded(folder.Path()));
    EXPECT_EQ(document.ItemCount(), 2U);
    EXPECT_FALSE(document.IsModified());
    AddUnit(u"Inch");
    EXPECT_TRUE(document.EnsureLoaded(folder.Path()));
    EXPECT_EQ(document.ItemCount(), 3U) << "what is loaded is not loaded again";
    EXPECT_TRUE(document.Unload({}));
    EXPECT_TRUE(document.EnsureLoaded(folder.Path()));
    EXPECT_EQ(document.ItemCount(), 2U) << "without a folder nothing is saved";
}

TEST_F(Document, OnlyEditsKeepADocumentLoadedThatCannotBeSaved) {
    const TemporaryFolder folder;
    document.fileName = u"Length";
    AddUnit(u"Metre");
    ASSERT_TRUE(document.Save(folder.Path()));

    FaultyFiles readOnly(SystemFiles());
    readOnly.failingOpenForWriting = true;
    CVelmConversionDoc unwritable({readOnly, services.clock, services.locale});
    ASSERT_TRUE(unwritable.Load(folder.Path(), true, u"Length"));
    EXPECT_TRUE(unwritable.Unload(folder.Path())) << "nothing was edited";
    EXPECT_FALSE(unwritable.loaded);
    ASSERT_TRUE(unwritable.EnsureLoaded(folder.Path()));
    unwritable.items[0]->name = u"Meter";
    unwritable.Touch();
    EXPECT_FALSE(unwritable.Unload(folder.Path()));
    EXPECT_TRUE(unwritable.loaded);
    EXPECT_EQ(unwritable.items[0]->name, u"Meter");
}

}  // namespace
}  // namespace velm
