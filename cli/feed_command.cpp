#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "model/file_replacement.h"
#include "rates_table.h"
#include "update/update_file.h"

namespace velm {

namespace {

constexpr const char* LIST_NAME = "convupd.txt";
constexpr std::size_t MAX_TABLE_SIZE = 16 << 20;
constexpr char16_t MAX_BYTE = 0xFF;

std::string ReadTable(CVelmFileSystem& files, const std::string& path) {
    std::string bytes = ReadWholeFile(files, path, MAX_TABLE_SIZE + 1);
    if (bytes.size() > MAX_TABLE_SIZE) {
        Fail(Quoted(path) + " is too large for a table of rates");
    }
    return bytes;
}

/// In update files each byte is one character.
std::string AsBytes(const CVelmString& text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit);
    }
    return bytes;
}

CVelmString CheckedFileName(const std::string& file) {
    CVelmString name = FromUtf8(file);
    const bool fits = std::all_of(name.begin(), name.end(), [](char16_t unit) { return unit <= MAX_BYTE; });
    if (!fits || !IsUsableFileName(name)) {
        Fail(Quoted(file) + " cannot be the name of a data file that is updated over the network");
    }
    return name;
}

std::string UpdateText(const RatesTable& table, const CVelmString& fileName) {
    std::string text = ToUtf8(UPDATE_MAGIC) + "\r\n" + ToUtf8(FILE_NAME_LINE) + AsBytes(fileName) + "\r\n";
    if (!table.date.empty()) {
        text += ToUtf8(UPDATED_LINE) + table.date + "\r\n";
    }
    for (const RatesTable::Line& line : table.lines) {
        text += fmt::format("{}\t{}\t{}\r\n", table.base, line.code, line.rate);
    }
    return text;
}

/// Percent-encodes a name for a URL.
std::string Escaped(const std::string& name) {
    std::string escaped;
    for (const char byte : name) {
        const auto code = static_cast<unsigned char>(byte);
        const bool plain = (code >= '0' && code <= '9') || ((code | 0x20) >= 'a' && (code | 0x20) <= 'z') ||
                           code == '-' || code == '.' || code == '_' || code == '~';
        escaped += plain ? std::string(1, byte) : fmt::format("%{:02X}", code);
    }
    return escaped;
}

void WriteFile(const CommandContext& context, const CVelmString& path, const std::string& text) {
    if (!ReplaceFile(context.services.files, path, text)) {
        FailToWrite(path);
    }
    context.out.WriteLine(OneLine(fmt::format("{}: {} bytes", ToUtf8(path), text.size())));
}

std::string CheckedBase(std::string url) {
    CheckHttp(FromUtf8(url));
    url.erase(url.find_last_not_of('/') + 1);
    return url;
}

}  // namespace

int RunFeed(CommandContext& context, const std::vector<std::string>& arguments) {
    std::string rates;
    std::string baseUrl;
    std::string folder;
    std::string file = "Currency";
    if (!ReadArguments(context, arguments,
                       {{"--rates RATES", &rates, "Table of rates: the central bank's XML or CSV, or CODE RATE lines"},
                        {"--base-url URL", &baseUrl, "Address under which the files will be served"},
                        {"--out DIR", &folder, "Folder that the files are written to"},
                        {"--file NAME", &file, "Data file that the rates are for (Currency)"}})) {
        return STATUS_OK;
    }
    if (rates.empty() || baseUrl.empty() || folder.empty()) {
        FailUsage("feed needs --rates, --base-url and --out");
    }
    const CVelmString fileName = CheckedFileName(file);
    const std::string base = CheckedBase(baseUrl);
    const RatesTable table = ReadRates(ReadTable(context.services.files, rates));
    std::error_code error;
    const CVelmString out = WithSeparator(FromUtf8(folder));
    std::filesystem::create_directories(std::filesystem::path(out), error);

    // Written last, so that the list never names a missing file.
    const std::string page = file + ".upd.txt";
    WriteFile(context, out + FromUtf8(page), UpdateText(table, fileName));
    WriteFile(context, out + FromUtf8(LIST_NAME),
              fmt::format("{}\r\n{}/{}\r\n", ToUtf8(LIST_MAGIC), base, Escaped(page)));
    return STATUS_OK;
}

}  // namespace velm
