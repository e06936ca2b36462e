#include "textio/StreamExtractor.h"

#include "foundation/CLocale.h"
#include "textio/plainNumber.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

constexpr std::ptrdiff_t lookAheadSize = 64;
/// A number that begins in front of the last of these characters may be loaded as two words.
constexpr std::size_t padding = 2 * tarnex::wordLength;

constexpr bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool isSign(char c) {
    return c == '+' || c == '-';
}

/// Sets the high bit of the first character that is no digit, in a word of characters that were xored with '0'. A point
/// does not disturb the characters above it.
constexpr std::uint64_t markNonDigits(std::uint64_t word) {
    return (word | (word + tarnex::repeated(0x76))) & tarnex::repeated(static_cast<char>(0x80));
}

/// A number as long as its text is decimal digits and a point, in single precision.
struct DecimalText {
    /// 10^10 is the largest power of ten that is exact.
    static constexpr std::array<float, 11> powersOfTen = {1e0F, 1e1F, 1e2F, 1e3F, 1e4F, 1e5F,
                                                          1e6F, 1e7F, 1e8F, 1e9F, 1e10F};
    static constexpr std::uint64_t largestExactInteger = std::uint64_t{1} << 24U;
    static constexpr std::ptrdiff_t safeDigits = 18;

    std::uint64_t digits = 0;
    std::ptrdiff_t count = 0;
    std::ptrdiff_t decimals = 0;
    /// Behind the last character.
    char const* end;

    explicit DecimalText(char const* first) : end(first) {
        count = takeDigits();
        if (*end != '.') return;
        ++end;
        decimals = takeDigits();
        count += decimals;
    }

    /// The value is one correctly rounded operation away, since both operands are exact (W. D. Clinger, "How to Read
    /// Floating Point Numbers Accurately", 1990).
    bool isSimple() const {
        return count <= safeDigits && digits <= largestExactInteger &&
               decimals < static_cast<std::ptrdiff_t>(powersOfTen.size());
    }
    float value() const {
        return static_cast<float>(static_cast<std::int32_t>(digits)) / powersOfTen[static_cast<std::size_t>(decimals)];
    }

private:
    std::ptrdiff_t takeDigits() {
        char const* const first = end;
        for (; isDigit(*end); ++end) digits = digits * 10 + static_cast<unsigned>(*end - '0');
        return end - first;
    }
};

/// Takes a number of at most 7 digits and point out of one word, without exponent. Returns its end, or null.
char const* parseShortFloat(char const* first, float& value) {
    std::uint64_t digits = tarnex::loadWord(first) ^ tarnex::repeated('0');
    std::uint64_t others = markNonDigits(digits);
    std::ptrdiff_t length = std::countr_zero(others) / 8;
    std::ptrdiff_t count = length;
    std::ptrdiff_t decimals = 0;
    if (others && first[length] == '.') {
        others &= others - 1;
        std::uint64_t const before = (std::uint64_t{1} << (8 * length)) - 1;
        digits = (digits & before) << 8U | (digits & ~(before << 8U | 0xffU));
        count = std::countr_zero(others) / 8 - 1;
        decimals = count - length;
        length = count + 1;
    }
    if (!others || count < 1 || first[length] == 'e' || first[length] == 'E') return nullptr;
    auto const integer = static_cast<std::int32_t>(tarnex::joinDigits(tarnex::alignRight(digits, length)));
    value = static_cast<float>(integer) / DecimalText::powersOfTen[static_cast<std::size_t>(decimals)];
    return first + length;
}

/// The end of an exponent that begins at `first`, or `first` if it is none.
char const* passExponent(char const* first) {
    if (*first != 'e' && *first != 'E') return first;
    char const* at = first + 1;
    if (isSign(*at)) ++at;
    if (!isDigit(*at)) return first;
    while (isDigit(*at)) ++at;
    return at;
}

/// Takes a number without sign. Returns its end, or null if it is none or outside the range.
char const* parseFloat(char const* first, float& value) {
    if (char const* const behind = parseShortFloat(first, value)) return behind;
    DecimalText const text(first);
    if (text.count == 0) return nullptr;
    char const* const behind = passExponent(text.end);
    if (behind == text.end) {
        if (*behind == 'e' || *behind == 'E') return nullptr;
        if (text.isSimple()) {
            value = text.value();
            return behind;
        }
    }
    return std::from_chars(first, behind, value).ec == std::errc() ? behind : nullptr;
}

} // namespace

namespace tarnex {

StreamExtractor::StreamExtractor(std::istream& stream, std::size_t blockSize)
    : source(stream), room(std::max<std::size_t>(blockSize, 1)), block(std::make_unique<char[]>(room + padding)),
      at(block.get()), end(at), failed(stream.fail()), ended(stream.eof()) {}

StreamExtractor& StreamExtractor::operator>>(int& value) {
    if (beginsField() && !takeShort(value)) takeAny(value);
    return *this;
}

StreamExtractor& StreamExtractor::operator>>(float& value) {
    if (beginsField() && !takeShort(value)) takeAny(value);
    return *this;
}

StreamExtractor& StreamExtractor::operator>>(std::string_view& word) {
    word = {};
    if (!beginsField()) return *this;
    std::ptrdiff_t length = 0;
    for (;; ++length) {
        if (at + length == end && !refill()) {
            ended = true;
            break;
        }
        if (isSpace(at[length])) break;
    }
    word = {at, static_cast<std::size_t>(length)};
    at += length;
    return *this;
}

void StreamExtractor::skipWhiteSpace() {
    if (!good()) return;
    while (hasNext()) {
        at = skipBlanks(at, end);
        if (at == end) continue;
        if (!isSpace(*at)) return;
        ++at;
    }
    ended = true;
}

std::size_t StreamExtractor::ignore(std::size_t count, char delimiter) {
    if (!begins()) return 0;
    std::size_t taken = 0;
    while (taken < count) {
        if (!hasNext()) {
            ended = true;
            break;
        }
        std::size_t const piece = std::min(count - taken, static_cast<std::size_t>(end - at));
        auto const* found = static_cast<char const*>(std::memchr(at, delimiter, piece));
        char const* const next = found ? found + 1 : at + piece;
        taken += static_cast<std::size_t>(next - at);
        at = next;
        if (found) break;
    }
    return taken;
}

void StreamExtractor::ignoreLine() {
    ignore(std::numeric_limits<std::size_t>::max(), '\n');
}

void StreamExtractor::ignoreLineInPieces(std::size_t pieceSize) {
    while (ignore(pieceSize, '\n') == pieceSize) {
    }
}

std::size_t StreamExtractor::getLine(char* line, std::size_t size) {
    std::size_t stored = 0;
    if (begins()) {
        for (; stored + 1 < size && hasNext() && *at != '\n'; ++at) line[stored++] = *at;
        bool const lineEnds = takeIf('\n');
        ended = !lineEnds && at == end;
        failed = !lineEnds && (!ended || stored == 0);
    }
    if (size > 0) line[stored] = '\0';
    return stored;
}

void StreamExtractor::giveBack() {
    if (at != end) source.rdbuf()->pubseekoff(at - end, std::ios::cur, std::ios::in);
    at = end;
    if (failed) source.setstate(std::ios::failbit);
    if (ended) source.setstate(std::ios::eofbit);
}

/// What stands in front of every extraction: it fails where the state is not good.
bool StreamExtractor::begins() {
    if (!good()) failed = true;
    return !failed;
}

bool StreamExtractor::beginsField() {
    if (at != end && !isSpace(*at) && good()) return true;
    skipWhiteSpace();
    return begins();
}

/// Reads the next block behind what has not been taken yet; false at the end of the file. A block that is full of one
/// word grows.
bool StreamExtractor::refill() {
    auto const rest = static_cast<std::size_t>(end - at);
    std::unique_ptr<char[]> old;
    char const* const from = at;
    beforeBlock += at - block.get();
    if (rest == room) {
        room *= 2;
        old = std::move(block);
        block = std::make_unique<char[]>(room + padding);
    }
    std::memmove(block.get(), from, rest);
    at = block.get();
    std::streamsize got = 0;
    try {
        got = source.rdbuf()->sgetn(block.get() + rest, static_cast<std::streamsize>(room - rest));
    } catch (std::ios_base::failure const&) {
        got = 0; // A file that cannot be read, as a directory, ends here.
    }
    end = at + rest + got;
    std::memset(block.get() + rest + got, 0, padding);
    exhausted = got == 0;
    return got > 0;
}

/// Sees to it that an ordinary number is whole in the block.
void StreamExtractor::lookAhead() {
    if (end - at<lookAheadSize&& static_cast<std::ptrdiff_t>(room)> lookAheadSize && !exhausted) refill();
}

/// Takes an integer of at most 7 digits that does not touch the end of the block.
bool StreamExtractor::takeShort(int& value) {
    lookAhead();
    char const* const first = at + (isSign(*at) ? 1 : 0);
    std::uint64_t const word = loadWord(first) ^ repeated('0');
    std::ptrdiff_t const length = std::countr_zero(markNonDigits(word)) / 8;
    if (length < 1 || length >= wordLength || first + length >= end) return false;
    auto const magnitude = static_cast<int>(joinDigits(alignRight(word, length)));
    value = *at == '-' ? -magnitude : magnitude;
    at = first + length;
    return true;
}

/// Takes a number that does not touch the end of the block and neither overflows nor underflows.
bool StreamExtractor::takeShort(float& value) {
    lookAhead();
    char const* const first = at + (isSign(*at) ? 1 : 0);
    float magnitude = 0;
    char const* const behind = parseFloat(first, magnitude);
    if (!behind || behind >= end) return false;
    value = *at == '-' ? -magnitude : magnitude;
    at = behind;
    return true;
}

void StreamExtractor::takeAny(int& value) {
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    bool const negative = *at == '-';
    if (isSign(*at)) ++at;
    std::int64_t magnitude = 0;
    bool found = false;
    for (; hasNext() && isDigit(*at); ++at) {
        found = true;
        magnitude = std::min(magnitude * 10 + (*at - '0'), 2 * most);
    }
    ended = at == end;
    failed = !found || magnitude > most + (negative ? 1 : 0);
    magnitude = std::min(magnitude, most + (negative ? 1 : 0));
    value = static_cast<int>(negative ? -magnitude : magnitude);
}

void StreamExtractor::takeAny(float& value) {
    std::string const text = takeFloatText();
    ended = !hasNext();
    char* behind = nullptr;
    value = strtof_l(text.c_str(), &behind, ScopedCLocale::object());
    failed = text.empty() || *behind != '\0';
    if (failed) value = 0;
    if (std::isinf(value)) {
        failed = true;
        value = std::copysign(std::numeric_limits<float>::max(), value);
    }
}

/// All characters that can belong to a number so far, whether they make one in the end or not.
std::string StreamExtractor::takeFloatText() {
    std::string text;
    if (isSign(*at)) text += *at++;
    bool mantissa = takeDigits(text);
    if (takeIf('.')) {
        text += '.';
        mantissa = takeDigits(text) || mantissa;
    }
    if (mantissa && (takeIf('e') || takeIf('E'))) {
        text += 'e';
        if (hasNext() && isSign(*at)) text += *at++;
        takeDigits(text);
    }
    return text;
}

bool StreamExtractor::takeDigits(std::string& text) {
    bool found = false;
    for (; hasNext() && isDigit(*at); found = true) text += *at++;
    return found;
}

bool StreamExtractor::takeIf(char c) {
    if (!hasNext() || *at != c) return false;
    ++at;
    return true;
}

} // namespace tarnex
