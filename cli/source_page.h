#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "model/document.h"
#include "model/rate_days.h"
#include "source_table.h"

namespace velm {

/// The text reference about data files that is made of their text forms: what each says about itself, and where its
/// numbers come from. HTML in ASCII.
class CVelmSourcePage {
public:
    /// Adds the section of a file. The document and the days of its rates are what import makes of the table; the
    /// document has its file name. Ends the command with the line when a calculation file does not say what it is
    /// about, or when a number has no source.
    void Add(const SourceFile& file, const toml::table& source, const CVelmDocument& document,
             const CVelmRateDays& days);

    /// The sections by category and title, behind a list of them.
    std::string Text() const;

private:
    struct Section {
        CVelmString anchor;
        std::string text;
    };

    std::map<CVelmString, std::map<CVelmString, Section>> categories_;  ///< sections by title
};

}  // namespace velm
