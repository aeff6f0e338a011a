#include "model/file_names.h"

#include <gtest/gtest.h>

#include "model/catalog.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

TEST(FileNames, AreThoseThatEverySystemTakesAndOfNewFilesNoOtherFiles) {
    for (const char16_t* name : {u"Length", u"Shoe sizes", u"a..b", u".hidden", u"Console", u"com", u"COM10", u"Common",
                                 u"x con", u"lpta", u"M\u00FCnzen"}) {
        EXPECT_TRUE(IsFileNameAllowed(name)) << ToUtf8(name);
    }
    for (const char16_t* name :
         {u"",       u"a/b",  u"a\\b",   u"C:x",    u"a*",   u"a?",       u"a\"",       u"a<",    u"a>",  u"a|b",
          u"a\tb",   u"a\nb", u"\u007F", u"\u0085", u"..",   u"end.",     u"end ",      u"con",   u"CON", u"con.x",
          u"con .x", u"nul ", u"Aux",    u"prn",    u"Com1", u"lpt9.cnv", u"com\u00B2", u"CONIN$"}) {
        EXPECT_FALSE(IsFileNameAllowed(name)) << ToUtf8(name);
    }
    EXPECT_FALSE(IsFileNameAllowed(CVelmString(u"a\0b", 3)));

    MemoryFiles files;
    TestServices services(files);
    CVelmCatalog catalog(services.Services());
    catalog.SetFolder(u"data");
    const CVelmString longest(FILE_NAME_MAX_LENGTH, u'n');
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CONVERSION, longest + u"1"), longest);
    for (const CVelmString& name : {CVelmString(u"Length"), CVelmString(u"length_NEW"), longest}) {
        catalog.AddDocument(MakeConversionDoc(services.Services(), name));
    }
    files.Add(catalog.Folder() + u"Odd.cnv", {});
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CONVERSION, u"Weight"), u"Weight");
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CONVERSION, u"LENGTH"), u"LENGTH_new_new");
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CALCULATION, u"Length"), u"Length");
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CONVERSION, u"Odd"), u"Odd_new") << "not in the catalogue, but on disk";
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CONVERSION, longest + u"2"), longest) << "the cut comes last";
    EXPECT_TRUE(IsFileNameTaken(catalog, KIND_CONVERSION, longest));
}

}  // namespace
}  // namespace velm::test
