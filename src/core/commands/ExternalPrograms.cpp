#include "commands/ExternalPrograms.h"

#include "app/Settings.h"

#include <QStandardPaths>

namespace orwick {

namespace {

using Program = ExternalPrograms::Program;

struct Known {
    const char* command;
    const char* name;
};

// Editors that draw in a terminal; they are opened inside the terminal in use.
bool drawsInTerminal(const QString& command)
{
    static const QStringList terminalEditors{"vi", "vim", "nvim", "nano", "micro", "hx", "helix", "emacs", "kak", "ne"};
    return terminalEditors.contains(command);
}

void addUnlessFound(QList<Program>& found, Program program)
{
    for (const Program& known : found)
        if (known.executable == program.executable || known.id == program.id)
            return;
    found.append(std::move(program));
}

// The programs named by environment variables (a command, perhaps with arguments), then the
// known ones, each once.
QList<Program> findInstalled(std::initializer_list<const char*> variables, std::initializer_list<Known> known)
{
    QList<Program> found;
    for (const char* variable : variables) {
        const QString command = qEnvironmentVariable(variable).trimmed().section(QLatin1Char(' '), 0, 0);
        if (command.isEmpty())
            continue;
        const QString executable = QStandardPaths::findExecutable(command);
        if (executable.isEmpty())
            continue;
        const QString id = executable.section(QLatin1Char('/'), -1);
        QString name = id;
        for (const Known& entry : known)
            if (id == QLatin1StringView(entry.command))
                name = QString::fromUtf8(entry.name);
        addUnlessFound(found, {id, name, executable, drawsInTerminal(id)});
    }
    for (const Known& entry : known) {
        const QString id = QString::fromLatin1(entry.command);
        if (const QString executable = QStandardPaths::findExecutable(id); !executable.isEmpty())
            addUnlessFound(found, {id, QString::fromUtf8(entry.name), executable, drawsInTerminal(id)});
    }
    return found;
}

} // namespace

ExternalPrograms::ExternalPrograms(QObject* parent) : QObject(parent)
{
    m_editors = findInstalled({"VISUAL", "EDITOR"}, {{"code", "VS Code"}, {"codium", "VSCodium"}, {"cursor", "Cursor"}, {"zed", "Zed"},
                                                     {"subl", "Sublime Text"}, {"kate", "Kate"}, {"gnome-text-editor", "Text Editor"},
                                                     {"gedit", "gedit"}});
    m_terminals = findInstalled({"TERMINAL"}, {{"x-terminal-emulator", "Terminal"}, {"gnome-terminal", "GNOME Terminal"},
                                               {"konsole", "Konsole"}, {"alacritty", "Alacritty"}, {"kitty", "kitty"},
                                               {"wezterm", "WezTerm"}, {"foot", "foot"}, {"xterm", "XTerm"}});
    const auto settings = openSettings();
    m_preferredEditor = installedOrEmpty(m_editors, settings->value(QLatin1StringView(editorKey)).toString());
    m_preferredTerminal = installedOrEmpty(m_terminals, settings->value(QLatin1StringView(terminalKey)).toString());
}

void ExternalPrograms::setPreferredEditor(const QString& id) { store(editorKey, m_preferredEditor, m_editors, id); }
void ExternalPrograms::setPreferredTerminal(const QString& id) { store(terminalKey, m_preferredTerminal, m_terminals, id); }

void ExternalPrograms::store(const char* key, QString& field, const QList<Program>& installed, const QString& id)
{
    const QString preferred = installedOrEmpty(installed, id);
    if (preferred == field)
        return;
    field = preferred;
    openSettings()->setValue(QLatin1StringView(key), preferred);
    Q_EMIT changed();
}

ExternalPrograms::Program ExternalPrograms::chosen(const QList<Program>& installed, const QString& preferred)
{
    for (const Program& program : installed)
        if (program.id == preferred)
            return program;
    return installed.isEmpty() ? Program{} : installed.first();
}

QString ExternalPrograms::installedOrEmpty(const QList<Program>& installed, const QString& id)
{
    for (const Program& program : installed)
        if (program.id == id)
            return id;
    return {};
}

} // namespace orwick

#include "moc_ExternalPrograms.cpp"
