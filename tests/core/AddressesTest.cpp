// Every address of the site over a real socket: the rows of malformed.tsv, good and bad.
#include <fstream>
#include <regex>

#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/Schema.h"
#include "support/Pictures.h"
#include "support/RawDatabase.h"
#include "support/RunningSite.h"

namespace pixmora::test {
namespace {

class Addresses : public RunningSite {
protected:
    Addresses() {
        AddAlbum("Trips");
        for (int i = 0; i < 12; ++i)
            Program.Write("albums/Trips/picture_" + FormatPadded(i, 2) + ".bmp", BitmapFile(40, 30));
        Program.Write("albums/Trips/film.avi", std::string(3000, 'm'));
        Program.Write("albums/Trips/clip.avi", "RIFF" + std::string(5000, '\0'));
        Program.Write("albums/Trips/broken.bmp", "BM" + std::string(100, '\0'));
        Program.Write("albums/Trips/empty.bmp");
        Program.Write("albums/Trips/Private/closed.bmp", BitmapFile(40, 30));
        for (const char *name : {"folder.avi", "folder.bmp"}) Program.MakeFolder(std::string("albums/Trips/") + name);
        for (const char *name : {"secret.txt", "secret.jpg"}) Program.Write(name, "secret");
        SaveUser({"Ann", "secret", "secret", false}, "");
        Start();
    }
};

/// A row's bytes: "{TEXT*N}" is a repetition; the escapes are \r \n \t \\ \" and \xHH.
std::string Unescaped(std::string text) {
    static const std::regex repetition(R"(\{([^{}*]+)\*(\d+)\})");
    for (std::smatch run; std::regex_search(text, run, repetition);)
        text = run.prefix().str() + RepeatString(run[1].str(), std::stoi(run[2])) + run.suffix().str();
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            bytes += text[i];
            continue;
        }
        const char kind = text.at(++i);
        if (kind == 'x') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += kind == 'r' ? '\r' : kind == 'n' ? '\n' : kind == 't' ? '\t' : kind;
        }
    }
    return bytes;
}

/// Whether the answer is what a row's third column says.
bool IsWanted(const std::string &answer, const std::string &wanted) {
    const std::vector<std::string> words = Split(wanted, ":");
    const std::string &kind = words[0];
    const bool isPage = answer.starts_with(Head("text/html") + "\r\n") && TrimWhitespace(answer).ends_with("</html>");
    const bool isLogin = isPage && answer.find(R"(name="password")") != std::string::npos;
    if (kind == "-") return answer.empty();
    if (kind == "text") return answer == Unescaped(wanted.substr(5));
    if (kind == "page") return isPage;
    if (kind == "login") return isLogin && Contains(answer, words.back() == kind ? "" : words.back());
    if (kind == "refused") return answer == "Bad Request" || isLogin;
    if (kind == "cookies")
        return Contains(answer, "\r\nSet-Cookie: ms_username=Ann\r\nSet-Cookie: password=secret\r\n\r\n") &&
               Contains(answer, words.back() == kind ? "" : words.back());
    const std::string head = Head(kind == "type" ? words.at(1) : "image/jpeg");
    const bool isEmpty = answer == head + "\r\n";
    if (kind == "nopicture") return isEmpty || answer.size() < 30;
    return kind == "type" && answer.starts_with(head) && isEmpty == (words.size() > 2);
}

TEST_F(Addresses, AnswerAsTheTableSays) {
    std::ifstream table(std::filesystem::path(__FILE__).parent_path() / "malformed.tsv");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.starts_with('#')) continue;
        const std::vector<std::string> row = Split(line, "\t");
        ASSERT_EQ(row.size(), 3U) << line;
        const std::string answer = Fetch(Port(), Unescaped(row[1]));
        EXPECT_TRUE(IsWanted(answer, row[2])) << row[0] << ": " << row[2] << "\n" << answer.substr(0, 300);
        const bool isRefusal = row[2].starts_with("text:") && !row[2].starts_with("text:<html>");
        if (!isRefusal) RunSql(SystemPath(DatabasePath(9)), "DELETE FROM PopularFiles; DELETE FROM PopularDirs");
        ++rows;
    }
    EXPECT_GT(rows, 600);
    for (const char *popular : {"PopularFiles", "PopularDirs"})
        EXPECT_EQ(FirstValue(popular, "AlbumName"), "(none)") << "nothing refused is counted";
    EXPECT_EQ(gSystray->wnskConnect.UBound(), 0);
}

}  // namespace
}  // namespace pixmora::test
