#pragma once

#include <windows.h>

#include <cstdint>
#include <limits>

#include "listview/compound_editor.h"
#include "platform/text.h"
#include "ui/edit_box.h"
#include "ui/gdi.h"

namespace velm {

class CVelmItem;
class FormulaContext;

/// Stands for "no value" where a value is loaded. No value equals it; ask with std::isnan.
inline constexpr double NO_VALUE = std::numeric_limits<double>::quiet_NaN();

/// The edit box of values. Numbers are pasted without the commas that the list shows them with.
class CVelmValueBox : public CVelmEditBox {
protected:
    bool OnKeyDown(WPARAM key) override;
    bool OnChar(wchar_t unit) override;
    bool OnPaste(const CVelmString& text) override;
};

/// Shows and reads one value in one format at a time: edit box, date and time pickers, or compound editor. The controls
/// are children of the panel, which gets their notifications.
class CVelmValueEditor {
public:
    /// The context outlives the editor.
    explicit CVelmValueEditor(FormulaContext& context);

    /// False when a control cannot be made.
    bool Create(HWND panel);

    /// The editor's place in the panel; lays the controls out.
    void Move(const RECT& area);

    /// Takes an item, not owned, that is typed in the format, and shows it empty. The panel is not notified.
    void AttachItem(CVelmItem* item, std::uint32_t code);

    /// Forgets the item. What it showed stays on the screen.
    void Release() { item_ = nullptr; }

    /// Switches to a format, loads a value with notification and gives the format's control the focus.
    void SetFormat(std::uint32_t code, double value);

    /// Shows a value, or nothing for NO_VALUE. With `notify` the panel gets EN_CHANGE of IDC_VALUE_EDIT, once.
    void LoadValue(double value, bool notify);

    /// Shows nothing.
    void Clear();

    /// Reads the value; false, with `value` untouched, when there is none. What was loaded and not changed since is
    /// read as the very value that was loaded, whatever the format shows of it.
    bool ParseValue(double& value);

    bool IsEmpty() const;

    /// False once an invalid text was read; such text is red.
    bool TextParses() const { return textParses_; }

    /// Whether the controls change programmatically, so that their notifications are ignored.
    bool IsLoading() const { return loading_; }

    std::uint32_t Format() const { return code_; }
    const CVelmValueBox& Box() const { return box_; }
    const CVelmCompoundEditor& Compound() const { return compound_; }

    /// The format's control, the first one of two.
    HWND Control() const;
    void Focus();
    void SelectAll();

    /// To the next control or compound part, or back; false at the end.
    bool MoveWithin(bool forward);

private:
    bool UsesPickers() const;
    void ShowControls();
    void SetTextParses(bool parses);
    void LoadPickers(double value);
    CVelmString InputText(double value) const;
    CVelmString TypedText() const;
    bool ParsePickers(double& value) const;
    bool ParseText(double& value);
    bool IsUnchanged() const;

    /// The controls' content, to detect changes by the user.
    CVelmString Content() const;

    FormulaContext& context_;
    HWND panel_ = nullptr;
    CVelmItem* item_ = nullptr;
    bool textParses_ = true;
    CVelmFont font_;
    CVelmValueBox box_;
    HWND date_ = nullptr;
    HWND time_ = nullptr;
    CVelmCompoundEditor compound_;
    std::uint32_t code_;
    double loadedValue_ = NO_VALUE;
    CVelmString loadedContent_;
    bool loading_ = false;
};

}  // namespace velm
