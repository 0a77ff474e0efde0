// A central service of a test's own, played in the same process.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/sockets/Winsock.h"

namespace pixmora {

/// Listens on a free port of 127.0.0.1 from its making on; keeps what it is asked and answers it.
class PlayedService {
public:
    PlayedService() {
        listener_->LocalPort = 0;
        listener_->OnConnectionRequest = [this](int requestId) {
            TakeConnection(requestId);
        };
        listener_->Listen();
    }
    ~PlayedService() {
        listener_->Close();
        for (const auto &connection : connections_) connection->Close();
    }

    /// "http://127.0.0.1:port"
    std::string Base() const { return "http://127.0.0.1:" + std::to_string(listener_->LocalPort); }
    /// The whole requests, in their order.
    std::vector<std::string> Requests;
    /// Sent as the body of each answer.
    std::string Answer;
    /// What is done with a request instead of answering it and closing.
    std::function<void(Winsock &, const std::string &request)> OnRequest;

private:
    void TakeConnection(int requestId) {
        const std::shared_ptr<Winsock> connection = Winsock::Create();
        connections_.push_back(connection);
        connection->Accept(requestId);
        Winsock *const element = connection.get();
        element->OnDataArrival = [this, element](std::size_t) {
            Requests.push_back(element->GetData());
            if (OnRequest) return OnRequest(*element, std::string(Requests.back()));
            element->OnSendComplete = [element] {
                element->Close();
            };
            element->SendData("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n\r\n" + Answer);
        };
    }

    std::shared_ptr<Winsock> listener_ = Winsock::Create();
    std::vector<std::shared_ptr<Winsock>> connections_;
};

}  // namespace pixmora
