// The site's address as a QR code, for a telephone's camera.
#pragma once

#include <string>

#include "console/SkinWindow.h"

namespace pixmora {

class frmQrCode : public SkinWindow {
public:
    /// @param address shown under its code as well
    explicit frmQrCode(const std::string &address);

    /// Modal, while the message loop goes on. @param over the window that it is placed over, or null
    void Run(const QWidget *over);

protected:
    void CloseByOwner() override { done(Accepted); }
};

}  // namespace pixmora
