#include "qltSamples.h"
#include "support/qltBytes.h"

namespace {

using namespace tarnex::test;

/// A section of two atoms and one bond in which any part can be replaced.
struct Section {
    std::uint32_t numLevels = 2;
    Bytes atoms = Bytes().u8(1).u32(2).u8(0);
    Bytes atomAttributes = Bytes().u32(0);
    Bytes bonds = Bytes().u8(2).u32(1).i32(0).i32(1).u8(0);
    std::string furtherLevel = {};
    Bytes data = Bytes().u32(0);
    std::string rest = {};

    static std::string level(Bytes const& groups, Bytes const& attributes = Bytes().u32(0)) {
        return Bytes().text("").i32(0).i32(12).i32(-1).u8(0).raw(groups.bytes).raw(attributes.bytes).bytes;
    }
    std::string bytes() const {
        Bytes out;
        out.text("x").u32(numLevels).raw(level(atoms, atomAttributes)).raw(level(bonds));
        return out.raw(furtherLevel).raw(data.bytes).raw(rest).bytes;
    }
};

class QltDamage : public QltTest {
protected:
    static bool reads(QltFile const& file) { return sizeOf(file.bytes()) > 0; }
    static bool reads(Section const& section) { return reads(QltFile{section.bytes(), 2, {std::string(24, 'c')}}); }
    /// A third level of these groups.
    static bool readsGroups(Bytes const& groups) {
        return reads(Section{.numLevels = 3, .furtherLevel = Section::level(groups)});
    }
    static bool readsBonds(Bytes const& bonds) { return reads(Section{.bonds = bonds}); }
    static bool readsData(Bytes const& data) { return reads(Section{.data = data}); }

    static constexpr std::uint32_t many = 0xFFFFFFFFU;
    static constexpr std::uint32_t manyInts = 0x7FFFFFFFU;
};

TEST_F(QltDamage, EveryChangedByteAndEveryCutIsRefused) {
    Bundle sources;
    sources.append(sampleOf(fullTopology(), 2));
    sources.append(sampleOf(smallTopology(), 1));
    std::string const path = scratchPath("good.qlt");
    ASSERT_TRUE(tarnex::writeQltBundle(sources, path.c_str()));
    std::string const good = readFile(path);
    ASSERT_EQ(sizeOf(good), 2);
    for (std::size_t i = 0; i < good.size(); ++i) {
        for (int bits : {0x01, 0x80, 0xFF}) {
            std::string bad = good;
            bad[i] = static_cast<char>(bad[i] ^ bits);
            ASSERT_EQ(sizeOf(bad), 0) << "byte " << i << " of " << good.size();
        }
        ASSERT_EQ(sizeOf(good.substr(0, i)), 0) << "cut at " << i;
    }
    for (std::string const& other : {good + '\0', good + good, good.substr(1)}) EXPECT_EQ(sizeOf(other), 0);
}

TEST_F(QltDamage, PartsOfTwoFilesAreRefused) {
    std::string const first(24, 'a'), second(24, 'b');
    QltFile file{Section().bytes(), 2, {first, second}};
    std::string const good = file.bytes();
    ASSERT_EQ(sizeOf(good), 1);
    file.steps = {second, first};
    std::string const swapped = file.bytes();

    // Each step has its right checksum; only they are not the steps of this file.
    std::size_t const steps = 48 + file.topology.size();
    std::size_t const index = good.size() - 40;
    EXPECT_EQ(sizeOf(good.substr(0, 48) + swapped.substr(48)), 0);
    EXPECT_EQ(sizeOf(good.substr(0, steps) + swapped.substr(steps, index - steps) + good.substr(index)), 0);
}

// Files whose checksums are right, made by hand to do harm.

TEST_F(QltDamage, CountsOfTheContainer) {
    QltFile const good{Section().bytes(), 2, {std::string(24, 'c')}};
    ASSERT_TRUE(reads(good));
    auto const readsWith = [&](auto field, auto value) {
        QltFile file = good;
        file.*field = value;
        return reads(file);
    };
    for (std::uint64_t const count : {0ULL, 2ULL, 1ULL << 31U, 1ULL << 61U, ~0ULL}) {
        for (auto field : {&QltFile::claimedSteps, &QltFile::claimedTopologyLength, &QltFile::claimedTrajectories,
                           &QltFile::version}) {
            EXPECT_FALSE(readsWith(field, count)) << count;
        }
    }
    EXPECT_FALSE(readsWith(&QltFile::surplusLength, std::uint64_t{1}));
    EXPECT_FALSE(readsWith(&QltFile::gap, std::string(8, '\0')));
    // 12 times this many atoms is 24 in 64 bits.
    EXPECT_FALSE(readsWith(&QltFile::numAtoms, (1ULL << 62U) + 2));
    EXPECT_FALSE(readsWith(&QltFile::magic, std::string("\x89QLT\n\n\x1a\n")));

    // Without steps the number of atoms takes part in no length.
    EXPECT_TRUE(reads(QltFile{Section().bytes(), 2}));
    EXPECT_FALSE(reads(QltFile{Section().bytes(), 3}));
    EXPECT_FALSE(reads(QltFile{"", 0}));
}

TEST_F(QltDamage, CountsOfGroups) {
    for (unsigned kind = 1; kind <= 8; ++kind) {
        for (std::uint32_t const count : {manyInts - 1, manyInts, many}) {
            EXPECT_FALSE(readsGroups(Bytes().u8(kind).u32(count).u8(0))) << kind;
        }
    }
    for (unsigned kind : {9U, 255U}) EXPECT_FALSE(readsGroups(Bytes().u8(kind).u32(0).u8(0))) << kind;
    EXPECT_FALSE(readsGroups(Bytes().u8(5).u32(1).u32(many).u8(0)));
    EXPECT_FALSE(readsGroups(Bytes().u8(5).u32(2).u32(1).u32(many).i32(0).i32(0).u8(0)));
    // Atoms take no bytes: a million and the length of the file, over all levels, and no more.
    EXPECT_TRUE(readsGroups(Bytes().u8(1).u32(500'000).u8(1).u32(500'000).u8(0)));
    EXPECT_FALSE(readsGroups(Bytes().u8(1).u32(500'000).u8(1).u32(501'000).u8(0)));
}

TEST_F(QltDamage, CountsOfLevelsAttributesAndData) {
    for (std::uint32_t const count : {0U, 1U, 3U, many}) EXPECT_FALSE(reads(Section{.numLevels = count})) << count;
    EXPECT_FALSE(reads(Section{.atomAttributes = Bytes().u32(many)}));
    for (unsigned type : {1U, 2U, 3U, 4U}) {
        std::string const values = type == 3 ? std::string("p\0q\0", 4) : std::string(8, 'v');
        for (std::uint32_t const count : {1U, 2U, 3U, manyInts, many}) {
            Bytes const attribute = Bytes().u32(1).u8(type).text("a").u32(count).raw(values);
            EXPECT_EQ(reads(Section{.atomAttributes = attribute}), type < 4 && count == 2) << type << ' ' << count;
        }
    }
    EXPECT_FALSE(readsData(Bytes().u32(many)));
    EXPECT_FALSE(readsData(Bytes().u32(1).u8(3).text("d").u64(~0ULL)));
    EXPECT_FALSE(readsData(Bytes().u32(1).u8(9).text("d").u32(0)));
    EXPECT_TRUE(readsData(Bytes().u32(1).u8(1).text("d").i32(5)));
    EXPECT_FALSE(readsData(Bytes().u32(2).u8(1).text("d").i32(5).u8(1).text("d").i32(5))) << "the name comes twice";
    EXPECT_TRUE(reads(Section{.rest = std::string(100, '\0')}));
    EXPECT_FALSE(reads(Section{.rest = std::string("\0\0x", 3)}));
}

TEST_F(QltDamage, References) {
    for (int index : {-1, 3, std::numeric_limits<int>::min(), 0x7FFFFFFF}) {
        EXPECT_FALSE(readsBonds(Bytes().u8(2).u32(1).i32(0).i32(index).u8(0))) << index;
        EXPECT_FALSE(readsBonds(Bytes().u8(4).u32(1).i32(0).i32(index).i32(index).u8(0))) << index;
        EXPECT_FALSE(readsGroups(Bytes().u8(3).u32(1).i32(index).i32(0).u8(0))) << index;
        EXPECT_FALSE(readsGroups(Bytes().u8(6).u32(1).i32(0).i32(1).i32(0).i32(index).u8(0))) << index;
        EXPECT_FALSE(readsGroups(Bytes().u8(6).u32(1).i32(index).i32(0).i32(0).i32(1).u8(0))) << "level " << index;
    }
    EXPECT_FALSE(readsBonds(Bytes().u8(2).u32(1).i32(0).i32(2).u8(0))) << "one beyond the last atom";
    EXPECT_TRUE(readsGroups(Bytes().u8(6).u32(1).i32(0).i32(0).i32(1).i32(0).u8(0)));
    EXPECT_FALSE(readsBonds(Bytes().u8(5).u32(1).u32(2).i32(0).i32(0).i32(0).i32(9).u8(0))) << "a list as a bond";
    // Lists and ranges name what they like, themselves included.
    EXPECT_TRUE(readsGroups(Bytes().u8(5).u32(1).u32(2).i32(2).i32(0).i32(-4).i32(9).u8(0)));
    EXPECT_TRUE(readsGroups(Bytes().u8(4).u32(1).i32(2).i32(-5).i32(0x7FFFFFFF).u8(0)));
}

/// Many small records that each ask for a value ahead must not add up to many times the file.
TEST_F(QltDamage, ManyAttributesOfManyAtoms) {
    constexpr std::uint32_t numAttributes = 200'000;
    Section section{.atoms = Bytes().u8(1).u32(1'000'000).u8(0), .atomAttributes = Bytes().u32(numAttributes)};
    for (std::uint32_t i = 0; i < numAttributes; ++i) section.atomAttributes.u8(1 + i % 3).text("a").u32(i % 2);
    EXPECT_FALSE(reads(QltFile{section.bytes(), 1'000'000}));
}

} // namespace
