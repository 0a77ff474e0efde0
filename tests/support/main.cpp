// The start of every test program: no display, a fixed zone and locale, and an application object for the loop.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <clocale>
#include <cstdlib>

int main(int argc, char **argv) {
    setenv("TZ", "UTC", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    std::setlocale(LC_ALL, "C");
    return RUN_ALL_TESTS();
}
