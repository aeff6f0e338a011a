#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/text.h"

namespace velm {

class CVelmFileStream;

/// How the first line of an update list and of an update file begins.
constexpr CVelmStringView LIST_MAGIC = u"VLMLST";
constexpr CVelmStringView UPDATE_MAGIC = u"VLMUPD";

/// Beginnings of the lines of an update file that are not rates.
constexpr CVelmStringView FILE_NAME_LINE = u"--File Name:";
constexpr CVelmStringView UPDATED_LINE = u"--Updated:";
constexpr CVelmStringView COMMENT_LINE = u"--";

/// What follows the data file's name in the name of its update file.
constexpr CVelmStringView UPDATE_EXTENSION = u".upd";

enum class UpdatePageKind { Neither, List, Update };

/// What a downloaded page asks for.
struct CVelmUpdatePage {
    UpdatePageKind kind = UpdatePageKind::Neither;
    std::vector<CVelmString> urls;  ///< of an update list
    CVelmString fileName;           ///< of an update file: the data file's name without extension, as it stands there
};

/// Reads a page from its start. At most `maxUrls` addresses are kept.
CVelmUpdatePage ReadUpdatePage(CVelmFileStream& stream, std::size_t maxUrls);

/// A data line of an update file: unit 2 = unit 1 x factor.
struct CVelmRateLine {
    CVelmStringView unit1;
    CVelmStringView unit2;
    CVelmStringView factor;  ///< a formula
};

/// Nothing for a comment and for a line without three non-empty fields.
std::optional<CVelmRateLine> SplitRateLine(CVelmStringView line);

/// Reads up to the next line that is not empty; false at the end of the file and when it cannot be read further.
bool ReadFilledLine(CVelmFileStream& stream, CVelmString& line);

/// Whether a file of the data folder may be given this name (before its extension): the name comes from the network.
/// Besides what no file may be called, overlong names and ".." are refused.
bool IsUsableFileName(CVelmStringView name);

}  // namespace velm
