// The border between the server's byte strings and the toolkit's text.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace pixmora {

/// Bytes of the server, which are UTF-8, as text of a window.
inline QString ToQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string FromQt(const QString &text) {
    return text.toStdString();
}

/// A message of the server, whose lines end in CR LF, for a label.
inline QString MessageText(std::string_view text) {
    return ToQt(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

}  // namespace pixmora
