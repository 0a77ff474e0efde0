// Texts as other programs leave them.
#include "platform/runtime/Encoding.h"

#include <gtest/gtest.h>

namespace pixmora {
namespace {

using namespace std::string_literals;

TEST(Encoding, TakesTheByteOrderMarkOffAndLeavesTheRestAlone) {
    EXPECT_EQ(WithoutByteOrderMark("\xEF\xBB\xBFPrivate*\r\n"), "Private*\r\n");
    EXPECT_EQ(WithoutByteOrderMark("\xFF\xFE\xE9\0t\0\xE9\0"s), "\xC3\xA9t\xC3\xA9");
    for (const std::string &text : {""s, "caf\xE9"s, "\xEF\xBB"s, "caf\xC3\xA9\xEF\xBB\xBF"s})
        EXPECT_EQ(WithoutByteOrderMark(text), text);
}

TEST(Encoding, TellsUtf8FromWhatOnlyLooksLikeIt) {
    for (const char *text : {"", "a\x7F", "\xC3\xA9", "\xF0\x9F\x98\x80"}) EXPECT_TRUE(IsUtf8(text)) << text;
    for (const char *text : {"\xE9", "\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80"})
        EXPECT_FALSE(IsUtf8(text)) << text;
}

}  // namespace
}  // namespace pixmora
