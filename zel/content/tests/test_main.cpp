// zel/content/tests/test_main.cpp: GoogleTest inside a QApplication.
#include <QApplication>

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv)
{
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
