// The tabs of the setup dialog, as they are built; what they do is the dialog's.
#pragma once

#include <string>

class QWidget;

namespace pixmora {

/// The central service as the tabs speak of it.
struct ServiceFacts {
    std::string Base;         ///< "http://host", empty for none
    std::string Redirecting;  ///< the site's address there, empty for none
};

/// Each in a frame that scrolls where the screen is too small for it. Controls are found by their names.
QWidget *MakeIntroductionPage();
QWidget *MakeGeneralPage();
QWidget *MakeAlbumsPage();
QWidget *MakeFirewallPage(const ServiceFacts &service);
QWidget *MakeLayoutPage();
QWidget *MakeOnlinePage(const ServiceFacts &service);
QWidget *MakeAccessPage();
QWidget *MakePortPage(const ServiceFacts &service);

}  // namespace pixmora
