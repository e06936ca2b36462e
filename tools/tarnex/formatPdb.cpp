#include "chemistry/Resource.h"
#include "formatFunctions.h"
#include "pdb/PDBread.h"
#include "pdb/PDBwrite.h"
#include "text.h"

#include <cerrno>
#include <fstream>
#include <sstream>

namespace tarnex::tool {

namespace {

/// What a format class has to say, a note for each line.
void noteMessages(std::string const& file, std::string const& messages, Console& console) {
    std::istringstream lines(messages);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line != "Successfully imported.") console.note(line.insert(0, file + ": "));
    }
}

/// The writer's messages on charges have no line ends; the first one stands for all.
void noteCharges(std::string const& file, std::string const& messages, Console& console) {
    std::string const head = "Error: Charge of atom ";
    std::size_t const first = messages.find(head);
    if (first == std::string::npos) return;
    std::size_t const second = messages.find(head, first + head.size());
    std::string const more = second == std::string::npos ? "" : " So it is with further atoms.";
    console.note(file + ": " + messages.substr(first, second - first) + more);
}

void readPdbFile(std::string const& file, Document& document, Console& console) {
    std::ostringstream messages;
    Bundle bundle;
    try {
        PDBread(&messages, &console).readPDBMolTrajectoryBundle(file.c_str(), bundle);
    } catch (Parse_Error const& error) {
        throw Failure(file, error.message);
    }
    console.throwIfInterrupted();
    if (bundle.size == 0) throw Failure(file, "no ATOM or HETATM records in it");
    noteMessages(file, messages.str(), console);
    for (McHandle<MolTrajectory> const& trajectory : bundle) {
        if (*trajectory->getTopology()->getName() == '\0') {
            trajectory->getTopology()->setName(McFilename(file.c_str()).basename());
        }
        document.bundle.append(trajectory);
    }
}

/// The class tells of no failed write, as on a full disk: then the last record is missing.
bool endsWithLastRecord(std::string const& path) {
    constexpr std::streamoff lineLength = 81;
    std::ifstream file(path, std::ios::binary);
    file.seekg(-lineLength, std::ios::end);
    std::string keyword;
    return static_cast<bool>(file >> keyword) && keyword == "END";
}

bool write(PDBwrite& pdb, MolTrajectory& trajectory, char const* path) {
    if (trajectory.getNumTimeSteps() != 1) return pdb.writePDBMolTrajectory(&trajectory, path, false);
    McHandle<Molecule> const molecule(new Molecule(trajectory.getTopology(), false));
    return trajectory.getTimeStep(0, molecule) && pdb.writePDBMolecule(molecule, path, false);
}

} // namespace

void readPdb(FileNames const& files, Document& document, Console& console) {
    for (std::string const& file : files) readPdbFile(file, document, console);
}

void writePdb(Bundle const& bundle, OutputFile const& output, Console& console) {
    MolTrajectory& trajectory = onlyTrajectory(bundle, output, "a PDB file holds");
    std::ostringstream messages;
    PDBwrite pdb(molchem::Resource::getInstance()->residueDatabase, &messages, &console);
    errno = 0;
    bool const written = write(pdb, trajectory, output.temporary().c_str());
    int const systemError = errno;
    console.throwIfInterrupted();
    if (!written) {
        std::string const reason = messages.str();
        throw Failure(output.name(), reason.empty() ? "a step cannot be read" : reason.substr(0, reason.find('\n')));
    }
    if (!endsWithLastRecord(output.temporary())) throw Failure(output.name(), systemError != 0 ? systemError : EIO);
    noteCharges(output.name(), messages.str(), console);
}

} // namespace tarnex::tool
