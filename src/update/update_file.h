#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/text.h"

namespace velm {

class CVelmFileStream;

/// Prefix of the first line of an update list and of an update file.
constexpr CVelmStringView LIST_MAGIC = u"VLMLST";
constexpr CVelmStringView UPDATE_MAGIC = u"VLMUPD";

/// Prefixes of the lines of an update file that are not rates.
constexpr CVelmStringView FILE_NAME_LINE = u"--File Name:";
constexpr CVelmStringView UPDATED_LINE = u"--Updated:";
constexpr CVelmStringView COMMENT_LINE = u"--";

/// Suffix of the data file's name in the name of its update file.
constexpr CVelmStringView UPDATE_EXTENSION = u".upd";

enum class UpdatePageKind { Neither, List, Update };

/// What a downloaded page requests.
struct CVelmUpdatePage {
    UpdatePageKind kind = UpdatePageKind::Neither;
    std::vector<CVelmString> urls;  ///< of an update list
    CVelmString fileName;           ///< of an update file: the data file's name without extension, as it stands there
};

/// Reads a page from its start. Keeps at most `maxUrls` addresses.
CVelmUpdatePage ReadUpdatePage(CVelmFileStream& stream, std::size_t maxUrls);

/// A data line of an update file: unit 2 = unit 1 x factor.
struct CVelmRateLine {
    CVelmStringView unit1;
    CVelmStringView unit2;
    CVelmStringView factor;  ///< a formula
};

/// Nothing for a comment and for a line without three non-empty fields.
std::optional<CVelmRateLine> SplitRateLine(CVelmStringView line);

/// Reads the next non-empty line; false at the end of the file and on a read error.
bool ReadFilledLine(CVelmFileStream& stream, CVelmString& line);

/// Whether this name from the network (before its extension) is acceptable in the data folder. Rejects unusable names,
/// overlong names and "..".
bool IsUsableFileName(CVelmStringView name);

}  // namespace velm
