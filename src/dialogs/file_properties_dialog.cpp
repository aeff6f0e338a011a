#include <array>

#include "dialogs/category_box.h"
#include "dialogs/dialog_frame.h"
#include "dialogs/dialogs.h"
#include "model/file_names.h"
#include "platform/wide_text_win32.h"
#include "resource.h"

namespace velm {
namespace {

constexpr std::array PLACEMENTS = {
    PlaceLabel(IDC_LABEL_1, 0), PlaceField(IDC_FILE_TITLE, 0),
    PlaceLabel(IDC_LABEL_2, 1), PlaceField(IDC_CATEGORY, 1, DIALOG_LIST_HEIGHT),
    PlaceLabel(IDC_LABEL_3, 2), PlaceField(IDC_FILE_NAME, 2),
    PlaceLabel(IDC_LABEL_4, 3), PlaceField(IDC_FILE_UPDATED, 3),
};

class FilePropertiesDialog : public CVelmDialog {
public:
    FilePropertiesDialog(CVelmDocument& document, const CVelmCatalog& catalog)
        : CVelmDialog(IDD_FILE_PROPERTIES, IDM_OK_CANCEL, document.fileName.empty() ? u"New File" : u"File Properties",
                      PLACEMENTS, DialogRow(4)),
          document_(document),
          catalog_(catalog),
          isNew_(document.fileName.empty()) {}

protected:
    HWND OnInit() override {
        AddCategories(Control(IDC_CATEGORY), catalog_, 0);
        SetText(IDC_FILE_TITLE, document_.title);
        SetText(IDC_CATEGORY, document_.category);
        SetText(IDC_FILE_NAME, document_.fileName);
        SetText(IDC_FILE_UPDATED, document_.updatedText);
        if (isNew_) {
            Send(IDC_FILE_NAME, EM_SETREADONLY, FALSE);
        }
        return nullptr;
    }

    void OnOk() override {
        const CVelmString typed = Text(IDC_FILE_NAME);
        CVelmFileEntry entry{Text(IDC_FILE_TITLE, DIALOG_FREE_TEXT_MAX), Text(IDC_CATEGORY, DIALOG_FREE_TEXT_MAX), {}};
        if (isNew_) {
            entry.fileName = MakeNewFileName(catalog_, document_.GetKind(), typed.empty() ? entry.title : typed);
        }
        switch (EditFile(document_, entry, catalog_)) {
            case EntryFault::TitleIsEmpty:
                Refuse(IDC_FILE_TITLE, u"Please enter title text", 0, L"File Properties");
                return;
            case EntryFault::FileNameIsNotAllowed:
                Refuse(IDC_FILE_NAME, u"\"" + entry.fileName +
                                          u"\" cannot be the name of a file. A file name has none of the characters "
                                          u"\\ / : * ? \" < > |, does not end with a dot or a space, and is no name "
                                          u"of a device such as CON.");
                return;
            case EntryFault::FileNameIsTaken:
                Refuse(IDC_FILE_NAME,
                       u"There is a file \"" + entry.fileName + u"\" already. Please enter another file name.");
                return;
            default:
                End(IDOK);
        }
    }

private:
    CVelmDocument& document_;
    const CVelmCatalog& catalog_;
    bool isNew_;
};

}  // namespace

int ShowFilePropertiesDialog(HWND parent, CVelmDocument& document, const CVelmCatalog& catalog) {
    return FilePropertiesDialog(document, catalog).Show(parent);
}

}  // namespace velm
