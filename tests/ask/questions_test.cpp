#include "ask/questions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "ask_folder.h"
#include "datetime/date_time.h"
#include "support/table.h"

// The table of questions: questions.txt says what its lines mean.

namespace velm::test {
namespace {

/// A number as the table writes it.
struct Expected {
    double value = 0.0;
    double tolerance = 0.0;
};

std::optional<Expected> ReadExpected(std::string text) {
    static constexpr std::size_t DIGITS_OF_EXACT = 10;
    const bool isRounded = text.starts_with("~");
    text.erase(0, isRounded ? 1 : 0);
    std::size_t end = 0;
    Expected expected;
    try {
        expected.value = std::stod(text, &end);
    } catch (const std::exception&) {
        return std::nullopt;
    }
    if (end != text.size() || text.find_first_of("0123456789") == std::string::npos) {
        return std::nullopt;
    }
    const std::size_t mantissaEnd = std::min(text.find('e'), text.size());
    const std::size_t point = text.find('.');
    const std::string mantissa = text.substr(0, mantissaEnd);
    std::size_t digits = 0;
    bool isLeading = true;
    for (const char c : mantissa) {
        isLeading = isLeading && (c == '0' || c == '-' || c == '.');
        digits += std::isdigit(static_cast<unsigned char>(c)) != 0 && !isLeading ? 1 : 0;
    }
    const int decimals = point == std::string::npos ? 0 : static_cast<int>(mantissaEnd - point - 1);
    const int exponent = mantissaEnd < text.size() ? std::stoi(text.substr(mantissaEnd + 1)) : 0;
    const double lastDigit = std::pow(10.0, exponent - decimals);
    expected.tolerance = std::fabs(expected.value) * 1e-11;
    if (isRounded) {
        expected.tolerance += 0.5 * lastDigit;
    } else if (digits >= DIGITS_OF_EXACT) {
        expected.tolerance += lastDigit;
    }
    return expected;
}

std::string Lower(const std::string& text) {
    return ToUtf8(FoldCase(FromUtf8(text)));
}

std::string WithoutCommas(const std::string& text) {
    return Replaced(text, ",", "");
}

bool IsDate(const std::string& text) {
    return text.size() >= 10 && text[4] == '-' && text[7] == '-' &&
           std::isdigit(static_cast<unsigned char>(text[0])) != 0;
}

std::string DateText(double value, bool withTime) {
    const DateTime date = DateTime::FromValue(value + 0.5 * DateTime::SECOND);
    const std::string day = Print("%04d-%02d-%02d", date.year, date.month, date.day);
    return withTime ? day + Print(" %02d:%02d", date.hour, date.minute) : day;
}

/// Whether two texts have the same words, numbers within what the expected ones allow.
bool SameParts(const std::string& expected, const std::string& shown) {
    const auto wanted = Split(expected, " ");
    const auto given = Split(WithoutCommas(shown), " ");
    if (wanted.size() != given.size()) {
        return false;
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const auto number = ReadExpected(wanted[i]);
        const auto value = ReadExpected(given[i]);
        const bool same = number && value ? std::fabs(value->value - number->value) <= number->tolerance
                                          : Lower(wanted[i]) == Lower(given[i]);
        if (!same) {
            return false;
        }
    }
    return true;
}

bool Matches(const std::string& expected, const CVelmAnswerRow& row) {
    const std::string shown = ToUtf8(row.TextWithUnit());
    if (expected.starts_with("\"")) {
        return ToUtf8(row.text) == expected.substr(1, expected.size() - 2);
    }
    if (IsDate(expected)) {
        return row.hasValue && DateText(row.value, expected.size() > 10) == expected;
    }
    const std::size_t blank = expected.find(' ');
    const auto number = ReadExpected(expected.substr(0, blank));
    const std::string unit = blank == std::string::npos ? "" : expected.substr(blank + 1);
    const bool isNumber = number && unit.find(' ') == std::string::npos;
    if (isNumber && row.hasValue && std::fabs(row.value - number->value) <= number->tolerance) {
        const bool isOutput = row.textHasUnit && unit.empty();
        return isOutput || Lower(ToUtf8(row.identifier)) == Lower(unit);
    }
    return SameParts(expected, shown);
}

bool HasRow(const std::string& part, const CVelmAnswer& answer) {
    const std::size_t equals = part.find(" = ");
    for (const CVelmAnswerRow& row : answer.rows) {
        if (equals == std::string::npos
                ? Matches(part, row)
                : ToUtf8(row.identifier) == part.substr(0, equals) && Matches(part.substr(equals + 3), row)) {
            return true;
        }
    }
    return false;
}

std::string Describe(const CVelmAnswer& answer) {
    if (!answer.ok) {
        return "refused: " + ToUtf8(answer.fault.message);
    }
    std::string text = ToUtf8(answer.understood) + " =";
    for (const CVelmAnswerRow& row : answer.rows) {
        text += " " + ToUtf8(row.TextWithUnit()) + " [" + ToUtf8(row.identifier) + Print(" %.15g", row.value) + "],";
    }
    for (const CVelmString& note : answer.notes) {
        text += "; " + ToUtf8(note);
    }
    return text;
}

void CheckAnswer(const std::string& answerText, const CVelmAnswer& answer) {
    const std::size_t semicolon = answerText.find(" ; ");
    ASSERT_TRUE(answer.ok) << Describe(answer);
    for (const std::string& part : Split(answerText.substr(0, semicolon), ", ")) {
        EXPECT_TRUE(HasRow(part, answer)) << "expected " << part << "\n" << Describe(answer);
    }
    if (semicolon == std::string::npos) {
        return;
    }
    std::string notes = ToUtf8(answer.understood);
    for (const CVelmString& note : answer.notes) {
        notes += "\n" + ToUtf8(note);
    }
    for (const std::string& word : Split(answerText.substr(semicolon + 3), ", ")) {
        EXPECT_NE(Lower(notes).find(Lower(word)), std::string::npos) << "expected a note on " << word << "\n"
                                                                     << Describe(answer);
    }
}

void CheckRefusal(const std::string& words, const CVelmAnswer& answer) {
    ASSERT_FALSE(answer.ok) << Describe(answer);
    for (const std::string& word : Split(words, "; ")) {
        EXPECT_NE(Lower(ToUtf8(answer.fault.message)).find(Lower(word)), std::string::npos)
            << "expected " << word << "\n"
            << Describe(answer);
    }
}

/// The last of two separators in a line.
std::size_t LastOf(const std::string& line, std::string& kind) {
    const std::size_t answers = line.rfind(" => ");
    const std::size_t refuses = line.rfind(" !> ");
    const bool isRefused = refuses != std::string::npos && (answers == std::string::npos || refuses > answers);
    kind = isRefused ? "!>" : "=>";
    return isRefused ? refuses : answers;
}

TEST(Questions, AreAnsweredAsByHand) {
    AskFolder folder({{"EUR", 1},
                      {"USD", 1.25},
                      {"GBP", 0.8},
                      {"JPY", 160},
                      {"CHF", 0.95},
                      {"CAD", 1.6},
                      {"AUD", 2},
                      {"CNY", 8},
                      {"INR", 100},
                      {"MXN", 20},
                      {"SEK", 10},
                      {"PLN", 4},
                      {"KRW", 1600}});
    std::ifstream file(VELMORA_TESTS "/ask/questions.txt");
    std::string line;
    int number = 0;
    int answered = 0;
    int refused = 0;
    while (std::getline(file, line)) {
        ++number;
        std::string kind;
        const std::size_t at = line.starts_with("#") || line.starts_with("[") ? std::string::npos : LastOf(line, kind);
        if (at == std::string::npos) {
            continue;
        }
        const std::string question = line.substr(0, line.find_last_not_of(' ', at) + 1);
        const std::string expected = line.substr(line.find_first_not_of(' ', at + 4));
        SCOPED_TRACE(Print("questions.txt:%d: ", number) + question);
        const CVelmAnswer answer = folder.Ask(question);
        if (kind == "=>") {
            ++answered;
            CheckAnswer(expected, answer);
        } else {
            ++refused;
            CheckRefusal(expected, answer);
        }
    }
    EXPECT_GE(answered, 300);
    EXPECT_GE(refused, 60);
}

}  // namespace
}  // namespace velm::test
