#pragma once

#include "platform/text.h"

namespace velm {

/// How many letters must be put in, left out, changed or swapped with their neighbor to make one text of the other,
/// letter case left aside. Only the first 64 units of long texts are compared.
int TextDistance(CVelmStringView a, CVelmStringView b);

}  // namespace velm
