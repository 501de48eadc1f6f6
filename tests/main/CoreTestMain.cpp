// The main of every core test program: a temporary home first, then a headless application.

#include "support/TempHome.h"

#include <QGuiApplication>
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
    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
