// What the setup dialogs' rules say of texts, by the rows of rules.tsv.
#include <filesystem>
#include <fstream>
#include <map>

#include "platform/runtime/Text.h"
#include "platform/sockets/Hosts.h"
#include "setup/rules/InternetState.h"
#include "setup/rules/SetupDialog.h"
#include "setup/rules/StripTags.h"
#include "setup/rules/UserEditor.h"
#include "support/SetupFixture.h"

namespace pixmora {
namespace {

using Rules = SetupFixture;
using Row = std::vector<std::string>;

std::string YesOrNo(bool answer) {
    return answer ? "yes" : "no";
}

std::string AlbumRefusal(const Row &row) {
    AlbumFields fields;
    fields.Name = row[2];
    fields.Directory = row[3];
    fields.Pictures = fields.Movies = !row[4].empty();
    const auto refusal = AlbumEditor::Validate(fields);
    return refusal ? refusal->Message : "";
}

std::string UserRefusalText(const Row &row) {
    const auto refusal = ValidateUser({row[2], row[3], row[4], false}, row[5]);
    return refusal ? refusal->Message : "";
}

TEST_F(Rules, SayWhatTheTableSays) {
    const std::map<std::string, std::string (*)(const Row &)> rules = {
        {"album", AlbumRefusal},
        {"user", UserRefusalText},
        {"plain text",
         [](const Row &row) {
             return StripTags(row[2], row[3]);
         }},
        {"path",
         [](const Row &row) {
             return AbbreviatedDir(row[2]);
         }},
        {"private address",
         [](const Row &row) {
             return YesOrNo(IsPrivateAddress(row[2]));
         }},
        {"route",
         [](const Row &row) {
             return YesOrNo(HasDefaultRoute("Iface Destination Gateway\n" + row[2]));
         }},
    };
    SaveUser({"Ann", "a", "a", true}, "");
    std::ifstream table(std::filesystem::path(__FILE__).parent_path() / "rules.tsv");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.starts_with('#')) continue;
        const std::string bytes = Replace(Replace(line, "\\r", "\r"), "\\n", "\n");
        const Row row = Split(Replace(bytes, "{folder}", Program.MakeFolder("albums")), "\t");
        ASSERT_GT(row.size(), 2U) << line;
        EXPECT_EQ(rules.at(row[0])(row), row[1]) << line;
        ++rows;
    }
    EXPECT_EQ(rows, 45);
}

}  // namespace
}  // namespace pixmora
