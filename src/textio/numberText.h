#pragma once

#include "foundation/export.h"

#include <cstddef>

/// A number does not fit in its columns. Thrown by value.
struct TARNEX_API FloatConversion_Error {};

// The four functions below return a static buffer of their own, which the next call overwrites; they are not for two
// threads at once. The functions of `namespace tarnex` write the same texts to a place of the caller's.

/// The decimal text of `value`.
TARNEX_API char* itoa2(int value);

/// The part of `value` in front of the decimal point, after rounding to `width` decimals (at most 17), half to even.
/// At least one digit, with a minus also for -0. Throws `FloatConversion_Error` if that makes more than `width`
/// characters.
TARNEX_API char* leftFloatToString(int width, float value);

/// Exactly `digits` (at most 99) characters: the decimals of `value` rounded to that many, without sign. Zeros stand
/// behind the 17th decimal. For an infinity or NaN it is the text "inf" or "nan" (with its sign if it is negative), cut
/// or filled up with zeros.
TARNEX_API char* rightFloatToString(int digits, float value);

/// `value` in exactly `width` characters (at most 20): the left part, a point and as many decimals as fit. Both parts
/// are rounded on their own, so that no carry reaches the integer: 9.99 in 3 characters is "9.0". Throws
/// `FloatConversion_Error` if the left part takes more than `width` - 1 characters.
TARNEX_API char* floatToString(int width, float value);

namespace tarnex {

/// Room for any text of the functions below.
constexpr std::size_t numberTextRoom = 128;

/// The texts of `itoa2`, `leftFloatToString`, `rightFloatToString` and `floatToString`, written to `out` and not
/// terminated. They return the end of the text.
TARNEX_API char* putInt(char* out, int value);
TARNEX_API char* putLeft(char* out, int width, float value);
TARNEX_API char* putRight(char* out, int digits, float value);
TARNEX_API char* putFloat(char* out, int width, float value);

/// The left part, right-aligned in `leftWidth` (at most 19) columns, a point, and the right part of `digits` (at most
/// 99) decimals: 5 and 4 for a coordinate of an SDF file. Throws `FloatConversion_Error` as `leftFloatToString` does.
TARNEX_API char* putParts(char* out, int leftWidth, int digits, float value);

/// As printf writes it with "%*.*f" in the "C" locale, for a `width` of at most 100 and 0 to 20 decimals. It differs
/// from the above: a carry reaches the integer, and a number that is too wide takes more columns.
TARNEX_API char* putDecimal(char* out, int width, int digits, float value);

} // namespace tarnex
