#include "item_results.h"

#include <algorithm>
#include <cmath>

#include "json.h"
#include "number_text.h"
#include "table.h"

namespace velm {

namespace {

void WriteItem(const CVelmItem& item, const CVelmLocale& locale, const CVelmItemDays& days, CVelmJson& json) {
    json.BeginObject();
    json.Text("id", item.identifier);
    json.Text("name", item.name);
    json.Boolean("shown", item.shown != 0);
    json.Boolean("output", item.IsOutput());
    json.Integer("state", item.state);
    json.Number("value", item.state == STATE_VALID ? item.value : NAN);
    json.Text("text", item.ValueInList(locale));
    if (const auto day = days.find(&item); day != days.end()) {
        WriteRatesDate(day->second, json);
    }
    json.EndObject();
}

}  // namespace

std::string ResultText(const CVelmItem& item, const CVelmLocale& locale, bool raw) {
    return raw && item.state == STATE_VALID ? RawText(item.value) : ToUtf8(item.ValueInList(locale));
}

void PrintResults(const std::vector<CVelmItem*>& items, const std::vector<const CVelmItem*>& given,
                  const CVelmLocale& locale, bool raw, CVelmOutput& out) {
    TableRows rows;
    for (const CVelmItem* item : items) {
        const bool isGiven = std::find(given.begin(), given.end(), item) != given.end();
        rows.push_back({(isGiven ? "* " : "  ") + ToUtf8(item->name), ResultText(*item, locale, raw)});
    }
    PrintTable(rows, out);
}

std::string ResultsAsJson(const std::vector<CVelmItem*>& items, const CVelmLocale& locale, bool indented,
                          const CVelmItemDays& days) {
    CVelmJson json(indented);
    json.BeginArray();
    for (const CVelmItem* item : items) {
        WriteItem(*item, locale, days, json);
    }
    json.EndArray();
    return json.Result();
}

std::vector<CVelmItem*> ItemsOf(const CVelmDocument& document, bool withHidden) {
    std::vector<CVelmItem*> items;
    for (const auto& item : document.items) {
        if (withHidden || item->shown != 0) {
            items.push_back(item.get());
        }
    }
    return items;
}

}  // namespace velm
