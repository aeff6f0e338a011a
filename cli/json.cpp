#include "json.h"

#include <fmt/format.h>

#include <cmath>

#include "number_text.h"

namespace velm {

namespace {

/// Deeper brackets stay on one line.
constexpr int INDENTED_LEVELS = 2;

}  // namespace

void CVelmJson::BreakLine() {
    if (indented_ && depth_ <= INDENTED_LEVELS) {
        json_ += '\n';
        json_.append(static_cast<std::size_t>(depth_) * 2, ' ');
    }
}

void CVelmJson::Separate() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (!first_) {
        json_ += indented_ && depth_ > INDENTED_LEVELS ? ", " : ",";
    }
    if (depth_ > 0) {
        BreakLine();
    }
    first_ = false;
}

void CVelmJson::Begin(char bracket) {
    Separate();
    json_ += bracket;
    ++depth_;
    first_ = true;
}

void CVelmJson::End(char bracket) {
    const bool isEmpty = first_;
    --depth_;
    if (!isEmpty && depth_ < INDENTED_LEVELS) {
        BreakLine();
    }
    json_ += bracket;
    first_ = false;
}

void CVelmJson::Key(std::string_view name) {
    Separate();
    Quote(name);
    json_ += indented_ ? ": " : ":";
    afterKey_ = true;
}

void CVelmJson::BeginObject(std::string_view name) {
    Key(name);
    BeginObject();
}

void CVelmJson::BeginArray(std::string_view name) {
    Key(name);
    BeginArray();
}

void CVelmJson::Text(std::string_view name, CVelmStringView text) {
    Key(name);
    Text(text);
}

void CVelmJson::Text(CVelmStringView text) {
    Separate();
    Quote(ToUtf8(text));
}

void CVelmJson::Quote(std::string_view utf8) {
    json_ += '"';
    for (const char c : utf8) {
        if (c == '"' || c == '\\') {
            json_ += '\\';
            json_ += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            json_ += fmt::format("\\u{:04x}", static_cast<unsigned>(c));
        } else {
            json_ += c;
        }
    }
    json_ += '"';
}

void CVelmJson::Number(std::string_view name, double value) {
    Key(name);
    Number(value);
}

void CVelmJson::Number(double value) {
    Separate();
    if (!std::isfinite(value)) {
        json_ += "null";
        return;
    }
    json_ += value == 0.0 && std::signbit(value) ? "-0.0" : ShortestText(value);
}

void CVelmJson::Integer(std::string_view name, std::int64_t value) {
    Key(name);
    Separate();
    json_ += std::to_string(value);
}

void CVelmJson::Boolean(std::string_view name, bool value) {
    Key(name);
    Separate();
    json_ += value ? "true" : "false";
}

void WriteRatesDate(const CVelmDay& day, CVelmJson& json) {
    json.BeginObject("rates");
    json.Text("date", DayText(day));
    json.EndObject();
}

}  // namespace velm
