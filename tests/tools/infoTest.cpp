#include "tools/program.h"

namespace {

using namespace tarnex::test;
using Json = nlohmann::json;

class Info : public ToolTest {};
class CommandLine : public ToolTest {};

/// A record of one ammonium ion's nitrogen with one neighbour, and a value that no terminal and no UTF-8 text should
/// see.
constexpr char const* oddRecord = "\n\n\n"
                                  "  2  1  0  0  0  0  0  0  0  0  1 V2000\n"
                                  "    1.5000   -2.0000    0.2500 N   0  3  0  4   0  0  0\n"
                                  "    0.0000    0.0000    0.0000 Xx  0  0  0  0   0  0  0\n"
                                  "  1  2  9  0  0  0\n"
                                  "M  END\n"
                                  "> <odd>\n\x1b[31m\xff\n\n> <digit>\n7\n\n$$$$\n";

TEST_F(Info, tellsAPersonWhatIsInAFile) {
    writeFile("odd.sdf", oddRecord);
    EXPECT_EQ(runSilently({"info", "odd.sdf"}),
              "odd.sdf\n"
              "   MDL SD file, connection tables in the V2000 layout, 215 bytes: 1 molecule\n"
              "\n"
              "1. odd.sdf-1\n"
              "   formula    NX\n"
              "   atoms      2\n"
              "   bonds      1 (1 of type 9)\n"
              "   charge     +1 (+1 on atom 1)\n"
              "   implicit   3 hydrogens\n"
              "   extent     0 to 1.5, -2 to 0, 0 to 0.25 Angstrom\n"
              "   data       odd = ?[31m\xff\n"
              "              digit = 7\n"
              "\n");
    EXPECT_THAT(runSilently({"info", ligands}), HasSubstr("   formula    C8H10N4O2\n"
                                                          "   atoms      24\n"
                                                          "   bonds      25 (21 single, 4 double)\n"));
}

TEST_F(Info, cutsLongListsAndTextsUnlessAllIsAskedFor) {
    std::string records;
    for (int i = 0; i < 12; ++i) records += oddRecord;
    std::string const longValue = std::string(70, 'a') + "\xc3\xa9";
    std::string const longItem = "> <long>\n" + longValue + "\n\n$$$$\n";
    writeFile("many.sdf", records.replace(records.find("$$$$\n"), 5, longItem));
    std::string const cut = runSilently({"info", "many.sdf"});
    EXPECT_THAT(cut, HasSubstr("long = " + std::string(57, 'a') + "...\n"));
    EXPECT_THAT(cut, EndsWith("10. many.sdf-10\n" +
                              cut.substr(cut.rfind("   formula"), cut.rfind("\nand") - cut.rfind("   formula")) +
                              "\nand 2 more; --all shows everything\n\n"));
    std::string const whole = runSilently({"info", "--all", "many.sdf"});
    EXPECT_THAT(whole, HasSubstr("long = " + longValue + "\n"));
    EXPECT_THAT(whole, HasSubstr("\n12. many.sdf-12\n"));
}

TEST_F(Info, givesAProgramEverythingAsJson) {
    writeFile("odd.sdf", oddRecord);
    Json const files = Json::parse(runSilently({"info", "--json", "odd.sdf", ligands}));
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0]["format"], "sdf");
    EXPECT_EQ(files[0]["bytes"], 215);
    Json const expected = Json::parse(R"({"name": "odd.sdf-1", "steps": 1, "bondTypes": {"9": 1}, "netCharge": 1,
        "chargedAtoms": [{"atom": 1, "charge": 1}], "implicitHydrogens": 3,
        "boundingBox": {"low": [0.0, -2.0, 0.0], "high": [1.5, 0.0, 0.25]},
        "data": [{"name": "odd", "type": "text", "value": "\u001b[31m\uFFFD"},
                 {"name": "digit", "type": "integer", "value": 7}]})");
    Json const& odd = files[0]["molecules"][0];
    for (auto const& [key, value] : expected.items()) EXPECT_EQ(odd[key], value) << key;
    EXPECT_EQ(odd["levels"][0]["name"], "atoms");
    EXPECT_EQ(odd["levels"][0]["groups"], 2);
    EXPECT_EQ(files[1]["molecules"][1]["name"], "glycine zwitterion");
    EXPECT_EQ(files[1]["molecules"][1]["boundingBox"]["low"][0], 0.5587);
}

TEST_F(Info, failsButGoesOnWhereAFileCannotBeRead) {
    writeFile("garbage.sdf", "no connection table\nat all\n");
    writeFile("empty.sdf", "");
    writeFile("garbage.qlt", "not of this format");
    std::filesystem::create_directory(scratchPath("folder.sdf"));
    Program program({"info", "--json", "absent.sdf", "garbage.sdf", "empty.sdf", "garbage.qlt", "folder.sdf", ligands});
    EXPECT_EQ(program.status(), 1);
    EXPECT_EQ(program.err(),
              "tarnex: absent.sdf: No such file or directory\n"
              "tarnex: garbage.sdf: record 1, line 3: Could not find counts line by V2000 or V3000 token\n"
              "tarnex: empty.sdf: the file is empty\n"
              "tarnex: garbage.qlt: no qlt file, or cut or damaged; nothing can be read from it\n"
              "tarnex: folder.sdf: Is a directory\n");
    Json const files = Json::parse(program.out());
    EXPECT_EQ(files[0]["errors"], Json({"absent.sdf: No such file or directory"}));
    EXPECT_EQ(files[5]["molecules"].size(), 3U);
}

TEST_F(CommandLine, isExplainedAndRefusedWhereItIsWrong) {
    EXPECT_THAT(runSilently({"--version"}), testing::MatchesRegex("tarnex [0-9.]+\n"));
    EXPECT_THAT(runSilently({"convert", "--help"}), HasSubstr("tarnex convert --frames 0:100:10"));
    std::string const table = runSilently({"formats"});
    EXPECT_THAT(table, testing::ContainsRegex("\nsdf         .sdf .sd .mol  +yes   yes    MDL"));
    EXPECT_THAT(table, testing::ContainsRegex("\namber       .top .prmtop .parm7 .crd .mdcrd  +yes"));
    std::filesystem::copy_file(ligands, scratchPath("in.sdf"));
    for (char const* const line : {"", "transmute in.sdf", "info", "info --nonsense in.sdf", "info notes.txt", "info -",
                                   "info --from nonsense in.sdf", "convert in.sdf", "convert in.sdf out.txt",
                                   "convert in.sdf -", "convert --to nonsense in.sdf out.sdf",
                                   "convert --frames= in.sdf out.sdf", "convert --frames 1:2:0 in.sdf out.sdf",
                                   "convert --frames 1:2:3:4 in.sdf out.sdf", "convert --frames 1:b in.sdf out.sdf"}) {
        std::istringstream words(line);
        std::vector<std::string> const arguments(std::istream_iterator<std::string>(words), {});
        Program program(arguments);
        EXPECT_EQ(program.status(), 2) << line;
        EXPECT_EQ(program.out(), "") << line;
        EXPECT_THAT(program.err(), HasSubstr(arguments.empty() ? "Usage: tarnex" : "tarnex: "));
    }
    EXPECT_THAT(filesLeft(), ElementsAre("in.sdf"));
}

TEST_F(CommandLine, failsIfStandardOutputTakesNothing) {
    Program program({"info", ligands}, -1, 10);
    EXPECT_EQ(program.status(), 1);
}

} // namespace
