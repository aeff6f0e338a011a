#include "ask/question_search.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "formats/decimal_format.h"

namespace velm {
namespace {

/// A longer text is not tried with each match: that could take seconds.
constexpr std::size_t MAX_COMPLETED = 80;

/// An answer of more rows is cut where matches follow.
constexpr std::size_t MAX_ROWS_ABOVE_MATCHES = 6;

CVelmString WithoutExtension(const CVelmString& fileName) {
    return fileName.substr(0, fileName.rfind(u'.'));
}

CVelmString MatchText(const CVelmSuggestion& match) {
    if (match.item < 0) {
        return match.name + u" (file)";
    }
    const CVelmString word = EqualsNoCase(match.word, match.name) ? CVelmString() : u", " + match.word;
    return match.name + word + u" (" + WithoutExtension(match.fileName) + u")";
}

CVelmSearchPlace PlaceOfAnswer(const CVelmAnswerPlace& place) {
    CVelmSearchPlace found{place.fileName, place.item, place.inputs};
    if (place.item >= 0) {
        found.values.push_back({place.item, place.value});
    }
    return found;
}

}  // namespace

void CVelmQuestionSearch::SetText(CVelmStringView text, std::size_t matches) {
    text_ = text.substr(0, text.find_last_not_of(u" \t") + 1);
    lines_.clear();
    matches_.clear();
    answerPlace_ = {};
    fault_ = {};
    if (text_.empty()) {
        return;
    }
    // Behind a blank the last word is finished.
    if (text_.size() == text.size()) {
        FindMatches(matches);
    }
    CVelmAnswer answer = questions_.Preview(text_);
    if (answer.ok) {
        AddAnswer(answer);
    } else {
        fault_ = std::move(answer.fault);
        if (!IsUnfinished()) {
            lines_.push_back({SearchLineKind::Fault, fault_.message});
        }
    }
    for (const Match& match : matches_) {
        lines_.push_back({SearchLineKind::Match, MatchText(match.suggestion)});
    }
}

void CVelmQuestionSearch::FindMatches(std::size_t limit) {
    std::vector<Match> others;
    for (CVelmSuggestion& suggestion : questions_.Suggest(text_, limit)) {
        const CVelmString before = text_.substr(0, suggestion.start);
        const bool isQuestion = before.size() <= MAX_COMPLETED && before.find_first_not_of(u" \t") != CVelmString::npos;
        const CVelmAnswer answer = isQuestion ? questions_.Preview(before + suggestion.word) : CVelmAnswer();
        const CVelmAnswerPlace& place = answer.place;
        const bool completes = answer.ok && place.fileName == suggestion.fileName &&
                               (place.item == suggestion.item || place.targetItem == suggestion.item);
        Match match{std::move(suggestion), {}};
        match.place =
            completes ? PlaceOfAnswer(place) : CVelmSearchPlace{match.suggestion.fileName, match.suggestion.item, {}};
        (completes ? matches_ : others).push_back(std::move(match));
    }
    std::ranges::move(others, std::back_inserter(matches_));
}

void CVelmQuestionSearch::AddAnswer(const CVelmAnswer& answer) {
    answerPlace_ = PlaceOfAnswer(answer.place);
    if (answer.rows.size() < 2) {
        lines_.push_back({SearchLineKind::Answer, answer.Line()});
    } else {
        lines_.push_back({SearchLineKind::Answer, answer.understood + u" ="});
        const bool isCut = !matches_.empty() && answer.rows.size() > MAX_ROWS_ABOVE_MATCHES;
        const std::size_t shown = isCut ? MAX_ROWS_ABOVE_MATCHES - 1 : answer.rows.size();
        for (std::size_t i = 0; i < shown; ++i) {
            lines_.push_back({SearchLineKind::Answer, answer.rows[i].NamedText()});
        }
        if (isCut) {
            const double rest = static_cast<double>(answer.rows.size() - shown);
            lines_.push_back({SearchLineKind::Answer, NumberToText(rest) + u" more"});
        }
    }
    for (const CVelmString& note : answer.notes) {
        lines_.push_back({SearchLineKind::Note, note});
    }
}

/// Whether a parenthesis is open, or what is wrong is at the end, where the user is typing, and a match can make it
/// right or the last word is no unit yet.
bool CVelmQuestionSearch::IsUnfinished() const {
    if (std::ranges::count(text_, u'(') > std::ranges::count(text_, u')')) {
        return true;
    }
    if (fault_.position + fault_.length < text_.size()) {
        return false;
    }
    if (fault_.length == 0 || matches_.empty()) {
        return fault_.length == 0;
    }
    if (!matches_.front().place.values.empty()) {
        return true;
    }
    return std::ranges::none_of(matches_, [this](const Match& match) {
        const CVelmSuggestion& suggestion = match.suggestion;
        return suggestion.item >= 0 && EqualsNoCase(suggestion.word, CVelmStringView(text_).substr(suggestion.start));
    });
}

const CVelmSearchPlace& CVelmQuestionSearch::PlaceOf(std::size_t line) const {
    const std::size_t first = lines_.size() - matches_.size();
    return line < first ? answerPlace_ : matches_[line - first].place;
}

}  // namespace velm
