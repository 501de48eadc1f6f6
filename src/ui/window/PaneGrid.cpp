#include "ui/window/PaneGrid.h"

#include "ui/pane/PaneWidget.h"
#include "ui/theme/ThemedSplitter.h"

#include <QApplication>
#include <QEvent>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>
#include <memory>

namespace orwick {

namespace {

// Posted below the priority of Qt's own repaints, so it is handled after the paint it follows.
const QEvent::Type kMakeWaitingWidgets = QEvent::Type(QEvent::registerEventType());
constexpr int kAfterRepaints = int(Qt::LowEventPriority) - 1;
// A folder that is slow to read (a dead server) holds the other panes' widgets back no longer than this.
constexpr int kLongestWait = 300;

// The blank place of a pane whose widget is made after the first paint: the size a pane widget
// asks for (the one made, asked when the splitter lays out), so the dividers stand where they
// will stay, and the ground of an empty list.
class WaitingPlace : public QWidget {
public:
    WaitingPlace(const QWidget* likeThis, QWidget* parent) : QWidget(parent), m_like(likeThis)
    {
        setBackgroundRole(QPalette::Base);
        setAutoFillBackground(true);
    }
    QSize sizeHint() const override { return m_like ? m_like->sizeHint() : QWidget::sizeHint(); }
    QSize minimumSizeHint() const override { return m_like ? m_like->minimumSizeHint() : QWidget::minimumSizeHint(); }

private:
    QPointer<const QWidget> m_like;
};

// Whether the grid's window is on screen already (a tab shown later, a layout restored into an
// open window), rather than still to be drawn for the first time.
bool windowIsOnScreen(const QWidget* widget)
{
    const QWidget* window = widget->window();
    return window->isVisible() && window->windowHandle() && window->windowHandle()->isExposed();
}

// Shares a splitter's room equally: a pane split off gets half, as a restored grid's panes do,
// rather than what the panes' size hints would leave it.
void evenOut(QSplitter* splitter)
{
    splitter->setSizes(QList<int>(splitter->count(), 1000));
}

} // namespace

PaneGrid::PaneGrid(TabState* tab, std::function<void(PaneWidget*)> decorate, QWidget* parent)
    : QWidget(parent), m_tab(tab), m_decorate(std::move(decorate))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    connect(tab, &TabState::panesChanged, this, &PaneGrid::rebuild);
    connect(tab, &TabState::activePaneChanged, this, &PaneGrid::markActive);
    rebuild();
}

QList<PaneWidget*> PaneGrid::paneWidgets() const
{
    QList<PaneWidget*> widgets;
    for (PaneState* pane : m_tab->panes())
        if (PaneWidget* widget = m_widgets.value(pane))
            widgets << widget;
    return widgets;
}

PaneWidget* PaneGrid::widgetFor(PaneState* pane)
{
    if (QWidget* place = m_waiting.value(pane)) {
        m_waiting.remove(pane);
        auto* rows = static_cast<QSplitter*>(place->parentWidget());
        PaneWidget* widget = makeWidget(pane);
        rows->replaceWidget(rows->indexOf(place), widget); // keeps the place's size
        widget->setActive(m_tab->isSplit() && pane == m_tab->activePane());
        widget->show();
        place->deleteLater();
        return widget;
    }
    return m_widgets.value(pane);
}

PaneWidget* PaneGrid::makeWidget(PaneState* pane)
{
    auto* widget = new PaneWidget(pane, this);
    m_widgets.insert(pane, widget);
    connect(widget, &PaneWidget::activated, this, [this, pane] { m_tab->activate(pane); });
    connect(widget, &PaneWidget::messageRequested, this, &PaneGrid::messageRequested);
    if (m_decorate)
        m_decorate(widget);
    return widget;
}

void PaneGrid::rebuild()
{
    // Keep the widgets of panes that stay; take them out of the old splitters first.
    QHash<PaneState*, QPointer<PaneWidget>> kept;
    const QList<PaneState*> panes = m_tab->panes();
    for (auto it = m_widgets.begin(); it != m_widgets.end(); ++it) {
        if (!it.value())
            continue;
        if (panes.contains(it.key())) {
            it.value()->setParent(this);
            kept.insert(it.key(), it.value());
        } else {
            it.value()->deleteLater();
        }
    }
    m_widgets = kept;
    m_waiting.clear(); // their places go with the old splitters
    delete m_columns;
    // Before the window is first shown, only the active pane is made now; the others wait.
    PaneState* active = m_tab->activePane();
    const bool firstPaintWaits = !windowIsOnScreen(this);
    PaneWidget* activeWidget = m_widgets.value(active);
    if (!activeWidget)
        activeWidget = makeWidget(active);
    m_columns = new ThemedSplitter(Qt::Horizontal, this);
    m_columns->setChildrenCollapsible(false);
    m_columns->setHandleWidth(3);
    for (const auto& column : m_tab->columns()) {
        auto* rows = new ThemedSplitter(Qt::Vertical, m_columns);
        rows->setChildrenCollapsible(false);
        rows->setHandleWidth(3);
        for (PaneState* pane : column) {
            QWidget* shown = m_widgets.value(pane);
            if (!shown && firstPaintWaits)
                m_waiting.insert(pane, shown = new WaitingPlace(activeWidget, rows));
            else if (!shown)
                shown = makeWidget(pane);
            rows->addWidget(shown);
            shown->show();
        }
        evenOut(rows);
    }
    evenOut(m_columns);
    layout()->addWidget(m_columns);
    markActive();
    if (!m_waiting.isEmpty())
        makeWaitingWidgetsAfterFirstRows();
}

void PaneGrid::makeWaitingWidgetsAfterFirstRows()
{
    // Once the active pane has its rows, the event goes behind the repaint that shows them.
    PaneState* active = m_tab->activePane();
    auto post = [this] { QCoreApplication::postEvent(this, new QEvent(kMakeWaitingWidgets), kAfterRepaints); };
    if (!active->isLoading() && !active->isWaitingToBeShown()) {
        post();
        return;
    }
    auto once = std::make_shared<QMetaObject::Connection>();
    *once = connect(active, &PaneState::loadingChanged, this, [active, once, post] {
        if (active->isLoading() || active->isWaitingToBeShown())
            return;
        disconnect(*once);
        post();
    });
    QTimer::singleShot(kLongestWait, this, [this, once] {
        disconnect(*once);
        makeWaitingWidgets();
    });
}

void PaneGrid::makeWaitingWidgets()
{
    for (PaneState* pane : m_tab->panes())
        if (m_waiting.contains(pane))
            widgetFor(pane);
}

bool PaneGrid::event(QEvent* event)
{
    if (event->type() == kMakeWaitingWidgets) {
        makeWaitingWidgets();
        return true;
    }
    return QWidget::event(event);
}

void PaneGrid::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // Made before it had a window, and shown in one already on screen: nothing waits for a first paint.
    if (!m_waiting.isEmpty() && windowIsOnScreen(this))
        makeWaitingWidgets();
}

void PaneGrid::markActive()
{
    const bool split = m_tab->isSplit();
    PaneState* active = m_tab->activePane();
    PaneWidget* activeWidget = widgetFor(active); // made now if it was waiting
    for (auto it = m_widgets.begin(); it != m_widgets.end(); ++it)
        if (it.value())
            it.value()->setActive(split && it.key() == active);
    if (activeWidget && isVisible() && !activeWidget->isAncestorOf(QApplication::focusWidget()))
        activeWidget->takeFocus();
}

} // namespace orwick
