// The process's memory towards the system.
#include "platform/loop/Memory.h"

#include <cstdlib>  // defines __GLIBC__ where it is

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace pixmora {

void ReturnFreeMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

}  // namespace pixmora
