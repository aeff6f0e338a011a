#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <random>

#include "cli/process.h"
#include "model/document.h"
#include "support/file_bytes.h"
#include "support/test_services.h"

namespace velm::test {

namespace {

/// The bytes of a file after export and import; an error text when either fails.
std::string AfterTextForm(const TemporaryFolder& folder, const std::string& extension, const Bytes& file) {
    const auto path = [&](const std::string& name) { return ToUtf8(folder.PathOf(FromUtf8(name))); };
    folder.Write(FromUtf8("before" + extension), file);
    const std::string source = Out({"export", path("before" + extension)});
    folder.WriteText(u"source.toml", source);
    if (const std::string text = Out({"import", path("source.toml"), path("after" + extension)}); !text.empty()) {
        return text + source;
    }
    const Bytes after = folder.Read(FromUtf8("after" + extension));
    return {after.begin(), after.end()};
}

void ExpectSurvival(const std::string& extension, const Bytes& file) {
    const TemporaryFolder folder;
    EXPECT_EQ(AfterTextForm(folder, extension, file), std::string(file.begin(), file.end()));
}

/// Every unit of the basic plane once, so with every half of a surrogate pair when `withHalves`.
CVelmString EveryCharacter(bool withHalves) {
    CVelmString text;
    for (std::uint32_t unit = 0; unit < 0xFFFF; ++unit) {
        if (withHalves || unit < 0xD800 || unit > 0xDFFF) {
            text += static_cast<char16_t>(unit);
        }
    }
    return text;
}

class RandomDocument {
public:
    explicit RandomDocument(std::uint32_t seed) : random_(seed) {}

    Bytes Build(std::int32_t kind) {
        FileBytes file;
        file.Header(Text(), Text(), Text());
        const std::uint32_t items = 1 + Below(60);
        file.Int(items);
        for (std::uint32_t i = 0; i < items; ++i) {
            AddItem(file);
        }
        if (kind == KIND_CONVERSION) {
            const std::uint32_t conversions = Below(80);
            file.Int(conversions);
            for (std::uint32_t i = 0; i < conversions; ++i) {
                AddConversion(file, items);
            }
        }
        return file.Sized();
    }

private:
    std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

    CVelmString Text() {
        static constexpr char16_t UNITS[] = {u'a', u'B', u'"', u'\\', u'\n', u'\0', 0x7F, 0xE9, 0xD83D, 0xDE00, 0xFEFF};
        CVelmString text;
        for (std::uint32_t length = Below(4); length > 0; --length) {
            text += UNITS[Below(std::size(UNITS))];
        }
        return text;
    }

    std::uint32_t Code() {
        static constexpr std::uint32_t CODES[] = {0, 1, 2, 16, 17, 32, 64, 256, 439, 0xFFFFFFFF};
        return CODES[Below(std::size(CODES))];
    }

    double Number() {
        static constexpr double NUMBERS[] = {
            0.0, -0.0, 1.0, 0.1, 1e22, -1e-310, 123456789012345678.0, std::numeric_limits<double>::infinity()};
        const std::uint32_t choice = Below(10);
        return choice < std::size(NUMBERS) ? NUMBERS[choice] : std::bit_cast<double>(random_());
    }

    void AddItem(FileBytes& file) {
        const std::uint32_t type = 1 + Below(2);
        const std::uint32_t allowed = Code();
        file.Int(type).Text(Text()).Text(Text()).Text(Text()).Int(Code()).Int(allowed).Int(Code()).Int(Code());
        for (int part = 0; (allowed & FMT_COMPOUND) != 0 && part < COMPOUND_PARTS; ++part) {
            file.Text(Text()).Double(Number());
        }
        if (type == 2) {
            file.Int(Code());
        }
    }

    void AddConversion(FileBytes& file, std::uint32_t items) {
        static constexpr std::uint32_t FLAGS[] = {0, 1, 2, 0x10000, 0x10001, 0xFFFFFFFF};
        const std::uint32_t flag = FLAGS[Below(std::size(FLAGS))];
        file.Int(flag).Int(Below(items)).Int(Below(items));
        if ((flag & 0xFFFF) != 0) {
            file.Text(Text()).Text(Text());
        } else {
            file.Double(Number()).Double(Number());
        }
    }

    std::mt19937_64 random_;
};

/// What import says of a source, without the path before the line number.
std::string ImportRefusal(std::string_view source, const char* target = "out.cnv") {
    const TemporaryFolder folder;
    folder.WriteText(u"in.toml", source);
    const std::string path = ToUtf8(folder.PathOf(u"in.toml"));
    const std::string text = Refusal({"import", path, ToUtf8(folder.PathOf(FromUtf8(target)))});
    EXPECT_EQ(folder.Names(), std::vector<CVelmString>{u"in.toml"}) << "nothing is written";
    const std::size_t at = text.find(path);
    return at == std::string::npos ? text : text.substr(0, at) + text.substr(at + path.size());
}

}  // namespace

TEST(TextForm, KeepsEveryCharacterOfATextAndHalvesOfPairs) {
    ExpectSurvival(".cnv", FileBytes().Header(EveryCharacter(false), u"", EveryCharacter(true)).Int(0).Int(0).Sized());
}

TEST(TextForm, KeepsWhateverAFileHolds) {
    for (std::uint32_t seed = 0; seed < 5; ++seed) {
        SCOPED_TRACE(seed);
        ExpectSurvival(".cnv", RandomDocument(seed).Build(KIND_CONVERSION));
        ExpectSurvival(".cal", RandomDocument(seed).Build(KIND_CALCULATION));
    }
}

TEST(TextForm, ReadsNumbersToTheLastBit) {
    DataSources data;
    data.Add("Numbers.cnv", R"(
title = "Numbers"
[[item]]
name = "a"
[[item]]
name = "b"
[[conversion]]
from = "a"
to = "b"
factor = "0.3048"
offset = 0.3048
[[conversion]]
from = "a"
to = "b"
factor = "1/3"
offset = "-1e300"
)");
    const std::string shown = Out(data.With({"show", "numbers", "--json"}));
    EXPECT_NE(shown.find(R"("factor": 0.3048, "offset": 0.3048,)"), std::string::npos) << shown;
    EXPECT_NE(shown.find(R"("factor": 0.3333333333333333, "offset": -1e+300,)"), std::string::npos) << shown;
}

TEST(TextForm, TakesTheTimeOfTheImportWhenItNamesNone) {
    DataSources data;
    data.Add("Now.cnv", "title = 'Now'\n");
    EXPECT_NE(Out(data.With({"show", "now"})).find("Updated:   "), std::string::npos);
    EXPECT_EQ(Out(data.With({"show", "now", "--json"})).find(R"("updated": "")"), std::string::npos);
}

TEST(Import, NamesTheLineAndWhatIsWrongThere) {
    EXPECT_EQ(ImportRefusal("title = 'a'\nn = "), "1: :2: Error while parsing key-value pair: encountered end-of-file");
    EXPECT_EQ(ImportRefusal("title = 'a'\ncatgory = 'b'"),
              "1: :2: there is no key \"catgory\" in a data file; did you mean \"category\"?");
    EXPECT_EQ(ImportRefusal("[[item]]\nname = 'a'"), "1: :1: a data file has no title");
    EXPECT_EQ(ImportRefusal("title = 'a'\n[[item]]\nid = 'm'"), "1: :2: an item has no name");
    EXPECT_EQ(ImportRefusal("title = 'a'\n[[item]]\nname = 'm'\nformats = ['decimal', 'hexa']"),
              "1: :4: there is no format \"hexa\"; did you mean \"hex\"?");
    EXPECT_EQ(ImportRefusal("title = 'a'\n[[item]]\nname = 'm'\nformats = ['hex']\ndisplay = 'date'"),
              "1: :5: display date is not among the item's formats");
    EXPECT_EQ(ImportRefusal("title = 'a'\n[[item]]\nname = 'm'\nparts = [['', 1]]"),
              "1: :4: parts needs \"compound\" among the item's formats");
    EXPECT_EQ(ImportRefusal("title = 'a'\n[[item]]\nname = 'm'\nformula = '1'"),
              "1: :4: only items of calculation files have outputs");
    EXPECT_EQ(ImportRefusal("title = 'a'\nkind = 'calculation'"),
              "1: :2: this is no conversion file, which the extension of the file to write asks for");
    EXPECT_EQ(ImportRefusal("title = 'a'\n[[conversion]]\nfrom = 'm'\nto = 'n'", "out.cal"),
              "1: :2: a calculation file has no conversions");
    EXPECT_EQ(ImportRefusal("title = 'a'", "out.txt").substr(0, 3), "2: ");
}

TEST(Import, ChecksTheUnitsAndNumbersOfConversions) {
    const std::string units =
        "title = 'a'\n[[item]]\nid = 'm'\nname = 'Metre'\n[[item]]\nname = 'Twin'\n"
        "[[item]]\nname = 'Twin'\n[[conversion]]\nfrom = 'm'\n";
    EXPECT_EQ(ImportRefusal(units + "to = 'Meter'"), "1: :11: there is no unit \"Meter\"; did you mean \"Metre\"?");
    EXPECT_EQ(ImportRefusal(units + "to = 'Twin'"),
              "1: :11: several items are called \"Twin\": write the item's number, counted from 0");
    EXPECT_EQ(ImportRefusal(units + "to = 3"), "1: :11: there is no item 3");
    EXPECT_EQ(ImportRefusal(units), "1: :9: a conversion has no to");
    EXPECT_EQ(ImportRefusal(units + "to = 1\nfactor = '1/'"), "1: :12: cannot evaluate \"1/\" of factor");
    EXPECT_EQ(ImportRefusal(units + "to = 1\nfactor = 2\nforward = 'x'"),
              "1: :12: a conversion has factor or formulas, not both");
    EXPECT_EQ(ImportRefusal(units + "to = 1\nflag = 1"), "1: :12: flag contradicts the conversion's other keys");
}

TEST(Export, WritesOnlyWhatIsSpecial) {
    DataSources data;
    const std::string source = R"(title = "Lengths"
category = ""
updated = "today"
kind = "conversion"

[[item]]
id = "m"
name = "Metre"

[[item]]
id = "ft"
name = "Foot"
formats = ["compound", "decimal"]
input = "decimal"
parts = [["ft", 1], ["in", 12]]

[[conversion]]
from = "ft"
to = "m"
factor = 0.3048
)";
    data.Add("Lengths.cnv", source);
    EXPECT_EQ(Out(data.With({"export", "lengths"})), source);
    const std::string nowhere = data.PathOf("none/out.toml");
    EXPECT_EQ(Refusal(data.With({"export", "lengths", "-o", nowhere})), "1: cannot write \"" + nowhere + "\"");
}

}  // namespace velm::test
