// Every address of the site over a real socket: its head or raw body byte for byte, and every way of failing.
#include "support/Pictures.h"
#include "support/RunningSite.h"

namespace pixmora::test {
namespace {

using namespace std::string_literals;

const std::string bitmap = BitmapFile(1, 1);

class Addresses : public RunningSite {
protected:
    Addresses() {
        AddAlbum("Trips");
        Program.Write("albums/Trips/a.bmp", bitmap);
        Program.Write("albums/Trips/b.avi", std::string(3000, 'm'));
        Program.Write("albums/Trips/Private/c.bmp", bitmap);
        Program.MakeFolder("albums/Trips/folder.avi");
        for (const char *name : {"secret.txt", "secret.jpg"}) Program.Write(name, "secret");
        Start();
    }
};

/// A type or a bare answer, and what asks for it.
using Alike = std::pair<const char *, std::vector<const char *>>;

TEST_F(Addresses, AnswerWithTheirHead) {
    const Alike types[] = {
        {"text/html",
         {"/", "/Index", "/iNDEX", "/ShowAlbumMedia?1&thumbs&1", "/ShowPopular?thumbs", "/ShowStats",
          "/ShowDetails?1&nocount&/a.bmp", "/ShowAlbumDirList?1&thumbs&1&", "/ShowAlbum?1&thumbs&1",
          "/ShowAlbum?ShowHelp", "/ShowAlbumBottom", "/ShowAlbumTop", "/ShowLogout", "/ShowHelp",
          "/ShowLogin?1&thumbs&1&"}},
        {"image/gif", {"/ShowGraphic?movie.gif"}},
        {"image/jpeg", {"/ShowPicture?1&thumb&/a.bmp", "/ShowPicture?1&full&/a.bmp"}},
        {"image/x-icon", {"/favicon.ico"}},
    };
    for (const auto &[type, targets] : types) {
        for (const char *target : targets) {
            const std::string answer = Get(target);
            const std::string head = Head(type) + "\r\n";
            EXPECT_EQ(answer.substr(0, head.size()), head) << target;
            EXPECT_GT(answer.size(), head.size()) << target;
            EXPECT_EQ(answer.find("Bad Request"), std::string::npos) << target;
        }
    }
}

TEST_F(Addresses, AnswerBareByteForByte) {
    const Alike requests[] = {
        {"", {"PUT / HTTP/1.0\r\n\r\n", "nonsense"}},
        {"Bad Request",
         {"get / HTTP/1.0\r\n\r\n", "post /SendLogin HTTP/1.0\r\n\r\n", "POST /sendlogin HTTP/1.0\r\n\r\n",
          "POST /SendLogin HTTP/1.0\r\n\r\n", "GET /x\r\n\r\n",
          "GET /ShowStats?x HTTP/1.0\r\nCookie: ms_username\r\n\r\n"}},
    };
    for (const auto &[answer, alike] : requests) {
        for (const char *request : alike) EXPECT_EQ(Fetch(Port(), request), answer) << request;
    }
    EXPECT_EQ(Get("/Border?A0B1C2"), "<html><head><title></title></head><body bgcolor=\"#A0B1C2\"></body></html>");
    const Alike targets[] = {
        {"<html><head><title></title></head><body bgcolor=\"white\"></body></html>", {"/Blank", "/blank"}},
        {"Bad Request",
         {"/NoSuchPage", "/setLoginCookies?a", "/ShowAlbum", "/ShowAlbum.?1&thumbs&1", "/Index?x", "/ShowLogin",
          "/ShowLogin?x", "/ShowAlbum?1&thumbs&1&%", "/Border?"}},
    };
    for (const auto &[answer, alike] : targets) {
        for (const char *target : alike) EXPECT_EQ(Get(target), answer) << target;
    }
}

TEST_F(Addresses, RefuseArgumentsThatLeadNowhere) {
    const std::tuple<const char *, const char *, std::vector<std::string>> cases[] = {
        // answer, page, arguments
        {"Bad Request!",
         "ShowAlbum",
         {"", "0&thumbs&1", "2&thumbs&1", "x&thumbs&1", "-1&thumbs&1", "99999999999&thumbs&1", "showhelp"}},
        {"Bad Request!",
         "ShowAlbumMedia",
         {"", "1&thumbs", "x&thumbs&1", "0&thumbs&1", "2&thumbs&1", "1&thumbs&x", "1&thumbs&99999999999",
          "1&slideshow&1"}},
        {"Bad Request", "ShowAlbumMedia", {"1&thumbs&0", "1&thumbs&2000000000"}},
        {"Bad Request!",
         "ShowAlbumDirList",
         {"", "1&thumbs", "1&thumbs&x", "x&thumbs&1", "0&thumbs&1", "9&thumbs&1&", "ShowLogin", "ShowLogin&1&thumbs",
          "ShowDetails&1&count", "ShowDetails&9&count&/a.bmp", "ShowPopular"}},
        {"Bad Request!", "ShowAlbumIcon", {"", "x", "0", "1", "2"}},
        {"Bad Request", "ShowPicture", {"", "1&thumb", "x&thumb&/a.bmp", "0&thumb&/a.bmp", "2&thumb&/a.bmp"}},
        {"Not a Valid Picture!", "ShowPicture", {"1&thumb&/a.jpeg", "1&full&/x"}},
        {"Picture Not Found!",
         "ShowPicture",
         {"1&thumb&/gone.jpg", "1&full&/Private/../a.bmp", "1&full&/a.txt%00.bmp"}},
        {"File Not Found!",
         "ShowGraphic",
         {"gone.gif", "..%2Fsecret.txt", "..\\secret.txt", "%2e./secret.txt", "Index.tpl%00", "."}},
        {"Bad Request!", "ShowDetails", {"", "1&count", "x&count&/a.bmp", "9&count&/a.bmp"}},
        {"File Not Found!",
         "ShowDetails",
         {"1&count&/gone.jpg", "1&count&/../../secret.jpg", "1&count&/folder.avi", "1&count&/"}},
        {"Bad Request!", "ShowMovie", {"", "1&full", "x&full&/b.avi", "99999&full&/b.avi"}},
        {"Bad Request", "ShowMovie", {"9&full&/b.avi", "1&x&/gone.avi", "1&full&/../../secret.txt", "1&x&/folder.avi"}},
    };
    for (const auto &[answer, page, alike] : cases) {
        for (const std::string &args : alike) EXPECT_EQ(Get("/"s + page + "?" + args), answer) << page << "?" << args;
    }
    for (const char *table : {"PopularFiles", "PopularDirs"})
        EXPECT_EQ(gDatabase->OpenRecordset(table, RecordsetType::Snapshot)->RecordCount(), 0) << table;
}

TEST_F(Addresses, AnUnfinishedRequestIsNotWaitedFor) {
    Client client(Port());
    client.Send("GET /He");
    client.WaitForBytes(1);
    client.Send("lp HTTP/1.0\r\n\r\n");
    EXPECT_EQ(client.ReceiveAll(), "Bad Request");
}

TEST_F(Addresses, AHalfClosedClientGetsItsPage) {
    Client client(Port());
    client.Send("GET /ShowHelp HTTP/1.0\r\n\r\n");
    client.HalfClose();
    EXPECT_NE(client.ReceiveAll().find("</html>"), std::string::npos);
}

TEST_F(Addresses, ManyAtOnceStayBelowTheCeilingOfIndexes) {
    std::vector<Client> clients;
    for (int i = 0; i < 2 * HighestSendIndex; ++i) clients.emplace_back(Port()).Send("GET / HTTP/1.0\r\n\r\n");
    for (Client &client : clients) EXPECT_NE(client.ReceiveAll().find("</html>"), std::string::npos);
    EXPECT_EQ(gSystray->wnskConnect.UBound(), 0);
}

TEST_F(Addresses, BehindTheCeilingOfIndexesTheProcessWouldEnd) {
    std::vector<std::string> errors;
    SetUnhandledErrorHandler([&errors](const RunTimeError &error) { errors.push_back(error.Message()); });
    while (gSystray->wnskConnect.UBound() < HighestSendIndex) gSystray->wnskConnect.Load();
    const std::string wanted = "Too many connections! Try again later.Bad Request";
    const std::string answer = [&] {
        Client client(Port());
        client.Send("GET /ShowMovie?1&full&/b.avi HTTP/1.0\r\n\r\n");
        client.WaitForBytes(wanted.size());
        return client.Receive();
    }();
    EXPECT_EQ(answer, wanted);
    TurnUntil([&errors] { return !errors.empty(); });
    SetUnhandledErrorHandler({});
    ASSERT_FALSE(errors.empty());
    EXPECT_EQ(errors[0], "Subscript out of range");
}

}  // namespace
}  // namespace pixmora::test
