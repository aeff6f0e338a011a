#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "ask/answer.h"
#include "formula/formula_context.h"
#include "platform/services.h"
#include "platform/text.h"

namespace velm {

/// A word that can continue a question.
struct CVelmSuggestion {
    CVelmString word;        ///< as it is typed: "km", "Tokyo", "tip"
    CVelmString name;        ///< what it means: "Kilometers"
    CVelmString fileName;    ///< with extension; the file that it is from
    std::int32_t item = -1;  ///< position in that file; -1: the file itself
    std::size_t start = 0;   ///< where in the question the part begins that the word takes the place of
};

/// Answers questions such as "26.2 mi in km" from the files of a data folder.
class CVelmQuestions {
public:
    /// The services and the context, which formulas are computed in, outlive the object. `folder` ends with a
    /// separator. `cacheFolder` is where the index of the folder's words is kept between runs; it is created when
    /// needed, and empty for none. Nothing is read before the first question.
    CVelmQuestions(const CVelmServices& services, FormulaContext& context, CVelmString folder,
                   CVelmString cacheFolder = {});
    ~CVelmQuestions();
    CVelmQuestions(const CVelmQuestions&) = delete;
    CVelmQuestions& operator=(const CVelmQuestions&) = delete;

    /// Answers one question; "ans" in it is the last answer. `NAME = VALUE` keeps a value under a name for later
    /// questions. Never fails otherwise than by the answer's fault.
    CVelmAnswer Ask(CVelmStringView question);

    /// The answer to a question that is still being typed: keeps neither it nor a name.
    CVelmAnswer Preview(CVelmStringView question);

    /// Units, files and sheets whose words begin with the last word of an unfinished question, nearest first.
    std::vector<CVelmSuggestion> Suggest(CVelmStringView question, std::size_t limit);

private:
    class Session;
    std::unique_ptr<Session> session_;
};

}  // namespace velm
