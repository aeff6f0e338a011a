#include "ask/unit_index.h"

#include <algorithm>
#include <cstring>

#include "model/document_kinds.h"
#include "platform/text_distance.h"

namespace velm {

namespace {

constexpr std::uint64_t MAGIC = 0x3130'5844'494D'4C56;  // to be changed with the records

bool IsBlank(char16_t unit) {
    return unit == u' ' || unit == u'\t' || unit == u'-' || unit == u'_' || unit == 0xA0 || unit == 0x2009 ||
           unit == 0x202F || unit == 0x2011 || unit == 0x2013;
}

bool IsLeftOut(char16_t unit) {
    return unit == u'(' || unit == u')' || unit == u',' || unit == u'^';
}

bool IsUnit(const IndexWord& word) {
    return (word.flags & (INDEX_WORD_INPUT | INDEX_WORD_FILE)) == 0;
}

/// Four sums side by side, which a processor computes at once: one alone would take longer than reading the file.
std::uint64_t Checksum(std::span<const std::uint64_t> words) {
    static constexpr std::size_t LANES = 4;
    static constexpr std::uint64_t FACTOR = 0x9E37'79B9'7F4A'7C15;
    std::array<std::uint64_t, LANES> sums = {words.size(), 1, 2, 3};
    std::size_t at = 0;
    for (; at + LANES <= words.size(); at += LANES) {
        for (std::size_t lane = 0; lane < LANES; ++lane) {
            sums[lane] = (sums[lane] ^ words[at + lane]) * FACTOR;
        }
    }
    for (; at < words.size(); ++at) {
        sums[0] = (sums[0] ^ words[at]) * FACTOR;
    }
    std::uint64_t sum = 0;
    for (const std::uint64_t lane : sums) {
        sum = (sum ^ lane ^ lane >> 32) * FACTOR;
    }
    return sum;
}

constexpr std::size_t HEAD_WORDS = 2;

template <typename List>
void Append(std::vector<std::uint64_t>& bytes, const List& list) {
    const std::size_t size = list.size() * sizeof(list[0]);
    const std::size_t start = bytes.size() + 1;
    bytes.push_back(list.size());
    bytes.resize(start + (size + sizeof(std::uint64_t) - 1) / sizeof(std::uint64_t));
    if (size > 0) {
        std::memcpy(bytes.data() + start, list.data(), size);
    }
}

/// A list at a position of the bytes, which moves behind it. The records are plain data of alignment at most eight.
template <typename Record>
bool Take(std::span<const std::uint64_t> bytes, std::size_t& at, const Record*& records, std::size_t& count) {
    if (at >= bytes.size() || bytes[at] > (bytes.size() - at) * sizeof(std::uint64_t) / sizeof(Record)) {
        return false;
    }
    count = static_cast<std::size_t>(bytes[at]);
    records = reinterpret_cast<const Record*>(bytes.data() + at + 1);
    at += 1 + (count * sizeof(Record) + sizeof(std::uint64_t) - 1) / sizeof(std::uint64_t);
    return at <= bytes.size();
}

template <typename List>
bool TakeList(std::span<const std::uint64_t> bytes, std::size_t& at, List& list) {
    const typename List::value_type* records = nullptr;
    std::size_t count = 0;
    if (!Take(bytes, at, records, count)) {
        return false;
    }
    list = List(records, count);
    return true;
}

}  // namespace

CVelmDimension IndexFile::Dimension() const {
    CVelmDimension dimension;
    std::copy(std::begin(halves), std::end(halves), dimension.halves.begin());
    return dimension;
}

CVelmString CVelmUnitIndex::WordKey(CVelmStringView word) const {
    return MakeWordKey(word, spellings, pool);
}

CVelmString MakeWordKey(CVelmStringView word, std::span<const IndexSpelling> spellings, CVelmStringView pool) {
    const auto textOf = [pool](const IndexText& text) { return pool.substr(text.start, text.length); };
    CVelmString key;
    key.reserve(word.size());
    bool blank = false;
    for (const char16_t unit : word) {
        if (IsBlank(unit)) {
            blank = !key.empty();
            continue;
        }
        if (IsLeftOut(unit)) {
            blank = blank || (unit != u'^' && !key.empty());
            continue;
        }
        if (blank) {
            key += u' ';
            blank = false;
        }
        if (unit < 0x80) {
            key += unit;
            continue;
        }
        const auto spelling = std::ranges::find_if(spellings, [&](const IndexSpelling& row) {
            return row.written.length == 1 && textOf(row.written)[0] == unit;
        });
        if (spelling == spellings.end()) {
            key += unit;
        } else {
            key += textOf(spelling->meant);
        }
    }
    return key;
}

void CVelmUnitIndex::FindKey(const CVelmString& key, const CVelmString& folded, bool anyCase,
                             std::vector<CVelmReading>& readings) const {
    for (const IndexWord& word : WordsWith(folded)) {
        const bool isExact = (word.flags & INDEX_WORD_ANY_CASE) != 0 || KeyOf(word) == key;
        if (IsUnit(word) && (isExact || anyCase)) {
            readings.push_back({word.meaning, FileOf(word), INDEX_NO_ITEM, word.rank, !isExact});
        }
    }
}

void CVelmUnitIndex::FindPrefixed(const CVelmString& key, const CVelmString& folded, bool anyCase,
                                  std::vector<CVelmReading>& readings) const {
    const auto tryPrefix = [&](std::uint32_t index, const IndexText& text, bool isName) {
        const CVelmStringView prefix = Text(text);
        if (prefix.empty() || key.size() <= prefix.size()) {
            return;
        }
        const bool ignoreCase = isName || anyCase;
        const CVelmString start = ignoreCase ? FoldCase(prefix) : CVelmString(prefix);
        if (!CVelmStringView(ignoreCase ? folded : key).starts_with(start)) {
            return;
        }
        const CVelmStringView rest = CVelmStringView(key).substr(prefix.size());
        const CVelmStringView foldedRest = CVelmStringView(folded).substr(prefix.size());
        const bool exactPrefix = isName || CVelmStringView(key).starts_with(prefix);
        for (const IndexWord& word : WordsWith(foldedRest)) {
            const bool isAnyCase = (word.flags & INDEX_WORD_ANY_CASE) != 0;
            const bool takes = (word.flags & INDEX_WORD_PREFIXES) != 0 ||
                               ((word.flags & INDEX_WORD_LARGE_PREFIXES) != 0 && prefixes[index].factor > 1.0);
            const bool isExact = exactPrefix && (isAnyCase || KeyOf(word) == rest);
            if (takes && IsUnit(word) && isAnyCase == isName && (isExact || anyCase)) {
                readings.push_back({word.meaning, FileOf(word), index, word.rank, !isExact});
            }
        }
    };
    for (std::uint32_t i = 0; i < prefixes.size(); ++i) {
        tryPrefix(i, prefixes[i].symbol, false);
        tryPrefix(i, prefixes[i].name, true);
    }
}

bool CVelmUnitIndex::IsCommonPrefix(std::uint32_t prefix) const {
    return prefixes[prefix].factor == 1e3 || prefixes[prefix].factor == 1e6 || prefixes[prefix].factor == 1e9;
}

bool CVelmUnitIndex::FindInAnyForm(const CVelmString& key, std::vector<CVelmReading>& readings) const {
    const CVelmString folded = FoldCase(key);
    for (const bool anyCase : {false, true}) {
        FindKey(key, folded, anyCase, readings);
        // A word of its own is hardly one with a prefix: "kt" is knots before it is kilotonnes.
        const std::size_t own = readings.size();
        FindPrefixed(key, folded, anyCase, readings);
        if (own > 0 && !anyCase) {
            std::erase_if(readings, [this](const CVelmReading& reading) {
                return reading.prefix != INDEX_NO_ITEM && !IsCommonPrefix(reading.prefix);
            });
            for (std::size_t i = own; i < readings.size(); ++i) {
                readings[i].rank = std::max<std::uint8_t>(readings[i].rank, RANK_UNLIKELY);
            }
        }
        if (!readings.empty()) {
            return true;
        }
    }
    return false;
}

void CVelmUnitIndex::AddPlural(const CVelmString& key, std::vector<CVelmReading>& readings) const {
    std::vector<CVelmReading> others;
    FindKey(key + u's', FoldCase(key) + u's', false, others);
    for (const CVelmReading& other : others) {
        const bool isKnown = std::ranges::any_of(readings, [&other](const CVelmReading& reading) {
            return reading.item == other.item && reading.prefix == other.prefix;
        });
        if (!isKnown) {
            readings.push_back(other);
        }
    }
}

void CVelmUnitIndex::FindUnits(CVelmStringView word, std::vector<CVelmReading>& readings) const {
    readings.clear();
    const CVelmString key = WordKey(word);
    static constexpr std::size_t SHORTEST_PLURAL = 3;
    if (key.empty()) {
        return;
    }
    if (FindInAnyForm(key, readings)) {
        // What only the plural is written out for counts as well: "pint" is a pint (UK) too.
        if (key.size() > SHORTEST_PLURAL && IsLetter(key.back()) && key.back() != u's') {
            AddPlural(key, readings);
        }
        return;
    }
    std::vector<CVelmString> forms;
    const auto addNumbers = [&forms](const CVelmString& form) {
        if (form.size() >= SHORTEST_PLURAL && IsLetter(form.back())) {
            if (form.back() == u's') {
                forms.push_back(form.substr(0, form.size() - 1));
                if (form.ends_with(u"es")) {
                    forms.push_back(form.substr(0, form.size() - 2));
                }
            }
            forms.push_back(form + u's');
            forms.push_back(form + u"es");
        }
    };
    addNumbers(key);
    for (const IndexSpelling& spelling : spellings) {
        const std::size_t at =
            spelling.written.length > 1 ? FoldCase(key).find(Text(spelling.written)) : CVelmString::npos;
        if (at != CVelmString::npos) {
            CVelmString form = key;
            form.replace(at, spelling.written.length, Text(spelling.meant));
            forms.push_back(form);
            addNumbers(form);
        }
    }
    for (const CVelmString& form : forms) {
        if (FindInAnyForm(form, readings)) {
            return;
        }
    }
}

std::vector<std::uint32_t> CVelmUnitIndex::FindInputs(CVelmStringView word, std::uint32_t file) const {
    std::vector<std::uint32_t> found;
    const CVelmString key = FoldCase(WordKey(word));
    for (const CVelmString& folded : {key, key + u's', key.ends_with(u's') ? key.substr(0, key.size() - 1) : key}) {
        for (const IndexWord& row : WordsWith(folded)) {
            if (row.Item() != INDEX_NO_ITEM && FileOf(row) == file &&
                std::ranges::find(found, row.meaning) == found.end()) {
                found.push_back(row.meaning);
            }
        }
        if (!found.empty()) {
            break;
        }
    }
    return found;
}

std::vector<std::uint32_t> CVelmUnitIndex::FindFiles(CVelmStringView word) const {
    const CVelmString folded = FoldCase(WordKey(word));
    std::vector<std::uint32_t> found;
    for (const IndexWord& row : WordsWith(folded)) {
        if (row.Item() == INDEX_NO_ITEM) {
            found.push_back(row.meaning);
        }
    }
    return found;
}

std::vector<CVelmNearWord> CVelmUnitIndex::Nearest(CVelmStringView word, std::size_t limit, bool calculations) const {
    struct Ranked {
        int distance;
        const IndexWord* word;
    };
    const CVelmString key = WordKey(word);
    std::vector<Ranked> nearest;
    int farthest = 2 * static_cast<int>(key.size());
    for (const IndexWord& candidate : words) {
        const int longer = 2 * std::abs(static_cast<int>(candidate.length) - static_cast<int>(key.size()));
        if ((candidate.flags & INDEX_WORD_INPUT) != 0 || longer - 1 > farthest) {
            continue;
        }
        const bool isFile = candidate.Item() == INDEX_NO_ITEM;
        const bool isCalculation = isFile && files[candidate.meaning].kind == KIND_CALCULATION;
        const int handicap = candidate.rank >= RANK_SECONDARY ? 1 : isCalculation && calculations ? -1 : 0;
        const int distance = 2 * TextDistance(key, KeyOf(candidate)) + handicap;
        const bool isKnown = std::ranges::any_of(nearest, [&](const Ranked& known) {
            return known.distance <= distance && !isFile && known.word->Item() == candidate.Item();
        });
        if (distance > farthest || isKnown) {
            continue;
        }
        std::erase_if(nearest, [&](const Ranked& known) { return !isFile && known.word->Item() == candidate.Item(); });
        const auto place = std::ranges::upper_bound(nearest, distance, {}, &Ranked::distance);
        nearest.insert(place, {distance, &candidate});
        if (nearest.size() > limit) {
            nearest.pop_back();
            farthest = nearest.back().distance - 1;
        }
    }
    std::vector<CVelmNearWord> names;
    names.reserve(nearest.size());
    for (const Ranked& near : nearest) {
        names.push_back({CVelmString(KeyOf(*near.word)), FileOf(*near.word)});
    }
    return names;
}

std::span<const IndexWord> CVelmUnitIndex::WordsWith(CVelmStringView folded) const {
    const auto formOf = [this](const IndexWord& word) { return FoldedOf(word); };
    const auto first = std::ranges::lower_bound(words, folded, {}, formOf);
    const auto last = std::ranges::upper_bound(first, words.end(), folded, {}, formOf);
    return {first, last};
}

std::pair<std::size_t, std::size_t> CVelmUnitIndex::RangeOf(CVelmStringView beginning) const {
    const CVelmString folded = FoldCase(WordKey(beginning));
    const auto startOf = [&](const IndexWord& word) { return FoldedOf(word).substr(0, folded.size()); };
    const auto first = std::ranges::lower_bound(words, CVelmStringView(folded), {}, startOf);
    const auto last = std::ranges::upper_bound(first, words.end(), CVelmStringView(folded), {}, startOf);
    return {static_cast<std::size_t>(first - words.begin()), static_cast<std::size_t>(last - words.begin())};
}

double CVelmUnitIndex::FactorOf(const CVelmReading& reading) const {
    const double factor = items[reading.item].factor;
    return reading.prefix == INDEX_NO_ITEM ? factor : factor * prefixes[reading.prefix].factor;
}

CVelmString CVelmUnitIndex::LabelOf(const CVelmReading& reading) const {
    const IndexItem& item = ItemOf(reading);
    if (item.identifier.length == 0) {
        return NameOf(reading);
    }
    CVelmString label;
    if (reading.prefix != INDEX_NO_ITEM) {
        label = Text(prefixes[reading.prefix].symbol);
    }
    return label += Text(item.identifier);
}

CVelmString CVelmUnitIndex::NameOf(const CVelmReading& reading) const {
    const CVelmStringView name = Text(ItemOf(reading).name);
    if (reading.prefix == INDEX_NO_ITEM) {
        return CVelmString(name);
    }
    CVelmString text(Text(prefixes[reading.prefix].name));
    for (const char16_t unit : name) {
        text += ToLowerAscii(unit);
    }
    text[0] = text[0] >= u'a' && text[0] <= u'z' ? static_cast<char16_t>(text[0] - u'a' + u'A') : text[0];
    return text;
}

bool CVelmUnitIndex::TakeBytes(IndexBlock block) {
    const std::span<const std::uint64_t> bytes = block.Span();
    if (bytes.size() < HEAD_WORDS || bytes[0] != MAGIC || bytes[1] != Checksum(bytes.subspan(HEAD_WORDS))) {
        return false;
    }
    CVelmUnitIndex taken;
    std::size_t at = HEAD_WORDS;
    const char16_t* text = nullptr;
    std::size_t length = 0;
    const bool ok = TakeList(bytes, at, taken.files) && TakeList(bytes, at, taken.items) &&
                    TakeList(bytes, at, taken.prefixes) && TakeList(bytes, at, taken.spellings) &&
                    TakeList(bytes, at, taken.words) && TakeList(bytes, at, taken.results) &&
                    Take(bytes, at, text, length) && at == bytes.size();
    if (ok) {
        taken.pool = {text, length};
        taken.block_ = std::move(block);
        *this = std::move(taken);
    }
    return ok;
}

IndexBlock IndexBytes(const IndexLists& lists) {
    std::vector<std::uint64_t> bytes(HEAD_WORDS);
    Append(bytes, lists.files);
    Append(bytes, lists.items);
    Append(bytes, lists.prefixes);
    Append(bytes, lists.spellings);
    Append(bytes, lists.words);
    Append(bytes, lists.results);
    Append(bytes, lists.pool);
    bytes[0] = MAGIC;
    bytes[1] = Checksum(std::span(bytes).subspan(HEAD_WORDS));
    IndexBlock block(bytes.size());
    std::ranges::copy(bytes, block.words.get());
    return block;
}

}  // namespace velm
