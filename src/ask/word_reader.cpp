#include "ask/word_reader.h"

#include <algorithm>
#include <array>

#include "ask/number_reader.h"
#include "formula/tokenizer.h"

namespace velm {

namespace {

constexpr std::size_t MAX_TOKENS = 32;

/// Characters and what they are read as.
struct PlainCharacter {
    char16_t written;
    char16_t plain;
};
constexpr std::array PLAIN_CHARACTERS = {
    PlainCharacter{u'×', u'*'},     PlainCharacter{u'÷', u'/'},    PlainCharacter{u'·', u'*'},
    PlainCharacter{u'⋅', u'*'},     PlainCharacter{u'∙', u'*'},    PlainCharacter{u'⁄', u'/'},
    PlainCharacter{u'∕', u'/'},     PlainCharacter{u'−', u'-'},    PlainCharacter{u'–', u'-'},
    PlainCharacter{u'′', u'\''},    PlainCharacter{u'’', u'\''},   PlainCharacter{u'‘', u'\''},
    PlainCharacter{u'″', u'"'},     PlainCharacter{u'”', u'"'},    PlainCharacter{u'“', u'"'},
    PlainCharacter{u'⟶', u'→'},     PlainCharacter{u'➔', u'→'},    PlainCharacter{u'⇒', u'→'},
    PlainCharacter{0x00A0, 0x2009}, PlainCharacter{0x202F, 0x2009}};

/// Whether a unit's word can end here: with its last bracket closed, and not with a sign that belongs to what follows.
bool CanEndUnitWord(CVelmStringView word) {
    constexpr CVelmStringView OPEN_ENDS = u",-^(/:";
    const auto count = [word](char16_t unit) { return std::ranges::count(word, unit); };
    return OPEN_ENDS.find(word.back()) == CVelmStringView::npos && count(u'(') == count(u')');
}

/// Names have many characters in them: "Letter drill (A = 1, Z = 26)".
bool CanBeInUnitWord(char16_t unit) {
    constexpr CVelmStringView SIGNS = u"/-.,()^:;=*+&";
    return BeginsUnitWord(unit) || IsDigit(unit) || SIGNS.find(unit) != CVelmStringView::npos || unit >= 0x80;
}

bool IsBeginning(const CVelmUnitIndex& index, CVelmStringView text) {
    const auto [first, last] = index.RangeOf(text);
    return first != last;
}

}  // namespace

bool IsWordUnit(char16_t unit) {
    return IsLetter(unit) || (unit >= 0xC0 && unit != u'×' && unit != u'÷' && unit != u'→' && !IsQuestionBlank(unit)) ||
           unit == 0xB5 || unit == u'°' || unit == u'_' || unit == 0xA2 || unit == 0xA3 || unit == 0xA5;
}

bool IsCurrencySign(char16_t unit) {
    constexpr CVelmStringView OTHERS = u"$£¥¢฿";
    return (unit >= 0x20A0 && unit <= 0x20CF) || OTHERS.find(unit) != CVelmStringView::npos;
}

bool BeginsUnitWord(char16_t unit) {
    return IsWordUnit(unit) || unit == u'\'' || unit == u'"' || unit == u'%' || IsCurrencySign(unit);
}

std::size_t WordEnd(CVelmStringView text, std::size_t at) {
    std::size_t end = at;
    const bool isSign = IsCurrencySign(text[at]);
    while (end < text.size() && !isSign && (IsWordUnit(text[end]) || IsDigit(text[end])) &&
           !IsCurrencySign(text[end])) {
        ++end;
    }
    return std::max(end, at + 1);
}

std::size_t TokenEnd(CVelmStringView text, std::size_t at) {
    const bool isDigits = IsDigit(text[at]);
    std::size_t end = at;
    while (end < text.size() && !IsCurrencySign(text[end]) && (isDigits ? IsDigit(text[end]) : IsWordUnit(text[end]))) {
        ++end;
    }
    return std::max(end, at + 1);
}

CVelmString PlainQuestion(CVelmStringView text) {
    CVelmString plain(text);
    for (char16_t& unit : plain) {
        const auto* const found = std::ranges::find(PLAIN_CHARACTERS, unit, &PlainCharacter::written);
        unit = found == PLAIN_CHARACTERS.end() ? unit : found->plain;
    }
    return plain;
}

QuestionWord FindQuestionWord(const QuestionReaderSetup& setup, CVelmStringView text, std::size_t position,
                              std::size_t end) {
    const CVelmUnitIndex& index = setup.index;
    QuestionWord word{position, 0, {}};
    std::array<std::size_t, MAX_TOKENS> ends{};
    std::size_t count = 0;
    std::size_t at = position;
    while (count < ends.size() && at < end) {
        const std::size_t next = SkipBlanks(text, at);
        if (next >= end || (next > position && !CanBeInUnitWord(text[next]))) {
            break;
        }
        at = TokenEnd(text, next);
        // Longer texts are tried only as far as some word of the index begins with them.
        if (count > 0 && !IsBeginning(index, text.substr(position, at - position))) {
            break;
        }
        ends[count++] = at;
    }
    while (count > 0) {
        word.length = ends[--count] - position;
        const CVelmStringView part = text.substr(position, word.length);
        const bool isLeftOut = setup.isSecondTry && part.find(u'/') != CVelmStringView::npos;
        if (isLeftOut || !CanEndUnitWord(part)) {
            continue;
        }
        index.FindUnits(part, word.readings);
        std::erase_if(word.readings, [&setup](const CVelmReading& reading) {
            return setup.onlyFile != INDEX_NO_ITEM && reading.file != setup.onlyFile;
        });
        if (!word.readings.empty()) {
            return word;
        }
    }
    word.length = 0;
    return word;
}

}  // namespace velm
