#pragma once

#include <string>
#include <vector>

#include "platform/services.h"
#include "platform/text.h"

namespace velm {

/// The text references: the ".htm" files of the data folder.
class CVelmReferenceList {
public:
    /// The services outlive the list.
    explicit CVelmReferenceList(const CVelmServices& services) : services_(services) {}

    /// Sets the folder and appends its ".htm" files, in the order of the folder listing.
    void ScanReferences(const CVelmString& folder);

    /// Reads a whole page: UTF-8, or one character for each byte where it is not. False when nothing was read.
    bool ReadReference(std::size_t index, CVelmString& text) const;

    std::vector<CVelmString> names;  ///< without extension

private:
    CVelmServices services_;
    CVelmString folder_;
};

}  // namespace velm
