#include "ui/git/GitReviewPanel.h"

#include "app/Services.h"
#include "async/Background.h"
#include "commands/ExternalPrograms.h"
#include "commands/ViewKeys.h"
#include "git/Git.h"
#include "git/GitRunner.h"
#include "git/WorkingTreeDiff.h"
#include "state/WindowState.h"
#include "ui/git/ActiveRepository.h"
#include "ui/git/CommitBox.h"
#include "ui/git/DiffView.h"
#include "ui/git/ProblemLabel.h"
#include "ui/git/ReviewFileList.h"
#include "ui/git/ReviewHeader.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QSplitter>

namespace orwick {

namespace t = gittexts;

PanelSheet* GitReviewPanel::open(WindowState& window, QWidget* parent)
{
    const std::optional<ActiveRepository> repository = takeActiveRepository(window, parent);
    if (!repository)
        return nullptr;
    return new GitReviewPanel(window, *repository->git, repository->root, parent);
}

GitReviewPanel::GitReviewPanel(WindowState& window, Git& git, const FilePath& root, QWidget* parent)
    : PanelSheet(QStringLiteral("Review Changes"), root.abbreviated(), parent), m_window(window), m_git(&git),
      m_actions(git), m_root(root)
{
    // The status read starts first: git works while the panel is built (the answer comes back
    // through the event loop, after the connections below are made).
    git.refresh(m_root);
    m_header = new ReviewHeader(this);
    body()->addWidget(m_header);

    auto* split = new QSplitter(Qt::Horizontal, this);
    m_list = new ReviewFileList(split);
    auto* right = new QWidget(split);
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->setSpacing(4);
    m_diffTitle = new QLabel(right);
    m_diffTitle->setForegroundRole(QPalette::PlaceholderText);
    rightLayout->addWidget(m_diffTitle);
    m_conflictBar = new QWidget(right);
    auto* conflicts = new QHBoxLayout(m_conflictBar);
    conflicts->setContentsMargins(0, 0, 0, 0);
    auto* ours = new QPushButton(QStringLiteral("Use Ours (O)"), m_conflictBar);
    auto* theirs = new QPushButton(QStringLiteral("Use Theirs (T)"), m_conflictBar);
    auto* edit = new QPushButton(QStringLiteral("Open in Editor (E)"), m_conflictBar);
    ours->setToolTip(QStringLiteral("Keep this branch's version of the file and mark it resolved"));
    theirs->setToolTip(QStringLiteral("Take the other side's version of the file and mark it resolved"));
    connect(ours, &QPushButton::clicked, this, [this] { resolveCurrent(Resolution::ours); });
    connect(theirs, &QPushButton::clicked, this, [this] { resolveCurrent(Resolution::theirs); });
    connect(edit, &QPushButton::clicked, this, &GitReviewPanel::openCurrentInEditor);
    conflicts->addWidget(ours);
    conflicts->addWidget(theirs);
    conflicts->addWidget(edit);
    conflicts->addStretch(1);
    m_conflictBar->hide();
    rightLayout->addWidget(m_conflictBar);
    m_diff = new DiffView(right);
    rightLayout->addWidget(m_diff, 1);
    split->addWidget(m_list);
    split->addWidget(right);
    split->setStretchFactor(0, 1);
    split->setStretchFactor(1, 3);
    split->setSizes({280, 840});
    body()->addWidget(split, 1);

    m_problem = makeProblemLabel(this);
    m_problem->setTextInteractionFlags(Qt::TextSelectableByMouse);
    body()->addWidget(m_problem);

    m_commit = new CommitBox(this);
    body()->addWidget(m_commit);
    setFooter(QStringLiteral("Space stages or unstages · H a hunk · Delete discards · ] [ hunks · Ctrl+Return commits · Esc closes"));

    connect(m_list, &ReviewFileList::currentRowChanged, this, [this] { showCurrentFile(); });
    connect(m_list, &ReviewFileList::spacePressed, this, &GitReviewPanel::toggleCurrentFile);
    connect(m_list, &ReviewFileList::actionPressed, this, [this](ViewKeyAction action) {
        const ReviewRow* row = m_list->currentReviewRow();
        const bool conflicted = row && row->group == ReviewGroup::conflicted;
        if (action == ViewKeyAction::reviewTakeOurs && conflicted)
            resolveCurrent(Resolution::ours);
        else if (action == ViewKeyAction::reviewTakeTheirs && conflicted)
            resolveCurrent(Resolution::theirs);
        else if (action == ViewKeyAction::reviewEdit)
            openCurrentInEditor();
        else if (action == ViewKeyAction::reviewDiscard)
            discardCurrentFile();
    });
    connect(m_diff, &DiffView::pickRequested, this,
            [this](const DiffLineSelection& selection, DiffView::Action action) { applyPick(selection, action == DiffView::Action::discard); });
    connect(m_commit, &CommitBox::commitRequested, this, &GitReviewPanel::commit);
    connect(m_commit, &CommitBox::commitRefused, this, [this](const QString& why) { showProblem(t::couldNotCommit() + u'\n' + why); });
    connect(m_commit, &CommitBox::amendToggled, this, &GitReviewPanel::startAmend);
    connect(m_header, &ReviewHeader::continueRequested, this, &GitReviewPanel::continueOperation);
    connect(m_header, &ReviewHeader::abortRequested, this, &GitReviewPanel::abortOperation);
    connect(&git, &Git::statusChanged, this, [this](const FilePath& changed) {
        if (changed == m_root)
            showStatus();
    });
    connect(&git, &Git::busyChanged, this, [this](const FilePath& changed) {
        if (changed == m_root && m_git)
            m_header->setBusy(m_git->busy().value(m_root));
    });
    m_list->installEventFilter(this);
    m_diff->installEventFilter(this);

    m_header->setBusy(git.busy().value(m_root));
    showStatus();
    present(m_list);
}

GitReviewPanel::~GitReviewPanel() = default;

void GitReviewPanel::stopWork() { ++m_diffGeneration; }

QString GitReviewPanel::problem() const { return m_problem->isHidden() ? QString() : m_problem->text(); }

FilePath GitReviewPanel::pathOf(const ReviewRow& row) const
{
    RepoStatus here; // pathOf needs only the root: the file's own bytes below it
    here.root = m_root;
    return here.pathOf(row.file);
}

void GitReviewPanel::showStatus()
{
    const RepoStatus* status = m_git ? m_git->status(m_root) : nullptr;
    if (!status) {
        const QString failure = m_git ? m_git->statusFailure(m_root) : QString();
        if (!m_git || !m_git->isAvailable())
            showProblem(gitMissingMessage());
        else if (!failure.isEmpty())
            showProblem(t::couldNotRead() + u'\n' + failure);
        m_list->setRows({});
        m_diff->setMessage(m_git && m_git->isRefreshing(m_root) ? QStringLiteral("Reading the repository…") : QString());
        return;
    }
    m_header->showStatus(*status, m_upstreamBranch == status->branch ? m_upstream : std::nullopt);
    QList<ReviewRow> rows = reviewRows(*status);
    const bool anyStaged = std::any_of(rows.begin(), rows.end(), [](const ReviewRow& r) { return r.group == ReviewGroup::staged; });
    m_commit->setCanCommit(anyStaged || status->operation.has_value());
    // The rows go on screen first; the git runs that follow them (the current file's diff, the
    // upstream) start after, so their processes don't take the processor from that paint.
    m_diffAfterRows = true;
    m_list->setRows(std::move(rows)); // emits currentRowChanged: the diff follows
    m_diffAfterRows = false;
    if (m_list->rows().isEmpty())
        m_diff->setMessage(QStringLiteral("Nothing to commit: the working tree is clean."));
    if (m_upstreamBranch != status->branch || status->branch.isEmpty())
        readUpstream();
}

void GitReviewPanel::readUpstream()
{
    const RepoStatus* status = m_git ? m_git->status(m_root) : nullptr;
    if (!status)
        return;
    const QString branch = status->branch;
    m_actions.branches(m_root, this, [this, branch](Result<QList<GitBranch>> branches) {
        m_upstreamBranch = branch;
        m_upstream.reset();
        if (branches)
            for (const GitBranch& b : *branches)
                if (b.isCurrent)
                    m_upstream = b.upstream;
        if (const RepoStatus* now = m_git ? m_git->status(m_root) : nullptr; now && now->branch == branch)
            m_header->showStatus(*now, m_upstream);
    });
}

void GitReviewPanel::showCurrentFile(bool keepPlace)
{
    const ReviewRow* row = m_list->currentReviewRow();
    const quint64 generation = ++m_diffGeneration;
    m_diffIsCurrent = false;
    if (!row) {
        m_diffTitle->clear();
        m_conflictBar->hide();
        if (!m_list->rows().isEmpty())
            m_diff->clear();
        return;
    }
    const ReviewRow current = *row;
    const FilePath file = pathOf(current);
    const QString where = current.group == ReviewGroup::staged     ? QStringLiteral("staged")
                        : current.group == ReviewGroup::untracked  ? QStringLiteral("new, not yet tracked")
                        : current.group == ReviewGroup::conflicted ? QStringLiteral("conflicted")
                                                                   : QStringLiteral("not staged");
    m_diffTitle->setText(current.file.path + QStringLiteral(" — ") + where);
    m_conflictBar->setVisible(current.group == ReviewGroup::conflicted);
    auto show = [this, generation, keepPlace](Result<GitDiff> diff) {
        --m_diffsReading;
        if (generation != m_diffGeneration)
            return;
        if (!diff) {
            m_diff->setMessage(diff.error());
            return;
        }
        const QList<FileDiff> files = parseUnifiedDiff(diff->patch);
        if (files.isEmpty() && diff->note.isEmpty())
            m_diff->setMessage(QStringLiteral("No changes to show"));
        else
            m_diff->setDiff(files.value(0), diff->note, keepPlace);
        m_diffIsCurrent = true;
    };
    ++m_diffsReading;
    auto read = [this, generation, current, file, show] {
        if (generation != m_diffGeneration) { // another file's diff was asked for meanwhile
            --m_diffsReading;
            return;
        }
        if (current.group == ReviewGroup::changed && current.file.isStaged) {
            // What is left to stage: the index against the working tree.
            const std::optional<FilePath> executable = m_git ? m_git->executable() : std::nullopt;
            runInBackground(this, [executable, root = m_root, file] { return workingTreeDiff(executable, root, file); }, show);
        } else {
            m_actions.diff(m_root, file, current.showsStaged(), this, show);
        }
    };
    if (m_diffAfterRows)
        QMetaObject::invokeMethod(this, read, Qt::QueuedConnection);
    else
        read();
}

GitActions::Finished GitReviewPanel::finished(bool reloadDiff)
{
    ++m_actionsRunning;
    return [this, reloadDiff](GitOutcome outcome) {
        --m_actionsRunning;
        report(outcome);
        // The status may come back unchanged (a line staged in a file staged in part already),
        // so the diff is read again here rather than only when the list changes.
        if (reloadDiff)
            showCurrentFile(true);
    };
}

void GitReviewPanel::report(const GitOutcome& outcome)
{
    if (!outcome.ok) {
        showProblem(outcome.text());
        return;
    }
    m_problem->hide();
    if (!outcome.message.isEmpty())
        Q_EMIT m_window.messageRequested(outcome.message);
}

void GitReviewPanel::showProblem(const QString& text)
{
    m_problem->setText(text);
    m_problem->setVisible(!text.isEmpty());
}

void GitReviewPanel::toggleCurrentFile()
{
    const ReviewRow* row = m_list->currentReviewRow();
    if (!row)
        return;
    const QList<FilePath> files{pathOf(*row)};
    if (row->spaceUnstages())
        m_actions.unstage(m_root, files, this, finished());
    else
        m_actions.stage(m_root, files, this, finished());
}

void GitReviewPanel::discardCurrentFile()
{
    const ReviewRow* row = m_list->currentReviewRow();
    const bool renamed = row && !row->file.renamedFrom.isEmpty();
    if (!row || (row->group == ReviewGroup::staged && !renamed))
        return; // staged changes are unstaged first; discarding works on the working tree
    // A rename goes back as a whole: the old name returns and the new one goes.
    RepoStatus here;
    here.root = m_root;
    m_actions.discard(m_root, here.pathsToDiscard(row->file), m_window.undoStack(), this, finished());
}

void GitReviewPanel::applyPick(const DiffLineSelection& selection, bool discard)
{
    const ReviewRow* row = m_list->currentReviewRow();
    // A pick from the diff still on screen while the current file's is read (a hunk key from the
    // list right after a move) would be another file's lines, or lines already staged.
    if (!row || row->group == ReviewGroup::conflicted || !m_diffIsCurrent)
        return;
    if (discard && row->group == ReviewGroup::staged) {
        showProblem(t::couldNotDiscard() + QStringLiteral("\nUnstage the lines first: only what isn't staged is discarded."));
        return;
    }
    const bool staged = row->group == ReviewGroup::staged;
    const QByteArray patch = buildPatch(m_diff->diff(), selection, staged || discard ? PatchDirection::reverse : PatchDirection::forward);
    if (patch.isEmpty())
        return;
    const PatchTarget target = discard ? PatchTarget::discard : staged ? PatchTarget::unstage : PatchTarget::stage;
    m_actions.applyPatch(m_root, patch, target, pathOf(*row), m_window.undoStack(), this, finished());
}

void GitReviewPanel::resolveCurrent(Resolution side)
{
    const ReviewRow* row = m_list->currentReviewRow();
    if (row && row->group == ReviewGroup::conflicted)
        m_actions.resolve(m_root, pathOf(*row), side, this, finished());
}

void GitReviewPanel::openCurrentInEditor()
{
    const ReviewRow* row = m_list->currentReviewRow();
    if (!row)
        return;
    const ExternalPrograms* programs = services().programs;
    const ExternalPrograms::Program editor = programs ? programs->editor() : ExternalPrograms::Program{};
    if (editor.isEmpty()) {
        showProblem(QStringLiteral("No code editor was found. Choose one in Customize…"));
        return;
    }
    QStringList arguments{pathOf(*row).text()};
    QString program = editor.executable;
    if (editor.needsTerminal && programs && !programs->terminal().isEmpty()) {
        arguments.prepend(editor.executable);
        arguments.prepend(QStringLiteral("-e"));
        program = programs->terminal().executable;
    }
    if (!QProcess::startDetached(program, arguments, m_root.text()))
        showProblem(QStringLiteral("Couldn’t open “%1” in %2").arg(row->file.path, editor.name));
}

void GitReviewPanel::commit()
{
    const QString message = m_commit->message().trimmed();
    if (message.isEmpty())
        return;
    m_commit->setBusy(true);
    ++m_actionsRunning;
    m_actions.commit(m_root, message, m_commit->amends(), this, [this](GitOutcome outcome) {
        --m_actionsRunning;
        m_commit->setBusy(false);
        report(outcome);
        if (outcome.ok) {
            m_commit->setMessage({});
            m_commit->setAmends(false);
            if (outcome.message.isEmpty())
                Q_EMIT m_window.messageRequested(QStringLiteral("Committed"));
        }
    });
}

void GitReviewPanel::startAmend(bool on)
{
    if (!on || !m_commit->message().trimmed().isEmpty())
        return;
    m_actions.lastCommitMessage(m_root, this, [this](Result<QString> message) {
        if (message && m_commit->amends() && m_commit->message().trimmed().isEmpty())
            m_commit->setMessage(*message);
        else if (!message)
            showProblem(message.error());
    });
}

void GitReviewPanel::continueOperation() { m_actions.continueOperation(m_root, this, finished()); }

void GitReviewPanel::abortOperation()
{
    const RepoStatus* status = m_git ? m_git->status(m_root) : nullptr;
    const QString operation = status && status->operation ? *status->operation : QString();
    auto* ask = new QMessageBox(QMessageBox::Warning, QStringLiteral("Abort %1?").arg(operation.toLower()),
                                QStringLiteral("Abort %1?").arg(operation.toLower()), QMessageBox::Cancel, this);
    ask->setInformativeText(t::abortExplanation());
    QPushButton* abort = ask->addButton(QStringLiteral("Abort"), QMessageBox::DestructiveRole);
    ask->setDefaultButton(QMessageBox::Cancel);
    ask->setAttribute(Qt::WA_DeleteOnClose);
    connect(ask, &QMessageBox::finished, this, [this, ask, abort] {
        if (ask->clickedButton() == abort)
            m_actions.abortOperation(m_root, this, finished());
    });
    ask->open();
}

bool GitReviewPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_list && watched != m_diff)
        return PanelSheet::eventFilter(watched, event);
    using A = ViewKeyAction;
    // The list and the diff answer their keys themselves, before any of the window's shortcuts
    // (Delete would otherwise move the pane's selection to the Trash, Ctrl+Return open a tab).
    const auto* key = dynamic_cast<const QKeyEvent*>(event);
    const std::optional<A> action = key ? ViewKeys::actionFor(KeyedView::review, key->keyCombination()) : std::nullopt;
    if (event->type() == QEvent::ShortcutOverride && action) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress && action) {
        const bool plain = !(key->modifiers() & ~Qt::KeypadModifier);
        if (action == A::reviewCommit) {
            m_commit->requestCommit();
            return true;
        }
        if (watched == m_list && (action == A::reviewStageHunk || action == A::reviewNextHunk || action == A::reviewPreviousHunk)) {
            // The current file's diff answers, and the keyboard stays on the list.
            QCoreApplication::sendEvent(m_diff, event);
            return true;
        }
        if (watched == m_list && plain && action == A::reviewToDiff) {
            m_diff->setFocus(Qt::TabFocusReason);
            return true;
        }
        if (watched == m_diff && plain && action == A::reviewToFiles) {
            m_list->setFocus(Qt::BacktabFocusReason);
            return true;
        }
    }
    return PanelSheet::eventFilter(watched, event);
}

} // namespace orwick
