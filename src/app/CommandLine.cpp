#include "app/CommandLine.h"

#include <cstdio>
#include <string_view>

#include "platform/loop/App.h"

namespace pixmora {

namespace {

constexpr int statusUsage = 2;

}  // namespace

std::optional<int> AnswerQuestion(int argc, char **argv, const char *usage) {
    const std::string_view word = argc == 2 ? argv[1] : "";
    if (word == "--help") {
        std::fputs(usage, stdout);
    } else if (word == "--version") {
        std::printf("%s v%d.%d.%d\n", App::Title.c_str(), App::Major, App::Minor, App::Revision);
    } else {
        return std::nullopt;
    }
    return 0;
}

int RefuseWords(const char *usage) {
    std::fputs(usage, stderr);
    return statusUsage;
}

}  // namespace pixmora
