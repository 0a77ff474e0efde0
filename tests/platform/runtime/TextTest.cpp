// Texts: cutting, replacing, comparing, and wildcard matches.
#include "platform/runtime/Text.h"

#include <gtest/gtest.h>

#include "platform/runtime/RunTimeError.h"

namespace pixmora {

TEST(Text, FoldsAsciiCaseAndLeavesOtherBytesAlone) {
    EXPECT_EQ(LCase("ÀZ[@"), "Àz[@");
    EXPECT_EQ(UCase("àz{`"), "àZ{`");
    EXPECT_TRUE(EqualsIgnoreCase("Webcam", "WebCam"));
    EXPECT_FALSE(EqualsIgnoreCase("Webcam", "Webcams"));
}

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
    const std::tuple<const char *, const char *, const char *, bool> cases[] = {
        // name, text, pattern, fits
        {"a run at the end", "Private stuff", "Private*", true},
        {"case counts", "private stuff", "Private*", false},
        {"the whole text, not a part", "Censored too", "Censored", false},
        {"empty pattern on empty text", "", "", true},
        {"empty pattern on a text", "a", "", false},
        {"star on nothing", "", "*", true},
        {"last star gives way", "aXbXc", "*X*c", true},
        {"star then too little", "ab", "*abc", false},
        {"question mark needs a character", "a", "a?", false},
        {"digit", "IMG_1", "IMG_#", true},
        {"no digit", "IMG_x", "IMG_#", false},
        {"list", "b", "[abc]", true},
        {"range", "m", "[a-z]", true},
        {"outside a range", "M", "[a-z]", false},
        {"negated range", "5", "[!a-z]", true},
        {"negated, inside", "q", "[!a-z]", false},
        {"hyphen at the end stands for itself", "-", "[a-]", true},
        {"lone exclamation mark in a list", "!", "[!]", true},
        {"special characters in a list", "*", "[*?#[]", true},
        {"an empty list is nothing", "ab", "a[]b", true},
        {"closing bracket alone is itself", "a]", "a]", true},
        {"bytes above 127", "\xC3\xA9", "[\xC0-\xFF]?", true},
    };
    for (const auto &[name, text, pattern, fits] : cases) EXPECT_EQ(Like(text, pattern), fits) << name;
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

}  // namespace pixmora
