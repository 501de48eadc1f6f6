// orwick-cli highlight FILE [--html|--css|--tokens] [--language NAME] [--dark]: the syntax
// highlighter on the command line. Prints the text as HTML spans (the default), the style sheet
// for those spans, or the token list (one "start length kind" line per token, in UTF-16 code
// units). The language comes from the file's name unless --language names one (a fence name).

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "highlight/SyntaxHighlighter.h"
#include "platform/ErrorText.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::cli {
namespace {

const QString kUsage = QStringLiteral("usage: orwick-cli highlight FILE [--html|--css|--tokens] [--language NAME] [--dark]");

enum class Output { html, css, tokens };

// The file's bytes decoded as UTF-8 (a malformed sequence becomes U+FFFD). Mapped, so a large
// file is read once, by the decoder.
std::optional<QString> readText(const FilePath& path, QString& problem)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat info {};
    if (fd < 0 || ::fstat(fd, &info) != 0) {
        problem = errorReason(errno);
        if (fd >= 0)
            ::close(fd);
        return std::nullopt;
    }
    if (S_ISDIR(info.st_mode)) {
        ::close(fd);
        problem = QStringLiteral("it’s a folder");
        return std::nullopt;
    }
    QByteArray read;
    QString text;
    if (S_ISREG(info.st_mode) && info.st_size > 0) {
        void* mapped = ::mmap(nullptr, size_t(info.st_size), PROT_READ, MAP_PRIVATE | MAP_POPULATE, fd, 0);
        if (mapped != MAP_FAILED) {
            text = QString::fromUtf8(static_cast<const char*>(mapped), qsizetype(info.st_size));
            ::munmap(mapped, size_t(info.st_size));
            ::close(fd);
            return text;
        }
    }
    char buffer[1 << 16];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            problem = errorReason(errno);
            ::close(fd);
            return std::nullopt;
        }
        if (n == 0)
            break;
        read.append(buffer, n);
    }
    ::close(fd);
    return QString::fromUtf8(read);
}

void writeAll(const QByteArray& bytes)
{
    fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    fflush(stdout);
}

int highlight(const Arguments& arguments)
{
    Output output = Output::html;
    bool dark = false;
    std::optional<QString> languageName;
    Arguments positional;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QByteArray& argument = arguments[i];
        if (argument == "--html")
            output = Output::html;
        else if (argument == "--css")
            output = Output::css;
        else if (argument == "--tokens")
            output = Output::tokens;
        else if (argument == "--dark")
            dark = true;
        else if (argument == "--language" && i + 1 < arguments.size())
            languageName = argumentText(arguments[++i]);
        else if (argument.startsWith("--"))
            return usageError(kUsage);
        else
            positional.append(argument);
    }
    if (output == Output::css && positional.isEmpty()) {
        writeAll(SyntaxHighlighter::css(dark).toUtf8());
        return 0;
    }
    if (positional.size() != 1)
        return usageError(kUsage);

    const SyntaxHighlighter::Language* language = nullptr;
    if (languageName) {
        language = SyntaxHighlighter::languageNamed(*languageName);
        if (!language)
            return usageError(QStringLiteral("no highlighting is known for “%1”").arg(*languageName));
    }
    if (output == Output::css) {
        writeAll(SyntaxHighlighter::css(dark).toUtf8());
        return 0;
    }

    const QByteArray fileArgument = positional.first();
    if (const auto problem = problemWith(fileArgument, Expect::anything)) {
        err() << *problem << Qt::endl;
        return 1;
    }
    const FilePath path = pathArgument(fileArgument);
    QString problem;
    const std::optional<QString> text = readText(path, problem);
    if (!text) {
        err() << QStringLiteral("Can’t read %1: %2.").arg(shownArgument(fileArgument), problem) << Qt::endl;
        return 1;
    }
    if (!language)
        language = SyntaxHighlighter::languageFor(path);
    const std::vector<SyntaxHighlighter::Token> tokens =
        language ? SyntaxHighlighter::tokens(*text, *language) : std::vector<SyntaxHighlighter::Token>{};

    if (output == Output::tokens) {
        LineWriter writer;
        char line[64];
        for (const SyntaxHighlighter::Token& token : tokens) {
            const int length = std::snprintf(line, sizeof line, "%d %d %s", token.start, token.length,
                                             SyntaxHighlighter::kindNameLatin1(token.kind));
            writer.add(QByteArray::fromRawData(line, length));
            writer.endLine();
        }
        return 0;
    }
    QByteArray html;
    SyntaxHighlighter::appendHtmlUtf8(html, *text, tokens);
    writeAll(html);
    return 0;
}

const CliRegistration registration({QStringLiteral("highlight"),
                                     QStringLiteral("highlight FILE [--html|--css|--tokens] [--language NAME] [--dark]"),
                                     QStringLiteral("a source file as HTML spans, their style sheet, or tokens"),
                                     highlight});

} // namespace
} // namespace orwick::cli
