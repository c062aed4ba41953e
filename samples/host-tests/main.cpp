#include <gmock/gmock.h>

#include <QCoreApplication>

// Continuations with a receiver run through the event loop of its thread, so the tests need one.
int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
