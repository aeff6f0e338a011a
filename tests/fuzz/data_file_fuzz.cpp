#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "model/document.h"
#include "support/memory_files.h"
#include "support/test_services.h"

namespace velm::test {
namespace {

// The first byte of an input says how the rest is taken.
constexpr std::uint8_t AS_CALCULATION = 1;
constexpr std::uint8_t CORRECT_SIZE = 2;  ///< writes the true length into the size word

constexpr auto FOLDER = u"data";
constexpr std::size_t SIZE_POSITION = 4;

void Expect(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

bool Same(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

bool Same(const CVelmItem& a, const CVelmItem& b) {
    const bool texts = a.name == b.name && a.identifier == b.identifier && a.valueText == b.valueText;
    const bool formats = a.format.allowedFormats == b.format.allowedFormats &&
                         a.format.displayFormat == b.format.displayFormat &&
                         a.format.inputFormat == b.format.inputFormat;
    bool parts = true;
    for (std::size_t i = 0; i < a.format.compoundParts.size(); ++i) {
        parts = parts && a.format.compoundParts[i].label == b.format.compoundParts[i].label &&
                Same(a.format.compoundParts[i].factor, b.format.compoundParts[i].factor);
    }
    // Parts of an item that does not allow them are not kept.
    parts = parts || (a.format.allowedFormats & FMT_COMPOUND) == 0;
    return texts && formats && parts && a.GetType() == b.GetType() && a.shown == b.shown &&
           a.IsOutput() == b.IsOutput();
}

bool Same(const CVelmConversion& a, const CVelmConversion& b) {
    return a.formulaFlag == b.formulaFlag && a.unit1->index == b.unit1->index && a.unit2->index == b.unit2->index &&
           Same(a.factor, b.factor) && Same(a.offset, b.offset) && a.forwardFormula == b.forwardFormula &&
           a.reverseFormula == b.reverseFormula;
}

void ExpectSame(const CVelmDocument& a, const CVelmDocument& b) {
    Expect(a.title == b.title && a.category == b.category && a.updatedText == b.updatedText, "same header");
    Expect(a.ItemCount() == b.ItemCount(), "same number of items");
    for (std::size_t i = 0; i < a.ItemCount(); ++i) {
        Expect(Same(*a.items[i], *b.items[i]), "same item");
    }
    if (a.GetKind() != KIND_CONVERSION) {
        return;
    }
    const auto& first = static_cast<const CVelmConversionDoc&>(a).conversions;
    const auto& second = static_cast<const CVelmConversionDoc&>(b).conversions;
    Expect(first.size() == second.size(), "same number of conversions");
    for (std::size_t i = 0; i < first.size(); ++i) {
        Expect(Same(*first[i], *second[i]), "same conversion");
    }
}

/// Computes and writes every value, whatever factors and formulas the file holds.
void CalculateAndFormat(CVelmDocument& document, const TestServices& services) {
    FormulaContext context(services.clock);
    if (document.GetKind() == KIND_CONVERSION && document.ItemCount() > 0) {
        document.currentItem = document.GetItem(0);
        document.currentItem->value = 2.5;
        document.currentItem->state = STATE_VALID;
    }
    document.Recalculate(context);
    for (const auto& item : document.items) {
        item->format.FormatValue(item->value, services.locale);
        item->format.FormatValueForInput(item->value);
    }
}

void LoadSaveAndLoad(std::uint8_t how, Bytes bytes) {
    MemoryFiles files;
    TestServices services(files);
    const std::int32_t kind = (how & AS_CALCULATION) != 0 ? KIND_CALCULATION : KIND_CONVERSION;
    if ((how & CORRECT_SIZE) != 0 && bytes.size() >= SIZE_POSITION + 4) {
        const auto size = static_cast<std::uint32_t>(bytes.size());
        std::memcpy(bytes.data() + SIZE_POSITION, &size, sizeof size);
    }
    const auto document = CreateDocument(kind, services.Services());
    document->fileName = u"f";
    files.Add(document->PathIn(FOLDER), std::move(bytes));
    document->Load(FOLDER, false);
    if (!document->Load(FOLDER, true)) {
        Expect(document->items.empty(), "no items after a failed load");
        return;
    }
    Expect(document->Save(FOLDER), "what was loaded can be saved");
    const auto again = CreateDocument(kind, services.Services());
    Expect(again->Load(FOLDER, true, u"f"), "what was saved can be loaded");
    Expect(again->DroppedRecords() == 0, "what was saved can be loaded whole");
    ExpectSame(*document, *again);
    CalculateAndFormat(*document, services);
}

}  // namespace
}  // namespace velm::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 0) {
        velm::test::LoadSaveAndLoad(data[0], velm::test::Bytes(data + 1, data + size));
    }
    return 0;
}
