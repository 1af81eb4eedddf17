#include <QCoreApplication>

#include <gtest/gtest.h>

// The application layer publishes through the event loop, so the tests need an application
// object; each test pumps the loop itself.
int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
