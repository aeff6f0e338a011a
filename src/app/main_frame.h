#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <vector>

#include "app/command_table.h"
#include "app/program.h"
#include "ask/questions.h"
#include "listview/item_list.h"
#include "listview/value_panel.h"
#include "model/catalog.h"
#include "model/rate_days.h"
#include "model/reference_list.h"
#include "ui/drawn_button.h"
#include "ui/gdi.h"
#include "ui/html_display.h"
#include "ui/window_class.h"

namespace velm {

/// The main frame's window class, by which a second instance finds the first.
inline constexpr const wchar_t* FRAME_CLASS = L"VelmoraFrame";

/// The main window: header with the current file's title, item list, value entry panel and command bar.
class CVelmFrame : public CVelmWindow {
public:
    explicit CVelmFrame(const CVelmProgram& program);

    /// Creates the window and its parts, opens the start-up file and shows the window. False on failure.
    bool CreateFrame(int showCommand);

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    /// Call for every message before it is dispatched. True when handled.
    bool PreTranslate(MSG& message);

    /// Makes a document of the catalog, or none, the current one and shows it.
    void SelectFile(CVelmDocument* document);

    /// Shows the current document's title again.
    void RefreshTitle();

    /// Reads the days of the current document's rates again. The day of the selected item's rate, or else the latest
    /// one, is beside the title.
    void RefreshRateDays();

    /// Shows another text in the title's place, until RefreshTitle.
    void ShowTitle(const CVelmString& text);

    /// While the frame is busy the pen shows as the wait cursor.
    void SetBusy(bool busy) { busy_ = busy; }

    /// Updates the toolbar's buttons and the day of the rates; call when idle.
    void UpdateCommands();

    /// Writes the current document to its file when it has edits. False, after a message box, on failure.
    bool SaveDocument();

    const CVelmProgram& Program() const { return program_; }
    CVelmCatalog& Catalog() { return catalog_; }
    CVelmDocument* Document() const { return document_; }
    CVelmItem* CurrentItem() const { return document_ != nullptr ? document_->currentItem : nullptr; }

    /// The text references, listed when they are first asked for, and the control that shows them.
    CVelmReferenceList& References() { return references_; }
    CVelmHtmlLibrary& HtmlLibrary() { return htmlLibrary_; }

    /// The questions about the catalog's folder.
    CVelmQuestions& Questions();
    CVelmString& LastQuestion() { return lastQuestion_; }
    CVelmItemList& List() { return list_; }
    CVelmValuePanel& Panel() { return panel_; }

    /// The icon of a kind of document.
    HICON IconOf(std::int32_t kind) const;
    const CVelmDrawnButton& TitleButton() const { return titleButton_; }
    const CVelmDrawnButton& ShowUnitsButton() const { return showUnitsButton_; }

private:
    bool OnCreate();
    bool CreateCommandBar();
    void CreateHeader(const RECT& area);
    void OpenStartupFile();
    void Layout();
    void Paint();
    bool OnKeyDown(const MSG& message);
    void MoveFocus();
    bool IsEditingText() const;
    void OnInitMenu(HMENU menu) const;
    void OnActivate(bool active);
    bool OnSysCommand(WPARAM command, LPARAM key);
    CVelmString WriteBack();
    void ShowRateDay();

    /// Whether the edits are written or the user gives them up.
    bool MayClose();
    void OnEndSession();
    void OnDestroy();

    CVelmProgram program_;
    HWND commandBar_ = nullptr;
    CVelmValuePanel panel_;
    CVelmItemList list_;
    std::vector<CVelmString> toolTips_;  ///< of the bar's buttons from the left, the two menu titles first
    CVelmDrawnButton titleButton_;
    CVelmDrawnButton showUnitsButton_;
    CVelmCatalog catalog_;
    std::unique_ptr<CVelmQuestions> questions_;  ///< null until they are first asked for
    CVelmString lastQuestion_;
    CVelmReferenceList references_;
    CVelmHtmlLibrary htmlLibrary_;
    CVelmDocument* document_ = nullptr;  ///< one of the catalog's, or null
    CVelmRateDays rateDays_;             ///< of the current document
    std::optional<CVelmDay> latestRate_;
    CVelmFont titleFont_;
    CVelmFont dayFont_;
    CVelmIcon conversionIcon_;
    CVelmIcon calculationIcon_;
    CVelmIcon showUnitsIcon_;
    CVelmButtonRouter router_;
    CVelmAccelerators keys_;
    CVelmAccelerators keysOutsideText_;
    bool busy_ = false;
    HWND lastFocus_ = nullptr;  ///< the child that had the focus when the frame was left
};

}  // namespace velm
