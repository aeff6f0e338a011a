#pragma once

namespace velm {

/// True for the first copy of a program in a session, until it ends. For a later one the window of the first, of class
/// `frameClass`, is brought to the front, after a little wait for one that is just starting. `name` is the program's
/// own.
bool IsOnlyInstance(const wchar_t* name, const wchar_t* frameClass);

}  // namespace velm
