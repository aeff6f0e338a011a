#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "support/temporary_folder.h"

namespace velm::test {
namespace {

constexpr const char* UP = "\x1B[A";
constexpr const char* CTRL_C = "\x03";
constexpr const char* CTRL_D = "\x04";
constexpr const char* CTRL_U = "\x15";

/// The command at a terminal of its own, as a user sees and types.
class Terminal {
public:
    Terminal() {
        const winsize size{24, 200, 0, 0};
        process_ = forkpty(&descriptor_, nullptr, nullptr, &size);
        if (process_ == 0) {
            setenv("TERM", "xterm", 1);
            execl(VELMORA_PROGRAM, "velmora", nullptr);
            _exit(127);
        }
    }
    ~Terminal() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
        close(descriptor_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void Type(const std::string& keys) const {
        ASSERT_EQ(write(descriptor_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }

    /// Whether a text appears below what has been seen, which then includes it. Shows what did appear instead.
    testing::AssertionResult Sees(const std::string& text) {
        for (;;) {
            const std::size_t found = screen_.find(text, seen_);
            if (found != std::string::npos) {
                seen_ = found + text.size();
                return testing::AssertionSuccess();
            }
            if (!Receive()) {
                return testing::AssertionFailure() << "no \"" << text << "\" in: " << screen_.substr(seen_);
            }
        }
    }

    /// Ends the session with Ctrl+D, once a completion shows that the editor and not the terminal reads the keys.
    void TypeEnd() {
        Type("furlo\t");
        ASSERT_TRUE(Sees("urlongs"));
        Type(std::string(CTRL_U) + CTRL_D);
    }

    /// The status with which the command ends; -1 when it was killed, as it is when it takes too long.
    int Status() {
        while (Receive()) {
        }
        if (!ended_) {
            kill(process_, SIGKILL);
        }
        int ended = 0;
        waitpid(process_, &ended, 0);
        process_ = 0;
        return WIFEXITED(ended) ? WEXITSTATUS(ended) : -1;
    }

private:
    /// Waits for more of the screen's text, controls left out. False at the end, and when it takes too long.
    bool Receive() {
        constexpr int PATIENCE = 20'000;
        pollfd input{descriptor_, POLLIN, 0};
        std::array<char, 4096> bytes;
        if (poll(&input, 1, PATIENCE) != 1) {
            return false;
        }
        const ssize_t count = read(descriptor_, bytes.data(), bytes.size());
        for (ssize_t i = 0; i < count; ++i) {
            Show(bytes[static_cast<std::size_t>(i)]);
        }
        ended_ = count <= 0;
        return !ended_;
    }

    void Show(char byte) {
        if (byte == '\x1B') {
            inControl_ = true;
        } else if (inControl_) {
            inControl_ = byte == '[' || byte == ';' || (byte >= '0' && byte <= '9');
        } else if (byte != '\r') {
            screen_ += byte;
        }
    }

    int descriptor_ = -1;
    pid_t process_ = 0;
    std::string screen_;
    std::size_t seen_ = 0;
    bool inControl_ = false;
    bool ended_ = false;
};

class SessionTest : public testing::Test {
protected:
    SessionTest() {
        setenv("HOME", ToUtf8(folder_.PathOf(u"home")).c_str(), 1);
        setenv("XDG_STATE_HOME", ToUtf8(folder_.PathOf(u"state")).c_str(), 1);
        setenv("XDG_CACHE_HOME", ToUtf8(folder_.PathOf(u"cache")).c_str(), 1);
        setenv("VELMORA_DATA", VELMORA_DATA_FOLDER, 1);
    }

    std::string History() const {
        const Bytes bytes = folder_.Read(HISTORY);
        return {bytes.begin(), bytes.end()};
    }

    mode_t HistoryMode() const {
        struct stat status {};
        return stat(ToUtf8(folder_.PathOf(HISTORY)).c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
    }

    static constexpr CVelmStringView HISTORY = u"state/velmora/history";
    TemporaryFolder folder_;
};

TEST_F(SessionTest, AnswersUntilTheInputEnds) {
    Terminal terminal;
    ASSERT_TRUE(terminal.Sees("> "));
    terminal.Type("26.2 mi in km\r");
    ASSERT_TRUE(terminal.Sees("\n26.2 mi = 42.1648128 km\n> "));
    terminal.Type("w = 80 kg\r");
    ASSERT_TRUE(terminal.Sees("80 kg"));
    ASSERT_TRUE(terminal.Sees("\n> "));
    terminal.Type("w + 0.5 kg in g\r");
    ASSERT_TRUE(terminal.Sees("80,500 g\n> "));
    terminal.Type("ans in kg\r");
    ASSERT_TRUE(terminal.Sees("80.5 kg\n> "));

    terminal.Type("5 µm in metrs\r");
    ASSERT_TRUE(terminal.Sees("5 µm in metrs\n          ^^^^^\n"));
    ASSERT_TRUE(terminal.Sees("\"metrs\""));
    ASSERT_TRUE(terminal.Sees("\n> "));

    terminal.Type("help\r");
    ASSERT_TRUE(terminal.Sees("Ctrl+D"));
    ASSERT_TRUE(terminal.Sees("\n> "));
    terminal.TypeEnd();
    EXPECT_EQ(terminal.Status(), 0);
}

TEST_F(SessionTest, CompletesWordsAndDropsLines) {
    Terminal terminal;
    ASSERT_TRUE(terminal.Sees("> "));
    terminal.Type("1 MI in KILOMET\t\t");
    ASSERT_TRUE(terminal.Sees("\nkilometers per hour "));
    ASSERT_TRUE(terminal.Sees("\n> 1 MI in kilometers"));
    terminal.Type(CTRL_C);
    ASSERT_TRUE(terminal.Sees("\n> "));
    terminal.Type("1 mi in furlo\t");
    ASSERT_TRUE(terminal.Sees("urlongs "));
    terminal.Type("\r");
    ASSERT_TRUE(terminal.Sees("\n1 mi = 8 "));
    terminal.Type("exit\r");
    EXPECT_EQ(terminal.Status(), 0);
    EXPECT_EQ(History().find("KILO"), std::string::npos);
}

TEST_F(SessionTest, RemembersTheQuestionsOfEarlierSessions) {
    for (const std::string question : {"1 mi in km", "2 mi in km"}) {
        Terminal terminal;
        ASSERT_TRUE(terminal.Sees("> "));
        terminal.Type(question + "\r\r" + question + "\r");
        ASSERT_TRUE(terminal.Sees("mi = "));
        ASSERT_TRUE(terminal.Sees("mi = "));
        terminal.TypeEnd();
        EXPECT_EQ(terminal.Status(), 0);
    }
    EXPECT_EQ(History(), "1 mi in km\n2 mi in km\n");
    EXPECT_EQ(HistoryMode(), 0600U);

    Terminal terminal;
    ASSERT_TRUE(terminal.Sees("> "));
    terminal.Type(std::string(UP) + UP + "\r");
    EXPECT_TRUE(terminal.Sees("\n1 mi = 1.609344 km\n"));
}

TEST_F(SessionTest, KeepsTheHistoryShortAndToTheUser) {
    std::string lines;
    for (int i = 1; i <= 2000; ++i) {
        lines += std::to_string(i) + " mi in km\n";
    }
    std::filesystem::create_directories(ToUtf8(folder_.PathOf(u"state/velmora")));
    folder_.WriteText(HISTORY, lines);
    chmod(ToUtf8(folder_.PathOf(HISTORY)).c_str(), 0644);
    Terminal terminal;
    ASSERT_TRUE(terminal.Sees("> "));
    terminal.Type(std::string(UP) + UP + "\r");
    ASSERT_TRUE(terminal.Sees("\n1,999 mi = "));
    terminal.TypeEnd();
    EXPECT_EQ(terminal.Status(), 0);
    const std::string kept = History();
    EXPECT_TRUE(kept.starts_with("1001 mi in km\n"));
    EXPECT_TRUE(kept.ends_with("\n2000 mi in km\n1999 mi in km\n"));
    EXPECT_EQ(std::count(kept.begin(), kept.end(), '\n'), 1001);
    EXPECT_EQ(HistoryMode(), 0600U);
}

}  // namespace
}  // namespace velm::test
