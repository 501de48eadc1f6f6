#include "terminal/TerminalSettingRows.h"

#include "app/Settings.h"

namespace orwick {

namespace {

SettingRow switchRow(const char* key, const char* label, const char* help, bool fallback)
{
    SettingRow row;
    row.key = QString::fromUtf8(key);
    row.label = QString::fromUtf8(label);
    row.help = QString::fromUtf8(help);
    row.kind = SettingRow::Kind::toggle;
    row.isOn = [key, fallback] { return readSettingsBool(*openSettings(), QString::fromUtf8(key), fallback); };
    row.setOn = [key](bool on) { openSettings()->setValue(QString::fromUtf8(key), on); };
    return row;
}

} // namespace

SettingsSection terminalSettingsSection()
{
    SettingsSection section;
    section.title = QStringLiteral("Terminal");
    section.rows = {
        switchRow(settingsKey::terminalFollowsPane, "Terminal follows the pane",
                  "When the pane shows another folder, the terminal’s shell changes to it — only while it waits at its "
                  "prompt, never into a running program.",
                  true),
        switchRow(settingsKey::paneFollowsTerminal, "Pane follows the terminal",
                  "When the shell changes folder, the pane goes there. The shell has to report its folder: for bash add "
                  "PROMPT_COMMAND='printf \"\\e]7;file://%s%s\\a\" \"$HOSTNAME\" \"$PWD\"' to ~/.bashrc; zsh and fish can "
                  "do the same from their prompt.",
                  false),
    };
    return section;
}

} // namespace orwick
