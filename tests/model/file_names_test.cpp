#include "model/file_names.h"

#include <gtest/gtest.h>

namespace velm::test {
namespace {

TEST(FileNames, AreThoseThatEverySystemTakes) {
    for (const char16_t* name : {u"Length", u"Shoe sizes", u"a..b", u".hidden", u"Console", u"com", u"COM10", u"Common",
                                 u"x con", u"lpta", u"M\u00FCnzen"}) {
        EXPECT_TRUE(IsFileNameAllowed(name)) << ToUtf8(name);
    }
    for (const char16_t* name :
         {u"",       u"a/b",  u"a\\b",   u"C:x",    u"a*",   u"a?",       u"a\"",       u"a<",    u"a>",  u"a|b",
          u"a\tb",   u"a\nb", u"\u007F", u"\u0085", u"..",   u"end.",     u"end ",      u"con",   u"CON", u"con.x",
          u"con .x", u"nul ", u"Aux",    u"prn",    u"Com1", u"lpt9.cnv", u"com\u00B2", u"CONIN$"}) {
        EXPECT_FALSE(IsFileNameAllowed(name)) << ToUtf8(name);
    }
    EXPECT_FALSE(IsFileNameAllowed(CVelmString(u"a\0b", 3)));
}

}  // namespace
}  // namespace velm::test
