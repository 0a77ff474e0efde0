// The Winsock element against clients of every kind: half-closed, vanished, stalled, too many.
#include "platform/sockets/Winsock.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <vector>

#include "support/Client.h"
#include "support/ErrorOf.h"

namespace pixmora {
namespace {

using test::Client;
using test::TurnUntil;
using testing::ElementsAre;
using Element = std::shared_ptr<Winsock>;
using ElementHandler = std::function<void(const Element &)>;

/// Bytes of which no two stretches are alike, so that a lost or doubled chunk shows.
std::string Pattern(std::size_t size) {
    std::string bytes(size, '\0');
    std::uint32_t state = 1;
    for (char &byte : bytes) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    return bytes;
}

/// Turns the loop until the call has not changed its result for a while.
template <typename Call>
auto Settled(Call call) {
    auto last = call();
    for (int same = 0; same < 25;) {
        TurnUntil([] { return false; }, std::chrono::milliseconds(1));
        const auto former = std::exchange(last, call());
        same = last == former ? same + 1 : 0;
    }
    return last;
}

/// How often a wait that nothing should disturb ends too early.
int DisturbancesOfAWait() {
    const Tick end = GetTickCount() + 40;
    int count = 0;
    for (; GetTickCount() < end; ++count) WaitUntilTick(end);
    return count;
}

int DescriptorCount() {
    return Settled([] {
        const auto folder = std::filesystem::directory_iterator("/proc/self/fd");
        return static_cast<int>(std::distance(begin(folder), end(folder)));
    });
}

/// Accepts like the program: an element for each connection. Closes it when an answer has left, unless told otherwise.
class Server {
public:
    explicit Server(ElementHandler onRequest) : OnRequest(std::move(onRequest)) {
        Listening->OnConnectionRequest = [this](int requestId) {
            const Element element = Winsock::Create();
            element->Index = static_cast<int>(Elements.size());
            Elements.push_back(element);
            element->OnDataArrival = [this, place = element->Index](std::size_t) {
                Events.emplace_back("arrival"), OnRequest(At(place));
            };
            element->OnSendComplete = [this, place = element->Index] {
                Events.emplace_back("complete"), OnComplete ? OnComplete(At(place)) : void();
            };
            element->OnClose = [this, place = element->Index] {
                At(place)->Close();
            };
            element->OnError = [this, place = element->Index](int, const std::string &) {
                Events.emplace_back("error"), At(place)->Close();
            };
            if (SendBufferSize > 0)
                setsockopt(requestId, SOL_SOCKET, SO_SNDBUF, &SendBufferSize, sizeof SendBufferSize);
            element->Accept(requestId);
        };
        Listening->Listen();
    }

    int Port() const { return Listening->LocalPort; }
    Element At(int place) const { return Elements.at(static_cast<std::size_t>(place)); }

    const Element Listening = Winsock::Create();
    std::vector<Element> Elements;
    std::vector<std::string> Events;
    int SendBufferSize = 0;  ///< 0: the system's
    ElementHandler OnRequest;
    ElementHandler OnComplete = [](const Element &element) {
        element->Close();
    };
};

void Answer(const Element &element, std::string_view bytes) {
    element->GetData();
    element->SendData(bytes);
}

TEST(WinsockSource, GoesOutBetweenTheBytesAroundItWithOneSendComplete) {
    const std::string bytes = Pattern(1'000'000);
    const auto read = [&](std::int64_t offset, void *to, std::size_t count) {
        return bytes.copy(static_cast<char *>(to), count, static_cast<std::size_t>(offset));
    };
    for (const std::size_t promised : {std::size_t{0}, std::size_t{1}, bytes.size(), bytes.size() + 1}) {
        Server server([&](const Element &element) {
            element->GetData();
            element->SendData("head", {read, static_cast<std::int64_t>(promised)});
            if (promised > 1) {
                EXPECT_THROW(element->SendData("", {read, 1}), RunTimeError) << "one at a time";
            }
            element->SendData("tail");
            EXPECT_LT(element->BytesWaiting(), promised + 9);
        });
        server.SendBufferSize = 4096;
        Client client(server.Port(), "127.0.0.1", 4096);
        client.Send("x");
        const std::string received = client.ReceiveAll();
        const bool isWhole = promised <= bytes.size();
        EXPECT_TRUE(("head" + bytes.substr(0, promised) + "tail").starts_with(received));
        EXPECT_EQ(received.ends_with("tail"), isWhole);
        EXPECT_THAT(server.Events, ElementsAre("arrival", isWhole ? "complete" : "error")) << promised;
    }
}

TEST(WinsockSend, RaisesErrorWhenTheClientHasVanished) {
    for (const std::string moment : {"while its answer waits", "before its answer", "while the handler waits"}) {
        std::unique_ptr<Client> client;
        Server server([&](const Element &element) {
            if (moment == "while its answer waits") Answer(element, Pattern(20'000'000));
            client->Reset();
            if (moment == "before its answer") Answer(element, "x");
            if (moment != "while the handler waits") return;
            TurnUntil([&] { return element->State() != SocketState::Connected; });
            EXPECT_THROW(element->SendData("late"), RunTimeError);
        });
        client = std::make_unique<Client>(server.Port());
        client->Send("x");
        EXPECT_TRUE(TurnUntil([&] { return server.Events.size() == 2; }));
        EXPECT_THAT(server.Events, ElementsAre("arrival", "error")) << moment;
        EXPECT_EQ(server.Elements[0]->State(), SocketState::Closed);
    }
}

TEST(WinsockReceive, KeepsAFloodOutUntilItIsFetched) {
    const std::string flood = Pattern(30'000'000);
    Server server([](const Element &) {});
    Client client(server.Port());
    std::string_view rest = flood;
    const auto pour = [&] {
        rest.remove_prefix(client.SendSome(rest));
        return rest.size();
    };
    EXPECT_GT(Settled(pour), 0U) << "somebody has taken 30 MB in";
    EXPECT_THAT(server.Events, ElementsAre("arrival"));

    std::string received;
    server.OnRequest = [&](const Element &element) {
        const std::string bytes = element->GetData();
        EXPECT_LE(bytes.size(), 65536U);
        received += bytes;
    };
    server.OnRequest(server.Elements[0]);
    EXPECT_TRUE(TurnUntil([&] { return pour() == 0 && received.size() == flood.size(); }));
    EXPECT_TRUE(received == flood);
}

TEST(WinsockEvents, ComeWhileEveryHandlerTurnsTheLoop) {
    const std::string answer = Pattern(60'000);
    std::map<int, std::size_t> sent;
    int depth = 0;
    int deepest = 0;
    const auto turning = [&](const ElementHandler &handler) -> ElementHandler {
        return [&, handler](const Element &element) {
            deepest = std::max(deepest, ++depth);
            handler(element);
            DoEvents();
            WaitUntilTick(GetTickCount() + 1);
            --depth;
        };
    };
    Server server(turning([](const Element &element) { Answer(element, "head"); }));
    server.OnComplete = turning([&](const Element &element) {
        const std::size_t position = std::exchange(sent[element->Index], sent[element->Index] + 1024);
        if (position > answer.size()) return element->Close();
        element->SendData(std::string_view(answer).substr(position, 1024));
    });
    std::vector<Client> clients;
    for (int i = 0; i < 6; ++i) {
        clients.emplace_back(server.Port());
        clients.back().Send("x");
        if (i % 2 == 0) clients.back().HalfClose();
    }
    for (Client &client : clients) EXPECT_TRUE(client.ReceiveAll() == "head" + answer);
    EXPECT_LE(deepest, 12) << "at most a request and a chunk of each connection on the stack";
}

TEST(WinsockClose, DeliversTheAnswerDespiteUnreadInput) {
    const std::string answer = Pattern(100'000);
    Server server([&](const Element &element) { element->SendData(answer); });
    const int before = DescriptorCount();
    {
        Client client(server.Port(), "127.0.0.1", 4096);
        client.Send("request and " + std::string(60'000, 'x'));
        EXPECT_TRUE(TurnUntil([&] { return !server.Elements.empty(); }));
        client.WaitForBytes(10'000);
        client.Send(std::string(10'000, 'y'));
        EXPECT_TRUE(client.ReceiveAll() == answer);
        EXPECT_EQ(server.Elements[0]->State(), SocketState::Closed);
        EXPECT_EQ(DescriptorCount(), before + 2) << "it may be on its way yet";
        client.SendSome(std::string(100'000, 'z'));
        EXPECT_EQ(DescriptorCount(), before + 1) << "a client who goes on sending keeps the descriptor";

        std::vector<Client> crowd;
        for (int i = 0; i < 140; ++i) {
            crowd.emplace_back(server.Port());
            crowd.back().Send("x");
            crowd.back().WaitForBytes(answer.size());
        }
        EXPECT_LE(DescriptorCount(), before + 1 + 140 + 128);
        EXPECT_TRUE(TurnUntil([&] { return DescriptorCount() == before + 1 + 140; })) << "they are given up in time";
    }
    EXPECT_EQ(DescriptorCount(), before);
}

TEST(WinsockListen, KeepsWhatIsBeyondItsLimitInTheQueue) {
    Server server([](const Element &element) { Answer(element, "answer"); });
    server.OnComplete = nullptr;
    server.Listening->SetConnectionLimit(3);
    const auto accepts = [&](std::size_t count) {
        return TurnUntil([&] { return server.Elements.size() >= count; }) &&
               Settled([&] { return server.Elements.size(); }) == count;
    };
    std::vector<Client> clients;
    for (int i = 0; i < 8; ++i) clients.emplace_back(server.Port());
    EXPECT_TRUE(accepts(3));
    EXPECT_LT(DisturbancesOfAWait(), 10) << "a full house may not spin";
    server.Elements[0]->Close();
    EXPECT_TRUE(accepts(4)) << "the client hasn't closed, but what lingers takes no place";
    clients[1].Send("x");
    clients[1].WaitForBytes(6);
    EXPECT_TRUE(accepts(4)) << "an answer alone frees no place";
    server.Elements[1]->Close();
    EXPECT_TRUE(accepts(5));
    clients[2].Reset();
    EXPECT_TRUE(accepts(6)) << "a vanished client's place";
    const int port = server.Port();
    server.Listening->Close();
    server.Listening->LocalPort = port;
    server.Listening->Listen();
    Client later(port);
    EXPECT_TRUE(accepts(6)) << "connections from before count too";
    server.Listening->SetConnectionLimit(0);
    later.Send("x");
    later.WaitForBytes(6);
    server.Listening->OnConnectionRequest = nullptr;
    EXPECT_EQ(Client(port).ReceiveAll(), "") << "nobody takes it";
}

}  // namespace
}  // namespace pixmora
