#include "ask/questions.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "ask/answer_builder.h"
#include "ask/number_reader.h"
#include "ask/question_messages.h"
#include "ask/resolution.h"
#include "ask/sheet_question.h"
#include "ask/target_reader.h"
#include "ask/word_folder.h"
#include "formats/decimal_format.h"

namespace velm {

namespace {

constexpr CVelmStringView LAST_ANSWER = u"ans";
constexpr int MAX_TRIES = 3;

/// Longer questions are nobody's; reading one recurses, and tries every way to split it.
constexpr std::size_t MAX_LENGTH = 1000;

}  // namespace

class CVelmQuestions::Session {
public:
    Session(const CVelmServices& services, FormulaContext& context, CVelmString folder, CVelmString cacheFolder)
        : folder_(services, context, std::move(folder), std::move(cacheFolder)) {}

    CVelmAnswer Ask(CVelmStringView text) {
        CVelmAnswer answer;
        if (text.size() > MAX_LENGTH) {
            answer.fault = {u"The question is too long", MAX_LENGTH, text.size() - MAX_LENGTH};
            return answer;
        }
        // A file that has changed meanwhile is noticed when it is needed: the question is then read anew.
        for (int tries = 0; tries < MAX_TRIES; ++tries) {
            isStale_ = false;
            unknown_.reset();
            answer = AskOnce(text);
            if (!isStale_ && (answer.ok || tries > 0 || isPreview_ || !folder_.Refresh())) {
                break;
            }
        }
        if (!answer.ok && unknown_) {
            answer.fault.message = UnknownWordText(folder_.Index(), unknown_->message, unknown_->isFirst);
        }
        return answer;
    }

    CVelmAnswer Preview(CVelmStringView text) {
        std::vector<CVelmKeptValue> kept = kept_;
        isPreview_ = true;
        CVelmAnswer answer = Ask(text);
        isPreview_ = false;
        kept_ = std::move(kept);
        return answer;
    }

    std::vector<CVelmSuggestion> Suggest(CVelmStringView text, std::size_t limit);

private:
    CVelmAnswer AskOnce(CVelmStringView text) {
        const CVelmUnitIndex& index = folder_.Index();
        Question question;
        question.text = PlainQuestion(text);
        CVelmAnswer answer;
        if (ReadAssignment(index, question, answer)) {
            return answer;
        }
        if (const auto sheet = FindSheet(index, question.text)) {
            AnswerSheet(folder_, index, question.text, *sheet, kept_, answer, isStale_);
            return answer;
        }
        CVelmQuestionFault first;
        std::optional<QuestionFault> firstUnknown;
        for (const bool isSecondTry : {false, true}) {
            answer = {};
            if (AskRead(index, question, isSecondTry, answer)) {
                Keep(CVelmString(LAST_ANSWER), lastValue_);
                return answer;
            }
            if (!isSecondTry) {
                first = answer.fault;
                firstUnknown = unknown_;
            }
        }
        answer = {};
        if (AskInFile(index, question, answer)) {
            Keep(CVelmString(LAST_ANSWER), lastValue_);
            return answer;
        }
        answer = {};
        answer.fault = std::move(first);
        unknown_ = std::move(firstUnknown);
        return answer;
    }

    /// shoe sizes 42 EU in UK: the units of one file alone.
    bool AskInFile(const CVelmUnitIndex& index, const Question& question, CVelmAnswer& answer) {
        const CVelmStringView text = question.text;
        for (std::size_t end = text.size(); end > 0; --end) {
            if (end < text.size() && !IsQuestionBlank(text[end])) {
                continue;
            }
            for (const std::uint32_t file : index.FindFiles(text.substr(0, end))) {
                Question rest;
                rest.text = question.text;
                std::fill_n(rest.text.begin(), end, u' ');
                const std::vector<CVelmString> names = Names();
                const QuestionReaderSetup setup{index, folder_.Services().clock, names, false, false, file};
                QuestionFault fault;
                if (ReadQuestion(setup, rest, fault) && AnswerRead(index, rest, answer)) {
                    return true;
                }
            }
        }
        return false;
    }

    std::vector<CVelmString> Names() const {
        std::vector<CVelmString> names;
        std::ranges::transform(kept_, std::back_inserter(names), &CVelmKeptValue::name);
        return names;
    }

    bool AskRead(const CVelmUnitIndex& index, Question& question, bool isSecondTry, CVelmAnswer& answer) {
        const std::vector<CVelmString> names = Names();
        const QuestionReaderSetup setup{index, folder_.Services().clock, names, isSecondTry};
        QuestionFault fault;
        if (ReadQuestion(setup, question, fault)) {
            return AnswerRead(index, question, answer);
        }
        answer.fault = fault;
        unknown_ = fault.isUnknownWord ? std::optional(fault) : std::nullopt;
        return false;
    }

    bool AnswerRead(const CVelmUnitIndex& index, const Question& question, CVelmAnswer& answer) {
        CVelmResolutions resolutions = Resolve(index, folder_.Context(), question, kept_);
        if (resolutions.found.empty()) {
            answer.fault = ResolutionFault(index, question, resolutions, folder_.Services().locale);
            return false;
        }
        // A file may have no way between two of its units where another file has one.
        BuildStatus status = BuildStatus::Ok;
        CVelmString message;
        for (std::size_t i = 0; i < resolutions.found.size(); ++i) {
            CVelmAnswerBuilder builder(folder_, index, question, resolutions.found[i], answer);
            const BuildStatus built = builder.Build();
            if (built == BuildStatus::Stale) {
                isStale_ = true;
                return false;
            }
            if (i == 0 || built == BuildStatus::Ok) {
                status = built;
                message = builder.Message();
            }
            if (built == BuildStatus::Ok) {
                resolutions.found.erase(resolutions.found.begin(),
                                        resolutions.found.begin() + static_cast<std::ptrdiff_t>(i));
                break;
            }
        }
        if (status != BuildStatus::Ok) {
            answer.fault = BuildFault(index, question, resolutions.found.front(), status, std::move(message), answer);
            return false;
        }
        if (CVelmString clash = OtherCaseClash(index, question, resolutions); !clash.empty()) {
            answer.fault.message = std::move(clash);
            return false;
        }
        answer.ok = true;
        AddReadingNotes(index, question, resolutions, answer.notes);
        AddUnits(index, question, resolutions.found.front(), answer);
        lastValue_ = resolutions.found.front().value;
        return true;
    }

    static void AddUnits(const CVelmUnitIndex& index, const Question& question, const CVelmResolution& resolution,
                         CVelmAnswer& answer) {
        for (std::size_t i = 0; i < question.words.size(); ++i) {
            const CVelmReading& reading = question.words[i].readings[resolution.choice[i]];
            if (reading.item != INDEX_NO_ITEM) {
                answer.units.push_back({CVelmString(index.Text(index.FileOf(reading).name)),
                                        static_cast<std::int32_t>(index.ItemOf(reading).position)});
            }
        }
    }

    /// Letter case was forgiven, and units of different sizes remain.
    static CVelmString OtherCaseClash(const CVelmUnitIndex& index, const Question& question,
                                      const CVelmResolutions& resolutions) {
        const CVelmResolution& best = resolutions.found.front();
        for (std::size_t i = 0; i < question.words.size(); ++i) {
            const QuestionWord& word = question.words[i];
            const CVelmReading& read = word.readings[best.choice[i]];
            if (!read.isOtherCase) {
                continue;
            }
            for (const CVelmResolution& other : resolutions.found) {
                const CVelmReading& reading = word.readings[other.choice[i]];
                if (reading.isOtherCase && reading.rank < RANK_UNLIKELY && !IsSameUnit(index, reading, read)) {
                    return u"\"" + CVelmString(question.TextOf(word)) + u"\" could be " + index.LabelOf(read) + u" (" +
                           index.NameOf(read) + u") or " + index.LabelOf(reading) + u" (" + index.NameOf(reading) +
                           u"): the letter case decides";
                }
            }
        }
        return {};
    }

    static CVelmQuestionFault BuildFault(const CVelmUnitIndex& index, const Question& question,
                                         const CVelmResolution& tried, BuildStatus status, CVelmString message,
                                         const CVelmAnswer& answer) {
        CVelmQuestionFault fault{std::move(message), question.target.position, question.target.length};
        if (status == BuildStatus::NotThis) {
            return fault;
        }
        const CVelmReading* const unit = tried.value.unit    ? &*tried.value.unit
                                         : tried.target.unit ? &*tried.target.unit
                                                             : nullptr;
        const CVelmString file = unit == nullptr ? CVelmString() : CVelmString(index.Text(index.FileOf(*unit).name));
        const CVelmString target =
            tried.target.unit ? index.NameOf(*tried.target.unit) : CVelmString(u"the units of ") + file;
        switch (status) {
            case BuildStatus::NoRoute:
                fault.message = file + u" has no conversion from " + index.NameOf(*tried.value.unit) + u" to " + target;
                break;
            case BuildStatus::CannotLoad:
                fault.message = file + u" cannot be loaded";
                break;
            default:
                fault.message = answer.understood + u" has no value in " + target;
                break;
        }
        return fault;
    }

    /// w = 80 kg
    bool ReadAssignment(const CVelmUnitIndex& index, Question& question, CVelmAnswer& answer) {
        const CVelmStringView text = question.text;
        const std::size_t equals = text.find(u'=');
        const CVelmStringView name = Trim(text.substr(0, std::min(equals, text.size())), u" \t");
        if (equals == CVelmStringView::npos || name.empty() ||
            !std::ranges::all_of(name, [](char16_t unit) { return IsLetter(unit) || IsDigit(unit) || unit == u'_'; }) ||
            IsDigit(name[0]) || text.find(u'=', equals + 1) != CVelmStringView::npos) {
            return false;
        }
        const CVelmString kept(name);
        const std::vector<CVelmString> names = Names();
        const QuestionReaderSetup setup{index, folder_.Services().clock, names, false};
        std::vector<CVelmReading> readings;
        index.FindUnits(kept, readings);
        const bool isUnit =
            std::ranges::any_of(readings, [](const CVelmReading& reading) { return !reading.isOtherCase; });
        Question value = question;
        // Only the value behind the sign is read, with its positions in the whole question.
        std::fill_n(value.text.begin(), equals + 1, u' ');
        CVelmAnswer computed;
        QuestionFault fault;
        if (!ReadQuestion(setup, value, fault)) {
            computed.fault = fault;
            unknown_ = fault.isUnknownWord ? std::optional(fault) : std::nullopt;
            // "km = m" and the like are questions.
            if (isUnit || !BeginsNumber(question.text[std::min(SkipBlanks(text, equals + 1), text.size() - 1)])) {
                return false;
            }
            answer = std::move(computed);
            return true;
        }
        const bool isBareUnit =
            value.target.kind == QuestionTargetKind::None && !value.value.nodes.empty() &&
            std::ranges::none_of(value.value.nodes, [](const QuestionNode& node) {
                return node.kind == QuestionNodeKind::Number || node.kind == QuestionNodeKind::Name ||
                       node.kind == QuestionNodeKind::Moment || node.kind == QuestionNodeKind::Clock;
            });
        if (isBareUnit) {
            return false;
        }
        if (isUnit || kept == LAST_ANSWER) {
            answer.fault = {
                u"\"" + kept + u"\" is " + (isUnit ? u"a unit" : u"the last answer") + u": choose another name",
                text.find(name), name.size()};
            return true;
        }
        value.text = question.text;
        if (AnswerRead(index, value, computed)) {
            CVelmAskedValue result = lastValue_;
            Keep(kept, result);
            const bool isAsGiven = result.unit && result.isExact && value.target.kind == QuestionTargetKind::None;
            computed.understood = isAsGiven ? kept : kept + u" = " + computed.understood;
            computed.rows.resize(1);
            if (isAsGiven) {
                computed.rows[0] = {index.LabelOf(*result.unit), index.NameOf(*result.unit),
                                    FormatDecimal(result.number, true), result.number, true};
            }
        }
        answer = std::move(computed);
        return true;
    }

    void Keep(const CVelmString& name, const CVelmAskedValue& value) {
        const auto found = std::ranges::find(kept_, name, &CVelmKeptValue::name);
        if (found != kept_.end()) {
            found->value = value;
        } else {
            kept_.push_back({name, value});
        }
    }

    CVelmWordFolder folder_;
    std::vector<CVelmKeptValue> kept_;
    CVelmAskedValue lastValue_;
    bool isStale_ = false;
    bool isPreview_ = false;                ///< looking at every file for each key would be slow
    std::optional<QuestionFault> unknown_;  ///< the fault is an unknown word
};

std::vector<CVelmSuggestion> CVelmQuestions::Session::Suggest(CVelmStringView text, std::size_t limit) {
    const CVelmUnitIndex& index = folder_.Index();
    std::size_t start = text.size();
    while (start > 0 && (IsLetter(text[start - 1]) || text[start - 1] > 0xA0)) {
        --start;
    }
    std::vector<CVelmSuggestion> suggestions;
    if (start == text.size()) {
        return suggestions;
    }
    const auto [first, last] = index.RangeOf(text.substr(start));
    std::vector<const IndexWord*> words;
    for (std::size_t i = first; i < last; ++i) {
        if ((index.words[i].flags & INDEX_WORD_INPUT) == 0) {
            words.push_back(&index.words[i]);
        }
    }
    std::ranges::stable_sort(words, [](const IndexWord* a, const IndexWord* b) {
        return a->rank != b->rank ? a->rank < b->rank : a->length < b->length;
    });
    for (const IndexWord* word : words) {
        if (suggestions.size() == limit) {
            break;
        }
        const IndexFile& file = index.files[index.FileOf(*word)];
        const std::uint32_t item = word->Item();
        CVelmSuggestion suggestion;
        suggestion.word = index.KeyOf(*word);
        suggestion.start = start;
        suggestion.fileName = index.Text(file.name);
        suggestion.name = index.Text(item == INDEX_NO_ITEM ? file.title : index.items[item].name);
        suggestion.item = item == INDEX_NO_ITEM ? -1 : static_cast<std::int32_t>(index.items[item].position);
        const bool isKnown = std::ranges::any_of(suggestions, [&](const CVelmSuggestion& other) {
            return other.fileName == suggestion.fileName && other.item == suggestion.item;
        });
        if (!isKnown) {
            suggestions.push_back(std::move(suggestion));
        }
    }
    return suggestions;
}

CVelmQuestions::CVelmQuestions(const CVelmServices& services, FormulaContext& context, CVelmString folder,
                               CVelmString cacheFolder)
    : session_(std::make_unique<Session>(services, context, std::move(folder), std::move(cacheFolder))) {}

CVelmQuestions::~CVelmQuestions() = default;

CVelmAnswer CVelmQuestions::Ask(CVelmStringView question) {
    return session_->Ask(question);
}

CVelmAnswer CVelmQuestions::Preview(CVelmStringView question) {
    return session_->Preview(question);
}

std::vector<CVelmSuggestion> CVelmQuestions::Suggest(CVelmStringView question, std::size_t limit) {
    return session_->Suggest(question, limit);
}

}  // namespace velm
