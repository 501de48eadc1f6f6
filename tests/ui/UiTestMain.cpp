// The main of the widget test program: a temporary home first, then a headless widget application.

#include "support/TempHome.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    // The home is a folder named "home" in a folder of random name: the home's own name shows in
    // the sidebar and the palette, where random letters could match what a test types.
    QTemporaryDir scratch(QDir::tempPath() + "/orwick-test-XXXXXX");
    orwick::test::pointHomeAt(QFile::encodeName(scratch.path()) + "/home");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
