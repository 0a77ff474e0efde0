// Parts of files as players ask for them, and what is no such part.
#include "core/site/ByteRange.h"

#include <gtest/gtest.h>

namespace pixmora {
namespace {

TEST(ReadByteRange, ReadsOnePartAndLeavesTheRestToTheWholeFile) {
    const struct {
        const char *header;
        std::int64_t first;
        std::int64_t length;  // -1: the whole file
    } cases[] = {{"bytes=0-", 0, 1000},
                 {"bytes=0-499", 0, 500},
                 {"bytes=500-5000", 500, 500},
                 {"bytes=999-999", 999, 1},
                 {"bytes=-300", 700, 300},
                 {"bytes=-3000", 0, 1000},
                 {"bytes=1000-", 0, 0},
                 {"bytes=-0", 0, 0},
                 {"bytes=5-4", 0, -1},
                 {"", 0, -1},
                 {"bytes=", 0, -1},
                 {"bytes=-", 0, -1},
                 {"bytes=a-b", 0, -1},
                 {"bytes=1-2,4-5", 0, -1},
                 {"bytes=--5", 0, -1},
                 {"bytes=+1-2", 0, -1},
                 {"items=0-1", 0, -1},
                 {"bytes=0 -1", 0, -1},
                 {"bytes=99999999999999999999-", 0, -1}};
    for (const auto &row : cases) {
        const auto range = ReadByteRange(row.header, 1000);
        EXPECT_EQ(range ? range->Length : -1, row.length) << row.header;
        EXPECT_EQ(range && range->Length > 0 ? range->First : 0, row.first) << row.header;
    }
    EXPECT_EQ(ReadByteRange("bytes=0-", 0)->Length, 0) << "an empty file";
}

}  // namespace
}  // namespace pixmora
