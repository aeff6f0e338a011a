#include <gtest/gtest.h>

#include <string>

#include "ask/questions.h"
#include "support/small_folder.h"
#include "support/temporary_folder.h"

namespace velm::test {
namespace {

/// The answer's line, or what is wrong behind "! ".
std::string Ask(CVelmQuestions& questions, const std::string& question) {
    const CVelmAnswer answer = questions.Ask(FromUtf8(question));
    return ToUtf8(answer.ok ? answer.Line() : u"! " + answer.fault.message);
}

class Session : public testing::Test {
protected:
    SmallFolder folder_;
    FixedClock clock_;
    FormulaContext context_{clock_};
};

TEST_F(Session, KeepsValuesUnderNames) {
    CVelmQuestions questions(folder_.Services(), context_, {});
    EXPECT_EQ(Ask(questions, "w = 80 kg"), "w = 80 kg");
    EXPECT_EQ(Ask(questions, "w * 9.81 m/s^2 in N"), "w × 9.81 m/s2 = 784.8 N");
    EXPECT_EQ(Ask(questions, "ans / w in m/s^2"), "ans / w = 9.81 m/s2");
    EXPECT_EQ(Ask(questions, "w = 3 m"), "w = 3 m");
    EXPECT_EQ(Ask(questions, "w in ft"), "w = 9.84251968504 ft");
    EXPECT_EQ(Ask(questions, "kg = 5"), "! \"kg\" is a unit: choose another name");
    EXPECT_EQ(Ask(questions, "ans = 5"), "! \"ans\" is the last answer: choose another name");
}

TEST_F(Session, SuggestsWhatAWordCanBecome) {
    CVelmQuestions questions(folder_.Services(), context_, {});
    const auto found = questions.Suggest(u"5 ft in me", 5);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].fileName, u"Length.cnv");
    EXPECT_EQ(found[0].item, 0);
    EXPECT_EQ(found[0].name, u"Meters");
    EXPECT_EQ(questions.Suggest(u"grat", 5).at(0).fileName, u"Tip.cal");
    EXPECT_TRUE(questions.Suggest(u"5 ft in ", 5).empty());
}

TEST_F(Session, TellsWhereAnswersAndFaultsAre) {
    CVelmQuestions questions(folder_.Services(), context_, {});
    const CVelmAnswer answer = questions.Ask(u"5 ft in m");
    EXPECT_EQ(answer.place.fileName, u"Length.cnv");
    EXPECT_EQ(answer.place.item, 1);
    EXPECT_EQ(answer.place.targetItem, 0);
    EXPECT_EQ(answer.place.value, 5.0);
    const CVelmAnswer refused = questions.Ask(u"5 ft + 3 blorps in m");
    EXPECT_EQ(refused.fault.position, 9u);
    EXPECT_EQ(refused.fault.length, 6u);
}

TEST_F(Session, RefusesWhatNobodyAsks) {
    CVelmQuestions questions(folder_.Services(), context_, {});
    for (const std::string part : {"+", "-", "(", "m/(", "square ", "sqrt(", "5 m + ", "in "}) {
        std::string question;
        while (question.size() + part.size() <= 1000) {
            question += part;
        }
        EXPECT_EQ(Ask(questions, question).substr(0, 2), "! ") << part;
        EXPECT_EQ(Ask(questions, question + question), "! The question is too long");
    }
}

TEST_F(Session, KnowsIdentifiersAndNamesWithoutWords) {
    folder_.files.files.erase(u"Units.words");
    CVelmQuestions questions(folder_.Services(), context_, {});
    EXPECT_EQ(Ask(questions, "5 Feet in m"), "5 ft = 1.524 m");
    EXPECT_EQ(Ask(questions, "5 meter in in"), "5 m = 196.850393701 in");
    EXPECT_EQ(Ask(questions, "5 foot in m").substr(0, 2), "! ");
}

TEST_F(Session, ReadsTheUsersOwnWordsInAddition) {
    folder_.files.AddText(u"My units.words",
                          "nonsense\n[Length]\nft = shoe\nnowhere = lost\ncoherent = no such key\n[Missing]\nx = y\n");
    CVelmQuestions questions(folder_.Services(), context_, {});
    EXPECT_EQ(Ask(questions, "10 shoes in m"), "10 ft = 3.048 m");
    EXPECT_EQ(Ask(questions, "10 foot in m"), "10 ft = 3.048 m");
}

TEST_F(Session, NoticesChangedFiles) {
    CVelmQuestions questions(folder_.Services(), context_, {});
    EXPECT_EQ(Ask(questions, "5 $ in EUR"), "5 USD = 4 EUR");
    EXPECT_EQ(Ask(questions, "5 cubit in m").substr(0, 2), "! ");
    folder_.AddConversions(u"Money", {{u"EUR", u"Euro", 1}, {u"USD", u"US dollar", 0.5}});
    folder_.AddConversions(u"Length", {{u"m", u"Meters", 1}, {u"cubit", u"Cubits", 0.5}});
    EXPECT_EQ(Ask(questions, "5 $ in EUR"), "5 USD = 2.5 EUR");
    EXPECT_EQ(Ask(questions, "5 $ / 2 kg in EUR/kg"), "5 USD / 2 kg = 1.25 EUR/kg");
    EXPECT_EQ(Ask(questions, "5 cubit in m"), "5 cubit = 2.5 m");
}

/// The index between two runs of the program.
class IndexCache : public testing::Test {
protected:
    IndexCache() {
        for (const auto& [name, file] : small_.files.files) {
            folder_.Write(name, file->bytes);
        }
    }

    std::string AskAnew(const std::string& question) {
        FormulaContext context(services_.clock);
        CVelmQuestions questions(services_.Services(), context, folder_.Path(), cache_.PathOf(u"below"));
        return Ask(questions, question);
    }

    std::string CacheName() const {
        const auto entries = SystemFiles().List(cache_.PathOf(u"below"));
        return entries && entries->size() == 1 ? "below/" + ToUtf8(entries->front().name) : "";
    }

    SmallFolder small_;
    TestServices services_;
    TemporaryFolder folder_;
    TemporaryFolder cache_;
};

TEST_F(IndexCache, IsReadAndMadeAnewWhenStaleOrDamaged) {
    EXPECT_EQ(AskAnew("5 ft in m"), "5 ft = 1.524 m");
    const CVelmString name = FromUtf8(CacheName());
    ASSERT_FALSE(name.empty());
    const Bytes whole = cache_.Read(name);

    // A folder that has not changed is not read again: the words come from the cache.
    Bytes damaged = whole;
    damaged[damaged.size() / 2] ^= 1;
    for (const Bytes& wrong : {damaged, Bytes(whole.begin(), whole.begin() + 100), Bytes(), Bytes(5000, 0xFF)}) {
        cache_.Write(name, wrong);
        EXPECT_EQ(AskAnew("5 ft in m"), "5 ft = 1.524 m");
        EXPECT_EQ(cache_.Read(name).size(), whole.size());
    }

    folder_.WriteText(u"My units.words", "[Length]\nft = shoe\n");
    EXPECT_EQ(AskAnew("5 shoes in m"), "5 ft = 1.524 m");
    small_.AddConversions(u"Length", {{u"m", u"Meters", 1}, {u"ft", u"Feet", 0.25}});
    folder_.Write(u"Length.cnv", small_.files.Content(u"Length.cnv"));
    EXPECT_EQ(AskAnew("5 ft in m"), "5 ft = 1.25 m");
}

}  // namespace
}  // namespace velm::test
