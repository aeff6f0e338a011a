#include <cstring>

#include "fuzz/fuzz.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

// The first byte of an input selects how the rest is used.
constexpr std::uint8_t AS_CALCULATION = 1;
constexpr std::uint8_t CORRECT_SIZE = 2;  ///< writes the true length into the size word

constexpr auto FOLDER = u"data";
constexpr std::size_t SIZE_POSITION = 4;

std::string Content(const CVelmDocument& document) {
    std::string text = ToUtf8(document.title + u"|" + document.category + u"|" + document.updatedText);
    for (const auto& item : document.items) {
        text += "\n" + std::to_string(item->GetType()) + Describe(*item);
    }
    return document.GetKind() == KIND_CONVERSION ? text + Conversions(static_cast<const CVelmConversionDoc&>(document))
                                                 : text;
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

}  // namespace

void Try(Input input) {
    if (input.empty()) {
        return;
    }
    MemoryFiles files;
    TestServices services(files);
    const std::int32_t kind = (input[0] & AS_CALCULATION) != 0 ? KIND_CALCULATION : KIND_CONVERSION;
    Bytes bytes(input.begin() + 1, input.end());
    if ((input[0] & CORRECT_SIZE) != 0 && bytes.size() >= SIZE_POSITION + 4) {
        const auto size = static_cast<std::uint32_t>(bytes.size());
        std::memcpy(bytes.data() + SIZE_POSITION, &size, sizeof size);
    }
    const auto document = CreateDocument(kind, services.Services());
    document->fileName = u"f";
    const CVelmString path = document->PathIn(FOLDER);
    files.Add(path, std::move(bytes));
    document->Load(FOLDER, false);
    if (!document->Load(FOLDER, true)) {
        Require(document->items.empty(), "no items after a failed load");
        return;
    }
    Require(document->Save(FOLDER), "what was loaded can be saved");
    const Bytes saved = files.Content(path);
    const auto again = CreateDocument(kind, services.Services());
    Require(again->Load(FOLDER, true, u"f"), "what was saved can be loaded");
    Require(again->droppedRecords == 0, "what was saved can be loaded whole");
    Require(Content(*again) == Content(*document), "what was saved is what was loaded");
    Require(again->Save(FOLDER) && files.Content(path) == saved, "the same is written again");
    CalculateAndFormat(*document, services);
}

}  // namespace velm::test
