#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ask/answer.h"
#include "ask/questions.h"
#include "platform/text.h"

namespace velm {

/// Where a line of a search leads.
struct CVelmSearchPlace {
    CVelmString fileName;                  ///< with extension; empty: nowhere
    std::int32_t item = -1;                ///< position of the item to select; -1: none
    std::vector<CVelmPlacedValue> values;  ///< to enter in the file's items
};

enum class SearchLineKind { Answer, Note, Fault, Match };

struct CVelmSearchLine {
    SearchLineKind kind = SearchLineKind::Answer;
    CVelmString text;
};

/// What is shown while a question is typed: its answer with notes, or what is wrong with it, and below them the units
/// and files that its last word begins.
class CVelmQuestionSearch {
public:
    /// The questions outlive the search, which never changes what "ans" is.
    explicit CVelmQuestionSearch(CVelmQuestions& questions) : questions_(questions) {}

    /// Searches for a text with at most `matches` units and files, those first that complete the question. A text that
    /// can still become a question has no fault line.
    void SetText(CVelmStringView text, std::size_t matches);

    const std::vector<CVelmSearchLine>& Lines() const { return lines_; }

    /// Where a line leads. A match that completes the question takes its values along: "kilometers" of "26.2 kilom".
    const CVelmSearchPlace& PlaceOf(std::size_t line) const;

    /// What is wrong, its message empty when the text is answered.
    const CVelmQuestionFault& Fault() const { return fault_; }

private:
    /// A unit or file, and where it leads.
    struct Match {
        CVelmSuggestion suggestion;
        CVelmSearchPlace place;
    };

    void FindMatches(std::size_t limit);
    void AddAnswer(const CVelmAnswer& answer);
    bool IsUnfinished() const;

    CVelmQuestions& questions_;
    CVelmString text_;
    CVelmSearchPlace answerPlace_;
    CVelmQuestionFault fault_;
    std::vector<Match> matches_;
    std::vector<CVelmSearchLine> lines_;
};

}  // namespace velm
