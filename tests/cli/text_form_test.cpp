#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "cli/transcript.h"
#include "formats/value_format.h"
#include "support/file_bytes.h"

namespace velm::test {
namespace {

std::mt19937 randomness(1);

template <typename Choice, std::size_t COUNT>
Choice Any(const Choice (&choices)[COUNT]) {
    return choices[randomness() % COUNT];
}

CVelmString AnyText() {
    static constexpr char16_t UNITS[] = {u'a', u'B', u'"', u'\\', u'\n', u'\0', 0x7F, 0xE9, 0xD83D, 0xDE00, 0xFEFF};
    CVelmString text;
    for (std::size_t length = randomness() % 4; length > 0; --length) {
        text += Any(UNITS);
    }
    return text;
}

double AnyNumber() {
    static constexpr double NUMBERS[] = {
        0.0, -0.0, 1.0, 0.1, 1e22, 1.0 / 3, 5e-324, -1e-310, 1234567890123456789.0, HUGE_VAL, NAN, -NAN};
    return Any(NUMBERS);
}

std::uint32_t AnyCode() {
    static constexpr std::uint32_t CODES[] = {0, 1, 2, 16, 17, 32, 64, 256, 439, 0xFFFFFFFF};
    return Any(CODES);
}

/// Every unit of the basic plane, with or without the halves of surrogate pairs.
CVelmString EveryCharacter(bool withHalves) {
    CVelmString text;
    for (std::uint32_t unit = 0; unit < 0xFFFF; ++unit) {
        if (withHalves || unit < 0xD800 || unit > 0xDFFF) {
            text += static_cast<char16_t>(unit);
        }
    }
    return text;
}

FileBytes OddFile(bool hasConversions) {
    constexpr std::uint32_t ITEMS = 60;
    static constexpr std::uint32_t FLAGS[] = {0, 1, 2, 0x10000, 0x10001, 0xFFFFFFFF};
    FileBytes file;
    file.Header(EveryCharacter(false), AnyText(), EveryCharacter(true)).Int(ITEMS);
    for (std::uint32_t item = 0; item < ITEMS; ++item) {
        const std::uint32_t type = 1 + item % 2;
        const std::uint32_t allowed = AnyCode();
        file.Int(type).Text(AnyText()).Text(AnyText()).Text(AnyText());
        file.Int(AnyCode()).Int(allowed).Int(AnyCode()).Int(AnyCode());
        for (int part = 0; (allowed & FMT_COMPOUND) != 0 && part < COMPOUND_PARTS; ++part) {
            file.Text(AnyText()).Double(AnyNumber());
        }
        if (type == 2) {
            file.Int(AnyCode());
        }
    }
    if (!hasConversions) {
        return file;
    }
    file.Int(2 * ITEMS);
    for (std::uint32_t conversion = 0; conversion < 2 * ITEMS; ++conversion) {
        const std::uint32_t flag = Any(FLAGS);
        file.Int(flag).Int(conversion % ITEMS).Int(conversion * 7 % ITEMS);
        if ((flag & 0xFFFF) != 0) {
            file.Text(AnyText()).Text(AnyText());
        } else {
            file.Double(AnyNumber()).Double(AnyNumber());
        }
    }
    return file;
}

TEST(TextForm, KeepsWhateverAFileHolds) {
    Transcript transcript(true);
    transcript.Folder().Write(u"odd.cnv", OddFile(true).Sized());
    transcript.Folder().Write(u"odd.cal", OddFile(false).Sized());
    for (const std::string kind : {"cal", "cnv"}) {
        const std::string session = "$ velmora export odd." + kind + " > odd.toml\n$ velmora import odd.toml again." +
                                    kind + "\n$ cmp odd." + kind + " again." + kind + "\n";
        EXPECT_EQ(transcript.Replay(session), session);
    }
}

}  // namespace
}  // namespace velm::test
