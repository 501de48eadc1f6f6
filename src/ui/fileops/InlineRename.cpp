#include "ui/fileops/InlineRename.h"

#include "ui/views/FileListModel.h"
#include "ui/views/FileListView.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace orwick {

namespace {

// The editor: commits once on Return, cancels on Esc or when it loses the keyboard.
class RenameEditor : public QLineEdit {
public:
    RenameEditor(QWidget* parent, FilePath url, std::function<void(const FilePath&, const QString&)> commit)
        : QLineEdit(parent), m_url(std::move(url)), m_commit(std::move(commit))
    {
        setAttribute(Qt::WA_DeleteOnClose);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
            finish(true);
            return;
        }
        if (event->key() == Qt::Key_Escape) {
            finish(false);
            return;
        }
        QLineEdit::keyPressEvent(event);
    }
    void focusOutEvent(QFocusEvent* event) override
    {
        QLineEdit::focusOutEvent(event);
        finish(true); // like other file managers: clicking away keeps the typed name
    }

private:
    void finish(bool commit)
    {
        if (m_done)
            return;
        m_done = true;
        QWidget* view = parentWidget() ? parentWidget()->parentWidget() : nullptr;
        const QString name = text();
        auto callback = std::move(m_commit);
        close();
        if (view)
            view->setFocus(Qt::OtherFocusReason);
        if (commit && callback && name != m_url.fileName())
            callback(m_url, name);
    }

    FilePath m_url;
    std::function<void(const FilePath&, const QString&)> m_commit;
    bool m_done = false;
};

} // namespace

QWidget* startInlineRename(FileListView* view, const FilePath& url, std::function<void(const FilePath&, const QString&)> commit)
{
    auto* model = qobject_cast<FileListModel*>(view->model());
    const int row = model ? model->pane()->row(url) : -1;
    if (row < 0)
        return nullptr;
    const QModelIndex index = model->index(row, 0);
    view->scrollTo(index);
    auto* editor = new RenameEditor(view->viewport(), url, std::move(commit));
    const QRect rect = view->visualRect(index);
    editor->setGeometry(rect.adjusted(20, 0, 0, 0));
    const QString name = url.fileName();
    editor->setText(name);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    editor->setSelection(0, dot > 0 ? int(dot) : int(name.size()));
    editor->show();
    editor->setFocus(Qt::OtherFocusReason);
    return editor;
}

} // namespace orwick
