#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>

#include "cli/process.h"

namespace velm::test {

namespace {

/// A running command whose input and output are pipes.
class Conversation {
public:
    explicit Conversation(Words words) {
        std::array<int, 2> in{};
        std::array<int, 2> out{};
        if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0) {
            ADD_FAILURE() << "no pipes";
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
        words.insert(words.begin(), VELMORA_PROGRAM);
        std::vector<char*> pointers;
        for (std::string& word : words) {
            pointers.push_back(word.data());
        }
        pointers.push_back(nullptr);
        EXPECT_EQ(posix_spawn(&process_, VELMORA_PROGRAM, &actions, nullptr, pointers.data(), environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        close(in[0]);
        close(out[1]);
        to_ = in[1];
        from_ = out[0];
    }

    ~Conversation() {
        close(to_);
        close(from_);
        waitpid(process_, nullptr, 0);
    }
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    void Say(std::string_view text) const {
        EXPECT_EQ(write(to_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    /// What arrives up to a line end; what there was when nothing comes for half a minute.
    std::string Hear() const {
        std::string line;
        pollfd waiting{from_, POLLIN, 0};
        while (!line.ends_with('\n') && poll(&waiting, 1, 30000) == 1) {
            char c = 0;
            if (read(from_, &c, 1) != 1) {
                break;
            }
            line += c;
        }
        return line;
    }

private:
    pid_t process_ = 0;
    int to_ = -1;
    int from_ = -1;
};

}  // namespace

TEST(Stream, AnswersWhatItHasReadBeforeItWaitsForMore) {
    const Conversation conversation({"eval", "x*2", "x=-"});
    conversation.Say("1\n");
    EXPECT_EQ(conversation.Hear(), "2\n");
    conversation.Say("2\n3");
    EXPECT_EQ(conversation.Hear(), "4\n");
    conversation.Say("0\n");
    EXPECT_EQ(conversation.Hear(), "60\n");
}

TEST(Stream, KeepsLinesInStepHoweverTheyAreCut) {
    std::string input;
    std::string expected;
    for (int i = 0; i < 50000; ++i) {
        input += std::to_string(i % 1000) + "+" + std::to_string(i % 7) + (i % 3 == 0 ? "\r\n" : "\n");
        const int sum = i % 1000 + i % 7;
        expected += (sum < 1000 ? "" : std::to_string(sum / 1000) + ",");
        const std::string rest = std::to_string(sum % 1000);
        expected += (sum < 1000 ? "" : std::string(3 - rest.size(), '0')) + rest + "\n";
    }
    EXPECT_TRUE(Out({"eval", "-"}, input) == expected);
}

TEST(Stream, RefusesALineThatDoesNotEndAndGoesOn) {
    const std::string input = "1\n" + std::string(3 << 20, '9') + "\n2\n" + std::string(65000, '-') + "3";
    const ProcessResult result = RunVelmora({"eval", "-"}, input);
    EXPECT_EQ(result.out, "1\nerror\n2\n3\n");
    EXPECT_EQ(result.err, "velmora: line 2: no result for \"" + std::string(64, '9') + "...\"\n");
}

TEST(Stream, SaysSoWhenTheOutputCannotBeWritten) {
    const std::string command = "echo 1 | " VELMORA_PROGRAM " eval - 2>&1 >/dev/full; echo status $?";
    std::FILE* output = popen(command.c_str(), "r");
    std::array<char, 200> text{};
    const std::size_t length = std::fread(text.data(), 1, text.size(), output);
    pclose(output);
    EXPECT_EQ(std::string(text.data(), length), "velmora: cannot write to standard output\nstatus 1\n");
}

}  // namespace velm::test
