#pragma once
// TransferNotes: the words a copy or move adds to its toast when it kept something
// differently — items left in place because they changed during a move between disks, sockets
// left out, attributes a disk refused — so a toast never calls such a transfer plain done.

#include "fileops/FileChange.h"

namespace orwick {

// "Moved 3 items" + "; 1 item changed during the move and was left in place".
QString withTransferNotes(const QString& toast, const ChangeReport& report);

} // namespace orwick
