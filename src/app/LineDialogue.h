// The owner's dialogue of the programs without windows.
#pragma once

#include <cstdio>
#include <string>

#include "core/site/OwnerDialogue.h"

namespace pixmora {

class RunTimeError;

/// Prints the line and hands it on at once.
void PrintLine(std::FILE *stream, const std::string &text);

/// The owner's messages and questions, one line each on standard error, line ends shown as " | "; a question takes its
/// No.
class LineDialogue : public OwnerDialogue {
public:
    int ShowMessageBox(const std::string &text, int flags) override;
    void ShowHelpBalloon(const std::string &title, const std::string &text) override;
    void ShowNotice(const std::string &text) override;
    void OpenInBrowser(const std::string &) override {}
    void WebsiteStatusChanged() override {}
    void ShowSetup() override {}

    /// The error's own message, and plain words where it is the database library's.
    void ShowError(const RunTimeError &error);
};

}  // namespace pixmora
