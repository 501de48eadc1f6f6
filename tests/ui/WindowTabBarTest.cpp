// The window's tab bar: tabs measured once per title, with close marks drawn by the bar, lay out
// exactly as a closable QTabBar that measures them every time and has a button per tab (also
// after the current tab or the font changes); a click on a close mark asks to close that tab and
// nothing else; setTabs() adds, removes and retitles only where the window's tabs differ.

#include "ui/tabs/WindowTabBar.h"

#include <QApplication>
#include <QMouseEvent>
#include <QStyleOptionTab>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

// The title a tab is painted with, for either bar.
template <class Bar>
struct Peeking : Bar {
    using Bar::Bar;
    QString shownTitle(int index) const
    {
        QStyleOptionTab option;
        this->initStyleOption(&option, index);
        return option.text;
    }
};

struct WindowTabBarTest : ::testing::Test {
    QWidget host;
    WindowTabBar* bar = nullptr;
    QTabBar* plain = nullptr; // configured as WindowTabBar is, measuring every time, a button per tab

    void SetUp() override
    {
        auto* layout = new QVBoxLayout(&host);
        bar = new Peeking<WindowTabBar>(&host);
        plain = new Peeking<QTabBar>(&host);
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
        for (int i = 0; i < bar->count(); ++i) {
            EXPECT_EQ(bar->tabRect(i), plain->tabRect(i)) << when << ", tab " << i;
            EXPECT_EQ(bar->closeRect(i), plain->tabButton(i, QTabBar::RightSide)->geometry()) << when << ", tab " << i;
        }
        EXPECT_EQ(bar->sizeHint(), plain->sizeHint()) << when;
        for (int i = 0; i < bar->count(); ++i)
            EXPECT_EQ(static_cast<Peeking<WindowTabBar>*>(bar)->shownTitle(i), static_cast<Peeking<QTabBar>*>(plain)->shownTitle(i))
                << when << ", tab " << i;
    }
};

} // namespace

TEST_F(WindowTabBarTest, LaysOutAsAPlainTabBarAndMeasuresTheTabsAgainInAnotherFont)
{
    const QStringList titles{"d1", "Documents", "a rather long folder name of many words", "d1", "W", "Ünïcödé"};
    show(titles);
    expectSameLayout("first shown");
    bar->setCurrentIndex(2);
    plain->setCurrentIndex(2);
    expectSameLayout("another tab current");
    show({"Downloads", "d1", "x"});
    expectSameLayout("fewer tabs, new titles");
    // Another font measures the tabs again.
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

TEST_F(WindowTabBarTest, TabsSqueezedByManyKeepShortTitlesWholeAndTheEndsOfLongOnes)
{
    host.resize(700, 200);
    const QStringList titles{"beta", "gamma", "files", "Documents", "alpha", "a rather long folder name", "beta", "gamma",
                             "files", "Documents", "alpha", "gamma"};
    show(titles);
    bar->setCurrentIndex(11);
    QApplication::processEvents();
    auto* peeking = static_cast<Peeking<WindowTabBar>*>(bar);
    for (int i = 0; i < bar->count(); ++i) {
        const QString shown = peeking->shownTitle(i);
        if (titles[i].size() <= 10) {
            EXPECT_EQ(shown, titles[i]) << "tab " << i;
        } else {
            EXPECT_TRUE(shown.startsWith(QStringLiteral("a ra")) && shown.contains(QChar(0x2026)) && shown.endsWith(QStringLiteral("ame")))
                << shown.toStdString();
        }
    }
    EXPECT_LT(bar->tabRect(5).width(), bar->fontMetrics().horizontalAdvance(titles[5])) << "the tabs were squeezed";
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

namespace {

void click(QWidget* widget, QPoint press, QPoint release)
{
    QMouseEvent down(QEvent::MouseButtonPress, press, widget->mapToGlobal(press), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &down);
    QMouseEvent up(QEvent::MouseButtonRelease, release, widget->mapToGlobal(release), Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &up);
}

} // namespace

TEST_F(WindowTabBarTest, AClickOnACloseMarkAsksToCloseThatTabOnly)
{
    show({"A", "B", "C"});
    bar->setCurrentIndex(0);
    QList<int> closing;
    QObject::connect(bar, &QTabBar::tabCloseRequested, [&closing](int index) { closing.append(index); });

    const QPoint mark = bar->closeRect(2).center();
    ASSERT_TRUE(bar->tabRect(2).contains(mark));
    click(bar, mark, mark);
    EXPECT_EQ(closing, QList<int>{2});
    EXPECT_EQ(bar->currentIndex(), 0) << "the mark's tab isn't selected";

    click(bar, bar->closeRect(1).center(), bar->tabRect(0).center());
    EXPECT_EQ(closing, QList<int>{2}) << "a press taken off the mark before the release closes nothing";

    click(bar, bar->tabRect(1).topLeft() + QPoint(3, 3), bar->tabRect(1).topLeft() + QPoint(3, 3));
    EXPECT_EQ(bar->currentIndex(), 1);
    EXPECT_EQ(closing, QList<int>{2}) << "a click beside the mark selects the tab";
}
