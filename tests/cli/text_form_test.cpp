#include <gtest/gtest.h>

#include <limits>

#include "cli/transcript.h"
#include "formats/value_format.h"
#include "support/file_bytes.h"

namespace velm::test {
namespace {

constexpr std::uint32_t CODES[] = {0, 1, 2, 16, 17, 32, 64, 256, 439, 0xFFFFFFFF};
constexpr double NUMBERS[] = {0.0,
                              -0.0,
                              1.0,
                              0.1,
                              1e22,
                              -1e-310,
                              123456789012345678.0,
                              std::numeric_limits<double>::infinity(),
                              1.0 / 3,
                              5e-324,
                              1e9,
                              -std::numeric_limits<double>::quiet_NaN()};

/// Texts that need care between quotes, one after the other.
CVelmString NextText() {
    static constexpr CVelmStringView TEXTS[] = {u"", u"a\"\\B", u"\n\r\t", u"\x7F\u00E9\uFEFF", u" a ", u"'''"};
    static std::size_t next = 0;
    ++next;
    return CVelmString(TEXTS[next % std::size(TEXTS)]) + (next % 7 == 0 ? CVelmString{0xD83D} : CVelmString{0, u'x'});
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

/// A file with every oddity that an item can have.
FileBytes OddItems() {
    FileBytes file;
    file.Header(EveryCharacter(false), EveryCharacter(true), NextText());
    file.Int(2 * std::size(CODES));
    std::size_t number = 0;
    for (const std::uint32_t type : {1U, 2U}) {
        for (const std::uint32_t code : CODES) {
            file.Int(type)
                .Text(NextText())
                .Text(NextText())
                .Text(NextText())
                .Int(code)
                .Int(code)
                .Int(code ^ 1)
                .Int(code);
            for (int part = 0; (code & FMT_COMPOUND) != 0 && part < COMPOUND_PARTS; ++part) {
                file.Text(NextText()).Double(NUMBERS[number++ % std::size(NUMBERS)]);
            }
            if (type == 2) {
                file.Int(code);
            }
        }
    }
    return file;
}

void AddOddConversions(FileBytes& file) {
    constexpr std::uint32_t FLAGS[] = {1, 2, 0x10001, 0xFFFFFFFF};
    file.Int(std::size(NUMBERS) * 2 + std::size(FLAGS));
    for (const double number : NUMBERS) {
        file.Linear(3, 0, number, 1.0).Int(0x10000).Int(0).Int(19).Double(2.0).Double(number);
    }
    for (const std::uint32_t flag : FLAGS) {
        file.Int(flag).Int(5).Int(5).Text(NextText()).Text(NextText());
    }
}

TEST(TextForm, KeepsWhateverAFileHolds) {
    Transcript transcript(true);
    FileBytes file = OddItems();
    transcript.Folder().Write(u"odd.cal", file.Sized());
    AddOddConversions(file);
    transcript.Folder().Write(u"odd.cnv", file.Sized());
    for (const std::string kind : {"cal", "cnv"}) {
        const std::string session = "$ velmora export odd." + kind + " -o odd.toml\n$ velmora import odd.toml again." +
                                    kind + "\n$ cmp odd." + kind + " again." + kind + "\n";
        EXPECT_EQ(transcript.Replay(session), session);
    }
}

}  // namespace
}  // namespace velm::test
