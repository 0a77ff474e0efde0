#include "platform/router/Router.h"

#include <QCoreApplication>
#include <QThreadPool>
#include <utility>

#include "platform/loop/MessageLoop.h"

namespace pixmora {

namespace {

constexpr int patienceAtTheEnd = 2000;  // ms

}  // namespace

Router::Router(std::unique_ptr<RouterProtocols> protocols) : protocols_(std::move(protocols)), pool_(new QThreadPool) {
    pool_->setMaxThreadCount(1);
}

Router::~Router() {
    if (pool_->waitForDone(patienceAtTheEnd)) delete pool_;
}

void Router::Open(int port, std::function<void(const RouterReply &)> done) {
    isWanted_ = std::make_shared<const bool>(true);
    const std::weak_ptr<const bool> wanted = isWanted_;
    pool_->start([protocols = protocols_, port, wanted, done = std::move(done)] {
        const RouterReply reply = protocols->Open(port);
        const auto tell = [reply, wanted, done] {
            if (!wanted.expired()) RunEventHandler([&] { done(reply); });
        };
        if (QCoreApplication *program = QCoreApplication::instance())
            QMetaObject::invokeMethod(program, tell, Qt::QueuedConnection);
    });
}

void Router::Close() {
    isWanted_.reset();
    pool_->start([protocols = protocols_] { protocols->Close(); });
}

}  // namespace pixmora
