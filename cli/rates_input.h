#pragma once

#include <string>

#include "command.h"
#include "platform/fetch.h"
#include "update/downloader.h"

namespace velm {

/// A progress line that is overwritten on a terminal; nothing elsewhere.
class CVelmProgressLine {
public:
    CVelmProgressLine();
    ~CVelmProgressLine() { Show(""); }
    CVelmProgressLine(const CVelmProgressLine&) = delete;
    CVelmProgressLine& operator=(const CVelmProgressLine&) = delete;

    void Show(const CVelmDownloadProgress& progress);

private:
    void Show(const std::string& text);

    bool visible_;
    std::string shown_;
};

/// The bytes of a table of rates: of a file, of standard input (-), or of a web address. Ends the command when they
/// cannot be read.
std::string ReadRatesInput(const CommandContext& context, const std::string& source);

}  // namespace velm
