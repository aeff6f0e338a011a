#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "ask/quantity.h"
#include "platform/text.h"

namespace velm {

// Every word that names a unit, a file or an input of a calculation, and what it names. The records are plain data, so
// that a cache of the index is read without being parsed: that is most of what a question takes at the terminal.

constexpr std::uint32_t INDEX_NO_ITEM = 0xFFFFFFFF;

/// What the words say instead of a dimension about a file whose values are dates and times.
inline constexpr CVelmStringView DATE_DIMENSION = u"date";

/// A part of the index's text.
struct IndexText {
    std::uint32_t start = 0;
    std::uint32_t length = 0;
};

/// What tells whether a file is the one that was indexed.
struct IndexStamp {
    std::uint64_t size = 0;
    std::uint64_t lastWrite = 0;

    bool operator==(const IndexStamp&) const = default;
};

/// A data file.
struct IndexFile {
    IndexText name;  ///< with extension
    IndexText title;
    IndexText quantity;  ///< what it measures; empty: unknown
    IndexStamp stamp;
    std::int32_t kind = 0;
    std::uint32_t firstItem = 0;
    std::uint32_t itemCount = 0;
    std::uint32_t firstResult = 0;  ///< the items that results are shown in
    std::uint32_t resultCount = 0;
    std::uint32_t isSecondary = 0;
    std::uint32_t hasDimension = 0;
    std::uint32_t isDate = 0;  ///< its units are time zones
    std::uint32_t coherentItem = INDEX_NO_ITEM;
    std::int8_t halves[BASE_COUNT] = {};
    std::int8_t unused[2] = {};

    CVelmDimension Dimension() const;
};

enum IndexItemFlag : std::uint32_t {
    INDEX_ITEM_SHOWN = 1,
    INDEX_ITEM_MONEY = 2,   ///< takes the currency format
    INDEX_ITEM_MONTHS = 4,  ///< moves dates by calendar months
    INDEX_ITEM_YEARS = 8,
    INDEX_ITEM_OUTPUT = 16,  ///< of a calculation
    INDEX_ITEM_DATE = 32,    ///< takes a date format
};

/// A unit, or an input or output of a calculation.
struct IndexItem {
    IndexText identifier;
    IndexText name;
    IndexText unit;       ///< the word of an input's unit
    double factor = 0.0;  ///< coherent units in one of this unit; 0: it is no factor of them
    std::uint32_t file = 0;
    std::uint32_t position = 0;  ///< in its file
    std::uint32_t flags = 0;
    std::uint32_t unused = 0;
};

/// How much a word's reading counts; smaller is better.
enum IndexRank : std::uint8_t { RANK_PREFERRED, RANK_NORMAL, RANK_PART, RANK_UNLIKELY, RANK_SECONDARY };

enum IndexWordFlag : std::uint8_t {
    INDEX_WORD_ANY_CASE = 1,  ///< a name rather than a symbol: letter case never matters
    INDEX_WORD_PREFIXES = 2,  ///< takes every prefix
    INDEX_WORD_LARGE_PREFIXES = 4,
    INDEX_WORD_INPUT = 8,  ///< of a calculation's item, which only its own questions name
    INDEX_WORD_FILE = 16,  ///< names a file
};

/// A word in the form that WordKey gives it. Sorted by its folded form and then by rank.
struct IndexWord {
    std::uint32_t key = 0;     ///< where it starts in the index's text
    std::uint32_t folded = 0;  ///< and its folded form, which is as long
    std::uint32_t meaning = 0;
    std::uint16_t length = 0;
    std::uint8_t rank = RANK_NORMAL;
    std::uint8_t flags = 0;

    /// The item that it names; INDEX_NO_ITEM for the word of a file.
    std::uint32_t Item() const { return (flags & INDEX_WORD_FILE) != 0 ? INDEX_NO_ITEM : meaning; }
};

struct IndexPrefix {
    IndexText symbol;
    IndexText name;
    double factor = 1.0;
};

struct IndexSpelling {
    IndexText written;
    IndexText meant;
};

/// What a word can mean.
struct CVelmReading {
    std::uint32_t item = INDEX_NO_ITEM;
    std::uint32_t file = 0;
    std::uint32_t prefix = INDEX_NO_ITEM;  ///< index among the prefixes
    std::uint8_t rank = RANK_NORMAL;
    bool isOtherCase = false;  ///< found only by forgiving the letter case
};

/// One name of the index that is near to a word.
struct CVelmNearWord {
    CVelmString word;
    std::uint32_t file = 0;
};

/// The lists of an index while it is made.
struct IndexLists {
    std::vector<IndexFile> files;
    std::vector<IndexItem> items;
    std::vector<IndexPrefix> prefixes;
    std::vector<IndexSpelling> spellings;
    std::vector<IndexWord> words;
    std::vector<std::uint32_t> results;
    CVelmString pool;
};

/// The bytes of an index, in words of eight.
struct IndexBlock {
    std::unique_ptr<std::uint64_t[]> words;
    std::size_t count = 0;

    explicit IndexBlock(std::size_t size = 0)
        : words(size > 0 ? std::make_unique_for_overwrite<std::uint64_t[]>(size) : nullptr), count(size) {}
    std::span<const std::uint64_t> Span() const { return {words.get(), count}; }
};

/// The lists lie in one block of bytes, which is also what a cache holds.
class CVelmUnitIndex {
public:
    CVelmUnitIndex() = default;
    CVelmUnitIndex(const CVelmUnitIndex&) = delete;
    CVelmUnitIndex& operator=(const CVelmUnitIndex&) = delete;
    CVelmUnitIndex(CVelmUnitIndex&&) = default;
    CVelmUnitIndex& operator=(CVelmUnitIndex&&) = default;
    ~CVelmUnitIndex() = default;

    std::span<const IndexFile> files;
    std::span<const IndexItem> items;
    std::span<const IndexPrefix> prefixes;
    std::span<const IndexSpelling> spellings;
    std::span<const IndexWord> words;
    std::span<const std::uint32_t> results;
    CVelmStringView pool;

    CVelmStringView Text(const IndexText& text) const { return Part(text.start, text.length); }
    CVelmStringView KeyOf(const IndexWord& word) const { return Part(word.key, word.length); }
    CVelmStringView FoldedOf(const IndexWord& word) const { return Part(word.folded, word.length); }
    std::uint32_t FileOf(const IndexWord& word) const {
        return word.Item() == INDEX_NO_ITEM ? word.meaning : items[word.meaning].file;
    }

    /// Everything that a word means, best readings first: of its exact letter case, with a prefix, in any letter case,
    /// and then of its other number and spelling. Empty when it means nothing.
    void FindUnits(CVelmStringView word, std::vector<CVelmReading>& readings) const;

    /// The items of one calculation that a word names.
    std::vector<std::uint32_t> FindInputs(CVelmStringView word, std::uint32_t file) const;

    /// The files that a word names.
    std::vector<std::uint32_t> FindFiles(CVelmStringView word) const;

    /// The names nearest to an unknown word, nearest first, each once; calculations sooner when they can be meant.
    std::vector<CVelmNearWord> Nearest(CVelmStringView word, std::size_t limit, bool calculations) const;

    /// The words whose folded form begins with that of a text: positions in `words`.
    std::pair<std::size_t, std::size_t> RangeOf(CVelmStringView beginning) const;

    /// A word as the index compares it: blanks and hyphens single, without brackets and commas, special letters
    /// replaced as the spellings say.
    CVelmString WordKey(CVelmStringView word) const;

    /// Coherent units in one of the unit of a reading, its prefix included; 0 when it is no factor.
    double FactorOf(const CVelmReading& reading) const;
    const IndexItem& ItemOf(const CVelmReading& reading) const { return items[reading.item]; }
    const IndexFile& FileOf(const CVelmReading& reading) const { return files[reading.file]; }

    /// The identifier or name with the prefix before it.
    CVelmString LabelOf(const CVelmReading& reading) const;
    CVelmString NameOf(const CVelmReading& reading) const;

    /// Takes a block that IndexBytes made; false, with nothing changed, for any other.
    bool TakeBytes(IndexBlock block);
    const IndexBlock& Bytes() const { return block_; }

private:
    CVelmStringView Part(std::uint32_t start, std::uint32_t length) const {
        return start <= pool.size() ? pool.substr(start, length) : CVelmStringView();
    }
    std::span<const IndexWord> WordsWith(CVelmStringView folded) const;
    void FindKey(const CVelmString& key, const CVelmString& folded, bool anyCase,
                 std::vector<CVelmReading>& readings) const;
    void FindPrefixed(const CVelmString& key, const CVelmString& folded, bool anyCase,
                      std::vector<CVelmReading>& readings) const;
    void AddPlural(const CVelmString& key, std::vector<CVelmReading>& readings) const;
    bool IsCommonPrefix(std::uint32_t prefix) const;
    bool FindInAnyForm(const CVelmString& key, std::vector<CVelmReading>& readings) const;

    IndexBlock block_;
};

IndexBlock IndexBytes(const IndexLists& lists);

/// CVelmUnitIndex::WordKey for an index that is being made.
CVelmString MakeWordKey(CVelmStringView word, std::span<const IndexSpelling> spellings, CVelmStringView pool);

}  // namespace velm
