#include <shlobj.h>

#include "app/commands.h"
#include "app/main_frame.h"
#include "dialogs/dialogs.h"
#include "model/document_edits.h"
#include "platform/wide_text_win32.h"
#include "resource.h"
#include "settings/settings.h"

namespace velm {
namespace {

/// Offers to create a missing data folder, which a new file needs. False if there is still none.
bool HasDataFolder(const CVelmFrame& frame, const CVelmString& folder) {
    if (frame.Program().services.files.Exists(folder)) {
        return true;
    }
    const CVelmString name = u"The data folder \"" + folder + u"\" ";
    const CVelmString question = name + u"does not exist. Do you want to make it?";
    if (MessageBoxW(frame.Handle(), Wide(question), L"New File", MB_YESNO | MB_ICONQUESTION) != IDYES) {
        return false;
    }
    const bool made = SHCreateDirectoryExW(nullptr, Wide(folder), nullptr) == ERROR_SUCCESS;
    if (!made) {
        MessageBoxW(frame.Handle(), Wide(name + u"could not be made."), L"New File", MB_OK | MB_ICONSTOP);
    }
    return made;
}

/// Null where the document, which may have changed since the question, has no such item.
CVelmItem* ItemAt(const CVelmDocument& document, std::int32_t position) {
    const auto index = static_cast<std::size_t>(position);
    return position >= 0 && index < document.ItemCount() ? document.GetItem(index) : nullptr;
}

/// Enters values in a document that is shown, as if they had been typed, and selects the item's row.
void EnterValues(CVelmFrame& frame, CVelmDocument& document, const CVelmSearchPlace& place) {
    for (const CVelmPlacedValue& value : place.values) {
        if (CVelmItem* const entered = ItemAt(document, value.item)) {
            entered->SetValue(value.value);
            document.currentItem = entered;
        }
    }
    if (!place.values.empty()) {
        document.Recalculate(frame.Program().context);
    }
    CVelmItemList& list = frame.List();
    list.RefreshValues();
    const CVelmItem* const item = ItemAt(document, place.item);
    for (int row = 0; row < list.RowCount(); ++row) {
        if (&list.Row(row).Item() == item) {
            list.SelectRow(row);
        }
    }
    list.NotifySelection();
}

}  // namespace

void ShowAbout(CVelmFrame& frame, WORD) {
    ShowAboutDialog(frame.Handle(), UpdateUrl(frame.Program().settings));
}

void OpenDataFile(CVelmFrame& frame, WORD) {
    const CVelmProgram& program = frame.Program();
    const int index = ShowOpenFileDialog(frame.Handle(), frame.Catalog(), frame.References(),
                                         DataFolder(program.settings, program.programFolder), frame.HtmlLibrary());
    if (index < 0) {
        return;
    }
    CVelmDocument* const chosen = frame.Catalog().documents[static_cast<std::size_t>(index)].get();
    if (chosen != frame.Document()) {
        frame.SelectFile(chosen);
    }
}

void MakeNewFile(CVelmFrame& frame, WORD id) {
    if (!HasDataFolder(frame, frame.Catalog().Folder())) {
        return;
    }
    const std::int32_t kind = id == ID_NEW_CONVERSION_FILE ? KIND_CONVERSION : KIND_CALCULATION;
    auto document = CreateDocument(kind, frame.Program().services);
    if (ShowFilePropertiesDialog(frame.Handle(), *document, frame.Catalog()) != IDOK) {
        return;
    }
    const int index = frame.Catalog().AddDocument(std::move(document));
    CVelmDocument* const made = frame.Catalog().documents[static_cast<std::size_t>(index)].get();
    frame.SelectFile(made);
    if (frame.Document() == made) {
        frame.SaveDocument();
    }
}

void EditFileProperties(CVelmFrame& frame, WORD) {
    if (ShowFilePropertiesDialog(frame.Handle(), *frame.Document(), frame.Catalog()) == IDOK) {
        frame.SaveDocument();
        frame.RefreshTitle();
    }
}

void AddUnit(CVelmFrame& frame, WORD) {
    CVelmDocument* const document = frame.Document();
    if (ShowUnitPropertiesDialog(frame.Handle(), *document, nullptr, frame.Program().services.clock) == IDOK) {
        frame.SaveDocument();
        frame.SelectFile(document);
    }
}

void EditUnit(CVelmFrame& frame, WORD) {
    CVelmDocument* const document = frame.Document();
    if (ShowUnitPropertiesDialog(frame.Handle(), *document, document->currentItem, frame.Program().services.clock) !=
        IDOK) {
        return;
    }
    frame.SaveDocument();
    frame.List().RefreshNames();
    // Nothing that is edited here affects a unit's value.
    if (document->GetKind() == KIND_CALCULATION) {
        RunCommand(frame, ID_CALCULATE);
    }
    frame.List().NotifySelection();
}

void EditConversions(CVelmFrame& frame, WORD) {
    auto& document = static_cast<CVelmConversionDoc&>(*frame.Document());
    ShowConversionsDialog(frame.Handle(), document, frame.Program().context);
    document.Touch();
    frame.SaveDocument();
    // A unit without a value would clear all others.
    if (HasCurrentValue(frame)) {
        RunCommand(frame, ID_CALCULATE);
    }
}

void EditOptions(CVelmFrame& frame, WORD) {
    const CVelmProgram& program = frame.Program();
    if (ShowSettingsDialog(frame.Handle(), program.settings) == IDOK) {
        SaveSettings(program.settings, program.options);
    }
}

void FindByQuestion(CVelmFrame& frame, WORD) {
    const auto place = ShowFindDialog(frame.Handle(), frame.Questions(), frame.LastQuestion());
    if (!place) {
        return;
    }
    // The file may have come after the catalog was filled.
    const int index = frame.Catalog().AddFile(place->fileName);
    if (index < 0) {
        const CVelmString problem = place->fileName + u" could not be opened.";
        MessageBoxW(frame.Handle(), Wide(problem), L"Find", MB_OK | MB_ICONSTOP);
        return;
    }
    CVelmDocument* const document = frame.Catalog().documents[static_cast<std::size_t>(index)].get();
    if (document != frame.Document()) {
        frame.SelectFile(document);
    }
    if (frame.Document() == document) {
        EnterValues(frame, *document, *place);
    }
}

void ChooseShownUnits(CVelmFrame& frame, WORD) {
    CVelmDocument* const document = frame.Document();
    if (document == nullptr) {
        return;
    }
    const auto shown = ShowUnitsDialog(frame.Handle(), *document);
    if (!shown) {
        return;
    }
    if (ShowItems(*document, *shown)) {
        frame.SaveDocument();
    }
    frame.SelectFile(document);
}

}  // namespace velm
