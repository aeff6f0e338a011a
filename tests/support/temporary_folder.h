#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/text.h"

namespace velm::test {

using Bytes = std::vector<std::uint8_t>;

/// A temporary folder for one test, removed at the end with its contents.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// The folder, with a trailing separator.
    const CVelmString& Path() const { return path_; }
    CVelmString PathOf(CVelmStringView name) const { return path_ + CVelmString(name); }

    void Write(CVelmStringView name, const Bytes& bytes) const;
    void WriteText(CVelmStringView name, std::string_view text) const;

    /// Empty for a missing file.
    Bytes Read(CVelmStringView name) const;
    bool Contains(CVelmStringView name) const;

    /// Names of all entries, sorted.
    std::vector<CVelmString> Names() const;

private:
    CVelmString path_;
};

}  // namespace velm::test
