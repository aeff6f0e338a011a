#include <gtest/gtest.h>

#include "data/data_file.h"
#include "support/table.h"

namespace velm::test {
namespace {

TEST(Conversions, GiveThePublishedValues) {
    for (const auto& row : ReadTable(VELMORA_TABLES "/conversions.txt", " |")) {
        SCOPED_TRACE(row.at(0) + " " + row.at(1) + " " + row.at(2) + " to " + row.at(3));
        DataFile file(FromUtf8(row.at(0) + ".cnv"));
        CVelmItem& from = file.Find(row.at(1));
        double value = 0.0;
        ASSERT_TRUE(from.format.ParseValueText(FromUtf8(row.at(2)), file.Context(), value));
        file.Enter(from, value);
        EXPECT_EQ(file.Shown(file.Find(row.at(3))), row.at(4));
    }
}

}  // namespace
}  // namespace velm::test
