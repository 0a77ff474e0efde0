// Outbound requests: what goes out, what comes of the answer, how long they wait, two at once; and by them the exchange
// with the central service, with every word of its answer.
#include "outside/OutboundRequest.h"

#include <gmock/gmock.h>

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTcpSocket>

#include "OutsideFixture.h"
#include "outside/Address.h"
#include "outside/CentralService.h"
#include "store/Schema.h"
#include "store/Settings.h"
#include "store/Statistics.h"
#include "support/Client.h"
#include "support/ScriptedOwner.h"

namespace pixmora {

using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::Le;

namespace {

const std::string requestEnd = " HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n";
const std::string extinct = "This version of Pixmora! Digital Media Software has been determined extinct!...";
const std::string newVersion = "There is a new version of Pixmora! Digital Media Software available!...";
const std::string news = "There is some important news regarding your software!...";

}  // namespace

using OutboundRequest = OutsideFixture;

TEST_F(OutboundRequest, SendsThePathAsItStandsAndAsksNobodyForAnAddressThatLeadsNowhere) {
    service.Answer = "body";
    for (const char *path : {"/path?x=1&&y=a%20b", "", "/"})
        EXPECT_EQ(GetWebPage(service.Base() + path), "body") << path;
    EXPECT_EQ(GetWebPage(service.Base().substr(7) + "/no?scheme"), "body");
    SetClock();
    for (const char *url : {"", "/clients/startup.php?", "http:///x", "http://:80/", "http://127.0.0.1:http/",
                            "http://127.0.0.1:0/", "http://127.0.0.1:65536/", "http://127.0.0.1:/"}) {
        EXPECT_EQ(GetWebPage(url), "") << url;
    }
    EXPECT_EQ(GetWebPage(service.Base() + "/x\r\nHost: another"), "");
    EXPECT_EQ(TakeWaited(), 0);
    EXPECT_THAT(service.Requests, ElementsAre("GET /path?x=1&&y=a%20b" + requestEnd, "GET /" + requestEnd,
                                              "GET /" + requestEnd, "GET /no?scheme" + requestEnd));
}

TEST_F(OutboundRequest, WaitsForTheFirstByteAndForTheEndButNotForEver) {
    service.OnRequest = [this](Winsock &, const std::string &) {
        SetClock();
    };
    EXPECT_EQ(GetWebPage(service.Base() + "/"), "");
    EXPECT_THAT(TakeWaited(), AllOf(Ge(15000), Le(20000))) << "nothing said";

    service.OnRequest = [](Winsock &visitor, const std::string &) {
        visitor.SendData("\r\n\r\nno end");
    };
    WhenAnswerBegins([this] { SetClock(); });
    EXPECT_EQ(GetWebPage(service.Base() + "/"), "no end");
    EXPECT_THAT(TakeWaited(), AllOf(Ge(1000), Le(5000))) << "never closed";
    EXPECT_EQ(gSystray->wnskDownload->State(), SocketState::Closed);
    WhenAnswerBegins([this] {
        SetClock();
        EndWebPageRequest();
    });
    EXPECT_EQ(GetWebPage(service.Base() + "/"), "");
    EXPECT_EQ(TakeWaited(), 0) << "given up";

    service.OnRequest = [this](Winsock &visitor, const std::string &) {
        SetClock();
        visitor.OnSendComplete = [this, &visitor] {
            clock->Advance(1000);
            visitor.SendData("drip");
        };
        visitor.SendData("drip");
    };
    GetWebPage(service.Base() + "/");
    EXPECT_THAT(TakeWaited(), AllOf(Ge(20000), Le(30000))) << "whatever comes";

    service.OnRequest = [](Winsock &visitor, const std::string &) {
        visitor.SendData("\r\n\r\n" + std::string(3 * LongestAnswer, 'x'));
    };
    EXPECT_EQ(GetWebPage(service.Base() + "/").size(), LongestAnswer - 4);
}

/// The service speaks TLS, with a certificate of its own for 127.0.0.1.
TEST_F(OutboundRequest, TakesAnswersOverTlsFromWhomTheMachineTrusts) {
    const auto file = std::filesystem::path(__FILE__).parent_path() / "service.pem";
    const QByteArray pem = QByteArray::fromStdString(ReadBinaryFile(file.string()));
    QSslConfiguration own;
    own.setLocalCertificate(QSslCertificate(pem));
    own.setPrivateKey(QSslKey(pem, QSsl::Ec));
    QSslServer server;
    server.setSslConfiguration(own);
    QObject::connect(&server, &QTcpServer::pendingConnectionAvailable, &server, [&server] {
        QTcpSocket *const visitor = server.nextPendingConnection();
        QObject::connect(visitor, &QTcpSocket::readyRead, visitor, [visitor] {
            visitor->write("HTTP/1.0 200 OK\r\n\r\nanswer to " + visitor->readAll());
            visitor->disconnectFromHost();
        });
    });
    server.listen(QHostAddress::LocalHost);
    const std::string url = "https://127.0.0.1:" + std::to_string(server.serverPort()) + "/x";
    EXPECT_EQ(GetWebPage(url), "") << "anybody could be there";
    const QSslConfiguration former = QSslConfiguration::defaultConfiguration();
    QSslConfiguration trusting = former;
    trusting.addCaCertificate(own.localCertificate());
    QSslConfiguration::setDefaultConfiguration(trusting);
    EXPECT_EQ(GetWebPage(url), "answer to GET /x HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n");
    QSslConfiguration::setDefaultConfiguration(former);
}

TEST_F(OutboundRequest, EndsAtASecondCall) {
    std::string second;
    service.OnRequest = [](Winsock &visitor, const std::string &request) {
        if (request.starts_with("GET /first")) return visitor.SendData("\r\n\r\npart of one");
        visitor.OnSendComplete = [&visitor] {
            visitor.Close();
        };
        visitor.SendData("\r\n\r\ntwo");
    };
    WhenAnswerBegins([&] {
        EXPECT_EQ(GetWebPage("/no/base"), "");  // asks nobody, so it disturbs nobody
        EXPECT_EQ(gSystray->wnskDownload->Tag, "\r\n\r\npart of one");
        second = GetWebPage(service.Base() + "/second");
        SetClock();
    });
    EXPECT_EQ(GetWebPage(service.Base() + "/first"), "");
    EXPECT_EQ(TakeWaited(), 0) << "the first has nothing to wait for any more";
    EXPECT_EQ(second, "two");
}

class CentralService : public OutsideFixture {
protected:
    CentralService() {
        SaveSetting("Setup", "ServiceBase", service.Base());
        SaveSetting("Setup", "RunFirewallCheck", "1");
        SaveSetting("Records", "InstallTime", "2004030112");
        SaveSetting("Setup", "ListenAddress", own);
        gSystray->wnskListen->LocalPort = 8080;
    }

    static ServiceCheck Check(bool startingServer = true) { return CheckCentralService(startingServer); }
    ServiceCheck CheckWithAnswer(const std::string &answer) {
        service.Answer = answer;
        return Check();
    }

    void WaitForRequests(std::size_t count) {
        EXPECT_TRUE(test::TurnUntil([&] { return service.Requests.size() >= count; }));
    }

    const std::string own = "192.0.2.7";
    const std::string local = "http://" + own + ":8080";
    ScriptedOwner owner;
};

TEST_F(CentralService, IsAskedAndTellsTheAddress) {
    EXPECT_EQ(Check(), ServiceCheck::NoAnswer);
    SaveSetting("Setup", "ListenPort", "81");
    EXPECT_EQ(Check(false), ServiceCheck::NoAnswer);
    EXPECT_THAT(service.Requests,
                ElementsAre("GET /clients/startup.php?&ver=01000000&port=&starting_server=1" + requestEnd,
                            "GET /clients/startup.php?&ver=01000000&port=81&starting_server=0" + requestEnd));
    const std::tuple<std::string, std::string, std::string> cases[] = {
        // answer, account, address
        {"", "ann", local},
        {own, "ann", local},
        {"203.0.113.7", "ann", "http://203.0.113.7:8080"},
        {"203.0.113.7|OK", "ann", service.Base() + "?ann"},
        {own + "|OK", "ann b", service.Base() + "?ann%20b"},
        {"203.0.113.7|OK", "", "http://203.0.113.7:8080"},
        {"203.0.113.7|ok|OKAY||Nothing", "ann", "http://203.0.113.7:8080"},
        {"203.0.113.7\r\n|OK\r\n", "ann", service.Base() + "?ann"},
        {"<html><body>Not Found|OK</body></html>", "ann", local},
        {"|OK", "ann", local},
    };
    for (const auto &[answer, account, address] : cases) {
        SaveSetting("Setup", "AccountName", account);
        const bool isAnswer = address != local || answer == own;
        EXPECT_EQ(CheckWithAnswer(answer), isAnswer ? ServiceCheck::Answered : ServiceCheck::NoAnswer) << answer;
        EXPECT_EQ(gWebsiteAddress, address) << answer;
    }
}

TEST_F(CentralService, WarnsOfADifferentAddressUntilToldNotTo) {
    DeleteSetting("Setup", "RunFirewallCheck");
    for (const int answer : {AnswerNo, AnswerYes}) {
        owner.ExpectMessage("We have detected your private IP is " + own + ", but your public IP is 203.0.113.7 !...",
                            FlagYesNo | FlagCritical, answer);
        EXPECT_EQ(ServiceCheck::Answered, CheckWithAnswer("203.0.113.7"));
        EXPECT_EQ(gWebsiteAddress, "http://203.0.113.7:8080");
    }
    EXPECT_EQ(GetSetting("IgnoreMsg", "DifferentIps"), "1");
    EXPECT_EQ(ServiceCheck::Answered, CheckWithAnswer("203.0.113.7"));
}

TEST_F(CentralService, BringsNewsInTheOrderOfItsAnswerOrCallsTheStartOff) {
    EXPECT_EQ(ServiceCheck::Answered, CheckWithAnswer("203.0.113.7|LatestNews2004030112"))
        << "known when the program was installed";
    const std::string answer = "203.0.113.7|LatestNews2004030200|NewVersionAvailable";
    for (const int reading : {AnswerNo, AnswerYes}) {
        const bool isRead = reading == AnswerYes;
        owner.ExpectMessage(news, FlagYesNo | FlagInformation, reading);
        if (isRead) owner.ExpectBrowser(service.Base() + "/news.php?ver=2004030200");
        owner.ExpectMessage(newVersion, FlagYesNo | FlagInformation, reading);
        if (isRead) owner.ExpectBrowser(service.Base() + "/whatsnew.php");
        EXPECT_EQ(ServiceCheck::Answered, CheckWithAnswer(answer));
        EXPECT_EQ(GetSetting("Records", "LatestNewsTime"), isRead ? "2004030200" : "");
    }
    EXPECT_EQ(ServiceCheck::Answered, CheckWithAnswer(answer.substr(0, answer.rfind('|')))) << "once";
    owner.ExpectMessage(news, FlagYesNo | FlagInformation, AnswerNo);
    EXPECT_EQ(ServiceCheck::Answered, CheckWithAnswer("203.0.113.7|The LatestNews2004030201"));

    owner.ExpectMessage(extinct, FlagYesNo | FlagCritical, AnswerYes);
    owner.ExpectBrowser(service.Base() + "/download.php");
    owner.ExpectMessage(newVersion, FlagYesNo | FlagInformation, AnswerNo);
    EXPECT_EQ(ServiceCheck::CalledOff, CheckWithAnswer("203.0.113.7|OldVersionExtinct|NewVersionAvailable"));
}

TEST_F(CentralService, HearsOfTheSiteByListingAndPing) {
    OpenOrCreateDatabase();
    CreateStatsRecent();
    const Tick now = GetTickCount();
    for (const Tick time : {now - 3600000 - 60000, now}) {  // the elder event has left the last hour
        const ClockSetForTest past(time, MakeDate(2004, 3, 1));
        const std::pair<Stat, int> events[] = {
            {Stat::Visitors, 1}, {Stat::Thumbs, 2}, {Stat::Downloads, 3}, {Stat::Bandwidth, 4000}};
        for (const auto &[kind, value] : events) RecordStat(kind, NoAlbum, value);
    }
    SaveSetting("Setup", "AccountName", "ann b");
    gServerTitle = "My Site";
    gSiteDescription = "A B";
    gRunningTotal = 7;
    gConnectionsTotal = 11;
    gThumbsTotal = 13;
    gDownloadsTotal = 17;
    gBandwidthTotal = 3000000000;
    {
        const ClockSetForTest start(GetTickCount() - 126400, MakeDate(2004, 3, 1));
        gOnlineTimer->StopTimer();  // as the stop before did
        gOnlineTimer->StartTimer();
    }
    SendListing(12, 3);
    gSiteDescription.clear();
    EXPECT_TRUE(service.Requests.empty()) << "nobody waits";
    WaitForRequests(1);
    SendPing();
    EXPECT_TRUE(gSystray->tmrReport.Enabled()) << "nor for ever";
    WaitForRequests(2);
    EXPECT_THAT(service.Requests, ElementsAre("GET /clients/sendserverinfo.php?username=ann%20b&site_title=My%20Site&&"
                                              "site_desc=A%20B&&picturecount=12&&moviecount=3" +
                                                  requestEnd,
                                              "GET /clients/serverping.php?username=ann%20b&ver=01000000&tr=420&tv=11"
                                              "&tt=13&td=17&tb=3000000000&sr=126&rv=1&rt=2&rd=3&rb=4000" +
                                                  requestEnd));
    EXPECT_EQ(gDatabase->OpenRecordset("StatsRecent", RecordsetType::Table)->RecordCount(), 4) << "and is tidied";
    gDatabase.reset();

    SaveSetting("Setup", "ServiceBase", "");
    SetClock();
    SendListing(1, 1);
    EXPECT_EQ(Check(), ServiceCheck::NoAnswer);
    EXPECT_EQ(TakeWaited(), 0);
    EXPECT_EQ(gWebsiteAddress, local);
    EXPECT_EQ(service.Requests.size(), 2U) << "none without a service";
}

}  // namespace pixmora
