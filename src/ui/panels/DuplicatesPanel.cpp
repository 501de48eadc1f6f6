#include "ui/panels/DuplicatesPanel.h"

#include "commands/ViewKeys.h"
#include "disktools/DiskNames.h"
#include "state/PaneState.h"
#include "ui/panels/PanelTrash.h"
#include "ui/theme/Theme.h"

#include <QComboBox>
#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QTreeWidget>

namespace orwick {

namespace {

constexpr int kUrlRole = Qt::UserRole + 1;

struct SizeChoice {
    const char* title;
    qint64 bytes;
};
constexpr SizeChoice kSizes[] = {{"Any size", 0}, {"1 KB or more", 1000}, {"100 KB or more", 100000},
                                 {"1 MB or more", 1000000}, {"10 MB or more", 10000000}, {"100 MB or more", 100000000}};

} // namespace

DuplicatesPanel::DuplicatesPanel(PaneState* pane, QWidget* window)
    : PanelSheet(QStringLiteral("Find Duplicates"), pane->url().abbreviated(), window), m_pane(pane),
      m_folder(pane->url()), m_minimumSize(Duplicates::defaultMinimumSize)
{
    m_sizes = new QComboBox(this);
    for (const SizeChoice& size : kSizes)
        m_sizes->addItem(QString::fromUtf8(size.title), size.bytes);
    m_sizes->setCurrentIndex(m_sizes->findData(m_minimumSize));
    connect(m_sizes, &QComboBox::activated, this, [this](int index) {
        m_minimumSize = m_sizes->itemData(index).toLongLong();
        find();
    });
    m_tick = new QPushButton(QStringLiteral("Tick Extra Copies"), this);
    m_tick->setToolTip(QStringLiteral("Every copy but one in each group shown: the oldest, or the one not named like a copy"));
    connect(m_tick, &QPushButton::clicked, this, &DuplicatesPanel::tickExtraCopies);
    m_remove = new QPushButton(QStringLiteral("Remove Duplicates"), this);
    m_remove->setToolTip(QStringLiteral("Move the ticked files to the Trash (Ctrl+Z puts them back)"));
    connect(m_remove, &QPushButton::clicked, this, &DuplicatesPanel::trashChosen);
    tools()->addWidget(m_sizes);
    tools()->addWidget(m_tick);
    tools()->addWidget(m_remove);

    m_stack = new QStackedWidget(this);
    m_placeholder = new QLabel(this);
    m_placeholder->setAlignment(Qt::AlignCenter);
    m_tree = new QTreeWidget(this);
    m_tree->setColumnCount(2);
    m_tree->setHeaderLabels({QStringLiteral("File"), QStringLiteral("Modified")});
    m_tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_tree->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_tree->setUniformRowHeights(true);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    m_tree->installEventFilter(this);
    connect(m_tree, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int) { itemChanged(item); });
    connect(m_tree, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        if (item->parent())
            showInFolder(FilePath::fromNative(item->data(0, kUrlRole).toByteArray()));
    });
    connect(m_tree, &QTreeWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        QTreeWidgetItem* item = m_tree->itemAt(at);
        if (!item || !item->parent())
            return;
        const FilePath file = FilePath::fromNative(item->data(0, kUrlRole).toByteArray());
        QMenu menu(this);
        menu.addAction(QStringLiteral("Show in Its Folder"), this, [this, file] { showInFolder(file); });
        menu.exec(m_tree->viewport()->mapToGlobal(at));
    });
    m_stack->addWidget(m_placeholder);
    m_stack->addWidget(m_tree);
    body()->addWidget(m_stack);

    m_ticker = new QTimer(this);
    m_ticker->setInterval(100);
    connect(m_ticker, &QTimer::timeout, this, &DuplicatesPanel::showProgress);
    find();
    present();
}

DuplicatesPanel::~DuplicatesPanel() { stopWork(); }

void DuplicatesPanel::stopWork()
{
    m_task.cancel();
    m_ticker->stop();
}

void DuplicatesPanel::find()
{
    const TaskSlot::Ticket ticket = m_task.start();
    m_scanned = false;
    m_removedAny = false;
    m_choice = DuplicatesChoice();
    m_progress = std::make_shared<Duplicates::Progress>();
    m_tree->clear();
    m_stack->setCurrentWidget(m_placeholder);
    m_tick->setEnabled(false);
    m_remove->setEnabled(false);
    setFooter(Duplicates::summary(nullptr));
    showProgress();
    m_ticker->start();

    Duplicates::Options options;
    options.minimumSize = m_minimumSize;
    runInBackground(this, [folder = m_folder, options, ticket, progress = m_progress] {
        return Duplicates::find(folder, options, *ticket.token, progress.get());
    }, [this, ticket](Duplicates::Scan scan) {
        if (!m_task.isCurrent(ticket))
            return; // closed, or a newer search started
        m_task.finish(ticket);
        m_ticker->stop();
        m_scanned = true;
        m_choice = DuplicatesChoice(std::move(scan));
        showResult();
    });
}

void DuplicatesPanel::showProgress()
{
    const QLocale locale;
    QString detail;
    switch (m_progress->stage.load()) {
    case Duplicates::Stage::walking:
        detail = locale.toString(m_progress->filesSeen.load()) + QStringLiteral(" files looked at");
        break;
    case Duplicates::Stage::comparingHeads:
        detail = QStringLiteral("Comparing first bytes: %1 of %2")
                     .arg(locale.toString(m_progress->filesHashed.load()), locale.toString(m_progress->filesToHash.load()));
        break;
    case Duplicates::Stage::comparingWholeFiles:
    case Duplicates::Stage::done:
        detail = QStringLiteral("Comparing whole files: %1 of %2")
                     .arg(locale.toString(m_progress->filesHashed.load()), locale.toString(m_progress->filesToHash.load()));
        break;
    }
    m_placeholder->setText(QStringLiteral("Looking for files with the same contents…\n") + detail);
}

void DuplicatesPanel::showResult()
{
    if (m_choice.groups().empty()) {
        // After a removal the groups are gone because of it, not because of the size.
        const bool sizeMayHide = m_minimumSize > 0 && m_choice.scan().files > 0 && !m_removedAny;
        m_placeholder->setText(sizeMayHide ? QStringLiteral("No duplicates this big; try a smaller size")
                                           : QStringLiteral("No duplicates here"));
        m_stack->setCurrentWidget(m_placeholder);
    } else {
        fillTree();
        m_stack->setCurrentWidget(m_tree);
        m_tree->setFocus();
    }
    updateFooter();
}

void DuplicatesPanel::fillTree()
{
    m_filling = true;
    m_tree->clear();
    const QLocale locale;
    QList<QTreeWidgetItem*> tops;
    for (const Duplicates::Group& group : m_choice.groups()) {
        auto* top = new QTreeWidgetItem;
        top->setText(0, QStringLiteral("%1 files · %2 each · %3 in extra copies")
                            .arg(group.files.size())
                            .arg(byteCountText(group.size), byteCountText(group.wastedBytes())));
        top->setFlags(Qt::ItemIsEnabled);
        for (const Duplicates::File& file : group.files) {
            auto* row = new QTreeWidgetItem(top);
            row->setText(0, relativeText(m_folder, file.url));
            row->setData(0, kUrlRole, file.url.native());
            row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
            row->setCheckState(0, m_choice.isChosen(file.url) ? Qt::Checked : Qt::Unchecked);
            if (file.modifiedNs > 0)
                row->setText(1, locale.toString(QDateTime::fromMSecsSinceEpoch(file.modifiedNs / 1000000), QLocale::ShortFormat));
        }
        tops.append(top);
    }
    m_tree->addTopLevelItems(tops);
    m_tree->expandAll();
    m_filling = false;
}

void DuplicatesPanel::itemChanged(QTreeWidgetItem* item)
{
    if (m_filling || !item->parent())
        return;
    const FilePath file = FilePath::fromNative(item->data(0, kUrlRole).toByteArray());
    if ((item->checkState(0) == Qt::Checked) != m_choice.isChosen(file))
        m_choice.toggle(file);
    updateFooter();
}

void DuplicatesPanel::tickExtraCopies()
{
    m_choice.tickExtraCopies();
    fillTree();
    updateFooter();
}

void DuplicatesPanel::trashChosen()
{
    const std::vector<FilePath> chosen = m_choice.toTrash();
    if (chosen.empty() || m_trashing)
        return;
    m_trashing = true;
    m_remove->setEnabled(false);
    trashForPanel(this, QList<FilePath>(chosen.begin(), chosen.end()), QStringLiteral("Remove Duplicates"),
                  [this](const std::vector<FilePath>& moved) {
                      m_trashing = false;
                      if (!m_scanned)
                          return; // a new search started meanwhile and will show the disk as it is
                      m_choice.removeMoved(moved);
                      m_removedAny = m_removedAny || !moved.empty();
                      showResult();
                  },
                  [this] { find(); }); // undone or redone: look again
}

void DuplicatesPanel::updateFooter()
{
    QString text = Duplicates::summary(m_scanned ? &m_choice.scan() : nullptr);
    const int ticked = m_choice.chosenCount();
    if (ticked > 0)
        text += QStringLiteral(" · %1 ticked (%2)").arg(ticked).arg(byteCountText(m_choice.chosenBytes()));
    setFooter(text);
    m_tick->setEnabled(m_scanned && !m_choice.groups().empty());
    m_remove->setEnabled(ticked > 0 && !m_trashing);
}

bool DuplicatesPanel::eventFilter(QObject* watched, QEvent* event)
{
    using A = ViewKeyAction;
    if (watched == m_tree && event->type() == QEvent::ShortcutOverride) {
        // Delete moves the ticked files to the Trash here, not the pane's selection (the window's key).
        if (ViewKeys::matches(A::duplicatesTrash, static_cast<QKeyEvent*>(event)->keyCombination())) {
            event->accept();
            return true;
        }
    }
    if (watched != m_tree || event->type() != QEvent::KeyPress)
        return PanelSheet::eventFilter(watched, event);
    const std::optional<A> action = ViewKeys::actionFor(KeyedView::duplicates, static_cast<QKeyEvent*>(event)->keyCombination());
    if (!action)
        return PanelSheet::eventFilter(watched, event);
    QTreeWidgetItem* current = m_tree->currentItem();
    const bool onFile = current && current->parent(); // not a group's heading
    switch (*action) {
    case A::duplicatesTick:
        if (onFile)
            current->setCheckState(0, current->checkState(0) == Qt::Checked ? Qt::Unchecked : Qt::Checked);
        return true;
    case A::duplicatesShow:
        if (onFile)
            showInFolder(FilePath::fromNative(current->data(0, kUrlRole).toByteArray()));
        return true;
    case A::duplicatesTrash:
        trashChosen();
        return true;
    default: return PanelSheet::eventFilter(watched, event);
    }
}

void DuplicatesPanel::showInFolder(const FilePath& file)
{
    m_pane->reveal({file});
    closeSheet();
}

} // namespace orwick
