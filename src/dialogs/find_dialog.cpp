#include <algorithm>
#include <array>

#include "ask/question_search.h"
#include "dialogs/dialog_frame.h"
#include "dialogs/dialogs.h"
#include "platform/wide_text_win32.h"
#include "pocketpc/shell.h"
#include "resource.h"
#include "ui/display_scale.h"
#include "ui/wait_cursor.h"

namespace velm {
namespace {

/// The longest question, in UTF-16 units.
constexpr std::size_t QUESTION_MAX = 250;

constexpr std::size_t MAX_MATCHES = 20;
constexpr COLORREF FAULT_COLOR = RGB(255, 0, 0);

// Pixels at scale 1.
constexpr int LABEL_TOP = 5;
constexpr int BOX_TOP = 20;
constexpr int BOX_BOTTOM = BOX_TOP + DIALOG_FIELD_HEIGHT;
constexpr int LIST_TOP = BOX_BOTTOM + DIALOG_MARGIN;
constexpr int MIN_HEIGHT = LIST_TOP + 60;
constexpr int COLUMN_ROOM_LESS = 4;
constexpr int TEXT_ROOM_LESS = 12;

constexpr std::array PLACEMENTS = {
    CVelmPlacement{IDC_LABEL_1, FromStart(DIALOG_MARGIN), FromStart(LABEL_TOP), FromEnd(DIALOG_MARGIN),
                   FromStart(BOX_TOP - 1)},
    CVelmPlacement{IDC_QUESTION, FromStart(DIALOG_MARGIN), FromStart(BOX_TOP), FromEnd(DIALOG_MARGIN),
                   FromStart(BOX_BOTTOM)},
    CVelmPlacement{IDC_LIST, FromStart(0), FromStart(LIST_TOP), FromEnd(0), FromEnd(0)},
};

/// Splits a text into parts that are at most `width` pixels wide, at blanks where there are any.
std::vector<CVelmString> WrapText(HDC dc, const CVelmString& text, int width) {
    std::vector<CVelmString> parts;
    CVelmString rest = text;
    while (!rest.empty()) {
        std::size_t end = rest.size();
        while (end > 1 && TextWidth(dc, rest.substr(0, end)) > width) {
            const std::size_t blank = rest.rfind(u' ', end - 1);
            end = blank == CVelmString::npos || blank == 0 ? end - 1 : blank;
        }
        parts.push_back(rest.substr(0, end));
        rest.erase(0, rest.find_first_not_of(u' ', end));
    }
    return parts;
}

class FindDialog : public CVelmDialog {
public:
    FindDialog(CVelmQuestions& questions, CVelmString& question)
        : CVelmDialog(IDD_FIND, IDM_OK_CANCEL, u"Find", PLACEMENTS, MIN_HEIGHT),
          search_(questions),
          question_(question) {}

    CVelmSearchPlace place;  ///< once the dialog has ended with OK

protected:
    HWND OnInit() override {
        InitList(IDC_LIST, 0);
        AddColumn(IDC_LIST, 0, LVCFMT_LEFT, 0);
        SetText(IDC_QUESTION, question_, QUESTION_MAX);
        Search();
        Send(IDC_QUESTION, EM_SETSEL, 0, -1);
        SHSipPreference(Handle(), SIP_UP);
        return Control(IDC_QUESTION);
    }

    void OnLayout() override { ShowLines(); }

    void OnCommand(WORD id, WORD notification) override {
        if (id == IDC_QUESTION && notification == EN_CHANGE) {
            Search();
            ShowLines();
        }
    }

    LRESULT OnNotify(const NMHDR& notification) override {
        if (notification.idFrom != IDC_LIST) {
            return 0;
        }
        switch (notification.code) {
            case NM_CLICK:
            case NM_DBLCLK:
                if (reinterpret_cast<const NMITEMACTIVATE&>(notification).iItem >= 0) {
                    PostMessageW(Handle(), WM_COMMAND, IDOK, 0);
                }
                return 0;
            case NM_CUSTOMDRAW:
                return OnDrawRow(reinterpret_cast<NMLVCUSTOMDRAW&>(const_cast<NMHDR&>(notification)));
            default:
                return 0;
        }
    }

    void OnOk() override {
        const int row = static_cast<int>(Send(IDC_LIST, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
        if (row >= 0) {
            place = search_.PlaceOf(static_cast<std::size_t>(RowValue(IDC_LIST, row)));
        }
        if (!place.fileName.empty()) {
            End(IDOK);
            return;
        }
        const CVelmQuestionFault& fault = search_.Fault();
        if (!fault.message.empty()) {
            Refuse(IDC_QUESTION, fault.message);
            Send(IDC_QUESTION, EM_SETSEL, fault.position, static_cast<LPARAM>(fault.position + fault.length));
        } else if (search_.Lines().empty()) {
            Refuse(IDC_QUESTION, u"Please enter a question, a unit or a file");
        } else {
            Refuse(IDC_QUESTION, u"No file shows this answer");
        }
    }

private:
    void Search() {
        question_ = Text(IDC_QUESTION, QUESTION_MAX);
        search_.SetText(question_, MAX_MATCHES);
    }

    /// Fills the list, a line in as many rows as it needs. The first row is selected if it leads to a file.
    void ShowLines() {
        const HWND list = Control(IDC_LIST);
        // With room for the scroll bar, whether it is there or not.
        const int column =
            std::max(0, Width(PlaceInParent(list)) - GetSystemMetrics(SM_CXVSCROLL) - Scaled(COLUMN_ROOM_LESS));
        const int width = std::max(0, column - Scaled(TEXT_ROOM_LESS));
        const CVelmTextMeasure measure(list, reinterpret_cast<HFONT>(SendMessageW(list, WM_GETFONT, 0, 0)));
        SendMessageW(list, WM_SETREDRAW, FALSE, 0);
        Send(IDC_LIST, LVM_DELETEALLITEMS);
        for (std::size_t i = 0; i < search_.Lines().size(); ++i) {
            for (const CVelmString& part : WrapText(measure.Dc(), search_.Lines()[i].text, width)) {
                AddRow(IDC_LIST, part, static_cast<LPARAM>(i));
            }
        }
        Send(IDC_LIST, LVM_SETCOLUMNWIDTH, 0, column);
        if (!search_.Lines().empty() && !search_.PlaceOf(0).fileName.empty()) {
            ListView_SetItemState(list, 0, LVIS_FOCUSED | LVIS_SELECTED, LVIS_FOCUSED | LVIS_SELECTED);
        }
        SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    }

    LRESULT OnDrawRow(NMLVCUSTOMDRAW& draw) const {
        if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) {
            return CDRF_NOTIFYITEMDRAW;
        }
        const auto line = static_cast<std::size_t>(draw.nmcd.lItemlParam);
        if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT && line < search_.Lines().size() &&
            search_.Lines()[line].kind == SearchLineKind::Fault) {
            draw.clrText = FAULT_COLOR;
        }
        return CDRF_DODEFAULT;
    }

    CVelmQuestionSearch search_;
    CVelmString& question_;
};

}  // namespace

std::optional<CVelmSearchPlace> ShowFindDialog(HWND parent, CVelmQuestions& questions, CVelmString& question) {
    {
        const auto wait = ShowWaitCursor();
        static_cast<void>(questions.Suggest(u"a", 1));  // makes or reads the index
    }
    FindDialog dialog(questions, question);
    return dialog.Show(parent) == IDOK ? std::optional(dialog.place) : std::nullopt;
}

}  // namespace velm
