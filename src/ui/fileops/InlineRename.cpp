#include "ui/fileops/InlineRename.h"

#include "ui/views/FileListModel.h"

#include <QAbstractItemView>
#include <QAbstractProxyModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>

namespace orwick {

namespace {

const FileListModel* paneModelOf(const QAbstractItemModel* model)
{
    while (const auto* proxy = qobject_cast<const QAbstractProxyModel*>(model))
        model = proxy->sourceModel();
    return qobject_cast<const FileListModel*>(model);
}

// The editor: commits once on Return, cancels on Esc, keeps the name when the keyboard goes
// elsewhere.
class RenameEditor : public QLineEdit {
public:
    RenameEditor(QAbstractItemView* view, FilePath url, NameArea nameArea, std::function<void(const FilePath&, const QString&)> commit)
        : QLineEdit(view->viewport()), m_view(view), m_url(std::move(url)), m_nameArea(std::move(nameArea)), m_commit(std::move(commit))
    {
        setAttribute(Qt::WA_DeleteOnClose);
        // A reload lays the rows out again: the editor moves with its row once they are placed.
        auto follow = [this] { QTimer::singleShot(0, this, [this] { place(); }); };
        connect(view->model(), &QAbstractItemModel::modelReset, this, follow);
        connect(view->model(), &QAbstractItemModel::layoutChanged, this, follow);
    }

    // Puts the editor over its row's name; false when the row isn't shown.
    bool place()
    {
        const QModelIndex index = indexOfItem();
        if (!index.isValid() || !m_view)
            return false;
        m_view->scrollTo(index);
        setGeometry(m_nameArea(m_view->visualRect(index)));
        return true;
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
        // A menu or a popup opening over the editor does not end it; going elsewhere does.
        if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason)
            return;
        finish(true); // like other file managers: clicking away keeps the typed name
    }

private:
    QModelIndex indexOfItem() const
    {
        if (!m_view || !m_view->model())
            return {};
        const FileListModel* model = paneModelOf(m_view->model());
        const int row = model && model->pane() ? model->pane()->row(m_url) : -1;
        if (row < 0 || row >= m_view->model()->rowCount())
            return {};
        return m_view->model()->index(row, FileListModel::NameColumn);
    }

    void finish(bool commit)
    {
        if (m_done)
            return;
        m_done = true;
        const QString name = text();
        auto callback = std::move(m_commit);
        const bool hadFocus = hasFocus();
        close();
        if (m_view && hadFocus)
            m_view->setFocus(Qt::OtherFocusReason);
        if (commit && callback && name != m_url.fileName())
            callback(m_url, name);
    }

    QPointer<QAbstractItemView> m_view;
    FilePath m_url;
    NameArea m_nameArea;
    std::function<void(const FilePath&, const QString&)> m_commit;
    bool m_done = false;
};

} // namespace

QWidget* startInlineRename(QAbstractItemView* view, const FilePath& url, NameArea nameArea,
                           std::function<void(const FilePath&, const QString&)> commit)
{
    auto* editor = new RenameEditor(view, url, std::move(nameArea), std::move(commit));
    if (!editor->place()) {
        delete editor;
        return nullptr;
    }
    const QString name = url.fileName();
    editor->setText(name);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    editor->setSelection(0, dot > 0 ? int(dot) : int(name.size()));
    editor->show();
    editor->setFocus(Qt::OtherFocusReason);
    return editor;
}

} // namespace orwick
