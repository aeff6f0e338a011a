#include "platform/text_distance.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace velm {

int TextDistance(CVelmStringView a, CVelmStringView b) {
    static constexpr std::size_t COMPARED_UNITS = 64;
    a = a.substr(0, COMPARED_UNITS);
    b = b.substr(0, COMPARED_UNITS);
    const auto same = [&](std::size_t i, std::size_t j) { return FoldCase(a[i - 1]) == FoldCase(b[j - 1]); };
    using Row = std::array<int, COMPARED_UNITS + 1>;
    Row beforeLast{};
    Row last{};
    Row row{};
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = static_cast<int>(j);
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        beforeLast = last;
        last = row;
        row[0] = static_cast<int>(i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same(i, j) ? 0 : 1)});
            if (i > 1 && j > 1 && same(i, j - 1) && same(i - 1, j)) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
    }
    return row[b.size()];
}

}  // namespace velm
