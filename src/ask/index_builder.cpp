#include "ask/index_builder.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "formula/tokenizer.h"
#include "model/conversion_document.h"
#include "model/conversion_engine.h"

namespace velm {

namespace {

/// A file about which nothing is known but its name.
const CVelmFileWords& WordsOf(const CVelmUnitWords& words, const CVelmString& file) {
    static const CVelmFileWords NONE;
    const auto found = std::ranges::find_if(
        words.files, [&file](const CVelmFileWords& known) { return EqualsNoCase(known.file, file); });
    return found == words.files.end() ? NONE : *found;
}

const CVelmItemWords* FindItemWords(const CVelmFileWords& words, const CVelmItem& item) {
    const auto found = std::ranges::find_if(words.items, [&item](const CVelmItemWords& known) {
        return known.item == (item.identifier.empty() ? item.name : item.identifier);
    });
    return found == words.items.end() ? nullptr : &*found;
}

bool IsCalled(const CVelmItem& item, CVelmStringView text) {
    return item.identifier == text || (item.identifier.empty() && item.name == text);
}

bool Contains(const std::vector<CVelmString>& list, const CVelmItem& item) {
    return std::ranges::any_of(list, [&item](const CVelmString& entry) { return IsCalled(item, entry); });
}

/// Words in small letters that are too long for a symbol.
bool IsWrittenOut(CVelmStringView word) {
    static constexpr std::size_t SHORTEST = 4;
    return word.size() >= SHORTEST && std::ranges::all_of(word, [](char16_t unit) {
               return unit == u' ' || unit == u'\'' || (IsLetter(unit) && unit == ToLowerAscii(unit)) || unit >= 0xC0;
           });
}

/// What the conversions make of a value of one item in another; not finite when they make nothing.
double Carry(CVelmConversionDoc& document, CVelmItem& from, const CVelmItem& to, double value,
             FormulaContext& context) {
    if (&from == &to) {
        return value;
    }
    from.SetValue(value);
    const CVelmItem* const asked = &to;
    SolveConversions(document.items, document.conversions, &from, {&asked, 1}, context);
    return to.state == STATE_VALID ? to.value : NAN;
}

/// How many of `to` make one of `from`; 0 when they are not proportional.
double FactorBetween(CVelmConversionDoc& document, CVelmItem& from, const CVelmItem& to, FormulaContext& context) {
    static constexpr double TOLERANCE = 1e-11;
    const double one = Carry(document, from, to, 1.0, context);
    if (!(one > 0.0)) {
        return 0.0;
    }
    const double none = Carry(document, from, to, 0.0, context);
    const double two = Carry(document, from, to, 2.0, context);
    const bool isFactor = std::fabs(none) <= TOLERANCE * one && std::fabs(two - 2.0 * one) <= TOLERANCE * one;
    return isFactor ? one : 0.0;
}

}  // namespace

CVelmIndexBuilder::CVelmIndexBuilder(const CVelmUnitWords& words, FormulaContext& context)
    : words_(words), context_(context) {
    for (const CVelmSpelling& spelling : words.spellings) {
        lists_.spellings.push_back({Keep(spelling.written), Keep(spelling.meant)});
    }
    for (const CVelmUnitPrefix& prefix : words.prefixes) {
        lists_.prefixes.push_back({Keep(prefix.symbol), Keep(prefix.name), prefix.factor});
    }
}

IndexText CVelmIndexBuilder::Keep(CVelmStringView text) {
    const auto [kept, isNew] = kept_.try_emplace(CVelmString(text));
    if (isNew) {
        kept->second = {static_cast<std::uint32_t>(lists_.pool.size()), static_cast<std::uint32_t>(text.size())};
        lists_.pool += text;
    }
    return kept->second;
}

CVelmIndexBuilder::Coherent CVelmIndexBuilder::FindCoherent(const CVelmDocument& document,
                                                            const CVelmFileWords& words) const {
    CVelmStringView text = words.coherent;
    Coherent coherent;
    const std::size_t blank = text.find(u' ');
    if (blank != CVelmStringView::npos && ScanNumber(text.substr(0, blank), coherent.scale)) {
        text = text.substr(blank + 1);
    }
    for (const auto& item : document.items) {
        if (!text.empty() && IsCalled(*item, text)) {
            coherent.item = item.get();
            break;
        }
    }
    return coherent;
}

void CVelmIndexBuilder::Add(CVelmDocument& document, CVelmStringView name, const IndexStamp& stamp) {
    const CVelmFileWords& words = WordsOf(words_, document.fileName);
    IndexFile& file = lists_.files.emplace_back();
    file.name = Keep(name);
    file.title = Keep(document.title);
    file.quantity = Keep(words.quantity);
    file.stamp = stamp;
    file.kind = document.GetKind();
    file.firstItem = static_cast<std::uint32_t>(lists_.items.size());
    file.itemCount = static_cast<std::uint32_t>(document.ItemCount());
    file.isSecondary = words.isSecondary ? 1 : 0;
    file.isDate = words.dimension == DATE_DIMENSION ? 1 : 0;
    if (const auto dimension = ParseDimension(words.dimension); dimension && !words.dimension.empty()) {
        file.hasDimension = 1;
        std::ranges::copy(dimension->halves, file.halves);
    }
    AddFileWord(document.fileName);
    if (!EqualsNoCase(document.title, document.fileName)) {
        AddFileWord(document.title);
    }
    for (const CVelmString& word : words.called) {
        AddFileWord(word);
    }
    const bool isKnown = file.hasDimension != 0 || file.isDate != 0;
    AddItems(document, words, isKnown ? FindCoherent(document, words) : Coherent());
}

void CVelmIndexBuilder::AddItems(CVelmDocument& document, const CVelmFileWords& words, const Coherent& coherent) {
    auto* const conversions = dynamic_cast<CVelmConversionDoc*>(&document);
    std::vector<std::int32_t> wasShown;
    for (const auto& item : document.items) {
        wasShown.push_back(item->shown);
        item->shown = 0;  // so that the search for a factor goes to the coherent unit alone
    }
    for (std::size_t i = 0; i < document.ItemCount(); ++i) {
        CVelmItem& item = *document.GetItem(i);
        const auto number = static_cast<std::uint32_t>(lists_.items.size());
        IndexItem& entry = lists_.items.emplace_back();
        entry.identifier = Keep(item.identifier);
        entry.name = Keep(item.name);
        entry.file = static_cast<std::uint32_t>(lists_.files.size() - 1);
        entry.position = static_cast<std::uint32_t>(i);
        const auto flag = [](bool holds, IndexItemFlag bit) { return holds ? bit : std::uint32_t{0}; };
        entry.flags = flag(wasShown[i] != 0, INDEX_ITEM_SHOWN) | flag(item.IsOutput(), INDEX_ITEM_OUTPUT) |
                      flag((item.format.allowedFormats & FMT_CURRENCY) != 0, INDEX_ITEM_MONEY) |
                      flag((item.format.allowedFormats & (FMT_DATE | FMT_DATETIME)) != 0, INDEX_ITEM_DATE) |
                      flag(!words.months.empty() && IsCalled(item, words.months), INDEX_ITEM_MONTHS) |
                      flag(!words.years.empty() && IsCalled(item, words.years), INDEX_ITEM_YEARS);
        if (conversions != nullptr && coherent.item != nullptr && lists_.files.back().hasDimension != 0) {
            entry.factor = FactorBetween(*conversions, item, *coherent.item, context_) / coherent.scale;
        }
        if (&item == coherent.item) {
            lists_.files.back().coherentItem = number;
        }
        if (!item.IsOutput()) {
            AddItemWords(item, words, number);
        }
    }
    IndexFile& file = lists_.files.back();
    file.firstResult = static_cast<std::uint32_t>(lists_.results.size());
    for (const CVelmString& result : words.results) {
        for (std::size_t i = 0; i < document.ItemCount(); ++i) {
            if (IsCalled(*document.GetItem(i), result)) {
                lists_.results.push_back(file.firstItem + static_cast<std::uint32_t>(i));
                break;
            }
        }
    }
    file.resultCount = static_cast<std::uint32_t>(lists_.results.size()) - file.firstResult;
}

void CVelmIndexBuilder::AddItemWords(const CVelmItem& item, const CVelmFileWords& words, std::uint32_t index) {
    const bool isInput = lists_.files.back().kind == KIND_CALCULATION;
    const CVelmItemWords* const known = FindItemWords(words, item);
    if (isInput && known != nullptr) {
        lists_.items[index].unit = Keep(known->unit);
    }
    const auto own = static_cast<std::uint8_t>(words.isSecondary ? RANK_SECONDARY : RANK_NORMAL);
    const auto part = static_cast<std::uint8_t>(words.isSecondary ? RANK_SECONDARY : RANK_PART);
    const auto flags = static_cast<std::uint8_t>((Contains(words.prefixed, item) ? INDEX_WORD_PREFIXES : 0) |
                                                 (Contains(words.largePrefixed, item) ? INDEX_WORD_LARGE_PREFIXES : 0) |
                                                 (isInput ? INDEX_WORD_INPUT : 0));
    const auto anyCase = [flags](bool holds) {
        return static_cast<std::uint8_t>(flags | (holds ? INDEX_WORD_ANY_CASE : 0));
    };
    AddWord(item.identifier, index, own, anyCase(IsWrittenOut(item.identifier)));
    AddWord(item.name, index, own, anyCase(true));
    const std::size_t bracket = item.name.find(u" (");
    if (bracket != CVelmString::npos && item.name.back() == u')') {
        const CVelmString base = item.name.substr(0, bracket);
        const CVelmString qualifier = item.name.substr(bracket + 2, item.name.size() - bracket - 3);
        AddWord(base, index, part, anyCase(true));
        AddWord(qualifier + u' ' + base, index, own, anyCase(true));
        if (base.ends_with(u's')) {
            const CVelmString one = base.substr(0, base.size() - 1);
            AddWord(one + u' ' + qualifier, index, own, anyCase(true));
            AddWord(qualifier + u' ' + one, index, own, anyCase(true));
        }
    }
    if (known == nullptr) {
        return;
    }
    for (const CVelmString& word : known->words) {
        const bool isFirst = std::ranges::find(known->first, word) != known->first.end();
        AddWord(word, index, isFirst ? RANK_PREFERRED : RANK_NORMAL, anyCase(IsWrittenOut(word)));
    }
}

void CVelmIndexBuilder::AddFileWord(CVelmStringView text) {
    AddWord(text, static_cast<std::uint32_t>(lists_.files.size() - 1), RANK_NORMAL,
            INDEX_WORD_ANY_CASE | INDEX_WORD_FILE);
}

void CVelmIndexBuilder::AddWord(CVelmStringView text, std::uint32_t meaning, std::uint8_t rank, std::uint8_t flags) {
    static constexpr std::size_t LONGEST = 200;
    const CVelmString key = MakeWordKey(text, lists_.spellings, lists_.pool);
    if (key.empty() || key.size() > LONGEST) {
        return;
    }
    const IndexText folded = Keep(FoldCase(key));
    IndexWord word;
    word.folded = folded.start;
    word.length = static_cast<std::uint16_t>(folded.length);
    word.key = (flags & INDEX_WORD_ANY_CASE) != 0 ? folded.start : Keep(key).start;
    word.meaning = meaning;
    word.rank = rank;
    word.flags = flags;
    lists_.words.push_back(word);
}

CVelmUnitIndex CVelmIndexBuilder::Finish() {
    std::ranges::stable_sort(lists_.words, [this](const IndexWord& a, const IndexWord& b) {
        const int order = Text(a.folded, a.length).compare(Text(b.folded, b.length));
        return order != 0 ? order < 0 : a.rank < b.rank;
    });
    CVelmUnitIndex index;
    index.TakeBytes(IndexBytes(lists_));
    return index;
}

}  // namespace velm
