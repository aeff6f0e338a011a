#pragma once

#include "platform/file.h"
#include "platform/terminal.h"

namespace velm {

/// The program's folder, with a separator at the end, in one of the XDG base directories: that of the variable, or the
/// one under the home folder. Empty without either.
inline CVelmString XdgFolder(const CVelmString& variable, CVelmStringView underHome) {
    // The XDG rules say to ignore a relative path.
    if (const auto folder = EnvironmentVariable(variable); folder && folder->front() == u'/') {
        return WithSeparator(*folder) + u"velmora/";
    }
    const auto home = EnvironmentVariable(u"HOME");
    return home ? WithSeparator(*home) + CVelmString(underHome) + u"/velmora/" : CVelmString();
}

}  // namespace velm
