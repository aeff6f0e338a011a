#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/temporary_folder.h"

namespace velm::test {

using Words = std::vector<std::string>;

struct ProcessResult {
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs the velmora command with these arguments and this standard input to its end.
ProcessResult RunVelmora(const Words& arguments, std::string_view input = {});

/// Standard output of a run that succeeds in silence; of any other "status S: " and what it wrote.
std::string Out(const Words& arguments, std::string_view input = {});

/// "S: " and the one line on standard error of a run that fails with status S and prints nothing; of any other
/// "status S: " and what it wrote.
std::string Refusal(const Words& arguments);

/// Data files made of text sources, used as the data folder: Out({"--data", folder, ...}).
class DataSources {
public:
    /// Each file's name with extension.
    void Add(const std::string& name, std::string_view source);

    /// The arguments behind "--data" and the folder.
    Words With(Words arguments) const;

    /// Path of a file in the folder, UTF-8.
    std::string PathOf(const std::string& name) const;
    const TemporaryFolder& Folder() const { return folder_; }

private:
    TemporaryFolder folder_;
};

}  // namespace velm::test
