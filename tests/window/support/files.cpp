#include "support/files.h"

#include <gtest/gtest.h>

#include "platform/services.h"

namespace velm::test {
namespace {

void Save(const RunningProgram& program, CVelmDocument& document, CVelmStringView title) {
    document.title = title;
    document.fileName = title;
    EXPECT_TRUE(document.Save(program.DataFolder())) << "cannot write " << ToUtf8(title);
}

}  // namespace

void SaveConversionFile(const RunningProgram& program, CVelmStringView title, const std::vector<UnitFactor>& units) {
    CVelmConversionDoc document(SystemServices());
    for (const UnitFactor& unit : units) {
        CVelmItem* const item = document.AddItem(CreateItem(ITEM_VALUE));
        item->name = unit.name;
        item->identifier = unit.identifier;
        if (document.ItemCount() > 1) {
            auto conversion = std::make_unique<CVelmConversion>(document);
            conversion->unit1 = document.GetItem(0);
            conversion->unit2 = item;
            conversion->factor = unit.factor;
            document.AddConversion(std::move(conversion));
        }
    }
    Save(program, document, title);
}

void SaveCalculationFile(const RunningProgram& program, CVelmStringView title,
                         const std::vector<CalculationItem>& items) {
    CVelmCalculationDoc document(SystemServices());
    for (const CalculationItem& entry : items) {
        auto item = std::make_unique<CVelmFormulaItem>();
        item->name = entry.name;
        item->identifier = entry.identifier;
        item->output = entry.formula.empty() ? 0 : 1;
        item->valueText = entry.formula;
        document.AddItem(std::move(item));
    }
    Save(program, document, title);
}

std::unique_ptr<CVelmDocument> LoadFile(const RunningProgram& program, CVelmStringView name) {
    auto document = CreateDocument(KindOfFileName(name), SystemServices());
    const CVelmString bare(name.substr(0, name.size() - 4));
    return document != nullptr && document->Load(program.DataFolder(), true, bare) ? std::move(document) : nullptr;
}

Bytes ReadBytes(const RunningProgram& program, CVelmStringView name) {
    return program.Folder().Read(u"Conversions\\" + CVelmString(name));
}

void WriteBytes(const RunningProgram& program, CVelmStringView name, std::string_view bytes) {
    program.Folder().WriteText(u"Conversions\\" + CVelmString(name), bytes);
}

}  // namespace velm::test
