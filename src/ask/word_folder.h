#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "ask/unit_index.h"
#include "formula/formula_context.h"
#include "model/conversion_document.h"
#include "platform/services.h"

namespace velm {

/// The readable files of a data folder that say what people call its units: the program's, and the user's own.
inline constexpr CVelmStringView UNIT_WORDS_FILE = u"Units.words";
inline constexpr CVelmStringView OWN_WORDS_FILE = u"My units.words";

/// The data folder as questions see it: the index of its words, which is kept in a cache between runs, and the files
/// that were asked for, loaded whole.
class CVelmWordFolder {
public:
    /// See CVelmQuestions.
    CVelmWordFolder(const CVelmServices& services, FormulaContext& context, CVelmString folder,
                    CVelmString cacheFolder);

    /// The index; made or read from the cache first when there is none. Files that come or go are noticed by the time
    /// of the folder, so this is cheap.
    const CVelmUnitIndex& Index();

    /// Compares every file with the index and makes it anew when one differs; true when it did. What Index notices at
    /// once is left out where a system keeps no times of folders or a file was overwritten in place.
    bool Refresh();

    /// A file of the index, loaded whole and current; null when it cannot be loaded. When it has changed, the index is
    /// made anew and `isStale` set: what was read from the index counts no longer.
    CVelmDocument* Document(std::uint32_t file, bool& isStale);

    FormulaContext& Context() { return context_; }
    const CVelmServices& Services() const { return services_; }

private:
    struct Stamps {
        std::uint64_t folder = 0;
        IndexStamp words;
        IndexStamp ownWords;

        bool operator==(const Stamps&) const = default;
    };

    IndexStamp StampOf(CVelmStringView name) const;
    Stamps CurrentStamps() const;
    std::vector<CVelmString> DataFiles() const;
    bool Matches(const std::vector<CVelmString>& names) const;
    void Build(const std::vector<CVelmString>& names);
    bool ReadCache();
    void WriteCache() const;
    CVelmString CachePath() const;

    CVelmServices services_;
    FormulaContext& context_;
    CVelmString folder_;
    CVelmString cacheFolder_;
    CVelmUnitIndex index_;
    Stamps stamps_;
    bool hasIndex_ = false;
    std::vector<std::unique_ptr<CVelmDocument>> documents_;  ///< by file; null: not loaded
};

}  // namespace velm
