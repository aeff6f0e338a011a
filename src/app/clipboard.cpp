#include "app/clipboard.h"

#include <cstring>

namespace velm {
namespace {

/// A movable block with the text and its NUL, which the clipboard takes over; null when memory is short.
HGLOBAL CopyToGlobal(CVelmStringView text) {
    const std::size_t bytes = text.size() * sizeof(char16_t);
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, bytes + sizeof(char16_t));
    void* const target = block != nullptr ? GlobalLock(block) : nullptr;
    if (target == nullptr) {
        GlobalFree(block);
        return nullptr;
    }
    std::memcpy(target, text.data(), bytes);
    GlobalUnlock(block);
    return block;
}

}  // namespace

bool SetClipboardText(HWND owner, CVelmStringView text) {
    if (!OpenClipboard(owner)) {
        return false;
    }
    const HGLOBAL block = EmptyClipboard() ? CopyToGlobal(text) : nullptr;
    const bool set = block != nullptr && SetClipboardData(CF_UNICODETEXT, block) != nullptr;
    if (!set) {
        GlobalFree(block);
    }
    CloseClipboard();
    return set;
}

std::optional<CVelmString> GetClipboardText(HWND owner) {
    if (!OpenClipboard(owner)) {
        return std::nullopt;
    }
    std::optional<CVelmString> text;
    const HANDLE block = GetClipboardData(CF_UNICODETEXT);
    const auto* const units = block != nullptr ? static_cast<const char16_t*>(GlobalLock(block)) : nullptr;
    if (units != nullptr) {
        const CVelmStringView all(units, GlobalSize(block) / sizeof(char16_t));
        text = all.substr(0, all.find(u'\0'));
        GlobalUnlock(block);
    }
    CloseClipboard();
    return text;
}

}  // namespace velm
