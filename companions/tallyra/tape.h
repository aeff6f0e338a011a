#pragma once

#include <cstddef>
#include <deque>

#include "platform/services.h"
#include "platform/text.h"

namespace velm {

struct TapeLine {
    CVelmString expression;  ///< empty: the line continues the result of the one above
    CVelmString result;

    bool operator==(const TapeLine&) const = default;
};

/// The expressions computed before, oldest first, with their results as they were shown.
class CVelmTape {
public:
    static constexpr std::size_t MAX_LINES = 500;
    static constexpr std::size_t MAX_TEXT_LENGTH = 1000;

    /// Puts a line at the end; the oldest goes when there are too many. Texts are cut to MAX_TEXT_LENGTH units.
    void Add(CVelmStringView expression, CVelmStringView result);

    const std::deque<TapeLine>& Lines() const { return lines_; }

    /// A file of UTF-8 lines, expression and result with a tab between. Loading adds; a missing or odd file adds what
    /// can be read of it. Saving replaces the file in one step and is false when that fails.
    void Load(const CVelmServices& services, const CVelmString& path);
    bool Save(const CVelmServices& services, const CVelmString& path) const;

private:
    std::deque<TapeLine> lines_;
};

}  // namespace velm
