#include "ask/answer.h"

namespace velm {

CVelmString CVelmAnswerRow::TextWithUnit() const {
    return textHasUnit || identifier.empty() ? text : text + (identifier == u"%" ? u"" : u" ") + identifier;
}

CVelmString CVelmAnswerRow::NamedText() const {
    return (name.empty() ? CVelmString() : name + u": ") + TextWithUnit();
}

CVelmString CVelmAnswer::Line() const {
    if (rows.empty()) {
        return understood;
    }
    const CVelmString value = rows.front().TextWithUnit();
    return understood.empty() || understood == value ? value : understood + u" = " + value;
}

}  // namespace velm
