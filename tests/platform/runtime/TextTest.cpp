// Texts: comparing, wildcard matches, and their bytes as other programs leave them.
#include "platform/runtime/Text.h"

#include <gtest/gtest.h>

#include "platform/runtime/Encoding.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

using namespace std::string_literals;

TEST(Texts, CompareAsPeopleReadThem) {
    const std::string ordered[] = {"",       "Apfel", "\xC3\x84pfel", "apfel\xC3\xA4",    "Bahn",
                                   "bahn 2", "zoo",   "\xC3\x9Fig",   "\xCE\x91\xCE\xB2", "\xD0\x96\xD0\xB0"};
    for (const std::string &left : ordered) {
        for (const std::string &right : ordered) {
            const int order = CompareTexts(left, right);
            EXPECT_EQ(order < 0, &left < &right) << left << " " << right;
            EXPECT_EQ(order == 0, &left == &right) << left << " " << right;
            EXPECT_EQ(order == 0, FoldedText(left) == FoldedText(right)) << left << " " << right;
        }
    }
    const std::pair<const char *, const char *> same[] = {
        {"Bob", "bOB"}, {"\xC3\x84NNE", "\xC3\xA4nne"}, {"\xCE\x91", "\xCE\xB1"}, {"\xD0\x96", "\xD0\xB6"}};
    for (const auto &[left, right] : same) {
        EXPECT_EQ(CompareTexts(left, right), 0) << left;
        EXPECT_EQ(FoldedText(left), FoldedText(right)) << left;
    }
    EXPECT_NE(CompareTexts("\xE4", "\xC3\xA4"), 0) << "bytes that are no UTF-8 are no letter of it";
    EXPECT_NE(FoldedText("\xE4"), FoldedText("\xC3\xA4"));
}

TEST(LikePattern, Matches) {
    const std::tuple<const char *, const char *, bool> cases[] = {
        // text, pattern, fits
        {"Private stuff", "Private*", true},
        {"private stuff", "Private*", false},
        {"Censored too", "Censored", false},
        {"", "", true},
        {"a", "", false},
        {"", "*", true},
        {"aXbXc", "*X*c", true},
        {"ab", "*abc", false},
        {"a", "a?", false},
        {"IMG_1", "IMG_#", true},
        {"IMG_x", "IMG_#", false},
        {"m", "[a-z]", true},
        {"M", "[a-z]", false},
        {"5", "[!a-z]", true},
        {"q", "[!a-z]", false},
        {"-", "[a-]", true},
        {"!", "[!]", true},
        {"*", "[*?#[]", true},
        {"ab", "a[]b", true},
        {"a]", "a]", true},
        {"\xC3\xA9", "[\xC0-\xFF]?", true},
    };
    for (const auto &[text, pattern, fits] : cases) EXPECT_EQ(Like(text, pattern), fits) << text << " " << pattern;
    EXPECT_THROW(Like("abc", "a[bc"), RunTimeError);
    EXPECT_THROW(Like("x", "[z-a]"), RunTimeError);
}

TEST(PathMatch, TriesEachWildcardWithoutCase) {
    EXPECT_TRUE(PathMatchSpec("A.JPG", "*.jpg; *.gif; *.bmp;"));
    EXPECT_TRUE(PathMatchSpec("b.Gif", "*.jpg; *.gif ; *.bmp;"));
    EXPECT_TRUE(PathMatchSpec("x1.mpg", "x?.mpg"));
    EXPECT_FALSE(PathMatchSpec("a.jpeg", "*.jpg;*.gif"));
    EXPECT_FALSE(PathMatchSpec("a.jpg.tmp", "*.jpg"));
    EXPECT_FALSE(PathMatchSpec("", "*.jpg;;")) << "an empty wildcard matches nothing";
    EXPECT_FALSE(PathMatchSpec("a", "[a]")) << "the shell knows no lists";
}

TEST(Encoding, TellsWhatATextIsWrittenIn) {
    EXPECT_EQ(WithoutByteOrderMark("\xEF\xBB\xBFPrivate*\r\n"), "Private*\r\n");
    EXPECT_EQ(WithoutByteOrderMark("\xFF\xFE\xE9\0t\0\xE9\0"s), "\xC3\xA9t\xC3\xA9");
    for (const std::string &text : {""s, "caf\xE9"s, "\xEF\xBB"s, "caf\xC3\xA9\xEF\xBB\xBF"s})
        EXPECT_EQ(WithoutByteOrderMark(text), text);
    for (const char *text : {"", "a\x7F", "\xC3\xA9", "\xF0\x9F\x98\x80"}) EXPECT_TRUE(IsUtf8(text)) << text;
    for (const char *text : {"\xE9", "\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80"})
        EXPECT_FALSE(IsUtf8(text)) << text;
}

}  // namespace pixmora
