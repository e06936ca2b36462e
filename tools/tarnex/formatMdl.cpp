#include "TextOutput.h"
#include "formatFunctions.h"
#include "foundation/McFilename.h"
#include "mdl/MDLIO.h"
#include "model/MolTrajectoryMem.h"
#include "text.h"

#include <cerrno>
#include <filesystem>
#include <sstream>

namespace tarnex::tool {

namespace {

/// As MDLIO names the records of a file: by the data item "name", if that is text, or else by file and number.
std::string nameOfRecord(MolTopology const& topology, std::string const& file, std::int64_t number) {
    if (auto const* name = dynamic_cast<MolDataString const*>(topology.getData("name"))) return name->getValue().data;
    return std::string(McFilename(file.c_str()).basename()) + "-" + std::to_string(number);
}

/// Reads record by record: MDLIO alone takes a malformed record for the end of the file and does not tell. It hears of
/// no progress, since a record is short and the place in the file tells more.
void readSdfFile(std::string const& file, Document& document, Console& console) {
    lengthizer scanner(file.c_str());
    if (!scanner.isOpen()) throw Failure(file, errno);
    auto const fileSize = static_cast<float>(std::filesystem::file_size(file));
    MDLIO mdl(nullptr, nullptr);
    for (std::int64_t number = 1;; ++number) {
        console.throwIfInterrupted();
        long const recordStart = scanner.tell();
        console.setProgressValue(static_cast<float>(recordStart) / fileSize);
        auto* topology = new MolTopology;
        auto* molecule = new Molecule(topology, true);
        try {
            mdl.readMolecule(molecule, topology, scanner, file.c_str());
        } catch (Parse_Error const& error) {
            std::string const place = "record " + std::to_string(number) + ", line " +
                                      std::to_string(scanner.lineNumber) + ": " + error.message;
            if (number == 1) throw Failure(file, hasTextFrom(file, 0) ? place : "the file is empty");
            if (hasTextFrom(file, recordStart)) document.damage.emplace_back(file, place);
            return;
        }
        document.bundle.append(new MolTrajectoryMem(molecule, 1));
        delete molecule;
        topology->setName(nameOfRecord(*topology, file, number).c_str());
    }
}

/// The first line of a record, for topologies that have no data item "name".
std::string titleOf(MolTopology const& topology, OutputFile const& output) {
    std::string const name = topology.getName();
    if (name.empty()) return McFilename(output.name().c_str()).basename();
    return name.substr(0, name.find_first_of("\r\n"));
}

/// The format's atom lines have codes for charges from -3 to +3. MDLIO goes on with the same rule, for +4 with the code
/// of no charge.
bool hasUnusualCharge(MolTopology& topology) {
    MtIntegerAttribute const* charges = topology.getAtomFormalChargeAttribute(MolTopology::FIND);
    if (!charges) return false;
    for (int atom = 0; atom < topology.levels[0]->groups.size; ++atom) {
        if (charges->getValue(atom) > 3 || charges->getValue(atom) < -3) return true;
    }
    return false;
}

/// The records of the output. MDLIO hears of no progress: an interrupted record would take the molecule with it.
class RecordFile {
public:
    explicit RecordFile(OutputFile const& outputFile) : output(outputFile), file(outputFile) {}

    void write(Molecule& molecule, std::string const& title) {
        std::string reason;
        try {
            if (mdl.writeMDLMolecule(&molecule, title.c_str(), file.text())) {
                file.text().write("$$$$\n");
                file.requireWritten();
                return;
            }
            reason = messages.str();
        } catch (...) {
            reason = reasonOfCurrentException();
        }
        if (reason.ends_with("\n")) reason.pop_back();
        throw Failure(output.name(), "molecule \"" + title + "\": " + reason);
    }

    void finish() { file.finish(); }

private:
    OutputFile const& output;
    TextOutput file;
    std::ostringstream messages;
    MDLIO mdl{&messages, nullptr};
};

} // namespace

void readSdf(FileNames const& files, Document& document, Console& console) {
    for (std::string const& file : files) readSdfFile(file, document, console);
}

void writeSdf(Bundle const& bundle, OutputFile const& output, Console& console) {
    RecordFile records(output);
    bool unusualCharges = false;
    for (McHandle<MolTrajectory> const& trajectory : bundle) {
        MolTopology& topology = *trajectory->getTopology();
        McHandle<Molecule> const molecule(new Molecule(&topology, false));
        std::string const title = titleOf(topology, output);
        for (int step = 0; step < trajectory->getNumTimeSteps(); ++step) {
            if (!trajectory->getTimeStep(step, molecule)) {
                throw Failure(output.name(), "step " + std::to_string(step) + " of \"" + title + "\" cannot be had");
            }
            records.write(*molecule, title);
        }
        unusualCharges = unusualCharges || hasUnusualCharge(topology);
    }
    records.finish();
    if (unusualCharges)
        console.note("charges beyond +3 and -3 are written by codes that are not of the format; +4 gets lost");
}

} // namespace tarnex::tool
