#include "model/reference_list.h"

#include <gtest/gtest.h>

#include <map>

#include "support/memory_files.h"
#include "support/test_services.h"

namespace velm::test {
namespace {

TEST(ReferenceList, ListsAndReadsThePagesOfTheFolder) {
    MemoryFiles files;
    const std::pair<CVelmStringView, std::string_view> pages[] = {{u"Constants.htm", "c = 299\u00A0792"},
                                                                  {u"Marked.HTM", "\xEF\xBB\xBF<p>x</p>"},
                                                                  {u"Old.htm", "20 \xB0\x43"},
                                                                  {u"Empty.htm", ""},
                                                                  {u".htm", "no name"},
                                                                  {u"page.html", "no page"}};
    for (const auto& [name, page] : pages) {
        files.Add(WithSeparator(u"data") + CVelmString(name), {page.begin(), page.end()});
    }
    TestServices services(files);
    CVelmReferenceList references(services.Services());
    references.ScanReferences(u"data");
    std::map<CVelmString, std::string> texts;
    for (std::size_t i = 0; i < references.names.size(); ++i) {
        CVelmString text = u"untouched";
        texts[references.names[i]] = references.ReadReference(i, text) ? ToUtf8(text) : "nothing";
    }
    EXPECT_EQ(texts, (std::map<CVelmString, std::string>{{u"Constants", "c = 299\u00A0792"},
                                                         {u"Empty", "nothing"},
                                                         {u"Marked", "<p>x</p>"},
                                                         {u"Old", "20 \u00B0C"}}));
    CVelmString text;
    EXPECT_FALSE(references.ReadReference(references.names.size(), text));
}

}  // namespace
}  // namespace velm::test
