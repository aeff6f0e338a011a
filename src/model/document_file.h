#pragma once

#include <optional>
#include <string>

#include "platform/services.h"
#include "platform/text.h"

namespace velm {

class CVelmDocument;
class CVelmFileStream;
struct CVelmFileHeader;

/// How a load ended.
enum class LoadStatus {
    Ok,
    CannotOpen,     ///< missing, or the system refuses
    UnknownFormat,  ///< the first word is neither format's
    SizeMismatch,   ///< the size word differs from the file's length
    Truncated,      ///< a short read, or a text longer than its bound, in the header or between records
    NegativeCount,
    UnknownItemType,
};

/// The file behind a document: its name as the disk spells it, and what it held when it was last read or saved.
class CVelmDocumentFile {
public:
    /// The document owns this. The services outlive both.
    CVelmDocumentFile(CVelmDocument& document, const CVelmServices& services)
        : document_(document), services_(services) {}

    /// Reads the header alone, or everything when `full`. On failure the document has no items and lastLoad has the
    /// reason. A file in the older format is rewritten immediately.
    bool Load(const CVelmString& folder, bool full);

    /// SaveChanges, unless `folder` is empty, and drops the items. False, with the items kept, when edits could not be
    /// saved; without edits the items are dropped even when saving fails.
    bool Unload(const CVelmString& folder);

    /// Atomically replaces the file by the whole document. On failure, or when the items are not loaded, returns false
    /// and leaves the old file intact. The first save over a file in the older format, or with unreadable records,
    /// keeps that file under its full name followed by ".bak".
    bool Save(const CVelmString& folder);

    /// Saves unless the file has this content already, or nothing was edited and another program has replaced it: a
    /// changed display format alone must not overwrite newer rates. False when saving fails.
    bool SaveChanges(const CVelmString& folder);

    /// File name with the folder before it, in the letter case of the disk when the file was loaded.
    CVelmString PathIn(const CVelmString& folder) const;

private:
    LoadStatus Read(const CVelmString& folder, bool full, CVelmFileHeader& header);
    bool Open(CVelmFileStream& stream, const CVelmString& folder);

    /// Writes the serialized document to its file.
    bool Write(const CVelmString& folder, const std::string& bytes);

    /// Whether another program has changed the file since it was read or saved here.
    bool IsReplaced(const CVelmString& folder) const;

    CVelmDocument& document_;
    const CVelmServices services_;
    CVelmString nameOnDisk_;                    ///< of the file loaded, where its letter case is another
    CVelmString originalToKeep_;                ///< path of the file read that must not be overwritten without a copy
    std::optional<CVelmString> updatedInFile_;  ///< the file's updated text as last read or saved; none for a new one
};

}  // namespace velm
