#include "ui/fileops/ProgressCard.h"

#include "ui/theme/Theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QProgressBar>
#include <QToolButton>

namespace orwick {

namespace {
constexpr int kWidth = 340;
constexpr int kMargin = 16;
} // namespace

ProgressCard::ProgressCard(FileOperations* operations, QWidget* window) : QWidget(window), m_operations(operations)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 8, 12, 10);
    layout->setSpacing(6);
    m_toggle = new QToolButton(this);
    m_toggle->setAutoRaise(true);
    m_toggle->setFocusPolicy(Qt::NoFocus);
    connect(m_toggle, &QToolButton::clicked, this, [this] { setExpanded(!m_expanded); });
    layout->addWidget(m_toggle, 0, Qt::AlignRight);
    m_rows = new QVBoxLayout;
    m_rows->setSpacing(8);
    layout->addLayout(m_rows);
    connect(operations, &FileOperations::jobsChanged, this, &ProgressCard::rebuild);
    connect(operations, &FileOperations::progressChanged, this, &ProgressCard::refresh);
    window->installEventFilter(this);
    setFixedWidth(kWidth);
    hide();
}

void ProgressCard::setExpanded(bool expanded)
{
    m_expanded = expanded;
    rebuild();
}

QString ProgressCard::progressText(const CopyProgress::Snapshot& snapshot)
{
    const QLocale locale = QLocale::system();
    if (snapshot.totalBytes <= 0)
        return QString();
    if (snapshot.countsItems)
        return QStringLiteral("%1 of %2 %3").arg(locale.toString(snapshot.finishedBytes), locale.toString(snapshot.totalBytes),
                                                 snapshot.totalBytes == 1 ? QStringLiteral("item") : QStringLiteral("items"));
    return QStringLiteral("%1 of %2").arg(locale.formattedDataSize(snapshot.finishedBytes),
                                          locale.formattedDataSize(snapshot.totalBytes));
}

void ProgressCard::rebuild()
{
    // A window on its way out (an open cell editor commits as it closes) gets no new rows.
    if (window()->testAttribute(Qt::WA_WState_Hidden))
        return;
    for (const Row& row : m_shown)
        delete row.widget;
    m_shown.clear();
    const QList<FileJob>& jobs = m_operations->jobs();
    if (jobs.isEmpty()) {
        hide();
        return;
    }
    const qsizetype count = m_expanded ? jobs.size() : 1;
    for (qsizetype i = 0; i < count; ++i) {
        const FileJob& job = jobs[i];
        auto* widget = new QWidget(this);
        auto* grid = new QGridLayout(widget);
        grid->setContentsMargins(0, 0, 0, 0);
        grid->setHorizontalSpacing(8);
        grid->setVerticalSpacing(2);
        auto* title = new QLabel(job.title, widget);
        auto* bar = new QProgressBar(widget);
        bar->setObjectName(QStringLiteral("bar"));
        bar->setTextVisible(false);
        bar->setMaximumHeight(6);
        bar->setRange(0, 1000);
        auto* detail = new QLabel(widget);
        detail->setForegroundRole(QPalette::PlaceholderText); // dim, and follows the theme
        auto* cancel = new QToolButton(widget);
        cancel->setText(QStringLiteral("✕"));
        cancel->setToolTip(QStringLiteral("Stop"));
        cancel->setAutoRaise(true);
        cancel->setFocusPolicy(Qt::NoFocus);
        const quint64 id = job.id;
        connect(cancel, &QToolButton::clicked, this, [this, id] { m_operations->cancelJob(id); });
        grid->addWidget(title, 0, 0);
        grid->addWidget(cancel, 0, 1, 2, 1);
        grid->addWidget(bar, 1, 0);
        grid->addWidget(detail, 2, 0);
        m_rows->addWidget(widget);
        m_shown.append({id, widget, title, detail});
    }
    m_toggle->setVisible(jobs.size() > 1);
    m_toggle->setText(m_expanded ? QStringLiteral("Show less")
                                 : QStringLiteral("%1 more").arg(jobs.size() - 1));
    refresh();
    adjustSize();
    place();
    show();
    raise();
}

void ProgressCard::refresh()
{
    for (const Row& row : m_shown) {
        for (const FileJob& job : m_operations->jobs()) {
            if (job.id != row.id)
                continue;
            const CopyProgress::Snapshot snapshot = job.progress->snapshot();
            QString detail = progressText(snapshot);
            if (!snapshot.currentFile.isEmpty())
                detail += (detail.isEmpty() ? QString() : QStringLiteral(" — ")) + snapshot.currentFile;
            row.detail->setText(detail);
            if (auto* bar = row.widget->findChild<QProgressBar*>(QStringLiteral("bar")))
                bar->setValue(int(snapshot.fraction() * 1000));
        }
    }
}

QStringList ProgressCard::rowTexts() const
{
    QStringList texts;
    for (const Row& row : m_shown)
        texts.append(row.title->text() + QStringLiteral(" — ") + row.detail->text());
    return texts;
}

void ProgressCard::place()
{
    const QWidget* window = parentWidget();
    const QSize size = sizeHint();
    resize(size);
    move(window->width() - size.width() - kMargin, window->height() - size.height() - kMargin - 24);
}

bool ProgressCard::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible())
        place();
    return QWidget::eventFilter(watched, event);
}

void ProgressCard::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme::separator());
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(rect().adjusted(0, 0, -1, -1), theme::cornerRadius(), theme::cornerRadius());
}

} // namespace orwick
