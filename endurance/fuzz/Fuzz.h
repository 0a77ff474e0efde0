// What the fuzz targets share: their entry, requirements, calls that may raise the run time's error, and bytes that
// pass as a file.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/runtime/RunTimeError.h"

/// A property that holds for every input. One that doesn't is a finding, as a crash is.
#define REQUIRE(property) ((property) ? void() : pixmora::ReportBroken(#property, __FILE__, __LINE__))

namespace pixmora {

/// By the names of their programs, what the targets of a source require of any bytes.
using Targets = std::map<std::string_view, void (*)(std::string_view)>;
extern const Targets targets;

[[noreturn]] inline void ReportBroken(const char *property, const char *file, int line) {
    std::fprintf(stderr, "%s:%d: broken: %s\n", file, line, property);
    std::abort();
}

/// What the call gives; none when it raises the run time's error. Any other exception is a finding.
template <typename Call>
auto ResultOf(Call call) -> std::optional<decltype(call())> {
    try {
        return call();
    } catch (const RunTimeError &) {
        return std::nullopt;
    }
}

/// The text before the first line end, and what stands behind it.
inline std::pair<std::string_view, std::string_view> FirstLineAndRest(std::string_view text) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) return {text, {}};
    return {text.substr(0, end), text.substr(end + 1)};
}

/// Whether only these characters stand in the text.
inline bool HoldsOnly(std::string_view text, std::string_view characters) {
    return text.find_first_not_of(characters) == std::string_view::npos;
}

/// Whether none of these characters stands in the text.
inline bool HoldsNone(std::string_view text, std::string_view characters) {
    return text.find_first_of(characters) == std::string_view::npos;
}

/// A file in memory that any call which wants a path can open.
class MemoryFile {
public:
    MemoryFile() : descriptor_(memfd_create("input", MFD_CLOEXEC)) { REQUIRE(descriptor_ >= 0); }
    ~MemoryFile() { close(descriptor_); }

    /// Replaces what the file holds.
    void Fill(std::string_view bytes) const {
        REQUIRE(ftruncate(descriptor_, 0) == 0);
        REQUIRE(pwrite(descriptor_, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
    }
    std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};

}  // namespace pixmora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
    static const auto check = pixmora::targets.at(program_invocation_short_name);
    check({reinterpret_cast<const char *>(bytes), size});
    return 0;
}
