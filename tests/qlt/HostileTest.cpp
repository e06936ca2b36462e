#include "qltSamples.h"
#include "support/qltBytes.h"

#include <functional>

namespace {

using namespace tarnex::test;

// Files whose checksums are right, made by hand to do harm.

/// A section of two atoms and one bond in which any part can be replaced.
struct Section {
    std::uint32_t numLevels = 2;
    std::string atoms = QltBytes().u8(1).u32(2).u8(0).bytes;
    std::string atomAttributes = QltBytes().u32(0).bytes;
    std::string bonds = QltBytes().u8(2).u32(1).i32(0).i32(1).u8(0).bytes;
    std::string furtherLevel;
    std::string data = QltBytes().u32(0).bytes;
    std::string rest;

    static std::string level(std::string const& groups, std::string const& attributes) {
        return QltBytes().text("").i32(0).i32(12).i32(-1).u8(0).raw(groups).raw(attributes).bytes;
    }
    std::string bytes() const {
        QltBytes out;
        out.text("x").u32(numLevels).raw(level(atoms, atomAttributes));
        out.raw(level(bonds, QltBytes().u32(0).bytes)).raw(furtherLevel).raw(data).raw(rest);
        return out.bytes;
    }
};

class QltHostile : public testing::Test {
protected:
    bool reads(std::string const& bytes) {
        writeBytes(name, bytes);
        return read(name).size > 0;
    }
    bool reads(QltFile const& file) { return reads(file.bytes()); }
    bool reads(Section const& section) { return reads(QltFile{section.bytes(), 2, {std::string(24, 'c')}}); }
    template <class Part>
    bool readsWith(Part Section::*part, Part const& value) {
        Section section;
        section.*part = value;
        return reads(section);
    }
    /// A third level of these groups.
    bool readsGroups(QltBytes const& groups) {
        Section section;
        section.numLevels = 3;
        section.furtherLevel = Section::level(groups.bytes, QltBytes().u32(0).bytes);
        return reads(section);
    }

    std::string name = scratchFolder() + "hostile.qlt";
    static constexpr std::uint32_t many = 0xFFFFFFFFU;
    static constexpr std::uint32_t manyInts = 0x7FFFFFFFU;
};

TEST_F(QltHostile, HandMadeFileIsRight) {
    EXPECT_TRUE(reads(Section()));
    EXPECT_TRUE(readsGroups(QltBytes().u8(6).u32(1).i32(0).i32(0).i32(1).i32(0).u8(0)));
    EXPECT_TRUE(readsWith(&Section::rest, std::string(100, '\0')));
}

TEST_F(QltHostile, CountsOfTheContainer) {
    QltFile const good{Section().bytes(), 2, {std::string(24, 'c')}};
    auto const readsWithField = [&](auto field, auto value) {
        QltFile file = good;
        file.*field = value;
        return reads(file);
    };
    for (std::uint64_t const count : {0ULL, 2ULL, 1ULL << 31U, 1ULL << 61U, ~0ULL}) {
        EXPECT_FALSE(readsWithField(&QltFile::claimedSteps, count)) << count;
        EXPECT_FALSE(readsWithField(&QltFile::claimedTopologyLength, count)) << count;
        EXPECT_FALSE(readsWithField(&QltFile::claimedTrajectories, count)) << count;
        EXPECT_FALSE(readsWithField(&QltFile::version, count)) << count;
    }
    EXPECT_FALSE(readsWithField(&QltFile::surplusLength, std::uint64_t{1}));
    EXPECT_FALSE(readsWithField(&QltFile::gap, std::string(8, '\0')));
    // 12 times this many atoms is 24 in 64 bits.
    EXPECT_FALSE(readsWithField(&QltFile::numAtoms, (1ULL << 62U) + 2));
    EXPECT_FALSE(readsWithField(&QltFile::magic, std::string("\x89QLT\n\n\x1a\n")));

    // Without steps the number of atoms takes part in no length.
    QltFile without{Section().bytes(), 2};
    EXPECT_TRUE(reads(without));
    without.numAtoms = 3;
    EXPECT_FALSE(reads(without));
    EXPECT_FALSE(reads(QltFile{"", 0}));
}

TEST_F(QltHostile, CountsOfGroups) {
    for (unsigned kind = 1; kind <= 8; ++kind) {
        for (std::uint32_t const count : {manyInts - 1, manyInts, many}) {
            EXPECT_FALSE(readsGroups(QltBytes().u8(kind).u32(count).u8(0))) << kind;
        }
    }
    for (unsigned kind : {9U, 255U}) EXPECT_FALSE(readsGroups(QltBytes().u8(kind).u32(0).u8(0))) << kind;
    EXPECT_FALSE(readsGroups(QltBytes().u8(5).u32(1).u32(many).u8(0)));
    EXPECT_FALSE(readsGroups(QltBytes().u8(5).u32(2).u32(1).u32(many).i32(0).i32(0).u8(0)));
    // Atoms take no bytes: a million and the length of the file, over all levels, and no more.
    EXPECT_TRUE(readsGroups(QltBytes().u8(1).u32(500'000).u8(1).u32(500'000).u8(0)));
    EXPECT_FALSE(readsGroups(QltBytes().u8(1).u32(500'000).u8(1).u32(501'000).u8(0)));
}

TEST_F(QltHostile, CountsOfLevelsAttributesAndData) {
    for (std::uint32_t const count : {0U, 1U, 3U, many}) EXPECT_FALSE(readsWith(&Section::numLevels, count)) << count;
    EXPECT_FALSE(readsWith(&Section::atomAttributes, QltBytes().u32(many).bytes));
    for (unsigned type : {1U, 2U, 3U}) {
        auto const readsValues = [&](std::uint32_t count, std::string const& values) {
            return readsWith(&Section::atomAttributes,
                             QltBytes().u32(1).u8(type).text("a").u32(count).raw(values).bytes);
        };
        std::string const values = type == 3 ? std::string("p\0q\0", 4) : std::string(8, 'v');
        EXPECT_TRUE(readsValues(2, values)) << type;
        for (std::uint32_t const count : {1U, 3U, manyInts, many}) EXPECT_FALSE(readsValues(count, values)) << type;
    }
    EXPECT_FALSE(readsWith(&Section::atomAttributes, QltBytes().u32(1).u8(4).text("a").u32(0).bytes));

    EXPECT_FALSE(readsWith(&Section::data, QltBytes().u32(many).bytes));
    EXPECT_FALSE(readsWith(&Section::data, QltBytes().u32(1).u8(3).text("d").u64(~0ULL).bytes));
    EXPECT_FALSE(readsWith(&Section::data, QltBytes().u32(1).u8(9).text("d").u32(0).bytes));
    EXPECT_TRUE(readsWith(&Section::data, QltBytes().u32(1).u8(1).text("d").i32(5).bytes));
    std::string const twice = QltBytes().u8(1).text("d").i32(5).bytes;
    EXPECT_FALSE(readsWith(&Section::data, QltBytes().u32(2).raw(twice + twice).bytes));
    EXPECT_FALSE(readsWith(&Section::rest, std::string("\0\0x", 3)));
}

TEST_F(QltHostile, References) {
    for (int atom : {-1, 2, std::numeric_limits<int>::min(), 0x7FFFFFFF}) {
        EXPECT_FALSE(readsWith(&Section::bonds, QltBytes().u8(2).u32(1).i32(0).i32(atom).u8(0).bytes)) << atom;
        EXPECT_FALSE(readsGroups(QltBytes().u8(3).u32(1).i32(atom).i32(0).u8(0))) << atom;
        EXPECT_FALSE(readsGroups(QltBytes().u8(6).u32(1).i32(0).i32(1).i32(0).i32(atom).u8(0))) << atom;
        EXPECT_FALSE(readsWith(&Section::bonds, QltBytes().u8(4).u32(1).i32(0).i32(atom).i32(atom).u8(0).bytes));
    }
    for (int level : {-1, 3, std::numeric_limits<int>::min(), 0x7FFFFFFF}) {
        EXPECT_FALSE(readsGroups(QltBytes().u8(6).u32(1).i32(0).i32(1).i32(level).i32(0).u8(0))) << level;
    }
    std::string const listAsBond = QltBytes().u8(5).u32(1).u32(2).i32(0).i32(0).i32(0).i32(9).u8(0).bytes;
    EXPECT_FALSE(readsWith(&Section::bonds, listAsBond));
    // Lists and ranges name what they like, themselves included.
    EXPECT_TRUE(readsGroups(QltBytes().u8(5).u32(1).u32(2).i32(2).i32(0).i32(-4).i32(9).u8(0)));
    EXPECT_TRUE(readsGroups(QltBytes().u8(4).u32(1).i32(2).i32(-5).i32(0x7FFFFFFF).u8(0)));
}

/// Many small records that each ask for a value ahead must not add up to many times the file.
TEST_F(QltHostile, ManyAttributesOfManyAtoms) {
    constexpr std::uint32_t numAttributes = 200'000;
    QltBytes attributes;
    attributes.u32(numAttributes);
    for (std::uint32_t i = 0; i < numAttributes; ++i) attributes.u8(1 + i % 3).text("a").u32(i % 2);
    Section section;
    section.atoms = QltBytes().u8(1).u32(1'000'000).u8(0).bytes;
    section.atomAttributes = attributes.bytes;
    EXPECT_FALSE(reads(QltFile{section.bytes(), 1'000'000}));
}

} // namespace
