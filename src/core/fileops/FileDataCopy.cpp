#include "fileops/FileDataCopy.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <memory>
#include <unistd.h>

namespace orwick {

namespace {

constexpr size_t kChunk = 8u << 20;      // between two cancel checks inside a large file
constexpr size_t kBufferSize = 1u << 20; // for file systems without copy_file_range

class DataCopier {
public:
    DataCopier(int in, int out, CopyProgress& progress) : m_in(in), m_out(out), m_progress(progress) {}

    // Copies [offset, end) at the same offsets in both files; end < 0 means until the end of
    // the source. False with m_result set on failure or cancel.
    bool copyRange(qint64 offset, qint64 end)
    {
        while (end < 0 || offset < end) {
            if (m_progress.isCancelled()) {
                m_result.outcome = FileDataResult::Outcome::cancelled;
                return false;
            }
            const size_t want = end < 0 ? kChunk : size_t(std::min<qint64>(kChunk, end - offset));
            ssize_t n = -1;
            if (m_useCopyRange) {
                loff_t inOffset = offset, outOffset = offset;
                n = copy_file_range(m_in, &inOffset, m_out, &outOffset, want, 0);
                if (n < 0 && (errno == EXDEV || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP || errno == EBADF)) {
                    m_useCopyRange = false;
                    continue;
                }
            } else {
                n = readWrite(offset, want);
            }
            if (n < 0) {
                if (errno == EINTR)
                    continue;
                if (!m_result.error)
                    m_result.error = errno;
                m_result.outcome = FileDataResult::Outcome::failed;
                return false;
            }
            if (n == 0)
                break; // the end came early: the caller compares sizes
            offset += n;
            m_result.copied += n;
            m_progress.advance(n);
        }
        return true;
    }

    void skipHole(qint64 length)
    {
        m_result.copied += length;
        m_progress.advance(length);
    }

    // A read-only source whose size says nothing (/proc): read until the end.
    bool readToEnd()
    {
        m_useCopyRange = false; // copy_file_range returns 0 at once for such files
        return copyRange(0, -1);
    }

    FileDataResult& result() { return m_result; }

private:
    ssize_t readWrite(qint64 offset, size_t want)
    {
        thread_local std::unique_ptr<char[]> buffer(new char[kBufferSize]);
        const ssize_t n = ::pread(m_in, buffer.get(), std::min(want, kBufferSize), offset);
        if (n <= 0)
            return n;
        for (ssize_t written = 0; written < n;) {
            const ssize_t w = ::pwrite(m_out, buffer.get() + written, size_t(n - written), offset + written);
            if (w < 0) {
                if (errno == EINTR)
                    continue;
                m_result.error = errno;
                m_result.onTarget = true;
                return -1;
            }
            written += w;
        }
        return n;
    }

    int m_in;
    int m_out;
    CopyProgress& m_progress;
    bool m_useCopyRange = true;
    FileDataResult m_result;
};

// Copies the data segments of a sparse file; holes stay holes. False when the file system
// can't tell where data lies (the caller then copies everything).
std::optional<bool> copySegments(DataCopier& copier, int in, int out, qint64 size)
{
    qint64 position = 0;
    while (position < size) {
        const off_t data = lseek(in, position, SEEK_DATA);
        if (data < 0) {
            if (errno == ENXIO)
                break; // only a hole is left
            if (position == 0)
                return std::nullopt;
            copier.result().error = errno;
            copier.result().outcome = FileDataResult::Outcome::failed;
            return false;
        }
        off_t hole = lseek(in, data, SEEK_HOLE);
        if (hole < 0)
            hole = size;
        copier.skipHole(data - position);
        if (!copier.copyRange(data, std::min<qint64>(hole, size)))
            return false;
        position = hole;
    }
    if (position < size)
        copier.skipHole(size - position);
    if (ftruncate(out, size) != 0) {
        copier.result().error = errno;
        copier.result().onTarget = true;
        copier.result().outcome = FileDataResult::Outcome::failed;
        return false;
    }
    return true;
}

} // namespace

FileDataResult copyFileData(int in, int out, qint64 size, qint64 allocated, CopyProgress& progress)
{
    DataCopier copier(in, out, progress);
    if (size == 0) {
        copier.readToEnd();
        return copier.result();
    }
    if (allocated < size) {
        if (const auto done = copySegments(copier, in, out, size))
            return copier.result();
    }
    copier.copyRange(0, size);
    return copier.result();
}

} // namespace orwick
