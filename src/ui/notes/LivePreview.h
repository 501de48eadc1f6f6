#pragma once
// LivePreview: the rendered note beside the editor, following the editor's text. Each change
// waits ~150 ms for the next (typing renders once per pause), then the text is rendered off the
// GUI thread through the preview's own Markdown path (prepareNoteText); a newer render cancels
// the older and a result that isn't the newest is dropped. The view keeps its scroll position
// from one render to the next. Lives on the GUI thread.

#include "async/Background.h"
#include "base/FilePath.h"

#include <QObject>
#include <QTimer>

namespace orwick {

class PreviewView;

class LivePreview : public QObject {
    Q_OBJECT
public:
    LivePreview(const FilePath& note, PreviewView* view, QObject* parent = nullptr);

    static constexpr int kDelayMs = 150;
    // Renders `text` after the delay (at once with `now`).
    void setText(const QString& text, bool now = false);
    bool isRendering() const { return m_delay.isActive() || m_task.isRunning(); }

Q_SIGNALS:
    // A render reached the view.
    void shown();

private:
    void render();

    FilePath m_note;
    PreviewView* m_view;
    QString m_text;
    QTimer m_delay;
    TaskSlot m_task;
};

} // namespace orwick
