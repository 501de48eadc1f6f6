// A caret move redraws the rows whose marks changed (the caret's old and new rows), not the
// whole list: a screenful of rows laid out again on every key cost the window milliseconds per
// frame. A change of many rows' marks (Select All) still redraws all of them.

#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QPaintEvent>

using namespace orwick;

namespace {

// The region of each paint of a widget, united, from when it is watched.
class PaintedRegion : public QObject {
public:
    explicit PaintedRegion(QWidget* watched) { watched->installEventFilter(this); }
    QRegion region;
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            region += static_cast<QPaintEvent*>(event)->region();
            ++paints;
        }
        return false;
    }
};

struct CaretRedrawTest : test::WindowTest {
    QAbstractItemView* list = nullptr;
    int rowHeight = 0;

    void openManyFiles()
    {
        for (int i = 0; i < 60; ++i)
            tree.file(QStringLiteral("file-%1.txt").arg(i, 2, 10, QLatin1Char('0')), "text");
        open(tree.root());
        pane()->chooseViewMode(ViewMode::list);
        QApplication::processEvents();
        list = qobject_cast<QAbstractItemView*>(window->activePaneWidget()->focusTarget());
        ASSERT_NE(list, nullptr);
        list->setFocus();
        press(Qt::Key_Down);
        ASSERT_TRUE(pane()->cursor().has_value());
        QApplication::processEvents();
        rowHeight = list->visualRect(list->model()->index(0, 0)).height();
        ASSERT_GT(rowHeight, 0);
        ASSERT_GT(list->viewport()->height(), 8 * rowHeight) << "the list shows a screenful of rows";
    }
};

} // namespace

TEST_F(CaretRedrawTest, MovingTheCaretRedrawsItsOldAndNewRowsOnly)
{
    openManyFiles();
    PaintedRegion painted(list->viewport());
    const int before = pane()->row(*pane()->cursor());
    press(Qt::Key_Down);
    ASSERT_EQ(pane()->row(*pane()->cursor()), before + 1);
    ASSERT_TRUE(test::waitUntil([&] { return painted.paints > 0; }));
    const QRect drawn = painted.region.boundingRect();
    EXPECT_LE(drawn.height(), 2 * rowHeight) << "drawn: " << drawn.height() << " px, a row " << rowHeight << " px";
    // Both rows: the one the caret left and the one it reached.
    const QRect left = list->visualRect(list->model()->index(before, 0));
    const QRect reached = list->visualRect(list->model()->index(before + 1, 0));
    EXPECT_TRUE(painted.region.contains(left.center())) << "the row the caret left keeps its old marks";
    EXPECT_TRUE(painted.region.contains(reached.center()));
}

TEST_F(CaretRedrawTest, SelectingEverythingRedrawsTheWholeList)
{
    openManyFiles();
    PaintedRegion painted(list->viewport());
    pane()->selectAll();
    ASSERT_GT(pane()->selection().size(), 32);
    ASSERT_TRUE(test::waitUntil([&] { return painted.paints > 0; }));
    EXPECT_GE(painted.region.boundingRect().height(), list->viewport()->height() - rowHeight);
}
