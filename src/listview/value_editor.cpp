#include "listview/value_editor.h"

#include <commctrl.h>

#include <cmath>
#include <optional>

#include "datetime/date_time.h"
#include "formats/decimal_format.h"
#include "formats/format_table.h"
#include "model/item.h"
#include "resource.h"
#include "ui/display_scale.h"

namespace velm {
namespace {

constexpr int FONT_HEIGHT = 14;
constexpr int PICKER_WIDTH = 94;
constexpr int TIME_LEFT = 98;
constexpr int COMPOUND_LEFT = 2;
constexpr int LAST_HOUR = 23;

/// The years that a picker can show.
constexpr int FIRST_PICKER_YEAR = 1753;
constexpr int LAST_PICKER_YEAR = 9999;

SYSTEMTIME Today() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDayOfWeek, now.wDay, 0, 0, 0, 0};
}

void SetPicker(HWND picker, const std::optional<SYSTEMTIME>& time) {
    // What stood there before comes back when the user ticks a picker that shows nothing: then it is to be today.
    const SYSTEMTIME shown = time.value_or(Today());
    SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&shown));
    if (!time) {
        SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_NONE,
                     reinterpret_cast<LPARAM>(&shown));  // not every system takes 0
    }
}

std::optional<SYSTEMTIME> ReadPicker(HWND picker) {
    SYSTEMTIME time{};
    const LRESULT status = SendMessageW(picker, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&time));
    return status == GDT_VALID ? std::optional(time) : std::nullopt;
}

/// Nothing for a value whose year a picker cannot show.
std::optional<SYSTEMTIME> ToPickerTime(double value) {
    DateTime date = DateTime::FromValue(value);
    if (date.hour > LAST_HOUR) {
        date = DateTime::FromValue(std::floor(value) + 1.0);  // rounding can give 24:00
    }
    if (date.year < FIRST_PICKER_YEAR || date.year > LAST_PICKER_YEAR) {
        return std::nullopt;
    }
    SYSTEMTIME time{};
    time.wYear = static_cast<WORD>(date.year);
    time.wMonth = static_cast<WORD>(date.month);
    time.wDayOfWeek = static_cast<WORD>(date.weekday - 1);
    time.wDay = static_cast<WORD>(date.day);
    time.wHour = static_cast<WORD>(date.hour);
    time.wMinute = static_cast<WORD>(date.minute);
    time.wSecond = static_cast<WORD>(date.second);
    return time;
}

CVelmString Describe(const std::optional<SYSTEMTIME>& time) {
    CVelmString text;
    if (time) {
        for (const WORD field : {time->wYear, time->wMonth, time->wDay, time->wHour, time->wMinute, time->wSecond}) {
            text += static_cast<char16_t>(field + 1);
        }
    }
    return text;
}

}  // namespace

bool CVelmValueBox::OnKeyDown(WPARAM key) {
    if (key != VK_RETURN) {
        return false;
    }
    SendMessageW(GetParent(Handle()), WM_COMMAND, MAKEWPARAM(IDC_ACCEPT, 0), 0);
    return true;
}

bool CVelmValueBox::OnChar(wchar_t unit) {
    return unit == L'\r';  // the key was used up already
}

bool CVelmValueBox::OnPaste(const CVelmString& text) {
    const std::optional<CVelmString> number = UngroupNumber(text);
    if (number) {
        ReplaceSelection(*number);
    }
    return number.has_value();
}

CVelmValueEditor::CVelmValueEditor(FormulaContext& context)
    : context_(context), font_(CreateProgramFont(FONT_HEIGHT, false)), code_(FMT_DECIMAL) {}

bool CVelmValueEditor::Create(HWND panel) {
    panel_ = panel;
    if (!box_.Create(panel, IDC_VALUE_EDIT, font_.get())) {
        return false;
    }
    constexpr DWORD PICKER_STYLE = WS_TABSTOP | DTS_SHOWNONE;
    date_ = CreateControl(DATETIMEPICK_CLASSW, PICKER_STYLE | DTS_SHORTDATEFORMAT, panel, 0, font_.get());
    time_ = CreateControl(DATETIMEPICK_CLASSW, PICKER_STYLE | DTS_TIMEFORMAT, panel, 0, font_.get());
    return date_ != nullptr && time_ != nullptr &&
           compound_.Create(WS_CHILD | WS_CLIPCHILDREN, 0, 0, 0, 0, panel, 0, L"") != nullptr;
}

void CVelmValueEditor::Move(const RECT& area) {
    const int left = static_cast<int>(area.left);
    const int top = static_cast<int>(area.top);
    const int height = Height(area);
    MoveWindow(box_.Handle(), left, top, Width(area), height, TRUE);
    MoveWindow(date_, left, top, Scaled(PICKER_WIDTH), height, TRUE);
    MoveWindow(time_, left + Scaled(TIME_LEFT), top, Scaled(PICKER_WIDTH), height, TRUE);
    MoveWindow(compound_.Handle(), left + Scaled(COMPOUND_LEFT), top, Width(area) - Scaled(COMPOUND_LEFT), height,
               TRUE);
}

void CVelmValueEditor::AttachItem(CVelmItem* item, std::uint32_t code) {
    item_ = item;
    code_ = code;
    if (item != nullptr && code == FMT_COMPOUND) {
        loading_ = true;
        compound_.SetParts(item->format);
        loading_ = false;
    }
    Clear();
    ShowControls();
}

void CVelmValueEditor::SetFormat(std::uint32_t code, double value) {
    AttachItem(item_, code);
    LoadValue(value, true);
    Focus();
}

bool CVelmValueEditor::UsesPickers() const {
    return code_ == FMT_DATE || code_ == FMT_DATETIME;
}

HWND CVelmValueEditor::Control() const {
    if (UsesPickers()) {
        return date_;
    }
    return code_ == FMT_COMPOUND ? compound_.Handle() : box_.Handle();
}

void CVelmValueEditor::ShowControls() {
    const HWND shown = Control();
    for (const HWND control : {box_.Handle(), date_, time_, compound_.Handle()}) {
        const bool on = control == shown || (control == time_ && code_ == FMT_DATETIME);
        if (on != ((GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) != 0)) {
            ShowWindow(control, on ? SW_SHOWNA : SW_HIDE);
        }
    }
}

void CVelmValueEditor::Focus() {
    SetFocus(Control());
}

void CVelmValueEditor::SelectAll() {
    if (Control() == box_.Handle()) {
        box_.SelectAll();
    }
}

bool CVelmValueEditor::MoveWithin(bool forward) {
    if (code_ == FMT_COMPOUND) {
        return compound_.MoveWithin(forward);
    }
    if (code_ != FMT_DATETIME || GetFocus() != (forward ? date_ : time_)) {
        return false;
    }
    SetFocus(forward ? time_ : date_);
    return true;
}

void CVelmValueEditor::LoadValue(double value, bool notify) {
    loading_ = true;
    if (UsesPickers()) {
        LoadPickers(value);
    } else if (code_ == FMT_COMPOUND && item_ != nullptr) {
        compound_.SetValue(item_->format, value);
    } else {
        box_.SetText(InputText(value));
        box_.SelectAll();
    }
    loading_ = false;
    SetTextParses(true);
    loadedValue_ = value;
    loadedContent_ = Content();
    if (notify) {
        SendMessageW(panel_, WM_COMMAND, MAKEWPARAM(IDC_VALUE_EDIT, EN_CHANGE),
                     reinterpret_cast<LPARAM>(box_.Handle()));
    }
}

void CVelmValueEditor::Clear() {
    LoadValue(NO_VALUE, false);
}

void CVelmValueEditor::LoadPickers(double value) {
    const std::optional<SYSTEMTIME> time = std::isnan(value) ? std::nullopt : ToPickerTime(value);
    SetPicker(date_, time);
    SetPicker(time_, time);
}

CVelmString CVelmValueEditor::InputText(double value) const {
    if (item_ == nullptr || std::isnan(value)) {
        return {};
    }
    // The tab of one format may serve the item's input format too; another one would not be read back as the value.
    const FormatKind& input = FormatOf(item_->format.inputFormat);
    return input.typedAs == code_ ? item_->format.FormatValueForInput(value) : FormatOf(code_).write(value, false);
}

bool CVelmValueEditor::ParseValue(double& value) {
    if (item_ == nullptr) {
        return false;
    }
    if (IsEmpty()) {
        SetTextParses(true);
        return false;
    }
    if (IsUnchanged()) {
        SetTextParses(true);
        value = loadedValue_;
        return true;
    }
    return UsesPickers() ? ParsePickers(value) : ParseText(value);
}

bool CVelmValueEditor::IsUnchanged() const {
    return !std::isnan(loadedValue_) && Content() == loadedContent_;
}

bool CVelmValueEditor::IsEmpty() const {
    return UsesPickers() ? !ReadPicker(date_) : TypedText().empty();
}

CVelmString CVelmValueEditor::TypedText() const {
    return code_ == FMT_COMPOUND ? compound_.Text() : box_.Text();
}

CVelmString CVelmValueEditor::Content() const {
    return UsesPickers() ? Describe(ReadPicker(date_)) + u'/' + Describe(ReadPicker(time_)) : TypedText();
}

bool CVelmValueEditor::ParseText(double& value) {
    const bool parses = item_->format.ParseTyped(TypedText(), code_, context_, value);
    SetTextParses(parses);
    return parses;
}

bool CVelmValueEditor::ParsePickers(double& value) const {
    const std::optional<SYSTEMTIME> date = ReadPicker(date_);
    if (!date) {
        return false;
    }
    // A date alone keeps the time of day that its picker was given with the value.
    const SYSTEMTIME time = code_ == FMT_DATETIME ? ReadPicker(time_).value_or(SYSTEMTIME{}) : *date;
    value = DateTime::FromFields(date->wYear, date->wMonth, date->wDay, time.wHour, time.wMinute, time.wSecond).value;
    return true;
}

void CVelmValueEditor::SetTextParses(bool parses) {
    if (parses != textParses_) {
        textParses_ = parses;
        InvalidateRect(box_.Handle(), nullptr, FALSE);
    }
}

}  // namespace velm
