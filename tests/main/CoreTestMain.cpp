// The main of every core test program: a temporary home first, then a headless application.

#include "support/TempHome.h"

#include <QGuiApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    QTemporaryDir home(QDir::tempPath() + "/orwick-test-home-XXXXXX");
    orwick::test::pointHomeAt(QFile::encodeName(home.path()));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
