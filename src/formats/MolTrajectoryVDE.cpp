#include "formats/MolTrajectoryVDE.h"

#include "formats/NearestAtom.h"
#include "model/Molecule.h"
#include "textio/StreamExtractor.h"

#include <algorithm>
#include <locale>
#include <memory>

namespace {

/// A count that a file cannot keep is believed up to here when room is reserved.
constexpr int mostReserved = 1000000;

/// What tells an element.
struct Colour {
    float red = 0.0F;
    float green = 0.0F;
    float blue = 0.0F;

    bool operator==(Colour const&) const = default;
};

struct ElementColour {
    int atomicNumber;
    Colour colour;
    float radius;
};

constexpr ElementColour elementColours[] = {
    {1, {1.0F, 1.0F, 1.0F}, 1.2F}, {6, {0.0F, 1.0F, 0.0F}, 1.85F}, {7, {0.0F, 0.0F, 1.0F}, 1.54F},
    {8, {1.0F, 0.0F, 0.0F}, 1.4F}, {15, {0.5F, 0.5F, 0.5F}, 1.9F}, {16, {1.0F, 1.0F, 0.0F}, 1.85F},
};

/// A stream reads numbers as in the "C" locale for as long as the object lives.
class ClassicNumbers {
public:
    explicit ClassicNumbers(std::istream& numberStream)
        : stream(numberStream), before(stream.imbue(std::locale::classic())) {}
    ~ClassicNumbers() { stream.imbue(before); }
    ClassicNumbers(ClassicNumbers const&) = delete;
    ClassicNumbers& operator=(ClassicNumbers const&) = delete;

private:
    std::istream& stream;
    std::locale before;
};

// The parts of a file, from a standard stream or out of blocks.

void passLine(tarnex::StreamExtractor& in) {
    in.ignoreLineInPieces();
}

void passLine(std::istream& in) {
    do in.ignore(300, '\n');
    while (in.gcount() == 300);
}

template <class Stream>
void extractPlace(Stream& in, McVec3f& place) {
    in >> place.x >> place.y >> place.z;
}

template <class Stream>
MolTopology* makeBaseTopology(Stream& in) {
    auto* topology = new MolTopology;
    int count = 0;
    if (!(in >> count)) return topology;
    passLine(in);
    if (in.fail()) return topology;
    topology->prepLevelSize(0, std::min(count, mostReserved));
    MtGroupingLevel& atoms = *topology->levels[0];
    atoms.flags &= static_cast<unsigned char>(~MtGroupingLevel::flagBit5);
    MtIntegerAttribute* numbers = atoms.integerAttribute("atomic_number", MtGroupingLevel::CREATE, true);
    MtFloatAttribute* radii = atoms.floatAttribute("radius", MtGroupingLevel::CREATE, true);
    for (int i = 0; i < count && in.good(); ++i) {
        McVec3f place;
        Colour colour;
        float unused = 0.0F;
        extractPlace(in, place);
        in >> colour.red >> colour.green >> colour.blue >> unused;
        int const atom = topology->addGroup(0, new (topology->groupPool) MtAtom).groupIx;
        auto const* known = std::find_if(std::begin(elementColours), std::end(elementColours),
                                         [&](ElementColour const& element) { return element.colour == colour; });
        if (known == std::end(elementColours)) continue;
        numbers->setValue(atom, known->atomicNumber);
        radii->setValue(atom, known->radius);
    }
    return topology;
}

template <class Stream>
void extractPositions(Stream& in, Molecule& molecule) {
    int count = 0;
    if (!(in >> count) || count != molecule.getNumAtoms()) return;
    passLine(in);
    molecule.coords.resize(count);
    for (int i = 0; i < count && in.good(); ++i) {
        float unused = 0.0F;
        extractPlace(in, molecule.coords[i]);
        in >> unused >> unused >> unused >> unused;
    }
}

template <class Stream>
void extractBonds(Stream& in, Molecule& molecule) {
    int count = 0;
    if (!(in >> count)) return;
    passLine(in);
    if (in.fail()) return;
    MolTopology& topology = *molecule.getTopology();
    topology.prepLevelSize(1, std::min(count, mostReserved));
    MtGroupingLevel& bonds = *topology.levels[1];
    bonds.flags &= static_cast<unsigned char>(~MtGroupingLevel::flagBit5);
    if (count <= 0) return;
    tarnex::NearestAtom const nearest(molecule.coords);
    for (int i = 0; i < count && in.good(); ++i) {
        McVec3f first(0.0F, 0.0F, 0.0F);
        McVec3f second(0.0F, 0.0F, 0.0F);
        extractPlace(in, first);
        extractPlace(in, second);
        auto* bond = new (topology.groupPool) MtBond(nearest.find(first), nearest.find(second));
        int const added = topology.addBond(bond).groupIx;
        bonds.integerAttribute("type", MtGroupingLevel::CREATE, true)->setValue(added, 1);
    }
}

} // namespace

MolTrajectoryVDE::MolTrajectoryVDE(std::ostream* messageStream, AtomDataBase* dataBase)
    : messages(messageStream), baseTopology(topology), atomDataBase(dataBase) {
    getTopology()->setName("VDE");
}

MolTrajectory* MolTrajectoryVDE::readVDEMolTrajectory(int numFiles, char const** fileNames) {
    stepFiles.resize(numFiles);
    for (int i = 0; i < numFiles; ++i) stepFiles[i] = fileNames[i];
    std::unique_ptr<std::ifstream> const file(openStep(0));
    tarnex::StreamExtractor in(*file);
    baseTopology = makeBaseTopology(in);
    topology = baseTopology;
    observables = new MolObservables;
    observables->setNumTimeSteps(getNumTimeSteps());
    return this;
}

int MolTrajectoryVDE::getNumTimeSteps() const {
    return static_cast<int>(stepFiles.size);
}

bool MolTrajectoryVDE::getTimeStep(int step, Molecule* molecule) {
    if (!molecule) return false;
    molecule->setTopology(new MolTopology(*baseTopology), false);
    std::unique_ptr<std::ifstream> const file(openStep(step));
    tarnex::StreamExtractor in(*file);
    extractPositions(in, *molecule);
    extractBonds(in, *molecule);
    return true;
}

std::ifstream* MolTrajectoryVDE::openStep(int step) {
    bool const exists = step >= 0 && step < getNumTimeSteps();
    return new std::ifstream(exists ? static_cast<char const*>(stepFiles[step]) : "");
}

void MolTrajectoryVDE::readBaseTopo(std::istream& in) {
    ClassicNumbers const numbers(in);
    baseTopology = makeBaseTopology(in);
}

void MolTrajectoryVDE::readAtomPositions(std::istream& in, Molecule* molecule) {
    ClassicNumbers const numbers(in);
    extractPositions(in, *molecule);
}

void MolTrajectoryVDE::readBonds(std::istream& in, Molecule* molecule) {
    ClassicNumbers const numbers(in);
    extractBonds(in, *molecule);
}
