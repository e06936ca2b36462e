#pragma once

#include "Format.h"

/// The functions that the rows of the table of formats name, a source file for each family of formats.
namespace tarnex::tool {

void readSdf(FileNames const& files, Document& document, Console& console);
void writeSdf(Bundle const& bundle, OutputFile const& output, Console& console);

void readPdb(FileNames const& files, Document& document, Console& console);
void writePdb(Bundle const& bundle, OutputFile const& output, Console& console);

void readAmber(FileNames const& files, Document& document, Console& console);
void readCharmm(FileNames const& files, Document& document, Console& console);

void readMol2(FileNames const& files, Document& document, Console& console);
void writeMol2(Bundle const& bundle, OutputFile const& output, Console& console);

void readUniChem(FileNames const& files, Document& document, Console& console);
void writeUniChem(Bundle const& bundle, OutputFile const& output, Console& console);

void readQlt(FileNames const& files, Document& document, Console& console);
void writeQlt(Bundle const& bundle, OutputFile const& output, Console& console);

} // namespace tarnex::tool
