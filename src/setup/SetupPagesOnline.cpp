// SetupPages.h: the tabs of the setup dialog that have to do with the central service.
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "console/Skin.h"
#include "console/Texts.h"
#include "core/site/OwnerDialogue.h"
#include "setup/SetupPages.h"
#include "setup/rules/HelpTexts.h"

namespace pixmora {

using namespace FormParts;

namespace {

constexpr const char *firewallSite = "https://en.wikipedia.org/wiki/Firewall_(computing)";
constexpr const char *updateSite = "https://www.debian.org/security/";

/// A line of words with links among them.
QLayout *Line(std::initializer_list<QWidget *> pieces) {
    auto *line = new QHBoxLayout;
    line->setSpacing(0);
    for (QWidget *piece : pieces) line->addWidget(piece);
    line->addStretch();
    return line;
}

QLabel *Words(const char *words) {
    return new QLabel(QString::fromUtf8(words));
}

/// A page of the central service. Without a service it is a word like the others.
LinkLabel *ServiceLink(const char *name, const char *caption, const ServiceFacts &service, const char *page) {
    auto *link = Link(name, QString::fromUtf8(caption), "Opens a help page in the browser",
                      [url = service.Base + page] { OpenInBrowser(url); });
    if (service.Base.empty()) link->SetLook({Skin::Ink, false, false, false, false});
    return link;
}

LinkLabel *OutsideLink(const char *name, const char *caption, const char *url) {
    return Link(name, QString::fromUtf8(caption), "Opens a page in the browser", [url] { OpenInBrowser(url); });
}

/// An address that opens when it is clicked, or words where there is none.
LinkLabel *AddressLink(const char *name, const std::string &address, const char *absence) {
    if (!address.empty()) {
        return Link(name, ToQt(address), "Opens the address in the browser", [address] { OpenInBrowser(address); });
    }
    auto *link = Link(name, QString::fromUtf8(absence), "There is no address", [] {});
    link->SetLook({Skin::Ink, false, true, false, false});
    return link;
}

QLayout *AddressRow(const char *caption, QWidget *link) {
    auto *row = new QHBoxLayout;
    row->addWidget(Words(caption));
    row->addWidget(link, 1);
    return row;
}

QLayout *FirewallAdvice(const ServiceFacts &service) {
    auto *rows = new QVBoxLayout;
    rows->setSpacing(2);
    rows->addLayout(Line({Words("A"), ServiceLink("lblLinkFirewall", "firewall", service, "/support_firewall.php"),
                          Words("or a"), ServiceLink("lblLinkRouter", "router", service, "/support_firewall.php"),
                          Words("can keep visitors away from your website.")}));
    rows->addLayout(
        Line({Words("Visitors need your public"), ServiceLink("lblLinkIP", "IP address", service, "/support_ip.php"),
              Words("to reach this computer.")}));
    rows->addLayout(Line({Words("A"), OutsideLink("lblLinkSoftwareFirewall", "software firewall", firewallSite),
                          Words("and a system that is"), OutsideLink("lblLinkWindowsUpdate", "up to date", updateSite),
                          Words("protect this computer.")}));
    rows->addLayout(Line({Words("Do you have security concerns?"),
                          ServiceLink("lblLinkSecurityConcerns", "Click here.", service, "/support_security.php")}));
    return rows;
}

}  // namespace

FirewallPage::FirewallPage(const ServiceFacts &service) {
    auto *addresses = new QGridLayout;
    addresses->setVerticalSpacing(4);
    AddRow(*addresses, "Public IP Address:", lblPublicIP);
    AddRow(*addresses, "Private IP Address:", lblPrivateIP);
    addresses->setColumnStretch(1, 1);
    auto *rows = new QVBoxLayout;
    rows->setSpacing(12);
    rows->addLayout(addresses);
    rows->addWidget(cmdCheckFirewall, 0, Qt::AlignLeft);
    rows->addLayout(FirewallAdvice(service));
    Add(
        Note("This test will make sure people will be able to connect to your website with your current firewall or "
             "network configuration."));
    Add(Captioned("SContainerFirewall", "Firewall Check", rows));
}

OnlinePage::OnlinePage(const ServiceFacts &service) {
    const bool hasService = !service.Base.empty();
    auto *listing = new QVBoxLayout;
    listing->addWidget(chkListOnline);
    listing->addLayout(AddressRow("Listing can be found at:",
                                  AddressLink("lblURLOnlineList", hasService ? service.Base + "/online.php" : "",
                                              "There is no central service.")));
    auto *redirect = new QVBoxLayout;
    redirect->addLayout(
        AddressRow("Website can be found at:",
                   AddressLink("lblURLRedirecting", service.Redirecting,
                               hasService ? "Your website has no account name." : "There is no central service.")));
    Add(Captioned("SContainerListOnline", "List Server Online", listing,
                  Help("lblHelpListServerOnline", ServiceName(service.Base))));
    Add(Captioned("SContainerRedirect", "Redirecting Address", redirect, Help("lblHelpRedirecting")));
}

PortPage::PortPage(const ServiceFacts &service) {
    auto *port = new QGridLayout;
    for (const char *choice : {"80", "8080", "8081", "8082"}) cboListenPort->addItem(QLatin1String(choice));
    cboListenPort->setMinimumContentsLength(8);
    AddRow(*port, "Listening Port:", cboListenPort);
    port->addWidget(cmdPortCheck, port->rowCount() - 1, 2);
    port->setColumnStretch(3, 1);
    auto *rows = new QVBoxLayout;
    rows->setSpacing(12);
    rows->addLayout(port);
    rows->addWidget(
        ServiceLink("lblWhatPortsAre", "Click for an explanation of what ports are.", service, "/support_port.php"), 0,
        Qt::AlignLeft);
    Add(
        Note("The common HTTP port is port 80 so usually there is no need to change this. However some firewalls and "
             "networks may block port 80 for security reasons. If you experience problems with visitors connecting to "
             "your website, try another port."));
    Add(Captioned("SContainerPort", "Port Setup", rows, Help("lblHelpPortSetup")));
}

}  // namespace pixmora
