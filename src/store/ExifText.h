// The values of an Exif directory as texts for display.
#pragma once

#include <cstdint>
#include <string>

#include "store/ExifBytes.h"

namespace pixmora {

/// Bytes of one component by the format's number (TIFF 6.0); 0 for a format that isn't known.
int ExifComponentSize(std::int64_t format);

/// The value of a fraction; 0 for one without a denominator.
double ExifQuotient(const ExifBytes &data);

/// A value's text, without zero bytes; empty when there is nothing of the value. A count of components that the data
/// doesn't back costs nothing. @param data the value's bytes, as far as there are any
std::string ExifText(std::int64_t tag, std::int64_t format, std::int64_t components, const ExifBytes &data);

}  // namespace pixmora
