#pragma once

#include <toml++/toml.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "formula/formula_context.h"
#include "platform/text.h"

namespace velm {

/// The text that is imported, as far as messages and formulas need it.
struct SourceFile {
    std::string name;          ///< as given at the terminal
    FormulaContext& formulas;  ///< evaluates the numbers that are written as formulas
};

/// Ends the command with a message that begins with the file and the line.
[[noreturn]] void FailAt(const SourceFile& file, const toml::node& node, const std::string& text);

/// One table of a source: the file's own, an item or a conversion. Any error ends the command.
class CVelmSourceTable {
public:
    /// `what` ("an item") is for messages. A key that is not among `keys` is refused. Both outlive this object, as do
    /// the file and the table.
    CVelmSourceTable(const SourceFile& file, const toml::table& table, const char* what,
                     std::span<const std::string_view> keys);

    bool Has(std::string_view key) const { return table_.contains(key); }

    /// The text of a key, empty when it is missing. RequiredText fails instead.
    CVelmString Text(std::string_view key) const;
    CVelmString RequiredText(std::string_view key) const;

    /// The texts of a key that has one or a list of them, none when it is missing.
    std::vector<CVelmString> Texts(std::string_view key) const;

    /// A text, or a number as the formula language writes it.
    CVelmString TextOrNumber(std::string_view key) const;
    double Number(std::string_view key, double otherwise) const;

    /// True is 1, false is 0, a whole number is itself.
    std::int32_t Flag(std::string_view key, std::int32_t otherwise) const;

    /// The node of an existing key.
    const toml::node& At(std::string_view key) const { return *table_.get(key); }
    const SourceFile& File() const { return file_; }
    [[noreturn]] void FailAtKey(std::string_view key, const std::string& text) const;
    [[noreturn]] void FailHere(const std::string& text) const { FailAt(file_, table_, text); }

private:
    const SourceFile& file_;
    const toml::table& table_;
    const char* what_;
};

/// A text: a TOML string, or a table of its UTF-16 units. `what` is for messages.
CVelmString ReadText(const SourceFile& file, const toml::node& node, std::string_view what);

/// A number: a TOML number, a plain decimal number as text, a formula, or "0x" and the 16 hexadecimal digits of its
/// bits.
double ReadNumber(const SourceFile& file, const toml::node& node, std::string_view what);

}  // namespace velm
