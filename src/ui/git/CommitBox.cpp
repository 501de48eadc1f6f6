#include "ui/git/CommitBox.h"

#include "git/GitTexts.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>

namespace orwick {

CommitBox::CommitBox(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    m_editor = new QPlainTextEdit(this);
    m_editor->setPlaceholderText(QStringLiteral("Commit message (Ctrl+Return commits)"));
    m_editor->setTabChangesFocus(true);
    m_editor->setFixedHeight(m_editor->fontMetrics().height() * 4 + 12);
    m_editor->installEventFilter(this);
    layout->addWidget(m_editor);

    auto* row = new QHBoxLayout;
    m_amend = new QCheckBox(QStringLiteral("Amend Last Commit"), this);
    m_amend->setToolTip(QStringLiteral("Replace the last commit with one that also holds what is staged"));
    connect(m_amend, &QCheckBox::clicked, this, [this](bool on) {
        updateButton();
        Q_EMIT amendToggled(on);
    });
    m_commit = new QPushButton(QStringLiteral("Commit"), this);
    m_commit->setToolTip(QStringLiteral("Commit what is staged (Ctrl+Return)"));
    connect(m_commit, &QPushButton::clicked, this, &CommitBox::requestCommit);
    connect(m_editor, &QPlainTextEdit::textChanged, this, &CommitBox::updateButton);
    row->addWidget(m_amend);
    row->addStretch(1);
    row->addWidget(m_commit);
    layout->addLayout(row);
    updateButton();
}

QString CommitBox::message() const { return m_editor->toPlainText(); }

void CommitBox::setMessage(const QString& message)
{
    m_editor->setPlainText(message);
    m_editor->moveCursor(QTextCursor::End);
}

bool CommitBox::amends() const { return m_amend->isChecked(); }

void CommitBox::setAmends(bool amends)
{
    m_amend->setChecked(amends);
    updateButton();
}

void CommitBox::setCanCommit(bool can)
{
    m_canCommit = can;
    updateButton();
}

void CommitBox::setBusy(bool busy)
{
    m_busy = busy;
    updateButton();
}

void CommitBox::requestCommit()
{
    if (m_busy)
        return; // the commit under way answers for itself
    if (!m_canCommit && !amends())
        Q_EMIT commitRefused(gittexts::nothingStaged());
    else if (message().trimmed().isEmpty())
        Q_EMIT commitRefused(gittexts::noCommitMessage());
    else
        Q_EMIT commitRequested();
}

void CommitBox::updateButton()
{
    const bool hasMessage = !message().trimmed().isEmpty();
    m_commit->setEnabled(!m_busy && hasMessage && (m_canCommit || amends()));
    m_commit->setText(amends() ? QStringLiteral("Amend") : QStringLiteral("Commit"));
}

bool CommitBox::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_editor && (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride)) {
        auto* key = static_cast<QKeyEvent*>(event);
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && (key->modifiers() & Qt::ControlModifier)) {
            // Ours before the window's own Ctrl+Return (Open in New Tab).
            if (event->type() == QEvent::ShortcutOverride)
                event->accept();
            else
                requestCommit();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace orwick
