#include "cli_error.h"
#include "rates_table.h"

namespace velm {

// Feeds are made on a server; the Windows build does without the library that reads XML.
RatesTable ReadXmlRates(std::string_view) {
    Fail("the Windows build reads rates tables as CSV and as plain tables, not as XML");
}

}  // namespace velm
