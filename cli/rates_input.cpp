#include "rates_input.h"

#include <fmt/format.h>

#include <array>

#include "cli_error.h"
#include "data_file.h"
#include "platform/system_error.h"
#include "platform/terminal.h"
#include "update/rates_table.h"
#include "update/table_download.h"

namespace velm {

namespace {

std::string ReadInput() {
    std::string bytes;
    std::array<char, 1 << 16> buffer;
    // One byte above the limit is enough to detect that there are too many.
    while (bytes.size() <= MAX_TABLE_SIZE) {
        const std::int64_t count = ReadStandardInput(buffer.data(), buffer.size());
        if (count < 0) {
            Fail("cannot read standard input: " + ToUtf8(LastErrorText()));
        }
        if (count == 0) {
            break;
        }
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return bytes;
}

std::string Download(const CommandContext& context, const CVelmString& url) {
    const auto fetcher = CreateHttpFetcher();
    CVelmString error;
    std::optional<std::string> bytes;
    {
        CVelmProgressLine line;
        bytes = DownloadTable(
            *fetcher, context.services.files, url,
            [&line](const CVelmDownloadProgress& progress) {
                line.Show(progress);
                return true;
            },
            error);
    }
    if (!bytes) {
        Fail(ToUtf8(error));
    }
    return *std::move(bytes);
}

}  // namespace

CVelmProgressLine::CVelmProgressLine() : visible_(StandardErrorIsTerminal()) {}

void CVelmProgressLine::Show(const CVelmDownloadProgress& progress) {
    Show(fmt::format("Downloading {} of {}, {} bytes", progress.file, progress.fileCount, progress.bytes));
}

void CVelmProgressLine::Show(const std::string& text) {
    if (visible_ && text != shown_) {
        WriteStandardError(fmt::format("\r{:<{}}\r{}", "", shown_.size(), text));
        shown_ = text;
    }
}

std::string ReadRatesInput(const CommandContext& context, const std::string& source) {
    if (source == "-") {
        return ReadInput();
    }
    if (IsWebAddress(FromUtf8(source))) {
        return Download(context, FromUtf8(source));
    }
    return ReadWholeFile(context.services.files, source, MAX_TABLE_SIZE + 1);
}

}  // namespace velm
