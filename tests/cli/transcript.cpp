#include "cli/transcript.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "platform/file.h"

namespace velm::test {

namespace fs = std::filesystem;

namespace {

void Replace(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

std::string Prefixed(const std::string& prefix, const std::string& text) {
    std::string prefixed;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        prefixed += prefix + line + "\n";
    }
    return prefixed;
}

}  // namespace

Transcript::Transcript(bool ownData) {
    const char separator = FolderSeparator == u'/' ? ':' : ';';
    static const std::string PATH = std::getenv("PATH");
    fs::current_path(fs::path(folder_.Path()));
    server_.ServeFolder(folder_);
    SetVariable("PATH", fs::path(VELMORA_PROGRAM).parent_path().string() + separator + PATH);
    SetVariable("SERVER", server_.Address(""));
    SetVariable("SHIPPED", VELMORA_DATA_FOLDER);
    SetVariable("VELMORA_DATA", ownData ? "." : "");
    SetVariable("XDG_CONFIG_HOME", ToUtf8(folder_.PathOf(u"config")));
}

Transcript::~Transcript() {
    fs::current_path(fs::temp_directory_path());
}

std::string Transcript::Replay(const std::string& session) {
    std::string replayed;
    std::string command;
    std::istringstream lines(session);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("| ") || line.starts_with("! ") || line.starts_with("? ")) {
            continue;
        }
        replayed += line + "\n";
        if (line.starts_with("$ ") || line.starts_with("> ")) {
            command += line.substr(2) + (lines.peek() == '>' ? "\n" : "");
            if (lines.peek() != '>') {
                replayed += Run(command);
                command.clear();
            }
        }
    }
    return replayed;
}

std::string Transcript::Run(const std::string& command) {
    int status = 0;
    std::string text = Prefixed("| ", RunShell(command, ToUtf8(errors_.PathOf(u"text")), status));
    const Bytes errors = errors_.Read(u"text");
    text += Prefixed("! ", std::string(errors.begin(), errors.end()));
    text += status == 0 ? "" : "? " + std::to_string(status) + "\n";
    Replace(text, server_.Address(""), "$SERVER");
    Replace(text, ToUtf8(folder_.Path()), "$FOLDER/");
    return text;
}

}  // namespace velm::test
