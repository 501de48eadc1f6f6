#include "ui/git/ReviewHeader.h"

#include "git/GitTexts.h"
#include "ui/theme/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace orwick {

namespace {

// What to do next while an operation waits, per operation.
QString bannerSentence(const QString& operation)
{
    return operation + QStringLiteral(": resolve the conflicts and stage them, then Continue. Abort goes back to how it was.");
}

} // namespace

ReviewHeader::ReviewHeader(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    auto* line = new QHBoxLayout;
    m_branch = new QLabel(this);
    m_branch->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont bold = m_branch->font();
    bold.setBold(true);
    m_branch->setFont(bold);
    m_busy = new QLabel(this);
    m_busy->setForegroundRole(QPalette::PlaceholderText);
    line->addWidget(m_branch, 1);
    line->addWidget(m_busy);
    layout->addLayout(line);

    m_banner = new QWidget(this);
    m_banner->setAutoFillBackground(true);
    QPalette tinted = m_banner->palette();
    QColor warning = theme::warning();
    warning.setAlphaF(0.18f);
    tinted.setColor(QPalette::Window, warning);
    m_banner->setPalette(tinted);
    auto* banner = new QHBoxLayout(m_banner);
    banner->setContentsMargins(8, 4, 8, 4);
    m_bannerText = new QLabel(m_banner);
    m_bannerText->setWordWrap(true);
    m_continue = new QPushButton(QStringLiteral("Continue"), m_banner);
    m_continue->setToolTip(QStringLiteral("Go on once every conflict is resolved and staged"));
    m_abort = new QPushButton(QStringLiteral("Abort"), m_banner);
    m_abort->setToolTip(gittexts::abortExplanation());
    connect(m_continue, &QPushButton::clicked, this, &ReviewHeader::continueRequested);
    connect(m_abort, &QPushButton::clicked, this, &ReviewHeader::abortRequested);
    banner->addWidget(m_bannerText, 1);
    banner->addWidget(m_continue);
    banner->addWidget(m_abort);
    m_banner->hide();
    layout->addWidget(m_banner);
}

QString ReviewHeader::branchLine(const RepoStatus& status, const std::optional<QString>& upstream)
{
    if (status.branch.isEmpty())
        return QStringLiteral("No branch");
    QString text = status.branch;
    if (upstream && !upstream->isEmpty())
        text += QStringLiteral(" → ") + *upstream;
    else
        text += QStringLiteral(" (no upstream)");
    if (status.ahead > 0 || status.behind > 0)
        text += QStringLiteral("  ↑%1 ↓%2").arg(status.ahead).arg(status.behind);
    return text;
}

void ReviewHeader::showStatus(const RepoStatus& status, const std::optional<QString>& upstream)
{
    m_branch->setText(branchLine(status, upstream));
    m_branch->setToolTip(QStringLiteral("%1 commits ahead, %2 behind").arg(status.ahead).arg(status.behind));
    m_banner->setVisible(status.operation.has_value());
    m_bannerText->setText(status.operation ? bannerSentence(*status.operation) : QString());
}

void ReviewHeader::setBusy(const QString& label) { m_busy->setText(label); }

QString ReviewHeader::branchText() const { return m_branch->text(); }
QString ReviewHeader::busyText() const { return m_busy->text(); }
QString ReviewHeader::bannerText() const { return m_banner->isHidden() ? QString() : m_bannerText->text(); }

} // namespace orwick
