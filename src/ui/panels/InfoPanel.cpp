#include "ui/panels/InfoPanel.h"

#include "app/Services.h"
#include "base/Formatting.h"
#include "images/PhotoFactsText.h"
#include "notes/FileProperties.h"
#include "platform/DesktopApps.h"
#include "state/FileActions.h"
#include "state/PaneState.h"
#include "state/TabState.h"
#include "state/WindowState.h"
#include "ui/panels/AccessEditor.h"
#include "ui/panels/BacklinksView.h"
#include "ui/text/LiteralText.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace orwick {

namespace {

constexpr int kTickMs = 100;
constexpr int kAttributesShown = 12;
constexpr int kAppButtons = 3; // the default and two more; the rest are in the chooser

QString sizeText(qint64 bytes, qint64 items)
{
    return formatByteCount(bytes) + QStringLiteral(" in ") + formatCount(items, QStringLiteral("item"));
}

// The footer: where the item is, if one is shown, then the keys the sheet answers to, in the
// order the other sheets name theirs.
QString footerText(const QString& place, const QStringList& keys)
{
    QStringList parts = keys;
    parts.append(QStringLiteral("Esc closes"));
    if (!place.isEmpty())
        parts.prepend(place);
    return parts.join(QStringLiteral(" · "));
}

} // namespace

PanelSheet* InfoPanel::open(WindowState& window, QWidget* parent)
{
    PanelSheet::closeOpenSheet(parent);
    return new InfoPanel(window, parent);
}

InfoPanel::InfoPanel(WindowState& window, QWidget* parent)
    : PanelSheet(QStringLiteral("Get Info"), QString(), parent), m_window(window)
{
    m_stop = new QPushButton(QStringLiteral("Stop"), this);
    m_stop->setToolTip(QStringLiteral("Stop measuring the folder"));
    m_stop->hide();
    connect(m_stop, &QPushButton::clicked, this, [this] {
        m_measure.cancel();
        m_ticker.stop();
        m_stop->hide();
        showMeasured(true, false);
    });
    tools()->addWidget(m_stop);

    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* content = new QWidget(scroll);
    auto* column = new QVBoxLayout(content);
    // One form, so that every name lines up in one column, the permissions its last row; each
    // name sits on the first line of what it names (a value that wraps, the permission grid).
    m_form = new QFormLayout;
    m_form->setLabelAlignment(Qt::AlignRight | Qt::AlignTop);
    m_form->setVerticalSpacing(6);
    column->addLayout(m_form);
    m_access = new AccessEditor(content);
    auto* permissions = new QLabel(QStringLiteral("Permissions"));
    permissions->setForegroundRole(QPalette::PlaceholderText);
    // The form gives a name beside a tall field more height than its line; its text keeps to the top.
    permissions->setAlignment(Qt::AlignRight | Qt::AlignTop);
    m_form->addRow(permissions, m_access);
    m_backlinks = new BacklinksView(content);
    column->addWidget(m_backlinks);
    column->addStretch(1);
    scroll->setWidget(content);
    body()->addWidget(scroll);

    connect(m_access, &AccessEditor::accessRequested, this, [this](const FileAccess& wanted) {
        if (m_info.path.isEmpty())
            return;
        m_window.files().operations()->changeAccess(m_info.path, wanted, m_window.undoStack());
    });
    connect(m_window.files().operations(), &FileOperations::operationFinished, this, &InfoPanel::reload);
    connect(m_backlinks, &BacklinksView::noteActivated, this, [this](const FilePath& note) {
        if (PaneState* pane = m_window.activePane())
            pane->reveal({note}); // the panel follows the cursor there
    });
    connect(&m_window, &WindowState::selectedTabChanged, this, &InfoPanel::followPane);
    m_ticker.setInterval(kTickMs);
    connect(&m_ticker, &QTimer::timeout, this, [this] { showMeasured(false, true); });
    followPane();
    present(m_access);
}

InfoPanel::~InfoPanel() { stopWork(); }

void InfoPanel::stopWork()
{
    m_load.cancel();
    m_measure.cancel();
    m_ticker.stop();
}

void InfoPanel::followPane()
{
    disconnect(m_paneSelection);
    disconnect(m_tabPane);
    TabState* tab = m_window.selectedTab();
    m_tabPane = connect(tab, &TabState::activePaneChanged, this, &InfoPanel::followPane);
    m_paneSelection = connect(tab->activePane(), &PaneState::selectionChanged, this, [this] {
        m_subject.clear();
        reload();
    });
    m_subject.clear();
    reload();
}

void InfoPanel::reload()
{
    const PaneState* pane = m_window.activePane();
    if (m_subject.isEmpty() && pane) {
        if (pane->selection().size() > 1)
            m_subject = pane->selection().values();
        else if (pane->cursor())
            m_subject = {*pane->cursor()};
        else if (!pane->listing())
            m_subject = {pane->url()}; // nothing under the cursor: the folder itself
        std::sort(m_subject.begin(), m_subject.end());
    }
    const QList<FilePath> subject = m_subject;
    const TaskSlot::Ticket ticket = m_load.start();
    runInBackground(this, [subject] {
        Loaded loaded;
        for (const FilePath& path : subject)
            loaded.infos.append(loadFileInfo(path));
        // A picture's camera, date and place, read again after every operation (a strip among them).
        if (loaded.infos.size() == 1 && !loaded.infos.first().isFolder && loaded.infos.first().mimeType.startsWith(u"image/"))
            if (auto facts = readPhotoFacts(loaded.infos.first().path))
                loaded.photo = std::move(*facts);
        return loaded;
    }, [this, ticket](Loaded loaded) {
        if (!m_load.isCurrent(ticket))
            return;
        m_load.finish(ticket);
        m_photo = std::move(loaded.photo);
        if (loaded.infos.size() == 1)
            showOne(loaded.infos.first());
        else
            showSummary(loaded.infos);
    });
}

void InfoPanel::clearRows()
{
    while (m_form->rowCount() > 1) // all but the permissions
        m_form->removeRow(0);
    m_sizeLabel = nullptr;
}

void InfoPanel::addRow(const QString& label, const QString& text)
{
    auto* field = new QLabel(text);
    field->setTextInteractionFlags(Qt::TextSelectableByMouse);
    field->setWordWrap(true);
    auto* name = new QLabel(label);
    name->setForegroundRole(QPalette::PlaceholderText); // dim, from the theme
    m_form->insertRow(m_form->rowCount() - 1, name, field);
    if (label == QLatin1String("Size"))
        m_sizeLabel = field;
}

QString InfoPanel::rowText(const QString& label) const
{
    for (int row = 0; row < m_form->rowCount(); ++row) {
        const auto* name = qobject_cast<QLabel*>(m_form->itemAt(row, QFormLayout::LabelRole)->widget());
        if (!name || name->text() != label)
            continue;
        const QWidget* field = m_form->itemAt(row, QFormLayout::FieldRole)->widget();
        if (const auto* text = qobject_cast<const QLabel*>(field))
            return text->text();
        QStringList buttons; // a row of buttons reads as their titles
        for (const QPushButton* button : field->findChildren<QPushButton*>())
            buttons.append(button->text().replace(QStringLiteral("&&"), QStringLiteral("&")));
        return buttons.join(QStringLiteral(", "));
    }
    return {};
}

void InfoPanel::addOpenWithRow(const FileInfo& info)
{
    // Each application a button that opens the file with it; "Other…" opens the chooser.
    auto* field = new QWidget;
    auto* buttons = new QHBoxLayout(field);
    buttons->setContentsMargins(0, 0, 0, 0);
    const QList<DesktopApps::Application> apps = DesktopApps::forType(info.mimeType);
    for (const DesktopApps::Application& app : apps.mid(0, kAppButtons)) {
        auto* open = new QPushButton(literalText(app.name), field);
        open->setToolTip(QStringLiteral("Open with %1").arg(app.name));
        connect(open, &QPushButton::clicked, this, [this, app, file = info.path] {
            const QString failure = DesktopApps::launch(app, file);
            if (!failure.isEmpty())
                Q_EMIT m_window.messageRequested(failure);
        });
        buttons->addWidget(open);
    }
    auto* other = new QPushButton(apps.isEmpty() ? QStringLiteral("Choose Application…") : QStringLiteral("Other…"), field);
    connect(other, &QPushButton::clicked, this, [this] { m_window.requestOpenWith(); });
    buttons->addWidget(other);
    buttons->addStretch(1);
    auto* name = new QLabel(QStringLiteral("Open With"));
    name->setForegroundRole(QPalette::PlaceholderText);
    m_form->insertRow(m_form->rowCount() - 1, name, field);
}

void InfoPanel::showOne(FileInfo info)
{
    const bool sameItem = info.path == m_info.path;
    m_info = std::move(info);
    const FileInfo& i = m_info;
    clearRows();
    m_access->setVisible(true);
    if (!i.error.isEmpty()) {
        setFooter(footerText(i.path.abbreviated(), {}));
        addRow(QStringLiteral("Name"), i.name);
        addRow(QStringLiteral("Error"), QStringLiteral("Couldn’t read it: %1.").arg(i.error));
        m_access->setEnabled(false);
        m_backlinks->showNote({});
        return;
    }
    addRow(QStringLiteral("Name"), i.name);
    addRow(QStringLiteral("Kind"), i.kind);
    addRow(QStringLiteral("Size"), i.size ? formatByteCount(*i.size) : QStringLiteral("Measuring…"));
    addRow(QStringLiteral("Where"), i.path.parent().abbreviated());
    if (i.isLink)
        addRow(QStringLiteral("Link to"), i.linkTarget);
    addRow(QStringLiteral("Created"), infoDateText(i.created));
    addRow(QStringLiteral("Modified"), infoDateText(i.modified));
    addRow(QStringLiteral("Accessed"), infoDateText(i.accessed));
    addRow(QStringLiteral("Owner"), i.ownerName);
    addRow(QStringLiteral("Group"), i.groupName);
    addRow(QStringLiteral("Mode"), FileAccess::permissionText(i.access.mode)
                                       + QStringLiteral("  (%1)").arg(i.access.mode, 4, 8, QLatin1Char('0')));
    addRow(QStringLiteral("MIME type"), i.mimeType);
    if (m_photo)
        for (const FactRow& row : photoFactRows(*m_photo))
            addRow(row.label, row.text);
    addRow(QStringLiteral("Tags"), i.tags.isEmpty() ? QStringLiteral("None") : i.tags.join(QStringLiteral(", ")));
    if (const FileProperties* store = services().properties) {
        const PropertyMap properties = store->values().value(i.path);
        for (auto it = properties.begin(); it != properties.end(); ++it)
            addRow(it.key(), it.value().text());
    }
    QStringList attributes;
    for (const FileInfo::Attribute& attribute : i.attributes.mid(0, kAttributesShown))
        attributes.append(QString::fromUtf8(attribute.name) + QStringLiteral(" = ") + attribute.value);
    if (i.attributes.size() > kAttributesShown)
        attributes.append(QStringLiteral("and %1 more").arg(i.attributes.size() - kAttributesShown));
    addRow(QStringLiteral("Attributes"), attributes.isEmpty() ? QStringLiteral("None") : attributes.join(QLatin1Char('\n')));
    if (!i.isFolder && !i.isLink)
        addOpenWithRow(i);
    m_access->setEnabled(true);
    m_access->show(i.access, i.ownerName, i.groupName, !i.isLink);
    m_backlinks->showNote(i.isFolder ? FilePath() : i.path);
    QStringList keys{QStringLiteral("Tab moves")};
    if (!i.isLink) // a link's permissions are its target's: its boxes can't be ticked
        keys << QStringLiteral("Space ticks a permission") << QStringLiteral("Ctrl+Z undoes");
    if (m_backlinks->isVisibleTo(this))
        keys << QStringLiteral("Return shows a linking note");
    setFooter(footerText(i.path.abbreviated(), keys));
    if (i.isFolder) {
        if (!sameItem || !m_counts)
            startMeasuring({i.path}, 0, 0);
        else
            showMeasured(!m_measure.isRunning(), true);
    } else {
        m_measure.cancel();
        m_ticker.stop();
        m_stop->hide();
    }
}

void InfoPanel::showSummary(const QList<FileInfo>& infos)
{
    m_info = {};
    clearRows();
    m_backlinks->showNote({});
    m_access->setVisible(false); // one item's permissions: several items' would show as boxes all unset
    setFooter(footerText({}, {}));
    addRow(QStringLiteral("Name"), formatCount(infos.size(), QStringLiteral("item")));
    QStringList kinds;
    QList<FilePath> folders;
    qint64 bytes = 0;
    for (const FileInfo& info : infos) {
        if (!kinds.contains(info.kind) && !info.kind.isEmpty())
            kinds.append(info.kind);
        if (info.isFolder)
            folders.append(info.path);
        else
            bytes += info.size.value_or(0);
    }
    addRow(QStringLiteral("Kind"), kinds.join(QStringLiteral(", ")));
    addRow(QStringLiteral("Size"), sizeText(bytes, infos.size()));
    if (!folders.isEmpty())
        startMeasuring(folders, bytes, infos.size());
}

void InfoPanel::startMeasuring(const QList<FilePath>& folders, qint64 filesBytes, qint64 filesCount)
{
    m_counts = std::make_shared<Counts>();
    m_baseBytes = filesBytes;
    m_baseItems = filesCount;
    const TaskSlot::Ticket ticket = m_measure.start();
    const std::shared_ptr<Counts> counts = m_counts;
    runInBackground(this, [folders, counts, token = ticket.token] {
        bool complete = true;
        qint64 doneItems = 0, doneBytes = 0;
        for (const FilePath& folder : folders) {
            const FolderSize size = measureFolder(folder, *token, [&](const FolderSize& soFar) {
                counts->items = doneItems + soFar.items;
                counts->bytes = doneBytes + soFar.bytes;
            });
            doneItems += size.items;
            doneBytes += size.bytes;
            counts->items = doneItems;
            counts->bytes = doneBytes;
            complete = complete && size.complete;
        }
        return complete;
    }, [this, ticket](bool complete) {
        if (!m_measure.isCurrent(ticket))
            return;
        m_measure.finish(ticket);
        m_ticker.stop();
        m_stop->hide();
        showMeasured(true, complete);
    });
    m_stop->show();
    m_ticker.start();
    showMeasured(false, true);
}

void InfoPanel::showMeasured(bool finished, bool complete)
{
    if (!m_sizeLabel || !m_counts)
        return;
    const QString text = sizeText(m_baseBytes + m_counts->bytes, m_baseItems + m_counts->items);
    if (!finished)
        m_sizeLabel->setText(QStringLiteral("Measuring… ") + text);
    else
        m_sizeLabel->setText(complete ? text : QStringLiteral("At least ") + text);
}

} // namespace orwick
