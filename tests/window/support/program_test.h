#pragma once

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/dialog_driver.h"
#include "support/files.h"
#include "support/running_program.h"

namespace velm::test {

/// Something that a user does, in the words of ProgramTest::Do, and what is to be seen then.
struct Step {
    std::string act;
    std::optional<std::string> seen;
    std::string why = "";
};

/// A user at the program.
class ProgramTest : public testing::Test {
protected:
    /// Starts the program on a file of miles, kilometers and yards, or on meters and feet.
    void StartDistances();
    void StartLength();

    CVelmDocument& Document();
    CVelmConversionDoc& Conversions() { return static_cast<CVelmConversionDoc&>(Document()); }
    CVelmItem& Item(int row);

    // What the frame shows: the title, the rows as "miles=1, kilometers=1.609344", and of the list its first visible
    // row, the number of visible ones and the selected one as "0/3/2".
    std::string Title();
    std::string Rows();
    std::string ListState();

    /// What the value entry panel shows of the selected item, and the item's value: "2+3 = 5", "5+ = none (error)".
    /// With pickers both sides are dates. Nothing while the panel is hidden.
    std::string Entry();

    /// The captions of the panel's tabs, the selected one in brackets.
    std::string Tabs();

    /// The part of the compound editor that has the focus, of how many that are shown: "1 of 3".
    std::string Part();

    /// Allows formats for the item of a row and selects the row anew.
    void Allow(int row, std::uint32_t formats, std::uint32_t inputFormat);

    /// Gives the item of a row a value, as though it had been entered, and selects the row anew.
    void Give(int row, double value);

    void Select(int row);
    void TapRow(int row);
    void TapFormatButton(int row);

    /// Does one thing after the other: acts are separated by "; ". Gives back what the last one shows, for most of them
    /// Entry. The words are those of Acts, Looks and Questions.
    std::string Do(const std::string& acts);

    /// Does the steps; what is to be seen after each is what it shows, unless `look` says something else.
    void Play(const std::vector<Step>& steps, const std::function<std::string()>& look = nullptr);

    /// Compound parts of the item of a row, as "1 ft, 12 in".
    void SetParts(int row, const std::string& text);

    /// Gives the list that many pixels of an ordinary screen.
    void ResizeList(int width, int height);

    void PutOnClipboard(CVelmStringView text);
    void EmptyTheClipboard();

    RunningProgram program;

private:
    struct Said;
    std::map<std::string, std::function<void(const Said&)>> Acts();
    std::map<std::string, std::function<std::string(const Said&)>> Looks();
    std::map<std::string, std::function<std::string(const Said&)>> Questions();

    void SaveFile(const std::string& text);
    void StoreRecent(const std::string& names);
    void Press(const std::string& name);
    void Focus(HWND window);
    void Enter(const std::string& text);
    void Paste(const std::string& text);
    void TapPanel(const std::string& name);
    void WaitForCommit();
    void Pick(const std::string& text);
    void GiveText(const std::string& text);
    void AllowNamed(const std::string& text);
    void Unselect(int row);
    HWND Over(int command);
    std::string Ask(HWND box, int button);
    std::string Shortened(std::string text) const;
    std::string FormatMenu(int row);
    std::string Parts(int row);
    std::string Fields();
    DialogDriver Dialog() { return {program, program.WaitForDialog()}; }

    Bytes remembered_;
};

}  // namespace velm::test
