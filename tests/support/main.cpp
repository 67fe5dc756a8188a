#include "support/temporary_home.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <csignal>

// Every test program runs without a display, in a home of its own, inside one QApplication.
int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    std::signal(SIGXFSZ, SIG_IGN); // tests of a full disk limit the file size instead
    const TemporaryHome home;
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
