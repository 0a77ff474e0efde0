// The start of every test program with windows: they show nowhere, in a fixed zone and locale.
#include <gtest/gtest.h>

#include <QApplication>
#include <clocale>
#include <cstdlib>

int main(int argc, char **argv) {
    setenv("TZ", "UTC", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    std::setlocale(LC_ALL, "C");
    const int status = RUN_ALL_TESTS();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return status;
}
