#pragma once
// What every fuzz target uses to state a promise: a broken one names itself and aborts, so
// libFuzzer keeps the input that broke it.

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace orwick::fuzz {

inline void check(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

inline QByteArray bytesOf(const uint8_t* data, size_t size)
{
    return QByteArray(reinterpret_cast<const char*>(data), qsizetype(size));
}

inline QString textOf(const std::string& bytes) { return QString::fromUtf8(bytes.data(), qsizetype(bytes.size())); }

} // namespace orwick::fuzz
