#include "model/MoleculeBundle.h"

MoleculeBundle::~MoleculeBundle() = default;
