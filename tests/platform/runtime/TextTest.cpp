// Texts compared as people read them, in every language.
#include "platform/runtime/Text.h"

#include <gtest/gtest.h>

namespace pixmora {

TEST(Texts, CompareAsPeopleReadThem) {
    // Each in one case, then in the other.
    const std::pair<std::string, std::string> ordered[] = {{"", ""},
                                                           {"Apfel", "aPFEL"},
                                                           {"\xC3\x84pfel", "\xC3\xA4PFEL"},
                                                           {"apfel\xC3\xA4", "Apfel\xC3\x84"},
                                                           {"Bahn", "bahn"},
                                                           {"bahn 2", "BAHN 2"},
                                                           {"zoo", "ZOO"},
                                                           {"\xC3\x9Fig", "\xC3\x9FIG"},
                                                           {"\xCE\x91\xCE\xB2", "\xCE\xB1\xCE\x92"},
                                                           {"\xD0\x96\xD0\xB0", "\xD0\xB6\xD0\x90"}};
    for (const auto &left : ordered) {
        for (const auto &right : ordered) {
            SCOPED_TRACE(left.first + " " + right.second);
            const int order = CompareTexts(left.first, right.second);
            EXPECT_EQ(order < 0, &left < &right);
            EXPECT_EQ(order == 0, &left == &right);
            EXPECT_EQ(order == 0, FoldedText(left.first) == FoldedText(right.second));
        }
    }
    EXPECT_NE(CompareTexts("\xE4", "\xC3\xA4"), 0) << "bytes that are no UTF-8 are no letter of it";
    EXPECT_NE(FoldedText("\xE4"), FoldedText("\xC3\xA4"));
}

}  // namespace pixmora
