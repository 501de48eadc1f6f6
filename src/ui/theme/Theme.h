#pragma once
// The colours and metrics every widget draws with. Widgets never hard-code a colour: they ask
// here. Follows the application palette (light or dark) and adds Orwick's own tints.

#include "files/FileCategory.h"

#include <QColor>
#include <QStringList>
#include <optional>

namespace orwick::theme {

QColor categoryTint(FileCategory category);
QColor accent();
QColor text();
QColor dimText();     // subtitles, status line, ignored rows
QColor selection();   // selected rows' background
QColor cursorRing();  // the keyboard caret's outline
QColor separator();
QColor warning();     // orange: "has changes" dots, cautions
QColor positive();    // green: added and untracked files
QColor negative();    // red: deleted and conflicted files, failures
QColor informative(); // blue: renamed files
QColor toastBackground();
QColor toastText();
bool isDark();

// The colours a select or list option can carry, by the index kept in the folder's settings;
// an index out of range, or none, is the plain chip colour.
QStringList optionColorNames();
QColor optionColor(std::optional<int> index);
QColor chipText(const QColor& background);

int rowHeight();
int cornerRadius();

} // namespace orwick::theme
