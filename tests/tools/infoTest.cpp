#include "program.h"

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
    EXPECT_EQ(runSilently("info odd.sdf"),
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
    EXPECT_THAT(runSilently("info ligands.sdf"), HasSubstr("   formula    C8H10N4O2\n"
                                                           "   atoms      24\n"
                                                           "   bonds      25 (21 single, 4 double)\n"));
}

TEST_F(Info, cutsLongListsAndTextsUnlessAllIsAskedFor) {
    std::string records;
    for (int i = 0; i < 12; ++i) records += oddRecord;
    std::string const letters(30, 'a'), accents = "\xc3\xa9\xc3\xa9", value = letters + accents + letters;
    writeFile("many.sdf", records.replace(records.find("$$$$\n"), 5, "> <long>\n" + value + "\n\n$$$$\n"));
    std::string const cut = runSilently("info many.sdf");
    EXPECT_THAT(cut, HasSubstr("long = " + value.substr(0, 59) + "...\n")); // 60 characters, some of two bytes
    EXPECT_THAT(cut, HasSubstr("\n10. many.sdf-10\n"));
    EXPECT_THAT(cut, EndsWith("digit = 7\n\nand 2 more; --all shows everything\n\n"));
    std::string const whole = runSilently("info --all many.sdf");
    EXPECT_THAT(whole, HasSubstr("long = " + value + "\n"));
    EXPECT_THAT(whole, HasSubstr("\n12. many.sdf-12\n"));
}

TEST_F(Info, givesAProgramEverythingAsJson) {
    writeFile("odd.sdf", oddRecord);
    Json const files = Json::parse(runSilently("info --json odd.sdf ligands.sdf"));
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
    EXPECT_EQ(files[1]["molecules"][1]["boundingBox"]["low"][0], 0.5587);
}

TEST_F(Info, failsButGoesOnWhereAFileCannotBeRead) {
    EXPECT_EQ(notesOf("info --json absent.sdf ligands.sdf", 1), "tarnex: absent.sdf: No such file or directory\n");
    Json const files = Json::parse(content("program.out"));
    EXPECT_EQ(files[0]["errors"], Json({"absent.sdf: No such file or directory"}));
    EXPECT_EQ(files[1]["molecules"].size(), 3U);
}

TEST_F(CommandLine, isExplainedAndRefusedWhereItIsWrong) {
    EXPECT_THAT(runSilently("--version"), testing::MatchesRegex("tarnex [0-9.]+\n"));
    EXPECT_THAT(runSilently("convert --help"), HasSubstr("tarnex convert --frames 0:100:10"));
    EXPECT_THAT(runSilently("formats"), testing::ContainsRegex("\nsdf         .sdf .sd .mol  +yes   yes    MDL"));
    for (std::string const line :
         {"", "transmute ligands.sdf", "info", "info --nonsense ligands.sdf", "info notes.txt", "info -",
          "info --from nonsense ligands.sdf", "convert ligands.sdf", "convert ligands.sdf out.txt",
          "convert ligands.sdf -", "convert --to nonsense ligands.sdf out.sdf", "convert ligands.sdf out.top",
          "convert --frames= ligands.sdf out.sdf", "convert --frames 1:2:0 ligands.sdf out.sdf",
          "convert --frames 1:2:3:4 ligands.sdf out.sdf", "convert --frames 1:b ligands.sdf out.sdf"}) {
        EXPECT_THAT(notesOf(line, 2), HasSubstr(line.empty() ? "Usage: tarnex" : "tarnex: ")) << line;
        EXPECT_EQ(content("program.out"), "") << line;
    }
    EXPECT_THAT(filesLeft(), ElementsAre("ligands.sdf"));
}

} // namespace
