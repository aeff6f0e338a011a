#include "support/value_entry.h"

#include "app/display_scale.h"
#include "support/waiting.h"

namespace velm::test {

void ValueEntryTest::StartDistances() {
    SaveConversionFile(program, u"Distances",
                       {{u"miles", 1.0, u"mi"}, {u"kilometers", 1.609344, u"km"}, {u"yards", 1760.0, u"yd"}});
    ASSERT_TRUE(program.Start());
}

void ValueEntryTest::Allow(int row, std::uint32_t formats, std::uint32_t inputFormat) {
    program.Ask([=](CVelmFrame& frame) {
        CVelmItem& item = frame.List().Row(row).Item();
        item.format.SetAllowedFormats(formats);
        item.format.displayFormat = inputFormat;
        item.format.inputFormat = inputFormat;
        frame.List().SelectRow(-1);
        frame.List().SelectRow(row);
    });
}

void ValueEntryTest::Give(int row, double value) {
    program.Ask([=](CVelmFrame& frame) {
        CVelmItem& item = frame.List().Row(row).Item();
        item.value = value;
        item.state = STATE_VALID;
        frame.List().SelectRow(-1);
        frame.List().SelectRow(row);
        SendMessageW(frame.Handle(), WM_COMMAND, 0x8021, 0);
    });
}

void ValueEntryTest::Tap(const RECT& area) {
    program.Tap(program.Panel(), static_cast<int>(area.left + area.right) / 2,
                static_cast<int>(area.top + area.bottom) / 2);
    program.Settle();
}

void ValueEntryTest::TapRow(int row) {
    const RECT area = program.Ask([row](CVelmFrame& frame) { return frame.List().Row(row).Rectangle(); });
    program.Tap(program.List(), static_cast<int>(area.right) - Scaled(10), static_cast<int>(area.top) + Scaled(6));
    EXPECT_TRUE(program.Eventually([row](CVelmFrame& frame) { return frame.List().Selected() == row; }));
    program.Settle();
}

void ValueEntryTest::TapTab(std::uint32_t format) {
    const RECT area = program.Ask([format](CVelmFrame& frame) {
        const CVelmValuePanel& panel = frame.Panel();
        for (int i = 0; i < panel.TabCount(); ++i) {
            if (panel.TabFormat(i) == format) {
                return panel.TabButton(i).Rectangle();
            }
        }
        ADD_FAILURE() << "no tab for format " << format;
        return RECT{};
    });
    Tap(area);
}

void ValueEntryTest::TapAccept() {
    Tap(program.Ask([](CVelmFrame& frame) { return frame.Panel().AcceptButton().Rectangle(); }));
}

void ValueEntryTest::TapRestore() {
    Tap(program.Ask([](CVelmFrame& frame) { return frame.Panel().RestoreButton().Rectangle(); }));
}

void ValueEntryTest::Enter(std::string_view text) {
    program.Ask([](CVelmFrame& frame) { SetFocus(frame.Panel().Handle()); });
    const HWND box = program.Focus();
    SendMessageW(box, EM_SETSEL, 0, -1);
    program.Key(VK_DELETE);
    program.Type(text);
    program.Settle();
}

std::string ValueEntryTest::Tabs() {
    return program.Ask([](CVelmFrame& frame) {
        std::string text;
        const CVelmValuePanel& panel = frame.Panel();
        for (int i = 0; i < panel.TabCount(); ++i) {
            const std::string caption = ToUtf8(panel.TabButton(i).Text());
            text += (i == 0 ? "" : " | ") + (i == panel.SelectedTab() ? "[" + caption + "]" : caption);
        }
        return text;
    });
}

std::string ValueEntryTest::Typed() {
    return program.Ask([](CVelmFrame& frame) {
        const CVelmValueEditor& editor = frame.Panel().Editor();
        return ToUtf8(editor.Format() == FMT_COMPOUND ? editor.Compound().Text() : editor.Box().Text());
    });
}

std::string ValueEntryTest::Shown(int row) {
    return program.Ask([row](CVelmFrame& frame) { return ToUtf8(frame.List().Row(row).ValueText()); });
}

double ValueEntryTest::ValueOf(int row) {
    return program.Ask([row](CVelmFrame& frame) { return frame.List().Row(row).Item().value; });
}

bool ValueEntryTest::HasValue(int row) {
    return program.Ask([row](CVelmFrame& frame) { return frame.List().Row(row).Item().state == STATE_VALID; });
}

std::string ValueEntryTest::Sign() {
    return program.Ask([](CVelmFrame& frame) -> std::string {
        const HICON icon = frame.Panel().AcceptButton().Icon();
        return icon == frame.Panel().AcceptedIcon() ? "accepted"
                                                    : (icon == frame.Panel().ErrorIcon() ? "error" : "none");
    });
}

void ValueEntryTest::WaitForCommit() {
    program.Settle();  // what was typed has arrived
    EXPECT_TRUE(program.Eventually([](CVelmFrame& frame) { return !frame.Panel().HasPendingEdits(); }));
    program.Settle();
}

bool ValueEntryTest::Shows(int row, const std::string& text) {
    return WaitUntil([&] { return Shown(row) == text; });
}

}  // namespace velm::test
