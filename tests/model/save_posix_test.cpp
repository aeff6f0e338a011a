#include <gtest/gtest.h>
#include <unistd.h>

#include "model/document.h"
#include "support/temporary_folder.h"
#include "support/test_services.h"

namespace velm {
namespace {

TEST(SavePosix, ADataFileThatIsALinkStaysOne) {
    const test::TemporaryFolder folder;
    const test::TemporaryFolder elsewhere;
    test::TestServices services;
    CVelmConversionDoc document(services.Services());
    document.fileName = u"Length";
    ASSERT_TRUE(document.Save(elsewhere.Path()));
    ASSERT_EQ(symlink(ToUtf8(elsewhere.PathOf(u"Length.cnv")).c_str(), ToUtf8(folder.PathOf(u"Length.cnv")).c_str()),
              0);
    document.title = u"Changed";
    ASSERT_TRUE(document.Save(folder.Path()));
    CVelmConversionDoc loaded(services.Services());
    ASSERT_TRUE(loaded.Load(elsewhere.Path(), true, u"Length"));
    EXPECT_EQ(loaded.title, u"Changed");
}

}  // namespace
}  // namespace velm
