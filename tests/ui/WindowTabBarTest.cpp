// The window's tab bar: tabs measured once per title lay out exactly as a QTabBar that measures
// them every time (also after the current tab or the font changes), and setTabs() adds, removes
// and retitles only where the window's tabs differ from the bar's.

#include "ui/tabs/WindowTabBar.h"

#include <QApplication>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

struct WindowTabBarTest : ::testing::Test {
    QWidget host;
    WindowTabBar* bar = nullptr;
    QTabBar* plain = nullptr; // configured as WindowTabBar configures itself, measuring every time

    void SetUp() override
    {
        auto* layout = new QVBoxLayout(&host);
        bar = new WindowTabBar(&host);
        plain = new QTabBar(&host);
        plain->setMovable(true);
        plain->setTabsClosable(true);
        plain->setDocumentMode(true);
        plain->setExpanding(false);
        plain->setElideMode(Qt::ElideMiddle);
        layout->addWidget(bar);
        layout->addWidget(plain);
        host.resize(2400, 200);
        host.show();
    }
    void show(const QStringList& titles)
    {
        QList<WindowTabBar::Tab> tabs;
        for (const QString& title : titles)
            tabs.append({title, QStringLiteral("/home/") + title});
        bar->setTabs(tabs);
        while (plain->count() > titles.size())
            plain->removeTab(plain->count() - 1);
        for (int i = 0; i < titles.size(); ++i) {
            if (i == plain->count())
                plain->addTab(titles[i]);
            else
                plain->setTabText(i, titles[i]);
        }
        QApplication::processEvents();
    }
    void expectSameLayout(const char* when)
    {
        ASSERT_EQ(bar->count(), plain->count()) << when;
        for (int i = 0; i < bar->count(); ++i)
            EXPECT_EQ(bar->tabRect(i), plain->tabRect(i)) << when << ", tab " << i;
        EXPECT_EQ(bar->sizeHint(), plain->sizeHint()) << when;
    }
};

} // namespace

TEST_F(WindowTabBarTest, LaysOutAsAPlainTabBar)
{
    const QStringList titles{"d1", "Documents", "a rather long folder name of many words", "d1", "W", "Ünïcödé"};
    show(titles);
    expectSameLayout("first shown");
    bar->setCurrentIndex(2);
    plain->setCurrentIndex(2);
    expectSameLayout("another tab current");
    show({"Downloads", "d1", "x"});
    expectSameLayout("fewer tabs, new titles");
}

TEST_F(WindowTabBarTest, AnotherFontMeasuresTheTabsAgain)
{
    show({"Documents", "Music"});
    const int before = bar->tabRect(0).width();
    QFont larger = bar->font();
    larger.setPointSizeF(larger.pointSizeF() * 2);
    bar->setFont(larger);
    plain->setFont(larger);
    QApplication::processEvents();
    EXPECT_GT(bar->tabRect(0).width(), before);
    expectSameLayout("a larger font");
}

TEST_F(WindowTabBarTest, SetTabsChangesOnlyWhatDiffers)
{
    show({"A", "B", "C"});
    bar->setCurrentIndex(1);
    int currentChanges = 0;
    QObject::connect(bar, &QTabBar::currentChanged, [&currentChanges] { ++currentChanges; });
    bar->setTabs({{"A", "/home/A"}, {"B", "/home/B"}, {"C", "/home/C"}, {"D", "/home/D"}});
    EXPECT_EQ(bar->count(), 4);
    EXPECT_EQ(bar->tabText(3), QStringLiteral("D"));
    EXPECT_EQ(bar->tabToolTip(3), QStringLiteral("/home/D"));
    EXPECT_EQ(currentChanges, 0) << "a tab added at the end leaves the current one";

    bar->setTabs({{"A", "/home/A"}, {"B2", "/elsewhere/B2"}});
    EXPECT_EQ(bar->count(), 2);
    EXPECT_EQ(bar->currentIndex(), 1);
    EXPECT_EQ(bar->tabText(1), QStringLiteral("B2"));
    EXPECT_EQ(bar->tabToolTip(1), QStringLiteral("/elsewhere/B2"));
    EXPECT_EQ(bar->tabText(0), QStringLiteral("A"));
}
