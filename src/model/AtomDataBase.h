#pragma once

#include "foundation/McDArray.h"
#include "foundation/McString.h"
#include "foundation/export.h"

/// A table of atom kinds that a host fills and hands to the readers whose files name atoms by a text of their own.
/// Entry `i` of the three arrays belongs together. Indices are not checked.
class TARNEX_API AtomDataBase {
public:
    /// Appends an entry: atomic number, radius in Angstrom, name. The name is copied.
    void appendAtom(int id, float radius, McString const& shortName);
    long size() const { return ids.size; }
    int getId(int index) const { return ids[index]; }
    float getRadius(int index) const { return radii[index]; }
    McString& getShortName(int index) { return shortNames[index]; }

    McDArray<int> ids;
    McDArray<float> radii;
    McDArray<McString> shortNames;
};
