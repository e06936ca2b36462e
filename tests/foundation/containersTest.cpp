#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "foundation/McString.h"
#include "support/testing.h"

#include <algorithm>
#include <random>

namespace {

using namespace tarnex::test;

TEST(McDArray, growsByHalfAndNeverShrinks) {
    McDArray<int> array;
    std::vector<std::int64_t> capacities;
    for (int i = 0; i < 10; ++i) {
        array.append(i);
        capacities.push_back(array.capacity);
    }
    EXPECT_THAT(capacities, ElementsAre(1, 2, 3, 4, 6, 6, 9, 9, 9, 13));
    array.resize(14);
    EXPECT_EQ(array.capacity, 15) << "half more than the ten elements in use";
    array.resize(-5);
    array.append(7);
    EXPECT_EQ(McDArray<int>(array).capacity, 1);
    EXPECT_THROW(array.reserve(INT64_MAX / 2), std::bad_alloc);
    EXPECT_EQ(array[0] + array.capacity, 7 + 15);
}

/// Notes what is copied and destroyed.
struct Noted {
    static inline std::string notes;
    char letter;
    explicit Noted(char c = '-') : letter(c) {}
    Noted(Noted const& other) : letter(other.letter) { notes += letter; }
    ~Noted() { (notes += '~') += letter; }
};

TEST(McDArray, copiesFromTheLastAndDestroysFromTheFirst) {
    McDArray<Noted> array(1);
    for (char letter : {'a', 'b', 'c'}) array.append(Noted(letter));
    Noted::notes.clear();
    array.reserve(100);
    McDArray<Noted> copy(array);
    array.resize(2);
    copy.clear();
    EXPECT_EQ(Noted::notes, "cba-~b~c~-~a~b~c");
}

TEST(McDArray, takesItsOwnElements) {
    std::mt19937 random(5);
    auto const below = [&](std::int64_t n) { return static_cast<std::int64_t>(random() % static_cast<unsigned>(n)); };
    for (int i = 0; i < 500; ++i) {
        std::vector<std::string> expected{"the first", "the second"};
        McDArray<McString> array;
        for (std::string const& text : expected) array.append(text.c_str());
        for (int k = 0; k < 6; ++k) {
            std::int64_t const from = below(array.size), count = 1 + below(array.size - from);
            std::int64_t const position = k % 2 == 0 ? array.size : below(array.size + 1);
            std::vector<std::string> const block(expected.begin() + from, expected.begin() + from + count);
            array.insert(position, count, array.data + from);
            expected.insert(expected.begin() + position, block.begin(), block.end());
            array.append(array[0]);
            expected.push_back(std::string(expected[0]));
        }
        EXPECT_TRUE(std::equal(array.begin(), array.end(), expected.begin(), expected.end(),
                               [](McString const& a, std::string const& b) { return a == b.c_str(); }));
    }
}

TEST(McString, countsItsTerminatorAndGrowsOnce) {
    for (McString const& empty : {McString(), McString("abc", 0, 0), McString("abc", 1, -1), McString(nullptr)}) {
        EXPECT_STREQ(empty, "");
        EXPECT_EQ(empty.size, 1);
    }
    EXPECT_EQ((McString("a\0b", 0, 3) + "cd" + nullptr).size, 6);
    EXPECT_EQ(McString("abc", 1, 2).capacity, 3);
    McString text;
    EXPECT_EQ(text.capacity, 16);
    text.append("0123456789012345");
    text.append('6');
    EXPECT_EQ(text.capacity, 24) << "half more than the 16 and the terminator";
}

TEST(McString, takesItsOwnText) {
    McString text("abc");
    EXPECT_TRUE(text < "abd" && "abd" > text && text >= "abc" && !("abd" <= text) && McString("B") < McString("a"));
    for (int i = 0; i < 6; ++i) text += text;
    text.append(text.data + 190);
    text.append(text.data + text.length(), 1);
    EXPECT_EQ(text.length(), 195) << "the last is its own terminator";
    text = text.data + 187;
    EXPECT_STREQ(text, "bcabcbc");
    for (int width : {246, 247, 248}) {
        text = "bcabcbc";
        text.printf("%s, %*s", text.data, width, text.data + 5);
        EXPECT_EQ(std::string(text), "bcabcbc, " + std::string(static_cast<std::size_t>(width - 2), ' ') + "bc");
    }
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
    handle->holder = &handle;
    handle = nullptr;
    (new Shared('d'))->unref();
    EXPECT_EQ(Shared::events, "!a!b!c!d") << "a count below 0 deletes as well";

    handle = new Shared('e');
    Shared* const handedOut = handle.handOut();
    EXPECT_EQ(handedOut->refCount, 0);
    McDArray<McHandle<Shared>> array;
    for (char letter : {'f', 'g'}) array.append(new Shared(letter));
    array.append(handedOut);
    McDArray<McHandle<Shared>> copy(array);
    array.clear();
    EXPECT_EQ(Shared::events, "!a!b!c!d");
    copy.clear();
    EXPECT_EQ(Shared::events, "!a!b!c!d!f!g!e");
}

} // namespace
