#pragma once

#include <windows.h>

#include <array>
#include <cstdint>

#include "listview/value_editor.h"
#include "ui/drawn_button.h"
#include "ui/gdi.h"
#include "ui/press_button.h"
#include "ui/window_class.h"

namespace velm {

class CVelmItem;

/// The timer of the panel, which commits what was typed.
constexpr UINT_PTR COMMIT_TIMER = 1;

/// The panel below the item list in which the selected item's value is typed. Hidden without an item to type for.
/// Posts ID_CALCULATE to its parent after storing a value, and ID_SAVE after changing what the document keeps.
class CVelmValuePanel : public CVelmWindow {
public:
    /// The context outlives the panel.
    explicit CVelmValuePanel(FormulaContext& context);

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    /// Puts an item, not owned, up for typing; edits not committed yet are dropped. Hides the panel for null and for
    /// an output.
    void AttachItem(CVelmItem* item);

    /// Forgets the item, which may be about to go, and edits not committed yet. Another one is attached right
    /// afterwards, so the panel stays on the screen: hiding and showing it is what costs most when files are switched.
    void Release();

    /// Reads the editor and stores its value in the item. True when a value was stored. Without `force` nothing
    /// happens while no edit is pending.
    bool CommitValue(bool force);

    CVelmItem* Item() const { return item_; }

    /// The Tab key: moves on within the panel; false when it leaves it.
    bool HandleTab(bool backward);

    /// Replaces what the editor shows with a character typed elsewhere, or with the clipboard's text.
    void TakeCharacter(wchar_t unit);
    void Paste();

    const CVelmValueEditor& Editor() const { return editor_; }
    const CVelmDrawnButton& AcceptButton() const { return accept_; }
    const CVelmDrawnButton& RestoreButton() const { return restore_; }
    std::size_t TabCount() const { return tabCount_; }
    const CVelmDrawnButton& TabButton(std::size_t tab) const { return tabs_[tab].button; }
    HICON AcceptedIcon() const { return acceptedIcon_.get(); }
    HICON ErrorIcon() const { return errorIcon_.get(); }

private:
    static constexpr std::size_t MAX_TABS = 8;

    struct Tab {
        CVelmDrawnButton button;
        std::uint32_t code = 0;
    };

    bool OnCreate();
    void OnCommand(WORD id, WORD notification);
    void OnEdited();
    void OnTimer();
    void Accept();
    void Restore();
    void MakeTabs();
    void SendInPlaceOfText(UINT message, WPARAM wParam, LPARAM lParam);
    void SelectTab(std::size_t index);
    double ValueToShow() const;
    void Layout();
    void LayoutTabs();
    void Paint();
    bool RoutePen(UINT message, WPARAM wParam, LPARAM lParam);

    FormulaContext& context_;
    CVelmItem* item_ = nullptr;
    CVelmValueEditor editor_;
    CVelmDrawnButton accept_;
    CVelmDrawnButton restore_;
    std::array<Tab, MAX_TABS> tabs_;
    std::size_t tabCount_ = 0;
    CVelmFont tabFont_;
    int pendingEdits_ = 0;
    int ticks_ = 0;
    CVelmIcon errorIcon_;
    CVelmIcon acceptedIcon_;
    CVelmIcon restoreIcon_;
    CVelmButtonRouter router_;
};

}  // namespace velm
