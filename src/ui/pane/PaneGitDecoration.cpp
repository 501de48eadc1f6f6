#include "ui/pane/PaneGitDecoration.h"

#include "ui/pane/PaneWidget.h"
#include "ui/pane/StatusLine.h"
#include "ui/theme/Theme.h"
#include "ui/views/FileListModel.h"
#include "ui/views/GitMarks.h"


namespace orwick {

PaneGitDecoration::PaneGitDecoration(PaneWidget* widget, Git* git) : QObject(widget), m_widget(widget), m_git(git)
{
    PaneState* pane = widget->pane();
    widget->model()->addDecorator([self = QPointer(this)](const FileItem& item, int column, int role) {
        return self ? self->decorate(item, column, role) : QVariant();
    });
    connect(pane, &PaneState::loadingChanged, this, &PaneGitDecoration::loadFinished);
    connect(pane, &PaneState::locationChanged, this, &PaneGitDecoration::update);
    connect(git, &Git::statusChanged, this, &PaneGitDecoration::update);
    connect(git, &Git::hidesIgnoredChanged, this, &PaneGitDecoration::update);
    connect(git, &Git::busyChanged, this, &PaneGitDecoration::update); // "main · Pushing…" while an action runs
    update();
    loadFinished();
}

QString PaneGitDecoration::describe(const RepoStatus& status)
{
    if (status.branch.isEmpty())
        return {};
    QString text = status.branch;
    if (status.ahead > 0)
        text += QStringLiteral(" ↑%1").arg(status.ahead);
    if (status.behind > 0)
        text += QStringLiteral(" ↓%1").arg(status.behind);
    if (status.operation)
        text += QStringLiteral(" · ") + *status.operation;
    return text;
}

QVariant PaneGitDecoration::decorate(const FileItem& item, int column, int role) const
{
    switch (role) {
    case GitMarkRole:
    case Qt::ToolTipRole: {
        if (column != FileListModel::NameColumn || !m_git)
            return {};
        const Git::RowMark mark = m_git->rowMark(item.url); // the one lookup per row
        if (mark.change)
            return role == GitMarkRole ? QVariant(int(*mark.change)) : QVariant(changeTooltip(*mark.change));
        if (mark.changesBelow && item.isFolder)
            return role == GitMarkRole ? QVariant(changesBelowMark) : QVariant(changesBelowTooltip());
        return {};
    }
    case Qt::ForegroundRole: {
        if (m_ignored.isEmpty())
            return {};
        // A row of the shown folder is ignored when the folder is, or when it is listed itself.
        const bool ignored = item.url.parent() == m_folder ? m_folderIgnored || m_ignored.paths->contains(item.url)
                                                           : m_ignored.contains(item.url);
        return ignored ? QVariant(theme::dimText()) : QVariant();
    }
    }
    return {};
}

void PaneGitDecoration::loadFinished()
{
    PaneState* pane = m_widget ? m_widget->pane() : nullptr;
    if (pane && m_git && !pane->isLoading() && !pane->listing() && !pane->error())
        m_git->refresh(pane->url());
}

void PaneGitDecoration::update()
{
    if (!m_widget || !m_git)
        return;
    PaneState* pane = m_widget->pane();
    const bool isFolder = !pane->listing();
    const RepoStatus* status = isFolder ? m_git->status(pane->url()) : nullptr;
    m_ignored = status ? status->ignored : IgnoredPaths{};
    m_folder = pane->url();
    m_folderIgnored = m_ignored.contains(m_folder);

    // Tell the pane what to hide only when that changed: each change re-arranges its rows.
    std::shared_ptr<const QSet<FilePath>> hidden;
    if (m_git->hidesIgnored() && !m_ignored.isEmpty())
        hidden = m_ignored.paths;
    const bool same = hidden == m_hidden || (hidden && m_hidden && *hidden == *m_hidden);
    if (!same) {
        m_hidden = hidden;
        pane->setIgnoredPaths(hidden);
    }

    // Where the branch would be, a failed read shows git's reason.
    QString branch = status ? describe(*status) : isFolder ? m_git->statusFailure(pane->url()) : QString();
    if (const QString busy = status ? m_git->busy().value(status->root) : QString(); !busy.isEmpty())
        branch += (branch.isEmpty() ? QString() : QStringLiteral(" · ")) + busy;
    m_widget->statusLine()->setTrailingText(branch);
    m_widget->model()->refreshDecorations();
}

} // namespace orwick
