#pragma once

#include <cstddef>
#include <iosfwd>

namespace velm::test {

/// What this process holds of the system's things.
struct Holdings {
    int gdi = 0;
    int user = 0;
    int handles = 0;
    std::size_t workingSet = 0;  ///< bytes
};

/// Counts anew, under Wine, which answers every question of that kind with 0: the tables of handles are gone through,
/// the GDI table, the windows and menus (an icon shows by its two bitmaps), and the server's list.
Holdings CountHoldings();

std::ostream& operator<<(std::ostream& out, const Holdings& holdings);

}  // namespace velm::test
