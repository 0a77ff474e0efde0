// The endings of picture and movie names.
#include "store/MediaTypes.h"

#include <algorithm>
#include <span>

#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/Globals.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

struct ContentType {
    std::string_view Patterns;
    std::string_view Name;
};

constexpr ContentType pictureTypes[] = {{"*.png", "image/png"},
                                        {"*.webp", "image/webp"},
                                        {"*.heic", "image/heic"},
                                        {"*.heif", "image/heif"},
                                        {"*.avif", "image/avif"}};
constexpr ContentType movieTypes[] = {{"*.mp4;*.m4v", "video/mp4"},
                                      {"*.mov", "video/quicktime"},
                                      {"*.webm", "video/webm"},
                                      {"*.mkv", "video/x-matroska"}};

std::string_view TypeOf(std::string_view name, std::span<const ContentType> types, std::string_view other) {
    const auto matches = [&](const ContentType &type) {
        return PathMatchSpec(name, type.Patterns);
    };
    const auto found = std::ranges::find_if(types, matches);
    return found == types.end() ? other : found->Name;
}

}  // namespace

void LoadMediaTypes() {
    gMoreTypes = Val(GetSetting("Setup", "MoreTypes")) == 1;
}

std::string_view PicturePatterns() {
    constexpr std::string_view all = "*.jpg;*.gif;*.bmp;*.jpeg;*.png;*.webp;*.heic;*.heif;*.avif";
    return gMoreTypes ? all : all.substr(0, all.find(";*.jpeg"));
}

std::string_view MoviePatterns() {
    constexpr std::string_view all = "*.avi;*.mpg;*.mpeg;*.mov;*.mp4;*.m4v;*.webm;*.mkv";
    return gMoreTypes ? all : all.substr(0, all.find(";*.mp4"));
}

bool IsPictureName(std::string_view name) {
    return PathMatchSpec(name, "*jpg;*gif;*bmp") || (gMoreTypes && PathMatchSpec(name, PicturePatterns()));
}

std::string_view PictureContentType(std::string_view name) {
    return TypeOf(name, pictureTypes, "image/jpeg");
}

std::string_view MovieContentType(std::string_view name) {
    return TypeOf(name, movieTypes, "application/octet-stream");
}

std::string EndingsText(std::string_view patterns) {
    return Replace(Replace(std::string(patterns), "*.", ""), ";", ", ");
}

}  // namespace pixmora
