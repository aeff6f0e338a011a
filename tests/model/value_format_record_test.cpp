#include "model/value_format_record.h"

#include <gtest/gtest.h>

#include "support/fixed_clock.h"
#include "support/memory_files.h"

namespace velm::test {
namespace {

TEST(ValueFormatRecord, KeepsPartsWithTheCompoundFormatAndIsReadWholeOrNotAtAll) {
    MemoryFiles files;
    const FixedClock clock;
    CVelmFileStream stream(files, clock);
    CVelmValueFormat format;
    format.displayFormat = 64;
    format.inputFormat = FMT_COMPOUND;
    format.compoundParts[1] = {u"in", 12};
    const std::pair<std::uint32_t, std::int32_t> cases[] = {{FMT_CURRENCY | FMT_COMPOUND, 12 + 4 * (4 + 8) + 2 * 2},
                                                            {FMT_HEX, 12}};
    for (const auto& [allowed, size] : cases) {
        format.allowedFormats = allowed;
        EXPECT_TRUE(stream.OpenWrite(u"record"));
        EXPECT_EQ(WriteValueFormat(stream, format), size);
        EXPECT_TRUE(stream.Close());
        const Bytes record = files.Content(u"record");
        for (std::int32_t cut = 0; cut <= size; ++cut) {
            files.Add(u"record", {record.begin(), record.begin() + cut});
            CVelmValueFormat read;
            read.compoundParts[1].label = u"kept";
            EXPECT_TRUE(stream.OpenRead(u"record"));
            ASSERT_EQ(ReadValueFormat(stream, read), cut < size ? 0 : size) << "cut at " << cut;
            EXPECT_EQ(read.allowedFormats, cut < size ? FMT_DECIMAL : allowed);
            EXPECT_EQ(read.displayFormat, cut < size ? FMT_DECIMAL : 64U) << "codes are read as they are";
            EXPECT_EQ(read.inputFormat, cut < size ? FMT_DECIMAL : FMT_COMPOUND);
            EXPECT_EQ(read.compoundParts[1].label, cut < size || allowed == FMT_HEX ? u"kept" : u"in");
            EXPECT_EQ(read.compoundParts[1].factor, cut < size || allowed == FMT_HEX ? 0 : 12);
        }
    }
}

}  // namespace
}  // namespace velm::test
