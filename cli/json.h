#pragma once

#include <string>
#include <string_view>

#include "datetime/calendar_day.h"
#include "platform/text.h"

namespace velm {

/// Builds one JSON value, member by member. Numbers read back as the same doubles; what JSON cannot hold (an
/// infinity, a NaN) is null, and half a surrogate pair is U+FFFD.
class CVelmJson {
public:
    /// `indented` puts each element of the first two levels on a line of its own.
    explicit CVelmJson(bool indented) : indented_(indented) {}

    void BeginObject() { Begin('{'); }
    void BeginObject(std::string_view name);
    void EndObject() { End('}'); }
    void BeginArray() { Begin('['); }
    void BeginArray(std::string_view name);
    void EndArray() { End(']'); }

    /// A name and its value.
    void Text(std::string_view name, CVelmStringView text);
    void Number(std::string_view name, double value);
    void Integer(std::string_view name, std::int64_t value);
    void Boolean(std::string_view name, bool value);

    void Text(CVelmStringView text);
    void Number(double value);

    const std::string& Result() const { return json_; }

private:
    void Key(std::string_view name);
    void Begin(char bracket);
    void End(char bracket);
    void Separate();
    void BreakLine();
    void Quote(std::string_view utf8);

    std::string json_;
    bool indented_;
    int depth_ = 0;
    bool first_ = true;      ///< nothing stands in the innermost bracket yet
    bool afterKey_ = false;  ///< the value follows on the line of its name
};

/// A member with the day of the oldest rate in use: "rates": {"date": "2024-07-05"}
void WriteRatesDate(const CVelmDay& day, CVelmJson& json);

}  // namespace velm
