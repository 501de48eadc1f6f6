#include "ui/git/StashPanel.h"

#include "git/Git.h"
#include "state/WindowState.h"
#include "ui/git/ActiveRepository.h"
#include "ui/git/ProblemLabel.h"
#include "ui/text/LiteralText.h"

#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace orwick {

namespace t = gittexts;

PanelSheet* StashPanel::open(WindowState& window, QWidget* parent)
{
    const std::optional<ActiveRepository> repository = takeActiveRepository(window, parent);
    if (!repository)
        return nullptr;
    return new StashPanel(window, *repository->git, repository->root, parent);
}

StashPanel::StashPanel(WindowState& window, Git& git, const FilePath& root, QWidget* parent)
    : PanelSheet(QStringLiteral("Stashes"), root.abbreviated(), parent), m_window(window), m_actions(git), m_root(root)
{
    m_list = new QListWidget(this);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->installEventFilter(this);
    body()->addWidget(m_list, 1);
    m_problem = makeProblemLabel(this);
    body()->addWidget(m_problem);
    setFooter(QStringLiteral("Return applies · P pops (applies and removes) · Delete deletes · Esc closes"));
    reload();
    present(m_list);
}

QString StashPanel::problem() const { return m_problem->isHidden() ? QString() : m_problem->text(); }

void StashPanel::reload()
{
    ++m_working;
    m_actions.stashes(m_root, this, [this](Result<QList<GitStash>> stashes) {
        --m_working;
        const int row = std::max(0, m_list->currentRow());
        m_list->clear();
        m_stashes = stashes ? *stashes : QList<GitStash>();
        if (!stashes) {
            m_problem->setText(stashes.error());
            m_problem->show();
        }
        const QLocale locale;
        for (const GitStash& stash : m_stashes) {
            QString text = stash.message;
            if (stash.date)
                text += QStringLiteral("   ") + locale.toString(*stash.date, QLocale::ShortFormat);
            auto* item = new QListWidgetItem(literalText(text), m_list);
            item->setToolTip(stash.ref);
        }
        if (m_list->count() > 0)
            m_list->setCurrentRow(std::min(row, m_list->count() - 1));
        else
            setFooter(QStringLiteral("No stashes"));
    });
}

GitActions::Finished StashPanel::finished()
{
    ++m_working;
    return [this](GitOutcome outcome) {
        --m_working;
        m_problem->setText(outcome.ok ? QString() : outcome.text());
        m_problem->setVisible(!outcome.ok);
        if (outcome.ok && !outcome.message.isEmpty())
            Q_EMIT m_window.messageRequested(outcome.message);
        reload();
    };
}

void StashPanel::apply(bool pop)
{
    const int row = m_list->currentRow();
    if (row >= 0 && row < m_stashes.size())
        m_actions.applyStash(m_root, m_stashes[row].ref, pop, this, finished());
}

void StashPanel::drop()
{
    const int row = m_list->currentRow();
    if (row < 0 || row >= m_stashes.size())
        return;
    const GitStash stash = m_stashes[row];
    auto* ask = new QMessageBox(QMessageBox::Warning, t::dropStashQuestion(), t::dropStashQuestion(), QMessageBox::Cancel, this);
    ask->setInformativeText(literalText(t::dropStashExplanation(stash.message)));
    QPushButton* remove = ask->addButton(QStringLiteral("Delete"), QMessageBox::DestructiveRole);
    ask->setDefaultButton(QMessageBox::Cancel);
    ask->setAttribute(Qt::WA_DeleteOnClose);
    connect(ask, &QMessageBox::finished, this, [this, ask, remove, stash] {
        if (ask->clickedButton() == remove)
            m_actions.dropStash(m_root, stash.ref, this, finished());
    });
    ask->open();
}

bool StashPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_list && (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride)) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->modifiers() != Qt::NoModifier && key->modifiers() != Qt::KeypadModifier)
            return PanelSheet::eventFilter(watched, event);
        const int k = key->key();
        const bool ours = k == Qt::Key_Return || k == Qt::Key_Enter || k == Qt::Key_P || k == Qt::Key_Delete || k == Qt::Key_Backspace;
        if (!ours)
            return PanelSheet::eventFilter(watched, event);
        // Ours before the window's own Return (Open) and Delete (Move to Trash).
        if (event->type() == QEvent::ShortcutOverride) {
            event->accept();
            return true;
        }
        if (k == Qt::Key_P)
            apply(true);
        else if (k == Qt::Key_Delete || k == Qt::Key_Backspace)
            drop();
        else
            apply(false);
        return true;
    }
    return PanelSheet::eventFilter(watched, event);
}

} // namespace orwick
