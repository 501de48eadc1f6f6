#include "ui/window/RowsShown.h"

#include "state/PaneState.h"
#include "ui/pane/PaneWidget.h"
#include "ui/window/MainWindow.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWindow>
#include <memory>

namespace orwick {

namespace {

// Calls `painted` once something in `area` has been painted and its window put on screen: the end
// of the window's first update (or expose) that painted in it.
class NextPaint : public QObject {
public:
    NextPaint(QWidget* area, std::function<void()> painted)
        : QObject(area), m_area(area), m_window(area->window()), m_painted(std::move(painted))
    {
        QCoreApplication::instance()->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && watched->isWidgetType()) {
            auto* widget = static_cast<QWidget*>(watched);
            if (widget == m_area || m_area->isAncestorOf(widget)) {
                m_areaPainted = true;
                if (!m_insideUpdate) // painted on its own (a repaint() call): the window flushes it now
                    QTimer::singleShot(0, this, [this] { done(); });
            }
            return false;
        }
        const bool update = watched == m_window && event->type() == QEvent::UpdateRequest;
        const bool expose = event->type() == QEvent::Expose && m_window->windowHandle() && watched == m_window->windowHandle();
        if (m_insideUpdate || !(update || expose))
            return false;
        // The update is handed on from here, so that its end is seen: painting and flushing.
        m_insideUpdate = true;
        QCoreApplication::sendEvent(watched, event);
        m_insideUpdate = false;
        if (m_areaPainted)
            done();
        return true;
    }

private:
    void done()
    {
        if (!m_painted)
            return;
        QCoreApplication::instance()->removeEventFilter(this);
        std::exchange(m_painted, nullptr)();
        deleteLater();
    }

    QWidget* m_area;
    QWidget* m_window;
    std::function<void()> m_painted;
    bool m_areaPainted = false;
    bool m_insideUpdate = false;
};

} // namespace

void whenRowsShown(MainWindow& window, PaneState* pane, std::function<void()> shown)
{
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = QObject::connect(pane, &PaneState::itemsChanged, &window, [&window, connection, shown = std::move(shown)] {
        QObject::disconnect(*connection);
        PaneWidget* widget = window.activePaneWidget();
        new NextPaint(widget ? static_cast<QWidget*>(widget) : &window, shown);
    });
}

} // namespace orwick
