#pragma once
// A PDF locked by a password, made byte by byte (Qt's writer doesn't encrypt): one empty page,
// the standard security handler at revision 2 (RC4, 40-bit key), as old PDF writers made them.

#include <QByteArray>

namespace orwick::test {

// A one-page PDF (200 × 200 points) that opens only with `password`.
QByteArray passwordPdf(const QByteArray& password);

} // namespace orwick::test
