// The run time's conversions between numbers and text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pixmora {

/// Text to a 16-bit integer. Blanks around are ignored; a fraction is rounded half to even; "&H" takes the
/// hexadecimal digits of a bit pattern, so that "&HFFFF" is -1 here and 65535 as a Long.
/// @throws RunTimeError TypeMismatch when it is no number, Overflow when it leaves the range.
std::int16_t CInt(std::string_view text);
/// The same for 32 bits.
std::int32_t CLng(std::string_view text);
/// The same for a Double, unrounded.
double CDbl(std::string_view text);
/// Half to even, as the run time rounds. @throws RunTimeError Overflow beyond 32 bits.
std::int32_t RoundToLong(double value);
/// Whether CDbl would take the text.
bool IsNumeric(std::string_view text);

/// The number at the text's head, blanks ignored; 0 when there is none, the largest Double for what is beyond it. Never
/// throws.
double Val(std::string_view text);

/// The sum, checked. @throws RunTimeError Overflow when it leaves 32 bits.
std::int32_t AddLong(std::int32_t left, std::int32_t right);
/// The product, checked in the same way.
std::int32_t MultiplyLong(std::int32_t left, std::int32_t right);

/// A uniformly drawn number in [0, 1).
double Rnd();

/// Decimal text, at least `digits` wide with zeros in front: (7, 6) is "000007".
std::string FormatPadded(std::int64_t value, int digits);
/// A fixed number of decimals, rounded half away from zero: (2.857, 2) is "2.86". As all texts of a Double, from the 15
/// digits that the run time shows. @throws RunTimeError Overflow for what is no finite number
std::string FormatFixed(double value, int decimals);
/// No decimals, groups of three set off by commas: "12,345".
std::string FormatGrouped(double value);
/// A number as the run time prints it: no exponent for the usual ranges, up to 15 digits, no trailing zeros ("2.5",
/// "40").
std::string NumberText(double value);

/// Scales by 10 to the places, takes the whole part, adds 1 if anything was cut, scales back.
double RoundUpTo(double value, int places);

/// Bytes for people: three significant digits and a unit ("532 bytes", "1.30 KB", "1.21 MB") up to 2000000000, above
/// that GB with two decimals. From 1000 of a unit the next one takes over ("0.97 MB"). Digits beyond the third are cut,
/// not rounded, as the shell does.
std::string FormatByteSize(double bytes);

/// A duration in seconds: whole days and hours "2d 5h"; else minutes and seconds "12m 3s"; else hours and minutes "27h
/// 3m".
std::string FormatElapsed(double seconds, bool inDays, bool inSeconds);

}  // namespace pixmora
