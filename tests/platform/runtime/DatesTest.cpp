// Dates: arithmetic over the calendar, their texts, and reading them back.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "platform/runtime/Clock.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

TEST(Dates, CountsMidnights) {
    EXPECT_EQ(DateDiffDays(MakeDate(2004, 3, 1, 23, 59, 59), MakeDate(2004, 3, 2)), 1);
    EXPECT_EQ(DateDiffDays(MakeDate(2004, 3, 1), MakeDate(2004, 3, 1, 23, 59, 59)), 0);
    EXPECT_EQ(DateDiffDays(MakeDate(2004, 3, 1), MakeDate(2004, 2, 28)), -2);
    EXPECT_EQ(DateDiffDays(MakeDate(1969, 12, 31, 23), MakeDate(1970, 1, 1)), 1);
    EXPECT_EQ(AddDays(MakeDate(2004, 1, 1, 5), -32000), MakeDate(1916, 5, 22, 5));
}

TEST(Dates, PrintsEveryForm) {
    const DateTime afternoon = MakeDate(2004, 3, 1, 16, 5, 6);
    EXPECT_EQ(ShortDate(afternoon), "3/1/2004");
    EXPECT_EQ(LongDate(afternoon), "Monday, March 1, 2004");
    EXPECT_EQ(DateText(afternoon), "3/1/2004 4:05:06 PM");
    EXPECT_EQ(IsoDate(afternoon), "2004-03-01 16:05:06");
    EXPECT_EQ(DateText(MakeDate(2004, 12, 31)), "12/31/2004");
    EXPECT_EQ(IsoDate(MakeDate(2004, 12, 31)), "2004-12-31");
    EXPECT_EQ(DateText(MakeDate(2004, 12, 31, 0, 0, 1)), "12/31/2004 12:00:01 AM");
    EXPECT_EQ(DateText(MakeDate(2004, 12, 31, 12)), "12/31/2004 12:00:00 PM");
    EXPECT_EQ(LongDate(MakeDate(1960, 2, 29, 1)), "Monday, February 29, 1960");
    EXPECT_EQ(MonthName(12), "December");
    EXPECT_THROW(MonthName(0), RunTimeError);
    EXPECT_THROW(MonthName(13), RunTimeError);
}

TEST(Dates, ReadsBackWhatItPrints) {
    for (const DateTime date : {MakeDate(2004, 3, 1), MakeDate(2004, 3, 1, 16, 5, 6), MakeDate(2004, 2, 29, 0, 0, 1),
                                MakeDate(1999, 12, 31, 12, 59, 59), MakeDate(1916, 5, 23, 11)}) {
        EXPECT_EQ(ParseDate(DateText(date)), date) << DateText(date);
        EXPECT_EQ(ParseDate(IsoDate(date)), date) << IsoDate(date);
    }
    EXPECT_EQ(ParseDate("3/1/2004 16:05:06"), MakeDate(2004, 3, 1, 16, 5, 6));
}

TEST(Dates, RefusesWhatIsNoDate) {
    for (const char *text :
         {"", "today", "2/30/2004", "2003-02-29", "13/1/2004", "0/1/2004", "3/1", "3/1/04", "3-1-2004", "2004-03/01",
          "3/1/2004 ", "3/1/2004 4:05", "3/1/2004 13:05:06 PM", "3/1/2004 0:05:06 AM", "2004-03-01 24:00:00",
          "2004-03-01 1:60:00", "2004-03-01T01:00:00", "2004-03-01 1:00:00x", "-2004-03-01"}) {
        EXPECT_THROW(ParseDate(text), RunTimeError) << text;
    }
}

TEST(Dates, TurnsFileTimesToLocalTime) {
    EXPECT_EQ(LocalTime(1078157106), MakeDate(2004, 3, 1, 16, 5, 6));
    EXPECT_EQ(LocalTime(-1), MakeDate(1969, 12, 31, 23, 59, 59));
    EXPECT_EQ(LocalTime(std::numeric_limits<std::int64_t>::max()), DateTime{}) << "no year holds it";

    setenv("TZ", "EST5EDT,M3.2.0,M11.1.0", 1);
    tzset();
    EXPECT_EQ(LocalTime(1078157106), MakeDate(2004, 3, 1, 11, 5, 6));
    EXPECT_EQ(LocalTime(1091376306), MakeDate(2004, 8, 1, 12, 5, 6)) << "in summer";
    setenv("TZ", "UTC", 1);
    tzset();
}

}  // namespace pixmora
