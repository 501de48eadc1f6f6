#pragma once
// ExternalPrograms: the code editor and the terminal Orwick hands files and folders to ("Open in
// …"). The installed ones are found when the object is made: for editors $VISUAL, $EDITOR, then
// a list of known editors; for terminals $TERMINAL, then a list of known terminals; each looked
// up on PATH. The first one found is the automatic choice.
//
// The user may prefer one of the installed ones; the choice is kept in the settings store under
// "preferredEditor" and "preferredTerminal" as the program's command name ("code", "kitty"),
// empty meaning automatic. A stored name that is not installed (uninstalled since, or a damaged
// file) counts as automatic.
//
// One per program, made by main and reached through services().programs; lives on the GUI
// thread. Signals: changed() follows every change of a preference.

#include <QList>
#include <QObject>
#include <QString>

namespace orwick {

class ExternalPrograms : public QObject {
    Q_OBJECT
public:
    struct Program {
        QString id;         // the command name, as kept in the settings store
        QString name;       // as the user knows it ("VS Code")
        QString executable; // absolute path; empty when there is no program
        bool needsTerminal = false; // a terminal editor (vim, nano…) runs inside the terminal
        bool isEmpty() const { return executable.isEmpty(); }
    };

    static constexpr const char* editorKey = "preferredEditor";
    static constexpr const char* terminalKey = "preferredTerminal";

    // Looks the programs up on the PATH of the moment and reads the preferences.
    explicit ExternalPrograms(QObject* parent = nullptr);

    // The installed ones, automatic choice first.
    const QList<Program>& editors() const { return m_editors; }
    const QList<Program>& terminals() const { return m_terminals; }

    // The preferred program's id; empty for automatic.
    QString preferredEditor() const { return m_preferredEditor; }
    QString preferredTerminal() const { return m_preferredTerminal; }
    // Stores the preference; an id that is not installed means automatic.
    void setPreferredEditor(const QString& id);
    void setPreferredTerminal(const QString& id);

    // The program in use: the preferred one, else the first found; empty when none is installed.
    Program editor() const { return chosen(m_editors, m_preferredEditor); }
    Program terminal() const { return chosen(m_terminals, m_preferredTerminal); }

Q_SIGNALS:
    void changed();

private:
    static Program chosen(const QList<Program>& installed, const QString& preferred);
    static QString installedOrEmpty(const QList<Program>& installed, const QString& id);
    void store(const char* key, QString& field, const QList<Program>& installed, const QString& id);

    QList<Program> m_editors;
    QList<Program> m_terminals;
    QString m_preferredEditor;
    QString m_preferredTerminal;
};

} // namespace orwick
