#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string_view>

namespace velm::test {

using Input = std::span<const std::uint8_t>;

/// Runs one input; each target defines its own.
void Try(Input input);

/// Aborts, and so reports the input, unless the condition holds.
inline void Require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "not so: %s\n", what);
        std::abort();
    }
}

inline std::string_view Characters(Input input) {
    return {reinterpret_cast<const char*>(input.data()), input.size()};
}

}  // namespace velm::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    velm::test::Try({data, size});
    return 0;
}
