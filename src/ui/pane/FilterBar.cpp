#include "ui/pane/FilterBar.h"

#include "state/PaneState.h"

#include <QKeyEvent>

namespace orwick {

FilterBar::FilterBar(PaneState* pane, QWidget* parent) : QLineEdit(parent), m_pane(pane)
{
    setPlaceholderText(QStringLiteral("Filter this folder — Ctrl+F again searches below it"));
    setClearButtonEnabled(true);
    setFrame(false);
    setVisible(false);
    connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (m_pane)
            m_pane->setFilter(text);
    });
    // The clear button changes the text without an edit.
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (m_pane && text.isEmpty() && !m_pane->filter().isEmpty())
            m_pane->setFilter(text);
    });
    connect(pane, &PaneState::arrangementOptionsChanged, this, &FilterBar::follow);
    connect(pane, &PaneState::locationChanged, this, &FilterBar::follow);
}

void FilterBar::open()
{
    if (!m_pane)
        return;
    if (!m_pane->isFiltering())
        m_pane->setFiltering(true);
    follow();
    setFocus(Qt::ShortcutFocusReason);
    selectAll();
}

void FilterBar::follow()
{
    if (!m_pane)
        return;
    const bool open = m_pane->isFiltering();
    if (text() != m_pane->filter())
        setText(m_pane->filter());
    if (open != isVisible()) {
        const bool hadFocus = hasFocus();
        setVisible(open);
        if (open)
            setFocus(Qt::ShortcutFocusReason);
        else if (hadFocus)
            Q_EMIT finished();
    }
}

bool FilterBar::event(QEvent* event)
{
    // Ctrl+F is the window's "Filter This Folder" shortcut; in the field it means search below.
    if (event->type() == QEvent::ShortcutOverride) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_F && key->modifiers() == Qt::ControlModifier) {
            event->accept();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void FilterBar::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_F:
        // Ctrl+F again: look below this folder too, with the same text.
        if (m_pane && event->modifiers() == Qt::ControlModifier) {
            const QString text = m_pane->filter();
            m_pane->focusSearch();
            m_pane->setSearchText(text);
            return;
        }
        QLineEdit::keyPressEvent(event);
        return;
    case Qt::Key_Escape:
        if (m_pane)
            m_pane->setFiltering(false); // closes and clears; follow() hides the field
        Q_EMIT finished();
        return;
    case Qt::Key_Down:
        if (m_pane)
            m_pane->moveCursorIntoRows();
        Q_EMIT finished();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
        Q_EMIT finished();
        return;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

} // namespace orwick
