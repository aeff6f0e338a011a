#pragma once

#include <string_view>

namespace velm {

/// What a tag does to the page; tags that do the same share one.
enum class HtmlTag {
    None,
    Link,
    Bold,
    Break,
    Quote,
    Center,
    Fixed,
    Paragraph,
    Definition,
    Hidden,
    Italic,
    Font,
    Heading,
    Rule,
    Entry,
    OrderedList,
    List,
    Preformatted,
    Subscript,
    Superscript,
    Table,
    Cell,
    HeaderCell,
    Row,
    Underline,
    Section,
};

/// By the name in lower case; HtmlTag::None for a name that no page can use.
HtmlTag FindTag(std::u16string_view name);

}  // namespace velm
