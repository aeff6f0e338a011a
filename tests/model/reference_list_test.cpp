#include "model/reference_list.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/temporary_folder.h"
#include "support/test_services.h"

namespace velm::test {
namespace {

TEST(ReferenceList, ListsAndReadsThePagesOfTheFolder) {
    const TemporaryFolder folder;
    folder.WriteText(u"Constants.htm",
                     "<p>c = 299\xC2\xA0"
                     "792\xC2\xA0"
                     "458</p>");
    folder.WriteText(u"Marked.HTM", "\xEF\xBB\xBF<p>x</p>");
    folder.WriteText(u"Old.htm",
                     "<p>20 \xB0"
                     "C</p>");
    folder.WriteText(u"Empty.htm", "");
    folder.WriteText(u".htm", "no name");
    folder.WriteText(u"page.html", "another extension");
    TestServices services;
    CVelmReferenceList references(services.Services());
    references.ScanReferences(folder.Path().substr(0, folder.Path().size() - 1));

    auto sorted = references.names;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, (std::vector<CVelmString>{u"Constants", u"Empty", u"Marked", u"Old"}));

    const auto read = [&](const char16_t* name) {
        const auto at = std::find(references.names.begin(), references.names.end(), name) - references.names.begin();
        CVelmString text = u"untouched";
        return references.ReadReference(static_cast<std::size_t>(at), text) ? ToUtf8(text) : "<nothing>";
    };
    EXPECT_EQ(read(u"Constants"), "<p>c = 299\u00A0792\u00A0458</p>");
    EXPECT_EQ(read(u"Marked"), "<p>x</p>");
    EXPECT_EQ(read(u"Old"), "<p>20 \u00B0C</p>");
    EXPECT_EQ(read(u"Empty"), "<nothing>");
    EXPECT_EQ(read(u"beyond the list"), "<nothing>");
}

}  // namespace
}  // namespace velm::test
