#include "disktools/FileHasher.h"

#include <openssl/evp.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace orwick {

namespace {

constexpr qint64 kBufferBytes = 1048576;
// Below this a file's pages are too few to matter to the page cache.
constexpr qint64 kCacheCareBytes = 4 * 1048576;

int openForReading(const FilePath& path)
{
    // O_NOATIME spares a metadata write per file; only the owner may ask for it.
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NOATIME);
    if (fd < 0 && errno == EPERM)
        fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    return fd;
}

bool hasSize(int fd, qint64 expectedSize)
{
    struct stat st;
    return fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && st.st_size == expectedSize;
}

// True when every page of the file is already in the page cache.
bool isResident(int fd, qint64 size)
{
    void* map = mmap(nullptr, size_t(size), PROT_READ, MAP_SHARED, fd, 0);
    if (map == MAP_FAILED)
        return false;
    const long page = sysconf(_SC_PAGESIZE);
    std::vector<unsigned char> pages(size_t((size + page - 1) / page));
    bool resident = mincore(map, size_t(size), pages.data()) == 0;
    for (size_t i = 0; resident && i < pages.size(); ++i)
        resident = (pages[i] & 1) != 0;
    munmap(map, size_t(size));
    return resident;
}

struct FdCloser {
    int fd;
    ~FdCloser() { ::close(fd); }
};

} // namespace

struct FileHasher::State {
    EVP_MD* md = EVP_MD_fetch(nullptr, "SHA256", nullptr);
    EVP_MD_CTX* ctx = EVP_MD_CTX_new();
    std::unique_ptr<unsigned char[]> buffer{new unsigned char[kBufferBytes]};

    ~State()
    {
        EVP_MD_CTX_free(ctx);
        EVP_MD_free(md);
    }
    bool begin() { return EVP_DigestInit_ex(ctx, md, nullptr) == 1; }
    bool update(const void* data, size_t n) { return EVP_DigestUpdate(ctx, data, n) == 1; }
    std::optional<Sha256Digest> finish()
    {
        Sha256Digest digest;
        unsigned int length = 0;
        if (EVP_DigestFinal_ex(ctx, digest.data(), &length) != 1 || length != digest.size())
            return std::nullopt;
        return digest;
    }
    // Reads exactly `bytes` bytes into the digest; false on a short read or an error.
    bool feed(int fd, qint64 bytes, qint64 chunk, const CancelFlag* cancel)
    {
        while (bytes > 0) {
            if (cancel && cancel->isCancelled())
                return false;
            const ssize_t n = ::read(fd, buffer.get(), size_t(std::min(bytes, chunk)));
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                return false; // an error, or the file shrank under us
            if (!update(buffer.get(), size_t(n)))
                return false;
            bytes -= n;
        }
        return true;
    }
};

FileHasher::FileHasher() : d(std::make_unique<State>()) {}
FileHasher::~FileHasher() = default;

std::optional<Sha256Digest> FileHasher::head(const FilePath& path, qint64 expectedSize, qint64 headBytes)
{
    const int fd = openForReading(path);
    if (fd < 0)
        return std::nullopt;
    FdCloser closer{fd};
    const qint64 bytes = std::min(expectedSize, headBytes);
    if (bytes >= kBufferBytes)
        return std::nullopt;
    // Most heads are whole small files: one read asks for a byte more than expected, so that a
    // file that grew or shrank shows without a stat call. A larger file's size is checked by
    // the whole-file stage.
    const qint64 wanted = expectedSize <= headBytes ? bytes + 1 : bytes;
    if (expectedSize > 4 * headBytes)
        posix_fadvise(fd, 0, 0, POSIX_FADV_RANDOM); // only the head: no read-ahead past it
    qint64 got = 0;
    while (got < wanted) {
        const ssize_t n = ::read(fd, d->buffer.get() + got, size_t(wanted - got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return std::nullopt;
        got += n;
        if (n == 0 || got < wanted)
            break; // a regular file reads short only at its end
    }
    if (got != bytes || !d->begin() || !d->update(d->buffer.get(), size_t(bytes)))
        return std::nullopt;
    return d->finish();
}

std::optional<Sha256Digest> FileHasher::whole(const FilePath& path, qint64 expectedSize, const CancelFlag& cancel,
                                              qint64 chunkBytes)
{
    const int fd = openForReading(path);
    if (fd < 0)
        return std::nullopt;
    FdCloser closer{fd};
    if (!hasSize(fd, expectedSize))
        return std::nullopt;
    // A large file that was not cached before is dropped from the cache after reading, so a
    // scan does not push out what the user was working with.
    const bool dropAfter = expectedSize >= kCacheCareBytes && !isResident(fd, expectedSize);
    posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
    const bool ok = d->begin() && d->feed(fd, expectedSize, std::clamp<qint64>(chunkBytes, 1, kBufferBytes), &cancel);
    // More bytes than the walk saw: the file grew, so it is not the file that was compared.
    char extra;
    const bool atEnd = ok && ::read(fd, &extra, 1) == 0;
    if (dropAfter)
        posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
    if (!atEnd)
        return std::nullopt;
    return d->finish();
}

Sha256Digest FileHasher::of(const QByteArray& bytes)
{
    State state;
    state.begin();
    state.update(bytes.constData(), size_t(bytes.size()));
    return *state.finish();
}

} // namespace orwick
