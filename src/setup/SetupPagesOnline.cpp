// SetupPages.h: the tabs of the setup dialog that have to do with the central service.
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "console/Events.h"
#include "console/Skin.h"
#include "console/Texts.h"
#include "core/site/OwnerDialogue.h"
#include "outside/CentralService.h"
#include "platform/runtime/Text.h"
#include "setup/SetupPages.h"
#include "setup/rules/HelpTexts.h"
#include "setup/rules/SetupFields.h"

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

LinkLabel *OutsideLink(const char *name, const char *caption, const char *url) {
    return Link(name, QString::fromUtf8(caption), "Opens a page in the browser", [url] { OpenInBrowser(url); });
}

/// Opens the address that it shows.
LinkLabel *AddressLink(const char *name) {
    auto *link = new LinkLabel(name, QString(), QStringLiteral("Opens the address in the browser"));
    OnClick(link, [link] { OpenInBrowser(FromQt(link->text())); });
    return link;
}

/// Words where there is no address.
void ShowAddress(LinkLabel &link, const std::string &address, const char *absence) {
    const bool isLink = !address.empty();
    link.setText(isLink ? ToQt(address) : QString::fromUtf8(absence));
    link.SetLook(isLink ? LinkLook{Skin::Blue, true, false, false, true}
                        : LinkLook{Skin::Ink, false, true, false, false});
}

QLayout *AddressRow(const char *caption, QWidget *link) {
    auto *row = new QHBoxLayout;
    row->addWidget(Words(caption));
    row->addWidget(link, 1);
    return row;
}

}  // namespace

LinkLabel *ServicePage::ServiceLink(const char *name, const char *caption, const char *page) {
    links_.push_back(Link(name, QString::fromUtf8(caption), "Opens a help page in the browser",
                          [this, page] { OpenInBrowser(base_ + page); }));
    return links_.back();
}

void ServicePage::SetService(const std::string &base) {
    base_ = base;
    for (LinkLabel *link : links_) {
        link->SetLook({base.empty() ? Skin::SoftInk : Skin::Blue, !base.empty(), false, false, !base.empty()});
        link->setToolTip(base.empty() ? QStringLiteral("There is no central service that explains this.") : QString());
    }
}

QLayout *FirewallPage::MakeAdvice() {
    auto *rows = new QVBoxLayout;
    rows->setSpacing(2);
    rows->addLayout(Line({Words("A"), ServiceLink("lblLinkFirewall", "firewall", "/support_firewall.php"),
                          Words("or a"), ServiceLink("lblLinkRouter", "router", "/support_firewall.php"),
                          Words("can keep visitors away from your website.")}));
    rows->addLayout(Line({Words("Visitors need your public"), ServiceLink("lblLinkIP", "IP address", "/support_ip.php"),
                          Words("to reach this computer.")}));
    rows->addLayout(Line({Words("A"), OutsideLink("lblLinkSoftwareFirewall", "software firewall", firewallSite),
                          Words("and a system that is"), OutsideLink("lblLinkWindowsUpdate", "up to date", updateSite),
                          Words("protect this computer.")}));
    rows->addLayout(Line({Words("Do you have security concerns?"),
                          ServiceLink("lblLinkSecurityConcerns", "Click here.", "/support_security.php")}));
    return rows;
}

FirewallPage::FirewallPage() {
    auto *addresses = new QGridLayout;
    addresses->setVerticalSpacing(4);
    AddRow(*addresses, "Public IP Address:", lblPublicIP);
    AddRow(*addresses, "Private IP Address:", lblPrivateIP);
    addresses->setColumnStretch(1, 1);
    for (QLabel *address : {lblPublicIP, lblPrivateIP}) {
        address->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    auto *rows = new QVBoxLayout;
    rows->setSpacing(12);
    rows->addLayout(addresses);
    rows->addWidget(cmdCheckFirewall, 0, Qt::AlignLeft);
    rows->addWidget(chkPortMapping);
    rows->addLayout(MakeAdvice());
    Add(
        Note("This test will make sure people will be able to connect to your website with your current firewall or "
             "network configuration."));
    Add(Captioned("SContainerFirewall", "Firewall Check", rows));
}

OnlinePage::OnlinePage()
    : lblURLOnlineList(AddressLink("lblURLOnlineList")), lblURLRedirecting(AddressLink("lblURLRedirecting")) {
    auto *service = new QGridLayout;
    AddRow(*service, "Service Address:", txtServiceBase);
    AddRow(*service, "Account Name:", txtAccountName);
    auto *listing = new QVBoxLayout;
    listing->addWidget(chkListOnline);
    listing->addLayout(AddressRow("Listing can be found at:", lblURLOnlineList));
    auto *own = new QGridLayout;
    AddRow(*own, "Public Address:", txtPublicAddress);
    txtPublicAddress->setPlaceholderText(QStringLiteral("found out by itself"));
    Add(Captioned("SContainerService", "Central Service", service, Help("lblHelpService")));
    Add(Captioned("SContainerListOnline", "List Server Online", listing,
                  Help("lblHelpListServerOnline", [this] { return ServiceName(FromQt(txtServiceBase->text())); })));
    Add(Captioned("SContainerRedirect", "Redirecting Address",
                  AddressRow("Website can be found at:", lblURLRedirecting), Help("lblHelpRedirecting")));
    Add(Captioned("SContainerPublicAddress", "Public Address", own, Help("lblHelpPublicAddress")));
    for (QLineEdit *box : {txtServiceBase, txtAccountName}) {
        connect(box, &QLineEdit::textChanged, this, [this] { ShowAddresses(); });
    }
    ShowAddresses();
}

void OnlinePage::ShowAddresses() {
    const std::string base = CleanServiceBase(FromQt(txtServiceBase->text()));
    const char *const noService = "There is no central service.";
    ShowAddress(*lblURLOnlineList, base.empty() ? "" : base + "/online.php", noService);
    ShowAddress(*lblURLRedirecting, RedirectingAddress(base, Trim(FromQt(txtAccountName->text()))),
                base.empty() ? noService : "Your website has no account name.");
    chkListOnline->setEnabled(!base.empty());
    chkListOnline->setToolTip(base.empty() ? QString::fromUtf8(noService) : QString());
}

PortPage::PortPage() {
    auto *port = new QGridLayout;
    for (const char *choice : {"80", "8080", "8081", "8082"}) cboListenPort->addItem(QLatin1String(choice));
    cboListenPort->setMinimumContentsLength(8);
    AddRow(*port, "Listening Port:", cboListenPort);
    port->addWidget(cmdPortCheck, port->rowCount() - 1, 2);
    port->setColumnStretch(3, 1);
    auto *rows = new QVBoxLayout;
    rows->setSpacing(12);
    rows->addLayout(port);
    rows->addWidget(ServiceLink("lblWhatPortsAre", "Click for an explanation of what ports are.", "/support_port.php"),
                    0, Qt::AlignLeft);
    Add(
        Note("The common HTTP port is port 80 so usually there is no need to change this. However some firewalls and "
             "networks may block port 80 for security reasons. If you experience problems with visitors connecting to "
             "your website, try another port."));
    Add(Captioned("SContainerPort", "Port Setup", rows, Help("lblHelpPortSetup")));
}

}  // namespace pixmora
