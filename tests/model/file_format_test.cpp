#include "model/file_format.h"

#include <gtest/gtest.h>

#include "support/file_bytes.h"
#include "support/memory_files.h"
#include "support/test_services.h"

namespace velm {
namespace {

using test::Bytes;
using test::FileBytes;
using test::MemoryFiles;
using test::TestServices;

// clang-format off
const Bytes GOLDEN_CNV = {
    0x10, 0xA0, 0x40, 0xC0,                             // magic
    164, 0, 0, 0,                                       // size
    2, 0, 0, 0, 'U', 0, 'p', 0,                         // updated
    1, 0, 0, 0, 'T', 0,                                 // title
    0, 0, 0, 0,                                         // category
    2, 0, 0, 0,                                         // items
    1, 0, 0, 0,                                         // a unit
    2, 0, 0, 0, 0xB0, 0, 'C', 0,                        //   name
    1, 0, 0, 0, 'C', 0,                                 //   identifier
    2, 0, 0, 0, '2', 0, '5', 0,                         //   value text
    1, 0, 0, 0,                                         //   shown
    1, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0,                 //   allowed, display and input format
    1, 0, 0, 0,                                         // a unit
    1, 0, 0, 0, 'K', 0,                                 //   name
    0, 0, 0, 0,                                         //   identifier
    0, 0, 0, 0,                                         //   value text
    0, 0, 0, 0,                                         //   hidden
    1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0,                 //   formats
    2, 0, 0, 0,                                         // conversions
    0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0,                 // linear, from item 0 to item 1
    0, 0, 0, 0, 0, 0, 0xF0, 0x3F,                       //   factor 1.0
    0x66, 0x66, 0x66, 0x66, 0x66, 0x12, 0x71, 0x40,     //   offset 273.15
    1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0,                 // formulas, from item 1 to item 0
    3, 0, 0, 0, 'x', 0, '-', 0, '1', 0,                 //   forward
    0, 0, 0, 0,                                         //   no reverse
};

const Bytes GOLDEN_CAL = {
    0x10, 0xA0, 0x40, 0xC0,                             // magic
    126, 0, 0, 0,                                       // size
    0, 0, 0, 0,                                         // updated
    1, 0, 0, 0, 'T', 0,                                 // title
    1, 0, 0, 0, 'C', 0,                                 // category
    1, 0, 0, 0,                                         // items
    2, 0, 0, 0,                                         // an output
    1, 0, 0, 0, 't', 0,                                 //   name
    1, 0, 0, 0, 'i', 0,                                 //   identifier
    3, 0, 0, 0, 'a', 0, '*', 0, '2', 0,                 //   formula
    1, 0, 0, 0,                                         //   shown
    17, 0, 0, 0, 16, 0, 0, 0, 1, 0, 0, 0,               //   decimal and compound
    1, 0, 0, 0, 'h', 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F,   //   part h, 1
    1, 0, 0, 0, 'm', 0, 0, 0, 0, 0, 0, 0, 0x4E, 0x40,   //   part m, 60
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,                 //   no part
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,                 //   no part
    1, 0, 0, 0,                                         //   output
};
// clang-format on

class FileFormat : public testing::Test {
protected:
    static constexpr auto FOLDER = u"data";
    static CVelmString Path(CVelmStringView name) { return WithSeparator(FOLDER) + CVelmString(name); }

    /// Loads the bytes as a file of the kind; null when that fails, with the reason in `status`.
    std::unique_ptr<CVelmDocument> Load(Bytes bytes, std::int32_t kind = KIND_CONVERSION) {
        files.Add(Path(CVelmString(u"f").append(ExtensionOfKind(kind))), std::move(bytes));
        auto document = CreateDocument(kind, services.Services());
        const bool ok = document->Load(FOLDER, true, u"f");
        status = document->LastLoad();
        EXPECT_EQ(ok, document->loaded);
        EXPECT_TRUE(ok || document->items.empty()) << "a document that failed to load has no items";
        return ok ? std::move(document) : nullptr;
    }

    std::unique_ptr<CVelmConversionDoc> LoadUnits(Bytes bytes) {
        return std::unique_ptr<CVelmConversionDoc>(static_cast<CVelmConversionDoc*>(Load(std::move(bytes)).release()));
    }

    static std::vector<CVelmString> Texts(const CVelmConversionDoc& document) {
        std::vector<CVelmString> texts;
        for (const auto& conversion : document.conversions) {
            texts.push_back(conversion->DisplayText());
        }
        return texts;
    }

    MemoryFiles files;
    TestServices services{files};
    LoadStatus status = LoadStatus::Ok;
};

TEST_F(FileFormat, AConversionFileIsReadAndWrittenByteForByte) {
    const auto document = LoadUnits(GOLDEN_CNV);
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->updatedText, u"Up");
    EXPECT_EQ(document->title, u"T");
    EXPECT_EQ(document->category, u"");
    ASSERT_EQ(document->ItemCount(), 2U);
    const CVelmItem& celsius = *document->items[0];
    EXPECT_EQ(celsius.name, u"\u00b0C");
    EXPECT_EQ(celsius.identifier, u"C");
    EXPECT_EQ(celsius.valueText, u"25");
    EXPECT_EQ(celsius.format.allowedFormats, FMT_CURRENCY | FMT_DECIMAL);
    EXPECT_EQ(celsius.format.displayFormat, FMT_CURRENCY);
    EXPECT_EQ(celsius.format.inputFormat, FMT_DECIMAL) << "reading is no assignment";
    EXPECT_EQ(document->items[1]->shown, 0);
    EXPECT_EQ(document->items[1]->index, 1);
    ASSERT_EQ(document->conversions.size(), 2U);
    EXPECT_EQ(document->conversions[0]->unit2, document->GetItem(1));
    EXPECT_EQ(document->conversions[0]->offset, 273.15);
    EXPECT_EQ(document->conversions[1]->unit1, document->GetItem(1));
    EXPECT_EQ(document->conversions[1]->forwardFormula, u"x-1");

    ASSERT_TRUE(document->Save(FOLDER));
    EXPECT_EQ(files.Content(Path(u"f.cnv")), GOLDEN_CNV);
    EXPECT_EQ(files.files.size(), 1U) << "nothing else is left in the folder";
}

TEST_F(FileFormat, ACalculationFileIsReadAndWrittenByteForByte) {
    const auto document = Load(GOLDEN_CAL, KIND_CALCULATION);
    ASSERT_NE(document, nullptr);
    ASSERT_EQ(document->ItemCount(), 1U);
    const CVelmItem& item = *document->items[0];
    EXPECT_TRUE(item.IsOutput());
    EXPECT_EQ(item.valueText, u"a*2");
    EXPECT_EQ(item.format.compoundParts[1].label, u"m");
    EXPECT_EQ(item.format.compoundParts[1].factor, 60.0);
    EXPECT_EQ(item.format.compoundParts[2].factor, 0.0);
    ASSERT_TRUE(document->Save(FOLDER));
    EXPECT_EQ(files.Content(Path(u"f.cal")), GOLDEN_CAL);
}

TEST_F(FileFormat, AnEmptyDocumentIsItsHeaderAndZeroCounts) {
    for (const std::int32_t kind : {KIND_CONVERSION, KIND_CALCULATION}) {
        const auto document = CreateDocument(kind, services.Services());
        document->fileName = u"e";
        document->Touch(u"now");
        ASSERT_TRUE(document->Save(FOLDER));
        FileBytes expected;
        expected.Header(u"now", u"", u"").Int(0);
        if (kind == KIND_CONVERSION) {
            expected.Int(0);
        }
        EXPECT_EQ(files.Content(Path(CVelmString(u"e").append(ExtensionOfKind(kind)))), expected.Sized());
    }
}

TEST_F(FileFormat, TheHeaderAloneGivesTheCountAndTheFileTime) {
    constexpr std::uint64_t SECOND_DAY = 0x14D00000000;  // of the test's clock, which starts in 1601
    files.Add(Path(u"f.cnv"), GOLDEN_CNV, {SECOND_DAY - 1, SECOND_DAY});
    CVelmConversionDoc document(services.Services());
    ASSERT_TRUE(document.Load(FOLDER, false, u"f"));
    EXPECT_FALSE(document.loaded);
    EXPECT_EQ(document.title, u"T");
    EXPECT_EQ(document.storedItemCount, 2);
    EXPECT_EQ(document.ItemCount(), 0U);
    EXPECT_EQ(static_cast<int>(document.updatedTime), 2305814) << "1601-01-02";
    EXPECT_EQ(files.opens, 1);
    EXPECT_EQ(files.reads, 1);
}

TEST_F(FileFormat, AHeaderThatIsNotRightFailsTheLoad) {
    const auto statusOf = [this](Bytes bytes) {
        EXPECT_EQ(Load(std::move(bytes)), nullptr);
        return status;
    };
    Bytes bytes = GOLDEN_CNV;
    bytes.push_back(0);
    EXPECT_EQ(statusOf(bytes), LoadStatus::SizeMismatch);
    bytes = GOLDEN_CNV;
    bytes[4] -= 1;
    EXPECT_EQ(statusOf(bytes), LoadStatus::SizeMismatch);
    bytes = GOLDEN_CNV;
    bytes[0] ^= 1;
    EXPECT_EQ(statusOf(bytes), LoadStatus::UnknownFormat);
    EXPECT_EQ(statusOf({}), LoadStatus::Truncated);
    EXPECT_EQ(statusOf({0x10, 0xA0, 0x40, 0xC0}), LoadStatus::Truncated);
    EXPECT_EQ(statusOf(FileBytes().Header(u"", u"", u"").Int(0xFFFFFFFF).Sized()), LoadStatus::NegativeCount);
    EXPECT_EQ(statusOf(FileBytes().Header(u"", u"", u"").Int(0).Int(0x80000000).Sized()), LoadStatus::NegativeCount);
    EXPECT_EQ(statusOf(FileBytes().Header(u"", u"", u"").Int(0).Sized()), LoadStatus::Truncated)
        << "a conversion file says how many conversions it has";
    EXPECT_EQ(statusOf(FileBytes().Header(u"", u"", u"").Int(1).Int(3).Sized()), LoadStatus::UnknownItemType);
    EXPECT_EQ(statusOf(FileBytes().Int(0xC0215192).Text(u"").Int(0).Int(0xFFFFFFFF).Get()), LoadStatus::NegativeCount);
    EXPECT_EQ(statusOf(FileBytes().Int(0xC0215192).Text(u"").Int(0).Int(1).Int(0).Get()), LoadStatus::Truncated);
    CVelmConversionDoc missing(services.Services());
    EXPECT_FALSE(missing.Load(FOLDER, true, u"missing"));
    EXPECT_EQ(missing.LastLoad(), LoadStatus::CannotOpen);
}

TEST_F(FileFormat, CountsThatTheBytesDoNotBearOutEndAtOnce) {
    EXPECT_EQ(Load(FileBytes().Header(u"", u"", u"").Int(0x7FFFFFFF).Unit(u"m").Sized()), nullptr);
    EXPECT_EQ(status, LoadStatus::Truncated);
    const auto document =
        LoadUnits(FileBytes().Header(u"", u"", u"").Int(1).Unit(u"m").Int(0x7FFFFFFF).Int(0).Int(0).Sized());
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->ItemCount(), 1U);
    EXPECT_EQ(document->DroppedRecords(), 0x7FFFFFFF);
}

TEST_F(FileFormat, ADroppedItemTakesItsConversionsAndNoOthersWithIt) {
    FileBytes bytes;
    bytes.Header(u"", u"", u"").Int(4).Unit(u"m");
    bytes.Int(1).Int(0xFFFFFFFF);  // an item whose name has a negative length: the next one starts behind it
    bytes.Unit(u"ft").Unit(u"in");
    bytes.Int(5).Linear(0, 1, 2.0).Linear(2, 3, 12.0).Linear(1, 3, 3.0).Linear(3, 0, 0.0254).Linear(0, 4, 1.0);
    const auto document = LoadUnits(bytes.Sized());
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->ItemCount(), 3U);
    EXPECT_EQ(Texts(*document), (std::vector<CVelmString>{u"ft <-> in", u"in <-> m"}));
    EXPECT_EQ(document->DroppedRecords(), 4);
    EXPECT_EQ(document->items[2]->index, 2);

    ASSERT_TRUE(document->Save(FOLDER));
    EXPECT_EQ(files.Content(Path(u"f.cnv.bak")), bytes.Sized()) << "what could not be read is kept";
    const auto again = LoadUnits(files.Content(Path(u"f.cnv")));
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->DroppedRecords(), 0);
    EXPECT_EQ(Texts(*again), Texts(*document));
}

TEST_F(FileFormat, AConversionWithAWrongIndexIsDroppedWhole) {
    FileBytes bytes;
    bytes.Header(u"", u"", u"").Int(2).Unit(u"a").Unit(u"b").Int(4);
    bytes.Int(1).Int(0).Int(2).Text(u"x+1").Text(u"x-1");
    bytes.Int(0x10000).Int(0xFFFFFFFF).Int(0).Double(2.0).Double(0.0);
    bytes.Int(0x10000).Int(1).Int(0).Double(2.0).Double(0.0);
    bytes.Int(0x10001).Int(0).Int(1).Text(u"x*3").Text(u"x/3");
    const auto document = LoadUnits(bytes.Sized());
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(Texts(*document), (std::vector<CVelmString>{u"b <-> a", u"a <-> b"}));
    EXPECT_EQ(document->DroppedRecords(), 2);
    EXPECT_FALSE(document->conversions[0]->IsFormula()) << "the low 16 bits of the flag decide";
    EXPECT_EQ(document->conversions[0]->formulaFlag, 0x10000) << "but it is kept whole";
    EXPECT_EQ(document->conversions[1]->reverseFormula, u"x/3");
}

FileBytes OlderFile() {
    FileBytes bytes;
    bytes.Int(0xC0215192).Text(u"Old").Int(3);
    bytes.Int(1).Text(u" m  ").Text(u" Metre ").Text(u"7 ").Int(0);
    bytes.Int(1).Text(u"ft").Text(u"Foot").Text(u"").Int(1 | FMT_COMPOUND);
    bytes.Text(u"ft").Double(1.0).Text(u"in").Double(12.0).Text(u"").Double(0.0).Text(u"").Double(0.0);
    bytes.Int(2).Text(u"lost ").Text(u"Out").Text(u"m*2").Int(FMT_HEX).Int(1).Text(u"o ");
    bytes.Int(3).Int(9).Int(1).Int(9).Int(9).Int(2).Int(9).Int(0).Int(77).Int(0);
    return bytes.Int(1).Linear(1, 0, 0.3048);
}

TEST_F(FileFormat, AFileInTheOlderFormatIsReadAndReplacedOnTheSpot) {
    for (const bool full : {true, false}) {
        files.files.clear();
        files.Add(Path(u"f.cnv"), OlderFile().Get());
        CVelmConversionDoc document(services.Services());
        ASSERT_TRUE(document.Load(FOLDER, full, u"f"));
        EXPECT_EQ(document.loaded, full);
        EXPECT_EQ(document.storedItemCount, 3);
        EXPECT_EQ(files.Content(Path(u"f.cnv.bak")), OlderFile().Get());
        EXPECT_EQ(files.Content(Path(u"f.cnv"))[0], 0x10);

        CVelmConversionDoc current(services.Services());
        ASSERT_TRUE(current.Load(FOLDER, true, u"f"));
        EXPECT_EQ(current.title, u"Old");
        ASSERT_EQ(current.ItemCount(), 3U);
        const CVelmItem& metre = *current.items[0];
        EXPECT_EQ(metre.identifier, u" m") << "trailing spaces go, leading ones stay";
        EXPECT_EQ(metre.name, u" Metre");
        EXPECT_EQ(metre.valueText, u"7 ");
        EXPECT_EQ(metre.format.allowedFormats, FMT_DECIMAL) << "a word of 0 counts as 1";
        EXPECT_EQ(metre.shown, 0) << "only items in the list entries are shown";
        EXPECT_EQ(current.items[1]->shown, 1);
        EXPECT_EQ(current.items[1]->format.compoundParts[1].label, u"in");
        const CVelmItem& out = *current.items[2];
        EXPECT_TRUE(out.IsOutput());
        EXPECT_EQ(out.identifier, u"o ") << "the last text of the record replaces the identifier as it is";
        EXPECT_EQ(out.format.displayFormat, FMT_HEX);
        EXPECT_EQ(Texts(current), std::vector<CVelmString>{u"Foot <->  Metre"});
    }
}

/// Loads what may be anything; when that works the document must come back from a save as it is.
class DamagedFile : public FileFormat {
protected:
    void CheckDamaged(const Bytes& bytes, std::int32_t kind) {
        const auto document = Load(bytes, kind);
        if (document == nullptr) {
            return;
        }
        EXPECT_LE(document->ItemCount(), bytes.size());
        ASSERT_TRUE(document->Save(FOLDER));
        const Bytes saved = files.Content(Path(document->FileNameWithExtension()));
        const auto again = Load(saved, kind);
        ASSERT_NE(again, nullptr);
        EXPECT_EQ(again->DroppedRecords(), 0);
        ASSERT_TRUE(again->Save(FOLDER));
        EXPECT_EQ(files.Content(Path(document->FileNameWithExtension())), saved);
        files.files.clear();
    }

    /// Cuts the file at every byte (with a size word that agrees, where there is one), and damages every byte.
    void CheckEveryDamage(const Bytes& whole, std::int32_t kind, bool hasSize) {
        for (std::size_t size = 0; size < whole.size(); ++size) {
            Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            CheckDamaged(cut, kind);
            if (hasSize && size >= 8) {
                cut[4] = static_cast<std::uint8_t>(size);
                cut[5] = static_cast<std::uint8_t>(size >> 8);
                CheckDamaged(cut, kind);
            }
        }
        for (std::size_t position = 0; position < whole.size(); ++position) {
            for (const int damage : {0x01, 0x02, 0x80, 0xFF}) {
                Bytes damaged = whole;
                damaged[position] ^= static_cast<std::uint8_t>(damage);
                CheckDamaged(damaged, kind);
            }
        }
    }
};

TEST_F(DamagedFile, NeverBringsTheLoaderDown) {
    CheckEveryDamage(GOLDEN_CNV, KIND_CONVERSION, true);
    CheckEveryDamage(GOLDEN_CAL, KIND_CALCULATION, true);
    CheckEveryDamage(OlderFile().Get(), KIND_CONVERSION, false);
    CheckEveryDamage(GOLDEN_CNV, KIND_CALCULATION, true);
}

}  // namespace
}  // namespace velm
