#include "commands/CommandActions.h"

#include "app/Services.h"
#include "commands/ExternalPrograms.h"
#include "git/Git.h"
#include "platform/DirectoryReader.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QMimeDatabase>
#include <QProcess>

namespace orwick::actions {

namespace {

constexpr qint64 kMaxCopiedBytes = 10'000'000;

void putText(const QString& text)
{
    if (QClipboard* clipboard = QGuiApplication::clipboard())
        clipboard->setText(text);
}

const FileItem* singleFile(const WindowState& window)
{
    const PaneState* pane = window.activePane();
    if (pane->selection().size() != 1)
        return nullptr;
    const FileItem* item = pane->item(*pane->selection().begin());
    return item && !item->isFolder && !item->brokenTarget ? item : nullptr;
}

std::optional<QByteArray> readSmallFile(const FileItem& item, WindowState& window)
{
    QFile file(item.destination.text());
    if (!file.open(QIODevice::ReadOnly) || file.size() > kMaxCopiedBytes) {
        Q_EMIT window.messageRequested(QStringLiteral("Couldn’t read “%1”").arg(item.name));
        return std::nullopt;
    }
    return file.readAll();
}

using Program = ExternalPrograms::Program;

Program editor() { return services().programs ? services().programs->editor() : Program{}; }
Program terminal() { return services().programs ? services().programs->terminal() : Program{}; }

void launch(WindowState& window, const Program& program, const QStringList& arguments, const FilePath& workingFolder)
{
    if (!QProcess::startDetached(program.executable, arguments, workingFolder.text()))
        Q_EMIT window.messageRequested(QStringLiteral("Couldn’t open %1").arg(program.name));
}

} // namespace

void copyPath(WindowState& window)
{
    QStringList lines;
    for (const FilePath& path : window.selectedURLs())
        lines << path.text();
    putText(lines.join(QLatin1Char('\n')));
}

void copyRelativePath(WindowState& window)
{
    FilePath base = window.activePane()->url();
    if (Git* git = services().git)
        if (const auto root = git->root(base))
            base = *root;
    QStringList lines;
    for (const FilePath& path : window.selectedURLs())
        lines << (base.isAncestorOf(path) ? path.text().mid(base.text().size() + (base.isRoot() ? 0 : 1)) : path.text());
    putText(lines.join(QLatin1Char('\n')));
}

bool canCopyContents(const WindowState& window)
{
    const FileItem* item = singleFile(window);
    return item && item->size.value_or(0) <= kMaxCopiedBytes;
}

void copyContents(WindowState& window)
{
    const FileItem* item = singleFile(window);
    if (!item)
        return;
    if (const auto bytes = readSmallFile(*item, window))
        putText(QString::fromUtf8(*bytes));
}

void copyDataURI(WindowState& window)
{
    const FileItem* item = singleFile(window);
    if (!item)
        return;
    if (const auto bytes = readSmallFile(*item, window)) {
        static const QMimeDatabase mimes;
        const QString type = mimes.mimeTypeForFile(item->destination.text(), QMimeDatabase::MatchExtension).name();
        putText(QStringLiteral("data:%1;base64,%2").arg(type, QString::fromLatin1(bytes->toBase64())));
    }
}

void showInSystemFileManager(WindowState& window)
{
    if (!QDesktopServices::openUrl(window.activePane()->url().toUrl()))
        Q_EMIT window.messageRequested(QStringLiteral("Couldn’t open the system file manager"));
}

bool hasGit(const WindowState&) { return services().git && services().git->isAvailable(); }

bool hidesIgnored(const WindowState&) { return services().git && services().git->hidesIgnored(); }

void toggleHideIgnored(WindowState&)
{
    if (Git* git = services().git)
        git->setHidesIgnored(!git->hidesIgnored());
}

QString editorName() { return editor().executable.isEmpty() ? QStringLiteral("Code Editor") : editor().name; }
QString terminalName() { return terminal().executable.isEmpty() ? QStringLiteral("Terminal") : terminal().name; }
bool hasEditor(const WindowState&) { return !editor().executable.isEmpty(); }
bool hasTerminal(const WindowState&) { return !terminal().executable.isEmpty(); }

void openInEditor(WindowState& window)
{
    const PaneState* pane = window.activePane();
    QList<FilePath> targets = window.selectedURLs();
    if (targets.isEmpty())
        targets = {pane->url()};
    QStringList arguments;
    for (const FilePath& path : targets)
        arguments << path.text();
    const Program chosen = editor();
    if (chosen.needsTerminal && !terminal().isEmpty())
        launch(window, terminal(), QStringList{QStringLiteral("-e"), chosen.executable} + arguments, pane->url());
    else
        launch(window, chosen, arguments, pane->url());
}

void openInTerminal(WindowState& window) { launch(window, terminal(), {}, window.activePane()->url()); }

} // namespace orwick::actions
