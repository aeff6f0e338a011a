#include "model/file_properties.h"

#include <gtest/gtest.h>

#include "model/file_names.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

TEST(FileProperties, ANewFileGetsANameThatNoOtherHasAndKeepsIt) {
    MemoryFiles files;
    TestServices services{files};
    CVelmCatalog catalog(services.Services());
    catalog.SetFolder(u"data");
    catalog.AddDocument(MakeConversionDoc(services.Services(), u"Length"));
    files.AddText(catalog.Folder() + u"length_NEW.cnv", "no data file, but there");

    EXPECT_EQ(MakeNewFileName(catalog, KIND_CONVERSION, u"Length"), u"Length_new_new");
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CALCULATION, u"Length"), u"Length");
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CONVERSION, CVelmString(70, u'x')).size(), 63U);
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CONVERSION, u"con"), u"con");

    CVelmConversionDoc document(services.Services());
    const std::pair<CVelmFileProperties, EntryFault> cases[] = {
        {{u"", u"c", u"Mine"}, EntryFault::TitleIsEmpty},
        {{u"T", u"c", u""}, EntryFault::FileNameIsNotAllowed},
        {{u"T", u"c", u"con"}, EntryFault::FileNameIsNotAllowed},
        {{u"T", u"c", u"LENGTH"}, EntryFault::FileNameIsTaken},
        {{u"T", u"c", u"Mine"}, EntryFault::None},
        {{u"Title", u"", u"con"}, EntryFault::None},
    };
    for (const auto& [properties, fault] : cases) {
        document.modified = false;
        EXPECT_EQ(SetFileProperties(document, properties, catalog), fault) << ToUtf8(properties.fileName);
        EXPECT_EQ(document.modified, fault == EntryFault::None);
    }
    EXPECT_EQ(document.title + u"|" + document.category + u"|" + document.fileName, u"Title||Mine");
}

}  // namespace
}  // namespace velm::test
