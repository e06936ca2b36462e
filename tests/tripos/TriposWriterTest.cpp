#include "model/MolTrajectoryMem.h"
#include "model/MtListGroups.h"
#include "model/molInfo.h"
#include "pdb/PDBread.h"
#include "support/RecordingProgress.h"
#include "support/compareTopologies.h"
#include "support/files.h"
#include "textio/numberText.h"
#include "tripos/TriposIO.h"

#include <gmock/gmock.h>
#include <memory>
#include <sstream>

namespace {

using namespace tarnex::test;
using testing::ElementsAre;
using testing::FloatEq;
using testing::HasSubstr;
using testing::MatchesRegex;

/// Carbons, the first one bonded to all others.
struct Sample {
    explicit Sample(int numAtoms) : topology(new MolTopology), molecule(new Molecule(topology, true)) {
        for (int i = 0; i < numAtoms; ++i) topology->addGroup(0, new MtAtom);
        for (int i = 1; i < numAtoms; ++i) topology->addBond(new MtBond(i, 0));
        for (int i = 0; i < numAtoms; ++i) integers(0, "atomic_number")->setValue(i, 6);
        molecule->setTopology(topology, true);
    }
    MtIntegerAttribute* integers(int level, char const* name) const {
        return topology->addIntegerAttribute(level, name);
    }
    MtFloatAttribute* floats(char const* name) const {
        return topology->getLevel(0)->floatAttribute(name, MtGroupingLevel::CREATE, true);
    }
    MtStringAttribute* texts(int level, char const* name) const {
        return topology->getLevel(level)->stringAttribute(name, MtGroupingLevel::CREATE, true);
    }
    /// A residue of some atoms.
    int addResidue(int first, int last) const {
        int level = topology->getLevelIx("residues");
        if (level < 0) level = topology->addLevel("residues", 0, 12, -1);
        topology->addGroup(level, new MtIntraLevelRange(0, first, last));
        return level;
    }
    /// The file without its comments.
    std::string written() const {
        std::string const path = scratchPath("out.mol2");
        EXPECT_TRUE(TriposIO(nullptr, nullptr).writeTriposMolecule(molecule.get(), path.c_str()));
        std::string const text = readFile(path);
        return text.substr(std::min(text.find('@'), text.size()));
    }

    MolTopology* topology;
    std::unique_ptr<Molecule> molecule;
};

TEST(TriposWriter, PlainMolecule) {
    Sample const sample(2);
    sample.molecule->coords[1] = McVec3f(-1.5F, 9.99996F, 123456.789F);
    std::string const path = scratchPath("out.mol2");
    EXPECT_EQ(sample.written(), "@<TRIPOS>MOLECULE\n" + path +
                                    "\n2 1 0 0 0\nSMALL\nNO_CHARGES\n\n@<TRIPOS>ATOM\n"
                                    "1       C       0.00000000 0.00000000 0.00000000 C     1 UNK\n"
                                    "2       C       -1.5000000 9.99995995 123456.789 C     1 UNK\n"
                                    "@<TRIPOS>BOND\n"
                                    "1       1 2 \n" // without a type the blank stays
                                    "\n\n");
    EXPECT_THAT(readFile(path),
                MatchesRegex("# Name: " + path +
                             "\n# Creating user name:  export\n# Creation time: [A-Z].* [0-9]*\n\n#\n#\n\n@(.|\n)*"));
}

TEST(TriposWriter, AllColumns) {
    Sample const sample(3);
    sample.topology->setData(new MolDataString("name", "one\nname"));
    sample.floats("charge")->setValue(0, -0.25F);
    sample.texts(0, "type")->setValue(0, "CA1");
    sample.texts(0, "type")->setValue(1, "ninecharsX");
    sample.texts(0, "mol2_type")->setValue(0, "C.ar");
    sample.texts(0, "mol2_type")->setValue(2, "C.cat.x");
    sample.integers(1, "type")->setValue(0, 4);
    sample.integers(1, "type")->setValue(1, 7);
    int const residues = sample.addResidue(0, 1);
    sample.texts(residues, "type")->setValue(0, "ALA");
    EXPECT_EQ(sample.written(), "@<TRIPOS>MOLECULE\none name\n3 2 1 0 0\nPROTEIN\nUSER_CHARGES\n\n@<TRIPOS>ATOM\n"
                                "1       CA1       0.00000000 0.00000000 0.00000000 C.ar  1    ALA -0.250000\n"
                                "2       ninechars 0.00000000 0.00000000 0.00000000 C     1    ALA 0.000000\n"
                                "3       C       0.00000000 0.00000000 0.00000000 C.cat 0    UNK 0.000000\n"
                                "@<TRIPOS>BOND\n"
                                "1       1 2 ar\n"
                                "2       1 3 7\n"
                                "\n\n");
    sample.molecule->coords[0].x = 1e9F;
    EXPECT_THROW(sample.written(), FloatConversion_Error);
}

TEST(TriposWriter, MoleculeTypeGoesByTheFirstResidue) {
    auto const typeOf = [](std::string const& attribute, std::string const& value) {
        Sample const sample(1);
        int const residues = sample.addResidue(0, 0);
        if (!attribute.empty()) sample.texts(residues, attribute.c_str())->setValue(0, value.c_str());
        std::string const text = sample.written();
        std::size_t const line = text.find("\n1 0 1 0 0\n") + 11;
        return text.substr(line, text.find('\n', line) - line) + text.substr(text.rfind(" C   ") + 5);
    };
    std::string const end = "\n@<TRIPOS>BOND\n\n\n";
    EXPECT_EQ(typeOf("type", "ALA"), "PROTEIN  1    ALA" + end);
    EXPECT_EQ(typeOf("type", "A"), "  1    A" + end); // an empty line
    EXPECT_EQ(typeOf("name", "longer name"), "SMALL  1    longer name" + end);
    EXPECT_EQ(typeOf("", ""), "SMALL  1 UNK" + end);
}

TEST(TriposWriter, AttributesAreChosenByNameAndMustBeOfTheirKind) {
    Sample const sample(1);
    sample.integers(0, "charge")->setValue(0, 5);
    sample.floats("charge")->setValue(0, 0.5F); // behind another one of its name
    sample.floats("partial")->setValue(0, 0.125F);
    sample.texts(0, "label")->setValue(0, "L");
    EXPECT_THAT(sample.written(), HasSubstr("NO_CHARGES"));
    McDArray<MolObject*> objects;
    objects.append(sample.molecule.get());
    std::string const path = scratchPath("chosen.mol2");
    ASSERT_TRUE(TriposIO(nullptr, nullptr).write(objects, path.c_str(), "partial", "label", "label"));
    EXPECT_THAT(readFile(path),
                HasSubstr("\n1       L         0.00000000 0.00000000 0.00000000 L     1 UNK 0.125000\n"));
    ASSERT_TRUE(TriposIO(nullptr, nullptr).write(objects, path.c_str(), nullptr, "partial", nullptr));
    EXPECT_THAT(readFile(path), HasSubstr("\n1       C       0.00000000 0.00000000 0.00000000 C     1 UNK\n"));
}

TEST(TriposWriter, ListsOfObjects) {
    Sample const sample(1);
    sample.topology->setName("topology");
    MolTrajectoryMem twice(sample.molecule.get(), 2);
    MolTrajectoryMem none(sample.molecule.get(), 0);
    McDArray<MolObject*> objects;
    for (MolObject* object : {static_cast<MolObject*>(&twice), static_cast<MolObject*>(&none),
                              static_cast<MolObject*>(nullptr), static_cast<MolObject*>(sample.molecule.get())}) {
        objects.append(object);
    }
    std::string const path = scratchPath("list.mol2");
    std::ostringstream messages;
    TriposIO io(&messages, nullptr);
    ASSERT_TRUE(io.writeTriposBundle(objects, path.c_str()));
    std::string const text = readFile(path);
    EXPECT_THAT(text, HasSubstr("MOLECULE\ntopology\n1 0 0"));
    EXPECT_THAT(text, HasSubstr("MOLECULE\n" + path + "\n1 0 0"));
    EXPECT_EQ(text.find("# Name", 1), std::string::npos);
    McDArray<McHandle<MolTrajectory>> bundle;
    EXPECT_TRUE(io.readTriposBundle(path.c_str(), bundle));
    EXPECT_EQ(bundle.size, 2);

    EXPECT_TRUE(io.writeTriposMolecule(nullptr, path.c_str()));
    EXPECT_EQ(readFile(path).find('@'), std::string::npos);
    messages.str("");
    EXPECT_FALSE(io.writeTriposBundle(objects, "/no/such/folder/x.mol2"));
    EXPECT_EQ(messages.str(), "Could not create file !\n");
}

TEST(TriposWriter, ProgressAndInterruption) {
    Sample const sample(51);
    RecordingProgress quiet;
    std::string const path = scratchPath("out.mol2");
    EXPECT_TRUE(TriposIO(nullptr, &quiet).writeTriposMolecule(sample.molecule.get(), path.c_str()));
    EXPECT_THAT(quiet.calls, ElementsAre("start ", "info Writing ATOM block", "info Writing BOND block", "stop"));
    EXPECT_THAT(quiet.fractions, ElementsAre(0.0F, FloatEq(50.0F / 101.0F), FloatEq(51.0F / 101.0F)));
    RecordingProgress stopping(1);
    EXPECT_FALSE(TriposIO(nullptr, &stopping).writeTriposMolecule(sample.molecule.get(), path.c_str()));
    EXPECT_EQ(stopping.calls.back(), "stop");
    EXPECT_THAT(readFile(path), testing::EndsWith("@<TRIPOS>BOND\n1       1 2 \n"));
}

TEST(TriposWriter, ResiduesAreThoseThatThePDBReaderTells) {
    Sample const sample(6);
    int const level = sample.addResidue(1, 3);
    sample.addResidue(2, 4);
    auto* list = new MtDynamicGroup;
    for (int const atom : {0, 3, 77}) list->members.append(MtGroupRef(0, atom));
    sample.topology->addGroup(level, list);
    sample.texts(level, "name")->setValue(0, "R");
    std::string const text = sample.written();
    molInfo const info(sample.topology);
    for (int atom = 0; atom < 6; ++atom) {
        std::string const start = "\n" + std::to_string(atom + 1) + "       C       ";
        std::string const residue = std::to_string(PDBread::getResIxOfAtom(info, atom) + 1);
        EXPECT_EQ(text.substr(text.find(start) + start.size() + 39, 1), residue) << atom;
    }
}

TEST(TriposWriter, WhatComesBack) {
    std::string const text = "@<TRIPOS>MOLECULE\nthing\n3 2 2\nPROTEIN\nUSER_CHARGES\n\n@<TRIPOS>ATOM\n"
                             "1 N 1.5 -2.25 0 N.am 1 ALA 0.5\n2 CA 100 0 0.125 C.3 1 ALA -0.5\n3 CB 0 0 9 C.3 4 GLY 0\n"
                             "@<TRIPOS>BOND\n1 1 2 ar\n2 2 3 2\n";
    McDArray<McHandle<MolTrajectory>> once;
    McDArray<McHandle<MolTrajectory>> twice;
    TriposIO io(nullptr, nullptr);
    ASSERT_TRUE(io.readTriposBundle(writeFile("in.mol2", text).c_str(), once));
    McDArray<MolObject*> objects;
    objects.append(dynamic_cast<MolObject*>(static_cast<MolTrajectory*>(once[0])));
    std::string const path = scratchPath("out.mol2");
    ASSERT_TRUE(io.writeTriposBundle(objects, path.c_str()));
    ASSERT_TRUE(io.readTriposBundle(path.c_str(), twice));
    ASSERT_EQ(twice.size, 1);
    EXPECT_EQ(compareTopologies(*once[0]->getTopology(), *twice[0]->getTopology()), "");
    Molecule a(once[0]->getTopology(), false);
    Molecule b(twice[0]->getTopology(), false);
    ASSERT_TRUE(once[0]->getTimeStep(0, &a) && twice[0]->getTimeStep(0, &b));
    for (int i = 0; i < 3; ++i) EXPECT_EQ(a.coords[i], b.coords[i]);
}

} // namespace
