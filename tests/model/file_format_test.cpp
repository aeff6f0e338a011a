#include "model/file_format.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/file_bytes.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

/// The bytes of a file of golden/, which holds them in hexadecimal with comments.
Bytes Golden(const std::string& name) {
    std::ifstream file(VELMORA_TESTS "/model/golden/" + name);
    Bytes bytes;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line.substr(0, line.find('#')));
        for (unsigned byte = 0; words >> std::hex >> byte;) {
            bytes.push_back(static_cast<std::uint8_t>(byte));
        }
    }
    EXPECT_FALSE(bytes.empty()) << name;
    return bytes;
}

FileBytes OlderFile() {
    FileBytes bytes;
    bytes.Int(0xC0215192).Text(u"Old").Int(3);
    bytes.Int(1).Text(u" m  ").Text(u" Metre ").Text(u"7 ").Int(0);
    bytes.Int(1).Text(u"ft").Text(u"Foot").Text(u"").Int(1 | FMT_COMPOUND);
    bytes.Text(u"ft").Double(1.0).Text(u"in").Double(12.0).Text(u"").Double(0.0).Text(u"").Double(0.0);
    bytes.Int(2).Text(u"lost ").Text(u"Out").Text(u"m*2").Int(FMT_HEX).Int(1).Text(u"o ");
    bytes.Int(3).Int(9).Int(1).Int(9).Int(9).Int(2).Int(9).Int(0).Int(77).Int(0);
    return bytes.Int(1).Linear(1, 0, 0.5);
}

class FileFormat : public testing::Test {
protected:
    static constexpr auto FOLDER = u"data";
    Bytes Stored(CVelmStringView name) const { return files.Content(WithSeparator(FOLDER) + CVelmString(name)); }

    /// Loads the bytes as a file of the kind, which is then `document`; false with the reason in LastLoad.
    bool Load(Bytes bytes, std::int32_t kind = KIND_CONVERSION, bool full = true) {
        document = CreateDocument(kind, services.Services());
        document->fileName = u"f";
        files.Add(document->PathIn(FOLDER), std::move(bytes));
        const bool ok = document->Load(FOLDER, full);
        EXPECT_EQ(ok && full, document->loaded);
        EXPECT_TRUE(ok || document->items.empty()) << "a document that failed to load has no items";
        return ok;
    }

    std::string LoadedConversions() const { return Conversions(static_cast<CVelmConversionDoc&>(*document)); }

    MemoryFiles files;
    TestServices services{files};
    std::unique_ptr<CVelmDocument> document;
};

TEST_F(FileFormat, FilesAreReadAndWrittenByteForByte) {
    ASSERT_TRUE(Load(Golden("conversion.hex")));
    EXPECT_EQ(ToUtf8(document->updatedText + u"|" + document->title + u"|" + document->category), "Up|T|");
    ASSERT_EQ(document->ItemCount(), 2U);
    EXPECT_EQ(Describe(*document->items[0]), "\u00b0C (C) = 25 257 256 1") << "reading is no assignment";
    EXPECT_EQ(Describe(*document->items[1]), "K () =  1 1 1 hidden");
    EXPECT_EQ(document->items[1]->index, 1);
    EXPECT_EQ(LoadedConversions(), "C*1+273.15=K K{x-1|}C ");
    ASSERT_TRUE(document->Save(FOLDER));
    EXPECT_EQ(Stored(u"f.cnv"), Golden("conversion.hex"));
    EXPECT_EQ(files.files.size(), 1U) << "nothing else is left in the folder";

    ASSERT_TRUE(Load(Golden("calculation.hex"), KIND_CALCULATION));
    EXPECT_EQ(Describe(*document->items[0]), "t (i) = a*2 17 16 1 h:1.00 m:60.0 output");
    ASSERT_TRUE(document->Save(FOLDER));
    EXPECT_EQ(Stored(u"f.cal"), Golden("calculation.hex"));

    document->RemoveItems(0, 1);
    document->Touch(u"now");
    ASSERT_TRUE(document->Save(FOLDER));
    EXPECT_EQ(Stored(u"f.cal"), FileBytes().Header(u"now", u"T", u"C").Int(0).Sized());
}

TEST_F(FileFormat, TheHeaderAloneGivesTheCountAndTheFileTime) {
    constexpr std::uint64_t SECOND_DAY = 0x14D00000000;  // of the test's clock, which starts in 1601
    ASSERT_TRUE(Load(Golden("conversion.hex"), KIND_CONVERSION, false));
    EXPECT_EQ(files.opens, 1);
    EXPECT_EQ(files.reads, 1);
    EXPECT_EQ(document->title, u"T");
    EXPECT_EQ(document->storedItemCount, 2);
    EXPECT_EQ(document->ItemCount(), 0U);
    files.files.begin()->second->times = {SECOND_DAY - 1, SECOND_DAY};
    ASSERT_TRUE(document->EnsureLoaded(FOLDER));
    EXPECT_EQ(static_cast<int>(document->updatedTime), 2305814) << "1601-01-02";
}

TEST_F(FileFormat, ADroppedItemTakesItsConversionsAndNoOthersWithIt) {
    FileBytes bytes;
    bytes.Header(u"", u"", u"").Int(4).Unit(u"m");
    bytes.Int(1).Int(0xFFFFFFFF);  // an item whose name has a negative length: the next one starts behind it
    bytes.Unit(u"ft").Unit(u"in");
    bytes.Int(5).Linear(0, 1, 2.0).Linear(2, 3, 12.0).Linear(1, 3, 3.0).Linear(3, 0, 0.5).Linear(0, 4, 1.0);
    ASSERT_TRUE(Load(bytes.Sized()));
    EXPECT_EQ(document->ItemCount(), 3U);
    EXPECT_EQ(LoadedConversions(), "ft*12=in in*0.5=m ");
    EXPECT_EQ(document->droppedRecords, 4);
    EXPECT_EQ(document->items[2]->index, 2);

    ASSERT_TRUE(document->Save(FOLDER));
    EXPECT_EQ(Stored(u"f.cnv.bak"), bytes.Sized()) << "what could not be read is kept";
    ASSERT_TRUE(Load(Stored(u"f.cnv")));
    EXPECT_EQ(document->droppedRecords, 0);
    EXPECT_EQ(LoadedConversions(), "ft*12=in in*0.5=m ");

    ASSERT_TRUE(Load(FileBytes().Header(u"", u"", u"").Int(1).Unit(u"m").Int(0x7FFFFFFF).Int(0).Int(0).Sized()));
    EXPECT_EQ(document->droppedRecords, 0x7FFFFFFF) << "a count that the bytes do not bear out ends at once";
}

TEST_F(FileFormat, AConversionWithAWrongIndexIsDroppedWhole) {
    FileBytes bytes;
    bytes.Header(u"", u"", u"").Int(2).Unit(u"a").Unit(u"b").Int(5);
    bytes.Int(1).Int(0).Int(2).Text(u"x+1").Text(u"x-1");
    bytes.Int(0x10000).Int(0xFFFFFFFF).Int(0).Double(2.0).Double(0.0);
    bytes.Int(0x10000).Int(1).Int(0).Double(2.0).Double(0.0);  // the low 16 bits of the flag decide
    bytes.Int(0x10001).Int(0).Int(1).Text(u"x*3").Text(u"x/3");
    bytes.Int(0x8000).Int(0).Int(1).Text(u"x*4").Text(u"");
    ASSERT_TRUE(Load(bytes.Sized()));
    EXPECT_EQ(LoadedConversions(), "b*2=a a{x*3|x/3}b a{x*4|}b ");
    EXPECT_EQ(document->droppedRecords, 2);
    EXPECT_EQ(static_cast<CVelmConversionDoc&>(*document).conversions[0]->formulaFlag, 0x10000) << "but it is kept";
}

TEST_F(FileFormat, AFileInTheOlderFormatIsReadAndReplacedOnTheSpot) {
    for (const bool full : {true, false}) {
        files.files.clear();
        ASSERT_TRUE(Load(OlderFile().Get(), KIND_CONVERSION, full));
        EXPECT_EQ(document->storedItemCount, 3);
        EXPECT_EQ(Stored(u"f.cnv.bak"), OlderFile().Get());
        EXPECT_EQ(Stored(u"f.cnv")[0], 0x10);

        ASSERT_TRUE(Load(Stored(u"f.cnv")));
        EXPECT_EQ(document->title, u"Old");
        ASSERT_EQ(document->ItemCount(), 3U);
        EXPECT_EQ(Describe(*document->items[0]), " Metre ( m) = 7  1 1 1 hidden")
            << "trailing spaces go; no formats are the decimal one; only items in the list entries are shown";
        EXPECT_EQ(Describe(*document->items[1]), "Foot (ft) =  17 1 1 ft:1.00 in:12.0");
        EXPECT_EQ(Describe(*document->items[2]), "Out (o ) = m*2 2 2 2 output")
            << "the last text of the record replaces the identifier as it is";
        EXPECT_EQ(LoadedConversions(), "ft*0.5= m ");
    }
}

}  // namespace
}  // namespace velm::test
