#include "chemistry/ElementTable.h"
#include "foundation/Progress.h"
#include "foundation/report.h"
#include "model/MolTrajectory.h"
#include "model/NumberedBond.h"
#include "model/members.h"
#include "model/molInfo.h"
#include "tripos/TriposIO.h"
#include "tripos/records.h"

#include <cstring>
#include <ctime>
#include <string>

namespace {

using tarnex::Progress;

/// Names of the attributes of the atoms that feed the columns; each may be null.
struct AttributeNames {
    char const* charge;
    char const* atomName;
    char const* atomType;
};

/// The first attribute of this name if it is of this kind, or null.
template <class Attribute>
Attribute const* attributeNamed(MtGroupingLevel const& level, char const* name) {
    if (!name) return nullptr;
    for (MtGroupAttribute const* attribute : level.attributes) {
        if (std::strcmp(attribute->getName(), name) == 0) return dynamic_cast<Attribute const*>(attribute);
    }
    return nullptr;
}

/// Writes one molecule.
class MoleculeWriter {
public:
    MoleculeWriter(MolObject& moleculeObject, MolTopology& moleculeTopology, AttributeNames const& names,
                   writer& fileOut, Progress const& fileProgress)
        : object(moleculeObject), topology(moleculeTopology), info(&topology), out(fileOut), progress(fileProgress),
          numAtoms(static_cast<int>(info.atoms->groups.size)), numBonds(static_cast<int>(info.bonds->groups.size)),
          charges(attributeNamed<MtFloatAttribute>(*info.atoms, names.charge)),
          atomNames(attributeNamed<MtStringAttribute>(*info.atoms, names.atomName)),
          atomTypes(attributeNamed<MtStringAttribute>(*info.atoms, names.atomType)),
          columns{info.hasResidues && (info.residueType || info.residueName), charges != nullptr} {
        object.getCoordinates(0, coords);
        if (columns.substructure) residueOfAtom = tarnex::ownersOfMembers(topology, info.residuesIx, 0);
    }

    /// False if the user stopped the work.
    bool write(char const* filename) {
        writeHeader(filename);
        writeAtoms();
        if (!writeBonds()) return false;
        out.write("\n\n");
        return true;
    }

private:
    void writeHeader(char const* filename);
    std::string name(char const* filename) const;
    tarnex::tripos::TypeLines::MoleculeType moleculeType() const;
    void writeAtoms();
    tarnex::tripos::AtomLine lineOf(int atom) const;
    char const* residueText(int residue) const;
    bool writeBonds();

    /// The part of the work that is done in front of a line of atoms or bonds.
    float part(int linesDone) const {
        return static_cast<float>(linesDone) / static_cast<float>(std::int64_t{numAtoms} + numBonds);
    }

    MolObject& object;
    MolTopology& topology;
    molInfo info;
    writer& out;
    Progress const& progress;
    molchem::ElementTable const& elements = tarnex::elementTable();
    int numAtoms;
    int numBonds;
    MtFloatAttribute const* charges;
    MtStringAttribute const* atomNames;
    MtStringAttribute const* atomTypes;
    tarnex::tripos::AtomColumns columns;
    McDArray<McVec3f> coords;
    McDArray<int> residueOfAtom;
};

void MoleculeWriter::writeHeader(char const* filename) {
    out.write(tarnex::tripos::moleculeRecord);
    out.write("\n");
    out.write(name(filename).c_str());
    out.write("\n");
    int const numResidues = info.hasResidues ? static_cast<int>(info.residues->groups.size) : 0;
    tarnex::tripos::CountsLine{numAtoms, numBonds, numResidues}.write(out);
    tarnex::tripos::TypeLines{moleculeType(), columns.charge}.write(out);
}

/// The datum "name", the name of a trajectory, or that of the file; in one line.
std::string MoleculeWriter::name(char const* filename) const {
    std::string text = filename;
    if (auto const* datum = dynamic_cast<MolDataString const*>(topology.getData("name")))
        text = datum->getValue().data;
    else if (dynamic_cast<MolTrajectory const*>(&object))
        text = topology.getName();
    for (char& c : text) {
        if (c == '\n') c = ' ';
    }
    return text;
}

/// The first residue tells: amino acids have types of three characters.
tarnex::tripos::TypeLines::MoleculeType MoleculeWriter::moleculeType() const {
    using tarnex::tripos::TypeLines;
    if (!info.hasResidues || !info.residueType || info.residues->groups.size == 0) return TypeLines::SMALL;
    return std::strlen(info.residueType->getValue(0)) == 3 ? TypeLines::PROTEIN : TypeLines::OTHER;
}

void MoleculeWriter::writeAtoms() {
    progress.info("Writing ATOM block");
    out.write(tarnex::tripos::atomRecord);
    out.write("\n");
    for (int i = 0; i < numAtoms; ++i) {
        lineOf(i).write(out, columns);
        if (i % tarnex::tripos::linesPerProgress == 0) progress.value(part(i));
    }
}

tarnex::tripos::AtomLine MoleculeWriter::lineOf(int atom) const {
    tarnex::tripos::AtomLine line;
    line.id = atom + 1;
    if (atomNames) line.name = atomNames->getValue(atom);
    if (atom < coords.size) line.position = coords[atom];
    line.element = elements.getElement(info.atomicNumber ? info.atomicNumber->getValue(atom) : 0)->getSymbol();
    if (atomTypes) line.type = atomTypes->getValue(atom);
    if (columns.substructure) {
        line.substructure = residueOfAtom[atom] + 1;
        line.substructureName = residueText(residueOfAtom[atom]);
    }
    if (columns.charge) line.charge = charges->getValue(atom);
    return line;
}

char const* MoleculeWriter::residueText(int residue) const {
    if (residue < 0) return "UNK";
    return (info.residueType ? info.residueType : info.residueName)->getValue(residue);
}

bool MoleculeWriter::writeBonds() {
    progress.info("Writing BOND block");
    out.write(tarnex::tripos::bondRecord);
    out.write("\n");
    for (int i = 0; i < numBonds; ++i) {
        tarnex::NumberedBond const bond(topology, info.bonds->groups[i]);
        int const type = info.bondType ? info.bondType->getValue(i) : 0;
        tarnex::tripos::BondLine{i + 1, bond.firstAtom, bond.secondAtom, type}.write(out, info.bondType != nullptr);
        if (i % tarnex::tripos::linesPerProgress == 0 && progress.interruptedAt(part(numAtoms + i))) return false;
    }
    return true;
}

void writeComments(writer& out, char const* filename) {
    std::time_t const now = std::time(nullptr);
    out.write("# Name: ");
    out.write(filename);
    // The user's name, which would stand between two blanks, is left out.
    out.write("\n# Creating user name:  export\n# Creation time: ");
    out.write(std::asctime(std::localtime(&now)));
    out.write("\n#\n#\n\n");
}

} // namespace

bool TriposIO::write(McDArray<MolObject*> const& objects, writer& out, char const* filename,
                     char const* chargeAttribute, char const* atomNameAttribute, char const* atomTypeAttribute) {
    Progress const fileProgress(progress);
    tarnex::WorkingPhase const phase(fileProgress, "");
    writeComments(out, filename);
    AttributeNames const names{chargeAttribute, atomNameAttribute, atomTypeAttribute};
    for (MolObject* object : objects) {
        if (!object || object->getNumTimeSteps() == 0) continue;
        MolTopology* topology = object->getTopology();
        if (!topology) continue;
        if (!MoleculeWriter(*object, *topology, names, out, fileProgress).write(filename)) return false;
    }
    return true;
}

bool TriposIO::write(McDArray<MolObject*> const& objects, char const* filename, char const* chargeAttribute,
                     char const* atomNameAttribute, char const* atomTypeAttribute) {
    writer out(filename);
    if (!out.isOpen()) {
        tarnex::report(messages, "Could not create file !\n");
        return false;
    }
    return write(objects, out, filename, chargeAttribute, atomNameAttribute, atomTypeAttribute);
}

bool TriposIO::writeTriposBundle(McDArray<MolObject*> const& objects, char const* filename) {
    return write(objects, filename, "charge", "type", "mol2_type");
}

bool TriposIO::writeTriposMolecule(Molecule const* molecule, char const* filename) {
    McDArray<MolObject*> objects;
    // Nothing of it is changed; objects hand out their topology only when they may be changed.
    objects.append(const_cast<Molecule*>(molecule));
    return writeTriposBundle(objects, filename);
}
