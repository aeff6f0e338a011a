#include <pugixml.hpp>

#include "cli_error.h"
#include "rates_table.h"

namespace velm {

RatesTable ReadXmlRates(std::string_view bytes) {
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_buffer(bytes.data(), bytes.size());
    if (!result) {
        Fail(std::string("the rates table is not XML: ") + result.description());
    }
    RatesTable table;
    const pugi::xml_node day =
        document.find_node([](const pugi::xml_node& node) { return !node.attribute("time").empty(); });
    table.date = day.attribute("time").value();
    for (const pugi::xml_node cube : day.children("Cube")) {
        AddRate(table, cube.attribute("currency").value(), cube.attribute("rate").value());
    }
    return table;
}

}  // namespace velm
