#include "support/holdings.h"

#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <ostream>
#include <vector>

namespace velm::test {
namespace {

constexpr ULONG_PTR HANDLE_SLOTS = 0x10000;

template <typename Function>
Function SystemCall(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
}

/// An entry of the table that every process finds in its environment block.
struct GdiEntry {
    void* object;
    ULONG process;
    WORD unique;
    WORD type;
    void* userPointer;
};
constexpr std::size_t GDI_TABLE_PLACE = 0xF8;

int CountGdi() {
    const auto block = SystemCall<const std::byte*(NTAPI*)()>("RtlGetCurrentPeb")();
    const auto* const table = *reinterpret_cast<const GdiEntry* const*>(block + GDI_TABLE_PLACE);
    return static_cast<int>(
        std::count_if(table, table + HANDLE_SLOTS, [](const GdiEntry& entry) { return entry.type != 0; }));
}

int CountWindowsAndMenus() {
    int count = 0;
    for (ULONG_PTR slot = 0; slot < HANDLE_SLOTS; slot += 2) {  // two numbers name one slot
        DWORD process = 0;
        GetWindowThreadProcessId(reinterpret_cast<HWND>(slot), &process);
        count += process == GetCurrentProcessId() || IsMenu(reinterpret_cast<HMENU>(slot)) ? 1 : 0;
    }
    return count;
}

/// What the system lists of every open handle of every process.
struct HandleEntry {
    void* object;
    ULONG_PTR process;
    ULONG_PTR handle;
    ULONG access;
    USHORT unused[2];
    ULONG attributes[2];
};
struct HandleList {
    ULONG_PTR count;
    ULONG_PTR unused;
    HandleEntry entries[1];
};

int CountHandles() {
    using Query = LONG(NTAPI*)(int, void*, ULONG, ULONG*);
    constexpr int EXTENDED_HANDLES = 64;
    const auto query = SystemCall<Query>("NtQuerySystemInformation");
    std::vector<HandleEntry> buffer(4096);
    while (query(EXTENDED_HANDLES, buffer.data(), static_cast<ULONG>(buffer.size() * sizeof(HandleEntry)), nullptr) !=
           0) {
        buffer.resize(buffer.size() * 2);
    }
    const auto& list = *reinterpret_cast<const HandleList*>(buffer.data());
    return static_cast<int>(std::count_if(list.entries, list.entries + list.count, [](const HandleEntry& entry) {
        return entry.process == GetCurrentProcessId();
    }));
}

/// What the system makes when it is first needed and then keeps: Wine's device contexts for windows to come, the
/// cursors and icons that everybody shares, the brushes of its colors. All of it is made here, so that it does not
/// count as growth.
void FillSystemCaches() {
    std::array<HDC, 64> contexts{};
    for (HDC& context : contexts) {
        context = GetDC(nullptr);
    }
    for (const HDC context : contexts) {
        ReleaseDC(nullptr, context);
    }
    constexpr WORD FIRST_CURSOR = 32512;
    constexpr WORD LAST_CURSOR = 32651;
    for (WORD id = FIRST_CURSOR; id <= LAST_CURSOR; ++id) {
        LoadCursorW(nullptr, MAKEINTRESOURCEW(id));
        LoadIconW(nullptr, MAKEINTRESOURCEW(id));
    }
    for (int color = 0; color <= COLOR_MENUBAR; ++color) {
        GetSysColorBrush(color);
    }
}

}  // namespace

Holdings CountHoldings() {
    FillSystemCaches();
    Holdings holdings{CountGdi(), CountWindowsAndMenus(), CountHandles(), 0};
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory));
    holdings.workingSet = memory.WorkingSetSize;
    return holdings;
}

std::ostream& operator<<(std::ostream& out, const Holdings& holdings) {
    return out << holdings.gdi << " GDI, " << holdings.user << " USER, " << holdings.handles << " handles, "
               << holdings.workingSet / 1024 << " KiB";
}

}  // namespace velm::test
