#pragma once

#include <histedit.h>

namespace velm {

/// The calls of the line editing library that a session uses, under names of their own.
struct EditLibrary {
    decltype(&el_init) open = nullptr;
    decltype(&el_end) close = nullptr;
    decltype(&el_source) source = nullptr;
    decltype(&el_set) set = nullptr;
    decltype(&el_wset) setWide = nullptr;
    decltype(&el_get) get = nullptr;
    decltype(&el_gets) read = nullptr;
    decltype(&el_push) push = nullptr;
    decltype(&el_line) line = nullptr;
    decltype(&el_insertstr) insert = nullptr;
    decltype(&el_deletestr) erase = nullptr;
    decltype(&history_init) openHistory = nullptr;
    decltype(&history_end) closeHistory = nullptr;
    decltype(&history) changeHistory = nullptr;
    bool ready = false;  ///< otherwise none of the calls may be made
};

/// The library, loaded for the first session and kept, so that commands without one start without it. Not ready where
/// it is not installed.
const EditLibrary& Edit();

}  // namespace velm
