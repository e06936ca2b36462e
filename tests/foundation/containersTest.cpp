#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "foundation/McString.h"
#include "support/testing.h"

#include <algorithm>
#include <random>
#include <stdexcept>

namespace {

using namespace tarnex::test;

TEST(McDArray, growsByHalfAndNeverShrinks) {
    McDArray<int> array;
    std::vector<std::int64_t> capacities{0};
    for (int i = 0; i < 10; ++i) {
        array.append(i);
        if (capacities.back() != array.capacity) capacities.push_back(array.capacity);
    }
    EXPECT_EQ(capacities, (std::vector<std::int64_t>{0, 1, 2, 3, 4, 6, 9, 13}));
    array.resize(14);
    EXPECT_EQ(array.capacity, 15) << "half more than the ten elements in use";
    array.resize(-5);
    EXPECT_EQ(array.size, 0);
    array.append(7);
    EXPECT_EQ(McDArray<int>(array).capacity, 1);
    EXPECT_THROW(array.reserve(INT64_MAX / 2), std::bad_alloc);
    EXPECT_EQ(array[0] + array.capacity, 7 + 15);
}

/// Notes what is copied and destroyed, and fails to be copied once no copies are left.
struct Noted {
    static inline std::string notes;
    static inline int copiesLeft = 1000;

    char letter;
    explicit Noted(char c = '-') : letter(c) {}
    Noted(Noted const& other) : letter(other.letter) {
        if (copiesLeft-- == 0) throw std::runtime_error("no more copies");
        notes += letter;
    }
    ~Noted() { (notes += '~') += letter; }
};

TEST(McDArray, copiesFromTheLastAndDestroysFromTheFirst) {
    {
        McDArray<Noted> array(1);
        for (char letter : {'a', 'b', 'c'}) array.append(Noted(letter));
        Noted::notes.clear();
        array.reserve(100);
        McDArray<Noted> copy(array);
        array.resize(2);
        copy.clear();
        EXPECT_EQ(Noted::notes, "cba-~b~c~-~a~b~c");

        Noted::notes.clear();
        Noted::copiesLeft = 1;
        EXPECT_THROW(array.insert(0, 2, McDArray<Noted>(2).data), std::runtime_error);
    }
    EXPECT_EQ(Noted::notes, "-~-~-~-~-~a") << "a failing copy leaves the array whole";
}

TEST(McDArray, takesItsOwnElements) {
    std::mt19937 random(5);
    McDArray<McString> array;
    std::vector<std::string> expected;
    auto const below = [&](std::int64_t n) { return static_cast<std::int64_t>(random() % static_cast<unsigned>(n)); };
    for (int i = 0; i < 3000; ++i) {
        if (array.size < 2 || array.size > 60) {
            array.resize(array.size / 8);
            expected.resize(expected.size() / 8);
            expected.emplace_back(random() % 40, 'x');
            array.append(expected.back().c_str());
        }
        std::int64_t const from = below(array.size), count = 1 + below(array.size - from);
        std::int64_t const position = i % 2 == 0 ? array.size : below(array.size + 1);
        std::vector<std::string> const block(expected.begin() + from, expected.begin() + from + count);
        array.insert(position, count, array.data + from);
        expected.insert(expected.begin() + position, block.begin(), block.end());
        array.append(array[0]);
        expected.push_back(std::string(expected[0]));
    }
    EXPECT_TRUE(std::equal(array.begin(), array.end(), expected.begin(), expected.end(),
                           [](McString const& a, std::string const& b) { return a == b.c_str(); }));
}

TEST(McString, countsItsTerminatorAndGrowsOnce) {
    for (McString const& empty : {McString(), McString("abc", 0, 0), McString("abc", 1, -1), McString(nullptr)}) {
        EXPECT_STREQ(empty, "");
        EXPECT_EQ(empty.size, 1);
    }
    EXPECT_EQ(McString("abc", 1, 2).capacity, 3);
    EXPECT_EQ((McString("a\0b", 0, 3) + "cd").size, 6);
    EXPECT_STREQ(McString("ab") + nullptr, "ab");
    McString text;
    EXPECT_EQ(text.capacity, 16);
    text.append("0123456789012345");
    EXPECT_EQ(text.capacity, 17);
    text.append('6');
    EXPECT_EQ(text.capacity, 24);
    EXPECT_STREQ(text, "01234567890123456");
}

TEST(McString, takesItsOwnText) {
    McString text("abc");
    for (int i = 0; i < 6; ++i) text += text;
    text.append(text.data + 190);
    text.append(text.data + text.length(), 1);
    EXPECT_EQ(text.length(), 195) << "the last is its own terminator";
    text = text.data + 187;
    EXPECT_STREQ(text, "bcabcbc");
    text.printf("%s, %300s", text.data, text.data + 5);
    EXPECT_EQ(std::string(text), "bcabcbc, " + std::string(298, ' ') + "bc");
    McString cleared("text");
    cleared.clear();
    text = cleared;
    EXPECT_EQ(text.size, 1);
}

struct Shared : McHandable {
    static inline std::string events;
    explicit Shared(char letter) : name(letter) {}
    ~Shared() override {
        events += name;
        if (holder && static_cast<Shared*>(*holder)) events += " is still in the handle";
    }
    void notifyDelete() override { events += '!'; }

    char name;
    McHandle<Shared>* holder = nullptr;
    McHandle<Shared> next;
};

TEST(McHandle, keepsWhatIsHeldAndDeletesTheRest) {
    McHandle<Shared> handle(new Shared('a'));
    Shared* const object = handle;
    handle = object;
    handle = *&handle;
    handle = static_cast<McHandle<Shared>&&>(handle);
    EXPECT_EQ(Shared::events, "");
    EXPECT_EQ(object->refCount, 1);

    // A list that drops its front: the assigned handle goes with the old object.
    handle->next = new Shared('b');
    handle->next->next = new Shared('c');
    handle = handle->next;
    handle = static_cast<McHandle<Shared>&&>(handle->next);
    EXPECT_EQ(Shared::events, "!a!b");
    handle->holder = &handle;
    handle = nullptr;
    EXPECT_EQ(Shared::events, "!a!b!c");
    (new Shared('d'))->unref();
    EXPECT_EQ(Shared::events, "!a!b!c!d") << "a count below 0 deletes as well";

    handle = new Shared('e');
    Shared* const handedOut = handle.handOut();
    EXPECT_EQ(handedOut->refCount, 0);
    McDArray<McHandle<Shared>> array;
    for (char letter = 'f'; letter < 'l'; ++letter) array.append(new Shared(letter));
    array.append(handedOut);
    McDArray<McHandle<Shared>> copy(array);
    array.clear();
    EXPECT_EQ(Shared::events, "!a!b!c!d");
    copy.clear();
    EXPECT_EQ(Shared::events, "!a!b!c!d!f!g!h!i!j!k!e");
}

} // namespace
