#pragma once

#include <memory>

#include "formula/formula.h"
#include "platform/text.h"

namespace velm {

/// Caches the parsed form of an editable formula text, so that it is parsed once per edit. Allocates on first use.
class CVelmCachedFormula {
public:
    /// The parsed form of `text`, valid until the next call.
    const CVelmFormula& Of(const CVelmString& text) {
        if (!parsed_ || parsed_->text != text) {
            parsed_ = std::make_unique<Parsed>(Parsed{text, CVelmFormula(text)});
        }
        return parsed_->formula;
    }

private:
    struct Parsed {
        CVelmString text;
        CVelmFormula formula;
    };

    std::unique_ptr<Parsed> parsed_;
};

}  // namespace velm
