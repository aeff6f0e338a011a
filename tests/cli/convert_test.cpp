#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/process.h"

namespace velm::test {

namespace {

constexpr std::string_view LENGTHS = R"(
title = "Lengths"
[[item]]
id = "m"
name = "Metre"
[[item]]
id = "ft"
name = "Foot"
formats = ["decimal", "compound"]
parts = [["ft", 1], ["in", 12]]
[[item]]
id = "in"
name = "Zoll \u9577"
shown = false
[[item]]
id = "M"
name = "Mile"
[[item]]
id = "loose"
name = "Joined to nothing"
[[item]]
id = "never"
name = "Cannot be"
[[item]]
name = "Twin"
[[item]]
name = "TWIN"
[[conversion]]
from = "ft"
to = "m"
factor = 0.3048
[[conversion]]
from = "ft"
to = "in"
factor = 12
[[conversion]]
from = "M"
to = "in"
factor = 63360
[[conversion]]
from = "m"
to = "never"
forward = "1/0"
)";

class Convert : public testing::Test {
protected:
    void SetUp() override { data_.Add("Lengths.cnv", LENGTHS); }

    Words Arguments(Words words) const {
        words.insert(words.begin(), {"convert", "Lengths"});
        return data_.With(words);
    }
    std::string Run(const Words& words, std::string_view input = {}) const { return Out(Arguments(words), input); }
    std::string Refused(const Words& words) const { return Refusal(Arguments(words)); }

    DataSources data_;
};

}  // namespace

TEST_F(Convert, ListsEveryShownItemWithTheEnteredOneMarked) {
    EXPECT_EQ(Run({"ft", "[5 3]"}),
              "  Metre              1.6002\n"
              "* Foot               5.25\n"
              "  Mile               994.318181818 e-6\n"
              "  Joined to nothing  \n"
              "  Cannot be          Error\n"
              "  Twin               \n"
              "  TWIN               \n");
}

TEST_F(Convert, PrintsJustTheUnitsAskedForHiddenOnesToo) {
    EXPECT_EQ(Run({"Foot", "-1", "--to", "in", "--to", "m"}), "-12\n-0.3048\n");
    EXPECT_EQ(Run({"ft", "1", "--to=metre", "--raw"}), "0.30480000000000002\n");
    EXPECT_EQ(Refused({"m", "1", "--to", "loose"}),
              "1: convert: Lengths has no conversion from Metre to Joined to nothing");
    EXPECT_EQ(Refused({"m", "1", "--to", "ft", "--to", "never"}),
              "1: convert: \"1\" of Metre has no value in Cannot be");
}

TEST_F(Convert, FindsUnitsExactlyBeforeIgnoringCase) {
    EXPECT_EQ(Run({"M", "1", "--to", "FT"}), "5,280\n");
    EXPECT_EQ(Run({"m", "1", "--to", "mile", "--raw"}), "0.00062137119223733392\n");
    EXPECT_EQ(Refused({"metr", "1"}), "1: Lengths.cnv has no unit \"metr\"; did you mean \"Metre\", \"m\" or \"ft\"?");
    EXPECT_EQ(Refused({"twin", "1"}), "1: unit \"twin\" can be any of \"Twin\", \"TWIN\"");
    EXPECT_EQ(Refused({"ft", "1", "--to", "twin"}), "1: unit \"twin\" can be any of \"Twin\", \"TWIN\"");
    EXPECT_EQ(Refused({"", "1"}).substr(0, 28), "1: Lengths.cnv has no unit \"");
}

TEST_F(Convert, RefusesWhatIsNoValue) {
    EXPECT_EQ(Refused({"m", "5 3"}), "1: convert: cannot read \"5 3\" as a value of Metre");
    EXPECT_EQ(Refused({"m"}), "2: convert: VALUE is required (see velmora convert --help)");
    EXPECT_EQ(Refused({"m", "1", "2"}), "2: convert: \"2\" is one argument too many (see velmora convert --help)");
    EXPECT_EQ(Refused({"m", "1", "--raw", "--json"}), "2: convert: --raw excludes --json (see velmora convert --help)");
    EXPECT_EQ(Refused({"m", "1", "--to", "[x]"}).substr(0, 30), "1: Lengths.cnv has no unit \"[x");
}

TEST_F(Convert, WritesEveryItemAsJson) {
    const auto items = nlohmann::json::parse(Run({"M", "1", "--json"}));
    ASSERT_EQ(items.size(), 8U);
    EXPECT_EQ(items[0],
              nlohmann::json::parse(R"({"id": "m", "name": "Metre", "shown": true, "output": false, "state": 1,
                                                  "value": 1609.344, "text": "1,609.344"})"));
    EXPECT_EQ(items[2]["name"], "Zoll \u9577");
    EXPECT_EQ(items[2]["shown"], false);
    EXPECT_EQ(items[2]["value"], 63360.0) << "a bridge has its value although it is hidden";
    EXPECT_EQ(items[4]["state"], 0);
    EXPECT_TRUE(items[4]["value"].is_null());
    EXPECT_EQ(items[5]["text"], "Error");
    EXPECT_TRUE(items[5]["value"].is_null());
    const auto target = nlohmann::json::parse(Run({"M", "0.1", "--to", "in", "--json"}));
    ASSERT_EQ(target.size(), 1U);
    EXPECT_EQ(target[0]["shown"], false);
    EXPECT_EQ(target[0]["value"].get<double>(), 6336.0);
}

TEST_F(Convert, AnswersEachLineOfTheInputAndGoesOnAfterAnError) {
    const Words words = Arguments({"ft", "-", "--to", "in", "--to", "m"});
    const ProcessResult result = RunVelmora(words, "1\n[5 3]\r\ntwo\n\n-2");
    EXPECT_EQ(result.out, "12\t0.3048\n63\t1.6002\nerror\nerror\n-24\t-0.6096\n");
    EXPECT_EQ(result.err, "velmora: line 3: no result for \"two\"\nvelmora: line 4: no result for \"\"\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(Run({"ft", "-"}, "1\n"), "0.3048\t1\t189.393939394 e-6\t\tError\t\t\n");
    const std::string lines = Run({"ft", "-", "--json"}, "1\n2\n");
    EXPECT_EQ(nlohmann::json::parse(lines.substr(lines.find('\n') + 1))[0]["value"], 0.6096);
}

TEST_F(Convert, WantsAConversionFile) {
    data_.Add("Sum.cal", "title = 'Sum'\n");
    EXPECT_EQ(Refusal(data_.With({"convert", "Sum", "a", "1"})), "1: \"Sum\" is a calculation file: use velmora calc");
    EXPECT_EQ(Refusal(data_.With({"calc", "Lengths"})), "1: \"Lengths\" is a conversion file: use velmora convert");
}

}  // namespace velm::test
