#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "model/file_replacement.h"
#include "rates_input.h"
#include "update/rates_table.h"
#include "update/table_merge.h"
#include "update/update_file.h"

namespace velm {

namespace {

constexpr const char* LIST_NAME = "convupd.txt";
constexpr char16_t MAX_BYTE = 0xFF;

CVelmRatesTable ReadTable(const CommandContext& context, const std::string& source) {
    CVelmString error;
    const auto table = ReadRatesTable(ReadRatesInput(context, source), error);
    if (!table) {
        Fail(ToUtf8(error));
    }
    return *table;
}

/// Whether an update file can hold the text, each byte of which is one character.
bool FitsInBytes(const CVelmString& text) {
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit <= MAX_BYTE; });
}

std::string AsBytes(const CVelmString& text) {
    if (!FitsInBytes(text)) {
        Fail(Quoted(ToUtf8(text)) + " has characters that an update file cannot hold");
    }
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit);
    }
    return bytes;
}

CVelmString CheckedFileName(const std::string& file) {
    CVelmString name = FromUtf8(file);
    if (!FitsInBytes(name) || !IsUsableFileName(name)) {
        Fail(Quoted(file) + " cannot be the name of a data file that is updated over the network");
    }
    return name;
}

/// Digits and at most one point, as the formulas of update files read them.
std::string PlainNumber(double value) {
    std::array<char, 512> text;
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    return {text.data(), result.ptr};
}

std::string UpdateText(const CVelmRatesTable& table, const CVelmString& fileName) {
    std::string text = ToUtf8(UPDATE_MAGIC) + "\r\n" + ToUtf8(FILE_NAME_LINE) + AsBytes(fileName) + "\r\n";
    if (table.day) {
        text += ToUtf8(UPDATED_LINE) + ToUtf8(DayText(*table.day)) + "\r\n";
    }
    const std::string base = AsBytes(table.base);
    for (const CVelmTableRate& rate : table.rates) {
        text += fmt::format("{}\t{}\t{}\r\n", base, AsBytes(rate.code), PlainNumber(rate.value));
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
    std::string file = ToUtf8(RATES_FILE);
    if (!ReadArguments(context, arguments,
                       {{"--rates RATES", &rates, "Table of rates as for update: a file, - or a web address"},
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
    const std::string update = UpdateText(ReadTable(context, rates), fileName);
    std::error_code error;
    const CVelmString out = WithSeparator(FromUtf8(folder));
    std::filesystem::create_directories(std::filesystem::path(out), error);

    // Written last, so that the list never names a missing file.
    const std::string page = file + ".upd.txt";
    WriteFile(context, out + FromUtf8(page), update);
    WriteFile(context, out + FromUtf8(LIST_NAME),
              fmt::format("{}\r\n{}/{}\r\n", ToUtf8(LIST_MAGIC), base, Escaped(page)));
    return STATUS_OK;
}

}  // namespace velm
