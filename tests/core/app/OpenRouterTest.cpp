// Delivering open requests to a window: which folder is shown, what is selected, which tab.

#include "app/OpenRouter.h"
#include "platform/XdgPaths.h"
#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace orwick;
using test::waitUntil;

namespace {

struct OpenRouterFixture : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<WindowState> window;

    void SetUp() override
    {
        tree.folder("A");
        tree.folder("B");
        tree.file("a.txt", "a");
        tree.file("A/inner.txt", "i");
        window = std::make_unique<WindowState>(tree.root(), &preferences);
        settle();
    }
    void settle()
    {
        for (TabState* tab : window->tabs())
            ASSERT_TRUE(waitUntil([&] { return !tab->activePane()->isLoading(); }));
    }
    QList<FilePath> tabFolders() const
    {
        QList<FilePath> folders;
        for (TabState* tab : window->tabs())
            folders << tab->activePane()->url();
        return folders;
    }
    // Waits for the active pane to show `folder` with exactly `selected` selected.
    ::testing::AssertionResult shows(const FilePath& folder, const QSet<FilePath>& selected)
    {
        PaneState* pane = window->activePane();
        if (!waitUntil([&] { return pane->url() == folder && !pane->isLoading() && pane->selection() == selected; }))
            return ::testing::AssertionFailure() << "shows " << pane->url().text().toStdString() << " with "
                                                 << pane->selection().size() << " selected";
        return ::testing::AssertionSuccess();
    }
};

// Per row: a window on `from`, the requests delivered, the tabs' folders after, and what the
// active pane shows with what selected.
TEST_F(OpenRouterFixture, RequestsShowTheirFolderInANewTabUnlessShownAndSelectTheirItem)
{
    const FilePath root = tree.root(), a = tree.path("A"), b = tree.path("B"), file = tree.path("a.txt");
    const struct {
        const char* what;
        FilePath from;
        OpenRequests requests;
        QList<FilePath> tabs;
        FilePath shown;
        QSet<FilePath> selected;
    } rows[] = {
        {"a file elsewhere", b, {{file, false}}, {b, root}, root, {file}},
        {"a file elsewhere, revealed", b, {{file, true}}, {b, root}, root, {file}},
        {"a folder revealed", b, {{a, true}}, {b, root}, root, {a}},
        {"a file in the shown folder", root, {{file, false}}, {root}, root, {file}},
        {"two folders, in the order given", root, {{b, false}, {a, false}}, {root, b, a}, a, {}},
        {"a missing path", root, {{tree.path("A/gone.txt"), false}}, {root, a}, a, {}},
        {"a missing path, revealed", root, {{tree.path("A/gone.txt"), true}}, {root, a}, a, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        window = std::make_unique<WindowState>(row.from, &preferences);
        settle();
        OpenRouter::deliver(row.requests, *window, false);
        EXPECT_EQ(tabFolders(), row.tabs);
        EXPECT_EQ(window->selectedTab(), window->tabs().last());
        EXPECT_TRUE(shows(row.shown, row.selected));
    }
    // Once more with its folder shown: nothing new.
    OpenRouter::deliver({{tree.path("A/gone.txt"), true}}, *window, false);
    EXPECT_EQ(window->tabs().size(), 2);
}

TEST_F(OpenRouterFixture, ALinkToAFileInTmpShowsTmpWithTheFileSelected)
{
    // The same through a link, with and without reveal.
    const FilePath file = tree.path("a.txt");
    const QString url = QStringLiteral("orwick://open?path=") + QString::fromUtf8(QUrl::toPercentEncoding(file.text(), "/"));
    for (const QString& link : {url, url + QStringLiteral("&reveal=1")}) {
        window = std::make_unique<WindowState>(tree.path("B"), &preferences);
        settle();
        OpenRouter router;
        router.setFrontWindow([this] { return window.get(); });
        router.openLink(link);
        EXPECT_TRUE(shows(tree.root(), {file})) << link.toStdString();
    }
}

TEST_F(OpenRouterFixture, ALinkToTildeDocumentsOpensTheHomesDocuments)
{
    const FilePath documents = xdg::home().child(QByteArrayView("Documents"));
    ASSERT_TRUE(QDir().mkpath(documents.text()));
    OpenRouter router;
    router.setFrontWindow([this] { return window.get(); });
    router.openLink(QStringLiteral("orwick://open?path=~/Documents"));
    EXPECT_EQ(window->tabs().size(), 2);
    EXPECT_TRUE(shows(documents, {}));
}

TEST_F(OpenRouterFixture, AFolderTheActivePaneShowsOpensNoTabAndSelectsNothingNew)
{
    window->activePane()->click(tree.path("B"), Qt::NoModifier);
    ASSERT_TRUE(shows(tree.root(), {tree.path("B")}));
    OpenRouter::deliver({{tree.root(), false}}, *window, false);
    EXPECT_EQ(window->tabs().size(), 1);
    EXPECT_TRUE(shows(tree.root(), {tree.path("B")}));
}

TEST_F(OpenRouterFixture, TheStartRequestReusesTheFirstTab)
{
    OpenRouter::deliver({{tree.path("A/inner.txt"), false}, {tree.path("B"), false}}, *window, true);
    EXPECT_EQ(tabFolders(), (QList<FilePath>{tree.path("A"), tree.path("B")}));
    window->selectTab(-1);
    EXPECT_TRUE(shows(tree.path("A"), {tree.path("A/inner.txt")}));
}

TEST_F(OpenRouterFixture, ANameThatIsNotUtf8IsSelected)
{
    const FilePath odd = tree.file(QByteArray("caf\xe9.txt"), "x");
    window->activePane()->navigate(tree.path("B"));
    settle();
    const OpenRequests requests = OpenRouter::requestsFromArguments(QList<QByteArray>{"../caf\xe9.txt"}, tree.path("B"));
    OpenRouter::deliver(requests, *window, false);
    EXPECT_TRUE(shows(tree.root(), {odd}));
    const auto linked = OpenRouter::parseLink(QStringLiteral("orwick://open?path=") + tree.root().text() + QStringLiteral("/caf%E9.txt"));
    ASSERT_TRUE(linked);
    EXPECT_EQ(linked->path, odd);
}

TEST_F(OpenRouterFixture, RequestsBeforeAnyWindowWaitForTheFirstOneAndUseItsFirstTab)
{
    OpenRouter router;
    WindowState* front = nullptr;
    router.setFrontWindow([&front] { return front; });
    QList<OpenRequests> delivered;
    QObject::connect(&router, &OpenRouter::delivered, [&](WindowState*, const OpenRequests& requests) { delivered.append(requests); });
    router.open({{tree.path("A"), false}});
    router.openLink(QStringLiteral("orwick://open?reveal=1"));
    EXPECT_EQ(router.pending(), (OpenRequests{{tree.path("A"), false}}));
    EXPECT_EQ(delivered.size(), 0);

    router.windowReady(*window);
    EXPECT_TRUE(router.pending().isEmpty());
    EXPECT_EQ(tabFolders(), QList<FilePath>{tree.path("A")});
    EXPECT_EQ(delivered.size(), 1);

    // Later windows and later requests: the front window, in a new tab.
    front = window.get();
    router.windowReady(*window);
    EXPECT_EQ(window->tabs().size(), 1);
    router.open({{tree.path("B"), false}});
    EXPECT_EQ(tabFolders(), (QList<FilePath>{tree.path("A"), tree.path("B")}));
    EXPECT_EQ(delivered.size(), 2);
}

} // namespace
