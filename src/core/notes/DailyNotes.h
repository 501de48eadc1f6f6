#pragma once
// DailyNotes: where the note of a day lives and what a new one starts with. A folder inside an
// Obsidian vault follows the vault's daily-notes settings (".obsidian/daily-notes.json": folder,
// Moment-style format, template); elsewhere the note is "yyyy-MM-dd.md" in the folder itself.
// Pure apart from reading the settings and the template; safe on any thread.

#include "base/FilePath.h"

#include <QDate>
#include <QJsonObject>

namespace orwick::DailyNotes {

struct Settings {
    QString folder;                           // relative to the vault; "" is the vault itself
    QString format = QStringLiteral("YYYY-MM-DD");
    QString templatePath;                     // "template" in JSON; relative to the vault
    static Settings fromJson(const QJsonObject& object);
    bool operator==(const Settings&) const = default;
};

struct Plan {
    FilePath url;  // where the day's note is (or will be)
    QString text;  // what a new one starts with: the template, with {{date}}, {{title}} and {{time}} filled in
    bool exists = false;
};

// The folder itself or its nearest ancestor that holds ".obsidian"; nothing when none does.
std::optional<FilePath> vault(const FilePath& folder);
// The vault's settings; defaults when the file is missing or damaged.
Settings settings(const FilePath& vault);

// Formats a day with a Moment-style pattern (YYYY, YY, MMMM, MMM, MM, M, DD, D, Do, DDDD,
// dddd, ddd, dd, d, E, ww, w, Q, [literal]) in the fixed POSIX locale.
QString format(QDate date, const QString& momentFormat);

Plan plan(const FilePath& folder, QDate date);
// Today's note near `folder`.
inline Plan today(const FilePath& folder) { return plan(folder, QDate::currentDate()); }

} // namespace orwick::DailyNotes
