#include "app/compound_editor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "app/display_scale.h"
#include "support/picture.h"
#include "support/value_entry.h"

namespace velm::test {
namespace {

/// Miles that are typed in feet and inches, of which 1 has 12.
class CompoundEditorTest : public ValueEntryTest {
protected:
    void StartFeet() {
        StartDistances();
        SetParts({{u"ft", 1.0}, {u"in", 12.0}});
    }

    void SetParts(const std::vector<CVelmCompoundPart>& parts) {
        program.Ask([&](CVelmFrame& frame) {
            auto& kept = frame.Document()->items[0]->format.compoundParts;
            kept = {};
            std::copy(parts.begin(), parts.end(), kept.begin());
        });
        Allow(0, FMT_DECIMAL | FMT_COMPOUND, FMT_COMPOUND);
        program.Ask([](CVelmFrame& frame) { SetFocus(frame.Panel().Handle()); });
    }

    int FocusedPart() {
        program.Settle();
        return program.Ask([](CVelmFrame& frame) { return frame.Panel().Editor().Compound().FocusedPart(); });
    }

    int VisibleParts() {
        return program.Ask([](CVelmFrame& frame) {
            const CVelmCompoundEditor& editor = frame.Panel().Editor().Compound();
            int visible = 0;
            for (int i = 0; i < COMPOUND_PARTS; ++i) {
                visible += IsWindowVisible(editor.Part(i).Handle()) ? 1 : 0;
            }
            return visible;
        });
    }
};

TEST_F(CompoundEditorTest, TypesAValueInParts) {
    StartFeet();
    EXPECT_EQ(VisibleParts(), 2);
    EXPECT_EQ(Typed(), "");
    EXPECT_EQ(FocusedPart(), 0);
    program.Type("5");
    program.Key(VK_TAB);
    EXPECT_EQ(FocusedPart(), 1);
    program.Type("3");
    EXPECT_TRUE(Shows(0, "5 ft 3 in "));
    EXPECT_EQ(ValueOf(0), 5.25);
    EXPECT_EQ(Typed(), "[5 3]");
    program.Type("-");
    EXPECT_TRUE(Shows(0, "(5 ft 3 in )")) << "the sign key turns the whole value";
    EXPECT_EQ(Typed(), "-[5 3]");
    EXPECT_EQ(ValueOf(0), -5.25);
    program.Type("-");
    WaitForCommit();
    EXPECT_EQ(ValueOf(0), 5.25);
}

TEST_F(CompoundEditorTest, ShowsANegativeValueWithItsSign) {
    StartFeet();
    Give(0, -5.25);
    EXPECT_EQ(Typed(), "-[5 3]");
    TapAccept();
    EXPECT_EQ(ValueOf(0), -5.25);
    EXPECT_EQ(Typed(), "-[5 3]");
    Give(0, 1.0);
    EXPECT_EQ(Typed(), "[1 0]") << "the sign goes with the value";
}

TEST_F(CompoundEditorTest, TakesDigitsAndOnePoint) {
    StartFeet();
    program.Type("1.2.5x e[,");
    program.Settle();
    EXPECT_EQ(Typed(), "[1.25 0]");
    Give(0, 5.25);
    program.Ask([](CVelmFrame& frame) { SetFocus(frame.Panel().Handle()); });
    program.Type(".5");
    program.Settle();
    EXPECT_EQ(Typed(), "[.5 3]") << "what is selected gives way, its point too";
    WaitForCommit();
    EXPECT_EQ(ValueOf(0), 0.75);
}

TEST_F(CompoundEditorTest, AnEmptyPartKeepsItsPlace) {
    StartFeet();
    program.Key(VK_TAB);
    EXPECT_EQ(FocusedPart(), 1);
    program.Type("6");
    EXPECT_TRUE(Shows(0, "0 ft 6 in "));
    EXPECT_EQ(ValueOf(0), 0.5);
    program.Key(VK_BACK);
    program.Type("\b");
    WaitForCommit();
    EXPECT_EQ(Typed(), "");
    EXPECT_EQ(Sign(), "accepted") << "nothing typed is no error";
    EXPECT_EQ(ValueOf(0), 0.5);
}

TEST_F(CompoundEditorTest, KeysMoveBetweenTheParts) {
    StartFeet();
    SetParts({{u"h", 1.0 / 3600.0}, {u"min", 60.0}, {u"s", 60.0}});
    EXPECT_EQ(VisibleParts(), 3);
    EXPECT_EQ(FocusedPart(), 0);
    program.Key(VK_RIGHT);
    EXPECT_EQ(FocusedPart(), 1);
    program.Key(VK_LEFT);
    EXPECT_EQ(FocusedPart(), 0);
    program.Type("12");
    program.Key(VK_LEFT);
    EXPECT_EQ(FocusedPart(), 0) << "within the digits first";
    program.Key(VK_RIGHT);
    EXPECT_EQ(FocusedPart(), 0);
    program.Key(VK_RIGHT);
    EXPECT_EQ(FocusedPart(), 1);
    program.Type("\b");
    EXPECT_EQ(FocusedPart(), 0) << "Backspace in an empty part moves back";
    program.Key(VK_RETURN);
    EXPECT_EQ(FocusedPart(), 1);
    program.Type("3");
    program.Key(VK_RETURN);
    EXPECT_EQ(FocusedPart(), 2);
    program.Type("5");
    program.Key(VK_RETURN);
    program.Settle();
    EXPECT_EQ(ValueOf(0), 12 * 3600 + 3 * 60 + 5) << "Enter in the last part accepts";
    EXPECT_EQ(Typed(), "[12 3 5]");
    program.Key(VK_TAB, VK_SHIFT);
    EXPECT_EQ(FocusedPart(), 1);
    program.Key(VK_TAB);
    program.Key(VK_TAB);
    program.Settle();
    EXPECT_EQ(program.Focus(), program.List()) << "Tab leaves the last part for the list";
}

TEST_F(CompoundEditorTest, AValueThatPartsCannotShowIsNotChangedByLookingAtIt) {
    StartFeet();
    TapTab(FMT_DECIMAL);
    for (const double value : {2.5e15, -1e300, 1.0 / 3.0, 5.0 + 1e-9}) {
        Give(0, value);
        TapTab(FMT_COMPOUND);
        WaitForCommit();
        EXPECT_EQ(ValueOf(0), value);
        TapTab(FMT_DECIMAL);
        WaitForCommit();
        EXPECT_EQ(ValueOf(0), value);
    }
    Give(0, 2.5e15);
    TapTab(FMT_COMPOUND);
    EXPECT_EQ(Typed(), "") << "parts have no exponents";
}

TEST_F(CompoundEditorTest, EveryPartAndLabelHasItsPlace) {
    StartFeet();
    SetParts({{u"weeks of work", 1.0}, {u"d", 7.0}, {u"h", 24.0}, {u"a rather long label", 60.0}});
    EXPECT_EQ(VisibleParts(), 4);
    for (const int width : {160, 240, 480}) {
        program.Resize(Scaled(width), Scaled(320));
        program.Ask([&](CVelmFrame& frame) {
            const CVelmCompoundEditor& editor = frame.Panel().Editor().Compound();
            LONG end = 0;
            for (int i = 0; i < 4; ++i) {
                const RECT place = PlaceOf(editor.Part(i).Handle());
                EXPECT_GE(place.left, end) << "part " << i << " at width " << width;
                EXPECT_GE(place.right - place.left, Scaled(12));
                end = place.right;
            }
            RECT area{};
            GetClientRect(editor.Handle(), &area);
            EXPECT_LE(end, area.right) << "at width " << width;
        });
    }
}

}  // namespace
}  // namespace velm::test
