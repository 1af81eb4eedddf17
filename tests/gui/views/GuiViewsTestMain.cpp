#include <QApplication>

#include <gtest/gtest.h>

// The views drive widgets (the tray's menu) and windows, so the tests run in an application
// with a display: the offscreen one unless another is asked for.
int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
