#include "model/document_file.h"

#include <utility>

#include "datetime/date_time.h"
#include "model/document.h"
#include "model/document_kinds.h"
#include "model/file_format.h"
#include "model/file_replacement.h"
#include "model/file_stream.h"

namespace velm {

namespace {

void TakeHeader(CVelmFileHeader& header, CVelmDocument& document) {
    if (!header.isOlder) {
        document.updatedText = std::move(header.updatedText);
        document.category = std::move(header.category);
    }
    document.title = std::move(header.title);
    document.storedItemCount = header.itemCount;
    if (header.time) {
        document.updatedTime = DateTime::FromSystemTime(*header.time).value;
    }
}

/// Whether a file contains exactly these bytes.
bool HasContent(CVelmFileSystem& files, const CVelmString& path, const std::string& bytes) {
    const auto file = files.Open(path, FileMode::Read);
    std::string held;
    return file != nullptr && ReadToEnd(*file, bytes.size() + 1, held) && held == bytes;
}

/// Copies a file to its full name followed by ".bak", unless there is such a file or nothing to copy. False when the
/// copy cannot be made.
bool KeepOriginal(CVelmFileSystem& files, const CVelmString& path) {
    const CVelmString backup = path + u".bak";
    return files.Exists(backup) || !files.Exists(path) || CopyFileTo(files, path, backup);
}

}  // namespace

bool CVelmDocumentFile::Load(const CVelmString& folder, bool full) {
    document_.RemoveItems(0, document_.ItemCount());
    document_.droppedRecords = 0;
    originalToKeep_.clear();
    CVelmFileHeader header;
    document_.lastLoad = Read(folder, full, header);
    const bool ok = document_.lastLoad == LoadStatus::Ok;
    document_.loaded = ok && (full || header.isOlder);
    if (!document_.loaded) {
        document_.RemoveItems(0, document_.ItemCount());
    }
    document_.modified = false;
    if (ok && header.isOlder) {
        Save(folder);  // on failure the file stays as it is, still readable
        if (!full) {
            Unload({});
        }
    }
    return ok;
}

LoadStatus CVelmDocumentFile::Read(const CVelmString& folder, bool full, CVelmFileHeader& header) {
    CVelmFileStream stream(services_.files, services_.clock);
    if (!Open(stream, folder)) {
        return LoadStatus::CannotOpen;
    }
    if (const LoadStatus status = ReadHeader(stream, header); status != LoadStatus::Ok) {
        return status;
    }
    // A file in the older format is rewritten whole, so all of it is read.
    if (full || header.isOlder) {
        if (const LoadStatus status = ReadContent(stream, header, document_); status != LoadStatus::Ok) {
            return status;
        }
        if (header.isOlder || document_.droppedRecords > 0 || stream.Remaining() > 0) {
            originalToKeep_ = PathIn(folder);
        }
    }
    TakeHeader(header, document_);
    updatedInFile_ = document_.updatedText;
    return LoadStatus::Ok;
}

bool CVelmDocumentFile::Open(CVelmFileStream& stream, const CVelmString& folder) {
    nameOnDisk_.clear();
    if (stream.OpenRead(PathIn(folder))) {
        return true;
    }
    // Names of data files ignore letter case even on case-sensitive file systems.
    nameOnDisk_ = document_.fileName + CVelmString(UpperExtensionOfKind(document_.GetKind()));
    if (stream.OpenRead(PathIn(folder))) {
        return true;
    }
    const CVelmString name = document_.FileNameWithExtension();
    nameOnDisk_ = FindInFolder(services_.files, InFolder(folder, {}), name).value_or(CVelmString());
    return !nameOnDisk_.empty() && stream.OpenRead(PathIn(folder));
}

bool CVelmDocumentFile::Unload(const CVelmString& folder) {
    if (!document_.loaded) {
        return true;
    }
    if (!folder.empty() && !SaveChanges(folder) && document_.modified) {
        return false;
    }
    document_.storedItemCount = static_cast<std::int32_t>(document_.ItemCount());
    document_.loaded = false;
    document_.RemoveItems(0, document_.ItemCount());
    document_.modified = false;
    return true;
}

bool CVelmDocumentFile::SaveChanges(const CVelmString& folder) {
    if (!document_.loaded) {
        return false;  // the items are in the file only
    }
    // Comparing is much cheaper than writing, and spares a handheld's memory card.
    const auto bytes = DocumentBytes(document_);
    if (bytes && HasContent(services_.files, PathIn(folder), *bytes)) {
        return true;
    }
    return (!document_.modified && IsReplaced(folder)) || (bytes && Write(folder, *bytes));
}

bool CVelmDocumentFile::Save(const CVelmString& folder) {
    if (!document_.loaded) {
        return false;  // the items are in the file only
    }
    const auto bytes = DocumentBytes(document_);
    return bytes && Write(folder, *bytes);
}

bool CVelmDocumentFile::Write(const CVelmString& folder, const std::string& bytes) {
    const CVelmString path = PathIn(folder);
    if ((!originalToKeep_.empty() && !KeepOriginal(services_.files, path)) ||
        !ReplaceFile(services_.files, path, bytes)) {
        return false;
    }
    if (path == originalToKeep_) {
        originalToKeep_.clear();
    }
    updatedInFile_ = document_.updatedText;
    document_.modified = false;
    return true;
}

bool CVelmDocumentFile::IsReplaced(const CVelmString& folder) const {
    CVelmFileStream stream(services_.files, services_.clock);
    CVelmFileHeader header;
    return updatedInFile_ && stream.OpenRead(PathIn(folder)) && ReadHeader(stream, header) == LoadStatus::Ok &&
           header.updatedText != *updatedInFile_;
}

CVelmString CVelmDocumentFile::PathIn(const CVelmString& folder) const {
    const CVelmString name = document_.FileNameWithExtension();
    return InFolder(folder, EqualsNoCase(name, nameOnDisk_) ? nameOnDisk_ : name);
}

}  // namespace velm
