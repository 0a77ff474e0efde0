// The form for one user.
#pragma once

#include <string>

#include "setup/SetupWindow.h"

class QCheckBox;
class QLineEdit;

namespace pixmora {

class SkinButton;

/// Adds or edits one user; modal. Accepted when a user was saved.
class frmSetupUsers : public SetupWindow {
public:
    /// @param editUserName empty to add one
    frmSetupUsers(QWidget *parent, std::string editUserName);

protected:
    void CloseByOwner() override { done(Rejected); }

private:
    void Accept();

    std::string editUserName_;
    QLineEdit *txtUsername;
    QLineEdit *txtPassword;
    QLineEdit *txtConfirm;
    QCheckBox *chkAdmin;
    SkinButton *cmdOK;
    SkinButton *cmdCancel;
};

}  // namespace pixmora
