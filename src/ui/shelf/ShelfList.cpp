#include "ui/shelf/ShelfList.h"

#include "async/TimeLimited.h"
#include "commands/ShelfActions.h"
#include "fileops/FileClipboard.h"
#include "fileops/OperationTexts.h"
#include "files/FileCategory.h"
#include "places/Shelf.h"
#include "platform/DirectoryReader.h"
#include "state/WindowState.h"
#include "ui/theme/Theme.h"
#include "ui/views/CategoryIcons.h"
#include "ui/views/ViewDragDrop.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace orwick {

namespace {

constexpr int kPathRole = Qt::UserRole + 1;
// How long a look at the shelf's items may take before its rows are left plain.
constexpr int kLookLimitMs = 2000;

FilePath pathOf(const QListWidgetItem* row) { return row ? row->data(kPathRole).value<FilePath>() : FilePath(); }

} // namespace

ShelfList::ShelfList(WindowState* window, QWidget* parent) : QFrame(parent, Qt::Popup), m_window(window)
{
    setObjectName(QStringLiteral("shelfList"));
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameShape(QFrame::StyledPanel);
    QPalette colors = palette();
    colors.setColor(QPalette::Window, theme::elevated());
    colors.setColor(QPalette::Base, theme::elevated());
    // The rows' labels keep their own colours, so a selected row gets the soft selection tint.
    colors.setColor(QPalette::Highlight, theme::selection());
    colors.setColor(QPalette::HighlightedText, theme::text());
    setPalette(colors);
    setAutoFillBackground(true);

    m_title = new QLabel(this);
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_rows = new QListWidget(this);
    m_rows->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_rows->setFrameShape(QFrame::NoFrame);
    m_rows->viewport()->setAcceptDrops(true);
    m_rows->viewport()->installEventFilter(this);
    m_rows->installEventFilter(this);
    m_empty = new QLabel(QStringLiteral("Nothing on the shelf. Select items and press %1 to gather them here, or drop them here.")
                             .arg(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_S).toString(QKeySequence::NativeText)),
                         this);
    m_empty->setWordWrap(true);
    QPalette dim = m_empty->palette();
    dim.setColor(QPalette::WindowText, theme::dimText());
    m_empty->setPalette(dim);

    m_copy = new QPushButton(QStringLiteral("Copy Here"), this);
    m_move = new QPushButton(QStringLiteral("Move Here"), this);
    m_clear = new QPushButton(QStringLiteral("Clear"), this);
    connect(m_copy, &QPushButton::clicked, this, [this] {
        close();
        shelfActions::land(*m_window, FileOperations::Mode::copy);
    });
    connect(m_move, &QPushButton::clicked, this, [this] {
        close();
        shelfActions::land(*m_window, FileOperations::Mode::move);
    });
    connect(m_clear, &QPushButton::clicked, this, [this] { shelfActions::clear(*m_window); });

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_copy);
    buttons->addWidget(m_move);
    buttons->addStretch();
    buttons->addWidget(m_clear);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 8, 10, 8);
    layout->addWidget(m_title);
    layout->addWidget(m_rows, 1);
    layout->addWidget(m_empty);
    layout->addLayout(buttons);
    setMinimumWidth(360);

    connect(&Shelf::shared(), &Shelf::itemsChanged, this, &ShelfList::fill);
    fill();
}

QList<FilePath> ShelfList::shownItems() const
{
    QList<FilePath> items;
    for (int i = 0; i < m_rows->count(); ++i)
        items.append(pathOf(m_rows->item(i)));
    return items;
}

void ShelfList::fill()
{
    const QList<FilePath>& items = Shelf::shared().items();
    const FilePath current = pathOf(m_rows->currentItem());
    m_rows->clear();
    for (const FilePath& item : items) {
        auto* row = new QListWidgetItem(m_rows);
        row->setData(kPathRole, QVariant::fromValue(item));
        row->setToolTip(item.text());
        m_rows->setItemWidget(row, rowWidget(item, m_found.value(item)));
        row->setSizeHint(QSize(0, std::max(theme::rowHeight(), 28)));
        if (item == current)
            m_rows->setCurrentItem(row);
    }
    if (!m_rows->currentItem() && m_rows->count() > 0)
        m_rows->setCurrentRow(0);
    m_title->setText(items.isEmpty() ? QStringLiteral("Shelf") : QStringLiteral("Shelf · %1").arg(itemCount(items.size())));
    m_rows->setVisible(!items.isEmpty());
    m_empty->setVisible(items.isEmpty());
    m_copy->setEnabled(shelfActions::canLand(*m_window));
    m_move->setEnabled(shelfActions::canLand(*m_window));
    m_clear->setEnabled(shelfActions::canClear(*m_window));
    // As tall as the rows need, up to a dozen; the list scrolls beyond.
    const int rowsShown = std::clamp<int>(int(items.size()), 1, 12);
    m_rows->setFixedHeight(rowsShown * std::max(theme::rowHeight(), 28) + 2 * m_rows->frameWidth() + 2);
    adjustSize();
    lookAtItems();
}

void ShelfList::lookAtItems()
{
    QList<FilePath> unseen;
    for (const FilePath& item : Shelf::shared().items())
        if (!m_found.contains(item))
            unseen.append(item);
    if (unseen.isEmpty() || m_looking)
        return;
    m_looking = true;
    runWithTimeLimit(
        this, kLookLimitMs,
        [unseen] {
            QList<std::pair<FilePath, Found>> found;
            for (const FilePath& item : unseen) {
                const auto stat = statPath(item, FollowLinks::yes);
                found.append({item, {!stat && !statPath(item, FollowLinks::no), stat && stat->isDirectory()}});
            }
            return found;
        },
        [this](const QList<std::pair<FilePath, Found>>& found) {
            m_looking = false;
            for (const auto& [item, what] : found)
                m_found.insert(item, what);
            fill(); // and a look at items shelved meanwhile
        },
        [] {}); // still no answer: those rows stay plain, and no other look starts while it hangs
}

QWidget* ShelfList::rowWidget(const FilePath& item, const Found& found)
{
    const bool gone = found.gone;
    const bool isFolder = found.isFolder;

    auto* widget = new QWidget;
    auto* icon = new QLabel(widget);
    icon->setPixmap(categoryIcon(categorize(item, isFolder, false)).pixmap(16, 16, gone ? QIcon::Disabled : QIcon::Normal));
    auto* name = new QLabel(widget);
    // The folder's name is enough beside the item's; the whole path is the row's tooltip.
    const QString where = item.parent().isRoot() ? QStringLiteral("/") : item.parent().fileName();
    name->setText(QStringLiteral("%1  <span style=\"color:%2\">%3</span>")
                      .arg(item.fileName().toHtmlEscaped(), (gone ? theme::faintText() : theme::dimText()).name(),
                           gone ? QStringLiteral("is gone") : QStringLiteral("in ") + where.toHtmlEscaped()));
    name->setTextFormat(Qt::RichText);
    name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a long name is cut, not widening the list
    auto* remove = new QToolButton(widget);
    remove->setText(QStringLiteral("×"));
    remove->setAutoRaise(true);
    remove->setToolTip(QStringLiteral("Take off the shelf"));
    remove->setAccessibleName(QStringLiteral("Take %1 off the shelf").arg(item.fileName()));
    remove->setFocusPolicy(Qt::NoFocus); // Delete on the row does the same by keyboard
    connect(remove, &QToolButton::clicked, this, [item] { Shelf::shared().remove({item}); });
    // The row's labels let the pointer through, so the list selects and drags as usual.
    icon->setAttribute(Qt::WA_TransparentForMouseEvents);
    name->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* layout = new QHBoxLayout(widget);
    layout->setContentsMargins(6, 0, 2, 0);
    layout->addWidget(icon);
    layout->addWidget(name, 1);
    layout->addWidget(remove);
    return widget;
}

bool ShelfList::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_rows && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Delete || key->key() == Qt::Key_Backspace) {
            QList<FilePath> chosen;
            for (const QListWidgetItem* row : m_rows->selectedItems())
                chosen.append(pathOf(row));
            if (chosen.isEmpty() && m_rows->currentItem())
                chosen.append(pathOf(m_rows->currentItem()));
            Shelf::shared().remove(chosen);
            return true;
        }
        return false;
    }
    if (watched != m_rows->viewport())
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        m_pressAt = static_cast<QMouseEvent*>(event)->position().toPoint();
        return false;
    case QEvent::MouseMove: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (!(mouse->buttons() & Qt::LeftButton)
            || (mouse->position().toPoint() - m_pressAt).manhattanLength() < QApplication::startDragDistance())
            return false;
        QList<FilePath> dragged;
        for (const QListWidgetItem* row : m_rows->selectedItems())
            dragged.append(pathOf(row));
        if (dragged.isEmpty())
            return false;
        auto* drag = new QDrag(this);
        drag->setMimeData(ViewDragDrop::dragData(dragged).release());
        drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction);
        return true;
    }
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto* drag = static_cast<QDropEvent*>(event);
        if (drag->source() == this || readFileClipboard(drag->mimeData()).items.isEmpty())
            return false;
        drag->setDropAction(Qt::CopyAction); // nothing leaves its place: the shelf only notes where it is
        drag->accept();
        return true;
    }
    case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(event);
        const QList<FilePath> items = readFileClipboard(drop->mimeData()).items;
        if (drop->source() == this || items.isEmpty())
            return false;
        drop->setDropAction(Qt::CopyAction);
        drop->accept();
        shelfActions::add(*m_window, items);
        return true;
    }
    default:
        return false;
    }
}

} // namespace orwick

#include "moc_ShelfList.cpp"
