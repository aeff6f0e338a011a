#include "model/file_stream.h"

#include <gtest/gtest.h>

#include <utility>

#include "support/faulty_files.h"
#include "support/file_bytes.h"
#include "support/fixed_clock.h"
#include "support/memory_files.h"

namespace velm {
namespace {

using test::Bytes;
using test::FaultyFiles;
using test::FileBytes;
using test::FixedClock;
using test::MemoryFiles;

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
    const CVelmString longest(65535, u'x');
    ASSERT_TRUE(stream.OpenWrite(NAME));
    EXPECT_EQ(stream.WriteString(longest), 2 * 65535 + 4);
    EXPECT_EQ(stream.WriteString(u""), 4);
    EXPECT_EQ(stream.WriteString(u"\u00b5\U0001f4cf"), 10);
    EXPECT_TRUE(stream.Close());

    ASSERT_TRUE(stream.OpenRead(NAME));
    CVelmString text;
    EXPECT_EQ(stream.ReadString(text), 2 * 65535 + 4);
    EXPECT_TRUE(text == longest);
    EXPECT_EQ(stream.ReadString(text), 4);
    EXPECT_EQ(text, u"");
    EXPECT_EQ(stream.ReadString(text), 10);
    EXPECT_EQ(text, u"\u00b5\U0001f4cf");
    EXPECT_EQ(stream.ReadString(text), 0) << "the file is at its end";
}

TEST_F(FileStream, AStringBeyondItsBoundsIsRefused) {
    CVelmString text = u"kept";
    EXPECT_EQ(Reading(FileBytes().Text(CVelmString(65536, u'x')).Get()).ReadString(text), 0);
    EXPECT_EQ(Reading(FileBytes().Int(0xFFFFFFFF).Get()).ReadString(text), 0);
    EXPECT_EQ(Reading(FileBytes().Int(3).Int(0).Get()).ReadString(text), 0) << "two units where three are announced";
    EXPECT_EQ(stream.Remaining(), 0U) << "as after any short read";
    EXPECT_EQ(text, u"kept");

    ASSERT_TRUE(stream.OpenWrite(NAME));
    EXPECT_EQ(stream.WriteString(CVelmString(65536, u'x')), 0);
    EXPECT_FALSE(stream.Close()) << "what could not be read again must not count as written";
}

TEST_F(FileStream, FailureToOpenSetsTheErrorFlag) {
    EXPECT_FALSE(stream.HasError());
    EXPECT_FALSE(stream.OpenRead(u""));
    EXPECT_EQ(files.opens, 0) << "an empty path does not reach the file system";
    EXPECT_TRUE(stream.HasError());
    files.Add(NAME, {});
    EXPECT_TRUE(stream.OpenRead(NAME));
    EXPECT_FALSE(stream.HasError());
    EXPECT_FALSE(stream.OpenAppend(u"missing"));
    EXPECT_TRUE(stream.HasError());
    EXPECT_FALSE(stream.OpenNew(NAME));

    char byte = 0;
    std::int32_t number = 7;
    EXPECT_EQ(stream.Read(1, &byte), -1);
    EXPECT_EQ(stream.Write(&byte, 1), -1);
    EXPECT_FALSE(stream.ReadInt(number));
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
    EXPECT_LT(files.writes, 20) << "a system call for every integer";

    ASSERT_TRUE(stream.OpenAppend(NAME));
    EXPECT_EQ(stream.WriteDouble(2.5), 8);
    EXPECT_TRUE(stream.Close());

    ASSERT_TRUE(stream.OpenRead(NAME));
    for (std::int32_t i = 0; i < 10000; ++i) {
        std::int32_t value = 0;
        ASSERT_TRUE(stream.ReadInt(value));
        ASSERT_EQ(value, i == 5000 ? -1 : i);
    }
    EXPECT_LT(files.reads, 20);
    double last = 0.0;
    EXPECT_TRUE(stream.ReadDouble(last));
    EXPECT_EQ(last, 2.5);
    EXPECT_EQ(stream.Remaining(), 0U);

    std::int32_t value = 0;
    EXPECT_EQ(stream.ReadAt(4 * 77, sizeof value, &value), 4);
    EXPECT_EQ(value, 77);
    EXPECT_EQ(stream.Remaining(), 40008U - 4 * 78);
    EXPECT_TRUE(stream.ReadInt(value));
    EXPECT_EQ(value, 78) << "reading goes on behind what was read";
    EXPECT_EQ(stream.ReadAt(40006, sizeof value, &value), 2);
    EXPECT_EQ(stream.ReadAt(50000, sizeof value, &value), 0);
}

TEST_F(FileStream, LinesEndAtEitherLineEndByte) {
    const std::string text = "VLMUPD\r\n\xc4z\nlast";
    Reading(Bytes(text.begin(), text.end()));
    const std::pair<CVelmStringView, std::int32_t> expected[] = {{u"VLMUPD", 7}, {u"", 1}, {u"\u00c4z", 3},
                                                                 {u"last", 4},   {u"", 0}, {u"", 0}};
    for (const auto& [line, bytes] : expected) {
        CVelmString read = u"?";
        EXPECT_EQ(stream.ReadLine(read), bytes);
        EXPECT_EQ(read, line);
    }
}

TEST_F(FileStream, TheFileTimeIsTheLaterByTheLowHalvesOnly) {
    const auto day = [&](std::uint64_t lastWrite, std::uint64_t lastAccess) {
        files.Add(NAME, {}, {lastWrite, lastAccess});
        EXPECT_TRUE(stream.OpenRead(NAME));
        CVelmCalendarTime time;
        EXPECT_TRUE(stream.GetTime(time));
        return time.day;
    };
    // The high halves alone make the fifth and the fifteenth day that the test's clock counts.
    constexpr std::uint64_t FIFTH = 1000ULL << 32;
    constexpr std::uint64_t FIFTEENTH = 3000ULL << 32;
    EXPECT_EQ(day(FIFTH + 2, FIFTEENTH + 1), 5) << "the earlier time has the greater low half";
    EXPECT_EQ(day(FIFTEENTH + 1, FIFTH + 2), 5);
    EXPECT_EQ(day(FIFTH + 0xFFFFFFFF, FIFTEENTH + 1), 5) << "halves are unsigned";
    EXPECT_EQ(day(FIFTEENTH + 7, FIFTH + 7), 5) << "last access wins a tie";
    EXPECT_EQ(day(FIFTH + 7, FIFTEENTH + 7), 15);
    CVelmCalendarTime time;
    stream.Close();
    EXPECT_FALSE(stream.GetTime(time));
}

TEST_F(FileStream, AFailedOrShortWriteIsReportedInTheEnd) {
    FaultyFiles faulty(files);
    for (int failing = 1; failing <= 3; ++failing) {
        faulty.failingWrite = faulty.writes + failing;
        CVelmFileStream writing(faulty, clock);
        ASSERT_TRUE(writing.OpenWrite(NAME));
        for (int i = 0; i < 5000; ++i) {
            writing.WriteInt(i);
        }
        EXPECT_FALSE(writing.Flush()) << failing;
        EXPECT_FALSE(writing.Close()) << failing;
    }
    faulty.failingWrite = 0;
    faulty.freeBytes = 3;
    CVelmFileStream writing(faulty, clock);
    ASSERT_TRUE(writing.OpenWrite(NAME));
    writing.WriteInt(1);
    EXPECT_FALSE(writing.Close()) << "only three of four bytes fitted";
    faulty.freeBytes = 100;
    ASSERT_TRUE(writing.OpenWrite(NAME));
    writing.WriteInt(1);
    EXPECT_TRUE(writing.Close()) << "a stream opened again starts anew";
    EXPECT_EQ(files.Content(NAME), FileBytes().Int(1).Get());
}

TEST_F(FileStream, AReadThatTheSystemRefusesIsNotTheEndOfTheFile) {
    files.Add(NAME, Bytes(100));
    FaultyFiles faulty(files);
    faulty.failingRead = 1;
    CVelmFileStream reading(faulty, clock);
    ASSERT_TRUE(reading.OpenRead(NAME));
    std::int32_t value = 0;
    EXPECT_EQ(reading.Read(4, &value), -1);
    faulty.failingRead = 2;
    EXPECT_EQ(reading.ReadAt(8, 4, &value), -1);
    EXPECT_EQ(reading.ReadAt(8, 4, &value), 4) << "the file was opened again";
}

}  // namespace
}  // namespace velm
