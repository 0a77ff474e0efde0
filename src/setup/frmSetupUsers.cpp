// The form for one user.
#include "setup/frmSetupUsers.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QProxyStyle>
#include <QVBoxLayout>
#include <utility>

#include "console/Events.h"
#include "console/Texts.h"
#include "core/site/OwnerDialogue.h"
#include "setup/FormParts.h"
#include "setup/rules/UserEditor.h"

namespace pixmora {

using namespace FormParts;

namespace {

/// Shows a password as stars. A style sheet that did so would take the desktop's colours instead of the dialog's.
class Stars : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override {
        return hint == SH_LineEdit_PasswordCharacter ? '*' : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

}  // namespace

frmSetupUsers::frmSetupUsers(QWidget *parent, std::string editUserName)
    : SetupWindow("frmSetupUsers", editUserName.empty() ? QStringLiteral("Add User") : QStringLiteral("Edit User"),
                  parent),
      editUserName_(std::move(editUserName)),
      txtUsername(TextBox("txtUsername")),
      txtPassword(TextBox("txtPassword")),
      txtConfirm(TextBox("txtConfirm")),
      chkAdmin(CheckBox("chkAdmin", "Allow access to all protected directories")),
      cmdOK(Button("cmdOK", "OK")),
      cmdCancel(Button("cmdCancel", "Cancel")) {
    auto *stars = new Stars;
    stars->setParent(this);
    for (QLineEdit *box : {txtPassword, txtConfirm}) {
        box->setEchoMode(QLineEdit::Password);
        box->setStyle(stars);
    }
    auto *grid = new QGridLayout;
    AddRow(*grid, "Username:", txtUsername);
    AddRow(*grid, "Password:", txtPassword);
    AddRow(*grid, "Confirm:", txtConfirm);
    grid->addWidget(chkAdmin, grid->rowCount(), 0, 1, 2);
    grid->setColumnMinimumWidth(1, 200);
    Contents()->addWidget(Captioned("SContainer1", editUserName_.empty() ? "Add User" : "Edit User", grid), 1);
    Contents()->addLayout(ButtonRow({cmdOK, cmdCancel}));
    OnClick(cmdOK, [this] { Accept(); });
    OnClick(cmdCancel, [this] { CloseByOwner(); });
    cmdOK->setDefault(true);
    if (!editUserName_.empty()) {
        const UserFields stored = LoadUser(editUserName_);
        txtUsername->setText(ToQt(stored.Username));
        txtPassword->setText(ToQt(stored.Password));
        txtConfirm->setText(ToQt(stored.Confirm));
        chkAdmin->setChecked(stored.Admin);
    }
    FinishLayout();
    txtUsername->setFocus();
}

void frmSetupUsers::Accept() {
    const UserFields fields{FromQt(txtUsername->text()), FromQt(txtPassword->text()), FromQt(txtConfirm->text()),
                            chkAdmin->isChecked()};
    if (const auto refusal = ValidateUser(fields, editUserName_)) {
        ShowMessageBox(refusal->Message, FlagCritical);
        QLineEdit *const boxes[] = {txtUsername, txtPassword, txtConfirm};
        boxes[static_cast<int>(refusal->Where)]->setFocus();
        return;
    }
    if (TellIfUserGone(editUserName_)) return done(Accepted);
    ShowMessageBox(SaveUser(fields, editUserName_), FlagInformation);
    done(Accepted);
}

}  // namespace pixmora
