// The welcome sheet's first-start rule: a user is greeted once, at the first plain start (no
// paths, no session to reopen); a start that shows something, or a traced one, leaves the
// greeting for later; the preferences store remembers it.

#include "app/Settings.h"
#include "help/FirstStartWelcome.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

using namespace orwick;
using firstStart::Start;

TEST(FirstStartWelcomeTest, TheFirstPlainStartGreetsAndNoLaterStartDoes)
{
    test::TempTree tree;
    QSettings settings(tree.path("Orwick.conf").text(), QSettings::IniFormat);
    EXPECT_TRUE(firstStart::takeWelcome(settings, Start::plain));
    EXPECT_FALSE(firstStart::takeWelcome(settings, Start::plain));
    settings.sync();
    QSettings reopened(tree.path("Orwick.conf").text(), QSettings::IniFormat);
    EXPECT_TRUE(readSettingsBool(reopened, QString::fromLatin1(settingsKey::welcomed), false));
    EXPECT_FALSE(firstStart::takeWelcome(reopened, Start::plain)) << "kept across starts";
}

TEST(FirstStartWelcomeTest, AStartThatShowsSomethingOrIsMeasuredLeavesTheGreetingForLater)
{
    test::TempTree tree;
    QSettings settings(tree.path("Orwick.conf").text(), QSettings::IniFormat);
    EXPECT_FALSE(firstStart::takeWelcome(settings, Start::shows));
    EXPECT_FALSE(firstStart::takeWelcome(settings, Start::measured));
    EXPECT_FALSE(settings.contains(QString::fromLatin1(settingsKey::welcomed)));
    EXPECT_TRUE(firstStart::takeWelcome(settings, Start::plain));
}

TEST(FirstStartWelcomeTest, ADamagedValueGreetsAgain)
{
    test::TempTree tree;
    QSettings settings(tree.path("Orwick.conf").text(), QSettings::IniFormat);
    settings.setValue(QString::fromLatin1(settingsKey::welcomed), QStringLiteral("maybe"));
    EXPECT_TRUE(firstStart::takeWelcome(settings, Start::plain));
    EXPECT_FALSE(firstStart::takeWelcome(settings, Start::plain));
}
