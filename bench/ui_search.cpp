// The first search results in the window: a pane below a home-like tree is given a search text;
// from the moment the search starts (after the typing pause) to the first rows painted, and to
// the whole result. Target: first rows within 100 ms of the pause. Each text runs RUNS times;
// the name search walks names only, the other also reads text files for the text.
//   bench_ui_search TREE [RUNS]   (needs a display; bench/ui-search.sh runs it under Xvfb)

#include "UiBenchTiming.h"

#include "state/PaneState.h"
#include "state/ViewPreferences.h"
#include "ui/pane/PaneWidget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace orwick;

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_ui_search TREE [RUNS]\n");
        return 2;
    }
    const FilePath tree = FilePath::fromText(QString::fromLocal8Bit(argv[1]));
    const int runs = argc > 2 ? std::max(1, atoi(argv[2])) : 10;

    ViewPreferences preferences;
    PaneState pane(tree, &preferences);
    PaneWidget widget(&pane);
    widget.resize(1400, 900);
    widget.show();
    if (!waitFor([&] { return !pane.isLoading(); })) {
        std::printf("the tree did not load\n");
        return 1;
    }

    QElapsedTimer clock;
    qint64 started = -1, firstShown = -1;
    QObject::connect(&pane, &PaneState::searchStarted, [&] { started = clock.nsecsElapsed(); });
    QObject::connect(&pane, &PaneState::itemsChanged, [&] {
        if (started >= 0 && firstShown < 0 && !pane.items().isEmpty()) {
            widget.repaint(); // the rows are painted before the time is taken
            firstShown = clock.nsecsElapsed();
        }
    });

    bool allWithin = true;
    for (const char* text : {"budget", "quokka"}) {
        std::vector<double> first, whole;
        int found = 0;
        for (int run = 0; run < runs; ++run) {
            pane.endSearch();
            waitFor([&] { return !pane.isLoading(); });
            pane.focusSearch();
            pane.setSearchScope(SearchQuery::Scope::below);
            clock.start();
            started = firstShown = -1;
            pane.setSearchText(QString::fromLatin1(text));
            if (!waitFor([&] { return started >= 0 && firstShown >= 0 && !pane.isLoading(); })) {
                std::printf("\"%s\": no results\n", text);
                return 1;
            }
            first.push_back(double(firstShown - started) / 1e6);
            whole.push_back(double(clock.nsecsElapsed() - started) / 1e6);
            found = int(pane.items().size());
        }
        const double firstMs = median(first);
        allWithin = allWithin && firstMs <= 100;
        std::printf("\"%s\" (%d found): first rows painted %.1f ms after the search started (median of %d, worst %.1f), "
                    "whole result %.1f ms  target <= 100 ms\n",
                    text, found, firstMs, runs, *std::max_element(first.begin(), first.end()), median(whole));
    }
    return allWithin ? 0 : 1;
}
