#include "ask/question_search.h"

#include <gtest/gtest.h>

#include "ask_folder.h"
#include "support/table.h"

namespace velm::test {
namespace {

class QuestionSearch : public testing::Test {
protected:
    /// The lines, with "!" before what is wrong and "*" before a match.
    std::string Lines(const std::string& text, std::size_t matches = 2) {
        search.SetText(FromUtf8(text), matches);
        std::vector<std::string> lines;
        for (const CVelmSearchLine& line : search.Lines()) {
            const std::string mark = line.kind == SearchLineKind::Fault   ? "!"
                                     : line.kind == SearchLineKind::Match ? "*"
                                                                          : "";
            lines.push_back(mark + ToUtf8(line.text));
        }
        return Join(lines, "; ");
    }

    /// "Length.cnv 9: 9=26.2"
    std::string PlaceOf(std::size_t line) {
        const CVelmSearchPlace& place = search.PlaceOf(line);
        std::string text = ToUtf8(place.fileName) + " " + NameOf(place.fileName, place.item) + ":";
        for (const CVelmPlacedValue& value : place.values) {
            text += " " + NameOf(place.fileName, value.item) + "=" + Print("%.12g", value.value);
        }
        return text;
    }

    AskFolder folder;
    CVelmQuestionSearch search{folder.Questions()};

private:
    std::string NameOf(const CVelmString& fileName, std::int32_t item) {
        if (item < 0) {
            return "-";
        }
        const auto document = CreateDocument(KindOfFileName(fileName), folder.Services());
        EXPECT_TRUE(document->Load(folder.Path(), true, fileName.substr(0, fileName.rfind(u'.'))));
        return ToUtf8(document->GetItem(static_cast<std::size_t>(item))->identifier);
    }
};

TEST_F(QuestionSearch, ShowsAnswersAndMatchesWhileAQuestionIsTyped) {
    EXPECT_EQ(Lines(""), "");
    EXPECT_EQ(Lines("  "), "");
    EXPECT_EQ(Lines("leng", 1), "*Length (file)");
    EXPECT_EQ(Lines("length", 1), "*Length (file)");
    EXPECT_EQ(Lines("26.2 kilom"), "*Kilomoles (AmountOfSubstance); *Kilometers (Length)");
    EXPECT_EQ(Lines("26.2 mi in kilom"), "*Kilometers (Length); *Kilomoles (AmountOfSubstance)")
        << "what fits is first";
    EXPECT_EQ(Lines("26.2 mi in", 1), "*Inches, in (Length)") << "the question goes on behind it";
    EXPECT_EQ(Lines("26.2 mi in "), "");
    EXPECT_EQ(Lines("26.2 mi in km", 1), "26.2 mi = 42.1648128 km; *Kilometers, km (Length)");
    EXPECT_EQ(Lines("26.2 mi in f"), "*Feet, ft (Length); *Fahrenheit, F (Temperature)") << "F alone would not fit";
    EXPECT_EQ(Lines("26.2 mi in kg", 0), "!26.2 mi is a length, kg a mass: length times weight of length would fit");
    EXPECT_EQ(Lines("2*(3+4", 0), "");
    EXPECT_EQ(Lines("2 ? k", 1), "!\"?\" cannot stand here; *Kelvin, K (Temperature)")
        << "nothing that follows can make it right";
    EXPECT_EQ(Lines("2 lb", 1),
              "2 lb =; Kilograms: 0.90718474 kg; Grams: 907.18474 g; Pounds and ounces: 2 lb 0 oz; Ounces: 32 oz; "
              "Stones: 0.14285714286 st; 12 more; *Pounds, lb (Weight)");
    EXPECT_EQ(Lines("5 ft 11 in to cm"),
              "5 ft 11 in = 180.34 cm; *Centimeters, cm (Length); *Square centimeters, cm2 (Area)");
}

TEST_F(QuestionSearch, LeadsToTheFileWithTheValues) {
    Lines("26.2 mi in km");
    EXPECT_EQ(PlaceOf(0), "Length.cnv mi: mi=26.2");
    EXPECT_EQ(PlaceOf(1), "Length.cnv mi: mi=26.2");
    Lines("5 kilom");
    EXPECT_EQ(PlaceOf(1), "Length.cnv km: km=5") << "a match takes the value along";
    Lines("kilom");
    EXPECT_EQ(PlaceOf(1), "Length.cnv km:") << "where there is one";
    Lines("3 kg in kilom");
    EXPECT_EQ(PlaceOf(1), "Length.cnv km:") << "and where it fits";
    Lines("length");
    EXPECT_EQ(PlaceOf(0), "Length.cnv -:");
    Lines("tip 64.50 18% 3 people");
    EXPECT_EQ(PlaceOf(0), "TipCalc.cal -: bill=64.5 percent=18 people=3");
    Lines("2+3");
    EXPECT_EQ(PlaceOf(0), " -:") << "a plain number is in no file";
}

TEST_F(QuestionSearch, KeepsNoAnswer) {
    folder.Ask("12 km");
    EXPECT_EQ(Lines("ans*2", 0), "ans × 2 = 24 km");
    EXPECT_EQ(Lines("ans*2", 0), "ans × 2 = 24 km");
    EXPECT_EQ(Lines("width = 3 cm", 0), "width = 3 cm");
    EXPECT_NE(Lines("width*2 in m", 0), "width × 2 = 6 m");
}

}  // namespace
}  // namespace velm::test
