#include "model/identifier_match.h"

#include <algorithm>
#include <array>
#include <utility>

#include "model/document_kinds.h"

namespace velm {

namespace {

/// First letters of the prefixes that letter case alone tells apart: milli and mega, pico and peta and so on.
constexpr CVelmStringView CASE_PREFIXES = u"mpqryz";

/// Symbols known to take prefixes, for files that have them with one prefix only.
constexpr std::array<CVelmStringView, 37> PREFIXED_SYMBOLS = {
    u"m",  u"g",  u"s",   u"A", u"K", u"mol", u"cd",  u"rad", u"sr",  u"Hz", u"N",  u"Pa", u"J",
    u"W",  u"C",  u"V",   u"F", u"S", u"Wb",  u"T",   u"H",   u"lm",  u"lx", u"Bq", u"Gy", u"Sv",
    u"eV", u"Wh", u"kat", u"L", u"l", u"bar", u"cal", u"ohm", u"rem", u"Ci", u"Gal"};

/// Prefixes of bits and bytes; each may have an "i" behind it, and "k" is often typed as "K".
constexpr CVelmStringView DATA_PREFIXES = u"kKMGTPEZYRQ";

/// A symbol that in another letter case is another unit.
struct CaseSymbol {
    CVelmStringView symbol;
    CVelmStringView otherCase;
    bool hasDataPrefixes;
    CVelmStringView plain;  ///< how files write the symbol to keep it apart
};

constexpr std::array<CaseSymbol, 4> CASE_SYMBOLS = {{
    {u"b", u"B", true, u"bit"},
    {u"B", u"b", true, u"byte"},
    {u"Cal", u"cal", false, u"kcal"},
    {u"NM", u"nm", false, u"nmi"},
}};

/// A word of a typed text next to the same word of an identifier.
struct WordPair {
    std::size_t start;
    CVelmStringView typed;
    CVelmStringView word;
    bool isWhole;  ///< neither numbered (b12) nor behind a "_" (hp_b)
};

/// The words whose letter case differs. The texts are the same but for letter case.
std::vector<WordPair> DifferentWords(CVelmStringView typed, CVelmStringView text) {
    std::vector<WordPair> pairs;
    for (std::size_t start = 0; start < text.size();) {
        std::size_t end = start;
        while (end < text.size() && IsLetter(text[end])) {
            ++end;
        }
        const CVelmStringView word = text.substr(start, end - start);
        const CVelmStringView typedWord = typed.substr(start, end - start);
        if (typedWord != word) {
            const bool isNumbered = end < text.size() && IsDigit(text[end]);
            pairs.push_back({start, typedWord, word, !isNumbered && !text.substr(0, start).ends_with(u'_')});
        }
        start = std::max(end, start + 1);
    }
    return pairs;
}

bool IsCalled(const CVelmItem& item, CVelmStringView text) {
    return !text.empty() && (EqualsNoCase(item.identifier, text) || EqualsNoCase(item.name, text));
}

std::vector<CVelmItem*> CalledInAnyCase(const CVelmDocument& document, CVelmStringView text) {
    std::vector<CVelmItem*> called;
    for (const auto& item : document.items) {
        if (IsCalled(*item, text)) {
            called.push_back(item.get());
        }
    }
    return called;
}

/// Whether a prefix stands before this part of the word, to its end: before a unit that the file has without it, or one
/// that is known to take prefixes. Words may be products (Nmm). Bits and bytes have no fractions: a small letter before
/// them is a capital one.
bool IsPrefixed(const CVelmDocument& document, CVelmStringView text, const WordPair& pair, std::size_t part) {
    const CVelmStringView base = pair.word.substr(part);
    const CVelmStringView typedBase = pair.typed.substr(part);
    const char16_t prefix = pair.typed[part - 1];
    if (prefix == ToLowerAscii(prefix) && (EqualsNoCase(base, u"bit") || EqualsNoCase(base, u"b"))) {
        return false;
    }
    CVelmString unprefixed(text);
    unprefixed.erase(pair.start + part - 1, 1);
    return (part == 1 && base == typedBase &&
            std::find(PREFIXED_SYMBOLS.begin(), PREFIXED_SYMBOLS.end(), base) != PREFIXED_SYMBOLS.end()) ||
           !CalledInAnyCase(document, unprefixed).empty();
}

bool HasOtherPrefix(const CVelmDocument& document, CVelmStringView text, const WordPair& pair) {
    for (std::size_t part = 1; part < pair.word.size(); ++part) {
        const char16_t prefix = pair.word[part - 1];
        if (pair.typed[part - 1] != prefix && CASE_PREFIXES.find(ToLowerAscii(prefix)) != CVelmStringView::npos &&
            IsPrefixed(document, text, pair, part)) {
            return true;
        }
    }
    return false;
}

/// The symbol that the typed word ends with where the identifier has the other one; null when there is none.
const CaseSymbol* OtherSymbol(const WordPair& pair) {
    const auto* found = std::find_if(CASE_SYMBOLS.begin(), CASE_SYMBOLS.end(), [&](const CaseSymbol& symbol) {
        if (!pair.isWhole || !pair.typed.ends_with(symbol.symbol) || !pair.word.ends_with(symbol.otherCase)) {
            return false;
        }
        CVelmStringView prefix = pair.word.substr(0, pair.word.size() - symbol.symbol.size());
        if (symbol.hasDataPrefixes && !prefix.empty() && DATA_PREFIXES.find(prefix[0]) != CVelmStringView::npos) {
            prefix.remove_prefix(prefix.substr(1).starts_with(u'i') ? 2 : 1);
        }
        return prefix.empty();
    });
    return found == CASE_SYMBOLS.end() ? nullptr : found;
}

/// Of an item called so in any letter case.
const CVelmString& MatchingText(const CVelmItem& item, CVelmStringView typed) {
    return EqualsNoCase(item.identifier, typed) ? item.identifier : item.name;
}

/// Whether the typed letter case gives what an item is called another meaning.
bool MayMeanAnother(const CVelmDocument& document, CVelmStringView typed, const CVelmItem& item) {
    const CVelmString& text = MatchingText(item, typed);
    const std::vector<WordPair> pairs = DifferentWords(typed, text);
    return std::any_of(pairs.begin(), pairs.end(), [&](const WordPair& pair) {
        return HasOtherPrefix(document, text, pair) || OtherSymbol(pair) != nullptr;
    });
}

/// The typed text with its symbols written so that letter case does not matter: Mbit/s for Mb/s.
CVelmString PlainSymbols(CVelmStringView typed, const CVelmItem& item) {
    CVelmString plain(typed);
    const std::vector<WordPair> pairs = DifferentWords(typed, MatchingText(item, typed));
    for (auto pair = pairs.rbegin(); pair != pairs.rend(); ++pair) {
        if (const CaseSymbol* const symbol = OtherSymbol(*pair)) {
            const std::size_t size = symbol->symbol.size();
            plain.replace(pair->start + pair->typed.size() - size, size, symbol->plain);
        }
    }
    return plain;
}

/// Adds the items that the typed text means when it is written plainly.
std::vector<CVelmItem*> WithPlainlyCalled(const CVelmDocument& document, CVelmStringView typed,
                                          std::vector<CVelmItem*> items) {
    for (std::size_t i = 0, count = items.size(); i < count; ++i) {
        for (CVelmItem* item : CalledInAnyCase(document, PlainSymbols(typed, *items[i]))) {
            if (std::find(items.begin(), items.end(), item) == items.end()) {
                items.push_back(item);
            }
        }
    }
    return items;
}

/// Typed with both capital and small letters, so that each is likely to be meant.
bool HasBothCases(CVelmStringView text) {
    const auto isSmall = [](char16_t unit) { return IsLetter(unit) && unit == ToLowerAscii(unit); };
    const auto isCapital = [](char16_t unit) { return unit != ToLowerAscii(unit); };
    return std::any_of(text.begin(), text.end(), isSmall) && std::any_of(text.begin(), text.end(), isCapital);
}

}  // namespace

CVelmIdentifierIndex::CVelmIdentifierIndex(const CVelmDocument& document) : document_(document) {
    decltype(items_) names;
    for (const auto& item : document.items) {
        items_[item->identifier].push_back(item.get());
        names[item->name].push_back(item.get());
    }
    items_.merge(names);  // keeps the items that have the text as their identifier
    items_.erase(CVelmString());
}

std::span<CVelmItem* const> CVelmIdentifierIndex::FindExact(CVelmStringView text) const {
    const auto found = items_.find(CVelmString(text));
    return found == items_.end() ? std::span<CVelmItem* const>() : found->second;
}

CVelmIdentifierMatch CVelmIdentifierIndex::Match(CVelmStringView text) const {
    const std::span<CVelmItem* const> exact = FindExact(text);
    if (!exact.empty()) {
        return exact.size() == 1 ? CVelmIdentifierMatch{exact.front(), {}}
                                 : CVelmIdentifierMatch{nullptr, {exact.begin(), exact.end()}};
    }
    std::vector<CVelmItem*> called = CalledInAnyCase(document_, text);
    std::vector<CVelmItem*> certain = called;
    if (document_.GetKind() == KIND_CONVERSION) {
        std::erase_if(certain, [&](const CVelmItem* item) { return MayMeanAnother(document_, text, *item); });
    }
    if (certain.size() == 1 && (called.size() == 1 || HasBothCases(text))) {
        return {certain.front(), {}};
    }
    return {nullptr, WithPlainlyCalled(document_, text, std::move(called))};
}

}  // namespace velm
