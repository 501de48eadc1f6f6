#pragma once
// FileHasher: SHA-256 (OpenSSL EVP, which uses the CPU's SHA instructions) of a file's head or
// of the whole file, for the duplicate finder. One per thread; it owns a 1 MiB read buffer.
//
// A file is hashed only while it is still the file the walk saw: one that vanished, can't be
// read, or no longer has the expected size gives no digest. Reads are advised to the kernel
// (posix_fadvise) so that a scan of many large files leaves the page cache as it found it.

#include "base/CancelFlag.h"
#include "base/FilePath.h"

#include <array>
#include <memory>
#include <optional>

namespace orwick {

using Sha256Digest = std::array<unsigned char, 32>;

class FileHasher {
public:
    FileHasher();
    ~FileHasher();
    FileHasher(const FileHasher&) = delete;
    FileHasher& operator=(const FileHasher&) = delete;

    // The digest of the first min(expectedSize, headBytes) bytes.
    std::optional<Sha256Digest> head(const FilePath& path, qint64 expectedSize, qint64 headBytes);
    // The digest of the whole file, read in chunks of `chunkBytes` (at most the buffer's 1 MiB).
    std::optional<Sha256Digest> whole(const FilePath& path, qint64 expectedSize, const CancelFlag& cancel,
                                      qint64 chunkBytes = 1048576);

    // The digest of bytes in memory (for tests and checks).
    static Sha256Digest of(const QByteArray& bytes);

private:
    struct State;
    std::unique_ptr<State> d;
};

} // namespace orwick
