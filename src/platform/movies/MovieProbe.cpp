// Movie facts over libavformat, which is kept from reading long, far or anything but the one file.
#include "platform/movies/MovieProbe.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <memory>

namespace pixmora {

namespace {

using std::chrono::steady_clock;

constexpr auto timeLimit = std::chrono::milliseconds(500);
/// Room for the index of a movie of many hours and for the end of a program stream, where its length is found.
constexpr std::int64_t readLimit = 64 << 20;
constexpr std::size_t allocationLimit = 64 << 20;
constexpr int bufferSize = 32 << 10;

/// What the library may look at and do, as its own options.
constexpr const char *options[][2] = {
    {"format_whitelist", "mov,avi,mpeg,mpegts,asf,matroska"},
    {"codec_whitelist", "mpeg1video,mpeg2video,mpeg4,h264"},
    {"protocol_whitelist", "file"},
    {"probesize", "1000000"},        // bytes
    {"analyzeduration", "1000000"},  // microseconds
    {"max_streams", "16"},
    {"max_probe_packets", "200"},
    {"fpsprobesize", "0"},
};

/// The bytes of one file, as long as time and amount allow.
class Input {
public:
    explicit Input(const MovieBytes &file) : file_(file), length_(file.Length()) {}

    static int Read(void *opaque, std::uint8_t *buffer, int size) {
        auto &input = *static_cast<Input *>(opaque);
        if (input.IsSpent()) return AVERROR_EXIT;
        const std::size_t got = input.file_.ReadAt(input.position_, buffer, static_cast<std::size_t>(size));
        input.position_ += static_cast<std::int64_t>(got);
        input.amount_ += static_cast<std::int64_t>(got);
        return got == 0 ? AVERROR_EOF : static_cast<int>(got);
    }

    static std::int64_t Seek(void *opaque, std::int64_t offset, int whence) {
        auto &input = *static_cast<Input *>(opaque);
        switch (whence & ~AVSEEK_FORCE) {
            case AVSEEK_SIZE:
                return input.length_;
            case SEEK_SET:
                break;
            case SEEK_CUR:
                offset += input.position_;
                break;
            case SEEK_END:
                offset += input.length_;
                break;
            default:
                return AVERROR(EINVAL);
        }
        if (offset < 0) return AVERROR(EINVAL);
        return input.position_ = offset;
    }

    static int Interrupt(void *opaque) { return static_cast<Input *>(opaque)->IsSpent() ? 1 : 0; }

private:
    bool IsSpent() const { return amount_ > readLimit || steady_clock::now() > deadline_; }

    const MovieBytes &file_;
    std::int64_t length_;
    std::int64_t position_ = 0;
    std::int64_t amount_ = 0;
    steady_clock::time_point deadline_ = steady_clock::now() + timeLimit;
};

/// Movie files can name others; none is ever opened.
int RefuseToOpen(AVFormatContext *, AVIOContext **, const char *, int, AVDictionary **) {
    return AVERROR(EPERM);
}

struct FreeByteStream {
    void operator()(AVIOContext *stream) const {
        av_freep(&stream->buffer);
        avio_context_free(&stream);
    }
};
using ByteStream = std::unique_ptr<AVIOContext, FreeByteStream>;

struct CloseMovie {
    void operator()(AVFormatContext *movie) const { avformat_close_input(&movie); }
};
using Movie = std::unique_ptr<AVFormatContext, CloseMovie>;

ByteStream StreamOf(Input &input) {
    auto *buffer = static_cast<unsigned char *>(av_malloc(bufferSize));
    if (buffer == nullptr) return nullptr;
    ByteStream stream(avio_alloc_context(buffer, bufferSize, 0, &input, Input::Read, nullptr, Input::Seek));
    if (!stream) av_free(buffer);
    return stream;
}

/// @return none for what is no movie of the known formats
Movie Open(Input &input, AVIOContext *stream) {
    AVFormatContext *movie = avformat_alloc_context();
    if (movie == nullptr) return nullptr;
    movie->pb = stream;
    movie->interrupt_callback = {Input::Interrupt, &input};
    movie->io_open = RefuseToOpen;
    AVDictionary *dictionary = nullptr;
    for (const auto &[name, value] : options) av_dict_set(&dictionary, name, value, 0);
    const int result = avformat_open_input(&movie, nullptr, nullptr, &dictionary);  // frees the movie when it fails
    av_dict_free(&dictionary);
    return Movie(result < 0 ? nullptr : movie);
}

const AVStream *PictureStream(const Movie &movie) {
    const AVStream *found = nullptr;
    for (unsigned i = 0; i < movie->nb_streams && found == nullptr; ++i) {
        const AVStream *stream = movie->streams[i];
        const bool isCover = (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
        if (stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isCover) found = stream;
    }
    return found;
}

double OwnSeconds(const AVStream &stream) {
    const bool isKnown = stream.duration != AV_NOPTS_VALUE && stream.duration > 0;
    return isKnown ? static_cast<double>(stream.duration) * av_q2d(stream.time_base) : 0;
}

double Seconds(const Movie &movie) {
    if (movie->duration > 0) return static_cast<double>(movie->duration) / AV_TIME_BASE;
    double longest = 0;
    for (unsigned i = 0; i < movie->nb_streams; ++i) longest = std::max(longest, OwnSeconds(*movie->streams[i]));
    return longest;
}

double FrameRate(const AVStream &stream) {
    for (const AVRational rate : {stream.avg_frame_rate, stream.r_frame_rate}) {
        if (rate.num > 0 && rate.den > 0) return av_q2d(rate);
    }
    return 0;
}

bool IsComplete(const Movie &movie) {
    const AVStream *stream = PictureStream(movie);
    return stream != nullptr && stream->codecpar->width > 0 && Seconds(movie) > 0 &&
           (stream->nb_frames > 0 || FrameRate(*stream) > 0);
}

std::int64_t ToWhole(double value) {
    constexpr double largest = 1e15;
    return value > 0 ? std::llround(std::min(value, largest)) : 0;
}

/// A camera held upright stores its pictures lying down.
bool IsTurned(const AVStream &stream) {
    std::size_t size = 0;
    const std::uint8_t *matrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    if (matrix == nullptr || size < 9 * sizeof(std::int32_t)) return false;
    const double angle = std::abs(av_display_rotation_get(reinterpret_cast<const std::int32_t *>(matrix)));
    return angle > 45 && angle < 135;
}

void AddPictureFacts(const Movie &movie, const AVStream &stream, MovieFacts &facts) {
    facts.Width = stream.codecpar->width;
    facts.Height = stream.codecpar->height;
    facts.HasPicture = facts.Width > 0 && facts.Height > 0;
    facts.IsH264 = stream.codecpar->codec_id == AV_CODEC_ID_H264;
    if (IsTurned(stream)) std::swap(facts.Width, facts.Height);
    const double seconds = OwnSeconds(stream) > 0 ? OwnSeconds(stream) : Seconds(movie);
    facts.Frames = stream.nb_frames > 0 ? stream.nb_frames : ToWhole(seconds * FrameRate(stream));
}

}  // namespace

MovieFacts ProbeMovie(const MovieBytes &file) {
    av_log_set_level(AV_LOG_QUIET);
    av_max_alloc(allocationLimit);
    Input input(file);
    const ByteStream stream = StreamOf(input);
    if (!stream) return {};
    const Movie movie = Open(input, stream.get());
    if (!movie) return {};
    // Reading on is what a program stream needs, whose head says nothing. It may fail and yet have found something.
    if (!IsComplete(movie)) avformat_find_stream_info(movie.get(), nullptr);
    MovieFacts facts;
    facts.IsReadable = movie->nb_streams > 0;
    facts.LengthMs = ToWhole(Seconds(movie) * 1000);
    if (const AVStream *picture = PictureStream(movie)) AddPictureFacts(movie, *picture, facts);
    return facts;
}

}  // namespace pixmora
