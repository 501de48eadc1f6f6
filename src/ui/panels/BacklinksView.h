#pragma once
// BacklinksView: the "Linked From" part of the information panel — the notes that link to the
// shown note, one row per linking line: the note's name and line, and that line's text below,
// dimmed. Return or a click on a row asks the owner to show that note (noteActivated). It reads
// BacklinkIndex::shared(), opening the note's vault there, and redraws when the index changes;
// it draws nothing for anything but a Markdown note. Lives on the GUI thread.

#include "base/FilePath.h"

#include <QWidget>

class QLabel;
class QListView;
class QStandardItemModel;

namespace orwick {

class BacklinkIndex;

class BacklinksView : public QWidget {
    Q_OBJECT
public:
    explicit BacklinksView(QWidget* parent = nullptr, BacklinkIndex* index = nullptr);

    // Shows the backlinks of `note`; hides itself for an empty path or a file that isn't a note.
    void showNote(const FilePath& note);
    const FilePath& note() const { return m_note; }

    // What is shown, for tests and screen readers: "Linked From 2 Notes", and one
    // "name:line: text" per row.
    QString headingText() const;
    QStringList rowTexts() const;
    QListView* list() const { return m_list; }

Q_SIGNALS:
    void noteActivated(const orwick::FilePath& note, int line);

private:
    void refresh();

    BacklinkIndex* m_index;
    FilePath m_note;
    QLabel* m_heading;
    QLabel* m_status;
    QListView* m_list;
    QStandardItemModel* m_model;
};

} // namespace orwick
