#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <ctime>
#include <iterator>
#include <random>
#include <sstream>

#include "model/document.h"
#include "support/small_stack.h"

namespace velm {
namespace {

CVelmItem& AddUnit(CVelmDocument& document, bool shown = true) {
    CVelmItem& unit = *document.AddItem(CreateItem(ITEM_VALUE));
    unit.shown = shown ? 1 : 0;
    return unit;
}

CVelmConversion& Join(CVelmConversionDoc& document, std::size_t unit1, std::size_t unit2, double factor = 1.0) {
    CVelmConversion& conversion = *document.AddConversion(std::make_unique<CVelmConversion>(document));
    conversion.unit1 = document.GetItem(unit1);
    conversion.unit2 = document.GetItem(unit2);
    conversion.factor = factor;
    return conversion;
}

void Enter(CVelmDocument& document, std::size_t unit, double value) {
    document.currentItem = document.GetItem(unit);
    document.currentItem->value = value;
    document.currentItem->state = STATE_VALID;
}

/// The search as one would first write it down: recursive, and exponential at its worst.
class PlainSearch {
public:
    PlainSearch(CVelmConversionDoc& document, FormulaContext& context) : document_(document), context_(context) {}

    void Recalculate() {
        for (const auto& item : document_.items) {
            if (item.get() != document_.currentItem) {
                item->state = 0;
            }
        }
        for (const auto& item : document_.items) {
            if (item->shown != 0 && item->state == 0) {
                Solve(*item);
            }
        }
    }

private:
    bool Solve(CVelmItem& target) {
        target.state = 2;
        for (const auto& conversion : document_.conversions) {
            if (conversion->unit2 == &target && conversion->unit1->state == 1) {
                if (Forward(*conversion)) {
                    return true;
                }
            } else if (conversion->unit1 == &target && conversion->unit2->state == 1) {
                if (Reverse(*conversion)) {
                    return true;
                }
            }
        }
        for (const auto& conversion : document_.conversions) {
            if (conversion->unit2 == &target && conversion->unit1->state == 0) {
                if (Solve(*conversion->unit1) && Forward(*conversion)) {
                    return true;
                }
            } else if (conversion->unit1 == &target && conversion->unit2->state == 0) {
                if (Solve(*conversion->unit2) && Reverse(*conversion)) {
                    return true;
                }
            }
        }
        target.state = 0;
        return false;
    }

    bool Forward(const CVelmConversion& conversion) {
        const CVelmItem& from = *conversion.unit1;
        CVelmItem& to = *conversion.unit2;
        if (from.state != 1) {
            return false;
        }
        if (conversion.IsFormula()) {
            return !conversion.forwardFormula.empty() && Formula(conversion.forwardFormula, from, to);
        }
        return Keep(from.value * conversion.factor + conversion.offset, to);
    }

    bool Reverse(const CVelmConversion& conversion) {
        const CVelmItem& from = *conversion.unit2;
        CVelmItem& to = *conversion.unit1;
        if (from.state != 1) {
            return false;
        }
        if (conversion.IsFormula()) {
            return !conversion.reverseFormula.empty() && Formula(conversion.reverseFormula, from, to);
        }
        if (conversion.factor == 0.0) {
            to.state = 2;
            return true;
        }
        return Keep((from.value - conversion.offset) / conversion.factor, to);
    }

    bool Formula(const CVelmString& text, const CVelmItem& from, CVelmItem& to) {
        DefineVariable(context_, u"x", from.value);
        to.state = EvaluateFormula(context_, text, to.value) ? 1 : 2;
        UndefineVariable(context_, u"x");
        return true;
    }

    static bool Keep(double result, CVelmItem& to) {
        to.state = std::isfinite(result) ? 1 : 2;
        if (to.state == 1) {
            to.value = result;
        }
        return true;
    }

    CVelmConversionDoc& document_;
    FormulaContext& context_;
};

const char16_t* const FORMULAS[] = {u"",      u"",    u"x*2", u"x+1",     u"x*3-1", u"x/7",
                                    u"x*x+1", u"err", u"((",  u"1/(x-2)", u"x+y",   u"1e200*x"};

/// A document of a few units with any kind of conversions between them, that is then edited. The same seed gives the
/// same document and the same edits.
class RandomDocument {
public:
    explicit RandomDocument(unsigned seed) : random_(seed) {
        const unsigned hiddenOfTen = Below(8);
        formulasOfTen_ = Below(11);
        for (unsigned i = Below(7) + 2; i > 0; --i) {
            AddUnit(document, Below(10) >= hiddenOfTen).state = static_cast<std::int32_t>(Below(3));
        }
        for (unsigned i = Below(14) + 1; i > 0; --i) {
            AddConversion();
        }
        Enter(document, AnyUnit(), 2.0);
    }

    void Edit() {
        switch (Below(8)) {
            case 0:
                return Enter(document, AnyUnit(), 2.0);
            case 1:
                document.currentItem->state = static_cast<std::int32_t>(Below(3));
                return;
            case 2:
                document.GetItem(AnyUnit())->shown ^= 1;
                return;
            case 3:
                return AddConversion();
            case 4:
                return document.RemoveConversion(&AnyConversion());
            case 5:
                return Change(AnyConversion());
            default:
                document.currentItem->value = Below(5);
        }
    }

    CVelmConversionDoc document{SystemServices()};

private:
    unsigned Below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
    unsigned AnyUnit() { return Below(document.ItemCount()); }

    CVelmConversion& AnyConversion() {
        if (document.conversions.empty()) {
            AddConversion();
        }
        return *document.conversions[Below(document.conversions.size())];
    }

    void AddConversion() {
        const unsigned unit = AnyUnit();
        Change(Join(document, unit, AnyUnit()));
    }

    void Change(CVelmConversion& conversion) {
        constexpr double factors[] = {2.0, -0.5, 1e-3, 1e200, 0.0};
        conversion.factor = factors[Below(std::size(factors))];
        conversion.offset = Below(3) == 0 ? 32.0 : 0.0;
        conversion.formulaFlag = Below(10) < formulasOfTen_ ? 1 : 0;
        conversion.forwardFormula = FORMULAS[Below(std::size(FORMULAS))];
        conversion.reverseFormula = FORMULAS[Below(std::size(FORMULAS))];
    }

    std::mt19937 random_;
    unsigned formulasOfTen_;
};

std::string Describe(CVelmConversionDoc& document, const CVelmConversionDoc& expected) {
    std::ostringstream text;
    for (std::size_t i = 0; i < document.ItemCount(); ++i) {
        const CVelmItem& item = *document.GetItem(i);
        const CVelmItem& right = *expected.GetItem(i);
        text << "unit " << i << (item.shown != 0 ? "" : " hidden") << (&item == document.currentItem ? " current" : "")
             << ": state " << item.state << " value " << item.value << ", expected state " << right.state << " value "
             << right.value << '\n';
    }
    for (const auto& conversion : document.conversions) {
        text << conversion->unit1->index << " <-> " << conversion->unit2->index << ": ";
        if (conversion->IsFormula()) {
            text << '"' << ToUtf8(conversion->forwardFormula) << "\" and \"" << ToUtf8(conversion->reverseFormula)
                 << '"';
        } else {
            text << "x * " << conversion->factor << " + " << conversion->offset;
        }
        text << '\n';
    }
    return text.str();
}

bool SameResults(const CVelmConversionDoc& a, const CVelmConversionDoc& b) {
    for (std::size_t i = 0; i < a.ItemCount(); ++i) {
        const CVelmItem& left = *a.GetItem(i);
        const CVelmItem& right = *b.GetItem(i);
        if (left.state != right.state ||
            (left.state == 1 && std::memcmp(&left.value, &right.value, sizeof(double)) != 0)) {
            return false;
        }
    }
    return true;
}

TEST(ConversionSearch, FindsTheResultsOfThePlainSearchInAnyGraphAndAfterEveryEdit) {
    FormulaContext context(SystemClock());
    int solved = 0;
    int failed = 0;
    for (unsigned seed = 0; seed < 10000; ++seed) {
        RandomDocument tested(seed);
        RandomDocument plain(seed);
        for (int edit = 0; edit < 6; ++edit) {
            tested.document.Recalculate(context);
            PlainSearch(plain.document, context).Recalculate();
            ASSERT_TRUE(SameResults(tested.document, plain.document)) << "seed " << seed << ", edit " << edit << '\n'
                                                                      << Describe(tested.document, plain.document);
            for (const auto& item : tested.document.items) {
                solved += item->state == STATE_VALID ? 1 : 0;
                failed += item->state == STATE_ERROR ? 1 : 0;
            }
            tested.Edit();
            plain.Edit();
        }
    }
    EXPECT_GT(solved, 90000) << "the graphs hardly ever lead anywhere";
    EXPECT_GT(failed, 15000) << "the graphs hardly ever fail";
}

TEST(ConversionSearch, NothingIsFoundWithoutAKnownUnit) {
    FormulaContext context(SystemClock());
    for (const std::int32_t state : {STATE_NONE, STATE_ERROR}) {
        CVelmConversionDoc document(SystemServices());
        AddUnit(document).state = STATE_VALID;
        AddUnit(document);
        Join(document, 0, 1, 2.0);
        document.currentItem = document.GetItem(1);
        document.currentItem->state = state;
        document.Recalculate(context);
        EXPECT_EQ(document.GetItem(0)->state, STATE_NONE);
        EXPECT_EQ(document.GetItem(1)->state, state);
        document.currentItem = nullptr;
        document.Recalculate(context);
        EXPECT_EQ(document.GetItem(1)->state, STATE_NONE);
    }
}

TEST(ConversionSearch, AChainOfFiftyThousandBridgesNeedsLittleStack) {
    constexpr std::size_t units = 50000;
    CVelmConversionDoc document(SystemServices());
    for (std::size_t i = 0; i < units; ++i) {
        AddUnit(document, i == 0);
    }
    for (std::size_t i = 1; i < units; ++i) {
        Join(document, i - 1, i, 1.0).offset = 1.0;
    }
    Enter(document, units - 1, 0.0);
    FormulaContext context(SystemClock());
    ASSERT_TRUE(RunOnStackOf(1 << 20, [&] { document.Recalculate(context); }));
    EXPECT_EQ(document.GetItem(0)->state, STATE_VALID);
    EXPECT_EQ(document.GetItem(0)->value, 1.0 - static_cast<double>(units));
}

/// Unit 0 is known; 300 others are all joined to each other, and to unit 0 as `attach` wants it.
template <typename Attach>
void ExpectQuickSearch(Attach attach) {
    constexpr std::size_t others = 300;
    CVelmConversionDoc document(SystemServices());
    for (std::size_t i = 0; i <= others; ++i) {
        AddUnit(document);
    }
    for (std::size_t i = 1; i <= others; ++i) {
        for (std::size_t j = 1; j < i; ++j) {
            Join(document, j, i);
        }
    }
    attach(document);
    Enter(document, 0, 1.0);
    FormulaContext context(SystemClock());
    const std::clock_t start = std::clock();
    document.Recalculate(context);
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 0.1);
    EXPECT_EQ(document.GetItem(1)->state, STATE_NONE);
}

TEST(ConversionSearch, ADenseGraphThatCannotBeReachedCostsLittle) {
    ExpectQuickSearch([](CVelmConversionDoc&) {});
    ExpectQuickSearch([](CVelmConversionDoc& document) {
        CVelmConversion& oneWay = Join(document, 0, 300);
        oneWay.formulaFlag = 1;
        oneWay.reverseFormula = u"x";
    });
    ExpectQuickSearch([](CVelmConversionDoc& document) {
        for (std::size_t unit = 2; unit <= 300; unit += 3) {
            CVelmConversion& failing = Join(document, 0, unit);
            failing.formulaFlag = 1;
            failing.forwardFormula = u"err";
        }
    });
}

}  // namespace
}  // namespace velm
