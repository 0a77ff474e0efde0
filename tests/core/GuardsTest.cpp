// The guards of a running site, over real sockets: the limit of connections, the idle check, the one address.
#include "core/Guards.h"

#include "core/site/Response.h"
#include "support/RunningSite.h"

namespace pixmora::test {
namespace {

class Guards : public RunningSite {
protected:
    /// A site with one album, started with these settings of section Setup.
    void StartWith(const std::vector<std::pair<std::string, std::string>> &settings) {
        for (const auto &[key, value] : settings) SaveSetting("Setup", key, value);
        AddAlbum("A");
        Start();
    }
    /// Moves the clock on by the seconds, with the check that each of them brings.
    void Pass(int seconds) {
        for (int i = 0; i < seconds; ++i) {
            for (int turn = 0; turn < 5; ++turn) DoEvents();
            Clock.Advance(1000);
            HandleIdleTick();
        }
    }
    static bool IsOpen(Client &client) {
        return !TurnUntil([&client] { return client.HasEnded(); }, std::chrono::milliseconds(20));
    }
    static void WaitForIndex(int index) {
        ASSERT_TRUE(TurnUntil([index] { return gSystray->wnskConnect.UBound() >= index; }));
    }
};

TEST_F(Guards, SettingsAreReadAsNumbersWhateverTheySay) {
    LoadListenSettings();
    EXPECT_EQ(gSystray->wnskListen->ConnectionLimit(), 200);
    EXPECT_EQ(gSystray->IdleTimeout, 60000);
    const std::tuple<const char *, int, int> cases[] = {
        {"7", 7, 7000}, {"-3", 0, 0}, {"many", 0, 0}, {" 12 guests", 12, 12000}, {"1e300", 256, 86400000}};
    for (const auto &[text, connections, idle] : cases) {
        for (const char *key : {"MaxConnections", "IdleTimeout"}) SaveSetting("Setup", key, text);
        LoadListenSettings();
        EXPECT_EQ(gSystray->wnskListen->ConnectionLimit(), connections) << text;
        EXPECT_EQ(gSystray->IdleTimeout, idle) << text;
    }
}

TEST_F(Guards, ConnectionsWhosePeersDoNothingAreClosed) {
    Program.Write("albums/A/m.avi", std::string(20 << 20, 'm'));
    StartWith({{"IdleTimeout", "60"}});
    std::vector<Client> viewers;  // the first one stops reading
    for (const char *address : {"127.0.0.2", "127.0.0.3"}) {
        viewers.emplace_back(Port(), address, 4096).Send("GET /ShowMovie?1&full&/m.avi HTTP/1.0\r\n\r\n");
        viewers.back().WaitForBytes(1000);
    }
    Client silent(Port());
    WaitForIndex(3);
    Pass(59);
    EXPECT_TRUE(IsOpen(silent));
    Pass(1);
    EXPECT_FALSE(IsOpen(silent));
    int seconds = 60;  // a stalled reader's kernel may still squeeze some bytes in
    for (; gSystray->wnskConnect.Item(1)->State() == SocketState::Connected && seconds < 600; ++seconds) {
        if (seconds % 30 == 0) viewers[1].WaitForBytes(viewers[1].Receive().size() + 100'000);
        Pass(1);
    }
    EXPECT_FALSE(IsOpen(viewers[0]));
    EXPECT_TRUE(IsOpen(viewers[1]));
    EXPECT_EQ(gSystray->wnskConnect.Item(1)->Transfer.FileSize, 0) << "its file is closed";
    EXPECT_EQ(gSystray->wnskConnect.UBound(), 2) << "what was closed above is trimmed";
    EXPECT_TRUE(gSystray->tmrIdle.Enabled());
    viewers[1].Close();
    Pass(1);
    EXPECT_EQ(gSystray->wnskConnect.UBound(), 0);
    EXPECT_FALSE(gSystray->tmrIdle.Enabled()) << "nothing is open";
    gSystray->IdleTimeout = 0;
    Client borne(Port());
    WaitForIndex(1);
    EXPECT_FALSE(gSystray->tmrIdle.Enabled());
    Pass(100);
    EXPECT_TRUE(IsOpen(borne)) << "without the guard";
}

TEST_F(Guards, AVisitorWhoseAnswerIsBeingMadeIsNotIdle) {
    StartWith({{"IdleTimeout", "60"}});
    Client visitor(Port());
    WaitForIndex(1);
    const Connection socket = gSystray->wnskConnect.Item(1);
    socket->OnDataArrival = [&](std::size_t) {
        Pass(100);
        SendIgnoringErrors(socket, "late but whole");
    };
    visitor.Send("GET");
    EXPECT_EQ(visitor.ReceiveAll(), "late but whole");
}

TEST_F(Guards, AHeldPictureIsItsConnectionsOneAnswerAndIsGivenUpAtOnce) {
    Program.Write("albums/A/a.jpg", "no picture");
    StartWith({{"ConversionSpacing", "0"}});
    gHeldPictures.emplace();  // as while a conversion is in work
    Client visitor(Port());
    Client leaver(Port());
    for (Client *client : {&visitor, &leaver}) client->Send("GET /ShowPicture?1&thumb&/a.jpg HTTP/1.0\r\n\r\n");
    ASSERT_TRUE(TurnUntil([] { return gHeldPictures->size() == 2; }));
    Clock.Advance(101);
    leaver.HalfClose();
    EXPECT_TRUE(TurnUntil([] { return gSystray->wnskConnect.UBound() == 1; }, std::chrono::seconds(1)));
    visitor.Send("GET /Blank HTTP/1.0\r\n\r\n");
    EXPECT_FALSE(TurnUntil([&visitor] { return !visitor.Receive().empty(); }, std::chrono::milliseconds(20)));
    const auto held = std::exchange(gHeldPictures, std::nullopt);
    for (const auto &answer : *held) answer();
    EXPECT_EQ(visitor.ReceiveAll(), Head("image/jpeg") + "\r\n");
}

TEST_F(Guards, ALimitKeepsIndexesBelowTheirCeiling) {
    StartWith({});
    std::optional<Client> held;  // the one before it goes when the next is there
    for (int index = 1; index <= HighestSendIndex; ++index) {
        Client next(Port());
        WaitForIndex(index);
        held.emplace(std::move(next));
    }
    EXPECT_NE(Get("/ShowHelp").find("</html>"), std::string::npos);
    EXPECT_EQ(gSystray->wnskConnect.UBound(), HighestSendIndex);
}

TEST_F(Guards, BothFamiliesAreServedWhereTheOwnerWantsIt) {
    StartWith({{"IPv6", "1"}});
    EXPECT_EQ(gSystray->wnskListen->LocalAddress, Winsock::AllAddresses);
    Get("/", "", "127.0.0.2");
    EXPECT_EQ(gVisitors.at(0).IP, "127.0.0.2") << "dotted as ever";
}

TEST_F(Guards, OnlyATrustedProxySpeaksForItsVisitors) {
    StartWith({{"TrustedProxy", "127.0.8.0/24"}});
    const std::tuple<const char *, const char *, const char *> cases[] = {
        // peer, head, visitor
        {"127.0.8.1", "X-Forwarded-For: 192.0.2.66, 192.0.2.1\r\n", "192.0.2.1"},
        {"127.0.8.3", "X-Forwarded-For: unknown\r\n", "127.0.8.3"},
        {"127.0.9.1", "X-Forwarded-For: 192.0.2.66\r\n", "127.0.9.1"},
    };
    for (const auto &[peer, head, visitor] : cases) {
        gVisitors.clear();
        Get("/", head, peer);
        ASSERT_EQ(gVisitors.size(), 1U) << peer;
        EXPECT_EQ(gVisitors[0].IP, visitor) << peer;
    }
}

}  // namespace
}  // namespace pixmora::test
