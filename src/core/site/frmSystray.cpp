// The hidden form and its array of connections.
#include "core/site/frmSystray.h"

#include "core/site/Globals.h"

namespace pixmora {

std::unique_ptr<frmSystray> gSystray;

ConnectionArray::ConnectionArray() {
    elements_.emplace(0, VisitorSocket::Create());
}

int ConnectionArray::UBound() const {
    return elements_.rbegin()->first;
}

Connection ConnectionArray::Load() {
    return LoadAt(UBound() + 1);
}

Connection ConnectionArray::LoadInHole() {
    int index = 1;
    while (Item(index) && Item(index)->State() != SocketState::Closed) ++index;
    Unload(index);
    return LoadAt(index);
}

void ConnectionArray::Unload(int index) {
    const auto found = elements_.find(index);
    if (index == 0 || found == elements_.end()) return;
    const Connection element = found->second;
    elements_.erase(found);
    element->Close();
}

Connection ConnectionArray::Item(int index) const {
    const auto found = elements_.find(index);
    return found == elements_.end() ? nullptr : found->second;
}

std::vector<Connection> ConnectionArray::Items() const {
    std::vector<Connection> items;
    for (const auto &[index, element] : elements_) {
        if (index != 0) items.push_back(element);
    }
    return items;
}

Connection ConnectionArray::LoadAt(int index) {
    Connection element = VisitorSocket::Create();
    element->Index = index;
    elements_.emplace(index, element);
    return element;
}

void ConnectionArray::Trim() {
    while (UBound() != 0 && elements_.rbegin()->second->State() == SocketState::Closed) Unload(UBound());
}

}  // namespace pixmora
