// JPEG pictures decoded by libjpeg-turbo. For the sources of this room only.
#pragma once

#include <QIODevice>
#include <QImage>
#include <functional>

namespace pixmora {

/// As stored, at so many eighths of each side. Colour comes as four bytes a pixel, which the library writes without a
/// further pass over the picture; so it is a tenth faster than Qt's reader. A file that is cut or damaged gives what
/// there is of it. @param file at its start @param pause called between some megapixels that a scan passes over or the
/// result takes, however few the bytes they stand in; may be empty
/// @return null for printers' colours and what can't be decoded
QImage DecodeJpeg(QIODevice &file, unsigned eighths, const std::function<void()> &pause);

}  // namespace pixmora
