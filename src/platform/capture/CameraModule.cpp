#include "platform/capture/CameraModule.h"

#include <libv4l2.h>

namespace pixmora {

extern "C" const CameraLibrary PixmoraCameraLibrary{v4l2_open, v4l2_close,  v4l2_ioctl,    v4l2_read,
                                                    v4l2_mmap, v4l2_munmap, &v4l2_log_file};

}  // namespace pixmora
