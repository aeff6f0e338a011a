#include <fmt/format.h>

#include <array>
#include <filesystem>
#include <iterator>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "platform/program_folder.h"
#include "platform/system_error.h"
#include "stored_options.h"
#include "suggest.h"
#include "table.h"

namespace velm {

namespace {

void SetText(CVelmSettingsText& field, CVelmStringView text) {
    if (text.size() >= std::size(field)) {
        Fail(fmt::format("{} is longer than {} characters", Quoted(ToUtf8(text)), std::size(field) - 1));
    }
    SetField(field, text);
}

std::string ShowDataFolder(const CVelmSettings& settings) {
    return ToUtf8(DataFolder(settings, ProgramFolder()));
}

/// An empty folder means the default one; any other is made absolute, so that it is valid from any directory.
void SetDataFolder(CVelmSettings& settings, const CVelmString& value) {
    if (value.empty()) {
        SetText(settings.dataFolder, value);
        return;
    }
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::absolute(std::filesystem::path(value), error);
    if (error || !std::filesystem::is_directory(folder, error)) {
        Fail("there is no folder " + Quoted(ToUtf8(value)));
    }
    SetText(settings.dataFolder, WithSeparator(folder.lexically_normal().u16string()));
}

std::string ShowUpdateUrl(const CVelmSettings& settings) {
    return ToUtf8(UpdateUrl(settings));
}

void SetUpdateUrl(CVelmSettings& settings, const CVelmString& value) {
    if (!value.empty()) {
        CheckWebAddress(value);
    }
    SetText(settings.updateUrl, value);
}

std::string ShowTwoLineRows(const CVelmSettings& settings) {
    return settings.twoLineRows != 0 ? "on" : "off";
}

void SetTwoLineRows(CVelmSettings& settings, const CVelmString& value) {
    if (value != u"on" && value != u"off") {
        Fail("two-line-rows must be on or off, not " + Quoted(ToUtf8(value)));
    }
    settings.twoLineRows = value == u"on" ? 1 : 0;
}

struct OptionRow {
    const char* name;
    std::string (*show)(const CVelmSettings& settings);
    void (*set)(CVelmSettings& settings, const CVelmString& value);
};

constexpr std::array OPTIONS{
    OptionRow{"data-folder", ShowDataFolder, SetDataFolder},
    OptionRow{"update-url", ShowUpdateUrl, SetUpdateUrl},
    OptionRow{"two-line-rows", ShowTwoLineRows, SetTwoLineRows},
};

std::vector<std::string> OptionNames() {
    std::vector<std::string> names;
    names.reserve(OPTIONS.size());
    for (const OptionRow& option : OPTIONS) {
        names.emplace_back(option.name);
    }
    return names;
}

const OptionRow& FindOption(const std::string& name) {
    for (const OptionRow& option : OPTIONS) {
        if (option.name == name) {
            return option;
        }
    }
    Fail(fmt::format("unknown option {}; {}", Quoted(name), DidYouMean(name, OptionNames())));
}

void PrintAll(CVelmOutput& out) {
    const CVelmSettings settings = LoadUserSettings();
    TableRows rows;
    for (const OptionRow& option : OPTIONS) {
        rows.push_back({option.name, option.show(settings)});
    }
    PrintTable(rows, out);
}

/// Fields never set stay empty in the record, so that their defaults may change with the program.
void Change(const OptionRow& option, const std::string& value) {
    const auto store = UserOptions();
    CVelmSettings settings;
    ReadStoredSettings(settings, *store);
    option.set(settings, FromUtf8(value));
    if (const std::int32_t status = SaveSettings(settings, *store); status != 0) {
        const CVelmString location = DefaultOptionsLocation();
        Fail(location.empty()
                 ? "cannot save the options: HOME is not set"
                 : fmt::format("cannot save the options in {}: {}", ToUtf8(location), ToUtf8(SystemErrorText(status))));
    }
}

}  // namespace

int RunOptions(CommandContext& context, const std::vector<std::string>& arguments) {
    std::vector<std::string> words;
    if (!ReadArguments(
            context, arguments,
            {{"[NAME [VALUE]]", &words, AnyOf(OptionNames()) + ", and its new value; \"\" is the default again"}})) {
        return STATUS_OK;
    }
    if (words.size() > 2) {
        FailUsage("options takes one name and one value");
    }
    if (words.empty()) {
        PrintAll(context.out);
        return STATUS_OK;
    }
    const OptionRow& option = FindOption(words.front());
    if (words.size() == 2) {
        Change(option, words.back());
    } else {
        context.out.WriteLine(OneLine(option.show(LoadUserSettings())));
    }
    return STATUS_OK;
}

}  // namespace velm
