#pragma once
// NoteParser: what one note holds for the notes layer — its tasks (list items with a checkbox,
// open or done) and its links (Markdown link targets and wiki-link names), and a note's bytes
// with one task flipped (written by the engine: actions::toggleTask). Pure; safe on any thread.

#include "base/FilePath.h"
#include "base/Result.h"

#include <QDate>
#include <QSet>
#include <QStringList>

namespace orwick {

struct NoteTask {
    FilePath note;
    int line = 0;          // 1-based line number in the note
    QString text;          // after the checkbox
    bool isDone = false;
    QStringList mentions;  // wiki names and link targets inside the task's text
    bool operator==(const NoteTask&) const = default;
};

struct NoteParser {
    FilePath note;
    QList<NoteTask> tasks;
    QSet<FilePath> linkedPaths; // local link targets, resolved against the note's folder
    QStringList wikiNames;      // [[name]] targets, before any "|" or "#", in order

    static NoteParser parse(const FilePath& note, const QString& text);
    // Reads the note; a note that can't be read or isn't UTF-8 gives a failure sentence.
    [[nodiscard]] static Result<NoteParser> read(const FilePath& note);
};

// The bytes of a note with the task on `line` (1-based) toggled as TaskDates::toggle does, every
// other byte kept; refused with a sentence when the note isn't UTF-8 or that line isn't a task.
[[nodiscard]] Result<QByteArray> toggleTaskInBytes(const QByteArray& noteBytes, int line, QDate today, const FilePath& note);

} // namespace orwick
