// The painted menus among the windows that assistive technology finds.
#include "console/AccessibleMenus.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QApplication>

#include "console/frmXPMenu.h"

namespace pixmora {

namespace {

QList<QAccessibleInterface *> OpenMenus() {
    QList<QAccessibleInterface *> menus;
    for (QWidget *form : QApplication::topLevelWidgets()) {
        if (form->isVisible() && dynamic_cast<frmXPMenu *>(form) != nullptr) {
            menus.append(QAccessible::queryAccessibleInterface(form));
        }
    }
    return menus;
}

/// The program's windows, and the open menus behind them.
class ProgramWithMenus : public QAccessibleApplication {
public:
    int childCount() const override { return Windows() + static_cast<int>(OpenMenus().size()); }
    QAccessibleInterface *child(int index) const override {
        return index < Windows() ? QAccessibleApplication::child(index) : OpenMenus().value(index - Windows());
    }
    int indexOfChild(const QAccessibleInterface *child) const override {
        const int index = QAccessibleApplication::indexOfChild(child);
        if (index >= 0) return index;
        const qsizetype menu = OpenMenus().indexOf(child);
        return menu < 0 ? -1 : Windows() + static_cast<int>(menu);
    }

private:
    int Windows() const { return QAccessibleApplication::childCount(); }
};

QAccessibleInterface *MakeInterface(const QString &, QObject *object) {
    return object != nullptr && object == qApp ? new ProgramWithMenus : nullptr;
}

}  // namespace

void ShowMenusToAssistiveTechnology() {
    QAccessible::installFactory(MakeInterface);
}

}  // namespace pixmora
