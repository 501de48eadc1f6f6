#pragma once
// Plain words for what a failed system call reports, to finish sentences such as
// "Couldn’t copy “x”: the disk is full."

#include <QString>

namespace orwick {

// The reason for an errno value, lower-case, without a full stop.
QString errorReason(int error);

// The reason for a failure while writing into the folder `targetFd` lies in: like errorReason,
// but a full disk that still has bytes free is out of room for more files (no inodes left),
// and a missing path is the destination that went away.
QString writeErrorReason(int error, int targetFd);

} // namespace orwick
