#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/process.h"

namespace velm::test {

namespace {

constexpr std::string_view TIP = R"toml(
title = "Tip"
[[item]]
id = "bill"
name = "Bill"
value = 40
formats = ["currency"]
[[item]]
id = "percent"
name = "Percent"
value = "15"
[[item]]
id = "each"
name = "Each pays"
formula = "total/2"
formats = ["currency"]
[[item]]
id = "total"
name = "Total"
formula = "bill+bill*percent/100"
shown = false
[[item]]
id = "odd"
name = "Odd"
formula = "nothing"
)toml";

class Calc : public testing::Test {
protected:
    void SetUp() override { data_.Add("Tip.cal", TIP); }

    Words Arguments(Words words) const {
        words.insert(words.begin(), {"calc", "tip"});
        return data_.With(words);
    }
    std::string Run(const Words& words, std::string_view input = {}) const { return Out(Arguments(words), input); }

    DataSources data_;
};

}  // namespace

TEST_F(Calc, ComputesFromStoredAndGivenInputs) {
    EXPECT_EQ(Run({}), "  Bill       40.00\n  Percent    15\n  Each pays  23.00\n  Odd        Error\n");
    EXPECT_EQ(Run({"Percent=bill/2", "BILL=100"}),
              "* Bill       100.00\n* Percent    50\n  Each pays  75.00\n  Odd        Error\n");
}

TEST_F(Calc, WritesEveryItemAsJson) {
    const auto items = nlohmann::json::parse(Run({"bill=-100", "--json"}));
    ASSERT_EQ(items.size(), 5U);
    EXPECT_EQ(items[0]["text"], "(100.00)");
    EXPECT_EQ(items[2]["value"], -57.5);
    EXPECT_EQ(items[3], nlohmann::json::parse(R"({"id": "total", "name": "Total", "shown": false, "output": true,
                                                  "state": 1, "value": -115, "text": "-115"})"));
    EXPECT_EQ(items[4]["state"], 2);
}

TEST_F(Calc, AnswersEachLineWithTheShownOutputs) {
    const ProcessResult result = RunVelmora(Arguments({"bill=-"}), "20\n?\n40\n");
    EXPECT_EQ(result.out, "11.50\tError\nerror\n23.00\tError\n");
    EXPECT_EQ(result.err, "velmora: line 2: no result for \"?\"\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(Calc, RefusesOutputsUnknownInputsAndUnreadableValues) {
    EXPECT_EQ(Refusal(Arguments({"total=3"})), "2: calc: \"total\" is an output: it is computed");
    EXPECT_EQ(Refusal(Arguments({"bil=3"})),
              "1: Tip.cal has no input \"bil\"; did you mean \"bill\", \"Bill\" or \"odd\"?");
    EXPECT_EQ(Refusal(Arguments({"bill=4+"})), "1: calc: cannot read \"4+\" as a value of bill");
    EXPECT_EQ(Refusal(Arguments({"bill"})), "2: calc: \"bill\" is not of the form NAME=VALUE");
}

}  // namespace velm::test
