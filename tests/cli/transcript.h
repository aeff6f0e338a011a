#pragma once

#include <string>

#include "support/http_server.h"
#include "support/temporary_folder.h"

namespace velm::test {

/// Replays sessions at a command line: "$ command", continued in lines of "> ", then what it wrote to standard output
/// ("| "), to standard error ("! ") and its status when that is not 0 ("? "). Any other line is a remark.
/// The commands run in a folder of their own. $SERVER is a server of that folder's files, $SHIPPED the shipped data.
class Transcript {
public:
    /// A folder that holds these options and data alone, or nothing and the data beside the program.
    explicit Transcript(bool ownData);
    ~Transcript();
    Transcript(const Transcript&) = delete;
    Transcript& operator=(const Transcript&) = delete;

    /// The session as it would read now.
    std::string Replay(const std::string& session);

    const TemporaryFolder& Folder() const { return folder_; }

private:
    std::string Run(const std::string& command);

    TemporaryFolder folder_;
    TemporaryFolder errors_;
    HttpServer server_;
};

/// What commands of the system's shell write to standard output, and their status. What they write to standard error
/// goes to the file.
std::string RunShell(const std::string& commands, const std::string& errorFile, int& status);
void SetVariable(const char* name, const std::string& value);

}  // namespace velm::test
