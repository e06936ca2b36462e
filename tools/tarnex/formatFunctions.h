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
void readGro(FileNames const& files, Document& document, Console& console);
void writeGro(Bundle const& bundle, OutputFile const& output, Console& console);
void readTrr(FileNames const& files, Document& document, Console& console);
void writeTrr(Bundle const& bundle, OutputFile const& output, Console& console);
void readTrrSingle(FileNames const& files, Document& document, Console& console);
void writeTrrSingle(Bundle const& bundle, OutputFile const& output, Console& console);

void readXyz(FileNames const& files, Document& document, Console& console);
void writeXyz(Bundle const& bundle, OutputFile const& output, Console& console);

void readVde(FileNames const& files, Document& document, Console& console);
void writeVde(Bundle const& bundle, OutputFile& output, Console& console);

void readBundleList(FileNames const& files, Document& document, Console& console);

void readMol2(FileNames const& files, Document& document, Console& console);
void writeMol2(Bundle const& bundle, OutputFile const& output, Console& console);

void readUniChem(FileNames const& files, Document& document, Console& console);
void writeUniChem(Bundle const& bundle, OutputFile const& output, Console& console);

void readQlt(FileNames const& files, Document& document, Console& console);
void writeQlt(Bundle const& bundle, OutputFile const& output, Console& console);

} // namespace tarnex::tool
