// A smaller JPEG by libvips.
#include <vips/vips.h>

#include <stdexcept>

#include "peers/Peers.h"

namespace pixmora::bench {

namespace {

/// Once for the process. What libvips remembers of earlier pictures would spare it the work that is measured.
void StartVips() {
    static const int status = [] {
        const int result = vips_init("bench");
        vips_concurrency_set(1);
        vips_cache_set_max(0);
        return result;
    }();
    if (status != 0) throw std::runtime_error(vips_error_buffer());
}

}  // namespace

std::size_t VipsThumbnail(const std::string &path, WantedPicture wanted) {
    StartVips();
    VipsImage *image = nullptr;
    if (vips_thumbnail(path.c_str(), &image, wanted.Width, "height", VIPS_MAX_COORD, "size", VIPS_SIZE_DOWN, nullptr) !=
        0)
        throw std::runtime_error(vips_error_buffer());
    void *bytes = nullptr;
    std::size_t count = 0;
    const int result = vips_jpegsave_buffer(image, &bytes, &count, "Q", wanted.Quality, "optimize_coding", TRUE,
                                            "strip", TRUE, nullptr);
    g_object_unref(image);
    g_free(bytes);
    if (result != 0) throw std::runtime_error(vips_error_buffer());
    return count;
}

}  // namespace pixmora::bench
