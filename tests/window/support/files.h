#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/document.h"
#include "support/running_program.h"

namespace velm::test {

/// Writes a conversion file of the given title and file name into the program's data folder: units of which each
/// one after the first is `factor` times the first.
struct UnitFactor {
    CVelmStringView name;
    double factor = 1.0;
    CVelmStringView identifier = {};
};
void SaveConversionFile(const RunningProgram& program, CVelmStringView title, const std::vector<UnitFactor>& units);

/// Writes a calculation file: items with a formula are outputs, the others inputs.
struct CalculationItem {
    CVelmStringView name;
    CVelmStringView identifier;
    CVelmStringView formula = {};
};
void SaveCalculationFile(const RunningProgram& program, CVelmStringView title,
                         const std::vector<CalculationItem>& items);

/// Reads a data file as a program would; null when it does not load.
std::unique_ptr<CVelmDocument> LoadFile(const RunningProgram& program, CVelmStringView name);

/// The bytes of a file of the data folder; empty when there is none.
Bytes ReadBytes(const RunningProgram& program, CVelmStringView name);

/// Writes a file of the data folder as it stands.
void WriteBytes(const RunningProgram& program, CVelmStringView name, std::string_view bytes);

}  // namespace velm::test
