// Every address of the site over a real socket: its head or raw body byte for byte, and every way of failing.
#include <gtest/gtest.h>

#include "support/RunningSite.h"

namespace pixmora::test {
namespace {

// A one-pixel bitmap, so that there is something to convert.
const std::string bitmap(
    "BM\x3a\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0\0\0\0\0\4\0\0\0\0\0\0\0\0\0\0\0\0\0"
    "\0\0\0\0\0\0\x10\x20\x30\0",
    58);

class Addresses : public RunningSite {
protected:
    Addresses() {
        AddAlbum("Trips");
        Program.Write("albums/Trips/a.bmp", bitmap);
        Program.Write("albums/Trips/b.avi", std::string(3000, 'm'));
        Program.Write("albums/Trips/Private/c.bmp", bitmap);
        Program.Write("secret.txt", "secret");
        Start();
    }
};

struct HeadCase {
    const char *Target;
    const char *Type;
};

const HeadCase heads[] = {
    {"/", "text/html"},
    {"/Index", "text/html"},
    {"/iNDEX", "text/html"},
    {"/ShowGraphic?movie.gif", "image/gif"},
    {"/ShowAlbumMedia?1&thumbs&1", "text/html"},
    {"/ShowPopular?thumbs", "text/html"},
    {"/ShowPicture?1&thumb&/a.bmp", "image/jpeg"},
    {"/ShowPicture?1&full&/a.bmp", "image/jpeg"},
    {"/favicon.ico", "image/x-icon"},
    {"/ShowStats", "text/html"},
    {"/ShowDetails?1&nocount&/a.bmp", "text/html"},
    {"/ShowAlbumDirList?1&thumbs&1&", "text/html"},
    {"/ShowAlbum?1&thumbs&1", "text/html"},
    {"/ShowAlbum.?1&thumbs&1", nullptr},
    {"/ShowAlbum?ShowHelp", "text/html"},
    {"/ShowAlbumBottom", "text/html"},
    {"/ShowAlbumTop", "text/html"},
    {"/ShowLogout", "text/html"},
    {"/ShowHelp", "text/html"},
    {"/ShowLogin?1&thumbs&1&", "text/html"},
};

TEST_F(Addresses, AnswerWithTheirHead) {
    for (const HeadCase &row : heads) {
        const std::string answer = Get(row.Target);
        if (row.Type == nullptr) {
            EXPECT_EQ(answer, "Bad Request") << row.Target;
            continue;
        }
        const std::string head = Head(row.Type) + "\r\n";
        EXPECT_EQ(answer.substr(0, head.size()), head) << row.Target;
        EXPECT_GT(answer.size(), head.size()) << row.Target;
        EXPECT_EQ(answer.find("Bad Request"), std::string::npos) << row.Target;
    }
}

struct RawCase {
    const char *Request;
    const char *Answer;
};

const RawCase raws[] = {
    {"GET /Blank HTTP/1.0\r\n\r\n", "<html><head><title></title></head><body bgcolor=\"white\"></body></html>"},
    {"GET /blank HTTP/1.0\r\n\r\n", "<html><head><title></title></head><body bgcolor=\"white\"></body></html>"},
    {"GET /Border?A0B1C2 HTTP/1.0\r\n\r\n",
     "<html><head><title></title></head><body bgcolor=\"#A0B1C2\"></body></html>"},
    // refused before any page
    {"PUT / HTTP/1.0\r\n\r\n", ""},
    {"nonsense", ""},
    {"get / HTTP/1.0\r\n\r\n", "Bad Request"},
    {"post /SendLogin HTTP/1.0\r\n\r\n", "Bad Request"},
    {"POST /sendlogin HTTP/1.0\r\n\r\n", "Bad Request"},
    {"POST /SendLogin HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /x\r\n\r\n", "Bad Request"},
    {"GET /NoSuchPage HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /setLoginCookies?a HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /ShowAlbum HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /Index?x HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /ShowLogin HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /ShowLogin?x HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /ShowAlbum?1&thumbs&1&% HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /Border? HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /ShowStats?x HTTP/1.0\r\nCookie: ms_username\r\n\r\n", "Bad Request"},
    // refused by the pages
    {"GET /ShowAlbum?0&thumbs&1 HTTP/1.0\r\n\r\n", "Bad Request!"},
    {"GET /ShowAlbum?2&thumbs&1 HTTP/1.0\r\n\r\n", "Bad Request!"},
    {"GET /ShowAlbum?x&thumbs&1 HTTP/1.0\r\n\r\n", "Bad Request!"},
    {"GET /ShowAlbumMedia?1&thumbs HTTP/1.0\r\n\r\n", "Bad Request!"},
    {"GET /ShowAlbumMedia?1&thumbs&x HTTP/1.0\r\n\r\n", "Bad Request!"},
    {"GET /ShowAlbumMedia?1&thumbs&0 HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /ShowAlbumDirList?9&thumbs&1& HTTP/1.0\r\n\r\n", "Bad Request!"},
    {"GET /ShowAlbumIcon?1 HTTP/1.0\r\n\r\n", "Bad Request!"},
    {"GET /ShowPicture?1&thumb HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /ShowPicture?x&thumb&/a.bmp HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /ShowPicture?2&thumb&/a.bmp HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /ShowPicture?1&thumb&/a.jpeg HTTP/1.0\r\n\r\n", "Not a Valid Picture!"},
    {"GET /ShowPicture?1&thumb&/gone.jpg HTTP/1.0\r\n\r\n", "Picture Not Found!"},
    {"GET /ShowPicture?1&full&/Private/../a.bmp HTTP/1.0\r\n\r\n", "Picture Not Found!"},
    {"GET /ShowPicture?1&full&/a.txt%00.bmp HTTP/1.0\r\n\r\n", "Picture Not Found!"},
    {"GET /ShowGraphic?gone.gif HTTP/1.0\r\n\r\n", "File Not Found!"},
    {"GET /ShowGraphic?..%2Fsecret.txt HTTP/1.0\r\n\r\n", "File Not Found!"},
    {"GET /ShowGraphic?..\\secret.txt HTTP/1.0\r\n\r\n", "File Not Found!"},
    {"GET /ShowDetails?1&count&/gone.jpg HTTP/1.0\r\n\r\n", "File Not Found!"},
    {"GET /ShowDetails?9&count&/a.bmp HTTP/1.0\r\n\r\n", "Bad Request!"},
    {"GET /ShowMovie?1&full HTTP/1.0\r\n\r\n", "Bad Request!"},
    {"GET /ShowMovie?x&full&/b.avi HTTP/1.0\r\n\r\n", "Bad Request!"},
    {"GET /ShowMovie?9&full&/b.avi HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /ShowMovie?1&full&/gone.avi HTTP/1.0\r\n\r\n", "Bad Request"},
    {"GET /ShowMovie?1&full&/../../secret.txt HTTP/1.0\r\n\r\n", "Bad Request"},
};

TEST_F(Addresses, AnswerBareByteForByte) {
    for (const RawCase &row : raws) EXPECT_EQ(Fetch(Port(), row.Request), row.Answer) << row.Request;
}

TEST_F(Addresses, LeaveNoTraceOfConversionsInTheOwnersFolder) {
    Get("/ShowPicture?1&thumb&/a.bmp");
    Get("/ShowPicture?1&full&/a.bmp");
    EXPECT_EQ(Program.Read("albums/Trips/a.bmp"), bitmap);
    EXPECT_FALSE(FileExists(Program.Path("albums/Trips/a.bmp.tmp")));
}

TEST_F(Addresses, PicturesComeLabelledAsJpegUnchangedInFull) {
    EXPECT_EQ(Get("/ShowPicture?1&full&/a.bmp"), Head("image/jpeg") + "\r\n" + bitmap);
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
