#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "data/data_file.h"
#include "support/table.h"

namespace velm::test {
namespace {

long double Product(const std::string& text, const std::map<std::string, long double>& names) {
    long double product = 1;
    char step = '*';
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_of("*/", at), text.size());
        const std::string word = text.substr(at, end - at);
        const long double number = names.count(word) > 0 ? names.at(word) : std::stold(word);
        product = step == '*' ? product * number : product / number;
        step = text[end];
        at = end + 1;
    }
    return product;
}

/// Sizes of a file's units by identifier; nothing for those that are not exact.
using Units = std::map<CVelmString, std::optional<long double>>;

std::map<CVelmString, Units> KnownUnits() {
    std::map<std::string, long double> names;
    std::map<CVelmString, Units> files;
    for (const auto& row : ReadTable(VELMORA_TABLES "/units.txt", " |")) {
        const std::string& size = row.at(2);
        const auto product = size == "?" ? std::nullopt : std::optional(Product(size, names));
        if (row.at(0) == "-") {
            names[row.at(1)] = product.value();
        } else {
            files[FromUtf8(row.at(0) + ".cnv")][FromUtf8(row.at(1))] = product;
        }
    }
    return files;
}

TEST(Units, AreAllKnownAndExactToOnePartInTenToTheFifteenth) {
    static_assert(std::numeric_limits<long double>::digits >= 64,
                  "the ratios must be exact as far as a double can tell");
    const auto known = KnownUnits();
    for (const CVelmString& name : DataFileNames(KIND_CONVERSION)) {
        SCOPED_TRACE(ToUtf8(name));
        DataFile file(name);
        const Units& units = known.at(name);
        if (units.contains(u"*")) {
            continue;  // none of its units is a multiple of another one
        }
        EXPECT_EQ(units.size(), file->ItemCount());
        for (const auto& from : file->items) {
            const auto fromSize = units.at(from->identifier);
            for (const double value : {1.0, 3.0, 26.2, 0.7, 12345.678}) {
                file.Enter(*from, value);
                for (const auto& to : file->items) {
                    const auto toSize = units.at(to->identifier);
                    if (to->state != STATE_NONE && fromSize && toSize) {
                        const long double error = to->value / (value * *fromSize / *toSize) - 1;
                        EXPECT_LE(std::abs(static_cast<double>(error)), 1e-15)
                            << value << " " << ToUtf8(from->identifier) << " to " << ToUtf8(to->identifier);
                    }
                }
            }
        }
    }
}

}  // namespace
}  // namespace velm::test
