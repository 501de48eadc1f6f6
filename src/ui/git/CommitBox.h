#pragma once
// CommitBox: the review panel's commit message, the "Amend Last Commit" switch and the Commit
// button. Ctrl+Return in the message (or anywhere in the panel, which forwards it) asks to
// commit; Tab leaves the message instead of typing a tab.
//
// Only draws and forwards input. Signals: commitRequested() when the button or Ctrl+Return asks
// and there is a message; commitRefused(why) when Ctrl+Return asks while there is nothing to
// commit or no message, with the reason in GitTexts' words (nothing is said while a commit runs);
// amendToggled(on) when the switch changes by the user's hand (the panel then fills in the last
// commit's message, since an amend usually starts from it).

#include <QWidget>

class QCheckBox;
class QPlainTextEdit;
class QPushButton;

namespace orwick {

class CommitBox : public QWidget {
    Q_OBJECT
public:
    explicit CommitBox(QWidget* parent = nullptr);

    QString message() const;
    void setMessage(const QString& message);
    bool amends() const;
    void setAmends(bool amends);
    // Whether Commit can be pressed (there is something staged, or amending) and the busy state.
    void setCanCommit(bool can);
    void setBusy(bool busy);
    QPlainTextEdit* editor() const { return m_editor; }
    QPushButton* commitButton() const { return m_commit; }
    // Asks to commit, as Ctrl+Return does: commitRequested() or commitRefused(why).
    void requestCommit();

Q_SIGNALS:
    void commitRequested();
    void commitRefused(const QString& why);
    void amendToggled(bool on);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void updateButton();

    QPlainTextEdit* m_editor;
    QCheckBox* m_amend;
    QPushButton* m_commit;
    bool m_canCommit = false;
    bool m_busy = false;
};

} // namespace orwick
