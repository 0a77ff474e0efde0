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

constexpr const char *live = "Your Website is Live!";
constexpr const char *stopped = "Pixmora! Stopped!";

/// Whether this process has a file of that name open.
bool IsOpen(const std::string &name) {
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (std::filesystem::read_symlink(entry, error).filename() == name) return true;
    }
    return false;
}

class Website : public RunningSite {
protected:
    /// A viewer who reads a movie of 20 MB slowly, and has its beginning.
    std::unique_ptr<Client> WatchMovie() {
        Program.Write("albums/A/m.avi", std::string(20 << 20, 'm'));
        auto viewer = std::make_unique<Client>(Port(), "127.0.0.2", 4096);
        viewer->Send("GET /ShowMovie?1&full&/m.avi HTTP/1.0\r\n\r\n");
        viewer->WaitForBytes(1000);
        return viewer;
    }
    /// A minute of the site's.
    void PassMinute() {
        Clock.Advance(60000);
        HandleConnectionsTick();
    }
};

TEST_F(Website, StartShowsItsStepsAndReadsItsSettings) {
    AddAlbum("B");
    AddAlbum("A");
    EXPECT_EQ(Start(),
              (std::vector<std::string>{"Opening Ports...", "Checking for News and Updates...", "Loading Settings...",
                                        "Loading Albums...", "Website Started!", live}));
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
    EXPECT_TRUE(gSystray->tmrConnections.Enabled());
}

TEST_F(Website, StartIsCancelledAtItsPlacesAndNoLater) {
    AddAlbum("A");
    PlayedService service;
    SaveSetting("Setup", "ServiceBase", service.Base());
    RecordedStart view;
    const std::string check = "Checking for News and Updates...";
    for (const std::string &place : {check, std::string("Loading Settings..."), std::string("Loading Albums...")}) {
        view = {};
        view.CancelAt = place;
        RunStartSequence(view);
        const bool isLive = place == "Loading Albums...";
        EXPECT_EQ(isLive ? view.Texts.back() : view.Texts.at(view.Texts.size() - 2), isLive ? live : place);
        EXPECT_EQ(gWebsiteStarted, isLive);
        EXPECT_EQ(gSystray->wnskListen->State() == SocketState::Closed, !isLive);
    }
    StopWebsite(true);
    view = {};
    service.OnRequest = [&](Winsock &connection, const std::string &) {
        view.CancelAt = check;  // while the answer is awaited
        connection.Close();
    };
    RunStartSequence(view);
    EXPECT_EQ(view.Texts.at(view.Texts.size() - 2), check);
}

TEST_F(Website, StartListsTheSiteWithAServiceThatAnswersOnly) {
    PlayedService service;
    AddAlbum("A");
    SaveSetting("Setup", "ServiceBase", service.Base());
    SaveSetting("Setup", "ListOnline", "1");
    SaveSetting("Setup", "RunFirewallCheck", "1");
    for (const char *answer : {"<html>404</html>", "127.0.0.1"}) {
        service.Answer = answer;
        EXPECT_EQ(Start().at(4), "Listing Online...");
        StopWebsite(true);
    }
    TurnUntil([&] { return service.Requests.size() > 3; }, std::chrono::milliseconds(200));
    EXPECT_EQ(service.Requests.size(), 3U) << "two checks and the second's listing";
}

TEST_F(Website, StartTellsWhatKeepsItFromServing) {
    for (const int answer : {AnswerNo, AnswerYes}) {
        Owner.ExpectMessage("You haven't setup any albums! Would you like to set one up now?", CriticalQuestion,
                            answer);
        if (answer == AnswerYes) Owner.ExpectSetup();
        EXPECT_EQ(Start(), std::vector<std::string>{stopped});
    }
    AddAlbum("A");
    sqlite3 *other = nullptr;
    sqlite3_open(SystemPath(DatabasePath(9)).c_str(), &other);
    sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    gDatabase->SetLockWait(1);
    Owner.ExpectMessage(DatabaseMessage(), FlagCritical);
    EXPECT_EQ(Start().back(), stopped);
    sqlite3_close(other);
    SaveSetting("Setup", "ListenAddress", "192.0.2.7");
    Owner.ExpectMessage("The address '192.0.2.7' is not an address of this computer!...", FlagCritical);
    EXPECT_EQ(Start().back(), stopped);
    SaveSetting("Setup", "ListenAddress", "LocalHost");
    EXPECT_EQ(Start().back(), live);
    EXPECT_EQ(gWebsiteAddress, "http://127.0.0.1:" + GetSetting("Setup", "ListenPort"));
    EXPECT_NE(Get("/Blank"), "");
}

TEST_F(Website, StartAsksAboutAnAlbumWhoseFolderIsGone) {
    std::filesystem::remove_all(AddAlbum("A"));
    const std::string question = "Your album 'A' cannot be found!...";
    Owner.ExpectMessage(question, CriticalQuestion, AnswerYes);
    EXPECT_EQ(Start().back(), stopped);
    Owner.ExpectMessage(question, CriticalQuestion, AnswerNo);
    Owner.ExpectNotice("Unable to read folders of your albums! What is in them isn't shown:\r\n" +
                       Program.Path("albums/A"));
    EXPECT_EQ(Start().back(), live);
    EXPECT_EQ(gAlbums.at(0)->PictureCount, 0);
}

TEST_F(Website, StartReadsTheOwnersTextsScansAlbumsAndTidiesTheTables) {
    AddAlbum("A");
    for (const char *file : {"one.JPG", "sub/film.mov", "Secret stuff/x.jpg", "Hidden/x.jpg", "Private/x.jpg"})
        Program.Write(std::string("albums/A/") + file, "123");
    Program.Write("restrictwords.txt", "Secret*\r\n\r\nHidden");
    Program.Write("welcome.txt", "Hello\r\nyou\n");
    for (const char *path : {"\\one.JPG", "\\gone.jpg"}) CountFileVisit("A", path);
    Start();
    EXPECT_EQ(gAlbums.at(0)->PictureCount, 2) << "\"Private\" is no word of this owner's";
    EXPECT_EQ(gAlbums.at(0)->MovieCount, 1);
    EXPECT_EQ(gRestrictedWords, (std::vector<std::string>{"Secret*", "Hidden"}));
    EXPECT_EQ(gWelcomeText, "Hello<br>you<br>");
    EXPECT_EQ(gDatabase->OpenRecordset("PopularFiles", RecordsetType::Snapshot)->RecordCount(), 1);
}

TEST_F(Website, AStopAsksAndLeavesNothingOpenAndAStartBeginsAnew) {
    AddAlbum("A");
    Start();
    const auto viewer = WatchMovie();
    Client late(Port());
    Get("/");
    EXPECT_EQ(gConnectionsSession, 1);
    EXPECT_TRUE(IsOpen("m.avi"));
    for (const int answer : {AnswerNo, AnswerYes}) {
        Owner.ExpectMessage("There are still people on your website!...", FlagYesNo, answer);
        EXPECT_EQ(StopWebsite(false), answer == AnswerYes);
        EXPECT_EQ(gWebsiteStarted, answer == AnswerNo);
    }
    EXPECT_EQ(GetSetting("Website", "LastOnline"), "0");
    EXPECT_FALSE(gDatabase->TableExists("MediaList1"));
    EXPECT_FALSE(IsOpen("m.avi"));
    EXPECT_EQ(gVisitorsActive, 0);
    EXPECT_FALSE(gSystray->tmrConnections.Enabled());
    EXPECT_EQ(Owner.FiguresRunning(), false);
    EXPECT_EQ(gSystray->wnskListen->State(), SocketState::Closed);
    EXPECT_EQ(gConnectionsTotal, 1) << "shown while the site is stopped";
    EXPECT_EQ(gBandwidthTotal, ReadStatTotal(Stat::Bandwidth));
    EXPECT_GT(gBandwidthTotal, 0);
    late.Send("GET /Blank HTTP/1.0\r\n\r\n");
    EXPECT_EQ(late.ReceiveAll(), "Bad Request") << "on a connection that outlives the stop";

    Start();
    EXPECT_EQ(gConnectionsSession + gVisitorsActive, 0);
    EXPECT_TRUE(gVisitors.empty());
    EXPECT_TRUE(gDatabase->TableExists("MediaList1"));
    EXPECT_EQ(gSystray->tmrConnections.Tag, "10");
    Clock.SetNow(MakeDate(2005, 3, 10, 12));
    Get("/");
    for (const char *year : {"2004", "2005"})
        EXPECT_EQ(FirstValue(Concat("SELECT * FROM StatsMonthly WHERE WhichYear=", year), "Visitors"), "1") << year;
}

TEST_F(Website, AFolderThatIsTakenAwayContributesNothingUntilItIsBack) {
    const std::string folder = AddAlbum("A");
    const std::string away = Program.Path("away");
    for (const char *file : {"a.jpg", "m.avi"}) Program.Write(std::string("albums/A/") + file, "x");
    Start();
    for (const bool isThere : {false, true}) {
        std::filesystem::rename(isThere ? away : folder, isThere ? folder : away);
        EXPECT_EQ(Contains(Get("/ShowAlbumMedia?1&thumbs&1"), "/a.jpg"), isThere);
        EXPECT_EQ(Get("/ShowPicture?1&full&/a.jpg") == "Picture Not Found!", !isThere);
        EXPECT_EQ(Get("/ShowMovie?1&x&/m.avi") == "Bad Request", !isThere);
        EXPECT_EQ(Get("/ShowDetails?1&nocount&/m.avi") == "File Not Found!", !isThere);
    }
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
    Client over(Port());
    over.Send(head);
    over.HalfClose();
    EXPECT_EQ(over.ReceiveAll(), "Bad Request") << "there is nothing more to come";
}

TEST_F(Website, ServesOthersWhileAMovieRunsAndDropsItWhenItStalls) {
    AddAlbum("A");
    Start();
    const auto viewer = WatchMovie();
    EXPECT_EQ(Get("/Blank").substr(0, 6), "<html>");
    Clock.Advance(20001);
    viewer->WaitForBytes(viewer->Receive().size() + (8 << 20));
    const Connection socket = gSystray->wnskConnect.Item(1);
    HandleConnectionsTick();
    EXPECT_GT(socket->Transfer.FileSize, 0) << "it goes on";
    for (int i = 0; i < 50; ++i) DoEvents();
    socket->Transfer.LastSendTick = GetTickCount() - 20001;
    HandleConnectionsTick();
    EXPECT_EQ(socket->Transfer.FileSize, 0);
    EXPECT_FALSE(IsOpen("m.avi"));
    EXPECT_EQ(gBandwidthSession, 0) << "a transfer that never ends counts nothing";
    EXPECT_TRUE(TurnUntil([&viewer] { return viewer->HasEnded(); }));
}

TEST_F(Website, AMovieIsBookedAtItsEndAndOneThatBecomesShorterIsNot) {
    AddAlbum("A");
    Program.Write("albums/A/whole.avi", std::string(5000, 'm'));
    Start();
    EXPECT_TRUE(Get("/ShowMovie?1&x&/whole.avi").ends_with("mmm"));
    const auto booked = gBandwidthSession;
    EXPECT_GT(booked, 0);
    const auto viewer = WatchMovie();
    const Connection socket = gSystray->wnskConnect.Item(1);
    std::filesystem::resize_file(Program.Path("albums/A/m.avi"), 1000);
    EXPECT_LT(viewer->ReceiveAll().size(), 20U << 20);
    EXPECT_EQ(socket->Transfer.FileSize, 0);
    EXPECT_FALSE(IsOpen("m.avi"));
    EXPECT_EQ(gBandwidthSession, booked);
}

TEST_F(Website, CountsTheMinutesAndReportsOnEveryTenth) {
    AddAlbum("A");
    Start();
    gDownloadCookies.push_back({"127.0.0.1", GetTickCount(), 1, "\\"});
    SaveSetting("Setup", "ServiceBase", "http://127.0.0.1:9");  // where nobody listens
    for (int minute = 1; minute <= 10; ++minute) {
        EXPECT_FALSE(gSystray->tmrReport.Enabled()) << minute;
        EXPECT_EQ(gSystray->tmrConnections.Tag, std::to_string(11 - minute));
        PassMinute();
    }
    EXPECT_EQ(gSystray->tmrConnections.Tag, "10");
    EXPECT_TRUE(gSystray->tmrReport.Enabled()) << "the ping is on its way";
    EXPECT_EQ(FirstValue("SELECT * FROM StatsTotal WHERE Stat=0", "TotalCount"), "10");
    EXPECT_EQ(GetSetting("Website", "LastOnline"), DateText(Now()));
    EXPECT_EQ(gDownloadCookies.size(), 1U);
    SaveSetting("Setup", "PublicAddress", "photos.example:81");
    PassMinute();
    EXPECT_TRUE(gDownloadCookies.empty());
    EXPECT_EQ(gWebsiteAddress + " " + GetSetting("Website", "Address"),
              "http://photos.example:81 http://photos.example:81");
}

TEST_F(Website, GoesOnWhileNothingCanBeSaved) {
    AddAlbum("A");
    Start();
    RunSql(SystemPath(DatabasePath(9)), "PRAGMA wal_checkpoint(TRUNCATE)");
    for (const char *what : {"what your visitors see and download: the disk cannot be read or written!...",
                             "the time when your website was last online: Disk full (settings.ini)!...",
                             "what your visitors see and download: the disk cannot be read or written!..."})
        Owner.ExpectNotice(Concat("Unable to save ", what));
    {
        const FileSizeLimit limit(8);
        EXPECT_NE(Get("/Index").find("</html>"), std::string::npos);
        PassMinute();
    }
    for (const char *what : {"the time when your website was last online again. Lost meanwhile: 1.",
                             "what your visitors see and download again. Lost meanwhile: 3."})
        Owner.ExpectNotice(Concat("Able to save ", what));
    PassMinute();
}

}  // namespace
}  // namespace pixmora::test
