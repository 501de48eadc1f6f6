// Names from the file system (and the user's own names) show as written wherever Qt would read an
// "&" as a keyboard mnemonic: tab titles, breadcrumb buttons, menu items. "R&D" stays "R&D".

#include "WindowFixture.h"

#include "app/Workspaces.h"
#include "ui/text/LiteralText.h"
#include "ui/window/WorkspacesMenu.h"

#include <QMenu>
#include <QTabBar>
#include <QToolButton>

namespace orwick::test {
namespace {

// What a mnemonic-reading widget draws for `text`: "&&" is one "&", a single "&" marks a key.
QString shown(const QString& text)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && i + 1 < text.size())
            ++i; // "&&" draws "&"; "&x" draws "x", underlined
        result += text[i];
    }
    return result;
}

QStringList crumbs(QWidget* window)
{
    QStringList texts;
    for (auto* button : window->findChildren<QToolButton*>())
        if (button->parentWidget() && QByteArray(button->parentWidget()->metaObject()->className()).contains("PathBar"))
            texts << shown(button->text());
    return texts;
}

struct LiteralNamesTest : WindowTest {};

TEST(LiteralText, DoublesEveryAmpersandAndNothingElse)
{
    EXPECT_EQ(literalText(QStringLiteral("R&D")), QStringLiteral("R&&D"));
    EXPECT_EQ(literalText(QStringLiteral("Tom && Jerry")), QStringLiteral("Tom &&&& Jerry"));
    EXPECT_EQ(literalText(QStringLiteral("plain")), QStringLiteral("plain"));
    EXPECT_EQ(shown(literalText(QStringLiteral("a & b &&c&"))), QStringLiteral("a & b &&c&"));
}

TEST_F(LiteralNamesTest, TabsAndBreadcrumbsShowAmpersandsAsWritten)
{
    tree.folder("R&D/Tom & Jerry");
    open(tree.path("R&D/Tom & Jerry"));
    auto* tabs = window->findChild<QTabBar*>();
    ASSERT_NE(tabs, nullptr);
    EXPECT_EQ(shown(tabs->tabText(0)), QStringLiteral("Tom & Jerry"));

    const QStringList texts = crumbs(window.get());
    ASSERT_GE(texts.size(), 2) << texts.join(" | ").toStdString();
    EXPECT_EQ(texts.last(), QStringLiteral("Tom & Jerry"));
    EXPECT_EQ(texts[texts.size() - 2], QStringLiteral("R&D"));

    state->newTab();
    pane()->navigate(tree.path("R&D"));
    ASSERT_TRUE(waitUntil([&] { return tabs->count() == 2 && shown(tabs->tabText(1)) == QStringLiteral("R&D"); }))
        << tabs->tabText(1).toStdString();
}

TEST_F(LiteralNamesTest, NamesWithNewlinesTabsAndDirectionMarksShowOnOneLineInOrder)
{
    tree.folder(QStringLiteral("two\nlines\tand \u202Eevil"));
    open(tree.path(QStringLiteral("two\nlines\tand \u202Eevil")));
    auto* tabs = window->findChild<QTabBar*>();
    ASSERT_NE(tabs, nullptr);
    const QString title = tabs->tabText(0);
    EXPECT_EQ(title, QStringLiteral("two\u240Alines\u2409and \uFFFDevil"));
    EXPECT_EQ(crumbs(window.get()).last(), title);
}

TEST_F(LiteralNamesTest, MenusShowWorkspaceNamesAsWritten)
{
    open(tree.root());
    for (const Workspace& workspace : QList<Workspace>(Workspaces::shared().all()))
        ASSERT_TRUE(Workspaces::shared().remove(workspace.name));
    Workspace workspace;
    workspace.name = QStringLiteral("Tom & Jerry");
    workspace.session = state->session();
    ASSERT_TRUE(Workspaces::shared().save(workspace));
    QMenu menu;
    WorkspacesMenu::addTo(&menu, state.get());
    QStringList texts;
    std::function<void(QMenu*)> collect = [&](QMenu* m) {
        for (QAction* action : m->actions()) {
            if (QMenu* submenu = action->menu()) {
                Q_EMIT submenu->aboutToShow(); // filled as it opens
                collect(submenu);
            }
            else {
                texts << shown(action->text());
            }
        }
    };
    collect(&menu);
    EXPECT_TRUE(texts.contains(QStringLiteral("Tom & Jerry"))) << texts.join(" | ").toStdString();
    ASSERT_TRUE(Workspaces::shared().remove(workspace.name));
}

} // namespace
} // namespace orwick::test
