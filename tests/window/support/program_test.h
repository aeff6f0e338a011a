#pragma once

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/dialogs.h"
#include "support/files.h"
#include "support/http_server.h"
#include "support/running_program.h"

namespace velm::test {

/// A line of a session: its place, its acts, and what must be seen after them, if anything.
struct SessionLine {
    std::string file;
    int number = 0;
    std::string acts;
    std::optional<std::string> expected;
};

/// Splits "row2" into "row" and 2; the number is 0 if there is none.
std::pair<std::string, int> KindAndNumber(const std::string& name);

/// A user at the program.
class ProgramTest : public testing::Test {
public:
    /// Performs acts, whose language tests/window/README.md describes, and returns what the last one shows. Throws for
    /// unknown words.
    std::string Do(const std::string& acts);

    /// Plays a session up to the first line that fails.
    void Play(const std::vector<SessionLine>& lines);

    /// Writes a file, described as for the verb `file`, and starts the program with it.
    void Start(const std::string& file) { Do("file " + file + "; start"); }
    void StartDistances() { Start("Distances = miles|mi, kilometers|km|1.609344, yards|yd|1760"); }

    CVelmItem& Item(int row);

    /// The topmost dialog, or the one that opens. Waits until it has the focus.
    HWND Dialog();

    /// A window, or a rectangle drawn by it, by its name in sessions. Throws if there is none.
    struct Part {
        HWND window = nullptr;
        std::optional<RECT> drawn;
    };
    Part Find(const std::string& name);
    RECT PlaceOfPart(const std::string& name);

    // What the user sees, as README.md describes it.
    std::string Title();
    std::string Rows();
    std::string ListState();
    std::string Entry();
    std::string Tabs();
    std::string Tools();

    /// Sets the value of a row's item, as if it had been entered, and selects the row again.
    void Give(int row, double value);
    void Select(int row);

    /// Resizes the list, in pixels at scale 1.
    void ResizeList(int width, int height);

    RunningProgram program;
    HttpServer server;
    std::map<std::string, Bytes> known;  ///< the files at the start, or as a session wrote them
    HANDLE locked = nullptr;
    HWND penDown = nullptr;
    std::optional<std::string> heard;  ///< the answer of the last act, if it has one

private:
    std::string DoOne(const std::string& act);
};

}  // namespace velm::test
