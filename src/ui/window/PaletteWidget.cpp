#include "ui/window/PaletteWidget.h"

#include "commands/CommandCatalog.h"
#include "commands/ViewKeys.h"
#include "ui/sidebar/SidebarModel.h"
#include "ui/theme/Theme.h"
#include "ui/window/CommandMenus.h"
#include "ui/window/PaletteRowDelegate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

namespace orwick {

namespace {
constexpr int kWidth = 640;
constexpr int kMaxHeight = 480;
using Role = PaletteRowDelegate::Role;
} // namespace

PaletteWidget::PaletteWidget(PaletteState* state, QWidget* window) : QFrame(window), m_state(state)
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 6);
    layout->setSpacing(6);
    m_title = new QLabel(this);
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_query = new QLineEdit(this);
    QFont big = m_query->font();
    big.setPointSizeF(big.pointSizeF() * 1.2);
    m_query->setFont(big);
    m_query->setFrame(false);
    m_rows = new QListWidget(this);
    m_rows->setFrameShape(QFrame::NoFrame);
    m_rows->setFocusPolicy(Qt::NoFocus);
    m_rows->setUniformItemSizes(false);
    m_rows->setIconSize(QSize(16, 16));
    m_rows->setItemDelegate(new PaletteRowDelegate(m_rows));
    m_footer = new QLabel(this);
    m_footer->setForegroundRole(QPalette::PlaceholderText); // dim, and follows the theme
    layout->addWidget(m_title);
    layout->addWidget(m_query);
    layout->addWidget(m_rows, 1);
    layout->addWidget(m_footer);

    m_query->installEventFilter(this);
    window->installEventFilter(this);
    connect(m_query, &QLineEdit::textEdited, state, &PaletteState::setQuery);
    connect(state, &PaletteState::openChanged, this, &PaletteWidget::sync);
    connect(state, &PaletteState::queryChanged, this, [this] {
        if (m_query->text() != m_state->query())
            m_query->setText(m_state->query());
    });
    connect(state, &PaletteState::resultsChanged, this, &PaletteWidget::fillRows);
    connect(state, &PaletteState::selectionChanged, this, &PaletteWidget::showSelection);
    connect(state, &PaletteState::statusChanged, this, &PaletteWidget::fillRows);
    connect(m_rows, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        const QVariant row = item->data(Role::PaletteRowRole);
        if (row.isValid()) {
            m_state->selectRow(row.toInt());
            m_state->choose(false);
        }
    });
    hide();
}

void PaletteWidget::sync()
{
    if (!m_state->isOpen()) {
        // Focus goes back before hiding, so that hiding does not hand it to the next pane.
        if (isAncestorOf(QApplication::focusWidget())) {
            if (m_returnFocus && m_returnFocus->isVisible())
                m_returnFocus->setFocus(Qt::PopupFocusReason);
            else if (parentWidget())
                parentWidget()->setFocus();
        }
        hide();
        return;
    }
    if (!isVisible() || !isAncestorOf(QApplication::focusWidget()))
        m_returnFocus = QApplication::focusWidget();
    m_query->setText(m_state->query());
    if (m_state->mode() == PaletteMode::path)
        m_query->selectAll(); // Ctrl+L: a typed path replaces the shown one
    fillRows();
    place();
    show();
    raise();
    m_query->setFocus(Qt::PopupFocusReason);
}

void PaletteWidget::fillRows()
{
    const bool destination = m_state->mode() == PaletteMode::destination;
    m_title->setVisible(destination);
    m_title->setText(destination ? m_state->prompt() : QString());
    m_query->setPlaceholderText(destination ? QStringLiteral("Choose a folder…") : m_state->prompt());
    const QString status = m_state->status();
    m_footer->setText(status.isEmpty() ? m_state->footer() : status);
    m_footer->setVisible(!m_footer->text().isEmpty());

    m_rows->clear();
    m_listRowOf.clear();
    int paletteRow = 0;
    QPixmap empty(m_rows->iconSize().isValid() ? m_rows->iconSize() : QSize(16, 16));
    empty.fill(Qt::transparent);
    const QIcon blank(empty);
    for (const PaletteSection& section : m_state->sections()) {
        if (!section.heading.isEmpty()) {
            auto* heading = new QListWidgetItem(section.heading.toUpper(), m_rows);
            heading->setFlags(Qt::NoItemFlags);
            QFont font = m_rows->font();
            font.setPointSizeF(font.pointSizeF() * 0.85);
            font.setBold(true);
            heading->setFont(font);
            heading->setForeground(theme::dimText());
        }
        for (const PaletteItem& row : section.items) {
            // A place's row shows the sidebar's icon for it.
            const bool isPlace = row.kind == PaletteItem::Kind::command && CommandCatalog::goesToPlace(row.commandId);
            QIcon icon = isPlace ? SidebarModel::icon(row.symbol) : commandIcon(row.symbol);
            if (icon.isNull())
                icon = blank; // the titles line up whether a row has an icon or not
            auto* item = new QListWidgetItem(icon, row.title, m_rows);
            item->setData(Role::SubtitleRole, row.subtitle);
            item->setData(Role::ShortcutRole, row.shortcut);
            item->setData(Role::PaletteRowRole, paletteRow);
            item->setToolTip(row.kind == PaletteItem::Kind::command ? row.subtitle : row.path.text());
            item->setData(Role::DimmedRole, !row.isEnabled);
            m_listRowOf.append(m_rows->count() - 1);
            ++paletteRow;
        }
    }
    // Headings are shorter than rows: add up the rows shown, until the list is as tall as it gets.
    int rowsHeight = 2 * m_rows->frameWidth();
    for (int i = 0; i < m_rows->count() && rowsHeight < kMaxHeight; ++i)
        rowsHeight += m_rows->sizeHintForRow(i) + 2 * m_rows->spacing();
    m_rows->setFixedHeight(std::clamp(rowsHeight, m_rows->fontMetrics().height(), kMaxHeight));
    showSelection();
    adjustSize();
    place();
}

void PaletteWidget::showSelection()
{
    const int selected = m_state->selectedRow();
    if (selected >= 0 && selected < m_listRowOf.size()) {
        m_rows->setCurrentRow(m_listRowOf[selected]);
        m_rows->scrollToItem(m_rows->currentItem());
    } else {
        m_rows->setCurrentRow(-1);
    }
}

void PaletteWidget::place()
{
    const QWidget* window = parentWidget();
    const int width = std::min(kWidth, window->width() - 40);
    resize(width, sizeHint().height());
    move((window->width() - width) / 2, 48);
}

bool PaletteWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible())
        place();
    if (watched == m_query && event->type() == QEvent::ShortcutOverride
        && ViewKeys::matches(ViewKeyAction::paletteChooseOther, static_cast<QKeyEvent*>(event)->keyCombination())) {
        event->accept(); // Ctrl+Return is the palette's here, not the window's Open in New Tab
        return true;
    }
    if (watched != m_query || event->type() != QEvent::KeyPress)
        return QFrame::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
    case Qt::Key_Escape: m_state->close(); return true;
    case Qt::Key_Down: m_state->moveSelection(1); return true;
    case Qt::Key_Up: m_state->moveSelection(-1); return true;
    case Qt::Key_PageDown: m_state->moveSelection(8); return true;
    case Qt::Key_PageUp: m_state->moveSelection(-8); return true;
    case Qt::Key_Tab:
        if (m_state->mode() == PaletteMode::path)
            m_state->completePath();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!m_state->choose(key->modifiers() & Qt::ControlModifier)) {
            // A dimmed row can't be chosen: the footer says why instead of nothing happening.
            if (const PaletteItem* item = m_state->selectedItem(); item && !item->isEnabled) {
                m_footer->setText(item->title + QStringLiteral(": ")
                                  + (item->subtitle.isEmpty() ? QStringLiteral("not available here") : item->subtitle));
                m_footer->setVisible(true);
                adjustSize(); // room for the footer below the rows, not over them
                place();
            }
        }
        return true;
    default: return false;
    }
}

} // namespace orwick
