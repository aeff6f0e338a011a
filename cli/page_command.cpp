#include <fmt/format.h>

#include <cstdint>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "model/file_replacement.h"
#include "source_import.h"
#include "source_keys.h"
#include "source_page.h"

namespace velm {

namespace {

/// Where the introduction has this, the sections of the files follow.
constexpr std::string_view PLACE = "<!-- files -->";

std::int32_t KindOf(const toml::table& source) {
    return source[KEY_KIND].value_or(std::string()) == KindWord(KIND_CALCULATION) ? KIND_CALCULATION : KIND_CONVERSION;
}

/// The name that the data file of a source has: "Length" of "data/Length.toml".
CVelmString NameOfSource(const std::string& path) {
    const CVelmString name = FromUtf8(path.substr(path.find_last_of("/\\") + 1));
    return name.substr(0, name.rfind(u'.'));
}

}  // namespace

int RunPage(CommandContext& context, const std::vector<std::string>& arguments) {
    std::string introduction;
    std::string target;
    std::vector<std::string> sources;
    if (!ReadArguments(context, arguments,
                       {{"INTRO", &introduction, fmt::format("HTML; what the files say takes the place of {}", PLACE)},
                        {"OUT", &target, "The text reference to write"},
                        {"SOURCE...", &sources, "Text forms of the data files, TOML"}})) {
        return STATUS_OK;
    }
    std::string text = ReadWholeFile(context.services.files, introduction, SIZE_MAX);
    const std::size_t place = text.find(PLACE);
    if (place == std::string::npos) {
        Fail(fmt::format("there is no {} in {}", PLACE, Quoted(introduction)));
    }
    CVelmSourcePage page;
    for (const std::string& path : sources) {
        const SourceFile file{path, context.formulas};
        const toml::table source = ParseSource(file, ReadWholeFile(context.services.files, path, SIZE_MAX));
        CVelmRateDays days;
        const auto document = DocumentFromSource(file, source, KindOf(source), context.services, days);
        document->fileName = NameOfSource(path);
        page.Add(file, source, *document, days);
    }
    text.replace(place, PLACE.size(), page.Text());
    if (!ReplaceFile(context.services.files, FromUtf8(target), text)) {
        FailToWrite(FromUtf8(target));
    }
    return STATUS_OK;
}

}  // namespace velm
