#pragma once
// PathCompletion: the palette's path mode. Turns typed text ("~/Pro", "/etc/", "src/ma") into
// rows — the path itself as "Go to …", or one disabled row when nothing is there, followed by
// the sub-folders of the typed parent that match the last typed component — and completes the
// typed text to the best matching folder name (Tab).
//
// Text starting with "/" or "~" is taken as it is; other text is relative to the base folder
// (the shown folder). Hidden folders are offered only when the typed component starts with ".".
// The last folder listed is kept, so typing within one folder reads it once; reads happen on
// the GUI thread and list names only.

#include "commands/PaletteItem.h"

#include <optional>
#include <vector>

namespace orwick {

class PathCompletion {
public:
    static constexpr qsizetype kMaxRows = 30;

    void setBase(const FilePath& base) { m_base = base; }
    const FilePath& base() const { return m_base; }

    QList<PaletteItem> rows(const QString& typed);
    // The typed text with its last component completed and a "/" added; absent when no folder
    // matches or nothing was typed after the last "/".
    std::optional<QString> complete(const QString& typed);

    // The path the text names (absolute, standardized).
    FilePath resolve(const QString& typed) const;

private:
    struct Child {
        QString name;
        QByteArray bytes;
    };
    struct Split {
        QString parentText; // up to and including the last "/" ("" when none)
        QString component;  // after it
    };
    static Split split(const QString& typed);
    const std::vector<Child>& foldersIn(const FilePath& folder);
    // The folders of the typed parent that match the typed component, best first.
    std::vector<const Child*> matches(const Split& parts, const FilePath& parent);

    FilePath m_base;
    FilePath m_listed;
    std::vector<Child> m_folders;
};

} // namespace orwick
