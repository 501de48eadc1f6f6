// The main of the widget test program: a temporary home first, then a headless widget application.

#include "support/TempHome.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    QTemporaryDir home(QDir::tempPath() + "/orwick-test-home-XXXXXX");
    orwick::test::pointHomeAt(QFile::encodeName(home.path()));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
