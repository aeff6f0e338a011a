#include "tallyra/calculator_window.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "formats/decimal_format.h"
#include "formats/format_table.h"
#include "platform/wide_text_win32.h"
#include "tallyra/key_table.h"
#include "ui/calculator_messages.h"
#include "ui/display_scale.h"
#include "ui/frame_window.h"
#include "ui/window_text.h"

namespace velm {
namespace {

constexpr WORD ID_TAPE = 100;
constexpr WORD ID_EXPRESSION = 101;
constexpr WORD ID_MESSAGE = 102;
constexpr WORD ID_ANGLE = 110;
constexpr WORD ID_FIRST_BASE = 111;
constexpr WORD ID_FIRST_KEY = 200;

// Pixels at scale 1.
constexpr int MARGIN = 2;
constexpr int LINE_HEIGHT = 22;
constexpr int MIN_KEY_HEIGHT = 14;
constexpr int MAX_KEY_HEIGHT = 28;
constexpr int TEXT_FONT = 14;

CVelmString TapeText(const TapeLine& line) {
    return line.expression.empty() ? u"    " + line.result : line.expression + u" = " + line.result;
}

}  // namespace

CVelmCalculatorWindow::CVelmCalculatorWindow(const CVelmServices& services, CVelmString tapePath,
                                             CVelmString dataFolder, CVelmString cacheFolder)
    : services_(services),
      tapePath_(std::move(tapePath)),
      calculator_(services, std::move(dataFolder), std::move(cacheFolder)),
      textFont_(CreateProgramFont(TEXT_FONT, false)),
      resultFont_(CreateProgramFont(TEXT_FONT, true)) {}

bool CVelmCalculatorWindow::CreateFrame(int showCommand) {
    const HICON icon = LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1));
    if (!RegisterWindowClass(CALCULATOR_CLASS, icon, LoadCursorW(nullptr, IDC_ARROW))) {
        return false;
    }
    const HWND window = CreateFrameWindow(*this, CALCULATOR_CLASS, CALCULATOR_TITLE);
    if (window == nullptr) {
        return false;
    }
    ShowWindow(window, showCommand);
    SetFocus(expression_);
    return true;
}

bool CVelmCalculatorWindow::OnCreate() {
    tapeList_ =
        CreateControl(L"LISTBOX", WS_VISIBLE | WS_VSCROLL | WS_BORDER | WS_TABSTOP | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
                      Handle(), ID_TAPE, textFont_.get());
    expression_ = CreateControl(L"EDIT", WS_VISIBLE | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL, Handle(), ID_EXPRESSION,
                                textFont_.get());
    message_ = CreateControl(L"STATIC", WS_VISIBLE | SS_RIGHT | SS_NOPREFIX | SS_ENDELLIPSIS, Handle(), ID_MESSAGE,
                             resultFont_.get());
    if (tapeList_ == nullptr || expression_ == nullptr || message_ == nullptr) {
        return false;
    }
    SendMessageW(expression_, EM_LIMITTEXT, CVelmTape::MAX_TEXT_LENGTH, 0);

    const auto init = [this](CVelmDrawnButton& button, WORD id, CVelmStringView caption) {
        button.Init(RECT{}, Handle(), id);
        button.SetFont(textFont_.get());
        button.SetText(CVelmString(caption));
    };
    for (const FormatKind& format : Formats()) {
        if (*format.keyText != 0) {
            const auto id = static_cast<WORD>(ID_FIRST_BASE + bases_.size());
            bases_.emplace_back().code = format.code;
            init(bases_.back().button, id, format.keyText);
        }
    }
    init(angle_, ID_ANGLE, calculator_.AngleLabel());
    for (std::size_t i = 0; i < CalculatorKeys().size(); ++i) {
        keys_.push_back(std::make_unique<CVelmDrawnButton>());
        init(*keys_.back(), static_cast<WORD>(ID_FIRST_KEY + i), CalculatorKeys()[i].caption);
    }
    ChooseBase(0);
    tape_.Load(services_, tapePath_);
    for (const TapeLine& line : tape_.Lines()) {
        ShowTapeLine(line);
    }
    return true;
}

void CVelmCalculatorWindow::Layout() {
    const RECT client = ClientArea(Handle());
    const int width = Width(client);
    const int margin = Scaled(MARGIN);
    const int line = Scaled(LINE_HEIGHT);
    const int rows = static_cast<int>(keys_.size()) / KEY_COLUMNS;
    const int keyHeight = std::clamp(Height(client) / 2 / rows, Scaled(MIN_KEY_HEIGHT), Scaled(MAX_KEY_HEIGHT));
    const int keysTop = Height(client) - rows * keyHeight - margin;
    const int choiceTop = keysTop - line;
    const int messageTop = choiceTop - line;
    const int expressionTop = std::max(0, messageTop - line);
    MoveWindow(tapeList_, margin, margin, width - 2 * margin, std::max(0, expressionTop - 2 * margin), TRUE);
    MoveWindow(expression_, margin, expressionTop, width - 2 * margin, line, TRUE);
    MoveWindow(message_, margin, messageTop + margin, width - 2 * margin, line - margin, TRUE);

    const auto cell = [&](int column, int columns, int top, int height) {
        const int room = width - 2 * margin;
        return RECT{margin + room * column / columns + 1, top + 1, margin + room * (column + 1) / columns - 1,
                    top + height - 1};
    };
    const int choices = static_cast<int>(bases_.size()) + 1;
    for (int i = 0; i < static_cast<int>(bases_.size()); ++i) {
        bases_[static_cast<std::size_t>(i)].button.Move(cell(i, choices, choiceTop, line));
    }
    angle_.Move(cell(choices - 1, choices, choiceTop, line));
    for (int i = 0; i < static_cast<int>(keys_.size()); ++i) {
        keys_[static_cast<std::size_t>(i)]->Move(
            cell(i % KEY_COLUMNS, KEY_COLUMNS, keysTop + i / KEY_COLUMNS * keyHeight, keyHeight));
    }
}

std::vector<CVelmPressButton*> CVelmCalculatorWindow::Buttons() {
    std::vector<CVelmPressButton*> buttons;
    for (Base& base : bases_) {
        buttons.push_back(&base.button);
    }
    buttons.push_back(&angle_);
    for (const auto& key : keys_) {
        buttons.push_back(key.get());
    }
    return buttons;
}

void CVelmCalculatorWindow::Paint() {
    const CVelmPainter painter(Handle());
    FillColor(painter.Dc(), painter.UpdateArea(), RGB(255, 255, 255));
    for (const CVelmPressButton* const button : Buttons()) {
        static_cast<const CVelmDrawnButton*>(button)->Draw(painter.Dc());
    }
}

LRESULT CVelmCalculatorWindow::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (router_.Route(Buttons(), message, wParam, lParam)) {
        return 0;
    }
    switch (message) {
        case WM_CREATE:
            return OnCreate() ? 0 : -1;
        case WM_SIZE:
            Layout();
            return 0;
        case WM_GETMINMAXINFO:
            LimitFrameSize(Handle(), *reinterpret_cast<MINMAXINFO*>(lParam));
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            Paint();
            return 0;
        case WM_SETFOCUS:
            SetFocus(expression_);
            return 0;
        case WM_CTLCOLORSTATIC:
            return reinterpret_cast<LRESULT>(GetStockObject(WHITE_BRUSH));
        case WM_COMMAND:
            OnCommand(LOWORD(wParam), HIWORD(wParam));
            return 0;
        case WM_COPYDATA:
            return TakeValue(*reinterpret_cast<const COPYDATASTRUCT*>(lParam)) ? TRUE : FALSE;
        case WM_ENDSESSION:
            if (wParam != FALSE) {
                SaveTape();
            }
            return 0;
        case WM_DESTROY:
            SaveTape();
            PostQuitMessage(0);
            return 0;
        default:
            return CVelmWindow::WindowProc(message, wParam, lParam);
    }
}

bool CVelmCalculatorWindow::PreTranslate(const MSG& message) {
    if (message.message != WM_KEYDOWN) {
        return false;
    }
    switch (message.wParam) {
        case VK_RETURN:
            if (message.hwnd == tapeList_) {
                TakeTapeLine();
            } else {
                Compute();
            }
            return true;
        case VK_ESCAPE:
            SetWindowTextW(expression_, L"");
            return true;
        case VK_TAB:
            SetFocus(GetFocus() == expression_ ? tapeList_ : expression_);
            return true;
        default:
            return false;
    }
}

void CVelmCalculatorWindow::OnCommand(WORD id, WORD notification) {
    if (id == ID_TAPE) {
        if (notification == LBN_DBLCLK) {
            TakeTapeLine();
        }
    } else if (id == ID_ANGLE) {
        angle_.SetText(calculator_.CycleAngle());
    } else if (id >= ID_FIRST_BASE && id < ID_FIRST_BASE + bases_.size()) {
        ChooseBase(static_cast<std::size_t>(id - ID_FIRST_BASE));
        ShowResult();
    } else if (id >= ID_FIRST_KEY && id < ID_FIRST_KEY + keys_.size()) {
        OnKey(static_cast<std::size_t>(id - ID_FIRST_KEY));
    }
}

void CVelmCalculatorWindow::OnKey(std::size_t index) {
    const CalculatorKey& key = CalculatorKeys()[index];
    SetFocus(expression_);
    switch (key.action) {
        case KeyAction::Insert:
            SendMessageW(expression_, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(Wide(key.text)));
            break;
        case KeyAction::Backspace:
            SendMessageW(expression_, WM_CHAR, VK_BACK, 1);
            break;
        case KeyAction::Clear:
            SetWindowTextW(expression_, L"");
            ShowMessage({});
            result_.reset();
            break;
        case KeyAction::Compute:
            Compute();
            break;
    }
}

void CVelmCalculatorWindow::Compute() {
    const CVelmString line = WindowText(expression_);
    const CalculatorResult result = calculator_.Compute(line);
    if (!result.computed) {
        result_.reset();
        ShowMessage(result.fault.message);
        const auto start = static_cast<WPARAM>(result.fault.position);
        SendMessageW(expression_, EM_SETSEL, start, static_cast<LPARAM>(start + result.fault.length));
        return;
    }
    SendMessageW(expression_, EM_SETSEL, 0, -1);
    if (result.answer) {
        ShowAnswer(line, *result.answer);
        return;
    }
    result_ = result.value;
    ShowResult();
    AddToTape(line, format_.FormatValue(result.value, services_.locale));
}

/// The message line shows all rows of an answer, the tape one row a line and then the notes.
void CVelmCalculatorWindow::ShowAnswer(CVelmStringView question, const CVelmAnswer& answer) {
    result_.reset();
    CVelmString message;
    const bool isOne = answer.rows.size() == 1;
    for (const CVelmAnswerRow& row : answer.rows) {
        const CVelmString text = isOne ? row.TextWithUnit() : row.NamedText();
        AddToTape(message.empty() ? question : CVelmStringView(), text);
        message += (message.empty() ? u"" : u"; ") + text;
    }
    for (const CVelmString& note : answer.notes) {
        AddToTape({}, u"(" + note + u")");
    }
    ShowMessage(message);
}

void CVelmCalculatorWindow::AddToTape(CVelmStringView expression, CVelmStringView result) {
    tape_.Add(expression, result);
    ShowTapeLine(tape_.Lines().back());
}

void CVelmCalculatorWindow::ShowResult() {
    if (result_) {
        ShowMessage(format_.FormatValue(*result_, services_.locale));
    }
}

void CVelmCalculatorWindow::ShowMessage(CVelmStringView text) {
    SetWindowTextW(message_, Wide(CVelmString(text)));
}

void CVelmCalculatorWindow::ShowTapeLine(const TapeLine& line) {
    const LRESULT index = SendMessageW(tapeList_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(TapeText(line))));
    if (index >= static_cast<LRESULT>(CVelmTape::MAX_LINES)) {
        SendMessageW(tapeList_, LB_DELETESTRING, 0, 0);
    }
    SendMessageW(tapeList_, LB_SETTOPINDEX, static_cast<WPARAM>(index), 0);
}

void CVelmCalculatorWindow::TakeTapeLine() {
    const LRESULT index = SendMessageW(tapeList_, LB_GETCURSEL, 0, 0);
    if (index < 0 || static_cast<std::size_t>(index) >= tape_.Lines().size()) {
        return;
    }
    auto line = static_cast<std::size_t>(index);
    while (line > 0 && tape_.Lines()[line].expression.empty()) {
        --line;
    }
    SetWindowTextW(expression_, Wide(tape_.Lines()[line].expression));
    SetFocus(expression_);
    SendMessageW(expression_, EM_SETSEL, 0, -1);
}

bool CVelmCalculatorWindow::TakeValue(const COPYDATASTRUCT& data) {
    double value = 0.0;
    if (data.dwData != COPYDATA_VALUE || data.cbData != sizeof(value) || data.lpData == nullptr) {
        return false;
    }
    std::memcpy(&value, data.lpData, sizeof(value));
    if (!std::isfinite(value)) {
        return false;
    }
    SetWindowTextW(expression_, Wide(NumberToText(value)));
    SetFocus(expression_);
    SendMessageW(expression_, EM_SETSEL, static_cast<WPARAM>(GetWindowTextLengthW(expression_)), -1);
    return true;
}

void CVelmCalculatorWindow::ChooseBase(std::size_t index) {
    format_.displayFormat = bases_[index].code;
    for (std::size_t i = 0; i < bases_.size(); ++i) {
        bases_[i].button.SetSelected(i == index);
    }
}

void CVelmCalculatorWindow::SaveTape() {
    if (!tapePath_.empty()) {
        tape_.Save(services_, tapePath_);
    }
}

}  // namespace velm
