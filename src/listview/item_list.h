#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "listview/item_row.h"
#include "ui/gdi.h"
#include "ui/window_class.h"

namespace velm {

class CVelmBitmap;
class CVelmDocument;
class CVelmItem;
class CVelmLocale;
class CVelmValueFormat;
class CVelmValuePanel;
struct CVelmSettings;

/// What an item list is given; all of it outlives the list.
struct CVelmListEnvironment {
    const CVelmLocale& locale;
    CVelmSettings& settings;
    CVelmBitmap& formatIcons;  ///< tinted with the base color

    /// Lets the user choose which formats an item allows; IDOK when the format changed.
    int (*customizeFormats)(HWND parent, CVelmValueFormat& format);
};

/// The scrolling list of a document's shown items.
class CVelmItemList : public CVelmWindow {
public:
    /// The panel, which shows the selected item, is not owned and outlives the list's window.
    CVelmItemList(const CVelmListEnvironment& environment, CVelmValuePanel& panel);
    ~CVelmItemList() override;

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    /// Shows the items of a loaded document, or nothing for null, and selects the first row.
    void SetDocument(CVelmDocument* document);

    /// Forgets the document, which is about to lose its items; SetDocument follows right afterwards.
    void Release();

    /// Appends a row for an item, which is not owned and outlives the row. Returns its index.
    int AddItem(CVelmItem& item);
    void RemoveRow(int index);

    /// Writes every row's name, or every row's value and format icon, again.
    void RefreshNames();
    void RefreshValues();

    /// Flips between one-line and two-line rows.
    void ToggleRowSize();

    /// Puts the selected row's value on the clipboard, with a message box on failure.
    void CopySelectedValue();

    /// Selects a row; -1 for none.
    void SelectRow(int index);

    /// Notifies document and panel of the selected item and makes room for the panel. Also for an edited item.
    void NotifySelection();

    /// Opens the menu that a tap on the selected row's format button opens.
    void ShowSelectedFormats();

    /// Offers a pressed key. True when it moved the selection.
    bool HandleKey(WPARAM key);

    /// Scrolls by the wheel's distance, 120 to a row, away from the user up.
    void ScrollByWheel(int distance);

    int RowCount() const { return static_cast<int>(rows_.size()); }
    const CVelmItemRow& Row(int index) const { return *rows_[static_cast<std::size_t>(index)]; }
    int Selected() const { return selected_; }
    int Top() const { return top_; }
    int VisibleRows() const { return visibleRows_; }

    /// The row at a client position; -1 outside the rows.
    int HitTest(int x, int y) const;

    /// Makes another row the first visible one, as far as there are rows.
    void ScrollTo(int top);

private:
    CVelmItemRow* FindRow(int index) { return IsRow(index) ? rows_[static_cast<std::size_t>(index)].get() : nullptr; }
    bool IsRow(int index) const { return index >= 0 && index < RowCount(); }
    CVelmItemRow& AppendRow(CVelmItem& item);
    void Layout(int width, int height);
    void LayoutRows();
    void UpdateScrollBar() const;

    /// The first visible row nearest to the one wanted that leaves no room below the last.
    int Reachable(int top) const;
    void RepaintRow(int index) const;
    void Repaint() const;
    void BringIntoView(int index);
    void Paint();
    bool OnPen(UINT message, WPARAM wParam, LPARAM lParam);
    void OnPenDown(POINT place);
    void OnRightButton(POINT place);
    void OnMenuKey();
    void OnFormatButton(LPARAM row);

    /// Lets the user choose a display format, or which there are. True when the format changed.
    bool ChooseFormat(POINT place, CVelmValueFormat& format);
    void ShowRowMenu(int index, POINT place);

    CVelmListEnvironment environment_;
    CVelmValuePanel& panel_;
    std::vector<std::unique_ptr<CVelmItemRow>> rows_;
    CVelmDocument* document_ = nullptr;
    int selected_ = -1;
    int top_ = 0;
    int visibleRows_ = 1;
    int rowHeight_ = 21;
    int width_ = 0;  ///< of the client area
    int height_ = 0;
    int wheelRest_ = 0;  ///< wheel distance that did not make a whole row yet
    bool twoLines_ = false;
    CVelmButtonRouter router_;
    CVelmFont nameFont_;
    CVelmFont valueFont_;
};

}  // namespace velm
