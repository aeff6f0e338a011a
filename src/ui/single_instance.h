#pragma once

namespace velm {

/// True for the first instance of a program in a session. For later ones, brings the first one's window, of class
/// `frameClass`, to the front, after a short wait in case it is just starting. `name` identifies the program.
bool IsOnlyInstance(const wchar_t* name, const wchar_t* frameClass);

}  // namespace velm
