#include "model/MolData.h"

#include "foundation/CLocale.h"
#include "foundation/McException.h"

#include <cstdlib>

template class TypedMolData<int>;
template class TypedMolData<float>;
template class TypedMolData<McString>;

namespace {

[[noreturn]] void throwNoConversion(char const* name) {
    throw McException("Error: String conversion of molecular data %s not possible.", name);
}

} // namespace

MolData::~MolData() = default;

void MolData::getValueAsString(McString&) const {
    throwNoConversion(getName());
}

void MolData::setValueFromString(char const*) {
    throwNoConversion(getName());
}

MolDataInt::~MolDataInt() = default;

MolDataInt* MolDataInt::duplicate() const {
    return new MolDataInt(*this);
}

void MolDataInt::getValueAsString(McString& out) const {
    out.printf("%i", getValue());
}

void MolDataInt::setValueFromString(char const* text) {
    setValue(static_cast<int>(std::strtol(text, nullptr, 10)));
}

MolDataFloat::~MolDataFloat() = default;

MolDataFloat* MolDataFloat::duplicate() const {
    return new MolDataFloat(*this);
}

void MolDataFloat::getValueAsString(McString& out) const {
    out.printf("%f", static_cast<double>(getValue()));
}

void MolDataFloat::setValueFromString(char const* text) {
    tarnex::ScopedCLocale const cLocale;
    setValue(static_cast<float>(std::strtod(text, nullptr)));
}

MolDataString::~MolDataString() = default;

MolDataString* MolDataString::duplicate() const {
    return new MolDataString(*this);
}

void MolDataString::getValueAsString(McString& out) const {
    out = getValue();
}

void MolDataString::setValueFromString(char const* text) {
    setValue(McString(text));
}
