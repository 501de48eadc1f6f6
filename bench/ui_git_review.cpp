// Opening the review panel on a big repository: the time from opening the panel to its list of
// changed files on screen (the end of the list's first paint that shows them), and from there to
// the first file's diff, against `git status` run the way Orwick runs it (same arguments, same
// environment) on the same repository in the same run. Each opening starts from a fresh Git (no
// status kept), as the first opening in a session. Targets: the list within 1.2 × git status; the
// first diff within 50 ms after the list.
//   bench_ui_git_review REPOSITORY   (needs a display; bench/git-review.sh runs it under Xvfb)

#include "UiBenchTiming.h"

#include "git/Git.h"
#include "git/GitRunner.h"
#include "state/ViewPreferences.h"
#include "state/WindowState.h"
#include "ui/git/DiffView.h"
#include "ui/git/GitReviewPanel.h"
#include "ui/git/ReviewFileList.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <numeric>
#include <cstdio>

using namespace orwick;

namespace {

// Notes the first paint of `widget` once `ready` holds; `done` is read after the event loop
// returns, so the paint has ended by then.
class PaintWatch : public QObject {
public:
    PaintWatch(QWidget* widget, std::function<bool()> ready) : m_ready(std::move(ready)) { widget->installEventFilter(this); }
    bool done = false;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && m_ready())
            done = true;
        return false;
    }

private:
    std::function<bool()> m_ready;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc < 2 || !gitExecutable()) {
        std::fprintf(stderr, "usage: bench_ui_git_review REPOSITORY (with git on PATH)\n");
        return 2;
    }
    const FilePath root = FilePath::fromText(QString::fromLocal8Bit(argv[1]));
    constexpr int kRuns = 21; // the first warms the caches and isn't counted

    ViewPreferences preferences;
    WindowState state(root, &preferences);
    QMainWindow window;
    window.setCentralWidget(new QWidget(&window));
    window.resize(1400, 900);
    window.show();
    waitFor([] { return false; }, 200);

    std::vector<double> statusTimes, listTimes, diffTimes, builtTimes, statusInTimes, rowsTimes;
    int files = 0;
    for (int run = 0; run < kRuns; ++run) {
        // git status as Orwick runs it, just before each opening: both see the same machine.
        QElapsedTimer statusClock;
        statusClock.start();
        const GitOutput reference = runCapturingErrors(
            *gitExecutable(), {"status", "--porcelain=v1", "-z", "-b", "--ignored"}, root);
        if (reference.status != 0) {
            std::fprintf(stderr, "git status failed: %s\n", qPrintable(reference.errors));
            return 1;
        }
        if (run > 0)
            statusTimes.push_back(double(statusClock.nsecsElapsed()) / 1e6);
        waitFor([] { return false; }, 50);

        Git git(gitExecutable(), nullptr);
        QElapsedTimer clock;
        clock.start();
        double statusAt = 0;
        QObject::connect(&git, &Git::statusChanged, &git, [&] {
            if (statusAt == 0)
                statusAt = double(clock.nsecsElapsed()) / 1e6;
        });
        auto* panel = new GitReviewPanel(state, git, root, &window);
        const double builtAt = double(clock.nsecsElapsed()) / 1e6;
        double rowsAt = 0;
        PaintWatch painted(panel->fileList()->viewport(), [&] { return !panel->fileList()->rows().isEmpty(); });
        if (!waitIdly([&] {
                if (rowsAt == 0 && !panel->fileList()->rows().isEmpty())
                    rowsAt = double(clock.nsecsElapsed()) / 1e6;
                return painted.done;
            })) {
            std::fprintf(stderr, "the list did not come\n");
            return 1;
        }
        const double listAt = double(clock.nsecsElapsed()) / 1e6; // the first paint with rows has ended
        if (!waitIdly([&] { return panel->diffView()->rowCount() > 0; })) {
            std::fprintf(stderr, "the first diff did not come\n");
            return 1;
        }
        const double diffAt = double(clock.nsecsElapsed()) / 1e6;
        files = int(panel->fileList()->rows().size());
        if (run > 0) {
            listTimes.push_back(listAt);
            diffTimes.push_back(diffAt - listAt);
            builtTimes.push_back(builtAt);
            statusInTimes.push_back(statusAt);
            rowsTimes.push_back(rowsAt);
        }
        panel->closeSheet();
        waitFor([] { return false; }, 100);
    }

    const double status = median(statusTimes), list = median(listTimes), diff = median(diffTimes);
    std::vector<double> overTimes;
    for (size_t i = 0; i < listTimes.size(); ++i)
        overTimes.push_back(listTimes[i] - statusTimes[i]);
    std::printf("opening the review panel on %s (%d rows; median of %d):\n", qPrintable(root.text()), files, kRuns - 1);
    std::printf("  git status (Orwick's way)   %7.1f ms   (mean %.1f ms)\n", status, mean(statusTimes));
    std::printf("  the list on screen          %7.1f ms   (mean %.1f ms)   list / git status = %.2f, means %.2f (target <= 1.20)\n",
                list, mean(listTimes), list / status, mean(listTimes) / mean(statusTimes));
    std::printf("  the list's time over git's  %7.1f ms   (median of each opening's difference)\n", median(overTimes));
    std::printf("  the first diff after it     %7.1f ms   (mean %.1f ms; target <= 50 ms)\n", diff, mean(diffTimes));
    std::printf("  where the list's time goes: panel built %.1f ms, status read in (Git::statusChanged) %.1f ms, rows in the list %.1f ms,"
                " first paint with them ended %.1f ms\n",
                median(builtTimes), median(statusInTimes), median(rowsTimes), list);
    return list <= 1.2 * status && diff <= 50 ? 0 : 1;
}
