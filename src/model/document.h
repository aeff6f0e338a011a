#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "formula/formula_context.h"
#include "model/document_file.h"
#include "model/item.h"
#include "platform/services.h"
#include "platform/text.h"

namespace velm {

class CVelmFileStream;

/// A data file in memory: header, items and, in a conversion file, conversions.
class CVelmDocument {
public:
    /// The services outlive the document.
    explicit CVelmDocument(const CVelmServices& services);
    virtual ~CVelmDocument() = default;
    CVelmDocument(const CVelmDocument&) = delete;
    CVelmDocument& operator=(const CVelmDocument&) = delete;

    /// Removes and destroys `count` items from `first`, and every conversion that refers to one of them.
    virtual void RemoveItems(std::size_t first, std::size_t count);

    /// Computes every value from the current item (conversions, without the items that the list hides) or from the
    /// inputs (calculations).
    virtual void Recalculate(FormulaContext& context) = 0;
    virtual std::int32_t GetKind() const = 0;

    /// What follows the items in the file. Bytes counted; the readers fail when the tail itself is short or its count
    /// negative. A record that cannot be read is left out and counted. While a tail is being read the items are those
    /// of the file, null for one that was left out.
    virtual std::int32_t WriteTail(CVelmFileStream& stream) const = 0;
    virtual LoadStatus ReadTail(CVelmFileStream& stream) = 0;
    virtual LoadStatus ReadOldTail(CVelmFileStream&) { return LoadStatus::Ok; }

    /// The document's file; see CVelmDocumentFile. A non-empty `newFileName` replaces the file name.
    bool Load(const CVelmString& folder, bool full, const CVelmString& newFileName = {});
    bool EnsureLoaded(const CVelmString& folder);
    bool Unload(const CVelmString& folder) { return file_.Unload(folder); }
    bool Save(const CVelmString& folder) { return file_.Save(folder); }
    bool SaveChanges(const CVelmString& folder) { return file_.SaveChanges(folder); }
    CVelmString PathIn(const CVelmString& folder) const { return file_.PathIn(folder); }

    /// Sets the updated text: `text`, or the current local date and time when it is empty. Marks edits to save.
    void Touch(const CVelmString& text = {});

    CVelmItem* AddItem(std::unique_ptr<CVelmItem> item);
    void RemoveItem(const CVelmItem* item);
    CVelmItem* GetItem(std::size_t position) const { return items[position].get(); }
    std::size_t ItemCount() const { return items.size(); }
    CVelmString FileNameWithExtension() const;

    CVelmItems items;
    CVelmItem* currentItem = nullptr;  ///< the item last entered or selected; not owned, null when none
    CVelmString title;
    CVelmString category;
    CVelmString fileName;   ///< without folder and extension
    bool loaded = true;     ///< the items are in memory
    bool modified = false;  ///< edited since it was last loaded or saved
    CVelmString updatedText;
    double updatedTime = 0.0;  ///< a DateTime value
    std::int32_t storedItemCount = 0;
    LoadStatus lastLoad = LoadStatus::Ok;
    std::int64_t droppedRecords = 0;  ///< item and conversion records that the last full load could not read

private:
    const CVelmServices services_;
    CVelmDocumentFile file_;
};

}  // namespace velm
