// The start of every test program: no display, a fixed zone and locale, and an application object for the loop.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <clocale>
#include <cstdlib>
#ifdef QT_WIDGETS_LIB
#include <QApplication>
using Application = QApplication;
#else
using Application = QCoreApplication;
#endif

int main(int argc, char **argv) {
    setenv("TZ", "UTC", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    testing::InitGoogleTest(&argc, argv);
    Application application(argc, argv);
#ifdef QT_WIDGETS_LIB
    Application::setQuitOnLastWindowClosed(false);
#endif
    std::setlocale(LC_ALL, "C");
    const int status = RUN_ALL_TESTS();
    if (status != 0) std::printf("again by --gtest_random_seed=%d\n", testing::UnitTest::GetInstance()->random_seed());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return status;
}
