#include "model/MolObject.h"

MolObject::~MolObject() = default;
