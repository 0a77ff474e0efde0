// The hidden form's array of connections.
#include "core/site/frmSystray.h"

namespace pixmora {

ConnectionArray::ConnectionArray() {
    elements_.emplace(0, Winsock::Create());
}

int ConnectionArray::UBound() const {
    return elements_.rbegin()->first;
}

Connection ConnectionArray::Load() {
    Connection element = Winsock::Create();
    element->Index = UBound() + 1;
    elements_.emplace(element->Index, element);
    return element;
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

void ConnectionArray::Trim() {
    while (UBound() != 0 && elements_.rbegin()->second->State() == SocketState::Closed) Unload(UBound());
}

}  // namespace pixmora
