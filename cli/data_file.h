#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "command.h"
#include "model/conversion_document.h"
#include "model/rate_days.h"

namespace velm {

/// Where a data file is. A file of the name need not exist.
struct DataFilePath {
    CVelmString folder;  ///< with a separator behind it, or empty
    CVelmString name;    ///< without extension
    std::int32_t kind;   ///< KIND_CONVERSION or KIND_CALCULATION; 0 for a name that is neither's
};

DataFilePath SplitDataFilePath(CVelmStringView path);

/// The names of a folder's data files, sorted; nothing when the folder cannot be read.
std::optional<std::vector<CVelmString>> DataFilesIn(CVelmFileSystem& files, const CVelmString& folder);

/// The same of the data folder. Ends the command when it cannot be read.
std::vector<CVelmString> FilesOfDataFolder(const CommandContext& context);

/// Ends the command: the file could not be written just now, and why.
[[noreturn]] void FailToWrite(const CVelmString& path);

/// What a file (UTF-8) holds, or its first `limit` bytes. Ends the command when it cannot be read.
std::string ReadWholeFile(CVelmFileSystem& files, const std::string& path, std::size_t limit);

/// What FILE (UTF-8) names: a path, or a file of the data folder with or without its extension, in any letter case.
/// Ends the command with the nearest names when there is none and with the list when there are several.
DataFilePath FindDataFile(const CommandContext& context, const std::string& file);

/// Loads what FILE names. Ends the command when that cannot be, or when the file's kind is not `kind` (0: any).
std::unique_ptr<CVelmDocument> OpenDataFile(const CommandContext& context, const std::string& file,
                                            std::int32_t kind = 0);

/// The same for a file that has been found; `file` is what the user calls it.
std::unique_ptr<CVelmDocument> OpenDataFile(const CommandContext& context, const DataFilePath& path,
                                            const std::string& file, std::int32_t kind = 0);

/// The days of the document's rates; none for a document without conversions.
CVelmRateDays RateDaysOf(const CommandContext& context, const DataFilePath& path, const CVelmDocument& document);

/// Says on standard error how old the oldest of the rates in use is, when that is too old. True when it did.
bool WarnOfOldRates(const CommandContext& context, const std::optional<CVelmDay>& oldest);

/// "conversion" or "calculation".
std::string KindWord(std::int32_t kind);

/// Null for a document without conversions.
const std::vector<std::unique_ptr<CVelmConversion>>* ConversionsOf(const CVelmDocument& document);

/// Why a load failed, to stand behind the name of the file and a colon.
std::string LoadFailureText(LoadStatus status);

/// "3 records cannot be read"
std::string DroppedRecordsText(const CVelmDocument& document);

}  // namespace velm
