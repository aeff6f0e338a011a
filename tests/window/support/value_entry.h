#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "support/files.h"
#include "support/running_program.h"

namespace velm::test {

/// A user who enters values: miles, kilometers and a third unit, in whatever formats a test allows.
class ValueEntryTest : public testing::Test {
protected:
    /// Starts the program on a file of miles, kilometers and yards.
    void StartDistances();

    /// Allows formats for the item of a row and shows the document again with that row selected.
    void Allow(int row, std::uint32_t formats, std::uint32_t inputFormat);

    /// Gives the item of a row a value, as though it had been entered, and selects the row again.
    void Give(int row, double value);

    /// Taps a row of the list and waits until it is selected.
    void TapRow(int row);

    /// Taps the tab of a format, the accept button, the restore button, and waits for what it does.
    void TapTab(std::uint32_t format);
    void TapAccept();
    void TapRestore();

    /// Replaces what the editor shows.
    void Enter(std::string_view text);

    /// The captions of the tabs, the selected one in brackets.
    std::string Tabs();

    /// What is typed and what the list shows.
    std::string Typed();
    std::string Shown(int row);
    double ValueOf(int row);
    bool HasValue(int row);

    /// What the accept button says: "accepted" or "error".
    std::string Sign();

    /// Waits until the edits made so far have been committed.
    void WaitForCommit();

    /// Waits until the list shows the text in a row.
    bool Shows(int row, const std::string& text);

    RunningProgram program;

private:
    void Tap(const RECT& area);
};

}  // namespace velm::test
