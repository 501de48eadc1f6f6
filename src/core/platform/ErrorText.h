#pragma once
// Plain words for what a failed system call reports, to finish sentences such as
// "Couldn’t copy “x”: the disk is full."

#include <QString>

namespace orwick {

// The reason for an errno value, lower-case, without a full stop.
QString errorReason(int error);

} // namespace orwick
