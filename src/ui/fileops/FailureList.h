#pragma once
// FailureList: every message behind a toast that summed several failures up ("Show All"), in a
// small window-modal sheet. The summary heads it; the messages follow one per line, selectable
// with the mouse or the keyboard and copied with Ctrl+C or the Copy All button; Esc closes it.

#include <QDialog>
#include <QStringList>

class QPlainTextEdit;

namespace orwick {

class FailureList : public QDialog {
    Q_OBJECT
public:
    FailureList(const QString& summary, const QStringList& messages, QWidget* window);

    // Opens a list over `window` that deletes itself when closed.
    static FailureList* showOver(QWidget* window, const QString& summary, const QStringList& messages);

    QStringList messages() const;

private:
    QPlainTextEdit* m_list;
};

} // namespace orwick
