#include "ui/git/BranchPanel.h"

#include "base/FuzzyMatch.h"
#include "git/Git.h"
#include "state/WindowState.h"
#include "ui/git/ActiveRepository.h"
#include "ui/git/ProblemLabel.h"
#include "ui/text/LiteralText.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace orwick {

namespace t = gittexts;

PanelSheet* BranchPanel::open(WindowState& window, QWidget* parent, Mode mode)
{
    const std::optional<ActiveRepository> repository = takeActiveRepository(window, parent);
    if (!repository)
        return nullptr;
    return new BranchPanel(window, *repository->git, repository->root, mode, parent);
}

BranchPanel::BranchPanel(WindowState& window, Git& git, const FilePath& root, Mode mode, QWidget* parent)
    : PanelSheet(mode == Mode::switchBranch ? QStringLiteral("Switch Branch") : QStringLiteral("New Branch"), root.abbreviated(),
                 parent),
      m_window(window), m_actions(git), m_root(root), m_mode(mode)
{
    m_field = new QLineEdit(this);
    m_field->setPlaceholderText(mode == Mode::switchBranch ? QStringLiteral("Filter branches") : QStringLiteral("Branch name"));
    m_field->installEventFilter(this);
    body()->addWidget(m_field);
    m_note = new QLabel(this);
    m_note->setForegroundRole(QPalette::PlaceholderText);
    m_note->setWordWrap(true);
    body()->addWidget(m_note);
    m_problem = makeProblemLabel(this);
    body()->addWidget(m_problem);
    if (mode == Mode::switchBranch) {
        m_list = new QListWidget(this);
        m_list->setFocusPolicy(Qt::NoFocus);
        m_list->setFrameShape(QFrame::NoFrame);
        connect(m_list, &QListWidget::itemActivated, this, &BranchPanel::accept);
        body()->addWidget(m_list, 1);
        connect(m_field, &QLineEdit::textChanged, this, &BranchPanel::filter);
        setFooter(QStringLiteral("Most recent first · Return switches · Esc closes"));
        m_note->setText(QStringLiteral("Reading the branches…"));
        m_actions.branches(m_root, this, [this](Result<QList<GitBranch>> branches) {
            m_loaded = true;
            m_note->clear();
            if (!branches) {
                showProblem(branches.error());
                return;
            }
            m_branches = *branches;
            filter();
        });
    } else {
        body()->addStretch(1);
        m_note->setText(t::newBranchExplanation());
        connect(m_field, &QLineEdit::textChanged, this, &BranchPanel::check);
        setFooter(QStringLiteral("Return makes the branch and switches to it · Esc closes"));
        m_loaded = true;
    }
    present(m_field);
}

QStringList BranchPanel::shownBranches() const
{
    QStringList names;
    for (int i = 0; m_list && i < m_list->count(); ++i)
        names << m_list->item(i)->data(Qt::UserRole).toString();
    return names;
}

QString BranchPanel::problem() const { return m_problem->isHidden() ? QString() : m_problem->text(); }

void BranchPanel::showProblem(const QString& text)
{
    m_problem->setText(text);
    m_problem->setVisible(!text.isEmpty());
}

void BranchPanel::filter()
{
    const QString query = m_field->text();
    QList<std::pair<int, const GitBranch*>> matches; // score, branch; git's order kept among equals
    for (const GitBranch& branch : m_branches)
        if (const std::optional<int> score = FuzzyMatch::score(query, branch.name))
            matches.append({*score, &branch});
    if (!query.trimmed().isEmpty())
        std::stable_sort(matches.begin(), matches.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    m_list->clear();
    for (const auto& [score, branch] : matches) {
        QString text = (branch->isCurrent ? QStringLiteral("● ") : QStringLiteral("   ")) + branch->name;
        if (branch->upstream)
            text += QStringLiteral("   → ") + *branch->upstream;
        auto* item = new QListWidgetItem(literalText(text), m_list);
        item->setData(Qt::UserRole, branch->name);
    }
    if (m_list->count() > 0)
        m_list->setCurrentRow(0);
    m_note->setText(m_branches.isEmpty() ? QStringLiteral("No branches yet: make the first commit.")
                    : matches.isEmpty()  ? QStringLiteral("No branch matches")
                                         : QString());
}

void BranchPanel::check()
{
    const QString name = m_field->text().trimmed();
    if (!name.isEmpty() && !isValidBranchName(name))
        showProblem(t::notABranchName(name) + u'\n' + t::branchNameRule());
    else
        showProblem({});
}

void BranchPanel::accept()
{
    if (m_running)
        return;
    QString name;
    if (m_mode == Mode::switchBranch) {
        if (!m_list->currentItem())
            return;
        name = m_list->currentItem()->data(Qt::UserRole).toString();
    } else {
        name = m_field->text().trimmed();
        if (name.isEmpty() || !isValidBranchName(name)) {
            check();
            return;
        }
    }
    m_running = true;
    auto done = [this, name](GitOutcome outcome) {
        m_running = false;
        if (!outcome) {
            showProblem(outcome.text());
            return;
        }
        Q_EMIT m_window.messageRequested(m_mode == Mode::switchBranch ? QStringLiteral("Switched to ") + name
                                                                      : QStringLiteral("Made the branch ") + name);
        closeSheet();
    };
    if (m_mode == Mode::switchBranch)
        m_actions.switchBranch(m_root, name, this, done);
    else
        m_actions.createBranch(m_root, name, this, done);
}

bool BranchPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_field && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            accept();
            return true;
        }
        if (m_list && (key->key() == Qt::Key_Down || key->key() == Qt::Key_Up)) {
            const int row = m_list->currentRow() + (key->key() == Qt::Key_Down ? 1 : -1);
            if (row >= 0 && row < m_list->count())
                m_list->setCurrentRow(row);
            return true;
        }
    }
    return PanelSheet::eventFilter(watched, event);
}

} // namespace orwick
