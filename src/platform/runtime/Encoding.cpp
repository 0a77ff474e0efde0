// The encodings of texts that come from elsewhere.
#include "platform/runtime/Encoding.h"

#include <QStringDecoder>
#include <QUtf8StringView>
#include <iterator>

namespace pixmora {

bool IsUtf8(std::string_view bytes) {
    return QUtf8StringView(bytes.data(), std::ssize(bytes)).isValidUtf8();
}

std::string WithoutByteOrderMark(std::string bytes) {
    const QByteArrayView view(bytes.data(), std::ssize(bytes));
    const auto encoding = QStringConverter::encodingForData(view);
    if (!encoding) return bytes;
    const QString text = QStringDecoder(*encoding)(view);
    return text.toStdString();
}

}  // namespace pixmora
