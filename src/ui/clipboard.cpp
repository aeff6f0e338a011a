#include "ui/clipboard.h"

#include <cstring>
#include <memory>
#include <type_traits>

#include "platform/scope_exit.h"

namespace velm {
namespace {

struct BlockDeleter {
    void operator()(HGLOBAL block) const { GlobalFree(block); }
};
using Block = std::unique_ptr<std::remove_pointer_t<HGLOBAL>, BlockDeleter>;

/// A movable block with the text and its NUL; null when out of memory.
Block CopyToBlock(CVelmStringView text) {
    const std::size_t bytes = text.size() * sizeof(char16_t);
    Block block(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, bytes + sizeof(char16_t)));
    void* const target = block ? GlobalLock(block.get()) : nullptr;
    if (target == nullptr) {
        return nullptr;
    }
    std::memcpy(target, text.data(), bytes);
    GlobalUnlock(block.get());
    return block;
}

}  // namespace

bool SetClipboardText(HWND owner, CVelmStringView text) {
    if (!OpenClipboard(owner)) {
        return false;
    }
    const CVelmScopeExit closing([] { CloseClipboard(); });
    Block block = EmptyClipboard() ? CopyToBlock(text) : nullptr;
    if (!block || SetClipboardData(CF_UNICODETEXT, block.get()) == nullptr) {
        return false;
    }
    static_cast<void>(block.release());  // owned by the clipboard now
    return true;
}

std::optional<CVelmString> GetClipboardText(HWND owner) {
    if (!OpenClipboard(owner)) {
        return std::nullopt;
    }
    const CVelmScopeExit closing([] { CloseClipboard(); });
    const HANDLE block = GetClipboardData(CF_UNICODETEXT);
    const auto* const units = block != nullptr ? static_cast<const char16_t*>(GlobalLock(block)) : nullptr;
    if (units == nullptr) {
        return std::nullopt;
    }
    const CVelmStringView all(units, GlobalSize(block) / sizeof(char16_t));
    CVelmString text(all.substr(0, all.find(u'\0')));
    GlobalUnlock(block);
    return text;
}

}  // namespace velm
