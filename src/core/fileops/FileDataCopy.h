#pragma once
// FileDataCopy: the bytes of one open regular file into another, the fastest way the two file
// systems allow, keeping holes.
//
// - A file with fewer allocated blocks than its size is copied segment by segment
//   (SEEK_DATA/SEEK_HOLE), so a 1 GiB image holding 4 KiB of data takes 4 KiB on the target.
// - Other files go through copy_file_range (reflinks and server-side copies where the file
//   systems offer them), falling back to read and write.
// - A file whose size says 0 (files under /proc and /sys) is read until its end.
// Cancellation is checked between chunks of 8 MiB. Safe on any thread.

#include "fileops/CopyProgress.h"

#include <QtGlobal>

namespace orwick {

struct FileDataResult {
    enum class Outcome { done, cancelled, failed };
    Outcome outcome = Outcome::done;
    int error = 0;        // errno for `failed`
    bool onTarget = false; // the failure came from writing, not reading
    qint64 copied = 0;    // logical bytes covered (data and holes)
};

// `size` and `allocated` are the source's as stat'ed before the copy.
FileDataResult copyFileData(int in, int out, qint64 size, qint64 allocated, CopyProgress& progress);

} // namespace orwick
