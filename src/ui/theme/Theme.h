#pragma once
// The colours and metrics every widget draws with. Widgets never hard-code a colour: they ask
// here. Follows the application palette (light or dark) and adds Orwick's own tints.

#include "files/FileCategory.h"

#include <QColor>

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

int rowHeight();
int cornerRadius();

} // namespace orwick::theme
