#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "ask/question_search.h"
#include "platform/text.h"

namespace velm {

class CVelmCatalog;
class CVelmClock;
class CVelmConversionDoc;
class CVelmDocument;
class CVelmHtmlLibrary;
class CVelmItem;
class CVelmReferenceList;
class CVelmValueFormat;
class FormulaContext;
struct CVelmSettings;

// The dialogs of the program, each in a source of its own. A dialog runs until the user ends it.

/// Lets the user choose a data file of the catalog, which is scanned first, or read text references. These are
/// listed on first use, from `referenceFolder`. Returns the chosen file's index, -1 when the dialog was cancelled.
int ShowOpenFileDialog(HWND parent, CVelmCatalog& catalog, CVelmReferenceList& references,
                       const CVelmString& referenceFolder, CVelmHtmlLibrary& html);

/// Edits the title and category of a document. One without a file name is new and gets one here that no other file
/// has. Returns IDOK, or IDCANCEL with the document as it was.
int ShowFilePropertiesDialog(HWND parent, CVelmDocument& document, const CVelmCatalog& catalog);

/// Edits the name, identifier, value text and, in a calculation file, the kind of an item of the document, or (null) of
/// a new one, which is appended. Returns IDOK, or IDCANCEL with the document as it was.
int ShowUnitPropertiesDialog(HWND parent, CVelmDocument& document, CVelmItem* item, const CVelmClock& clock);

/// Shows the conversions of a document and changes them at once: edits in place, adds and deletes.
void ShowConversionsDialog(HWND parent, CVelmConversionDoc& document, FormulaContext& context);

/// Asks for the two units and the factor and offset, or (`advanced`) the formulas, of a new conversion, which is
/// appended to the document. Returns IDOK, or IDCANCEL with the document as it was.
int ShowAddConversionDialog(HWND parent, CVelmConversionDoc& document, FormulaContext& context, bool advanced);

/// Lets the user choose which formats an item allows and define its compound parts. Returns IDOK, or IDCANCEL with
/// the format as it was.
int ShowFormatsDialog(HWND parent, CVelmValueFormat& format);

/// Lets the user tick which items of a document the list shows, by position. Nothing when the user cancels.
std::optional<std::vector<bool>> ShowUnitsDialog(HWND parent, const CVelmDocument& document);

/// Takes a question and lists its answer and the units and files that it may mean. `question` is the text that the
/// dialog begins with, and then the one that it was left with. Nothing when the user cancels.
std::optional<CVelmSearchPlace> ShowFindDialog(HWND parent, CVelmQuestions& questions, CVelmString& question);

/// Edits the data folder and the update address. Returns IDOK, or IDCANCEL with the settings as they were.
int ShowSettingsDialog(HWND parent, CVelmSettings& settings);

/// Shows the program's title, version and license, and the address that updates are looked for at.
void ShowAboutDialog(HWND parent, const CVelmString& updateAddress);

/// Shows a page of HTML under a caption until the user closes it. Without the library the page stays empty.
void ShowHtmlViewer(HWND parent, const CVelmString& caption, const CVelmString& pageText, CVelmHtmlLibrary& library);

}  // namespace velm
