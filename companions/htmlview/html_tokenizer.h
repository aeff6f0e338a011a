#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velm {

inline constexpr std::u16string_view HTML_BLANKS = u" \t\r\n\f";

/// One piece of an HTML text. Names are lower-case; attribute values have their entities decoded.
struct HtmlToken {
    enum class Kind { Text, Open, Close, End };

    Kind kind = Kind::End;
    std::u16string name;                                                ///< of a tag
    std::vector<std::pair<std::u16string, std::u16string>> attributes;  ///< of an opening tag
    std::u16string text;  ///< of a text, entities decoded, blanks as written

    /// The attribute's value, empty when the tag has none of that name.
    std::u16string_view Attribute(std::u16string_view attributeName) const;
};

/// Tokenizes HTML in linear time. Never fails: what is not a tag is text. Skips comments, declarations, scripts and
/// style sheets.
class HtmlTokenizer {
public:
    /// The text is not owned and outlives the tokenizer.
    explicit HtmlTokenizer(std::u16string_view html) : html_(html) {}

    HtmlToken Next();

private:
    bool SkipMarkup();
    bool ReadTag(HtmlToken& token);
    void ReadAttributes(HtmlToken& token, std::size_t& at, std::size_t end) const;
    std::size_t FindTagEnd(std::size_t from);
    void SkipRawText(std::u16string_view name);

    std::u16string_view html_;
    std::size_t at_ = 0;
    bool noMoreTags_ = false;  ///< no ">" is left, so that it is not looked for again at every "<"
};

/// Replaces &name; and &#n; by their characters. What is no entity stays as it is.
std::u16string DecodeEntities(std::u16string_view text);

}  // namespace velm
