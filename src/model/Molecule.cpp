#include "model/Molecule.h"

#include <algorithm>

Molecule::Molecule(MolTopology* moleculeTopology, bool) : topology(moleculeTopology) {
    sizeCoords();
}

Molecule::~Molecule() = default;

MolTopology* Molecule::getTopology() {
    return topology;
}

void Molecule::getCoordinates(int step, McDArray<McVec3f>& out) const {
    if (step == 0)
        out = coords;
    else
        out.resize(0);
}

int Molecule::getNumTimeSteps() const {
    return topology ? 1 : 0;
}

int Molecule::getNumAtoms() {
    return topology ? static_cast<int>(topology->levels[0]->groups.size) : 0;
}

void Molecule::setTopology(MolTopology* moleculeTopology, bool) {
    topology = moleculeTopology;
    sizeCoords();
}

void Molecule::sizeCoords() {
    std::int64_t const known = coords.size;
    coords.resize(getNumAtoms());
    if (known < coords.size) std::fill(coords.begin() + known, coords.end(), McVec3f(0.0F, 0.0F, 0.0F));
}
