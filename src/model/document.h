#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "formula/formula_context.h"
#include "model/conversion.h"
#include "model/conversion_engine.h"
#include "model/item.h"
#include "platform/services.h"
#include "platform/text.h"

namespace velm {

class CVelmFileStream;
struct CVelmFileHeader;

/// Kinds of document.
constexpr std::int32_t KIND_CONVERSION = 1;
constexpr std::int32_t KIND_CALCULATION = 2;

/// ".cnv" or ".cal".
CVelmStringView ExtensionOfKind(std::int32_t kind);

/// A name with the extension of a kind behind it.
CVelmString WithExtension(const CVelmString& name, std::int32_t kind);

/// The kind whose extension the file name ends with, in any letter case; 0 for any other name.
std::int32_t KindOfFileName(CVelmStringView fileName);

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

    /// Computes every value from the current item (conversions) or from the inputs (calculations).
    virtual void Recalculate(FormulaContext& context) = 0;
    virtual std::int32_t GetKind() const = 0;

    /// What follows the items in the file. Bytes counted; the readers fail when the tail itself is short or its count
    /// negative. A record that cannot be read is left out and counted.
    virtual std::int32_t WriteTail(CVelmFileStream& stream) const = 0;
    virtual LoadStatus ReadTail(CVelmFileStream& stream) = 0;
    virtual LoadStatus ReadOldTail(CVelmFileStream& stream);

    /// Reads the header alone, or everything when `full`. A non-empty `newFileName` replaces the file name.
    /// On failure the document has no items; LastLoad tells why. A file in the older format is rewritten at once.
    bool Load(const CVelmString& folder, bool full, const CVelmString& newFileName = {});
    bool EnsureLoaded(const CVelmString& folder);

    /// Saves into `folder` (unless it is empty, or the file holds the very same) and drops the items. False, with the
    /// items kept, when edits could not be saved; what was not edited is dropped also when the folder cannot be
    /// written.
    bool Unload(const CVelmString& folder);

    /// Writes the whole document beside its file and puts it in the file's place in one step. False leaves the
    /// old file whole; so it is when the items are not loaded. The first save over a file that was in the older
    /// format, or of which records could not be read, keeps that file under its full name followed by ".bak".
    bool Save(const CVelmString& folder);

    /// Sets the updated text: `text`, or the current local date and time when it is empty. Marks edits to save.
    void Touch(const CVelmString& text = {});

    CVelmItem* AddItem(std::unique_ptr<CVelmItem> item);
    void RemoveItem(const CVelmItem* item);
    CVelmItem* GetItem(std::size_t position) const { return items[position].get(); }
    std::size_t ItemCount() const { return items.size(); }

    /// The item at a position of the file that is being read, those left out counted too. Null when that one was
    /// left out, for any other position, and when no file is being read.
    CVelmItem* ItemInFile(std::int32_t index) const;

    /// File name with the extension of the kind, and with the folder before it (in the letter case of the disk, for a
    /// file that was loaded).
    CVelmString FileNameWithExtension() const;
    CVelmString PathIn(const CVelmString& folder) const;

    LoadStatus LastLoad() const { return lastLoad_; }

    /// Item and conversion records that the last full load could not read and left out.
    std::int32_t DroppedRecords() const { return droppedRecords_; }

    /// Touched since it was last loaded or saved, or items or conversions added or removed.
    bool IsModified() const { return modified_; }

    /// Marks edits to save and leaves the updated text as it is.
    void MarkModified() { modified_ = true; }

    std::vector<std::unique_ptr<CVelmItem>> items;
    CVelmItem* currentItem = nullptr;  ///< the item last entered or selected; not owned, null when none
    CVelmString title;
    CVelmString category;
    CVelmString fileName;  ///< without folder and extension
    bool loaded = true;    ///< the items are in memory
    CVelmString updatedText;
    double updatedTime = 0.0;  ///< a DateTime value
    std::int32_t storedItemCount = 0;

protected:
    void DropRecords(std::int32_t count);

    const CVelmServices services_;

private:
    void NumberItems();

    /// Whether a save would write the very bytes that the file holds.
    bool IsAsInFile(const CVelmString& folder);

    /// Whether another program has put other data into the file since it was read or saved here.
    bool IsReplacedInFile(const CVelmString& folder) const;

    /// Brings the file that was just read into the current format.
    void Upgrade(const CVelmString& folder, bool keepItems);
    bool OpenOnDisk(CVelmFileStream& stream, const CVelmString& folder);
    LoadStatus ReadFile(const CVelmString& folder, bool full, bool& isOlder);
    LoadStatus ReadContent(CVelmFileStream& stream, const CVelmFileHeader& header);
    void TakeHeader(CVelmFileHeader& header);

    LoadStatus lastLoad_ = LoadStatus::Ok;
    std::int32_t droppedRecords_ = 0;
    bool modified_ = false;
    std::vector<CVelmItem*> itemsInFile_;       ///< by position in the file that is being read; null: left out
    std::optional<CVelmString> updatedInFile_;  ///< the file's updated text as last read or saved; none for a new one
    CVelmString nameOnDisk_;                    ///< of the file loaded, where its letter case is another
    CVelmString originalToKeep_;  ///< path of the file read that must not be overwritten without a copy; or empty
};

/// A unit conversion file.
class CVelmConversionDoc : public CVelmDocument {
public:
    using CVelmDocument::CVelmDocument;

    void RemoveItems(std::size_t first, std::size_t count) override;
    void Recalculate(FormulaContext& context) override;
    std::int32_t GetKind() const override { return KIND_CONVERSION; }
    std::int32_t WriteTail(CVelmFileStream& stream) const override;
    LoadStatus ReadTail(CVelmFileStream& stream) override;
    LoadStatus ReadOldTail(CVelmFileStream& stream) override;

    /// The first conversion between the two units in either direction; null when there is none.
    CVelmConversion* FindConversion(const CVelmItem* a, const CVelmItem* b) const;
    std::int32_t CountConversions(const CVelmItem* item) const;
    CVelmConversion* AddConversion(std::unique_ptr<CVelmConversion> conversion);
    void RemoveConversion(const CVelmConversion* conversion);

    std::vector<std::unique_ptr<CVelmConversion>> conversions;

private:
    CVelmConversionEngine engine_;
};

/// A calculation file.
class CVelmCalculationDoc : public CVelmDocument {
public:
    using CVelmDocument::CVelmDocument;

    void Recalculate(FormulaContext& context) override;
    std::int32_t GetKind() const override { return KIND_CALCULATION; }
    std::int32_t WriteTail(CVelmFileStream& stream) const override;
    LoadStatus ReadTail(CVelmFileStream& stream) override;
};

/// Null for a kind that is neither.
std::unique_ptr<CVelmDocument> CreateDocument(std::int32_t kind, const CVelmServices& services);

}  // namespace velm
