// The entry of every test program that drives a virtual desktop: Qt's event machinery without any
// display of its own.

#include <gtest/gtest.h>

#include <QCoreApplication>

int main(int argumentCount, char** arguments) {
    const QCoreApplication application(argumentCount, arguments);
    ::testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
