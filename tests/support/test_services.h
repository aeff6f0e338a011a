#pragma once

#include "platform/services.h"
#include "support/fixed_clock.h"
#include "support/fixed_locale.h"

namespace velm::test {

/// The services of a test: the given file system, a fixed clock and a fixed locale.
class TestServices {
public:
    explicit TestServices(CVelmFileSystem& files = SystemFiles()) : files_(files) {}

    CVelmServices Services() { return {files_, clock, locale}; }

    FixedClock clock;
    FixedLocale locale;

private:
    CVelmFileSystem& files_;
};

}  // namespace velm::test
