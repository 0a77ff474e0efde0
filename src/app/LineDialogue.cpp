// The owner's dialogue of the programs without windows.
#include "app/LineDialogue.h"

#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/Schema.h"

namespace pixmora {

void PrintLine(std::FILE *stream, const std::string &text) {
    std::fprintf(stream, "%s\n", text.c_str());
    std::fflush(stream);
}

void LineDialogue::ShowError(const RunTimeError &error) {
    PrintLine(stderr, error.Message());
    // A failure of its file the database tells plainly.
    const std::string plain = OwnersMessage(error);
    if (plain != error.Message() && error.Number() != ErrorNumber::DatabaseFailure) {
        ShowMessageBox(plain, FlagCritical);
    }
}

int LineDialogue::ShowMessageBox(const std::string &text, int flags) {
    PrintLine(stderr, Replace(Replace(text, "\r\n", "\n"), "\n", " | "));
    return (flags & FlagYesNo) != 0 ? AnswerNo : AnswerOk;
}

void LineDialogue::ShowHelpBalloon(const std::string &title, const std::string &text) {
    ShowMessageBox(title + "\n" + text, FlagInformation);
}

void LineDialogue::ShowNotice(const std::string &text) {
    ShowMessageBox(text, FlagInformation);
}

}  // namespace pixmora
