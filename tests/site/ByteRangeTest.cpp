// Parts of files as players ask for them, and what is no such part.
#include "core/site/ByteRange.h"

#include <gtest/gtest.h>

namespace pixmora {
namespace {

TEST(ReadByteRange, ReadsOnePartAndLeavesTheRestToTheWholeFile) {
    const std::tuple<const char *, std::int64_t, std::int64_t> cases[] = {
        // header, first byte, length
        {"bytes=0-", 0, 1000},    {"bytes=0-499", 0, 500},  {"bytes=500-5000", 500, 500}, {"bytes=999-999", 999, 1},
        {"bytes=-300", 700, 300}, {"bytes=-3000", 0, 1000}, {"bytes=1000-", 0, 0},        {"bytes=-0", 0, 0}};
    for (const auto &[header, first, length] : cases) {
        const auto range = ReadByteRange(header, 1000);
        ASSERT_TRUE(range) << header;
        EXPECT_EQ(range->Length, length) << header;
        EXPECT_EQ(range->Length > 0 ? range->First : 0, first) << header;
    }
    for (const char *header : {"bytes=5-4", "", "bytes=", "bytes=-", "bytes=a-b", "bytes=1-2,4-5", "bytes=--5",
                               "bytes=+1-2", "items=0-1", "bytes=0 -1", "bytes=99999999999999999999-"})
        EXPECT_FALSE(ReadByteRange(header, 1000)) << header;
    EXPECT_EQ(ReadByteRange("bytes=0-", 0)->Length, 0) << "an empty file";
}

}  // namespace
}  // namespace pixmora
