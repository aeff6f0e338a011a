#pragma once

#include "platform/text.h"

namespace velm {

/// Two decimals. Grouped text has "," every three digits and a negative value in parentheses, ungrouped text a "-".
/// Beyond 1e18 and for non-finite values the same as FormatDecimal.
CVelmString FormatCurrency(double value, bool grouped);

}  // namespace velm
