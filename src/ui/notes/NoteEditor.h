#pragma once
// NoteEditor: a text file's source in a plain-text editor — Markdown coloured by the core's
// MarkdownSyntax — with, for a note, the rendered note beside it following each pause in the
// typing (the window's documentMode: `split`, or `edit` for the source alone; the header's
// button or Ctrl+Shift+E switches). It holds one
// EditSession and draws what the session says; the decisions are the session's.
//
// Saving: Ctrl+S saves through the engine (one undo step "Save" on the window's stack, the
// toast "Saved “note.md”" with Undo). Leaving (Ctrl+E, Esc, F3, closing or quitting the window)
// saves what the editor holds first, so nothing typed is ever dropped; a save that is refused
// (another program changed the file, it is read-only) keeps the editor open with the reason.
// The window asks holdsUnsaved() before it closes (MainWindow::closeEvent, through the preview
// panel) and waits for saveBeforeLeaving(): the close is tried again only once the save ended.
// Inside the editor Ctrl+Z undoes typing; the window's undo (outside it) undoes a save.
//
// Another program's change: with nothing typed since the last save the editor takes the new
// text at once (its own undo still has the old); otherwise the bar above the text says
// "“note.md” was changed by another program." with Reload (take theirs; Ctrl+Z in the editor
// brings mine back) and Keep Mine (save mine over theirs; the window's undo brings theirs back).
// A file that isn't UTF-8 or can't be saved byte for byte is shown read-only, with the sentence
// that says why. Lives on the GUI thread.

#include "editing/EditSession.h"
#include "state/WindowState.h"

#include <QWidget>
#include <functional>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QSplitter;

namespace orwick {

class LivePreview;
class PreviewView;

class NoteEditor : public QWidget {
    Q_OBJECT
public:
    NoteEditor(WindowState* window, const FilePath& file, QWidget* parent = nullptr);
    ~NoteEditor() override;

    // Reads the file into the editor; the sentence when it can't be edited at all.
    [[nodiscard]] Status open();
    const FilePath& file() const { return m_session->file(); }
    EditSession* session() const { return m_session; }
    void setMode(DocumentMode mode);

    bool isModified() const;
    // Whether closing now would drop text: typed and not yet on disk, or a save still running.
    bool holdsUnsaved() const;
    // Ctrl+S.
    void save();
    // Saves what the editor holds when it differs from the disk, then calls `done(true)`;
    // `done(false)` when that save was refused (the editor shows why and stays).
    void saveBeforeLeaving(std::function<void(bool saved)> done);

    QPlainTextEdit* textEdit() const { return m_text; }
    PreviewView* livePreview() const { return m_preview; }
    LivePreview* liveRender() const { return m_live; }
    // The bar of another program's change, or of a refused save.
    QWidget* offerBar() const { return m_offer; }
    QString offerText() const;
    QString noteText() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString currentText() const;
    void replaceText(const QString& text);
    void diskChanged();
    void saveFinished(bool ok);
    void offer(const QString& sentence, bool changed);
    void reload();
    void keepMine();
    void updateHeader();
    void toggleTask(int line);

    WindowState* m_window;
    EditSession* m_session;
    QLabel* m_title;
    QLabel* m_note;
    QPushButton* m_previewButton;
    QWidget* m_offer;
    QLabel* m_offerText;
    QPushButton* m_reload;
    QPushButton* m_keepMine;
    QSplitter* m_split;
    QPlainTextEdit* m_text;
    PreviewView* m_preview;
    LivePreview* m_live;
    bool m_isNote;
    QString m_savingText; // the text a running save writes
    QList<std::function<void(bool)>> m_afterSave;
    QString m_reloadedNote; // said once after taking another program's text
};

} // namespace orwick
