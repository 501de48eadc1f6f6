#include "ui/panels/PanelSheet.h"

#include "ui/pane/PaneWidget.h"
#include "ui/theme/Theme.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QToolButton>

namespace orwick {

namespace {
// Where the keyboard is in `window`. A sheet can open before its window is active (the welcome at
// a first start), when the application has no focus widget: then the one the window will give it to.
QWidget* keyboardIn(QWidget* window)
{
    QWidget* focus = QApplication::focusWidget();
    return focus && focus->window() == window->window() ? focus : window->window()->focusWidget();
}
} // namespace

PanelSheet::PanelSheet(const QString& title, const QString& subtitle, QWidget* window)
    : QWidget(window), m_focusBefore(keyboardIn(window))
{
    for (QWidget* w = m_focusBefore; w && !m_paneBefore; w = w->parentWidget())
        m_paneBefore = qobject_cast<PaneWidget*>(w);
    setAutoFillBackground(true);
    setFocusPolicy(Qt::StrongFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 10, 14, 8);
    layout->setSpacing(8);

    auto* titleRow = new QHBoxLayout;
    auto* titleLabel = new QLabel(title, this);
    QFont bold = titleLabel->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    titleLabel->setFont(bold);
    auto* subtitleLabel = new QLabel(subtitle, this);
    subtitleLabel->setForegroundRole(QPalette::PlaceholderText); // dim, and follows the theme
    titleRow->addWidget(titleLabel);
    titleRow->addWidget(subtitleLabel, 1);
    m_tools = new QHBoxLayout;
    titleRow->addLayout(m_tools);
    auto* close = new QToolButton(this);
    m_close = close;
    close->setText(QStringLiteral("✕"));
    close->setToolTip(QStringLiteral("Close (Esc)"));
    close->setAutoRaise(true);
    connect(close, &QToolButton::clicked, this, &PanelSheet::closeSheet);
    titleRow->addWidget(close);
    layout->addLayout(titleRow);

    m_body = new QVBoxLayout;
    layout->addLayout(m_body, 1);

    m_footer = new QLabel(this);
    m_footer->setForegroundRole(QPalette::PlaceholderText);
    m_footer->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(m_footer);

    window->installEventFilter(this);
    place();
}

// The part of the sheet that had the keyboard last (or was given it while the panel was built).
QWidget* PanelSheet::lastFocusedPart()
{
    QWidget* part = focusWidget();
    return part && isAncestorOf(part) && part->isVisibleTo(this) ? part : this;
}

void PanelSheet::bringBack()
{
    raise();
    lastFocusedPart()->setFocus(Qt::OtherFocusReason);
}

void PanelSheet::present(QWidget* focus, Qt::FocusReason reason)
{
    // Without a part named, the part the panel gave the keyboard while it was built keeps it.
    if (!focus)
        focus = lastFocusedPart();
    // The close button was made before the panel's tools; Tab meets it after them, where it stands.
    for (int i = m_tools->count() - 1; i >= 0; --i)
        if (QWidget* tool = m_tools->itemAt(i)->widget()) {
            QWidget::setTabOrder(tool, m_close);
            break;
        }
    show();
    raise();
    focus->setFocus(reason);
}

QString relativeText(const FilePath& folder, const FilePath& file)
{
    if (!folder.isAncestorOf(file))
        return file.text();
    return displayName(QByteArrayView(file.native()).sliced(folder.native().size() + (folder.isRoot() ? 0 : 1)));
}

void PanelSheet::closeOpenSheet(QWidget* window)
{
    for (PanelSheet* sheet : window->findChildren<PanelSheet*>(Qt::FindDirectChildrenOnly))
        sheet->closeSheet();
}

void PanelSheet::setFooter(const QString& text) { m_footer->setText(text); }
QString PanelSheet::footer() const { return m_footer->text(); }

void PanelSheet::closeSheet()
{
    if (m_closing)
        return;
    m_closing = true;
    stopWork();
    hide();
    Q_EMIT closed();
    deleteLater();
    if (m_focusBefore && m_focusBefore->isVisible() && !isAncestorOf(m_focusBefore))
        m_focusBefore->setFocus(Qt::OtherFocusReason);
    else if (m_paneBefore && m_paneBefore->isVisible()) // its view changed meanwhile (a setting)
        m_paneBefore->takeFocus();
    else if (auto* window = qobject_cast<QMainWindow*>(parentWidget()); window && window->centralWidget())
        window->centralWidget()->setFocus();
}

bool PanelSheet::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest))
        place();
    return QWidget::eventFilter(watched, event);
}

void PanelSheet::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        closeSheet();
        return;
    }
    QWidget::keyPressEvent(event);
}

bool PanelSheet::focusNextPrevChild(bool next)
{
    QWidget* from = QApplication::focusWidget();
    if (!from || (from != this && !isAncestorOf(from)))
        from = this;
    // The window's focus chain is a ring: following it from here meets the sheet's parts in order.
    QWidget* part = from;
    do {
        part = next ? part->nextInFocusChain() : part->previousInFocusChain();
        const bool takesTab = (part->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
        if (part != this && isAncestorOf(part) && takesTab && part->isVisible() && part->isEnabled()) {
            part->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    } while (part != from);
    return true; // nothing else here takes the keyboard: it stays where it is
}

void PanelSheet::place()
{
    // Over the content area: the central widget when there is one, else the whole window.
    auto* window = qobject_cast<QMainWindow*>(parentWidget());
    const QWidget* content = window ? window->centralWidget() : nullptr;
    setGeometry(content ? content->geometry() : parentWidget()->rect());
}

} // namespace orwick
