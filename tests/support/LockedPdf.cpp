#include "support/LockedPdf.h"

#include <QCryptographicHash>
#include <QList>
#include <QtEndian>
#include <array>

namespace orwick::test {

namespace {

QByteArray rc4(const QByteArray& key, const QByteArray& data)
{
    std::array<uchar, 256> s;
    for (int i = 0; i < 256; ++i)
        s[i] = uchar(i);
    for (int i = 0, j = 0; i < 256; ++i) {
        j = (j + s[i] + uchar(key[i % key.size()])) % 256;
        std::swap(s[i], s[j]);
    }
    QByteArray out(data.size(), '\0');
    for (int n = 0, i = 0, j = 0; n < data.size(); ++n) {
        i = (i + 1) % 256;
        j = (j + s[i]) % 256;
        std::swap(s[i], s[j]);
        out[n] = char(uchar(data[n]) ^ s[(s[i] + s[j]) % 256]);
    }
    return out;
}

const QByteArray kPasswordPad = QByteArray::fromHex("28BF4E5E4E758A4164004E56FFFA01082E2E00B6D0683E802F0CA9FE6453697A");

QByteArray padded(const QByteArray& password) { return (password + kPasswordPad).left(32); }

QByteArray md5(const QByteArray& data) { return QCryptographicHash::hash(data, QCryptographicHash::Md5); }

} // namespace

QByteArray passwordPdf(const QByteArray& password)
{
    const QByteArray id = md5("orwick test");
    const qint32 permissions = -4;
    const QByteArray owner = rc4(md5(padded("owner")).left(5), padded(password));
    char p[4];
    qToLittleEndian(permissions, p);
    const QByteArray key = md5(padded(password) + owner + QByteArray(p, 4) + id).left(5);
    const QByteArray user = rc4(key, kPasswordPad);
    const QList<QByteArray> objects = {
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] >>",
        "<< /Filter /Standard /V 1 /R 2 /O <" + owner.toHex() + "> /U <" + user.toHex() + "> /P " + QByteArray::number(permissions) + " >>",
    };
    QByteArray pdf("%PDF-1.4\n");
    QList<qsizetype> offsets;
    for (int i = 0; i < objects.size(); ++i) {
        offsets.append(pdf.size());
        pdf += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const qsizetype xref = pdf.size();
    pdf += "xref\n0 " + QByteArray::number(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (qsizetype offset : offsets)
        pdf += QByteArray::number(offset).rightJustified(10, '0') + " 00000 n \n";
    pdf += "trailer\n<< /Size " + QByteArray::number(objects.size() + 1) + " /Root 1 0 R /Encrypt 4 0 R /ID [<" + id.toHex() + "> <"
        + id.toHex() + ">] >>\nstartxref\n" + QByteArray::number(xref) + "\n%%EOF\n";
    return pdf;
}

} // namespace orwick::test
