#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/text.h"

namespace velm {

/// What people call units, and what they measure: the knowledge that data files cannot hold. docs/data-files.md
/// describes its text form.

/// Words for an item of a data file.
struct CVelmItemWords {
    CVelmString item;                ///< its identifier, or its name
    std::vector<CVelmString> words;  ///< each also means the item
    std::vector<CVelmString> first;  ///< words for which this item is the preferred one
    CVelmString unit;                ///< of a calculation's input: the word of the unit that it is in
};

/// What is known about a data file.
struct CVelmFileWords {
    CVelmString file;                        ///< its name without extension
    std::vector<CVelmString> called;         ///< words for the file itself
    CVelmString quantity;                    ///< what it measures, for messages: "mass"
    CVelmString dimension;                   ///< as ParseDimension reads it; empty: unknown
    CVelmString coherent;                    ///< how many of which item make the coherent unit: "m", "1000 L"
    std::vector<CVelmString> results;        ///< items that results of the dimension are shown in, smallest first
    std::vector<CVelmString> prefixed;       ///< words that take every prefix
    std::vector<CVelmString> largePrefixed;  ///< words that take the prefixes above one
    CVelmString months;                      ///< the item that moves dates by calendar months
    CVelmString years;                       ///< the same by years
    bool isSecondary = false;                ///< its identifiers and names count only where no other file's fit
    std::vector<CVelmItemWords> items;
};

/// A prefix: "k", "kilo", 1000.
struct CVelmUnitPrefix {
    CVelmString symbol;
    CVelmString name;
    double factor = 1.0;
};

/// Another way of writing a part of a word: "metre" is "meter".
struct CVelmSpelling {
    CVelmString written;
    CVelmString meant;
};

struct CVelmUnitWords {
    std::vector<CVelmUnitPrefix> prefixes;
    std::vector<CVelmSpelling> spellings;
    std::vector<CVelmFileWords> files;
};

/// Adds the lines of a text to what is known already; a line that says what an earlier one said replaces it, lists are
/// joined. Lines that mean nothing are skipped, and the first one's number (from 1) is returned.
std::optional<std::size_t> ReadUnitWords(CVelmStringView text, CVelmUnitWords& words);

/// One file's lines in the text form.
CVelmString UnitWordsText(const CVelmFileWords& file);

}  // namespace velm
