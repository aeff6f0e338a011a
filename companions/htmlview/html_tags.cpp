#include "htmlview/html_tags.h"

#include <algorithm>
#include <array>

namespace velm {

namespace {

struct TagName {
    std::u16string_view name;
    HtmlTag tag;
};

// Sorted by name: looked up by bisection. What stands here is all that a page can use.
constexpr auto TAGS = std::to_array<TagName>({
    {u"a", HtmlTag::Link},           {u"address", HtmlTag::Section}, {u"article", HtmlTag::Section},
    {u"b", HtmlTag::Bold},           {u"big", HtmlTag::Bold},        {u"blockquote", HtmlTag::Quote},
    {u"body", HtmlTag::Section},     {u"br", HtmlTag::Break},        {u"caption", HtmlTag::Section},
    {u"center", HtmlTag::Center},    {u"cite", HtmlTag::Italic},     {u"code", HtmlTag::Fixed},
    {u"dd", HtmlTag::Definition},    {u"dfn", HtmlTag::Italic},      {u"div", HtmlTag::Section},
    {u"dl", HtmlTag::Section},       {u"dt", HtmlTag::Section},      {u"em", HtmlTag::Italic},
    {u"font", HtmlTag::Font},        {u"h1", HtmlTag::Heading},      {u"h2", HtmlTag::Heading},
    {u"h3", HtmlTag::Heading},       {u"h4", HtmlTag::Heading},      {u"h5", HtmlTag::Heading},
    {u"h6", HtmlTag::Heading},       {u"hr", HtmlTag::Rule},         {u"i", HtmlTag::Italic},
    {u"ins", HtmlTag::Underline},    {u"kbd", HtmlTag::Fixed},       {u"li", HtmlTag::Entry},
    {u"ol", HtmlTag::OrderedList},   {u"option", HtmlTag::Hidden},   {u"p", HtmlTag::Paragraph},
    {u"pre", HtmlTag::Preformatted}, {u"samp", HtmlTag::Fixed},      {u"section", HtmlTag::Section},
    {u"span", HtmlTag::Font},        {u"strong", HtmlTag::Bold},     {u"sub", HtmlTag::Subscript},
    {u"sup", HtmlTag::Superscript},  {u"table", HtmlTag::Table},     {u"td", HtmlTag::Cell},
    {u"th", HtmlTag::HeaderCell},    {u"title", HtmlTag::Hidden},    {u"tr", HtmlTag::Row},
    {u"tt", HtmlTag::Fixed},         {u"u", HtmlTag::Underline},     {u"ul", HtmlTag::List},
    {u"var", HtmlTag::Italic},
});

static_assert(std::ranges::is_sorted(TAGS, {}, &TagName::name));

}  // namespace

HtmlTag FindTag(std::u16string_view name) {
    const auto found = std::ranges::lower_bound(TAGS, name, {}, &TagName::name);
    return found != TAGS.end() && found->name == name ? found->tag : HtmlTag::None;
}

}  // namespace velm
