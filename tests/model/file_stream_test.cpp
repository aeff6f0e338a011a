#include "model/file_stream.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "support/file_bytes.h"
#include "support/fixed_clock.h"
#include "support/memory_files.h"

namespace velm::test {
namespace {

constexpr auto NAME = u"file";

class FileStream : public testing::Test {
protected:
    /// A stream that reads the given bytes.
    CVelmFileStream& Reading(Bytes bytes) {
        files.Add(NAME, std::move(bytes));
        EXPECT_TRUE(stream.OpenRead(NAME));
        return stream;
    }

    MemoryFiles files;
    FixedClock clock;
    CVelmFileStream stream{files, clock};
};

TEST_F(FileStream, ACountedStringHoldsUpTo65535Units) {
    const CVelmString texts[] = {CVelmString(65535, u'x'), u"", u"\u00b5\U0001f4cf"};
    ASSERT_TRUE(stream.OpenWrite(NAME));
    for (const CVelmString& text : texts) {
        EXPECT_EQ(stream.WriteString(text), 2 * static_cast<int>(text.size()) + 4);
    }
    EXPECT_TRUE(stream.Close());
    ASSERT_TRUE(stream.OpenRead(NAME));
    CVelmString read;
    for (const CVelmString& text : texts) {
        EXPECT_EQ(stream.ReadString(read), 2 * static_cast<int>(text.size()) + 4);
        EXPECT_TRUE(read == text);
    }
    EXPECT_EQ(stream.ReadString(read), 0) << "the file is at its end";

    read = u"kept";
    EXPECT_EQ(Reading(FileBytes().Text(CVelmString(65536, u'x')).Get()).ReadString(read), 0);
    EXPECT_EQ(Reading(FileBytes().Int(0xFFFFFFFF).Get()).ReadString(read), 0);
    EXPECT_EQ(Reading(FileBytes().Int(3).Int(0).Get()).ReadString(read), 0) << "two units where three are announced";
    EXPECT_EQ(stream.Remaining(), 0U) << "as after any short read";
    EXPECT_EQ(read, u"kept");

    ASSERT_TRUE(stream.OpenWrite(NAME));
    EXPECT_EQ(stream.WriteString(CVelmString(65536, u'x')), 0);
    EXPECT_FALSE(stream.Close()) << "what could not be read again must not count as written";
}

TEST_F(FileStream, FailureToOpenSetsTheErrorFlag) {
    EXPECT_FALSE(stream.OpenRead(u""));
    EXPECT_EQ(files.opens, 0) << "an empty path does not reach the file system";
    EXPECT_TRUE(stream.HasError());
    EXPECT_FALSE(Reading({}).HasError());
    EXPECT_FALSE(stream.OpenAppend(u"missing"));
    std::int32_t number = 7;
    EXPECT_EQ(stream.Read(1, &number) + stream.Write(&number, 1), -2);
    EXPECT_EQ(stream.WriteString(u"abc"), 10) << "without a file only the bytes are counted";
}

TEST_F(FileStream, PositionsAreAbsoluteAndBuffersDoNotShow) {
    ASSERT_TRUE(stream.OpenWrite(NAME));
    for (std::int32_t i = 0; i < 10000; ++i) {
        ASSERT_EQ(stream.WriteInt(i), 4);
    }
    EXPECT_EQ(stream.GetSize(), 40000U);
    const std::int32_t patch = -1;
    EXPECT_EQ(stream.WriteAt(4 * 5000, &patch, sizeof patch), 4);
    EXPECT_TRUE(stream.Close());
    ASSERT_TRUE(stream.OpenAppend(NAME));
    EXPECT_EQ(stream.WriteDouble(2.5), 8);
    EXPECT_TRUE(stream.Close());

    ASSERT_TRUE(stream.OpenRead(NAME));
    std::int32_t value = 0;
    for (std::int32_t i = 0; i < 10000; ++i) {
        ASSERT_TRUE(stream.ReadInt(value));
        ASSERT_EQ(value, i == 5000 ? -1 : i);
    }
    double last = 0.0;
    EXPECT_TRUE(stream.ReadDouble(last));
    EXPECT_EQ(last, 2.5);
    EXPECT_EQ(stream.Remaining(), 0U);
    EXPECT_LT(files.writes + files.reads, 40) << "a system call for every integer";

    EXPECT_EQ(stream.ReadAt(4 * 77, sizeof value, &value), 4);
    EXPECT_EQ(value, 77);
    EXPECT_EQ(stream.Remaining(), 40008U - 4 * 78);
    EXPECT_TRUE(stream.ReadInt(value));
    EXPECT_EQ(value, 78) << "reading goes on behind what was read";
    EXPECT_EQ(stream.ReadAt(40006, sizeof value, &value), 2);
    EXPECT_EQ(stream.ReadAt(50000, sizeof value, &value), 0);
}

TEST_F(FileStream, TheFileTimeIsTheLaterByTheLowHalvesOnly) {
    // The high halves alone make the fifth and the fifteenth day that the test's clock counts.
    constexpr std::uint64_t FIFTH = 1000ULL << 32;
    constexpr std::uint64_t FIFTEENTH = 3000ULL << 32;
    const std::tuple<std::uint64_t, std::uint64_t, int> cases[] = {
        {FIFTH + 2, FIFTEENTH + 1, 5},  // the earlier time has the greater low half
        {FIFTEENTH + 1, FIFTH + 2, 5},  {FIFTH + 0xFFFFFFFF, FIFTEENTH + 1, 5},  // halves are unsigned
        {FIFTEENTH + 7, FIFTH + 7, 5},                                           // last access wins a tie
        {FIFTH + 7, FIFTEENTH + 7, 15},
    };
    CVelmCalendarTime time;
    for (const auto& [lastWrite, lastAccess, day] : cases) {
        files.Add(NAME, {}, {lastWrite, lastAccess});
        EXPECT_TRUE(stream.OpenRead(NAME) && stream.GetTime(time));
        EXPECT_EQ(time.day, day) << lastWrite << " " << lastAccess;
    }
    stream.Close();
    EXPECT_FALSE(stream.GetTime(time));
}

TEST_F(FileStream, WhatTheSystemRefusesIsReported) {
    const std::vector<char> bytes(20000);
    for (int failing = 1; failing <= 3; ++failing) {
        files.failingWrite = files.writes + failing;
        ASSERT_TRUE(stream.OpenWrite(NAME));
        for (int i = 0; i < 3; ++i) {
            stream.Write(bytes.data(), bytes.size());
        }
        EXPECT_FALSE(stream.Close()) << failing;
    }
    files.freeBytes = 4;
    ASSERT_TRUE(stream.OpenWrite(NAME));
    stream.WriteInt(1);
    EXPECT_TRUE(stream.Close()) << "a stream opened again starts anew";

    Reading(Bytes(100));
    std::int32_t value = 0;
    files.failingRead = files.reads + 1;
    EXPECT_EQ(stream.Read(4, &value), -1) << "no end of the file";
    files.failingRead = files.reads + 1;
    EXPECT_EQ(stream.ReadAt(8, 4, &value), -1);
    EXPECT_EQ(stream.ReadAt(8, 4, &value), 4) << "the file was opened again";
}

}  // namespace
}  // namespace velm::test
