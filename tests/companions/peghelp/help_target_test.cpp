#include "peghelp/help_target.h"

#include <gtest/gtest.h>

namespace velm {
namespace {

std::string Parse(std::u16string_view text) {
    const HelpTarget target = ParseHelpTarget(text);
    return ToUtf8(target.page + u"|" + target.anchor);
}

TEST(HelpTarget, NamesAPageAndAPlace) {
    EXPECT_EQ(Parse(u"file:velmora.htm#main_contents"), "velmora|main_contents");
    EXPECT_EQ(Parse(u" \"FILE:Velmora.HTM\" "), "Velmora|");
    EXPECT_EQ(Parse(u"other.htm#x"), "other|x");
    EXPECT_EQ(Parse(u"#formats"), "|formats");
}

TEST(HelpTarget, NeverLeavesTheFolder) {
    for (const std::u16string_view text : {u"", u"file:", u"velmora", u"..\\secret.htm", u"C:x.htm", u"/etc/x.htm",
                                           u"http://host/x.htm", u"velmora.exe"}) {
        EXPECT_EQ(ParseHelpTarget(text).page, u"") << ToUtf8(text);
    }
}

}  // namespace
}  // namespace velm
