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
    newVisitor.ConnectTime = GetTickCount();
    newVisitor.LastTime = GetTickCount();
    ++gVisitorsActive;
    ++gConnectionsSession;
    RecordStat(Stat::Visitors, NoAlbum, 1);
    gVisitors.push_back(newVisitor);
}

/// A proxy that the owner trusts tells for whom it asks; anybody else could tell anything.
void HeedProxy(Winsock &socket, const std::string &request) {
    const std::string &trusted = gSystray->TrustedProxy;
    if (trusted.empty() || !IsInNetwork(socket.RemoteHostIP(), trusted)) return;
    const auto visitor = SocketAddress::From(GetForwardedAddress(request), 0);
    if (visitor) socket.SetRemoteHostIP(visitor->Text());
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

/// Behind the highest index. Under a limit of connections the ceiling of indexes is no danger: there is a hole then,
/// and a file that the visitor before has left at its index must not go on to this one.
Connection LoadConnection() {
    ConnectionArray &connections = gSystray->wnskConnect;
    if (gSystray->wnskListen->ConnectionLimit() == 0 || connections.UBound() < HighestSendIndex)
        return connections.Load();
    Connection socket = connections.LoadInHole();
    ClearTransfer(socket->Index);
    return socket;
}

}  // namespace

void HandleConnectionRequest(int requestId) {
    const Connection socket = LoadConnection();
    const int index = socket->Index;
    Winsock *element = socket.get();
    socket->OnDataArrival = [element](std::size_t) {
        HandleDataArrival(element->shared_from_this());
    };
    socket->OnSendComplete = [element] {
        HandleSendComplete(element->shared_from_this());
    };
    socket->OnClose = [index] {
        gSystray->wnskConnect.Unload(index);
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
    const std::string request = socket->GetData();
    const std::string method = GetRequestMethod(request);
    if (!EqualsIgnoreCase(method, "GET") && !EqualsIgnoreCase(method, "POST")) {
        socket->Close();
        return;
    }
    HeedProxy(*socket, request);
    RefreshVisitor(socket->RemoteHostIP(), request);
    try {
        AnswerRequest(socket, method, request);
    } catch (const RunTimeError &) {
        SendIgnoringErrors(socket, "Bad Request");
    }
}

void HandleSendComplete(const Connection &socket) {
    const int index = socket->Index;
    if (index > HighestSendIndex) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    const SendState &state = gSendStates[static_cast<std::size_t>(index)];
    if (state.FileSize > 0 && state.BytesSent != state.FileSize) {
        SendNextChunk(socket);
        return;
    }
    if (state.FileSize > 0) EndTransfer(index);
    socket->Close();
    gSystray->wnskConnect.Trim();
}

}  // namespace pixmora
