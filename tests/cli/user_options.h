#pragma once

#include <cstdlib>

#include "support/temporary_folder.h"

namespace velm::test {

/// Options of their own for the commands that a test runs; the user's are left alone.
class UserOptionsForTest {
public:
    UserOptionsForTest() { setenv("XDG_CONFIG_HOME", ToUtf8(folder_.Path()).c_str(), 1); }
    ~UserOptionsForTest() { unsetenv("XDG_CONFIG_HOME"); }
    UserOptionsForTest(const UserOptionsForTest&) = delete;
    UserOptionsForTest& operator=(const UserOptionsForTest&) = delete;

    Bytes Stored() const { return folder_.Read(u"velmora/options"); }

private:
    TemporaryFolder folder_;
};

}  // namespace velm::test
