#include "ui/preview/PreviewPanel.h"

#include "ui/notes/NoteEditor.h"
#include "ui/preview/PreviewFollower.h"
#include "ui/preview/PreviewLoad.h"
#include "ui/preview/PreviewView.h"

#include <QPlainTextEdit>
#include <QPointer>
#include <QVBoxLayout>
#include <memory>

namespace orwick {

PreviewPanel::PreviewPanel(WindowState* window, QWidget* parent) : QFrame(parent), m_window(window)
{
    setFrameShape(QFrame::NoFrame);
    setMinimumWidth(200);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_view = new PreviewView(this);
    layout->addWidget(m_view);
    m_follower = new PreviewFollower(window, m_view, this);
    connect(m_view, &PreviewView::taskToggleRequested, this, &PreviewPanel::taskToggleRequested);
    connect(window, &WindowState::documentModeChanged, this, &PreviewPanel::followEditing);
}

QWidget* PreviewPanel::focusTarget() const
{
    return m_editor ? static_cast<QWidget*>(m_editor->textEdit()) : m_view->focusTarget();
}

bool PreviewPanel::readyToClose(std::function<void()> whenSaved)
{
    QList<QPointer<NoteEditor>> unsaved;
    for (NoteEditor* editor : findChildren<NoteEditor*>(Qt::FindDirectChildrenOnly))
        if (editor->holdsUnsaved())
            unsaved.append(editor);
    if (unsaved.isEmpty())
        return true;
    // Answered once every editor's save has ended; a refusal answers nothing.
    struct Waiting {
        qsizetype left;
        bool refused = false;
        std::function<void()> whenSaved;
    };
    auto waiting = std::make_shared<Waiting>(Waiting{unsaved.size(), false, std::move(whenSaved)});
    for (const QPointer<NoteEditor>& editor : unsaved) {
        if (!editor) { // went while an earlier one answered at once
            --waiting->left;
            continue;
        }
        editor->saveBeforeLeaving([waiting](bool saved) {
            waiting->refused = waiting->refused || !saved;
            if (--waiting->left == 0 && !waiting->refused)
                waiting->whenSaved();
        });
    }
    return false;
}

void PreviewPanel::updateActive() { m_follower->setActive(isVisible() && !m_editor); }

void PreviewPanel::followEditing()
{
    const FilePath wanted = m_window->editedFile();
    if (m_editor && m_editor->file() == wanted) {
        m_editor->setMode(m_window->documentMode());
        return;
    }
    if (m_editor)
        leave(std::exchange(m_editor, nullptr));
    if (!wanted.isEmpty()) {
        auto* editor = new NoteEditor(m_window, wanted, this);
        if (const Status opened = editor->open(); !opened) {
            delete editor;
            Q_EMIT m_window->messageRequested(opened.error());
            m_window->stopEditing();
            return;
        }
        m_editor = editor;
        layout()->addWidget(editor);
        m_view->hide();
        editor->show();
    } else {
        m_view->show();
    }
    updateActive();
}

// The editor goes once what it holds is saved; a refused save brings it back to say why.
void PreviewPanel::leave(NoteEditor* editor)
{
    editor->hide();
    QPointer<NoteEditor> leaving(editor);
    const DocumentMode mode = m_window->documentMode() == DocumentMode::preview ? DocumentMode::split : m_window->documentMode();
    editor->saveBeforeLeaving([this, leaving, mode](bool saved) {
        if (!leaving)
            return;
        if (saved) {
            leaving->deleteLater();
            return;
        }
        if (m_editor) // another file opened meanwhile: it makes way
            leave(std::exchange(m_editor, nullptr));
        m_editor = leaving;
        m_view->hide();
        leaving->show();
        updateActive();
        m_window->startEditing(leaving->file(), mode);
        leaving->textEdit()->setFocus(Qt::OtherFocusReason);
    });
}

void PreviewPanel::updateBox()
{
    // Pictures are decoded for the panel's size in device pixels, each side rounded up so that
    // small changes of size don't call for a new decode. Not for a square of its longer side: a
    // photo in a tall, narrow column would decode at twice or three times the size it is shown
    // (a 6-megapixel JPEG: 25 ms at 1024 wide, 19 ms at 512).
    const qreal ratio = devicePixelRatioF();
    auto roundedUp = [](qreal side) { return (int(side) + 255) / 256 * 256; };
    m_follower->load()->setBox(QSize(roundedUp(width() * ratio), roundedUp(height() * ratio)), std::max(120, width() - 48));
}

void PreviewPanel::showEvent(QShowEvent* event)
{
    QFrame::showEvent(event);
    updateBox();
    updateActive();
}

void PreviewPanel::hideEvent(QHideEvent* event)
{
    QFrame::hideEvent(event);
    updateActive();
}

void PreviewPanel::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    updateBox();
}

} // namespace orwick
