#include "commands/GitCommandActions.h"

#include "app/Services.h"
#include "git/Git.h"
#include "git/GitActions.h"
#include "git/GitRunner.h"

#include <QPointer>

namespace orwick::actions {

namespace {

using Start = std::function<void(GitActions&, const FilePath& root, GitActions::Finished)>;

// Runs one action on the repository of the active pane's folder; its outcome becomes a toast,
// with `done` as the text of a success git said nothing about.
void runOnRepository(WindowState& window, const QString& done, const Start& start)
{
    Git* git = services().git;
    if (!git)
        return;
    if (!git->isAvailable()) {
        Q_EMIT window.messageRequested(gitMissingMessage());
        return;
    }
    const auto root = git->root(window.activePane()->url());
    if (!root) {
        Q_EMIT window.messageRequested(QStringLiteral("This folder isn’t in a git repository"));
        return;
    }
    GitActions actions(*git);
    QPointer<WindowState> target(&window);
    start(actions, *root, [target, done](const GitOutcome& outcome) {
        if (!target)
            return;
        const QString text = outcome.text();
        Q_EMIT target->messageRequested(text.isEmpty() ? done : text);
    });
}

} // namespace

bool inGitRepository(const WindowState& window)
{
    Git* git = services().git;
    return git && git->isAvailable() && window.activePane() && git->root(window.activePane()->url()).has_value();
}

void gitStash(WindowState& window)
{
    runOnRepository(window, QStringLiteral("Stashed your changes"), [&window](GitActions& git, const FilePath& root, auto done) {
        git.stash(root, {}, &window, std::move(done));
    });
}

void gitApplyLatestStash(WindowState& window)
{
    runOnRepository(window, QStringLiteral("Applied the latest stash"), [&window](GitActions& git, const FilePath& root, auto done) {
        git.applyLatestStash(root, &window, std::move(done));
    });
}

void gitFetch(WindowState& window)
{
    runOnRepository(window, QStringLiteral("Fetched"), [&window](GitActions& git, const FilePath& root, auto done) {
        git.fetch(root, &window, std::move(done));
    });
}

void gitPull(WindowState& window)
{
    runOnRepository(window, QStringLiteral("Pulled"), [&window](GitActions& git, const FilePath& root, auto done) {
        // Both sides moved: the toast offers Rebase and Merge, and pulls again with the one chosen.
        git.pull(root, PullMode::fastForwardOnly, &window, [&window, root, done](const GitOutcome& outcome) {
            if (!outcome.needsPullChoice) {
                done(outcome);
                return;
            }
            QPointer<WindowState> target(&window);
            window.requestChoice(outcome.text(), {QStringLiteral("Rebase"), QStringLiteral("Merge")}, [target, root, done](int choice) {
                Git* shared = services().git;
                if (!target || !shared)
                    return;
                GitActions(*shared).pull(root, choice == 0 ? PullMode::rebase : PullMode::merge, target, done);
            });
        });
    });
}

void gitPush(WindowState& window)
{
    runOnRepository(window, QStringLiteral("Pushed"), [&window](GitActions& git, const FilePath& root, auto done) {
        git.push(root, &window, std::move(done));
    });
}

} // namespace orwick::actions
