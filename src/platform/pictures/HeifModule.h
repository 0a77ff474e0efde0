// What reads HEIC and AVIF pictures, a module of its own: the libraries behind it are large, and a site without such a
// picture never loads them.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace pixmora {

/// One picture of a HEIF file (ISO/IEC 23008-12), upright, 8 bits a channel.
struct HeifPixels {
    std::shared_ptr<const void> Owner;       ///< of the samples
    const unsigned char *Samples = nullptr;  ///< R, G, B and alpha where there is one
    int Stride = 0;                          ///< bytes from row to row
    int Width = 0;
    int Height = 0;
    bool HasAlpha = false;
    std::vector<unsigned char> Profile;  ///< ICC; empty for the common colour space
};

/// A HEIF file in memory, which has to outlive its reading. None of these throws, whatever the bytes are.
struct HeifReader {
    /// The whole picture's size, upright. @return false for what is no HEIF file
    bool (*Size)(const std::vector<unsigned char> &file, int &width, int &height);
    /// The camera's notes as a TIFF block; empty without any.
    std::vector<unsigned char> (*Exif)(const std::vector<unsigned char> &file);
    /// The whole picture, or the small one that cameras store beside it where that is at least as wide as wanted.
    bool (*Decode)(const std::vector<unsigned char> &file, int wantedWidth, HeifPixels &pixels);
};

/// The module's one symbol.
extern "C" __attribute__((visibility("default"))) const HeifReader PixmoraHeifReader;

}  // namespace pixmora
