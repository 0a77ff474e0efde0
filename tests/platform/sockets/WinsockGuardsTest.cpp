// What a listening element and its connections can be held to: one address, a number of places, peers that do
// something.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Clock.h"
#include "platform/sockets/Winsock.h"
#include "support/Client.h"
#include "support/ProcessorTime.h"

namespace pixmora {
namespace {

using test::Client;
using test::Fetch;
using test::TurnUntil;
using Element = std::shared_ptr<Winsock>;

/// Accepts everything that its listening element offers, and answers each request with the same bytes.
class Server {
public:
    explicit Server(std::string answer = "answer") : Answer(std::move(answer)) {
        Listening->OnConnectionRequest = [this](int requestId) {
            const Element element = Elements.emplace_back(Winsock::Create());
            element->OnDataArrival = [this, weak = std::weak_ptr(element)](std::size_t) {
                const Element own = weak.lock();
                own->GetData();
                if (WhileAnswering) WhileAnswering(own);
                own->SendData(Answer);
            };
            element->OnSendComplete = [weak = std::weak_ptr(element)] {
                weak.lock()->Close();
            };
            element->Accept(requestId);
        };
    }
    int Port() const { return Listening->LocalPort(); }
    /// Whether as many come to be accepted and then, for a while, no more.
    bool Accepts(std::size_t count) {
        return TurnUntil([&] { return Elements.size() >= count; }) &&
               !TurnUntil([&] { return Elements.size() > count; }, std::chrono::milliseconds(40));
    }

    const Element Listening = Winsock::Create();
    std::vector<Element> Elements;
    std::string Answer;
    std::function<void(const Element &)> WhileAnswering;
};

bool CanConnect(const std::string &address, int port) {
    const Element element = Winsock::Create();
    element->SetRemoteHost(address);
    element->SetRemotePort(port);
    element->Connect();
    TurnUntil([&] { return element->State() != SocketState::Connecting; });
    return element->State() == SocketState::Connected;
}

TEST(WinsockGuards, ListensOnOneAddressOfTheMachine) {
    Server server;
    for (const char *address : {"192.0.2.1", "127.0.0", "here", "127.0.0.1 "}) {
        SCOPED_TRACE(address);
        server.Listening->SetLocalAddress(address);
        try {
            server.Listening->Listen();
            ADD_FAILURE() << "listens";
        } catch (const RunTimeError &error) {
            EXPECT_EQ(error.Number(), ErrorNumber::AddressNotAvailable);
        }
        EXPECT_EQ(server.Listening->State(), SocketState::Closed);
    }
    server.Listening->SetLocalAddress("127.0.0.2");
    server.Listening->Listen();
    EXPECT_TRUE(CanConnect("127.0.0.2", server.Port()));
    EXPECT_FALSE(CanConnect("127.0.0.1", server.Port()));
    server.Listening->Close();
    server.Listening->SetLocalAddress("");
    server.Listening->Listen();
    EXPECT_TRUE(CanConnect("127.0.0.1", server.Port()));
}

TEST(WinsockGuards, KeepsWhatIsBeyondTheLimitInTheQueue) {
    Server server;
    server.Listening->SetConnectionLimit(3);
    server.Listening->Listen();
    std::vector<Client> clients;
    for (int i = 0; i < 8; ++i) clients.emplace_back(server.Port());
    EXPECT_TRUE(server.Accepts(3));

    const double before = test::ProcessorSeconds();
    EXPECT_FALSE(TurnUntil([] { return false; }, std::chrono::milliseconds(200)));
    EXPECT_LT(test::ProcessorSeconds() - before, 0.1) << "a full house may not spin";

    server.Elements[0]->Close();
    EXPECT_TRUE(server.Accepts(4)) << "the client hasn't closed, but what lingers takes no place";
    clients[1].Send("x");
    EXPECT_EQ(clients[1].ReceiveAll(), "answer");
    EXPECT_TRUE(server.Accepts(5));
    clients[2].Reset();
    EXPECT_TRUE(server.Accepts(6)) << "a vanished client's place";

    const int port = server.Port();
    server.Listening->Close();
    server.Listening->SetLocalPort(port);
    server.Listening->Listen();
    Client later(port);
    EXPECT_TRUE(server.Accepts(6)) << "connections from before count too";
    server.Elements[5]->Close();
    EXPECT_TRUE(server.Accepts(7));
    Client last(port);
    EXPECT_TRUE(server.Accepts(7));
    server.Listening->SetConnectionLimit(0);
    last.Send("x");
    EXPECT_EQ(last.ReceiveAll(), "answer");
}

TEST(WinsockGuards, KnowsHowLongAPeerHasDoneNothing) {
    ClockSetForTest clock(std::numeric_limits<Tick>::max() - 30000, MakeDate(2004, 3, 10));  // wraps on the way
    Server server(std::string(30'000'000, 'a'));
    server.WhileAnswering = [&](const Element &element) {
        clock.Advance(90000);
        EXPECT_EQ(element->PeerIdleTime(), 0) << "it is we who take the time";
    };
    server.Listening->Listen();
    Client client(server.Port(), "127.0.0.1", 4096);
    EXPECT_TRUE(server.Accepts(1));
    const Element element = server.Elements[0];
    EXPECT_EQ(element->PeerIdleTime(), 0);
    clock.Advance(50000);
    EXPECT_EQ(element->PeerIdleTime(), 50000) << "silent";

    client.Send("x");
    client.WaitForBytes(1);
    EXPECT_EQ(element->PeerIdleTime(), 0);
    for (int i = 0; i < 3; ++i) {
        client.WaitForBytes(client.Receive().size() + 100'000);
        clock.Advance(50000);
        EXPECT_EQ(element->PeerIdleTime(), 0) << "a slow reader";
    }
    const auto settled = [&] {
        return element->PeerIdleTime() > 0;
    };
    EXPECT_TRUE(TurnUntil([&] {
        clock.Advance(1);
        return settled();
    }));
    clock.Advance(70000);
    EXPECT_GT(element->PeerIdleTime(), 70000) << "a stalled one";
    element->Close();
    EXPECT_EQ(element->PeerIdleTime(), 0);
}

TEST(WinsockGuards, SlowReadersAreFedInSmallPortions) {
    Server server;
    std::size_t sent = 0;
    server.Listening->Listen();
    Client client(server.Port(), "127.0.0.1", 4096);
    EXPECT_TRUE(server.Accepts(1));
    server.Elements[0]->OnSendComplete = [&] {
        sent += 1024;
        server.Elements[0]->SendData(std::string(1024, 'c'));
    };
    client.Send("x");
    const auto grows = [&] {
        const std::size_t before = sent;
        return TurnUntil([&] { return sent > before; }, std::chrono::milliseconds(200));
    };
    while (grows()) {
    }
    EXPECT_LE(sent, 512U * 1024) << "in the network's buffers for somebody who takes nothing";
    EXPECT_LE(server.Elements[0]->BytesWaiting(), 1024U);
    for (int i = 0; i < 4; ++i) {
        client.WaitForBytes(client.Receive().size() + 128 * 1024);
        EXPECT_TRUE(grows()) << "the next chunks may not wait for the reader to take a megabyte";
    }
}

}  // namespace
}  // namespace pixmora
