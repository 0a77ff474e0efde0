// Connections and their requests.
#include "core/Intake.h"

#include <algorithm>
#include <string>

#include "core/Dispatch.h"
#include "core/Guards.h"
#include "core/site/Globals.h"
#include "core/site/RequestGrammar.h"
#include "core/site/Transfers.h"
#include "core/site/frmSystray.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "platform/sockets/Hosts.h"
#include "platform/sockets/SocketAddress.h"
#include "store/Catalogue.h"
#include "store/Statistics.h"

namespace pixmora {

namespace {

/// Marks the visitor as seen. A new one is made by a named page only: a picture from an unknown address leaves no
/// trace.
void RefreshVisitor(const std::string &ip, std::string_view request) {
    const std::string page =
        GetVisitorPageName(request, [](std::int32_t number) { return AlbumByNumber(number)->Name; });
    const auto visitor = std::ranges::find(gVisitors, ip, &clsVisitor::IP);
    if (visitor != gVisitors.end()) {
        visitor->LastTime = GetTickCount();
        if (!page.empty()) visitor->CurrentPage = page;
        return;
    }
    if (page.empty()) return;
    clsVisitor newVisitor;
    newVisitor.IP = ip;
    newVisitor.CurrentPage = page;
    newVisitor.ConnectTime = Uptime();
    newVisitor.LastTime = GetTickCount();
    ++gVisitorsActive;
    ++gConnectionsSession;
    RecordStat(Stat::Visitors, NoAlbum, 1);
    gVisitors.push_back(newVisitor);
}

/// A proxy that the owner trusts tells for whom it asks; anybody else could tell anything.
void HeedProxy(Winsock &socket, const std::string &request) {
    const std::string &trusted = gSystray->TrustedProxy;
    if (trusted.empty() || !IsInNetwork(socket.RemoteHostIP, trusted)) return;
    const auto visitor = SocketAddress::From(GetForwardedAddress(request), 0);
    if (visitor) socket.RemoteHostIP = visitor->Text();
}

void AnswerRequest(const Connection &socket, const std::string &method, const std::string &request) {
    const std::optional<std::string> text = GetRequestTarget(request);
    if (!text) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
    if (method == "POST" && *text == "SendLogin") {
        AnswerLogin(socket, request);
        return;
    }
    // Deliberate: "get" in another case came this far and fails here.
    if (method != "GET") throw RunTimeError(ErrorNumber::InvalidProcedureCall);
    const Target target = ParseTarget(*text);
    if (target.HasQuery) socket->Tag = GetCookieUsername(request);
    CallOperation(socket, target);
}

/// Behind the highest index. Under a limit of connections the ceiling of indexes is no danger: there is a hole then.
Connection LoadConnection() {
    ConnectionArray &connections = gSystray->wnskConnect;
    if (gSystray->wnskListen->ConnectionLimit() == 0 || connections.UBound() < HighestSendIndex)
        return connections.Load();
    return connections.LoadInHole();
}

/// How far behind its head a login's body may arrive: some browsers send the two apart. ms
constexpr int bodyPatience = 25;
/// More than a login form ever has; what is longer is answered as it stands.
constexpr std::size_t longestLogin = 65536;

void AnswerArrival(const Connection &socket) {
    socket->tmrBody.reset();
    const std::string request = socket->Request;  // a copy: the next arrival may come while the answer waits
    const std::string method = GetRequestMethod(request);
    if (!EqualsIgnoreCase(method, "GET") && !EqualsIgnoreCase(method, "POST")) {
        socket->Close();
        return;
    }
    HeedProxy(*socket, request);
    RefreshVisitor(socket->RemoteHostIP, request);
    try {
        AnswerRequest(socket, method, request);
    } catch (const RunTimeError &) {
        SendIgnoringErrors(socket, "Bad Request");
    }
}

void AwaitBody(VisitorSocket &socket) {
    if (socket.tmrBody) return;
    socket.tmrBody = std::make_unique<Timer>();
    socket.tmrBody->SetInterval(bodyPatience);
    socket.tmrBody->OnTimer = [&socket] {
        const Connection self = socket.Self();
        DoEvents();  // what has arrived while the loop was held up comes first
        if (self->tmrBody) AnswerArrival(self);
    };
    socket.tmrBody->SetEnabled(true);
}

/// How far behind a request its sender's end of sending still belongs to it. ms
constexpr Tick halfCloseDelay = 100;

/// A client that ends its sending with its request still reads the answer. A browser that ends it later, while its
/// picture waits, has given the picture up: its place is free at once.
void HandlePeerEnd(const VisitorSocket &socket) {
    if (socket.IsAwaitingTurn && !IsWithin(socket.RequestTick, halfCloseDelay))
        gSystray->wnskConnect.Unload(socket.Index);
}

}  // namespace

void HandleConnectionRequest(int requestId) {
    const Connection socket = LoadConnection();
    const int index = socket->Index;
    VisitorSocket *element = socket.get();
    socket->OnDataArrival = [element](std::size_t) {
        HandleDataArrival(element->Self());
    };
    socket->OnSendComplete = [element] {
        HandleSendComplete(element->Self());
    };
    socket->OnClose = [element, index] {
        if (element->tmrBody) return AnswerArrival(element->Self());  // it waits for the answer, not for more to send
        gSystray->wnskConnect.Unload(index);
    };
    socket->OnPeerEnd = [element] {
        HandlePeerEnd(*element);
    };
    socket->OnError = [element](int, const std::string &) {
        element->Close();
    };
    socket->Accept(requestId);
    if (socket->State() != SocketState::Connected) gSystray->wnskConnect.Unload(index);
    WatchForIdling();
}

void HandleDataArrival(const Connection &socket) {
    if (socket->State() != SocketState::Connected) {
        socket->Close();
        return;
    }
    if (!socket->tmrBody) socket->Request.clear();
    socket->Request += socket->GetData();
    socket->RequestTick = GetTickCount();
    if (IsUnfinishedLogin(socket->Request) && socket->Request.size() < longestLogin) {
        AwaitBody(*socket);
    } else {
        AnswerArrival(socket);
    }
}

void HandleSendComplete(const Connection &socket) {
    if (socket->Index > HighestSendIndex) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    const SendState &state = socket->Transfer;
    if (state.FileSize > 0 && state.BytesSent != state.FileSize) {
        SendNextChunk(socket);
        return;
    }
    if (state.FileSize > 0) EndTransfer(*socket);
    socket->Close();
    gSystray->wnskConnect.Trim();
}

}  // namespace pixmora
