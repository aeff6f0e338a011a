#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <stdexcept>

#include "cli/process.h"

namespace velm::test {

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File MakeFile() {
    return {std::tmpfile(), std::fclose};
}

std::string ReadAll(std::FILE* file) {
    std::rewind(file);
    std::string text;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        text += static_cast<char>(c);
    }
    return text;
}

}  // namespace

ProcessResult RunVelmora(const Words& arguments, std::string_view input) {
    const File in = MakeFile();
    const File out = MakeFile();
    const File err = MakeFile();
    if (!input.empty()) {
        std::fwrite(input.data(), 1, input.size(), in.get());
    }
    std::rewind(in.get());
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, fileno(in.get()), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fileno(out.get()), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fileno(err.get()), STDERR_FILENO);
    Words words = arguments;
    words.insert(words.begin(), VELMORA_PROGRAM);
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    pid_t process = 0;
    const int failure = posix_spawn(&process, VELMORA_PROGRAM, &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) {
        throw std::runtime_error("cannot start " VELMORA_PROGRAM);
    }
    int status = 0;
    waitpid(process, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), ReadAll(out.get()), ReadAll(err.get())};
}

}  // namespace velm::test
