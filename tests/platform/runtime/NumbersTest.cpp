// Numbers from texts and texts from numbers.
#include "platform/runtime/Numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/ErrorOf.h"

namespace pixmora {

namespace {

constexpr ErrorNumber mismatch = ErrorNumber::TypeMismatch;
constexpr ErrorNumber overflow = ErrorNumber::Overflow;

}  // namespace

TEST(Numbers, ReadsALong) {
    const std::pair<const char *, std::int32_t> cases[] = {{"  -12 ", -12},
                                                           {"0.5", 0},
                                                           {"2.5", 2},
                                                           {"-2.5", -2},
                                                           {".75", 1},
                                                           {"1e3", 1000},
                                                           {"25E-1", 2},
                                                           {"2147483647.4", 2147483647},
                                                           {"&H10", 16},
                                                           {"&HFFFFFFFF", -1},
                                                           {" &H0000000041 ", 65},
                                                           {"-2147483648", -2147483647 - 1}};
    for (const auto &[text, value] : cases) EXPECT_EQ(CLng(text), value) << text;
    EXPECT_EQ(CInt("&HFFFF"), -1);
    EXPECT_EQ(CInt("32767.4"), 32767);
}

TEST(Numbers, RefusesWhatIsNoNumber) {
    for (const char *text : {"",      " ",    "a",  "1a",  "1 2",  "--1",  "- 1", ".",   "+",   "e5",      "1e",
                             "1,000", "0x10", "&H", "&HG", "&H 4", "-&H4", "inf", "nan", "1\t", "\xD9\xA1"}) {
        EXPECT_EQ(ErrorOf([&] { CLng(text); }), mismatch) << '"' << text << '"';
        EXPECT_FALSE(IsNumeric(text)) << '"' << text << '"';
    }
    EXPECT_EQ(ErrorOf([] { CLng(std::string_view("1\0", 2)); }), mismatch);
}

TEST(Numbers, OverflowsAtTheRangesEnds) {
    EXPECT_EQ(ErrorOf([] { CInt("32768"); }), overflow);
    EXPECT_EQ(ErrorOf([] { CInt("&H10000"); }), overflow);
    EXPECT_EQ(ErrorOf([] { CLng("2147483647.5"); }), overflow);
    EXPECT_EQ(ErrorOf([] { CLng("&H100000000"); }), overflow);
    EXPECT_EQ(ErrorOf([] { CDbl("1e999"); }), overflow);
    EXPECT_EQ(ErrorOf([] { RoundToLong(std::nan("")); }), overflow);
    EXPECT_EQ(ErrorOf([] { AddLong(std::numeric_limits<std::int32_t>::max(), 1); }), overflow);
    EXPECT_EQ(ErrorOf([] { MultiplyLong(1 << 16, 1 << 15); }), overflow);
    EXPECT_EQ(AddLong(std::numeric_limits<std::int32_t>::max(), -1), std::numeric_limits<std::int32_t>::max() - 1);
    EXPECT_EQ(CDbl("1e-999"), 0);
    EXPECT_EQ(CDbl("-1.25e2"), -125);
}

TEST(Numbers, ValTakesTheNumberAtTheHead) {
    EXPECT_EQ(Val("  1 615 198th Street"), 1615198);
    EXPECT_EQ(Val("-3.5e1x"), -35);
    EXPECT_EQ(Val("1e"), 1);
    EXPECT_EQ(Val(""), 0);
    EXPECT_EQ(Val("-1e999"), std::numeric_limits<double>::lowest());
    EXPECT_EQ(Val(std::string(400, '9')), std::numeric_limits<double>::max());
}

TEST(Numbers, FormatsForPeople) {
    const std::pair<std::string, const char *> cases[] = {
        {FormatPadded(7, 6), "000007"},
        {FormatPadded(-7, 2), "-07"},
        {FormatFixed(2.675, 2), "2.68"},  // rounds the digits that are shown, not the binary fraction
        {FormatFixed(-0.5, 0), "-1"},
        {FormatFixed(-0.001, 2), "0.00"},
        {FormatFixed(1e20, 1), "100000000000000000000.0"},
        {FormatGrouped(999.4), "999"},
        {FormatGrouped(-1234567), "-1,234,567"},
        {FormatElapsed(2 * 86400 + 5 * 3600 + 3599, true, true), "2d 5h"},
        {FormatElapsed(723.9, false, true), "12m 3s"},
        {FormatElapsed(97399, false, false), "27h 3m"},
        {NumberText(-0.0), "0"},
        {NumberText(1.0 / 3), "0.333333333333333"},
        {NumberText(999999999999999), "999999999999999"},
        {NumberText(-1.5e15), "-1.5E+15"},
        {NumberText(0.00002), "2E-05"},
    };
    for (const auto &[text, wanted] : cases) EXPECT_EQ(text, wanted);
    EXPECT_EQ(RoundUpTo(2, 0), 2);
    EXPECT_DOUBLE_EQ(RoundUpTo(2.341, 2), 2.35);
    EXPECT_EQ(ErrorOf([] { FormatFixed(HUGE_VAL, 0); }), overflow);
}

TEST(Numbers, PrintsByteSizesAsTheShell) {
    constexpr double kilo = 1024;
    constexpr double mega = 1024 * 1024;
    const std::pair<double, const char *> cases[] = {{0, "0 bytes"},           {1, "1 byte"},
                                                     {1023, "1023 bytes"},     {1024, "1.00 KB"},
                                                     {130.9 * kilo, "130 KB"}, {13.09 * kilo, "13.0 KB"},
                                                     {1000 * kilo, "0.97 MB"}, {1.219 * mega, "1.21 MB"},
                                                     {2000000000, "1.86 GB"},  {1500.0 * 1024 * mega, "1500.00 GB"}};
    for (const auto &[bytes, text] : cases) EXPECT_EQ(FormatByteSize(bytes), text) << bytes;
}

}  // namespace pixmora
