#pragma once
// The conflict question: "“a.txt” is already in “Docs”" with Replace, Keep Both, Skip and Cancel.
// Window-modal; the answer is given once, when a button is pressed (Esc answers Cancel).

#include "fileops/FileOperations.h"

class QWidget;

namespace orwick {

// Shows the question over `window` and calls `answer` with the choice.
void askConflict(QWidget* window, const FileOperations::ConflictQuestion& question, FileOperations::ConflictAnswer answer);

} // namespace orwick
