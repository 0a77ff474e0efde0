// What looks into movies, a module of its own: the libraries behind it are many and large, and a site without a visitor
// who asks for a movie's details never loads them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/movies/MovieFacts.h"

namespace pixmora {

/// The bytes of a file that may be a movie.
class MovieBytes {
public:
    virtual ~MovieBytes() = default;
    /// @return bytes
    virtual std::int64_t Length() const = 0;
    /// @return how many bytes came; 0 at the end and on failure
    virtual std::size_t ReadAt(std::int64_t offset, void *bytes, std::size_t count) const = 0;
};

using MovieProbe = MovieFacts (*)(const MovieBytes &file);

/// The module's one symbol, a MovieProbe. Bounded as ReadMovieFacts is. Never throws.
extern "C" __attribute__((visibility("default"))) MovieFacts ProbeMovie(const MovieBytes &file);

}  // namespace pixmora
