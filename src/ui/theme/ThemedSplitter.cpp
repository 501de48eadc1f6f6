#include "ui/theme/ThemedSplitter.h"

#include "ui/theme/Theme.h"

#include <QPainter>

namespace orwick {

namespace {

class LineHandle : public QSplitterHandle {
public:
    using QSplitterHandle::QSplitterHandle;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const QRect area = rect();
        if (orientation() == Qt::Horizontal)
            painter.fillRect(QRect(area.center().x(), area.top(), 1, area.height()), theme::separator());
        else
            painter.fillRect(QRect(area.left(), area.center().y(), area.width(), 1), theme::separator());
    }
};

} // namespace

ThemedSplitter::ThemedSplitter(Qt::Orientation orientation, QWidget* parent) : QSplitter(orientation, parent) {}

QSplitterHandle* ThemedSplitter::createHandle() { return new LineHandle(orientation(), this); }

} // namespace orwick
