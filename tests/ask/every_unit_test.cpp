#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "ask_folder.h"
#include "model/conversion_engine.h"

// Every unit of every shipped conversion file, asked for in words, has the value that the file's own conversions give.

namespace velm::test {
namespace {

/// A unit, and another one of its file that 1 of it converts to.
struct UnitPair {
    const CVelmItem* unit;
    const CVelmItem* other;
    double value;
};

std::vector<UnitPair> PairsOf(CVelmConversionDoc& document, FormulaContext& context) {
    std::vector<UnitPair> pairs;
    const std::size_t count = document.ItemCount();
    for (std::size_t i = 0; i < count; ++i) {
        CVelmItem& unit = *document.GetItem(i);
        for (std::size_t step = 1; step < count; ++step) {
            const CVelmItem* const other = document.GetItem((i + step) % count);
            unit.SetValue(1.0);
            SolveConversions(document.items, document.conversions, &unit, {&other, 1}, context);
            if (other->state == STATE_VALID) {
                pairs.push_back({&unit, other, other->value});
                break;
            }
        }
    }
    return pairs;
}

/// One of what a name names several of.
CVelmString Singular(const CVelmString& name) {
    return name.ends_with(u's') && name.find(u' ') == CVelmString::npos ? name.substr(0, name.size() - 1) : name;
}

class EveryUnit : public testing::Test {
protected:
    bool HasValue(const CVelmString& question, double value) {
        const CVelmAnswer answer = folder_.Ask(ToUtf8(question));
        return answer.ok && answer.rows.size() == 1 &&
               std::fabs(answer.rows[0].value - value) <= 1e-12 * std::fabs(value);
    }

    /// By itself, or else, where the words mean other units as well, in the file that is named.
    void Check(const CVelmString& file, const CVelmString& unit, const CVelmString& other, double value) {
        if (unit.empty() || other.empty() || IsDigit(unit[0])) {
            return;  // a digit goes on the number before it
        }
        ++asked_;
        const CVelmString question = u"1 " + unit + u" in " + other;
        if (HasValue(question, value)) {
            ++understood_;
            return;
        }
        EXPECT_TRUE(HasValue(file + u' ' + question, value))
            << ToUtf8(file + u' ' + question) << " should be " << value << "\n"
            << ToUtf8(folder_.Ask(ToUtf8(file + u' ' + question)).Line()) << "\n"
            << ToUtf8(folder_.Ask(ToUtf8(file + u' ' + question)).fault.message);
    }

    AskFolder folder_;
    int asked_ = 0;
    int understood_ = 0;
};

TEST_F(EveryUnit, HasTheValueOfItsConversions) {
    const auto entries = SystemFiles().List(folder_.Path());
    for (const CVelmFolderEntry& entry : entries.value()) {
        if (KindOfFileName(entry.name) != KIND_CONVERSION) {
            continue;
        }
        const CVelmString file = entry.name.substr(0, entry.name.size() - 4);
        CVelmConversionDoc document(folder_.Services());
        document.Load(folder_.Path(), true, file);
        if (document.GetItem(0)->format.displayFormat == FMT_DATETIME) {
            continue;  // times of day are asked for in another way
        }
        for (const UnitPair& pair : PairsOf(document, folder_.Context())) {
            SCOPED_TRACE(ToUtf8(file));
            Check(file, pair.unit->identifier, pair.other->identifier, pair.value);
            Check(file, pair.unit->name, pair.other->name, pair.value);
            Check(file, Singular(pair.unit->name), Singular(pair.other->name), pair.value);
        }
    }
    EXPECT_GT(asked_, 3500);
    EXPECT_GT(understood_, asked_ * 9 / 10);
}

}  // namespace
}  // namespace velm::test
