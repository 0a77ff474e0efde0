// Movie facts of any bytes.
#include <algorithm>
#include <cstring>

#include "Fuzz.h"
#include "platform/movies/MovieProbe.h"

namespace pixmora {
namespace {

class GivenBytes : public MovieBytes {
public:
    explicit GivenBytes(std::string_view bytes) : bytes_(bytes) {}

    std::int64_t Length() const override { return static_cast<std::int64_t>(bytes_.size()); }
    std::size_t ReadAt(std::int64_t offset, void *bytes, std::size_t count) const override {
        REQUIRE(offset >= 0);
        if (offset >= Length()) return 0;
        const std::string_view part = bytes_.substr(static_cast<std::size_t>(offset), count);
        std::memcpy(bytes, part.data(), part.size());
        return part.size();
    }

private:
    std::string_view bytes_;
};

}  // namespace

void CheckInput(std::string_view text) {
    const MovieFacts facts = ProbeMovie(GivenBytes(text));
    REQUIRE(facts.Frames >= 0 && facts.LengthMs >= 0);
    REQUIRE(!facts.HasPicture || (facts.Width > 0 && facts.Height > 0));
}

}  // namespace pixmora
