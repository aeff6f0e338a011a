#include "ui/clipboard.h"

#include <cstring>
#include <memory>
#include <type_traits>

namespace velm {
namespace {

/// The clipboard, kept from other programs for its lifetime.
class OpenedClipboard {
public:
    explicit OpenedClipboard(HWND owner) : isOpen_(OpenClipboard(owner) != FALSE) {}
    ~OpenedClipboard() {
        if (isOpen_) {
            CloseClipboard();
        }
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

    bool IsOpen() const { return isOpen_; }

private:
    bool isOpen_;
};

struct BlockDeleter {
    void operator()(HGLOBAL block) const { GlobalFree(block); }
};
using Block = std::unique_ptr<std::remove_pointer_t<HGLOBAL>, BlockDeleter>;

/// A movable block with the text and its NUL; null when memory is short.
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
    const OpenedClipboard clipboard(owner);
    if (!clipboard.IsOpen() || !EmptyClipboard()) {
        return false;
    }
    Block block = CopyToBlock(text);
    if (!block || SetClipboardData(CF_UNICODETEXT, block.get()) == nullptr) {
        return false;
    }
    static_cast<void>(block.release());  // the clipboard's now
    return true;
}

std::optional<CVelmString> GetClipboardText(HWND owner) {
    const OpenedClipboard clipboard(owner);
    const HANDLE block = clipboard.IsOpen() ? GetClipboardData(CF_UNICODETEXT) : nullptr;
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
