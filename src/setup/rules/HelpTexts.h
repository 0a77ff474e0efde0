// The help texts of the setup dialogs.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

struct HelpText {
    const char *Control;  ///< the label that shows it
    const char *Title;
    const char *Text;
};

/// By the label's name. Every label of the dialogs has one.
const HelpText &HelpTextOf(std::string_view control);

/// Shows the label's help. @param serviceName of the central service, which one of the texts ends in
void ShowHelpOf(std::string_view control, const std::string &serviceName = {});

/// The host of the central service's base address, or words for it where there is none.
std::string ServiceName(std::string_view serviceBase);

}  // namespace pixmora
