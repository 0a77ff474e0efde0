// Opens the file for the module that knows movies, and loads that one at the first call.
#include "platform/movies/MovieFacts.h"

#include <QCoreApplication>
#include <QLibrary>
#include <memory>

#include "platform/files/Files.h"
#include "platform/movies/MovieProbe.h"
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

/// @return null where the module is not installed
MovieProbe LoadProbe() {
    const QString path = QCoreApplication::applicationDirPath() + "/" PIXMORA_MODULES "/movies.so";
    return reinterpret_cast<MovieProbe>(QLibrary::resolve(path, "ProbeMovie"));
}

}  // namespace

MovieFacts ReadMovieFacts(std::string_view path) try {
    const BytesOfFile file(path);
    static const MovieProbe probe = LoadProbe();
    return probe ? probe(file) : MovieFacts{};
} catch (const RunTimeError &) {
    return {};
}

}  // namespace pixmora
