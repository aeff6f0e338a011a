#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "platform/text.h"

namespace velm {

enum class XmlEvent { Start, End, Finished, Error };

/// Reads the elements of an XML text in their order. A document type declaration, and with it every entity of its own,
/// is refused; text, comments and instructions are skipped.
class CVelmXmlReader {
public:
    /// The text outlives the reader.
    explicit CVelmXmlReader(CVelmStringView text) : rest_(text) {}

    /// The next start or end of an element; an empty element has both. Finished behind the one whole root element,
    /// Error for anything that is not well-formed.
    XmlEvent Next();

    /// Of the element that Next returned, without the prefix of its namespace.
    CVelmStringView Name() const;
    std::optional<CVelmString> Attribute(CVelmStringView name) const;

    /// Why Next returned Error.
    const CVelmString& ErrorText() const { return error_; }

private:
    XmlEvent Fail(CVelmStringView text);
    XmlEvent ReadMarkup();
    XmlEvent ReadStart();
    XmlEvent ReadEnd();
    XmlEvent End();
    bool ReadAttribute();
    bool SkipPast(CVelmStringView end);
    bool SkipText();
    void SkipBlanks();
    CVelmStringView ReadName();

    CVelmStringView rest_;
    std::vector<CVelmStringView> open_;
    std::vector<std::pair<CVelmStringView, CVelmString>> attributes_;
    CVelmStringView name_;
    bool endPending_ = false;  ///< of an empty element
    bool hasRoot_ = false;
    CVelmString error_;
};

}  // namespace velm
