#include "ui/dialogs/OpenWithChooser.h"

#include "platform/RecentFiles.h"
#include "state/WindowState.h"
#include "ui/text/LiteralText.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeDatabase>
#include <QPushButton>
#include <QVBoxLayout>

namespace orwick {
namespace {
constexpr int kOtherRole = Qt::UserRole + 1;

QIcon applicationIcon(const QString& icon)
{
    if (icon.isEmpty())
        return QIcon::fromTheme(QStringLiteral("application-x-executable"));
    if (icon.startsWith(u'/'))
        return QIcon(icon);
    return QIcon::fromTheme(icon, QIcon::fromTheme(QStringLiteral("application-x-executable")));
}
} // namespace

OpenWithChooser::OpenWithChooser(const FilePath& file, WindowState* state, QWidget* window) : QDialog(window), m_file(file), m_state(state)
{
    static const QMimeDatabase mimes;
    const QMimeType type = mimes.mimeTypeForFile(file.text());
    m_mimeType = type.name();
    m_typeName = type.comment().isEmpty() ? m_mimeType : type.comment();
    setWindowTitle(QStringLiteral("Open With"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    auto* title = new QLabel(QStringLiteral("Open “%1” with:").arg(file.fileName()), this);
    title->setTextFormat(Qt::PlainText);
    m_list = new QListWidget(this);
    m_list->setUniformItemSizes(true);
    m_note = new QLabel(this);
    m_note->setWordWrap(true);
    m_note->setTextFormat(Qt::PlainText);
    m_makeDefault = new QCheckBox(literalText(QStringLiteral("Always use it for %1 files").arg(m_typeName)), this);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_open = buttons->addButton(QStringLiteral("Open"), QDialogButtonBox::AcceptRole);
    // Return in the list activates the row itself; a default button would open a second time
    // (keyPressEvent keeps the list's Return from reaching the dialog's default button).
    for (QPushButton* button : buttons->findChildren<QPushButton*>())
        button->setAutoDefault(false);
    layout->addWidget(title);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_note);
    layout->addWidget(m_makeDefault);
    layout->addWidget(buttons);

    const QList<DesktopApps::Application> forType = DesktopApps::forType(m_mimeType);
    if (forType.isEmpty()) {
        m_note->setText(QStringLiteral("No application is set to open %1 files. Choose one to use.").arg(m_typeName));
        showApplications(DesktopApps::all(), false);
    } else {
        m_note->hide();
        showApplications(forType, true);
    }
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, &OpenWithChooser::openChosen);
    connect(m_list, &QListWidget::itemActivated, this, &OpenWithChooser::openChosen);
    connect(m_list, &QListWidget::currentRowChanged, this, [this](int row) { m_open->setEnabled(row >= 0); });
    m_open->setEnabled(m_list->currentRow() >= 0);
    setMinimumSize(420, 360);
}

void OpenWithChooser::keyPressEvent(QKeyEvent* event)
{
    // The list has already acted on its Return (itemActivated) and passes the key on: the button
    // box's default, Open, would then start the row that is current afterwards; after "Other
    // Application…" that was the first application of the full list, started unasked.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && m_list->hasFocus()) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

QString OpenWithChooser::note() const { return m_note->isHidden() ? QString() : m_note->text(); }

void OpenWithChooser::showApplications(const QList<DesktopApps::Application>& apps, bool withOther)
{
    m_apps = apps;
    m_list->clear();
    for (qsizetype i = 0; i < apps.size(); ++i) {
        const QString name = withOther && i == 0 ? QStringLiteral("%1 (default)").arg(apps[i].name) : apps[i].name;
        new QListWidgetItem(applicationIcon(apps[i].icon), name, m_list);
    }
    if (withOther) {
        auto* other = new QListWidgetItem(QStringLiteral("Other Application…"), m_list);
        other->setData(kOtherRole, true);
    }
    if (apps.isEmpty() && !withOther) {
        m_note->setText(QStringLiteral("No applications are installed to open %1 files.").arg(m_typeName));
        m_note->show();
    }
    m_list->setCurrentRow(m_list->count() > 0 ? 0 : -1);
}

void OpenWithChooser::openChosen()
{
    QListWidgetItem* item = m_list->currentItem();
    if (!item)
        return;
    if (item->data(kOtherRole).toBool()) {
        showApplications(DesktopApps::all(), false);
        m_list->setFocus();
        return;
    }
    const DesktopApps::Application& app = m_apps.at(m_list->currentRow());
    if (const QString failure = DesktopApps::launch(app, m_file); !failure.isEmpty()) {
        m_note->setText(failure);
        m_note->show();
        return;
    }
    RecentFiles::add(m_file, m_mimeType);
    if (m_makeDefault->isChecked()) {
        const QString failure = DesktopApps::setDefault(m_mimeType, app);
        Q_EMIT m_state->messageRequested(failure.isEmpty() ? QStringLiteral("%1 now opens %2 files").arg(app.name, m_typeName) : failure);
    }
    accept();
}

void OpenWithChooser::follow(WindowState* state, QWidget* window)
{
    QObject::connect(state, &WindowState::openWithRequested, window, [state, window] {
        const PaneState* pane = state->activePane();
        const FileItem* item = pane->cursor() ? pane->item(*pane->cursor()) : nullptr;
        if (!item || item->isFolder)
            return;
        auto* chooser = new OpenWithChooser(item->destination, state, window);
        QObject::connect(chooser, &QDialog::finished, window, [window] { window->activateWindow(); });
        chooser->open();
        chooser->list()->setFocus();
    });
}

} // namespace orwick
