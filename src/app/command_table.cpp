#include "app/command_table.h"

#include <array>
#include <vector>

#include "app/commands.h"
#include "app/main_frame.h"
#include "resource.h"

namespace velm {
namespace {

/// A command of one identifier.
constexpr CVelmCommand One(WORD id, bool (*enabled)(const CVelmFrame&), void (*run)(CVelmFrame&, WORD),
                           CVelmCommandKey key = {}) {
    return {id, id, enabled, run, key, false};
}

constexpr CVelmCommand WhileBusy(CVelmCommand command) {
    command.whileBusy = true;
    return command;
}

constexpr KeyPlace OUTSIDE = KeyPlace::OutsideText;

constexpr std::array COMMANDS = {
    One(ID_ABOUT, Always, ShowAbout),
    One(ID_OPEN_FILE, Always, OpenDataFile, {'O', FCONTROL}),
    One(ID_NEW_CONVERSION_FILE, Always, MakeNewFile),
    One(ID_NEW_CALCULATION_FILE, Always, MakeNewFile),
    One(ID_PROPERTIES, HasDocument, EditFileProperties),
    One(ID_EXIT, Always, ExitProgram),
    One(ID_ADD_UNIT, HasDocument, AddUnit, {VK_INSERT, 0, OUTSIDE}),
    One(ID_EDIT_UNIT, HasCurrentItem, EditUnit, {VK_RETURN, 0, OUTSIDE}),
    One(ID_DELETE_UNIT, HasCurrentItem, DeleteUnit, {VK_DELETE, 0, OUTSIDE}),
    One(ID_CONVERSIONS, IsConversionFile, EditConversions),
    One(ID_DOWNLOAD, Always, DownloadUpdates),
    One(ID_OPTIONS, Always, EditOptions),
    One(ID_FIND, Always, FindByQuestion, {VK_F3, 0}),
    One(ID_SHOW_UNITS, Always, ChooseShownUnits, {'U', FCONTROL}),
    WhileBusy(One(ID_CALCULATE, Always, Calculate)),
    One(ID_REMOVE_FROM_LIST, Always, RemoveFromList),
    One(ID_COPY, HasCurrentValue, CopyValue, {'C', FCONTROL, OUTSIDE}),
    One(ID_PASTE, CanPaste, PasteText, {'V', FCONTROL, OUTSIDE}),
    One(ID_OPEN_CALCULATOR, Always, OpenCalculator, {'K', FCONTROL}),
    One(ID_ROW_SIZE, Always, ToggleRowSize, {'L', FCONTROL}),
    One(ID_FORMATS, HasCurrentItem, ShowFormats, {'F', FCONTROL}),
    One(ID_HELP, Always, ShowHelp, {VK_F1, 0}),
    WhileBusy(One(ID_SAVE, HasDocument, SaveFormats)),
    CVelmCommand{ID_QUICK_FILE_FIRST, ID_QUICK_FILE_LAST, Always, SelectQuickFile, {}, false},
    One(IDC_TITLE, Always, ShowQuickFileMenu, {VK_F4, 0}),
};

constexpr std::array TOOLBAR = {
    CVelmTool{ID_COPY, IDS_COPY},
    CVelmTool{ID_PASTE, IDS_PASTE},
    CVelmTool{},
    CVelmTool{ID_EDIT_UNIT, IDS_EDIT_UNIT},
    CVelmTool{ID_CONVERSIONS, IDS_CONVERSIONS},
    CVelmTool{ID_ROW_SIZE, IDS_ROW_SIZE},
    CVelmTool{},
    CVelmTool{ID_OPEN_CALCULATOR, IDS_OPEN_CALCULATOR},
};

}  // namespace

std::span<const CVelmTool> Toolbar() {
    return TOOLBAR;
}

const CVelmCommand* FindCommand(WORD id) {
    for (const CVelmCommand& command : COMMANDS) {
        if (id >= command.first && id <= command.last) {
            return &command;
        }
    }
    return nullptr;
}

bool IsCommandEnabled(const CVelmFrame& frame, WORD id) {
    const CVelmCommand* const command = FindCommand(id);
    return command != nullptr && command->enabled(frame);
}

bool RunCommand(CVelmFrame& frame, WORD id) {
    if (!IsCommandEnabled(frame, id)) {
        return false;
    }
    const CVelmCommand& command = *FindCommand(id);
    if (!command.whileBusy && !IsWindowEnabled(frame.Handle())) {
        return false;
    }
    command.run(frame, id);
    return true;
}

CVelmAccelerators MakeAccelerators(KeyPlace place) {
    std::vector<ACCEL> keys;
    for (const CVelmCommand& command : COMMANDS) {
        if (command.key.key != 0 && command.key.place == place) {
            keys.push_back({static_cast<BYTE>(command.key.modifiers | FVIRTKEY), command.key.key, command.first});
        }
    }
    return CVelmAccelerators(CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size())));
}

}  // namespace velm
