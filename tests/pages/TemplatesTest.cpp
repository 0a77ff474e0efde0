// Tests of the pieces that the pages share.
#include "pages/Templates.h"

#include "support/PageSite.h"

namespace pixmora::test {
namespace {

TEST(FillAll, ComesOutAsIfFilledOneAfterTheOther) {
    const std::vector<Filling> fillings = {{"{A}", "<{A}{B}{C}>"}, {"{B}", "[{C}{A}]{"}, {"{C}", "c"}};
    for (const char *text : {"", "{", "x{", "{A", "{}", "{A}{B}{C}", "{x {B}}", "{{A}}-{a}{AA}{ A}", "{D}{C}{C} {B"}) {
        std::string expected = text;
        for (const Filling &filling : fillings) expected = Replace(expected, filling.Placeholder, filling.Value);
        EXPECT_EQ(FillAll("{A}: ", text, fillings), "{A}: " + expected) << text;
    }
}

using WebServerCommandsTest = PageSite;

TEST_F(WebServerCommandsTest, MakesAMissingTemplateAnEmptyOneAndReadsTheFilesOnlyOnce) {
    std::filesystem::remove(Program.Path("htdocs/ShowHelp.tpl"));
    gWebServerCommands = std::make_shared<clsWebServerCommands>();
    EXPECT_TRUE(std::filesystem::exists(Program.Path("htdocs/ShowHelp.tpl")));
    Program.Write("htdocs/ShowHelp.tpl", "edited");
    EXPECT_EQ(Body(Get("ShowHelp")), "");
}

}  // namespace
}  // namespace pixmora::test
