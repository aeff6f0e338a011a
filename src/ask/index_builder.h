#pragma once

#include <unordered_map>
#include <vector>

#include "ask/unit_index.h"
#include "ask/unit_words.h"
#include "formula/formula_context.h"
#include "model/document.h"

namespace velm {

/// Collects the words of data files into an index.
class CVelmIndexBuilder {
public:
    /// What is known about the files, and the context that their formulas are computed in; both outlive the builder.
    CVelmIndexBuilder(const CVelmUnitWords& words, FormulaContext& context);

    /// Adds a file that is loaded whole. Its values are overwritten: the factor of each unit is what the conversions
    /// make of 1. `name` is the file's, with extension, as the folder spells it.
    void Add(CVelmDocument& document, CVelmStringView name, const IndexStamp& stamp);

    /// The finished index. To be called once.
    CVelmUnitIndex Finish();

private:
    struct Coherent {
        const CVelmItem* item = nullptr;
        double scale = 1.0;
    };

    IndexText Keep(CVelmStringView text);
    CVelmStringView Text(std::uint32_t start, std::uint32_t length) const {
        return CVelmStringView(lists_.pool).substr(start, length);
    }
    Coherent FindCoherent(const CVelmDocument& document, const CVelmFileWords& words) const;
    void AddItems(CVelmDocument& document, const CVelmFileWords& words, const Coherent& coherent);
    void AddItemWords(const CVelmItem& item, const CVelmFileWords& words, std::uint32_t index);
    void AddWord(CVelmStringView text, std::uint32_t meaning, std::uint8_t rank, std::uint8_t flags);
    void AddFileWord(CVelmStringView text);

    const CVelmUnitWords& words_;
    FormulaContext& context_;
    IndexLists lists_;
    std::unordered_map<CVelmString, IndexText> kept_;  ///< each text is stored once
};

}  // namespace velm
