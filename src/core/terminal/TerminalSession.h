#pragma once
// TerminalSession: one shell in the terminal panel — the program on its pseudo-terminal
// (PtyProcess), the screen that shows its output (TerminalScreen), the folder it reports
// (FolderReports), and the bytes waiting to be written to it.
//
// Output is read on a socket notifier, at most a time slice's worth per wake-up, so a flood of
// output never holds the GUI thread; input is written as the program takes it, so a paste into
// a program that doesn't read waits in memory instead of blocking. GUI thread only.
//
// The shell's folder follows its reports (OSC 7) and, for shells that send none, the folder the
// kernel says the shell works in: looked at after output, it is taken when it changed since it
// was last looked at (a `cd` ran) and isn't the reported folder with its links resolved.
//
// Signals: outputArrived() follows every slice of output fed to the screen (views repaint on
// their next frame, not on each); folderReported() follows each new folder of the shell, reported
// or found, in order (not one it was sent to); titleChanged() follows each change of title() or
// folder(); finished() comes once, after the shell has ended and its last output was read, with
// its status as a shell gives it (the exit code, or 128 + the signal). A session that could not
// start is finished at once, its reason in failure().

#include "base/FilePath.h"
#include "terminal/FolderReports.h"
#include "terminal/TerminalScreen.h"

#include <QObject>
#include <QUuid>
#include <memory>
#include <optional>

class QSocketNotifier;

namespace orwick {

class PtyProcess;

class TerminalSession : public QObject {
    Q_OBJECT
public:
    struct Options {
        FilePath folder;                         // where the shell starts
        std::optional<QList<QByteArray>> command; // program and arguments; the login shell when absent
        int rows = 24, cols = 80;
        int scrollbackLines = Scrollback::kDefaultCapacity;
    };
    explicit TerminalSession(const Options& options, QObject* parent = nullptr);
    ~TerminalSession() override;

    QUuid id() const { return m_id; }
    TerminalScreen& screen() { return *m_screen; }
    const TerminalScreen& screen() const { return *m_screen; }
    bool isRunning() const { return !m_status.has_value(); }
    std::optional<int> exitStatus() const { return m_status; }
    QString failure() const { return m_failure; }
    pid_t pid() const;
    // The folder the shell last reported (OSC 7), was found in or was sent to, else the one it
    // started in.
    FilePath folder() const { return m_folder; }
    // The window title the program set, else the shell's folder's name.
    QString title() const;

    // Bytes for the program, written as it reads them.
    void write(QByteArrayView bytes);
    void sendText(const QString& text, int modifiers = 0) { m_screen->sendText(text, modifiers); }
    void sendKey(TerminalKey key, int modifiers = 0, int functionNumber = 0) { m_screen->sendKey(key, modifiers, functionNumber); }
    void paste(const QString& text) { m_screen->paste(text); }
    qsizetype pendingInput() const { return m_pending.size() - m_pendingOffset; }

    // Resizes the screen and tells the program (SIGWINCH).
    void resize(int rows, int cols);

    // The shell waits at its prompt: no program of its runs in the foreground, so what is typed
    // goes to the shell itself.
    bool isIdleAtPrompt() const;
    // Types `cd -- 'FOLDER'` when the shell is idle at its prompt and elsewhere; false when it
    // didn't (busy, ended, already there, or a folder that can't be typed safely).
    bool changeDirectory(const FilePath& folder);

    // Ends the shell: SIGHUP to its process group.
    void hangUp();

Q_SIGNALS:
    void outputArrived();
    void folderReported(const FilePath& folder);
    void titleChanged();
    void finished(int status);

private:
    void readOutput();
    // Takes the shell's working folder when a `cd` changed it.
    void followWorkingFolder();
    // Says titleChanged() when title() or folder() is not what it was.
    void announceTitle();
    void writePending();
    void shellEnded();
    void finish(int status);

    QUuid m_id = QUuid::createUuid();
    std::unique_ptr<TerminalScreen> m_screen;
    std::unique_ptr<PtyProcess> m_process;
    FolderReports m_reports;
    QSocketNotifier* m_readNotifier = nullptr;
    QSocketNotifier* m_writeNotifier = nullptr;
    QSocketNotifier* m_exitNotifier = nullptr;
    QByteArray m_pending;
    qsizetype m_pendingOffset = 0;
    std::optional<int> m_status;
    QString m_failure;
    QString m_announcedTitle;
    FilePath m_announcedFolder;
    FilePath m_folder;
    QByteArray m_workingFolder; // as last looked at, links resolved
    bool m_outputClosed = false;
};

} // namespace orwick
