// The website's start and stop, its visitors, logins and transfers, and the sweep.
#include "core/Sweep.h"
#include "platform/runtime/Text.h"
#include "store/Popularity.h"
#include "store/Schema.h"
#include "store/Statistics.h"
#include "support/FileSizeLimit.h"
#include "support/PlayedService.h"
#include "support/RawDatabase.h"
#include "support/RunningSite.h"

namespace pixmora::test {
namespace {

using Website = RunningSite;

TEST_F(Website, StartShowsItsStepsAndReadsItsSettings) {
    AddAlbum("B");
    AddAlbum("A");
    const std::vector<std::string> wanted = {"Opening Ports...",    "Checking for News and Updates...",
                                             "Loading Settings...", "Loading Albums...",
                                             "Website Started!",    "Your Website is Live!"};
    EXPECT_EQ(Start(), wanted);
    EXPECT_EQ(gAlbums.at(0)->Name, "A");
    EXPECT_EQ(GetSetting("AlbumIDs", "B") + GetSetting("Setup", "NextAlbumID"), "23");
    EXPECT_EQ(GetSetting("Website", "LastOnline"), "3/10/2004 12:00:00 PM");
    const auto figures = [] {
        return Concat(gThumbSize, " ", gSlideshowSize, " ", gPreviewSize, ", ", gThumbQuality / 4096, " ",
                      gSlideshowQuality / 4096, " ", gPreviewQuality / 4096, ", ", gFilesPerPage, " ", gFilesPerRow);
    };
    EXPECT_EQ(figures(), "150 300 375, 50 60 70, 12 3");
    StopWebsite(true);
    SaveSetting("Setup", "ImageQuality", "5");
    SaveSetting("Setup", "Style", "Gone");
    Start();
    EXPECT_EQ(figures(), "150 300 375, 70 80 90, 12 3");
    EXPECT_FALSE(gStyleSheet.empty()) << "the style that there always is";
    EXPECT_EQ(Owner.FiguresRunning(), true);
}

TEST_F(Website, StartWithoutAlbumsAsksForOneAndStops) {
    for (const int answer : {AnswerNo, AnswerYes}) {
        Owner.ExpectMessage("You haven't setup any albums! Would you like to set one up now?", CriticalQuestion,
                            answer);
        if (answer == AnswerYes) Owner.ExpectSetup();
        EXPECT_EQ(Start(), std::vector<std::string>{"Pixmora! Stopped!"});
        EXPECT_FALSE(gWebsiteStarted);
    }
}

TEST_F(Website, StartIsCancelledAtItsPlacesAndNoLater) {
    AddAlbum("A");
    PlayedService service;
    SaveSetting("Setup", "ServiceBase", service.Base());
    const std::pair<const char *, const char *> places[] = {
        {"Checking for News and Updates...", "Checking for News and Updates..."},
        {"Loading Settings...", "Loading Settings..."},
        {"Loading Albums...", "Your Website is Live!"},
    };
    for (const auto &[place, last] : places) {
        RecordedStart view;
        view.CancelAt = place;
        RunStartSequence(view);
        const bool isLive = view.Texts.back() == "Your Website is Live!";
        EXPECT_EQ(isLive ? view.Texts.back() : view.Texts.at(view.Texts.size() - 2), last);
        EXPECT_EQ(gWebsiteStarted, isLive);
        EXPECT_EQ(gSystray->wnskListen->State() == SocketState::Closed, !isLive);
    }
    StopWebsite(true);
    RecordedStart view;
    service.OnRequest = [&view](Winsock &connection, const std::string &) {
        view.CancelAt = "Checking for News and Updates...";  // while the answer is awaited
        connection.Close();
    };
    RunStartSequence(view);
    EXPECT_EQ(view.Texts.at(view.Texts.size() - 2), "Checking for News and Updates...");
}

TEST_F(Website, StartListsTheSiteWithAServiceThatAnswersOnly) {
    PlayedService service;
    AddAlbum("A");
    SaveSetting("Setup", "ServiceBase", service.Base());
    SaveSetting("Setup", "ListOnline", "1");
    SaveSetting("Setup", "RunFirewallCheck", "1");
    for (const auto &[answer, requests] : {std::pair("<html>404</html>", 1U), std::pair("127.0.0.1", 2U)}) {
        service.Answer = answer;
        service.Requests.clear();
        EXPECT_EQ(Start().at(4), "Listing Online...");
        TurnUntil([&] { return service.Requests.size() >= requests; });
        EXPECT_EQ(service.Requests.size(), requests) << answer;
        StopWebsite(true);
    }
}

TEST_F(Website, StartTellsOfAPortInUse) {
    AddAlbum("A");
    const auto other = Winsock::Create();
    other->LocalPort = 0;
    other->Listen();
    const std::string port = std::to_string(other->LocalPort);
    SaveSetting("Setup", "ListenPort", port);
    Owner.ExpectMessage("There is another application already listening on port " + port +
                            "! Please go to Port Setup in Setup and choose another port.",
                        FlagCritical);
    EXPECT_EQ(Start().back(), "Pixmora! Stopped!");
    EXPECT_FALSE(gWebsiteStarted);
}

TEST_F(Website, StartTellsOfADatabaseThatAnotherProgramHolds) {
    AddAlbum("A");
    gDatabase->SetLockWait(1);
    sqlite3 *other = nullptr;
    sqlite3_open(SystemPath(DatabasePath(9)).c_str(), &other);
    sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    Owner.ExpectMessage(DatabaseMessage(), FlagCritical, AnswerOk);
    EXPECT_EQ(Start().back(), "Pixmora! Stopped!");
    sqlite3_close(other);
    EXPECT_EQ(Start().back(), "Your Website is Live!");
}

TEST_F(Website, StartAsksAboutAnAlbumWhoseFolderIsGone) {
    std::filesystem::remove_all(AddAlbum("A"));
    const std::string question =
        "Your album 'A' cannot be found! The directory which contains its files has been moved or deleted.\r\n\r\n"
        "Would you like to stop your website and fix your album in Setup?";
    Owner.ExpectMessage(question, CriticalQuestion, AnswerYes);
    EXPECT_EQ(Start().back(), "Pixmora! Stopped!");
    Owner.ExpectMessage(question, CriticalQuestion, AnswerNo);
    Owner.ExpectNotice("Unable to read folders of your albums! What is in them isn't shown:\r\n" +
                       Program.Path("albums/A"));
    Start();
    EXPECT_TRUE(gWebsiteStarted);
    EXPECT_EQ(gAlbums.at(0)->PictureCount, 0);
}

TEST_F(Website, StartScansAlbumsAndTidiesTheTables) {
    AddAlbum("A");
    Program.Write("albums/A/one.JPG", "12345");
    Program.Write("albums/A/sub/two.gif", "1");
    Program.Write("albums/A/sub/film.mov", "123");
    Program.Write("albums/A/Private pics/three.jpg", "1");
    Program.Write("albums/A/private/four.jpg", "1");
    std::filesystem::create_directory_symlink(Program.Path("albums/A"), Program.Path("albums/A/sub/loop"));
    for (const char *path : {"\\one.JPG", "\\gone.jpg"}) CountFileVisit("A", path);
    Start();
    EXPECT_EQ(gAlbums.at(0)->PictureCount, 3);
    EXPECT_EQ(gAlbums.at(0)->PictureSize, 7);
    EXPECT_EQ(gAlbums.at(0)->MovieCount, 1);
    EXPECT_EQ(FirstValue("SELECT * FROM MediaList1 WHERE FilePath LIKE '*two*'", "FilePath"), "\\sub\\two.gif");
    EXPECT_EQ(gDatabase->OpenRecordset("PopularFiles", RecordsetType::Snapshot)->RecordCount(), 1);
}

TEST_F(Website, WordsOfTheOwnersFileProtectWhateverEndsItsLines) {
    AddAlbum("A");
    Program.Write("albums/A/Secret stuff/a.jpg", "1");
    Program.Write("albums/A/Hidden/a.jpg", "1");
    Program.Write("albums/A/Private/a.jpg", "1");
    Program.Write("restrictwords.txt", "Secret*\r\nHidden\n");
    Program.Write("welcome.txt", "Hello\r\nyou\n");
    Start();
    EXPECT_EQ(gAlbums.at(0)->PictureCount, 1);
    EXPECT_EQ(gWelcomeText, "Hello<br>you<br>");
}

TEST_F(Website, StopAsksWhileVisitorsAreThere) {
    AddAlbum("A");
    Start();
    Get("/");
    for (const int answer : {AnswerNo, AnswerYes}) {
        Owner.ExpectMessage(
            "There are still people on your website! If you stop your website they won't be able to see your "
            "files.\r\n\r\nAre you sure you want to stop?",
            FlagYesNo, answer);
        EXPECT_EQ(StopWebsite(false), answer == AnswerYes);
        EXPECT_EQ(gWebsiteStarted, answer == AnswerNo);
    }
    EXPECT_EQ(GetSetting("Website", "LastOnline"), "0");
    EXPECT_FALSE(gDatabase->TableExists("MediaList1"));
}

/// Whether this process has a file of that name open.
bool IsOpen(const std::string &name) {
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (std::filesystem::read_symlink(entry, error).filename() == name) return true;
    }
    return false;
}

TEST_F(Website, AStopLeavesNothingOpenAndAStartBeginsAnew) {
    AddAlbum("A");
    Program.Write("albums/A/m.avi", std::string(20 << 20, 'm'));
    Start();
    Client viewer(Port(), "127.0.0.2", 4096);
    viewer.Send("GET /ShowMovie?1&full&/m.avi HTTP/1.0\r\n\r\n");
    viewer.WaitForBytes(1000);
    Get("/");
    EXPECT_EQ(gConnectionsSession, 1);
    EXPECT_TRUE(IsOpen("m.avi"));
    StopWebsite(true);
    EXPECT_FALSE(IsOpen("m.avi"));
    EXPECT_EQ(gVisitorsActive, 0);
    EXPECT_FALSE(gSystray->tmrConnections.Enabled());
    EXPECT_EQ(gSystray->wnskListen->State(), SocketState::Closed);
    EXPECT_EQ(gConnectionsTotal, 1) << "shown while the site is stopped";
    EXPECT_EQ(gBandwidthTotal, ReadStatTotal(Stat::Bandwidth));
    EXPECT_GT(gBandwidthTotal, 0);

    Start();
    EXPECT_EQ(gConnectionsSession + gVisitorsActive, 0);
    EXPECT_TRUE(gVisitors.empty());
    EXPECT_TRUE(gDatabase->TableExists("MediaList1"));
    EXPECT_EQ(gSystray->tmrConnections.Tag, "10");
    Clock.SetNow(MakeDate(2005, 3, 10, 12));
    Get("/");
    EXPECT_EQ(gConnectionsSession, 1);
    EXPECT_EQ(FirstValue("SELECT * FROM StatsMonthly WHERE WhichYear=2004", "Visitors"), "1");
    EXPECT_EQ(FirstValue("SELECT * FROM StatsMonthly WHERE WhichYear=2005", "Visitors"), "1") << "a second year";
}

TEST_F(Website, AFolderThatIsTakenAwayContributesNothingUntilItIsBack) {
    const std::string folder = AddAlbum("A");
    Program.Write("albums/A/a.jpg", "picture");
    Program.Write("albums/A/m.avi", "movie");
    Start();
    for (const bool isThere : {false, true}) {
        std::filesystem::rename(isThere ? Program.Path("away") : folder, isThere ? folder : Program.Path("away"));
        for (const char *page :
             {"/", "/ShowAlbumMedia?1&thumbs&1", "/ShowAlbumDirList?1&thumbs&1&", "/ShowAlbum?1&thumbs&1"})
            EXPECT_NE(Get(page).find("</html>"), std::string::npos) << page;
        EXPECT_EQ(Get("/ShowAlbumMedia?1&thumbs&1").find("/a.jpg") != std::string::npos, isThere);
        EXPECT_EQ(Get("/ShowPicture?1&full&/a.jpg") == "Picture Not Found!", !isThere);
        EXPECT_EQ(Get("/ShowMovie?1&x&/m.avi") == "Bad Request", !isThere);
        EXPECT_EQ(Get("/ShowDetails?1&nocount&/m.avi") == "File Not Found!", !isThere);
    }
}

TEST_F(Website, ARequestOnAConnectionThatOutlivesTheStopFails) {
    AddAlbum("A");
    Start();
    Client client(Port());
    TurnUntil([] { return gSystray->wnskConnect.UBound() == 1; });
    StopWebsite(true);
    client.Send("GET / HTTP/1.0\r\n\r\n");
    EXPECT_EQ(client.ReceiveAll(), "Bad Request");
}

TEST_F(Website, CountsVisitorsByAddressAndForgetsIdleOnes) {
    AddAlbum("A");
    Start();
    Get("/ShowGraphic?movie.gif");
    EXPECT_EQ(gVisitorsActive, 0);
    Get("/");
    Get("/ShowHelp", "", "127.0.0.2");
    Get("/ShowGraphic?movie.gif", "", "127.0.0.2");
    ASSERT_EQ(gVisitors.size(), 2U);
    EXPECT_EQ(gVisitors[1].CurrentPage, "Help");
    EXPECT_EQ(gConnectionsSession, 2);
    EXPECT_EQ(FirstValue("SELECT * FROM StatsTotal WHERE Stat=1", "TotalCount"), "2");

    Clock.Advance(600000);
    SweepVisitors();
    EXPECT_EQ(gVisitorsActive, 2) << "exactly ten minutes is not yet idle";
    Get("/ShowGraphic?movie.gif", "", "127.0.0.2");
    Clock.Advance(1);
    SweepVisitors();
    EXPECT_EQ(gVisitorsActive, 1);
    EXPECT_EQ(gVisitors.at(0).IP, "127.0.0.2");
}

TEST_F(Website, TakesALoginsBodyThatComesRightBehindItsHead) {
    AddAlbum("A");
    SaveUser({"Ann", "pass", "pass", false}, "");
    Start();
    const std::string body = "username=Ann&password=pass&args=1%26thumbs%261";
    const std::string head = "POST /SendLogin HTTP/1.0\r\ncontent-length: " + std::to_string(body.size()) + "\r\n\r\n";
    const auto isAwaited = [] {
        return gSystray->wnskConnect.Item(1) && gSystray->wnskConnect.Item(1)->tmrBody;
    };
    for (const std::size_t part : {head.size(), head.size() - 2, head.size() + 9}) {
        Client client(Port());
        client.Send((head + body).substr(0, part));
        ASSERT_TRUE(TurnUntil(isAwaited)) << part;
        client.Send((head + body).substr(part));
        EXPECT_NE(client.ReceiveAll().find("Set-Cookie: ms_username=Ann"), std::string::npos) << part;
    }
    Client late(Port());
    late.Send(head);
    EXPECT_EQ(late.ReceiveAll(), "Bad Request");
    Client over(Port());
    over.Send(head);
    over.HalfClose();
    EXPECT_EQ(over.ReceiveAll(), "Bad Request") << "there is nothing more to come";
}

TEST_F(Website, ServesOthersWhileAMovieRunsAndDropsItWhenItStalls) {
    AddAlbum("A");
    Program.Write("albums/A/m.avi", std::string(20 << 20, 'm'));
    Start();
    Client viewer(Port(), "127.0.0.2", 4096);
    viewer.Send("GET /ShowMovie?1&full&/m.avi HTTP/1.0\r\n\r\n");
    viewer.WaitForBytes(100000);
    EXPECT_EQ(Get("/Blank").substr(0, 6), "<html>");
    const Connection socket = gSystray->wnskConnect.Item(1);
    for (int i = 0; i < 50; ++i) DoEvents();
    socket->Transfer.LastSendTick = GetTickCount() - 20000;
    HandleConnectionsTick();
    EXPECT_GT(socket->Transfer.FileSize, 0) << "exactly twenty seconds is not yet stalled";
    socket->Transfer.LastSendTick = GetTickCount() - 20001;
    HandleConnectionsTick();
    EXPECT_EQ(socket->Transfer.FileSize, 0);
    EXPECT_EQ(gBandwidthSession, 0) << "a transfer that never ends counts nothing";
    TurnUntil([&viewer] { return viewer.HasEnded(); });
    EXPECT_TRUE(viewer.HasEnded());
}

TEST_F(Website, DownloadsThatVisitorsCancelLeaveNothingToTheAnswersBehindThem) {
    AddAlbum("A");
    const std::string page = std::string(5000, 'p');
    Program.Write("albums/A/m.avi", std::string(3000000, 'm'));
    Program.Write("albums/A/short.avi", "short");
    Program.Write("htdocs/page.gif", page);
    Start();
    for (int i = 0; i < 20; ++i) {
        Client visitor(Port(), "127.0.0.2", 4096);
        visitor.Send("GET /ShowMovie?1&x&/m.avi HTTP/1.0\r\n\r\n");
        visitor.WaitForBytes(2000);
        i % 2 == 0 ? visitor.Reset() : visitor.Close();
        for (int next = 0; next < 3; ++next) {
            ASSERT_EQ(Get("/ShowGraphic?page.gif"), Head("image/gif") + "\r\n" + page) << i;
            ASSERT_TRUE(Get("/ShowMovie?1&x&/short.avi").ends_with("Content-Length: 5\r\n\r\nshort")) << i;
        }
    }
}

TEST_F(Website, CountsTheMinutesAndReportsOnEveryTenth) {
    AddAlbum("A");
    Start();
    gDownloadCookies.push_back({"127.0.0.1", GetTickCount(), 1, "\\"});
    RecordStat(Stat::Thumbs, "A", 1);
    SaveSetting("Setup", "ServiceBase", "http://127.0.0.1:9");  // where nobody listens
    for (int minute = 1; minute <= 10; ++minute) {
        EXPECT_FALSE(gSystray->tmrReport.Enabled()) << minute;
        EXPECT_EQ(gSystray->tmrConnections.Tag, std::to_string(11 - minute));
        Clock.Advance(60000);
        HandleConnectionsTick();
    }
    EXPECT_EQ(gSystray->tmrConnections.Tag, "10");
    EXPECT_TRUE(gSystray->tmrReport.Enabled()) << "the ping is on its way";
    EXPECT_EQ(FirstValue("SELECT * FROM StatsTotal WHERE Stat=0", "TotalCount"), "10");
    EXPECT_EQ(gDownloadCookies.size(), 1U);
    EXPECT_EQ(GetSetting("Website", "LastOnline"), DateText(Now()));
    Clock.Advance(60000);
    HandleConnectionsTick();
    EXPECT_TRUE(gDownloadCookies.empty());
}

TEST_F(Website, GoesOnWhileNothingCanBeSaved) {
    AddAlbum("A");
    Program.Write("albums/A/a.jpg", "no picture");
    Start();
    RunSql(SystemPath(DatabasePath(9)), "PRAGMA wal_checkpoint(TRUNCATE)");
    const std::string refused = ": the disk cannot be read or written! Your website goes on without.";
    Owner.ExpectNotice("Unable to save what your visitors see and download" + refused);
    Owner.ExpectNotice(
        "Unable to save the time when your website was last online: Disk full (settings.ini)! Your website goes on "
        "without.");
    Owner.ExpectNotice("Unable to save what your visitors see and download" + refused);
    {
        const FileSizeLimit limit(8);
        EXPECT_NE(Get("/Index").find("</html>"), std::string::npos);
        EXPECT_EQ(Get("/ShowPicture?1&full&/a.jpg"), Head("image/jpeg") + "\r\nno picture");
        Clock.Advance(60000);
        HandleConnectionsTick();
    }
    EXPECT_TRUE(Owner.IsDone());
    Owner.ExpectNotice("Able to save what your visitors see and download again. Lost meanwhile: 4.");
    Get("/Index");
    EXPECT_TRUE(Owner.IsDone());
    Owner.ExpectNotice("Able to save the time when your website was last online again. Lost meanwhile: 1.");
    HandleConnectionsTick();
}

}  // namespace
}  // namespace pixmora::test
