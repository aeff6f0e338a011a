#include "ask/questions.h"
#include "fuzz/fuzz.h"
#include "support/small_folder.h"

namespace velm::test {
namespace {

struct World {
    SmallFolder folder;
    FixedClock clock;
    FormulaContext context{clock};
    CVelmQuestions questions{folder.Services(), context, {}};
};

}  // namespace

/// Any question has an answer with a value, or a fault that lies in the question; later ones see what it kept.
void Try(Input input) {
    static World world;
    const CVelmString question = FromUtf8(Characters(input));
    const CVelmAnswer answer = world.questions.Ask(question);
    if (answer.ok) {
        Require(!answer.rows.empty(), "an answer has a row");
        Require(!answer.rows[0].text.empty(), "a row has a text");
    } else {
        Require(!answer.fault.message.empty(), "a refusal has a reason");
        Require(answer.fault.position + answer.fault.length <= question.size(), "the fault lies in the question");
    }
    Require(world.questions.Suggest(question, 5).size() <= 5, "not more suggestions than asked for");
}

}  // namespace velm::test
