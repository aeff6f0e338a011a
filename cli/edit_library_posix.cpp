#include "edit_library_posix.h"

#include <dlfcn.h>

#include <type_traits>

namespace velm {

namespace {

EditLibrary Load() {
    EditLibrary calls;
    void* library = dlopen("libedit.so.2", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return calls;
    }
    const auto find = [library](auto& call, const char* name) {
        call = reinterpret_cast<std::remove_reference_t<decltype(call)>>(dlsym(library, name));
        return call != nullptr;
    };
    calls.ready = find(calls.open, "el_init") && find(calls.close, "el_end") && find(calls.source, "el_source") &&
                  find(calls.set, "el_set") && find(calls.setWide, "el_wset") && find(calls.get, "el_get") &&
                  find(calls.read, "el_gets") && find(calls.push, "el_push") && find(calls.line, "el_line") &&
                  find(calls.insert, "el_insertstr") && find(calls.erase, "el_deletestr") &&
                  find(calls.openHistory, "history_init") && find(calls.closeHistory, "history_end") &&
                  find(calls.changeHistory, "history");
    return calls;
}

}  // namespace

const EditLibrary& Edit() {
    static const EditLibrary library = Load();
    return library;
}

}  // namespace velm
