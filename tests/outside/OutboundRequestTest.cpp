// The outbound request: what goes out, what comes of the answer, how long it waits, and two at once.
#include "outside/OutboundRequest.h"

#include <gmock/gmock.h>

#include "OutsideFixture.h"
#include "support/Client.h"

namespace pixmora {

using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;

namespace {

/// A listening socket whose queue is full: what connects to it hears nothing.
class FullListener {
public:
    FullListener() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        socklen_t length = sizeof address;
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto *const general = reinterpret_cast<sockaddr *>(&address);
        if (bind(listener_, general, length) != 0 || listen(listener_, 0) != 0 ||
            getsockname(listener_, general, &length) != 0) {
            throw std::runtime_error("no listening socket");
        }
        Port = ntohs(address.sin_port);
        for (int i = 0; i < 4; ++i) fillers_.emplace_back(Port);
    }
    ~FullListener() { close(listener_); }
    FullListener(const FullListener &) = delete;
    FullListener &operator=(const FullListener &) = delete;

    int Port = 0;

private:
    int listener_;
    std::vector<test::Client> fillers_;
};

}  // namespace

using OutboundRequest = OutsideFixture;

TEST_F(OutboundRequest, SendsThePathAsItStands) {
    const std::string address = service.Base().substr(7);
    service.Answer = "body";
    for (const std::string &url : {"http://" + address + "/path?x=1&&y=a%20b", "http://" + address,
                                   address + "/no?scheme", "http://" + address + "/"}) {
        EXPECT_EQ(GetWebPage(url), "body") << url;
    }
    const std::string rest = " HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n";
    EXPECT_THAT(service.Requests,
                ElementsAre("GET /path?x=1&&y=a%20b" + rest, "GET /" + rest, "GET /no?scheme" + rest, "GET /" + rest));
}

TEST_F(OutboundRequest, AsksNobodyForAnAddressThatLeadsNowhere) {
    SetClock();
    for (const char *url : {"", "/clients/startup.php?", "http:///x", "http://:80/", "http://127.0.0.1:http/",
                            "http://127.0.0.1:0/", "http://127.0.0.1:65536/", "http://127.0.0.1:/"}) {
        EXPECT_EQ(GetWebPage(url), "") << url;
    }
    EXPECT_EQ(GetWebPage(service.Base() + "/x\r\nHost: another"), "");
    EXPECT_EQ(TakeWaited(), 0);
    EXPECT_THAT(service.Requests, IsEmpty());
}

TEST_F(OutboundRequest, CutsTheHead) {
    const std::tuple<const char *, std::string, std::string> cases[] = {
        {"head and body", "HTTP/1.0 200 OK\r\nA: b\r\n\r\nbody", "body"},
        {"any status will do", "HTTP/1.0 404 Not Found\r\n\r\nmissing", "missing"},
        {"only the first blank line counts", "HTTP/1.0 200 OK\r\n\r\none\r\n\r\ntwo", "one\r\n\r\ntwo"},
        {"no blank line", "just text\n\nmore", "just text\n\nmore"},
        {"head alone", "HTTP/1.0 200 OK\r\n\r\n", ""},
        {"bytes of any value", std::string("\r\n\r\n\0\xFF", 6), std::string("\0\xFF", 2)},
    };
    const Tick start = GetTickCount();
    for (const auto &[name, answer, page] : cases) {
        service.OnRequest = [bytes = answer](Winsock &visitor, const std::string &) {
            visitor.OnSendComplete = [&visitor] {
                visitor.Close();
            };
            visitor.SendData(bytes);
        };
        EXPECT_EQ(GetWebPage(service.Base() + "/"), page) << name;
    }
    service.OnRequest = [](Winsock &visitor, const std::string &) {
        visitor.Close();
    };
    EXPECT_EQ(GetWebPage(service.Base() + "/"), "") << "closed without a word";
    EXPECT_THAT(GetTickCount() - start, Le(4000)) << "an answer ends with its connection";
}

TEST_F(OutboundRequest, WaitsForAConnection) {
    const FullListener nobody;
    SetClock();
    EXPECT_EQ(GetWebPage("http://127.0.0.1:" + std::to_string(nobody.Port) + "/"), "");
    EXPECT_EQ(TakeWaited(), 15000);
    service.Refuse();
    SetClock();
    EXPECT_EQ(GetWebPage(service.Base() + "/"), "");
    EXPECT_THAT(TakeWaited(), Le(15000)) << "refused";
}

TEST_F(OutboundRequest, WaitsForTheFirstByteAndForTheEnd) {
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
}

TEST_F(OutboundRequest, GoesOnWhileSomethingComesUpToAMegabyte) {
    Timer timer;
    int pieces = 0;
    service.OnRequest = [&](Winsock &visitor, const std::string &) {
        timer.OnTimer = [&] {
            if (pieces == 5) return visitor.Close();
            ++pieces;
            visitor.SendData("piece ");
        };
        timer.SetInterval(10);
        timer.SetEnabled(true);
    };
    EXPECT_EQ(GetWebPage(service.Base() + "/"), "piece piece piece piece piece ");
    service.OnRequest = [](Winsock &visitor, const std::string &) {
        visitor.SendData("\r\n\r\n" + std::string(3 * LongestAnswer, 'x'));
    };
    EXPECT_EQ(GetWebPage(service.Base() + "/").size(), LongestAnswer - 4);
}

TEST_F(OutboundRequest, EndsAtASecondCall) {
    std::string second;
    service.OnRequest = [&](Winsock &visitor, const std::string &request) {
        const bool isFirst = request.starts_with("GET /first");
        if (!isFirst)
            visitor.OnSendComplete = [&visitor] {
                visitor.Close();
            };
        visitor.SendData(isFirst ? "\r\n\r\npart of one" : "\r\n\r\ntwo");
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
    service.OnRequest = nullptr;
    service.Answer = "three";
    EXPECT_EQ(GetWebPage(service.Base() + "/third"), "three");
}

}  // namespace pixmora
