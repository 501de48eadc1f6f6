#pragma once
// ReviewHeader: the top of the review panel — the branch, its upstream and how far ahead and
// behind it is, the label of the git action running (Git::busy), and the banner of a merge,
// rebase or cherry-pick under way with Continue and Abort.
//
// Only draws and forwards input. Signals: continueRequested() and abortRequested() from the
// banner's buttons (the panel asks before aborting).

#include "git/RepoStatus.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace orwick {

class ReviewHeader : public QWidget {
    Q_OBJECT
public:
    explicit ReviewHeader(QWidget* parent = nullptr);

    // The branch line and the banner from the status; `upstream` as the branch list names it.
    void showStatus(const RepoStatus& status, const std::optional<QString>& upstream);
    void setBusy(const QString& label);

    QString branchText() const;
    QString busyText() const;
    // The banner's text; empty when no operation is under way.
    QString bannerText() const;
    QPushButton* continueButton() const { return m_continue; }
    QPushButton* abortButton() const { return m_abort; }

    // "main → origin/main  ↑2 ↓1"; "main (no upstream)"; "No branch" when git names none.
    static QString branchLine(const RepoStatus& status, const std::optional<QString>& upstream);

Q_SIGNALS:
    void continueRequested();
    void abortRequested();

private:
    QLabel* m_branch;
    QLabel* m_busy;
    QWidget* m_banner;
    QLabel* m_bannerText;
    QPushButton* m_continue;
    QPushButton* m_abort;
};

} // namespace orwick
