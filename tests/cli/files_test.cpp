#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli/process.h"
#include "support/file_bytes.h"

namespace velm::test {

namespace {

constexpr std::string_view ONE_UNIT = "title = 'One unit'\n[[item]]\nname = 'Thing'\n";

std::string TitleOf(const std::string& shown) {
    const auto document = nlohmann::json::parse(shown, nullptr, false);
    return document.is_discarded() ? shown : document["title"].get<std::string>();
}

}  // namespace

TEST(DataFiles, AreFoundByPathOrNameInAnyLetterCase) {
    DataSources data;
    data.Add("Things.cnv", ONE_UNIT);
    for (const char* name : {"Things", "things", "THINGS.CNV", "Things.cnv"}) {
        EXPECT_EQ(TitleOf(Out(data.With({"show", name, "--json"}))), "One unit") << name;
    }
    EXPECT_EQ(TitleOf(Out({"show", data.PathOf("Things.cnv"), "--json"})), "One unit");
    setenv("VELMORA_DATA", ToUtf8(data.Folder().Path()).c_str(), 1);
    EXPECT_EQ(TitleOf(Out({"show", "things", "--json"})), "One unit");
    unsetenv("VELMORA_DATA");
    EXPECT_EQ(Refusal({"--data", "/nowhere", "show", "things"}), "1: cannot read the data folder \"/nowhere/\"");
}

TEST(DataFiles, OfANameThatSeveralHaveAreListed) {
    DataSources data;
    data.Add("Tip.cnv", ONE_UNIT);
    data.Add("Tip.cal", ONE_UNIT);
    data.Add("tip.cnv", ONE_UNIT);
    EXPECT_EQ(Refusal(data.With({"show", "TIP"})), "1: \"TIP\" can be any of Tip.cal, Tip.cnv, tip.cnv");
    EXPECT_EQ(Refusal(data.With({"show", "Tip"})), "1: \"Tip\" can be any of Tip.cal, Tip.cnv");
    EXPECT_EQ(TitleOf(Out(data.With({"show", "tip", "--json"}))), "One unit");
}

TEST(DataFiles, ThatAreMissingComeWithTheNearestNames) {
    DataSources data;
    data.Add("Length.cnv", ONE_UNIT);
    data.Add("Loan.cal", ONE_UNIT);
    const std::string folder = ToUtf8(data.Folder().Path());
    EXPECT_EQ(Refusal(data.With({"show", "Lenght"})),
              "1: there is no data file \"Lenght\" in " + folder + "; did you mean \"Length\" or \"Loan\"?");
    const std::string path = data.PathOf("Absent.cnv");
    EXPECT_EQ(Refusal({"show", path}), "1: " + path + ": cannot be opened");
    EXPECT_EQ(Refusal({"show", folder + "Length"}), "1: " + folder + "Length: does not end in .cnv or .cal");
}

TEST(Show, TellsEverythingAsJson) {
    DataSources data;
    data.Add("All.cnv", R"(
title = "All \u0001"
category = "Some"
updated = "yesterday"
[[item]]
id = "a"
name = { utf16 = "0041 D800" }
value = "1"
formats = ["compound", "decimal"]
input = "decimal"
parts = [["ft", 0.1], ["in", 12]]
[[item]]
name = "\"b\""
shown = false
[[conversion]]
from = "a"
to = 1
factor = -0.0
offset = 1e-300
[[conversion]]
from = 1
to = "a"
forward = "x+1"
)");
    EXPECT_EQ(nlohmann::json::parse(Out(data.With({"show", "all", "--json"}))), nlohmann::json::parse(R"({
        "kind": 1, "title": "All \u0001", "category": "Some", "file": "All", "updated": "yesterday",
        "items": [{"id": "a", "name": "A\ufffd", "type": 1, "output": false, "shown": true, "text": "1",
                   "allowed": 17, "display": 16, "input": 1, "parts": [["ft", 0.1], ["in", 12], ["", 0], ["", 0]]},
                  {"id": "", "name": "\"b\"", "type": 1, "output": false, "shown": false, "text": "",
                   "allowed": 1, "display": 1, "input": 1, "parts": [["", 1], ["", 0], ["", 0], ["", 0]]}],
        "conversions": [{"unit1": 0, "unit2": 1, "formula": false, "factor": -0.0, "offset": 1e-300,
                         "forward": "", "reverse": ""},
                        {"unit1": 1, "unit2": 0, "formula": true, "factor": 1, "offset": 0,
                         "forward": "x+1", "reverse": ""}]})"));
    const std::string text = Out(data.With({"show", "all"}));
    EXPECT_NE(text.find("All ?"), std::string::npos) << text;
    EXPECT_NE(text.find("decimal (hidden)"), std::string::npos) << text;
}

TEST(Check, TellsOfEachFileAndFailsWhenOneIsNotOk) {
    DataSources data;
    data.Add("Good.cnv", ONE_UNIT);
    const Bytes good = data.Folder().Read(u"Good.cnv");
    data.Folder().Write(u"Short.cnv", Bytes(good.begin(), good.end() - 1));
    data.Folder().Write(u"Other.cnv", {1, 2, 3, 4, 5, 6, 7, 8});
    data.Folder().Write(
        u"Dropped.cnv",
        FileBytes().Header(u"", u"T", u"").Int(1).Unit(u"m").Int(2).Linear(0, 5, 2).Linear(0, 9, 2).Sized());
    const auto line = [&](const char* name, const char* verdict) { return data.PathOf(name) + ": " + verdict + "\n"; };
    const ProcessResult result =
        RunVelmora({"check", data.PathOf("Good.cnv"), data.PathOf("Short.cnv"), data.PathOf("Other.cnv"),
                    data.PathOf("Dropped.cnv"), data.PathOf("None.cal"), data.PathOf("source.toml")});
    EXPECT_EQ(result.out, line("Good.cnv", "ok, 1 items, 0 conversions") +
                              line("Short.cnv", "error: damaged: its length is not the one written in it") +
                              line("Other.cnv", "error: not a data file: its first word is neither format's") +
                              line("Dropped.cnv", "error: 2 records cannot be read") +
                              line("None.cal", "error: cannot be opened") +
                              line("source.toml", "error: does not end in .cnv or .cal"));
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(Refusal({"export", data.PathOf("Dropped.cnv")}),
              "1: " + data.PathOf("Dropped.cnv") + ": damaged: 2 records cannot be read");
}

TEST(Check, LeavesFilesOfTheOlderFormatAsTheyAre) {
    DataSources data;
    const Bytes older = FileBytes().Int(0xC0215192).Text(u"Old").Int(0).Int(0).Int(0).Get();
    data.Folder().Write(u"Old.cnv", older);
    EXPECT_EQ(Out({"check", ToUtf8(data.Folder().Path())}), data.PathOf("Old.cnv") + ": ok, 0 items, 0 conversions\n");
    EXPECT_EQ(data.Folder().Read(u"Old.cnv"), older);
    EXPECT_EQ(TitleOf(Out({"show", data.PathOf("Old.cnv"), "--json"})), "Old");
    EXPECT_EQ(data.Folder().Read(u"Old.cnv.bak"), older) << "loading it rewrites it and keeps the original";
}

TEST(ShippedData, SurvivesItsTextForm) {
    const TemporaryFolder folder;
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_DATA_FOLDER)) {
        const std::string path = entry.path().string();
        const std::string extension = entry.path().extension().string();
        if (extension == ".htm") {
            continue;
        }
        ++count;
        const std::string source = ToUtf8(folder.PathOf(u"source.toml"));
        const std::string target = ToUtf8(folder.PathOf(FromUtf8("again" + extension)));
        EXPECT_EQ(Out({"export", path, "-o", source}), "");
        EXPECT_EQ(Out({"import", source, target}), "");
        const std::string compare = "cmp '" + path + "' '" + target + "'";
        EXPECT_EQ(std::system(compare.c_str()), 0) << path;
    }
    EXPECT_GE(count, 39);
}

}  // namespace velm::test
