#include "ask/answer.h"

namespace velm {

CVelmString CVelmAnswerRow::TextWithUnit() const {
    return textHasUnit || identifier.empty() ? text : text + (identifier == u"%" ? u"" : u" ") + identifier;
}

CVelmString CVelmAnswer::Line() const {
    if (rows.empty()) {
        return understood;
    }
    return understood.empty() ? rows.front().TextWithUnit() : understood + u" = " + rows.front().TextWithUnit();
}

}  // namespace velm
