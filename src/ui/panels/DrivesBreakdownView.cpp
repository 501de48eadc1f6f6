#include "ui/panels/DrivesBreakdownView.h"

#include "async/TimeLimited.h"
#include "disktools/DiskNames.h"
#include "places/Locations.h"
#include "ui/theme/Theme.h"

#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QProcess>
#include <QPushButton>
#include <QVBoxLayout>

namespace orwick {

DrivesBreakdownView::DrivesBreakdownView(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    m_drivesGrid = new QGridLayout;
    layout->addLayout(m_drivesGrid);
    // A hung network share blocks whoever asks it for its space: never the window, nor the
    // shared pool; past the time limit no drives are shown.
    runWithTimeLimit(this, Locations::kReadTimeoutMs, [] { return listDrives(); }, [this](QList<Drive> drives) {
        m_drives = std::move(drives);
        showDrives();
        showRows(); // the remainder line needs the startup drive
    }, [] {});

    auto* buttons = new QHBoxLayout;
    m_measure = new QPushButton(QStringLiteral("Show What's Using Space"), this);
    m_measure->setToolTip(QStringLiteral("See which folders take the most space. It reads every file in them, so it takes a moment."));
    connect(m_measure, &QPushButton::clicked, this, &DrivesBreakdownView::measure);
    auto* map = new QPushButton(QStringLiteral("Every folder in Home as a map of the space it takes; click to go in"), this);
    connect(map, &QPushButton::clicked, this, &DrivesBreakdownView::mapHomeRequested);
    m_status = new QLabel(this);
    buttons->addWidget(m_measure);
    buttons->addWidget(m_status, 1);
    buttons->addWidget(map);
    layout->addLayout(buttons);

    m_rowsGrid = new QGridLayout;
    layout->addLayout(m_rowsGrid);
    layout->addStretch(1);

    m_rows = SpaceBreakdown::homeRows();
    if (const auto saved = SpaceBreakdown::load()) {
        m_rows = saved->rows;
        m_measuredAt = saved->at;
    }
    showRows();
}

DrivesBreakdownView::~DrivesBreakdownView() { stop(); }

void DrivesBreakdownView::showDrives()
{
    int line = 0;
    for (const Drive& drive : std::as_const(m_drives)) {
        m_drivesGrid->addWidget(new QLabel(QStringLiteral("What's using space on ") + drive.name, this), line, 0);
        m_drivesGrid->addWidget(new QLabel(drive.url.abbreviated() + QStringLiteral(" · ") + drive.format, this), line, 1);
        m_drivesGrid->addWidget(new QLabel(drive.freeText(), this), line, 2);
        if (drive.isEjectable) {
            auto* eject = new QPushButton(QStringLiteral("Eject"), this);
            connect(eject, &QPushButton::clicked, this, [path = drive.url.text()] {
                QProcess::startDetached(QStringLiteral("gio"), {QStringLiteral("mount"), QStringLiteral("-e"), path});
            });
            m_drivesGrid->addWidget(eject, line, 3);
        }
        ++line;
    }
}

void DrivesBreakdownView::stop()
{
    m_task.cancel();
    m_measure->setEnabled(true);
}

void DrivesBreakdownView::measure()
{
    const TaskSlot::Ticket ticket = m_task.start();
    // A disabled button lets go of the keyboard, which would fall to the next button (where Space
    // starts the home map): the view holds it while measuring and gives it back after.
    if (m_measure->hasFocus())
        setFocus();
    m_measure->setEnabled(false);
    m_status->setText(QStringLiteral("Measuring…"));
    runInBackground(this, [rows = SpaceBreakdown::homeRows(), token = ticket.token] {
        return SpaceBreakdown::measure(rows, *token);
    }, [this, ticket](std::optional<std::vector<SpaceBreakdown::Row>> rows) {
        if (!m_task.isCurrent(ticket) || !rows)
            return;
        m_task.finish(ticket);
        m_rows = std::move(*rows);
        m_measuredAt = QDateTime::currentDateTime();
        SpaceBreakdown::save({*m_measuredAt, m_rows});
        m_measure->setEnabled(true);
        if (hasFocus())
            m_measure->setFocus();
        showRows();
    });
}

void DrivesBreakdownView::showRows()
{
    while (QLayoutItem* item = m_rowsGrid->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    int line = 0;
    auto addRow = [&](const QString& title, const QString& size) {
        m_rowsGrid->addWidget(new QLabel(title, this), line, 0);
        auto* value = new QLabel(size, this);
        value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        m_rowsGrid->addWidget(value, line, 1);
        ++line;
    };
    for (const SpaceBreakdown::Row& row : m_rows)
        addRow(SpaceBreakdown::rowTitle(row), row.bytes ? byteCountText(*row.bytes) : QStringLiteral("—"));
    const auto startup = std::find_if(m_drives.begin(), m_drives.end(), [](const Drive& d) { return d.isStartup; });
    if (m_measuredAt && startup != m_drives.end())
        addRow(QString::fromUtf8(SpaceBreakdown::remainderTitle), byteCountText(SpaceBreakdown::remainder(*startup, m_rows)));
    if (m_measuredAt)
        m_status->setText(QStringLiteral("Measured ") + QLocale().toString(*m_measuredAt, QLocale::ShortFormat));
}

} // namespace orwick
