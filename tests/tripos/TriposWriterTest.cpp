#include "support/model.h"
#include "support/testing.h"
#include "textio/numberText.h"
#include "tripos/TriposIO.h"

namespace {

using namespace tarnex::test;
using testing::MatchesRegex;

/// Carbons, the first one bonded to all others.
struct Sample {
    explicit Sample(int numAtoms) : topology(newTopology(numAtoms)), molecule(new Molecule(topology, true)) {
        for (int i = 1; i < numAtoms; ++i) topology->addBond(new MtBond(i, 0));
        for (int i = 0; i < numAtoms; ++i) setInteger(topology, 0, "atomic_number", i, 6);
    }
    /// A residue of some atoms; its level.
    int addResidue(int first, int last) const {
        int const level = topology->addLevel("residues", 0, 12, -1);
        topology->addGroup(level, new MtIntraLevelRange(0, first, last));
        return level;
    }
    /// The file without its comments, by the attributes of these names.
    std::string written(char const* charge = "charge", char const* name = "type",
                        char const* type = "mol2_type") const {
        McDArray<MolObject*> objects;
        objects.append(molecule.get());
        std::string const path = scratchPath("out.mol2");
        EXPECT_TRUE(TriposIO(nullptr, nullptr).write(objects, path.c_str(), charge, name, type));
        return readFile(path).substr(readFile(path).find('@'));
    }

    MolTopology* topology;
    std::unique_ptr<Molecule> molecule;
};

TEST(TriposWriter, PlainMolecule) {
    Sample const sample(2);
    sample.molecule->coords[1] = McVec3f(-1.5F, 9.99996F, 123456.789F);
    std::string const path = scratchPath("out.mol2");
    EXPECT_TRUE(TriposIO(nullptr, nullptr).writeTriposMolecule(sample.molecule.get(), path.c_str()));
    std::string const text = readFile(path), body = text.substr(text.find('@'));
    EXPECT_THAT(text, MatchesRegex("# Name: " + path +
                                   "\n# Creating user name:  export\n"
                                   "# Creation time: [A-Z].* [0-9]*\n\n#\n#\n\n@(.|\n)*"));
    EXPECT_EQ(body, "@<TRIPOS>MOLECULE\n" + path +
                        "\n2 1 0 0 0\nSMALL\nNO_CHARGES\n\n@<TRIPOS>ATOM\n"
                        "1       C       0.00000000 0.00000000 0.00000000 C     1 UNK\n"
                        "2       C       -1.5000000 9.99995995 123456.789 C     1 UNK\n"
                        "@<TRIPOS>BOND\n"
                        "1       1 2 \n" // without a type the blank stays
                        "\n\n");
}

TEST(TriposWriter, AllColumns) {
    Sample const sample(3);
    sample.topology->setData(new MolDataString("name", "one\nname"));
    setReal(sample.topology, "charge", 0, -0.25F);
    setText(sample.topology, 0, "type", 0, "CA1");
    setText(sample.topology, 0, "type", 1, "ninecharsX");
    setText(sample.topology, 0, "mol2_type", 0, "C.ar");
    setText(sample.topology, 0, "mol2_type", 2, "C.cat.x");
    setInteger(sample.topology, 1, "type", 0, 4);
    setInteger(sample.topology, 1, "type", 1, 7);
    setText(sample.topology, sample.addResidue(0, 1), "type", 0, "ALA");
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
    for (auto const& [attribute, value, type, residue] : {std::tuple{"type", "ALA", "PROTEIN", "   ALA"},
                                                          {"type", "A", "", "   A"},
                                                          {"name", "longer name", "SMALL", "   longer name"},
                                                          {"other", "", "SMALL", "UNK"}}) {
        Sample const sample(1);
        setText(sample.topology, sample.addResidue(0, 0), attribute, 0, value);
        EXPECT_THAT(sample.written(), HasSubstr(std::string("\n1 0 1 0 0\n") + type + "\nNO_CHARGES\n"));
        EXPECT_THAT(sample.written(), HasSubstr(std::string(" C     1 ") + residue + "\n@"));
    }
}

TEST(TriposWriter, AttributesAreChosenByNameAndMustBeOfTheirKind) {
    Sample const sample(1);
    setInteger(sample.topology, 0, "charge", 0, 5);
    setReal(sample.topology, "charge", 0, 0.5F); // behind another one of its name
    setReal(sample.topology, "partial", 0, 0.125F);
    setText(sample.topology, 0, "label", 0, "L");
    EXPECT_THAT(sample.written(), HasSubstr("NO_CHARGES"));
    EXPECT_THAT(sample.written("partial", "label", "label"),
                HasSubstr("\n1       L         0.00000000 0.00000000 0.00000000 L     1 UNK 0.125000\n"));
    EXPECT_THAT(sample.written(nullptr, "partial", nullptr),
                HasSubstr("\n1       C       0.00000000 0.00000000 0.00000000 C     1 UNK\n"));
}

TEST(TriposWriter, ListsOfObjects) {
    Sample const sample(1);
    sample.topology->setName("topology");
    MolTrajectoryMem twice(sample.molecule.get(), 2), none(sample.molecule.get(), 0);
    McDArray<MolObject*> objects;
    for (MolObject* object : std::initializer_list<MolObject*>{&twice, &none, nullptr, sample.molecule.get()})
        objects.append(object);
    std::string const path = scratchPath("list.mol2");
    std::ostringstream messages;
    TriposIO io(&messages, nullptr);
    ASSERT_TRUE(io.writeTriposBundle(objects, path.c_str()));
    std::string const record = "\n1 0 0 0 0\nSMALL\nNO_CHARGES\n\n@<TRIPOS>ATOM\n"
                               "1       C       0.00000000 0.00000000 0.00000000 C     1 UNK\n@<TRIPOS>BOND\n\n\n";
    EXPECT_THAT(readFile(path),
                EndsWith("#\n#\n\n@<TRIPOS>MOLECULE\ntopology" + record + "@<TRIPOS>MOLECULE\n" + path + record));
    EXPECT_TRUE(io.writeTriposMolecule(nullptr, path.c_str()));
    EXPECT_EQ(readFile(path).find('@'), std::string::npos);
    EXPECT_FALSE(io.writeTriposBundle(objects, "/no/such/folder/x.mol2"));
    EXPECT_EQ(messages.str(), "Could not create file !\n");
}

TEST(TriposWriter, ProgressAndInterruption) {
    Sample const sample(51);
    RecordingProgress quiet, stopping(1);
    std::string const path = scratchPath("out.mol2");
    EXPECT_TRUE(TriposIO(nullptr, &quiet).writeTriposMolecule(sample.molecule.get(), path.c_str()));
    EXPECT_THAT(quiet.calls, ElementsAre("start ", "info Writing ATOM block", "info Writing BOND block", "stop"));
    EXPECT_THAT(quiet.fractions, ElementsAre(0.0F, FloatEq(50.0F / 101.0F), FloatEq(51.0F / 101.0F)));
    EXPECT_FALSE(TriposIO(nullptr, &stopping).writeTriposMolecule(sample.molecule.get(), path.c_str()));
    EXPECT_EQ(stopping.calls.back(), "stop");
    EXPECT_THAT(readFile(path), EndsWith("@<TRIPOS>BOND\n1       1 2 \n"));
}

} // namespace
