#include "notes/NoteExport.h"

#include "fileops/UniqueName.h"
#include "highlight/SyntaxHighlighter.h"
#include "notes/FrontMatter.h"
#include "notes/NoteFile.h"
#include "preview/MarkdownRender.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QMimeDatabase>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QTextDocument>
#include <QUrl>
#include <functional>

namespace orwick::NoteExport {

namespace {

// Wide enough for a page, narrow enough to read; the PDF's pictures are scaled to fit too.
constexpr int kPdfPictureWidth = 640;

const char* const kStyle = R"css(
body { font-family: -apple-system, "Segoe UI", "Noto Sans", "DejaVu Sans", sans-serif; font-size: 15px;
       line-height: 1.55; color: #1f2328; background: #ffffff; margin: 0; }
article { max-width: 46em; margin: 2em auto; padding: 0 1.5em; }
h1, h2, h3, h4 { line-height: 1.25; margin-top: 1.4em; }
a { color: #0969da; }
code, pre { font-family: "JetBrains Mono", "DejaVu Sans Mono", monospace; font-size: 13px; }
code { background: #f2f4f7; padding: 1px 4px; border-radius: 4px; }
pre { background: #f6f8fa; padding: 10px 12px; border-radius: 6px; overflow-x: auto; }
pre code { background: transparent; padding: 0; }
blockquote { color: #57606a; border-left: 3px solid #d0d7de; margin-left: 0; padding-left: 1em; }
table { border-collapse: collapse; }
th, td { border: 1px solid #d0d7de; padding: 4px 10px; }
th { background: #f6f8fa; }
table.code td { border: none; }
table.code pre { margin: 0; padding: 0; }
img { max-width: 100%; }
table.properties { font-size: 13px; color: #57606a; margin-bottom: 1.5em; }
table.properties th { text-align: left; font-weight: normal; }
.missing-picture { color: #a40e26; background: #ffebe9; border: 1px dashed #cf222e; padding: 2px 6px; }
)css";

QString escaped(const QString& text) { return text.toHtmlEscaped(); }

// A picture somewhere else ("https://…"): its address stays.
bool linksRemote(const QString& source)
{
    const QUrl url(source);
    return !url.scheme().isEmpty() && url.scheme() != QLatin1StringView("file") && url.scheme().size() > 1;
}

// "Plan.md" → "Plan": the page's title and the export's name.
QString titleOf(const FilePath& note)
{
    const QString name = note.fileName();
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.left(dot) : name;
}

// The front matter as a small table of its properties, in the note's order.
QString propertiesTable(const QString& text)
{
    const std::optional<QList<FrontMatter::Property>> properties = FrontMatter::read(text);
    if (!properties || properties->isEmpty())
        return {};
    QString out = QStringLiteral("<table class=\"properties\" border=\"1\" cellspacing=\"0\" cellpadding=\"4\">\n");
    for (const FrontMatter::Property& property : *properties)
        out += QStringLiteral("<tr><th>%1</th><td>%2</td></tr>\n").arg(escaped(property.key), escaped(property.values.join(QStringLiteral(", "))));
    return out + QStringLiteral("</table>\n");
}

// The preview's task boxes are links for toggling; an exported page shows the box alone.
QString plainTaskBoxes(const QString& html)
{
    static const QRegularExpression box(QStringLiteral(R"(<a href="task:\d+"[^>]*>(.)</a>)"));
    QString out = html;
    return out.replace(box, QStringLiteral("\\1"));
}

// Qt's rich text draws table rules from the table's attributes; browsers use the style sheet.
QString ruledTables(QString html)
{
    return html.replace(QStringLiteral("<table>"), QStringLiteral("<table border=\"1\" cellspacing=\"0\" cellpadding=\"4\">"));
}

// Qt's rich text draws a <pre>'s background line by line, with gaps; in a one-cell table the
// cell's background holds the whole block. The closing line break cmark-gfm leaves would be an
// empty line.
QString boxedCode(const QString& html)
{
    static const QRegularExpression block(QStringLiteral(R"re(<pre><code([^>]*)>(.*?)\n?</code></pre>)re"),
                                          QRegularExpression::DotMatchesEverythingOption);
    QString out = html;
    return out.replace(block, QStringLiteral("<table class=\"code\" width=\"100%\" cellspacing=\"0\" cellpadding=\"10\" bgcolor=\"#f6f8fa\">"
                                             "<tr><td><pre><code\\1>\\2</code></pre></td></tr></table>"));
}

QString placeholder(const preview::RenderedNote::Picture& picture)
{
    const QString name = picture.file.isEmpty() ? picture.source : picture.file.fileName();
    return QStringLiteral("<span class=\"missing-picture\">Missing picture \u201C%1\u201D</span>").arg(escaped(name));
}

// The bytes of a local picture, or nothing when it can't be read or is too large.
std::optional<QByteArray> pictureBytes(const FilePath& file)
{
    QFile in(QString::fromLocal8Bit(file.native()));
    if (file.isEmpty() || !in.open(QIODevice::ReadOnly) || in.size() > kLargestPicture)
        return std::nullopt;
    QByteArray bytes = in.readAll();
    if (bytes.isEmpty())
        return std::nullopt;
    return bytes;
}

// Replaces each <img src="image:N" …> of the rendering by what `replace` makes of picture N.
QString replacePictures(const QString& html, const QList<preview::RenderedNote::Picture>& pictures,
                        const std::function<QString(const preview::RenderedNote::Picture&, const QString& attributes)>& replace)
{
    static const QRegularExpression image(QStringLiteral(R"re(<img src="image:(\d+)"([^>]*?)\s*/?>)re"));
    QString out;
    qsizetype from = 0;
    for (auto it = image.globalMatch(html); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const qsizetype index = match.captured(1).toLongLong();
        if (index < 0 || index >= pictures.size())
            continue;
        out += QStringView(html).mid(from, match.capturedStart() - from);
        out += replace(pictures[index], match.captured(2));
        from = match.capturedEnd();
    }
    out += QStringView(html).mid(from);
    return out;
}

QString document(const QString& title, const QString& body)
{
    return QStringLiteral("<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n"
                          "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                          "<meta name=\"generator\" content=\"Orwick\">\n<title>%1</title>\n<style>%2\n%3</style>\n</head>\n"
                          "<body>\n<article>\n%4</article>\n</body>\n</html>\n")
        .arg(escaped(title), QString::fromUtf8(kStyle), SyntaxHighlighter::css(false), body);
}

// The rendering with its task boxes plain and its tables ruled, under the properties table.
struct Body {
    QString html;
    QList<preview::RenderedNote::Picture> pictures;
};
Body bodyOf(const QString& text, const FilePath& folder)
{
    const preview::RenderedNote rendered = preview::renderMarkdown(text, folder);
    return {propertiesTable(text) + ruledTables(plainTaskBoxes(rendered.html)), rendered.pictures};
}

} // namespace

Page htmlPage(const QString& text, const FilePath& folder, const QString& title)
{
    const Body body = bodyOf(text, folder);
    Page page;
    const QMimeDatabase types;
    const QString html = replacePictures(body.html, body.pictures, [&](const auto& picture, const QString& attributes) {
        if (picture.file.isEmpty() && linksRemote(picture.source))
            return QStringLiteral("<img src=\"%1\"%2 />").arg(escaped(picture.source), attributes);
        const std::optional<QByteArray> bytes = pictureBytes(picture.file);
        if (!bytes) {
            ++page.missingPictures;
            return placeholder(picture);
        }
        const QString type = types.mimeTypeForFileNameAndData(picture.file.fileName(), *bytes).name();
        return QStringLiteral("<img src=\"data:%1;base64,%2\"%3 />").arg(type, QString::fromLatin1(bytes->toBase64()), attributes);
    });
    page.html = document(title, html);
    return page;
}

Exported pdfOf(const QString& text, const FilePath& folder, const QString& title)
{
    const Body body = bodyOf(text, folder);
    Exported out;
    QTextDocument layout;
    const QString html = replacePictures(body.html, body.pictures, [&](const auto& picture, const QString&) {
        if (picture.file.isEmpty() && linksRemote(picture.source))
            return QStringLiteral("<a href=\"%1\">%1</a>").arg(escaped(picture.source));
        QImage image;
        if (const std::optional<QByteArray> bytes = pictureBytes(picture.file))
            image.loadFromData(*bytes);
        if (image.isNull()) {
            ++out.missingPictures;
            return placeholder(picture);
        }
        layout.addResource(QTextDocument::ImageResource, QUrl(picture.url), image);
        const int width = std::min(image.width(), kPdfPictureWidth);
        return QStringLiteral("<img src=\"%1\" width=\"%2\" />").arg(picture.url).arg(width);
    });
    layout.setHtml(document(title, boxedCode(html)));
    QBuffer buffer(&out.bytes);
    // A buffer in memory, not a file: the bytes go to disk through the engine (or the clipboard).
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(96); // the style sheet's pixels are screen pixels (the default, 1200 dpi, makes them specks)
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("Orwick"));
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(18, 18, 18, 18), QPageLayout::Millimeter);
    layout.print(&writer);
    return out;
}

Result<Exported> exportNote(const FilePath& note, Format format)
{
    Result<notefile::FileBytes> read = notefile::readFile(note);
    if (!read)
        return failure(read.error());
    QByteArrayView bytes(read->bytes);
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes = bytes.sliced(3);
    if (!isValidUtf8(bytes))
        return failure(QStringLiteral("Couldn\u2019t export \u201C%1\u201D: it isn\u2019t UTF-8 text.").arg(note.fileName()));
    const QString text = QString::fromUtf8(bytes);
    const QString title = titleOf(note);
    if (format == Format::pdf)
        return pdfOf(text, note.parent(), title);
    const Page page = htmlPage(text, note.parent(), title);
    return Exported{page.html.toUtf8(), page.missingPictures};
}

FilePath exportPath(const FilePath& note, Format format)
{
    const QString extension = format == Format::html ? QStringLiteral(".html") : QStringLiteral(".pdf");
    return uniqueURL(note.parent().child(titleOf(note) + extension), false);
}

QString missingPicturesNote(int missing)
{
    if (missing <= 0)
        return {};
    if (missing == 1)
        return QStringLiteral("1 picture was missing");
    return QStringLiteral("%1 pictures were missing").arg(missing);
}

} // namespace orwick::NoteExport
