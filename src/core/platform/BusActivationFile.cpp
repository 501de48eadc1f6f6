#include "platform/BusActivationFile.h"

#include "platform/ErrorText.h"
#include "platform/JsonFile.h"
#include "platform/XdgPaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <cerrno>
#include <unistd.h>

namespace orwick {
// packaging/org.freedesktop.FileManager1.service.in, compiled in by CMake.
extern const char showInFolderServiceTemplate[];
} // namespace orwick

namespace orwick::BusActivationFile {

namespace {

const QByteArray& templateText()
{
    static const QByteArray text(showInFolderServiceTemplate);
    return text;
}

// Whatever is at the path now; nothing when there is no file. A file that can't be read is
// taken for another program's (an empty text): it is never replaced or removed.
std::optional<QByteArray> onDisk()
{
    QFile file(path().text());
    if (file.open(QIODevice::ReadOnly))
        return file.readAll();
    if (QFileInfo::exists(path().text()))
        return QByteArray();
    return std::nullopt;
}

// The bus splits the Exec line as a shell would: a path with blanks or quotes goes in single
// quotes.
QByteArray execWord(const QString& program)
{
    const QByteArray bytes = program.toUtf8();
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9/._+-]+$"));
    if (plain.match(program).hasMatch())
        return bytes;
    return "'" + QByteArray(bytes).replace("'", "'\\''") + "'";
}

QString someoneElses()
{
    return QStringLiteral("Another program's “%1” is in the way, so the desktop can't start Orwick for “Show in folder”; "
                          "Orwick answers while it runs.")
        .arg(path().text());
}

} // namespace

FilePath path()
{
    return xdg::dataHome().child(QByteArrayView("dbus-1/services/org.freedesktop.FileManager1.service"));
}

QByteArray textFor(const QString& program)
{
    QByteArray text = templateText();
    return text.replace("@ORWICK_PROGRAM@", execWord(program));
}

bool isOrwicks(const QByteArray& text)
{
    // The template's comment comes before the program's path; it names Orwick as the writer.
    const qsizetype head = templateText().indexOf("@ORWICK_PROGRAM@");
    return text.startsWith(templateText().left(head));
}

Status put(const QString& program)
{
    const QByteArray text = textFor(program);
    const std::optional<QByteArray> existing = onDisk();
    if (existing == text)
        return {};
    if (existing && !isOrwicks(*existing))
        return failure(someoneElses());
    if (!QDir().mkpath(path().parent().text()))
        return failure(QStringLiteral("Orwick couldn't make the folder “%1”.").arg(path().parent().text()));
    if (const Status written = writeFileAtomically(path(), text); !written)
        return failure(QStringLiteral("Orwick couldn't write “%1”: %2.").arg(path().text(), written.error()));
    return {};
}

Status take()
{
    const std::optional<QByteArray> existing = onDisk();
    if (!existing || !isOrwicks(*existing))
        return {};
    if (unlink(path().c_str()) != 0 && errno != ENOENT)
        return failure(QStringLiteral("Orwick couldn't remove “%1”: %2.").arg(path().text(), errorReason(errno)));
    return {};
}

} // namespace orwick::BusActivationFile
