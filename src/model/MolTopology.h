#pragma once

#include "foundation/McDArray.h"
#include "foundation/McHandable.h"
#include "foundation/export.h"
#include "model/MolData.h"
#include "model/MtGroupingLevel.h"
#include "model/MtSmallGroups.h"

#include <memory>
#include <string>

namespace tarnex {
class BondIndex;
class DataIndex;
} // namespace tarnex

/// A molecule without its coordinates: a stack of grouping levels. Level 0 holds one group per atom and level 1 one per
/// bond; both always exist and have no names. Every further level has a name, and its groups refer to groups of other
/// levels. Owns its levels and its named data.
class TARNEX_API MolTopology : public McHandable {
public:
    enum FINDING_BEHAVIOUR { FIND = 0, CREATE = 1 };

    MolTopology();
    /// As one of many small molecules that are read one after the other: `groupPool` goes on with the rest of the last
    /// one's, so that they share blocks of memory.
    explicit MolTopology(tarnex::GroupPool&& rest);
    /// A deep copy.
    MolTopology(MolTopology const& other);
    MolTopology& operator=(MolTopology const&) = delete;
    ~MolTopology() override;
    /// A deep copy on the heap, owned by the caller.
    MolTopology* duplicate() const;

    char const* getName() const { return name.c_str(); }
    void setName(char const* topologyName);

    /// The first level of that name, or a negative number.
    int getLevelIx(char const* levelName) const;
    /// Null outside the levels.
    MtGroupingLevel* getLevel(int index) const;
    /// Appends a level whose groups refer to `lowerLevelIx` and returns its index. `kind` is 12 and `reserved` is -1 in
    /// all levels of this library; both are only kept.
    int addLevel(char const* levelName, int lowerLevelIx, int kind, int reserved);
    /// Reserves room for `n` groups; changes no count.
    void prepLevelSize(int levelIx, int n);

    /// Appends a group, which becomes the topology's, and returns its reference. A group of fixed size (bond, pair,
    /// angle, dihedral) that names a group which does not exist is deleted instead, and the returned `groupIx` is -1;
    /// so it is for a level that does not exist.
    MtGroupRef addGroup(int levelIx, MtGroup* group);
    /// As `addGroup`, but ahead of the group at `position`; later groups move up by one and their values with them. A
    /// position outside the level is taken as its nearer end. References in other groups are not changed.
    MtGroupRef insertGroup(int levelIx, MtGroup* group, int position);
    /// `addGroup` on level 1.
    MtGroupRef addBond(MtBond* bond);

    /// The first bond between two atoms, in either order, or a negative number. The atoms of a bond must not be changed
    /// once bonds have been looked up.
    int findBond(int atomA, int atomB) const;

    /// Fills `atoms`, which is cleared first, with the atoms of a group, through all levels below it. Members that do
    /// not exist are left out, and a group above the atoms that is reached again is not walked again. For a bond these
    /// are its two atoms, in their order.
    void getAtomsOfGroup(MtGroupRef const& ref, McDArray<int>& atoms) const;

    /// Creates the attribute on a level or returns the existing one; null for a level that does not exist.
    MtIntegerAttribute* addIntegerAttribute(int levelIx, char const* attributeName);
    /// The formal charge of each atom in whole elementary charges; not the float attribute "charge". May be null with
    /// `FIND`.
    MtIntegerAttribute* getAtomFormalChargeAttribute(FINDING_BEHAVIOUR behaviour);

    /// Keeps a datum, which becomes the topology's, in the place of one of the same name or behind all others.
    void setData(MolData* datum);
    /// Null if there is none of that name.
    MolData* getData(char const* dataName) const;
    int getNumData() const;
    /// Data in order of first insertion; null outside them.
    MolData* getData(int index) const;

    McDArray<MtGroupingLevel*> levels;

    /// Where a reader makes the groups of this topology, or other small objects, if there are many of them:
    /// `new (topology->groupPool) MtAtom`.
    tarnex::GroupPool groupPool;

private:
    bool hasAtom(int atom) const { return atom >= 0 && atom < levels.data[0]->groups.size; }
    bool hasMembers(MtGroup const& group, int size) const;
    bool accepts(int levelIx, MtGroup const* group) const;
    MtGroupRef addIf(bool isAccepted, int levelIx, MtGroup* group);
    int findData(char const* dataName) const;

    std::string name;
    McDArray<MolData*> data;
    /// Made by the first lookup of a bond.
    mutable std::unique_ptr<tarnex::BondIndex> bondIndex;
    /// Made once there are more data than a short walk is good for.
    mutable std::unique_ptr<tarnex::DataIndex> dataIndex;
};
