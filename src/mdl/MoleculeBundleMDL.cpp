#include "mdl/MoleculeBundleMDL.h"

MoleculeBundleMDL::MoleculeBundleMDL(char const* filename)
    : offsets(std::make_unique<McDArray<long>>()), scanner(std::make_unique<lengthizer>(filename)) {}

MoleculeBundleMDL::~MoleculeBundleMDL() = default;

unsigned int MoleculeBundleMDL::getNumMolecules() const {
    return static_cast<unsigned int>(offsets->size);
}

void MoleculeBundleMDL::moveTo(unsigned int index) {
    if (index < getNumMolecules()) scanner->setStreamPos((*offsets)[index]);
}

Molecule* MoleculeBundleMDL::getMolecule(unsigned int index) {
    moveTo(index);
    return nullptr;
}

MolTopology* MoleculeBundleMDL::getTopology(unsigned int index) {
    moveTo(index);
    return nullptr;
}
