#include "foundation/McFilename.h"
#include "foundation/McHashTable.h"
#include "foundation/McRawData.h"
#include "support/testing.h"

namespace {

using namespace tarnex::test;

TEST(McHashTable, findsOrCreates) {
    McHashTable<long, int> table(-1);
    EXPECT_EQ(table[5], -1);
    EXPECT_EQ(table.count, 1) << "a missing key stays in the table";
    long const cutToTheSameHash = (1L << 40) | 5;
    table[cutToTheSameHash] = 7;
    int& first = table[5];
    for (long key = 100; table.count < 3000; ++key) table[key] = 0;
    first = 3;
    EXPECT_EQ(table[5], 3) << "entries do not move";
    EXPECT_EQ(table[cutToTheSameHash], 7);
    table.removeAll();
    EXPECT_EQ(table[5] + table.count, -1 + 1);
}

TEST(McHashTable, turnsChainsRoundAsItGrows) {
    McHashTable<int, int> table(0);
    std::string chains;
    for (int key : {0, 4, 1 << 7, 8, 1 << 21}) {
        table[key] = 1;
        for (int i = 0; i <= table.mask; ++i) {
            for (auto* entry = table.buckets[i]; entry; entry = entry->next) chains += std::to_string(entry->key) + " ";
            chains += i < table.mask ? "| " : "\n";
        }
    }
    EXPECT_EQ(chains, "0 | \n4 0 | \n4 0 | 128 \n0 4 8 | 128 | | \n0 4 8 | 2097152 128 | | \n");
}

TEST(McFilename, knowsTheParts) {
    struct Case {
        char const *path, *directory, *base, *extension;
    };
    for (Case const& c : {Case{"a/b/c.gro", "a/b/", "c.gro", ".gro"}, Case{"c.tar.gz", "", "c.tar.gz", ".gz"},
                          Case{"a.b/c", "a.b/", "c", ""}, Case{"a.b/", "a.b/", "", ""},
                          Case{"/.profile", "/", ".profile", ""}, Case{"", "", "", ""}}) {
        McFilename const name(c.path);
        McString directory("before");
        name.dirname(directory);
        EXPECT_STREQ(directory, c.directory) << c.path;
        EXPECT_STREQ(name.basename(), c.base) << c.path;
        EXPECT_STREQ(name.extension(), c.extension) << c.path;
    }
    McFilename name("C:\\data\\x/y.pdb");
    name.fixSlashes();
    name.dirname(name);
    EXPECT_STREQ(name, "C:/data/x/");
}

TEST(McRawData, isBigEndianAndCountsWholeElements) {
    std::unique_ptr<FILE, int (*)(FILE*)> const file(std::tmpfile(), std::fclose);
    int integers[] = {1, -2};
    float single = 1.5F;
    char text[14] = "ab";
    McRawData::writeBigEndian(text, 2, file.get());
    McRawData::writeBigEndian(integers, 2, file.get());
    McRawData::writeBigEndian(&single, 1, file.get());
    EXPECT_EQ(integers[0], 1) << "the source keeps its order";
    std::vector<double> written(5000);
    for (std::size_t i = 0; i < written.size(); ++i) written[i] = static_cast<double>(i) - 2.0;
    McRawData::writeBigEndian(written.data(), written.size(), file.get());
    std::fputs("half", file.get());

    std::rewind(file.get());
    EXPECT_EQ(std::fread(text, 1, sizeof text, file.get()), sizeof text);
    EXPECT_EQ(std::string(text, sizeof text), std::string("ab\0\0\0\1\xff\xff\xff\xfe\x3f\xc0\0\0", 14));
    EXPECT_EQ(std::fgetc(file.get()), 0xc0) << "of -2 in double precision";
    std::fseek(file.get(), -1, SEEK_CUR);
    std::vector<double> read(written.size() + 2);
    EXPECT_EQ(McRawData::readBigEndian(read.data(), read.size(), file.get()), written.size());
    read.resize(written.size());
    EXPECT_EQ(read, written);
}

} // namespace
