#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "model/conversion_document.h"
#include "platform/services.h"
#include "platform/text.h"

namespace velm {

class CVelmCatalog;

/// Merges what was downloaded for a conversion document that has just been opened; true when there was something.
using CVelmPendingMerge = std::function<bool(CVelmConversionDoc&, const CVelmCatalog&)>;

/// Every data file of the data folder. The document at index 0 is the open one, so the order is that of last use.
class CVelmCatalog {
public:
    /// The services outlive the catalog.
    explicit CVelmCatalog(const CVelmServices& services) : services_(services) {}

    /// The merge that Activate runs; without it downloaded updates stay pending.
    void SetPendingMerge(CVelmPendingMerge merge) { mergePending_ = std::move(merge); }

    /// Stores the folder, with a separator behind it.
    void SetFolder(const CVelmString& path);
    const CVelmString& Folder() const { return folder_; }
    const CVelmServices& Services() const { return services_; }

    /// Index of the document with that file name (with extension, any letter case), its header loaded and
    /// appended when new; -1 for a name that is no data file's and for an unreadable header.
    int AddFile(const CVelmString& name);

    /// AddFile for each name of a list of NUL-ended names, up to the first empty one.
    void AddFiles(CVelmStringView list);

    /// AddFile for every data file of the folder. Documents already known keep their place.
    void ScanFolder();

    int FindDocument(CVelmStringView name) const;

    /// Null when not found; with `activate` the document is made the open one.
    CVelmDocument* GetDocument(CVelmStringView name, bool activate);

    /// Makes a document the open one: the open one before it is written back, the new one moves to index 0, is
    /// loaded fully and has its pending update file merged. Index 0 is only loaded. Returns the document at index 0,
    /// null for an index outside the catalog. When edits of the open document cannot be written it stays open.
    CVelmDocument* Activate(int index);

    /// Appends a new document and returns its index.
    int AddDocument(std::unique_ptr<CVelmDocument> document);

    /// "%d units"; the count is that of the items in memory when the document is loaded.
    static CVelmString UnitCountText(CVelmDocument& document);

    std::vector<std::unique_ptr<CVelmDocument>> documents;

private:
    int AddNewFile(const CVelmString& name);

    CVelmServices services_;
    CVelmPendingMerge mergePending_;
    CVelmString folder_;
};

}  // namespace velm
