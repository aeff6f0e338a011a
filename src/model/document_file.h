#pragma once

#include <optional>
#include <string>

#include "model/load_status.h"
#include "platform/services.h"
#include "platform/text.h"

namespace velm {

class CVelmDocument;
class CVelmFileStream;
struct CVelmFileHeader;

/// The file behind a document: its name as the disk spells it, and what it held when it was last read or saved.
class CVelmDocumentFile {
public:
    /// The document owns this. The services outlive both.
    CVelmDocumentFile(CVelmDocument& document, const CVelmServices& services)
        : document_(document), services_(services) {}

    /// Reads the header alone, or everything when `full`. On failure the document has no items; its lastLoad tells why.
    /// A file in the older format is rewritten at once.
    bool Load(const CVelmString& folder, bool full);

    /// Saves into `folder` (unless it is empty, or the file holds the very same) and drops the items. False, with the
    /// items kept, when edits could not be saved; what was not edited is dropped also when the folder cannot be
    /// written.
    bool Unload(const CVelmString& folder);

    /// Writes the whole document beside its file and puts it in the file's place in one step. False leaves the
    /// old file whole; so it is when the items are not loaded. The first save over a file that was in the older
    /// format, or of which records could not be read, keeps that file under its full name followed by ".bak".
    bool Save(const CVelmString& folder);

    /// File name with the folder before it, in the letter case of the disk when the file was loaded.
    CVelmString PathIn(const CVelmString& folder) const;

private:
    LoadStatus Read(const CVelmString& folder, bool full, CVelmFileHeader& header);
    bool Open(CVelmFileStream& stream, const CVelmString& folder);

    /// Writes what the file does not hold already, unless nothing was edited and the file has been replaced.
    bool WriteBack(const CVelmString& folder);

    /// Puts the bytes of the document into its file.
    bool Write(const CVelmString& folder, const std::string& bytes);

    /// Whether another program has put other data into the file since it was read or saved here.
    bool IsReplaced(const CVelmString& folder) const;

    CVelmDocument& document_;
    const CVelmServices services_;
    CVelmString nameOnDisk_;                    ///< of the file loaded, where its letter case is another
    CVelmString originalToKeep_;                ///< path of the file read that must not be overwritten without a copy
    std::optional<CVelmString> updatedInFile_;  ///< the file's updated text as last read or saved; none for a new one
};

}  // namespace velm
