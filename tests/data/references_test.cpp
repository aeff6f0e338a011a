#include <gtest/gtest.h>

#include <algorithm>

#include "data/data_file.h"
#include "formula/functions.h"
#include "formula/operators.h"
#include "model/reference_list.h"

namespace velm::test {
namespace {

CVelmString ReadPage(CVelmStringView name) {
    CVelmReferenceList references(SystemServices());
    references.ScanReferences(DataFolder());
    const auto found = std::find(references.names.begin(), references.names.end(), name);
    CVelmString text;
    EXPECT_TRUE(references.ReadReference(static_cast<std::size_t>(found - references.names.begin()), text))
        << ToUtf8(name);
    return text;
}

void ReplaceAll(CVelmString& text, CVelmStringView from, CVelmStringView to) {
    for (std::size_t at = text.find(from); at != CVelmString::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

/// The cells of a page's tables, row by row, as a reader sees them.
std::vector<std::vector<CVelmString>> TableRows(const CVelmString& page) {
    std::vector<std::vector<CVelmString>> rows;
    std::size_t at = 0;
    while ((at = page.find(u"<tr>", at)) != CVelmString::npos) {
        const std::size_t end = page.find(u"</tr>", at);
        rows.emplace_back();
        while ((at = page.find(u"<td>", at)) < end) {
            at += 4;
            CVelmString cell = page.substr(at, page.find(u"</td>", at) - at);
            for (const auto& [entity, character] :
                 {std::pair(u"&#178;", u"\u00B2"), std::pair(u"&#179;", u"\u00B3"), std::pair(u"&lt;", u"<"),
                  std::pair(u"&gt;", u">"), std::pair(u"&amp;", u"&")}) {
                ReplaceAll(cell, entity, character);
            }
            rows.back().push_back(cell);
        }
        at = end;
    }
    return rows;
}

TEST(References, ExplainEveryOperatorAndFunction) {
    const CVelmString page = ReadPage(u"Formula language");
    const std::vector<std::vector<CVelmString>> rows = TableRows(page);
    for (const OperatorRow& row : OPERATORS) {
        const char16_t character = row.character;
        EXPECT_TRUE(std::any_of(rows.begin(), rows.end(), [&](const auto& cells) {
            return cells.size() == 4 && cells[1].front() == character;
        })) << ToUtf8(CVelmString(1, character));
    }
    for (const FunctionRow& function : Functions()) {
        const CVelmString name(function.name);
        EXPECT_NE(page.find(function.arity == 0 ? u"<td>" + name + u"</td>" : name + u"("), CVelmString::npos)
            << ToUtf8(name);
    }
    EXPECT_NE(page.find(u"iif("), CVelmString::npos);
}

TEST(References, GiveExamplesThatHold) {
    TestServices services;
    FormulaContext context(services.clock);
    int examples = 0;
    for (const auto& cells : TableRows(ReadPage(u"Formula language"))) {
        const std::size_t equals = cells.empty() ? CVelmString::npos : cells.back().rfind(u" = ");
        if (cells.size() != 4 || equals == CVelmString::npos) {
            continue;
        }
        const CVelmString& example = cells.back();
        double value = 0.0;
        double expected = 1.0;
        EXPECT_TRUE(EvaluateFormula(context, example.substr(0, equals), value)) << ToUtf8(example);
        EXPECT_TRUE(EvaluateFormula(context, example.substr(equals + 3), expected)) << ToUtf8(example);
        EXPECT_DOUBLE_EQ(value, expected) << ToUtf8(example);
        ++examples;
    }
    EXPECT_EQ(examples, OP_COUNT);
}

TEST(References, ArePlainPagesOfTheHandheldsViewer) {
    for (const char16_t* name : {u"SI prefixes", u"Physical constants", u"Formula language"}) {
        const CVelmString page = ReadPage(name);
        EXPECT_TRUE(page.starts_with(u"<html>")) << ToUtf8(name);
        EXPECT_TRUE(std::all_of(page.begin(), page.end(), [](char16_t unit) { return unit < 0x80; })) << ToUtf8(name);
    }
}

}  // namespace
}  // namespace velm::test
