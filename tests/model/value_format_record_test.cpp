#include "model/value_format_record.h"

#include <gtest/gtest.h>

#include "support/fixed_clock.h"
#include "support/memory_files.h"

namespace velm {
namespace {

class ValueFormatRecord : public testing::Test {
protected:
    test::Bytes Written(const CVelmValueFormat& format) {
        CVelmFileStream stream(files, clock);
        EXPECT_TRUE(stream.OpenWrite(u"record"));
        const std::int32_t bytes = WriteValueFormat(stream, format);
        EXPECT_TRUE(stream.Close());
        test::Bytes record = files.Content(u"record");
        EXPECT_EQ(static_cast<std::size_t>(bytes), record.size());
        return record;
    }

    std::int32_t Read(test::Bytes record, CVelmValueFormat& format) {
        files.Add(u"record", std::move(record));
        CVelmFileStream stream(files, clock);
        EXPECT_TRUE(stream.OpenRead(u"record"));
        return ReadValueFormat(stream, format);
    }

    test::MemoryFiles files;
    test::FixedClock clock;
};

TEST_F(ValueFormatRecord, PartsAreKeptOnlyWithTheCompoundFormat) {
    CVelmValueFormat format;
    format.allowedFormats = FMT_CURRENCY | FMT_COMPOUND;
    format.displayFormat = 64;
    format.inputFormat = FMT_COMPOUND;
    format.compoundParts[1] = {u"in", 12};
    CVelmValueFormat read;
    EXPECT_EQ(Read(Written(format), read), 12 + 4 * (4 + 8) + 2 * 2);
    EXPECT_EQ(read.allowedFormats, FMT_CURRENCY | FMT_COMPOUND);
    EXPECT_EQ(read.displayFormat, 64U) << "codes are read as they are";
    EXPECT_EQ(read.inputFormat, FMT_COMPOUND);
    EXPECT_EQ(read.compoundParts[1].label, u"in");
    EXPECT_EQ(read.compoundParts[1].factor, 12);

    format.allowedFormats = FMT_HEX;
    CVelmValueFormat withoutParts;
    EXPECT_EQ(Read(Written(format), withoutParts), 12);
    EXPECT_EQ(withoutParts.compoundParts[1].factor, 0);
}

TEST_F(ValueFormatRecord, AShortRecordLeavesTheFormatAsItWas) {
    CVelmValueFormat format;
    format.allowedFormats = FMT_COMPOUND;
    const test::Bytes record = Written(format);
    for (std::size_t size = 0; size < record.size(); ++size) {
        CVelmValueFormat read;
        read.compoundParts[0].label = u"kept";
        EXPECT_EQ(Read({record.begin(), record.begin() + static_cast<std::ptrdiff_t>(size)}, read), 0) << size;
        EXPECT_EQ(read.allowedFormats, FMT_DECIMAL) << size;
        EXPECT_EQ(read.compoundParts[0].label, u"kept") << size;
    }
}

}  // namespace
}  // namespace velm
