#pragma once

#include <windows.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

#include "formats/value_format.h"
#include "tallyra/calculator.h"
#include "tallyra/tape.h"
#include "ui/drawn_button.h"
#include "ui/gdi.h"
#include "ui/window_class.h"

namespace velm {

inline constexpr const wchar_t* CALCULATOR_CLASS = L"TallyraFrame";

/// The calculator's one window: tape, expression, message line, choice of base, angle mode and keypad.
class CVelmCalculatorWindow : public CVelmWindow {
public:
    /// The tape is kept in the file `tapePath`. The services outlive the window. For the folders see CVelmQuestions.
    CVelmCalculatorWindow(const CVelmServices& services, CVelmString tapePath, CVelmString dataFolder,
                          CVelmString cacheFolder);

    bool CreateFrame(int showCommand);
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    /// Call for every message before it is dispatched. True when handled.
    bool PreTranslate(const MSG& message);

    /// Every button, each a CVelmDrawnButton: the bases, the angle mode, then the keypad in its order.
    std::vector<CVelmPressButton*> Buttons();

private:
    /// The key that shows results in a format.
    struct Base {
        std::uint32_t code = 0;
        CVelmDrawnButton button;
    };

    bool OnCreate();
    void Layout();
    void Paint();
    void OnCommand(WORD id, WORD notification);
    void OnKey(std::size_t index);
    void Compute();
    void ShowResult();
    void ShowMessage(CVelmStringView text);
    void ShowAnswer(CVelmStringView question, const CVelmAnswer& answer);
    void AddToTape(CVelmStringView expression, CVelmStringView result);
    void ShowTapeLine(const TapeLine& line);
    void TakeTapeLine();
    bool TakeValue(const COPYDATASTRUCT& data);
    void ChooseBase(std::size_t index);
    void SaveTape();

    CVelmServices services_;
    CVelmString tapePath_;
    CVelmCalculator calculator_;
    CVelmTape tape_;
    std::optional<double> result_;
    CVelmValueFormat format_;
    CVelmFont textFont_;
    CVelmFont resultFont_;
    HWND tapeList_ = nullptr;
    HWND expression_ = nullptr;
    HWND message_ = nullptr;
    std::deque<Base> bases_;
    CVelmDrawnButton angle_;
    std::vector<std::unique_ptr<CVelmDrawnButton>> keys_;
    CVelmButtonRouter router_;
};

}  // namespace velm
