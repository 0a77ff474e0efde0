// The Winsock element against clients of every kind: half-closed, vanished, stalled, too many.
#include "platform/sockets/Winsock.h"

#include <dirent.h>
#include <fcntl.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <vector>

#include "support/Client.h"
#include "support/ErrorOf.h"
#include "support/ProcessorTime.h"

namespace pixmora {
namespace {

using test::Client;
using test::Fetch;
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

/// Lets connections go that have ended on both sides, an earlier test's too.
void Settle() {
    TurnUntil([] { return false; }, std::chrono::milliseconds(20));
}

int DescriptorCount() {
    Settle();
    int count = 0;
    DIR *const folder = opendir("/proc/self/fd");
    while (readdir(folder) != nullptr) ++count;
    closedir(folder);
    return count;
}

/// Accepts like the program: an element for each connection. Closes it when an answer has left, unless told otherwise.
class Server {
public:
    explicit Server(ElementHandler onRequest) : OnRequest(std::move(onRequest)) {
        Listening->OnConnectionRequest = [this](int requestId) {
            const Element element = Winsock::Create();
            element->Index = static_cast<int>(Elements.size());
            Elements.push_back(element);
            const std::weak_ptr<Winsock> weak = element;
            element->OnDataArrival = [this, weak](std::size_t) {
                Log("arrival"), OnRequest(weak.lock());
            };
            element->OnSendComplete = [this, weak] {
                Log("complete"), OnComplete(weak.lock());
            };
            element->OnClose = [this, weak] {
                Log("close"), weak.lock()->Close();
            };
            element->OnError = [this, weak](int, const std::string &) {
                Log("error"), weak.lock()->Close();
            };
            if (SendBufferSize > 0)
                setsockopt(requestId, SOL_SOCKET, SO_SNDBUF, &SendBufferSize, sizeof SendBufferSize);
            element->Accept(requestId);
        };
        Listening->Listen();
    }

    int Port() const { return Listening->LocalPort; }
    void Log(const char *event) {
        if (Events.size() < 10) Events.emplace_back(event);
    }

    const Element Listening = Winsock::Create();
    std::vector<Element> Elements;
    std::vector<std::string> Events;  ///< the first ten
    int SendBufferSize = 0;           ///< 0: the system's
    ElementHandler OnRequest;
    ElementHandler OnComplete = [](const Element &element) {
        element->Close();
    };
};

void Answer(const Element &element, std::string_view bytes) {
    element->GetData();
    element->SendData(bytes);
}

/// Goes on with the answer 1024 bytes an event, and closes at its end.
ElementHandler SendInChunks(const std::string &answer) {
    return [&answer, sent = std::map<int, std::size_t>()](const Element &element) mutable {
        std::size_t &position = sent[element->Index];
        if (position == answer.size()) return element->Close();
        const auto chunk = std::string_view(answer).substr(position, 1024);
        position += chunk.size();
        element->SendData(chunk);
    };
}

/// A source that tells how much memory-less reading it saw.
ByteSource SourceOf(const std::string &bytes, std::int64_t promised) {
    return {[&bytes](std::int64_t offset, void *to, std::size_t count) {
                const std::string_view part = std::string_view(bytes).substr(static_cast<std::size_t>(offset), count);
                std::ranges::copy(part, static_cast<char *>(to));
                return part.size();
            },
            promised};
}

TEST(WinsockSource, GoesOutBetweenTheBytesAroundItWithOneSendComplete) {
    const std::string bytes = Pattern(3'000'000);
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, bytes.size()}) {
        Server server([&](const Element &element) {
            element->GetData();
            element->SendData("head", SourceOf(bytes, static_cast<std::int64_t>(size)));
            if (size == bytes.size()) {
                EXPECT_THROW(element->SendData("", SourceOf(bytes, 1)), RunTimeError) << "one at a time";
            }
            element->SendData("tail");
            EXPECT_LT(element->BytesWaiting(), size + 9);
        });
        server.SendBufferSize = 4096;
        Client client(server.Port(), "127.0.0.1", 4096);
        client.Send("x");
        EXPECT_EQ(client.ReceiveAll(), "head" + bytes.substr(0, size) + "tail");
        EXPECT_THAT(server.Events, ElementsAre("arrival", "complete")) << size;
    }
}

TEST(WinsockSource, ThatGivesLessThanItPromisedEndsItsConnectionOnly) {
    const std::string bytes = Pattern(300'000);
    Server server([&](const Element &element) { element->SendData(element->GetData(), SourceOf(bytes, 400'000)); });
    EXPECT_EQ(Fetch(server.Port(), "x"), "x" + bytes);
    EXPECT_THAT(server.Events, ElementsAre("arrival", "error"));
}

TEST(WinsockConnect, TellsFailuresFromTheLoop) {
    int freePort = 0;
    {
        Server gone([](const Element &) {});
        freePort = gone.Port();
    }
    const std::tuple<const char *, const char *, int, int> cases[] = {
        // name, host, port, error
        {"refused", "127.0.0.1", freePort, ECONNREFUSED},
        {"unknown name", "nonexistent.invalid", 80, EHOSTUNREACH},
        {"no name", "", 80, EHOSTUNREACH},
        {"port out of range", "127.0.0.1", 70000, EINVAL},
    };
    for (const auto &[name, host, port, wanted] : cases) {
        SCOPED_TRACE(name);
        int error = 0;
        const Element element = Winsock::Create();
        element->OnError = [&](int number, const std::string &) {
            error = number;
        };
        element->RemoteHost = host;
        element->RemotePort = port;
        element->Connect();
        EXPECT_EQ(error, 0);
        EXPECT_TRUE(TurnUntil([&] { return error != 0; }));
        EXPECT_EQ(error, wanted);
        EXPECT_EQ(element->State(), SocketState::Error);

        element->Close();
        element->Connect();
        element->Close();
        error = 0;
        EXPECT_FALSE(TurnUntil([&] { return error != 0; }, std::chrono::milliseconds(20))) << "an event after Close";
    }
}

TEST(WinsockSend, GivesAHalfClosedClientTheWholeAnswer) {
    const std::string answer = Pattern(5'000'000);
    const auto wait = [](const Element &element) {
        element->GetData();
        WaitUntilTick(GetTickCount() + 20);
        DoEvents();
    };
    const std::tuple<const char *, ElementHandler, ElementHandler> cases[] = {
        // name, on the request, on the buffer left
        {"at once", [&](const Element &element) { Answer(element, answer); }, nullptr},
        {"after a wait in the handler", [&](const Element &element) { wait(element), element->SendData(answer); },
         nullptr},
        {"in chunks", [&](const Element &element) { Answer(element, "head"); },
         [send = SendInChunks(answer)](const Element &element) {
             send(element), DoEvents();
         }},
    };
    for (const auto &[name, onRequest, onComplete] : cases) {
        SCOPED_TRACE(name);
        Server server(onRequest);
        if (onComplete) server.OnComplete = onComplete;
        Client client(server.Port());
        client.Send("GET / HTTP/1.0\r\n\r\n");
        client.HalfClose();
        EXPECT_TRUE(client.ReceiveAll() == (onComplete ? "head" + answer : answer));
    }
}

TEST(WinsockSend, RaisesErrorWhenTheClientHasVanished) {
    std::unique_ptr<Client> client;
    const auto wait = [](const Element &element) {
        TurnUntil([&] { return element->State() != SocketState::Connected; });
        EXPECT_THROW(element->SendData("late"), RunTimeError);
    };
    const std::pair<const char *, ElementHandler> cases[] = {
        {"while its answer waits",
         [&](const Element &element) {
             Answer(element, Pattern(20'000'000)), client->Reset();
         }},
        {"before its answer",
         [&](const Element &element) {
             client->Reset(), Answer(element, "x");
         }},
        {"while the handler waits",
         [&](const Element &element) {
             client->Reset(), wait(element);
         }},
    };
    for (const auto &[name, onRequest] : cases) {
        SCOPED_TRACE(name);
        Server server(onRequest);
        client = std::make_unique<Client>(server.Port());
        client->Send("x");
        EXPECT_TRUE(TurnUntil([&] { return server.Events.size() == 2; }));
        EXPECT_THAT(server.Events, ElementsAre("arrival", "error"));
        EXPECT_EQ(server.Elements[0]->State(), SocketState::Closed);
    }
}

TEST(WinsockSend, HoldsABigAnswerForAStalledReaderWhileOthersAreServed) {
    const std::string answer = Pattern(64'000'000);
    Server server([&](const Element &element) { element->SendData(element->GetData() == "big" ? answer : "small"); });
    server.SendBufferSize = 65536;  // many writes: copying what waits with each would take many seconds
    Client stalled(server.Port(), "127.0.0.2");
    stalled.Send("big");
    stalled.HalfClose();
    EXPECT_TRUE(TurnUntil([&] { return !server.Events.empty(); }));
    EXPECT_EQ(server.Elements[0]->RemoteHostIP, "127.0.0.2");
    EXPECT_GT(server.Elements[0]->BytesWaiting(), answer.size() / 2);

    const double before = test::ProcessorSeconds();
    const Tick end = GetTickCount() + 300;
    while (GetTickCount() < end) WaitUntilTick(end);
    EXPECT_LT(test::ProcessorSeconds() - before, 0.15) << "neither the full buffer nor the end of input may spin";
    for (int i = 0; i < 20; ++i) EXPECT_EQ(Fetch(server.Port(), "x"), "small");
    EXPECT_TRUE(stalled.ReceiveAll() == answer);
    EXPECT_LT(test::ProcessorSeconds() - before, 2);
}

TEST(WinsockReceive, KeepsAFloodOutUntilItIsFetched) {
    const std::string flood = Pattern(30'000'000);
    Server server([](const Element &) {});
    Client client(server.Port());
    std::string_view rest = flood;
    const auto pour = [&] {
        rest.remove_prefix(client.SendSome(rest));
        return rest.empty();
    };
    EXPECT_FALSE(TurnUntil(pour, std::chrono::milliseconds(200))) << "somebody has taken 30 MB in";
    EXPECT_THAT(server.Events, ElementsAre("arrival"));

    std::string received;
    server.OnRequest = [&](const Element &element) {
        const std::string bytes = element->GetData();
        EXPECT_LE(bytes.size(), 65536U);
        received += bytes;
    };
    server.OnRequest(server.Elements[0]);
    EXPECT_TRUE(TurnUntil([&] { return pour() && received.size() == flood.size(); }));
    EXPECT_TRUE(received == flood);
}

TEST(WinsockEvents, ComeWhileEveryHandlerTurnsTheLoop) {
    const std::string answer = Pattern(60'000);
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
    server.OnComplete = turning(SendInChunks(answer));
    std::vector<Client> clients;
    for (int i = 0; i < 6; ++i) {
        clients.emplace_back(server.Port());
        clients.back().Send("x");
        if (i % 2 == 0) clients.back().HalfClose();
    }
    for (Client &client : clients) EXPECT_TRUE(client.ReceiveAll() == "head" + answer);
    EXPECT_LE(deepest, 12) << "at most a request and a chunk of each connection on the stack";
}

TEST(WinsockEvents, SurviveThatTheirHandlerDropsTheElement) {
    Element listening;
    Element accepted;
    bool isDropped = false;
    const auto drop = [&](Element &element) {
        const std::string captured = "in a handler that goes with its element";
        return [&, captured](auto &&...) {
            element->OnClose = element->OnSendComplete = nullptr;
            element.reset();
            DoEvents();
            isDropped = !captured.empty();
        };
    };
    const auto expectDrop = [&](const char *event) {
        EXPECT_TRUE(TurnUntil([&] { return isDropped; })) << event;
        isDropped = false;
    };
    const std::tuple<const char *, std::function<void()>, std::function<void(Client &)>> cases[] = {
        {"DataArrival", [&] { accepted->OnDataArrival = drop(accepted); },
         [](Client &client) {
             client.Send("x");
         }},
        {"SendComplete", [&] { accepted->OnSendComplete = drop(accepted); },
         [&](Client &) {
             accepted->SendData("x");
         }},
        {"Close", [&] { accepted->OnClose = drop(accepted); },
         [](Client &client) {
             client.HalfClose();
         }},
        {"Error", [&] { accepted->OnError = drop(accepted); },
         [](Client &client) {
             client.Reset();
         }},
    };
    for (const auto &[event, setUp, raise] : cases) {
        listening = Winsock::Create();
        listening->OnConnectionRequest = [&, prepare = setUp](int requestId) {
            accepted = Winsock::Create();
            prepare();
            accepted->Accept(requestId);
        };
        listening->Listen();
        Client client(listening->LocalPort);
        ASSERT_TRUE(TurnUntil([&] { return accepted != nullptr; }));
        raise(client);
        expectDrop(event);
    }
    Element connecting = Winsock::Create();
    connecting->OnConnect = drop(connecting);
    connecting->RemoteHost = "127.0.0.1";
    connecting->RemotePort = listening->LocalPort;
    connecting->Connect();
    expectDrop("Connect");

    listening->OnConnectionRequest = drop(listening);
    Client last(listening->LocalPort);
    expectDrop("ConnectionRequest");
}

TEST(WinsockClose, DeliversTheAnswerDespiteUnreadInput) {
    const std::string answer = Pattern(500'000);
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
        client.Send("more");
        EXPECT_TRUE(TurnUntil([&] { return DescriptorCount() == before + 1; }))
            << "a client who never ends its side keeps the descriptor";
    }
    EXPECT_EQ(DescriptorCount(), before);
}

TEST(WinsockClose, GivesTheDescriptorOfAStalledReaderUpAtOnce) {
    Server server([](const Element &element) { Answer(element, Pattern(20'000'000)); });
    const int before = DescriptorCount();
    Client client(server.Port());
    client.Send("x");
    EXPECT_TRUE(TurnUntil([&] { return !server.Events.empty(); }));
    server.Elements[0]->Close();
    EXPECT_EQ(DescriptorCount(), before + 1) << "the client's own";
}

TEST(WinsockListen, KeepsWhatIsBeyondItsLimitInTheQueue) {
    Server server([](const Element &element) { Answer(element, "answer"); });
    server.Listening->SetConnectionLimit(3);
    const auto accepts = [&](std::size_t count) {
        return TurnUntil([&] { return server.Elements.size() >= count; }) &&
               !TurnUntil([&] { return server.Elements.size() > count; }, std::chrono::milliseconds(40));
    };
    std::vector<Client> clients;
    for (int i = 0; i < 8; ++i) clients.emplace_back(server.Port());
    EXPECT_TRUE(accepts(3));
    const double before = test::ProcessorSeconds();
    EXPECT_FALSE(TurnUntil([] { return false; }, std::chrono::milliseconds(200)));
    EXPECT_LT(test::ProcessorSeconds() - before, 0.1) << "a full house may not spin";

    server.Elements[0]->Close();
    EXPECT_TRUE(accepts(4)) << "the client hasn't closed, but what lingers takes no place";
    clients[1].Send("x");
    EXPECT_EQ(clients[1].ReceiveAll(), "answer");
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
    EXPECT_EQ(later.ReceiveAll(), "answer");
}

TEST(WinsockSend, FeedsSlowReadersInSmallPortions) {
    std::size_t sent = 0;
    Server server([](const Element &element) { Answer(element, "head"); });
    server.OnComplete = [&](const Element &element) {
        sent += 1024;
        element->SendData(std::string(1024, 'c'));
    };
    Client client(server.Port(), "127.0.0.1", 4096);
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

/// Lowers the limit of descriptors for the length of a test.
class DescriptorLimit {
public:
    /// @param spare how many more may be opened
    explicit DescriptorLimit(unsigned spare) {
        getrlimit(RLIMIT_NOFILE, &before_);
        const int lowest = dup(0);
        close(lowest);
        const rlimit lowered{static_cast<rlim_t>(lowest) + spare, before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &lowered);
    }
    ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &before_); }
    DescriptorLimit(const DescriptorLimit &) = delete;
    DescriptorLimit &operator=(const DescriptorLimit &) = delete;

private:
    rlimit before_{};
};

TEST(WinsockListen, WaitsIdlyWhileDescriptorsAreUsedUpAndThenGoesOn) {
    Settle();
    Server server([](const Element &element) { Answer(element, "late but whole"); });
    std::vector<Client> clients;
    clients.reserve(60);
    for (int i = 0; i < 60; ++i) clients.emplace_back(server.Port());
    {
        const DescriptorLimit limit(16 + 10);
        const double before = test::ProcessorSeconds();
        const Tick end = GetTickCount() + 300;
        while (GetTickCount() < end) WaitUntilTick(end);
        EXPECT_LT(test::ProcessorSeconds() - before, 0.1);
        const std::size_t first = server.Elements.size();
        EXPECT_EQ(first, 10U);
        const int file = open("/dev/null", O_RDONLY | O_CLOEXEC);
        EXPECT_GE(file, 0) << "files have room";
        close(file);

        for (std::size_t i = 0; i < clients.size(); ++i) {
            clients[i].Send("x");
            EXPECT_EQ(clients[i].ReceiveAll(), "late but whole");
            clients[i].HalfClose();
            const std::size_t accepted = std::min(clients.size(), first + i + 1);
            EXPECT_TRUE(TurnUntil([&] { return server.Elements.size() == accepted; }));
        }
    }
    Client other(server.Port());
    {
        const DescriptorLimit limit(5);
        EXPECT_FALSE(TurnUntil([&] { return server.Elements.size() > 60; }, std::chrono::milliseconds(100)));
    }
    other.Send("x");
    EXPECT_EQ(other.ReceiveAll(), "late but whole") << "room that others made is found too";
}

}  // namespace
}  // namespace pixmora
