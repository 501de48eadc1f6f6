#include "ui/panels/FileComparisonView.h"

#include "commands/ViewKeys.h"
#include "ui/theme/Theme.h"

#include <algorithm>
#include <QFile>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStackedWidget>
#include <QTextBlock>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace orwick {

namespace {

// Equal bytes? None when either file can't be read.
std::optional<bool> equalBytes(const FilePath& left, const FilePath& right, const CancelFlag& cancel)
{
    QFile a(left.text()), b(right.text());
    if (!a.open(QIODevice::ReadOnly) || !b.open(QIODevice::ReadOnly))
        return std::nullopt;
    if (a.size() != b.size())
        return false;
    while (!a.atEnd() && !cancel.isCancelled()) {
        if (a.read(1 << 20) != b.read(1 << 20))
            return false;
    }
    return true;
}

QColor colorOf(DiffText::Kind kind)
{
    switch (kind) {
    case DiffText::Kind::file: return theme::text();
    case DiffText::Kind::hunk: return theme::informative();
    case DiffText::Kind::added: return theme::positive();
    case DiffText::Kind::removed: return theme::negative();
    case DiffText::Kind::context: return theme::dimText();
    case DiffText::Kind::note: return theme::warning();
    }
    return theme::text();
}

QString marked(const QString& line, const DiffText::Ranges& ranges, const QColor& tint)
{
    QString html;
    int at = 0;
    for (const auto& [start, length] : ranges) {
        html += line.mid(at, start - at).toHtmlEscaped();
        html += QStringLiteral("<span style=\"background:%1\">%2</span>").arg(tint.name(QColor::HexArgb), line.mid(start, length).toHtmlEscaped());
        at = start + length;
    }
    return html + line.mid(at).toHtmlEscaped();
}

} // namespace

FileComparisonView::FileComparisonView(const FilePath& left, const FilePath& right, QWidget* parent)
    : QWidget(parent), m_left(left), m_right(right)
{
    setFocusPolicy(Qt::StrongFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_headline = new QLabel(QStringLiteral("Comparing…"), this);
    QFont bold = m_headline->font();
    bold.setBold(true);
    m_headline->setFont(bold);
    layout->addWidget(m_headline);
    m_stack = new QStackedWidget(this);
    m_placeholder = new QLabel(this);
    m_placeholder->setAlignment(Qt::AlignCenter);
    m_placeholder->setForegroundRole(QPalette::PlaceholderText);
    m_unified = new QPlainTextEdit(this);
    m_unified->setReadOnly(true);
    m_unified->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_unified->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_columns = new QTextBrowser(this);
    m_columns->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_columns->setLineWrapMode(QTextEdit::NoWrap);
    m_stack->addWidget(m_placeholder);
    m_stack->addWidget(m_unified);
    m_stack->addWidget(m_columns);
    layout->addWidget(m_stack, 1);

    const TaskSlot::Ticket ticket = m_task.start();
    runInBackground(this, [left, right, token = ticket.token] { return work(left, right, *token); },
                    [this, ticket](Outcome outcome) {
        if (!m_task.isCurrent(ticket))
            return;
        m_task.finish(ticket);
        show(std::move(outcome));
        Q_EMIT compared();
    });
}

FileComparisonView::~FileComparisonView() { stop(); }

FileComparisonView::Outcome FileComparisonView::work(const FilePath& left, const FilePath& right, const CancelFlag& cancel)
{
    Outcome outcome;
    outcome.sameBytes = equalBytes(left, right, cancel);
    if (outcome.sameBytes && !*outcome.sameBytes && !cancel.isCancelled()) {
        outcome.diff = DiffText::diffFiles(left, right);
        if (outcome.diff) {
            QFile a(left.text()), b(right.text());
            if (a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly)) {
                outcome.leftLines = DiffText::linesOf(QString::fromUtf8(a.read(DiffText::kMaxBytes)));
                outcome.rightLines = DiffText::linesOf(QString::fromUtf8(b.read(DiffText::kMaxBytes)));
            }
        }
    }
    return outcome;
}

QString FileComparisonView::headline() const
{
    if (!m_sameBytes)
        return m_task.isRunning() ? QStringLiteral("Comparing…") : QStringLiteral("Couldn’t read these files");
    return *m_sameBytes ? QStringLiteral("These files are identical") : QStringLiteral("Different contents");
}

void FileComparisonView::show(Outcome outcome)
{
    m_sameBytes = outcome.sameBytes;
    m_diff = std::move(outcome.diff);
    m_leftLines = std::move(outcome.leftLines);
    m_rightLines = std::move(outcome.rightLines);
    m_headline->setText(headline());
    if (!m_sameBytes || *m_sameBytes) {
        m_placeholder->setText(m_sameBytes ? QStringLiteral("Identical contents") : QString());
        m_stack->setCurrentWidget(m_placeholder);
        Q_EMIT footerChanged(QStringLiteral("Esc closes"));
        return;
    }
    if (!m_diff) {
        m_placeholder->setText(QStringLiteral("These aren't text files: no text diff to show."));
        m_stack->setCurrentWidget(m_placeholder);
        Q_EMIT footerChanged(QStringLiteral("Esc closes"));
        return;
    }
    setSideBySide(m_sideBySide);
}

void FileComparisonView::setSideBySide(bool on)
{
    m_sideBySide = on;
    if (!m_diff)
        return;
    if (m_diff->diff.isEmpty()) {
        m_placeholder->setText(m_diff->emptyMessage);
        m_stack->setCurrentWidget(m_placeholder);
    } else if (on) {
        fillSideBySide();
        m_stack->setCurrentWidget(m_columns);
    } else {
        fillUnified();
        m_stack->setCurrentWidget(m_unified);
    }
    Q_EMIT footerChanged(on ? QStringLiteral("Side by side · V shows the unified diff · Esc closes")
                            : QStringLiteral("Unified diff · V shows the two side by side · Esc closes"));
    m_stack->currentWidget()->setFocus();
}

void FileComparisonView::fillUnified()
{
    m_unified->setPlainText(m_diff->diff);
    // Each line in its kind's colour.
    for (QTextBlock block = m_unified->document()->firstBlock(); block.isValid(); block = block.next()) {
        QTextCursor cursor(block);
        cursor.select(QTextCursor::BlockUnderCursor);
        QTextCharFormat format;
        format.setForeground(colorOf(DiffText::kind(block.text())));
        cursor.setPosition(block.position());
        cursor.setPosition(block.position() + block.length() - 1, QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(format);
    }
}

void FileComparisonView::fillSideBySide()
{
    const QColor removedTint = theme::negative().lighter(170);
    const QColor addedTint = theme::positive().lighter(170);
    QString html = QStringLiteral("<table width=\"100%\" cellspacing=\"0\" cellpadding=\"1\" style=\"white-space:pre\">");
    const std::vector<DiffText::Row> rows = DiffText::sideBySide(m_leftLines, m_rightLines);
    // Only the changes and a few lines around each, as the unified diff shows them.
    std::vector<bool> near(rows.size(), false);
    for (size_t i = 0; i < rows.size(); ++i)
        if (rows[i].differs)
            for (size_t j = i >= size_t(DiffText::kContextLines) ? i - DiffText::kContextLines : 0;
                 j < std::min(rows.size(), i + DiffText::kContextLines + 1); ++j)
                near[j] = true;
    bool gap = false;
    for (size_t i = 0; i < rows.size(); ++i) {
        if (!near[i]) {
            gap = true;
            continue;
        }
        if (std::exchange(gap, false))
            html += QStringLiteral("<tr><td colspan=\"4\" style=\"color:%1\">⋯</td></tr>").arg(theme::dimText().name());
        const DiffText::Row& row = rows[i];
        const QString left = row.left ? m_leftLines[*row.left] : QString();
        const QString right = row.right ? m_rightLines[*row.right] : QString();
        QString leftHtml = left.toHtmlEscaped(), rightHtml = right.toHtmlEscaped();
        if (row.differs && row.left && row.right) {
            const auto [l, r] = DiffText::changedWords(left, right);
            leftHtml = marked(left, l, removedTint);
            rightHtml = marked(right, r, addedTint);
        }
        const QString number = QStringLiteral("<td style=\"color:%1\" align=\"right\">%2&nbsp;</td>").arg(theme::dimText().name());
        auto cell = [&row](const QString& content, const QColor& color) {
            const QString style = row.differs ? QStringLiteral(" style=\"color:%1\"").arg(color.name()) : QString();
            return QStringLiteral("<td width=\"50%\"") + style + QLatin1Char('>') + content + QStringLiteral("</td>");
        };
        html += QStringLiteral("<tr>") + number.arg(row.left ? QString::number(*row.left + 1) : QString())
              + cell(leftHtml, theme::negative()) + number.arg(row.right ? QString::number(*row.right + 1) : QString())
              + cell(rightHtml, theme::positive()) + QStringLiteral("</tr>");
    }
    m_columns->setHtml(html + QStringLiteral("</table>"));
}

void FileComparisonView::keyPressEvent(QKeyEvent* event)
{
    if (ViewKeys::matches(ViewKeyAction::compareSideBySide, event->keyCombination())) {
        setSideBySide(!m_sideBySide);
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace orwick
