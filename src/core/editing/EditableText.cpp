#include "editing/EditableText.h"

#include "base/FilePath.h"

#include <QStringDecoder>

namespace orwick::editing {

namespace {

constexpr QByteArrayView kByteOrderMark("\xEF\xBB\xBF");

} // namespace

Result<EditableText> decodeForEditing(const QByteArray& bytes, const QString& fileName)
{
    if (bytes.contains('\0'))
        return failure(QStringLiteral("“%1” isn’t a text file.").arg(fileName));
    EditableText out;
    QByteArrayView body(bytes);
    if (body.startsWith(kByteOrderMark)) {
        out.form.byteOrderMark = true;
        body = body.sliced(kByteOrderMark.size());
    }
    qsizetype crlf = 0, lf = 0;
    bool loneCr = false;
    for (qsizetype i = 0; i < body.size(); ++i) {
        if (body[i] == '\n') {
            if (i > 0 && body[i - 1] == '\r')
                ++crlf;
            else
                ++lf;
        } else if (body[i] == '\r' && (i + 1 == body.size() || body[i + 1] != '\n')) {
            loneCr = true;
        }
    }
    out.form.ending = crlf > lf ? LineEnding::crlf : LineEnding::lf;
    out.form.mixedEndings = crlf > 0 && lf > 0;
    if (!isValidUtf8(body)) {
        out.text = QString::fromLatin1(body);
        out.readOnlyReason = QStringLiteral("“%1” isn’t UTF-8 text, so it is open read-only: saving it here would change its bytes.").arg(fileName);
    } else {
        // Another mark right after the first is text: fromUtf8 would drop it.
        QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom);
        out.text = decoder(body);
        if (loneCr || out.text.contains(QChar::ParagraphSeparator))
            out.readOnlyReason = QStringLiteral("“%1” has line breaks the editor would change, so it is open read-only.").arg(fileName);
    }
    if (out.readOnlyReason.isEmpty() && crlf > 0)
        out.text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (out.form.mixedEndings && out.readOnlyReason.isEmpty())
        out.note = out.form.ending == LineEnding::crlf ? QStringLiteral("Mixed line ends: saving writes CRLF everywhere")
                                                       : QStringLiteral("Mixed line ends: saving writes LF everywhere");
    return out;
}

QByteArray encodeEdited(const QString& text, const TextForm& form)
{
    QByteArray bytes;
    if (form.byteOrderMark)
        bytes.append(kByteOrderMark);
    if (form.ending == LineEnding::crlf) {
        QString crlf = text;
        crlf.replace(u'\n', QStringLiteral("\r\n"));
        bytes.append(crlf.toUtf8());
    } else {
        bytes.append(text.toUtf8());
    }
    return bytes;
}

} // namespace orwick::editing
