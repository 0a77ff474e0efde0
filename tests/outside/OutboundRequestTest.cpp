// The outbound request: what goes out, what comes of the answer, how long it waits, and two at once.
#include "outside/OutboundRequest.h"

#include <gmock/gmock.h>

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTcpSocket>

#include "OutsideFixture.h"
#include "support/Client.h"

namespace pixmora {

using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::Le;

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
    const std::string rest = " HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n";
    EXPECT_THAT(service.Requests,
                ElementsAre("GET /path?x=1&&y=a%20b" + rest, "GET /" + rest, "GET /" + rest, "GET /no?scheme" + rest));
}

TEST_F(OutboundRequest, CutsTheHead) {
    const std::pair<std::string, std::string> cases[] = {
        {"HTTP/1.0 404 Not Found\r\nA: b\r\n\r\nmissing", "missing"},
        {"HTTP/1.0 200 OK\r\n\r\none\r\n\r\ntwo", "one\r\n\r\ntwo"},
        {"just text\n\nmore", "just text\n\nmore"},
        {"HTTP/1.0 200 OK\r\n\r\n", ""},
        {std::string("\r\n\r\n\0\xFF", 6), std::string("\0\xFF", 2)},
    };
    for (const auto &[answer, page] : cases) {
        service.OnRequest = [&, bytes = answer](Winsock &visitor, const std::string &) {
            visitor.OnSendComplete = [&] {
                SetClock();
                visitor.Close();
            };
            visitor.SendData(bytes);
        };
        EXPECT_EQ(GetWebPage(service.Base() + "/"), page) << answer;
        EXPECT_EQ(TakeWaited(), 0) << "an answer ends with its connection";
    }
}

TEST_F(OutboundRequest, WaitsForAConnection) {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    socklen_t length = sizeof address;
    ASSERT_EQ(listen(listener, 0), 0);  // on a free port
    getsockname(listener, reinterpret_cast<sockaddr *>(&address), &length);
    std::vector<test::Client> fillers;  // of its queue: what connects now hears nothing
    for (int i = 0; i < 4; ++i) fillers.emplace_back(ntohs(address.sin_port));
    SetClock();
    EXPECT_EQ(GetWebPage("http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/"), "");
    EXPECT_EQ(TakeWaited(), 15000);
    close(listener);
    service.Refuse();
    for (const std::string &url : {service.Base(), std::string("http://nonexistent.invalid")})
        EXPECT_EQ(GetWebPage(url + "/"), "") << url;
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

/// A service that speaks TLS, with a certificate of its own for 127.0.0.1.
class OutboundTls : public OutboundRequest {
protected:
    OutboundTls() {
        QSslConfiguration own;
        own.setLocalCertificate(certificate);
        own.setPrivateKey(QSslKey(pem, QSsl::Ec));
        server.setSslConfiguration(own);
        QObject::connect(&server, &QTcpServer::pendingConnectionAvailable, &server, [this] {
            QTcpSocket *const visitor = server.nextPendingConnection();
            QObject::connect(visitor, &QTcpSocket::readyRead, visitor, [visitor] {
                visitor->write("HTTP/1.0 200 OK\r\n\r\nanswer to " + visitor->readAll());
                visitor->disconnectFromHost();
            });
        });
        server.listen(QHostAddress::LocalHost);
    }
    ~OutboundTls() override { QSslConfiguration::setDefaultConfiguration(former); }

    const QByteArray pem = QByteArray::fromStdString(
        ReadBinaryFile((std::filesystem::path(__FILE__).parent_path() / "service.pem").string()));
    const QSslCertificate certificate{pem};
    const QSslConfiguration former = QSslConfiguration::defaultConfiguration();
    QSslServer server;
};

TEST_F(OutboundTls, TakesAnswersFromWhomTheMachineTrusts) {
    const std::string url = "https://127.0.0.1:" + std::to_string(server.serverPort()) + "/x";
    EXPECT_EQ(GetWebPage(url), "") << "anybody could be there";
    QSslConfiguration trusting = former;
    trusting.addCaCertificate(certificate);
    QSslConfiguration::setDefaultConfiguration(trusting);
    EXPECT_EQ(GetWebPage(url), "answer to GET /x HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n");
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

}  // namespace pixmora
