// Opens the file for the module that knows movies, and loads that one at the first call.
#include "platform/movies/MovieFacts.h"

#include <memory>

#include "platform/files/Files.h"
#include "platform/movies/MovieProbe.h"
#include "platform/runtime/Modules.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

class BytesOfFile : public MovieBytes {
public:
    explicit BytesOfFile(std::string_view path) : file_(BinaryFile::OpenForRead(path)) {}
    std::int64_t Length() const override { return file_->Length(); }
    std::size_t ReadAt(std::int64_t offset, void *bytes, std::size_t count) const override {
        return file_->ReadAt(offset, bytes, count);
    }

private:
    std::unique_ptr<BinaryFile> file_;
};

}  // namespace

MovieFacts ReadMovieFacts(std::string_view path) try {
    const BytesOfFile file(path);
    static const auto probe = reinterpret_cast<MovieProbe>(LoadModule("movies", "ProbeMovie"));
    return probe ? probe(file) : MovieFacts{};
} catch (const RunTimeError &) {
    return {};
}

}  // namespace pixmora
