#include "support/temporary_home.h"

#include <QApplication>

#include <gtest/gtest.h>
#include <opencv2/core/utility.hpp>

#include <csignal>

// Every test program runs without a display, in a home of its own, inside one QApplication.
int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef __SANITIZE_THREAD__
    cv::setNumThreads(1); // the hand-over of work to OpenCV's workers is not instrumented
#endif
    std::signal(SIGXFSZ, SIG_IGN); // tests of a full disk limit the file size instead
    const TemporaryHome home;
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
