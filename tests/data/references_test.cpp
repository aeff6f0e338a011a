#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <utility>

#include "data/data_file.h"
#include "formula/functions.h"
#include "formula/operators.h"
#include "htmlview/html_document.h"
#include "model/reference_list.h"
#include "support/table.h"

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

/// The cells of a page's tables, row by row, as a reader sees them.
std::vector<std::vector<CVelmString>> TableRows(const CVelmString& page) {
    std::vector<std::vector<CVelmString>> rows;
    for (const HtmlBlock& block : ReadHtml(page).blocks) {
        rows.emplace_back();
        for (const HtmlParagraph& cell : block.cells) {
            rows.back().emplace_back();
            for (const HtmlRun& run : cell.runs) {
                rows.back().back() += run.text;
            }
        }
    }
    return rows;
}

TEST(References, ExplainEveryOperatorAndFunctionWithExamplesThatHold) {
    TestServices services;
    FormulaContext context(services.clock);
    const CVelmString page = ReadPage(u"Formula language");
    CVelmString operators;
    for (const auto& cells : TableRows(page)) {
        const std::size_t equals = cells.empty() ? CVelmString::npos : cells.back().rfind(u" = ");
        if (cells.size() != 4 || equals == CVelmString::npos) {
            continue;
        }
        operators += cells[1].front();
        const CVelmString& example = cells.back();
        double value = 0.0;
        double expected = 1.0;
        EXPECT_TRUE(EvaluateFormula(context, example.substr(0, equals), value)) << ToUtf8(example);
        EXPECT_TRUE(EvaluateFormula(context, example.substr(equals + 3), expected)) << ToUtf8(example);
        EXPECT_DOUBLE_EQ(value, expected) << ToUtf8(example);
    }
    EXPECT_EQ(operators.size(), std::size_t{OP_COUNT});
    for (const OperatorRow& row : OPERATORS) {
        EXPECT_NE(operators.find(row.character), CVelmString::npos) << ToUtf8(CVelmString(1, row.character));
    }
    for (const FunctionRow& function : Functions()) {
        const CVelmString name(function.name);
        EXPECT_NE(page.find(function.arity == 0 ? u"<td>" + name + u"</td>" : name + u"("), CVelmString::npos)
            << ToUtf8(name);
    }
    EXPECT_NE(page.find(u"iif("), CVelmString::npos);
}

TEST(References, HaveASectionForEveryDataFileAndALinkToIt) {
    for (const auto& [page, kind] :
         {std::pair{u"Sources of the units", KIND_CONVERSION}, {u"About the calculations", KIND_CALCULATION}}) {
        HtmlDocument document = ReadHtml(ReadPage(page));
        std::vector<CVelmString> targets;
        for (const CVelmString& anchor : document.anchors) {
            targets.push_back(u"#" + anchor);
        }
        EXPECT_EQ(document.links, targets);
        std::sort(document.anchors.begin(), document.anchors.end());
        EXPECT_EQ(document.anchors, DataFileNames(kind));
    }
}

TEST(Documents, ListEveryDataFile) {
    std::set<std::string> listed;
    for (const auto& cells : ReadTable(VELMORA_FILE_LIST, "|")) {
        const bool isFileRow = cells.size() == 5 && cells[2] != "file" && cells[2] != "---";
        const std::vector<std::string> names = isFileRow ? Split(cells[2], ",") : std::vector<std::string>();
        listed.insert(names.begin(), names.end());
    }
    std::set<std::string> present;
    for (const std::int32_t kind : {KIND_CONVERSION, KIND_CALCULATION}) {
        for (const CVelmString& name : DataFileNames(kind)) {
            present.insert(ToUtf8(name.substr(0, name.rfind(u'.'))));
        }
    }
    EXPECT_EQ(listed, present);
}

}  // namespace
}  // namespace velm::test
