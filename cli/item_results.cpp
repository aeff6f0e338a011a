#include "item_results.h"

#include "json.h"
#include "number_text.h"

namespace velm {

namespace {

/// What the program's list shows of an item.
CVelmString ListText(const CVelmItem& item, const CVelmLocale& locale) {
    if (item.state == STATE_NONE) {
        return {};
    }
    return item.state == STATE_VALID ? item.format.FormatValue(item.value, locale) : u"Error";
}

void WriteItem(const CVelmItem& item, const CVelmLocale& locale, CVelmJson& json) {
    json.BeginObject();
    json.Key("id");
    json.Text(item.identifier);
    json.Key("name");
    json.Text(item.name);
    json.Key("shown");
    json.Boolean(item.shown != 0);
    json.Key("output");
    json.Boolean(item.IsOutput());
    json.Key("state");
    json.Integer(item.state);
    json.Key("value");
    if (item.state == STATE_VALID) {
        json.Number(item.value);
    } else {
        json.Null();
    }
    json.Key("text");
    json.Text(ListText(item, locale));
    json.EndObject();
}

}  // namespace

std::string ResultText(const CVelmItem& item, const CVelmLocale& locale, bool raw) {
    return raw && item.state == STATE_VALID ? RawText(item.value) : ToUtf8(ListText(item, locale));
}

std::string ResultsAsJson(const std::vector<CVelmItem*>& items, const CVelmLocale& locale, bool indented) {
    CVelmJson json(indented);
    json.BeginArray();
    for (const CVelmItem* item : items) {
        WriteItem(*item, locale, json);
    }
    json.EndArray();
    return json.Result();
}

std::vector<CVelmItem*> ShownItems(const CVelmDocument& document) {
    std::vector<CVelmItem*> shown;
    for (const auto& item : document.items) {
        if (item->shown != 0) {
            shown.push_back(item.get());
        }
    }
    return shown;
}

std::vector<CVelmItem*> AllItems(const CVelmDocument& document) {
    std::vector<CVelmItem*> all;
    all.reserve(document.items.size());
    for (const auto& item : document.items) {
        all.push_back(item.get());
    }
    return all;
}

}  // namespace velm
