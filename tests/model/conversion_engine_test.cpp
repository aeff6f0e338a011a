#include "model/conversion_engine.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <random>
#include <sstream>
#include <tuple>

#include "support/sample_documents.h"
#include "support/table.h"

namespace velm::test {
namespace {

void AddUnits(CVelmDocument& document, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        document.AddItem(CreateItem(ITEM_VALUE))->name = FromUtf8(std::to_string(i));
    }
}

void Enter(CVelmDocument& document, std::size_t unit, double value) {
    document.currentItem = document.GetItem(unit);
    document.currentItem->value = value;
    document.currentItem->state = STATE_VALID;
}

/// Adds conversions as the table writes them.
void AddConversions(CVelmConversionDoc& document, const std::string& texts) {
    std::istringstream words(texts);
    for (std::string word; words >> word;) {
        const auto unit1 = static_cast<std::size_t>(word.front() - '0');
        const auto unit2 = static_cast<std::size_t>(word.back() - '0');
        if (const std::size_t bar = word.find('|'); bar != std::string::npos) {
            JoinByFormulas(document, unit1, unit2, FromUtf8(word.substr(2, bar - 2)),
                           FromUtf8(word.substr(bar + 1, word.size() - bar - 3)));
        } else {
            char* offset = nullptr;
            const double factor = std::strtod(word.c_str() + 2, &offset);
            Join(document, unit1, unit2, factor, std::strtod(offset, nullptr));
        }
    }
}

TEST(ConversionEngine, CarriesTheEnteredValueAlongTheConversions) {
    FormulaContext context(SystemClock());
    DefineVariable(context, u"x", 1.0);
    for (const auto& row : ReadTable(VELMORA_TESTS "/model/conversions.txt")) {
        CVelmConversionDoc document(SystemServices());
        AddUnits(document, 4);
        AddConversions(document, row.at(1));
        for (const auto& item : document.items) {
            item->state = STATE_VALID;
            item->shown = row.at(2).find(ToUtf8(item->name)) == std::string::npos ? 1 : 0;
        }
        Enter(document, 0, 3.0);
        document.Recalculate(context);
        EXPECT_EQ(Values(document, 15), row.at(3)) << row.at(0) << ": " << row.at(1);
    }
    double x = 0.0;
    EXPECT_FALSE(EvaluateFormula(context, u"x", x)) << "x is not bound afterwards";
}

TEST(ConversionEngine, FindsTheFailureThatLeavesAUnitWithoutAValue) {
    FormulaContext context(SystemClock());
    CVelmConversionDoc document(SystemServices());
    AddUnits(document, 8);
    // 1 fails, and with it 2 and, in reverse, 3; 4 leads to 1 but not back; 5 has a value; 6 and 7 are on their own.
    AddConversions(document, "0{1/(x-3)|x}1 1*2=2 3*2=2 4{x|}1 0*2=5 6*2=7");
    Enter(document, 0, 3.0);
    document.Recalculate(context);
    EXPECT_EQ(Values(document, 15), "3 error none none none 6 none none");
    std::string bridges;
    for (const CVelmItem* bridge : FindFailedBridges(document.items, document.conversions)) {
        bridges += bridge == nullptr ? "-" : ToUtf8(bridge->name);
    }
    EXPECT_EQ(bridges, "--11----");
}

/// The naive search: recursive, exponential in the worst case.
class PlainSearch {
public:
    PlainSearch(CVelmConversionDoc& document, FormulaContext& context) : document_(document), context_(context) {
        for (const auto& item : document_.items) {
            item->state = item.get() == document_.currentItem ? item->state : STATE_NONE;
        }
        for (const auto& item : document_.items) {
            if (item->shown != 0 && item->state == STATE_NONE) {
                Solve(*item);
            }
        }
    }

private:
    bool Solve(CVelmItem& target) {
        target.state = STATE_ERROR;
        for (const std::int32_t sourceState : {STATE_VALID, STATE_NONE}) {
            for (const auto& conversion : document_.conversions) {
                const bool forward = conversion->unit2 == &target;
                CVelmItem& source = forward ? *conversion->unit1 : *conversion->unit2;
                if ((!forward && conversion->unit1 != &target) || source.state != sourceState) {
                    continue;
                }
                if ((sourceState == STATE_VALID || Solve(source)) && Apply(*conversion, forward, source, target)) {
                    return true;
                }
            }
        }
        target.state = STATE_NONE;
        return false;
    }

    bool Apply(const CVelmConversion& conversion, bool forward, const CVelmItem& from, CVelmItem& to) {
        const CVelmString& formula = forward ? conversion.forwardFormula : conversion.reverseFormula;
        if (from.state != STATE_VALID || (conversion.IsFormula() && formula.empty())) {
            return false;
        }
        double result = NAN;
        if (conversion.IsFormula()) {
            DefineVariable(context_, u"x", from.value);
            EvaluateFormula(context_, formula, result);
            UndefineVariable(context_, u"x");
        } else if (forward) {
            result = from.value * conversion.factor + conversion.offset;
        } else if (conversion.factor != 0.0) {
            result = (from.value - conversion.offset) / conversion.factor;
        }
        to.state = std::isfinite(result) ? STATE_VALID : STATE_ERROR;
        to.value = std::isfinite(result) ? result : to.value;
        return true;
    }

    CVelmConversionDoc& document_;
    FormulaContext& context_;
};

/// A document of a few units with any kind of conversions between them. The same seed gives the same document.
class RandomDocument {
public:
    explicit RandomDocument(unsigned seed) : random_(seed) {
        static constexpr double FACTORS[] = {2.0, -0.5, 1e-3, 1e200, 0.0};
        static constexpr const char16_t* FORMULAS[] = {u"",      u"",    u"x*2", u"x+1",     u"x*3-1", u"x/7",
                                                       u"x*x+1", u"err", u"((",  u"1/(x-2)", u"x+y",   u"1e200*x"};
        const unsigned hiddenOfTen = Below(8);
        const unsigned formulasOfTen = Below(11);
        AddUnits(document, Below(7) + 2);
        for (const auto& item : document.items) {
            item->shown = Below(10) >= hiddenOfTen ? 1 : 0;
            item->state = static_cast<std::int32_t>(Below(3));
        }
        for (unsigned i = Below(14) + 1; i > 0; --i) {
            const unsigned unit = AnyUnit();
            CVelmConversion& conversion = Join(document, unit, AnyUnit(), FACTORS[Below(std::size(FACTORS))]);
            conversion.offset = Below(3) == 0 ? 32.0 : 0.0;
            conversion.formulaFlag = Below(10) < formulasOfTen ? 1 : 0;
            conversion.forwardFormula = FORMULAS[Below(std::size(FORMULAS))];
            conversion.reverseFormula = FORMULAS[Below(std::size(FORMULAS))];
        }
        Enter(document, AnyUnit(), 2.0);
        document.currentItem->state = Below(8) == 0 ? STATE_ERROR : STATE_VALID;
        asked = document.GetItem(AnyUnit());
    }

    CVelmConversionDoc document{SystemServices()};
    CVelmItem* asked = nullptr;

private:
    unsigned Below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
    unsigned AnyUnit() { return Below(document.ItemCount()); }

    std::mt19937 random_;
};

TEST(ConversionEngine, FindsTheResultsOfThePlainSearchInAnyGraphAndForTheNextValue) {
    FormulaContext context(SystemClock());
    std::size_t solved = 0;
    std::size_t failed = 0;
    std::size_t repeated = 0;
    for (unsigned seed = 0; seed < 30000; ++seed) {
        RandomDocument tested(seed);
        RandomDocument plain(seed);
        plain.asked->shown = 1;
        std::vector<CVelmStepTaken> steps;
        for (const double value : {2.0, 5.0}) {
            tested.document.currentItem->value = plain.document.currentItem->value = value;
            const bool repeats = !steps.empty() && RepeatSteps(steps, context);
            if (!repeats) {
                steps = SolveConversions(tested.document.items, tested.document.conversions,
                                         tested.document.currentItem, std::array{tested.asked}, context);
            }
            const PlainSearch search(plain.document, context);
            ASSERT_EQ(Values(tested.document, 17), Values(plain.document, 17))
                << "seed " << seed << ", value " << value << ": " << Conversions(plain.document);
            for (const auto& item : tested.document.items) {
                solved += item->state == STATE_VALID ? 1 : 0;
                failed += item->state == STATE_ERROR ? 1 : 0;
            }
            repeated += repeats ? 1 : 0;
        }
    }
    EXPECT_GT(solved, 80000U) << "the graphs hardly ever lead anywhere";
    EXPECT_GT(failed, 15000U) << "the graphs hardly ever fail";
    EXPECT_GT(repeated, 10000U);
}

TEST(ConversionEngine, ALongChainOfHiddenBridgesNeedsNoStack) {
    constexpr std::size_t UNITS = 500000;
    CVelmConversionDoc document(SystemServices());
    AddUnits(document, UNITS);
    for (std::size_t i = 1; i < UNITS; ++i) {
        document.items[i]->shown = 0;
        Join(document, i - 1, i, 1.0, 1.0);
    }
    Enter(document, UNITS - 1, 0.0);
    FormulaContext context(SystemClock());
    document.Recalculate(context);
    EXPECT_EQ(document.GetItem(0)->state, STATE_VALID);
    EXPECT_EQ(document.GetItem(0)->value, 1.0 - static_cast<double>(UNITS));
}

TEST(ConversionEngine, ADenseGraphThatCannotBeReachedCostsLittle) {
    constexpr std::size_t OTHERS = 300;
    for (const auto& [first, step, forward] :
         {std::tuple{OTHERS + 1, OTHERS, u""}, {OTHERS, OTHERS, u""}, {std::size_t{2}, std::size_t{3}, u"err"}}) {
        CVelmConversionDoc document(SystemServices());
        AddUnits(document, OTHERS + 1);
        for (std::size_t i = 1; i <= OTHERS; ++i) {
            for (std::size_t j = 1; j < i; ++j) {
                Join(document, j, i);
            }
        }
        for (std::size_t unit = first; unit <= OTHERS; unit += step) {
            JoinByFormulas(document, 0, unit, forward, u"x");
        }
        Enter(document, 0, 1.0);
        FormulaContext context(SystemClock());
        const std::clock_t start = std::clock();
        document.Recalculate(context);
        EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 0.1);
        EXPECT_EQ(document.GetItem(1)->state, STATE_NONE);
    }
}

}  // namespace
}  // namespace velm::test
