#include "source_words.h"

#include <fmt/format.h>

#include "ask/quantity.h"
#include "ask/unit_index.h"
#include "cli_error.h"
#include "source_keys.h"

namespace velm {

namespace {

using List = std::vector<CVelmString>;

List ReadList(const CVelmSourceTable& table, std::string_view key) {
    List list;
    if (!table.Has(key)) {
        return list;
    }
    const auto* nodes = table.At(key).as_array();
    if (nodes == nullptr) {
        table.FailAtKey(key, fmt::format("{} must be a list of texts", key));
    }
    for (const toml::node& node : *nodes) {
        list.push_back(ReadText(table.File(), node, "a word"));
        if (list.back().empty() || list.back().find_first_of(u",\n") != CVelmString::npos) {
            table.FailAtKey(key, "a word must not be empty or have a comma in it");
        }
    }
    return list;
}

CVelmItemWords ReadItemWords(const CVelmSourceTable& table) {
    CVelmItemWords words;
    words.item = table.Has(KEY_ID) ? table.Text(KEY_ID) : table.Text(KEY_NAME);
    words.first = ReadList(table, KEY_PREFERRED);
    words.words = words.first;
    for (CVelmString& alias : ReadList(table, KEY_ALIASES)) {
        words.words.push_back(std::move(alias));
    }
    words.unit = table.Text(KEY_UNIT);
    return words;
}

}  // namespace

CVelmFileWords WordsFromSource(const SourceFile& file, std::string_view text, const CVelmString& name) {
    const toml::parse_result source = toml::parse(text);
    if (!source) {
        Fail(fmt::format("{}:{}: {}", file.name, source.error().source().begin.line, source.error().description()));
    }
    const CVelmSourceTable table(file, source.table(), "a data file", FILE_KEYS);
    CVelmFileWords words;
    words.file = name;
    words.called = ReadList(table, KEY_CALLED);
    words.quantity = table.Text(KEY_QUANTITY);
    words.dimension = table.Text(KEY_DIMENSION);
    if (!words.dimension.empty() && words.dimension != DATE_DIMENSION && !ParseDimension(words.dimension)) {
        table.FailAtKey(KEY_DIMENSION, "a dimension is a product of powers, such as \"length^2*mass/time^3\"");
    }
    words.coherent = table.Text(KEY_COHERENT);
    words.results = ReadList(table, KEY_RESULTS);
    words.prefixed = ReadList(table, KEY_PREFIXES);
    words.largePrefixed = ReadList(table, KEY_LARGE_PREFIXES);
    words.months = table.Text(KEY_MONTHS);
    words.years = table.Text(KEY_YEARS);
    words.isSecondary = table.Flag(KEY_SECONDARY, 0) != 0;
    if (const auto* items = table.Has(KEY_ITEM) ? table.At(KEY_ITEM).as_array() : nullptr) {
        for (const toml::node& node : *items) {
            if (const auto* item = node.as_table()) {
                CVelmItemWords entry = ReadItemWords(CVelmSourceTable(file, *item, "an item", ITEM_KEYS));
                if (!entry.words.empty() || !entry.unit.empty()) {
                    words.items.push_back(std::move(entry));
                }
            }
        }
    }
    return words;
}

}  // namespace velm
