#include "platform/runtime/Modules.h"

#include <QCoreApplication>
#include <QLibrary>

namespace pixmora {

void *LoadModule(const char *name, const char *symbol) {
    const QString folder = QCoreApplication::applicationDirPath() + "/" PIXMORA_MODULES "/";
    return reinterpret_cast<void *>(QLibrary::resolve(folder + name + ".so", symbol));
}

}  // namespace pixmora
