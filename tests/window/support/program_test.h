#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "support/dialog_driver.h"
#include "support/files.h"
#include "support/http_server.h"
#include "support/running_program.h"

namespace velm::test {

/// A user at the program.
class ProgramTest : public testing::Test {
protected:
    /// Writes a file, in the words of SaveFile, and starts the program on it.
    void Start(const std::string& file) { Do("file " + file + "; start"); }
    void StartDistances() { Start("Distances = miles|mi, kilometers|km|1.609344, yards|yd|1760"); }

    CVelmDocument& Document();
    CVelmItem& Item(int row);

    // What the frame shows: the title, the rows as "miles=1, kilometers=1.609344", and of the list its first visible
    // row, the number of visible ones and the selected one as "0/3/2".
    std::string Title();
    std::string Rows();
    std::string ListState();

    /// What the value entry panel shows of the selected item, and the item's value: "2+3 = 5", "5+ = none (error)".
    /// With pickers both sides are dates. Nothing while the panel is hidden.
    std::string Entry();

    /// Gives the item of a row a value, as though it had been entered, and selects the row anew.
    void Give(int row, double value);
    void Select(int row);

    /// Does one thing after the other: acts are separated by "; ". Gives back what the last one shows, for most of them
    /// Entry. The words are those of Acts, Looks and Questions.
    std::string Do(const std::string& acts);

    /// Does one line after the other: acts, what must be seen then if anything, and a remark.
    void Play(const std::vector<Texts>& lines);

    /// Where a part of the program lies in its window: a window by its name or identifier, a button, the third tab as
    /// "tab2", the second row as "row1" and its parts as "button1", "name1" and "value1".
    RECT PlaceOfPart(const std::string& name);

    /// Gives the list that many pixels of an ordinary screen.
    void ResizeList(int width, int height);

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
    void TapPart(HWND window, const std::string& name);
    void TapTab(const std::string& caption);
    void TapRow(int row);
    void WaitForCommit();
    void Pick(const std::string& text);
    void GiveText(const std::string& text);
    void Allow(int row, const std::string& formats);
    void SetParts(int row, const std::string& text);
    std::map<std::string, HWND> Windows();
    HWND Window(const std::string& name);
    HWND Over(int command);
    std::string Ask(HWND box, int button);
    std::string InFull(const std::string& text) const;
    std::string Shortened(const std::string& text) const;
    void Serve(const std::string& path, const std::string& text);
    std::string Tabs();
    std::string Part();
    std::string Parts(int row);
    std::string Tools();
    std::string Titles();
    std::string Stored();
    std::string FirstLineOfPage();
    bool IsRed();
    DialogDriver Dialog() { return {program, program.WaitForDialog()}; }

    HttpServer server_;
    Bytes remembered_;
    HANDLE locked_ = nullptr;
};

}  // namespace velm::test
