#include <windows.h>

#include "platform/program_path.h"
#include "platform/wide_text_win32.h"

namespace velm {

CVelmString ProgramPath() {
    for (DWORD size = 512; size <= 65536; size *= 2) {
        std::wstring path(size, L'\0');
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), size);
        if (length < size) {
            path.resize(length);
            return FromWide(path);
        }
    }
    return {};
}

}  // namespace velm
