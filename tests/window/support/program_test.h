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

/// A line of a session: where it stands, what is done, and what is to be seen then, if anything.
struct SessionLine {
    std::string file;
    int number = 0;
    std::string acts;
    std::optional<std::string> expected;
};

/// "row2" as "row" and 2; the number is 0 where there is none.
std::pair<std::string, int> KindAndNumber(const std::string& name);

/// A user at the program.
class ProgramTest : public testing::Test {
public:
    /// Does one thing after the other; tests/window/README.md explains the words. Gives back what the last act shows.
    /// Throws for words that do not exist.
    std::string Do(const std::string& acts);

    /// Plays a session up to the first line that fails.
    void Play(const std::vector<SessionLine>& lines);

    /// Writes a file, in the words of the verb, and starts the program on it.
    void Start(const std::string& file) { Do("file " + file + "; start"); }
    void StartDistances() { Start("Distances = miles|mi, kilometers|km|1.609344, yards|yd|1760"); }

    CVelmItem& Item(int row);

    /// The dialog that is open or opens, as soon as it has the focus, which the screen gives it late.
    HWND Dialog();

    /// A window, or a rectangle that it draws, by its name in sessions. Throws when there is none.
    struct Part {
        HWND window = nullptr;
        std::optional<RECT> drawn;
    };
    Part Find(const std::string& name);
    RECT PlaceOfPart(const std::string& name);

    // What the user sees; README.md explains the words.
    std::string Title();
    std::string Rows();
    std::string ListState();
    std::string Entry();
    std::string Tabs();
    std::string Tools();

    /// Gives the item of a row a value, as though it had been entered, and selects the row anew.
    void Give(int row, double value);
    void Select(int row);

    /// Gives the list that many pixels of an ordinary screen.
    void ResizeList(int width, int height);

    RunningProgram program;
    HttpServer server;
    std::map<std::string, Bytes> known;  ///< the files as the user knows them
    HANDLE locked = nullptr;
    HWND penDown = nullptr;
    std::optional<std::string> heard;  ///< what the last act had for an answer

private:
    std::string DoOne(const std::string& act);
};

}  // namespace velm::test
