#pragma once

#include <memory>
#include <string_view>

#include "model/conversion_document.h"
#include "support/running_program.h"

namespace velm::test {

/// Reads a data file as a program would; null when it does not load.
std::unique_ptr<CVelmDocument> LoadFile(const RunningProgram& program, CVelmStringView name);

/// The bytes of a file of the data folder; empty when there is none.
inline Bytes ReadBytes(const RunningProgram& program, CVelmStringView name) {
    return program.Folder().Read(u"Conversions\\" + CVelmString(name));
}

/// Writes a file of the data folder as it stands.
inline void WriteBytes(const RunningProgram& program, CVelmStringView name, std::string_view bytes) {
    program.Folder().WriteText(u"Conversions\\" + CVelmString(name), bytes);
}

}  // namespace velm::test
