#include "preview/MarkdownRender.h"

#include "highlight/SyntaxHighlighter.h"

#include <QRegularExpression>
#include <QUrl>
#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>
#include <cstring>
#include <mutex>

namespace orwick::preview {

namespace {

// Front matter lines become empty lines, so source positions stay the note's line numbers.
QString blankFrontMatter(const QString& text)
{
    if (!text.startsWith(QLatin1StringView("---\n")) && !text.startsWith(QLatin1StringView("---\r\n")))
        return text;
    const QStringList lines = text.split(u'\n');
    for (qsizetype end = 1; end < lines.size(); ++end) {
        const QString line = lines[end].trimmed();
        if (line == QLatin1StringView("---") || line == QLatin1StringView("...")) {
            QStringList out = lines;
            for (qsizetype i = 0; i <= end; ++i)
                out[i].clear();
            return out.join(u'\n');
        }
    }
    return text; // no closing line: it is ordinary text
}

void ensureExtensions()
{
    static std::once_flag once;
    std::call_once(once, [] { cmark_gfm_core_extensions_ensure_registered(); });
}

bool isLocalPicture(const QString& url)
{
    const QUrl parsed(url);
    return parsed.scheme().isEmpty() || parsed.scheme() == QLatin1StringView("file");
}

FilePath resolvePicture(const QString& url, const FilePath& folder)
{
    const QUrl parsed(url);
    if (parsed.scheme() == QLatin1StringView("file"))
        return FilePath::fromUrl(parsed);
    const QString path = QUrl::fromPercentEncoding(url.toUtf8()).section(u'#', 0, 0).section(u'?', 0, 0);
    if (path.startsWith(u'/'))
        return FilePath::fromText(path);
    return folder.child(path);
}

// Walks the tree: notes the task items' lines and replaces picture addresses.
void collect(cmark_node* root, const FilePath& folder, RenderedNote& note)
{
    cmark_iter* iter = cmark_iter_new(root);
    for (cmark_event_type event; (event = cmark_iter_next(iter)) != CMARK_EVENT_DONE;) {
        if (event != CMARK_EVENT_ENTER)
            continue;
        cmark_node* node = cmark_iter_get_node(iter);
        const cmark_node_type type = cmark_node_get_type(node);
        if (type == CMARK_NODE_ITEM && std::strcmp(cmark_node_get_type_string(node), "tasklist") == 0) {
            note.taskLines.append(cmark_node_get_start_line(node));
        } else if (type == CMARK_NODE_IMAGE) {
            const QString url = QString::fromUtf8(cmark_node_get_url(node));
            RenderedNote::Picture picture;
            picture.url = QStringLiteral("image:%1").arg(note.pictures.size());
            picture.source = url;
            if (isLocalPicture(url) && !url.isEmpty())
                picture.file = resolvePicture(url, folder);
            note.pictures.append(picture);
            cmark_node_set_url(node, picture.url.toUtf8().constData());
        }
    }
    cmark_iter_free(iter);
}

// cmark-gfm writes each task's box as <input type="checkbox" …/>; the preview's is a link.
QString linkTaskBoxes(const QString& html, const QList<int>& lines)
{
    static const QRegularExpression box(QStringLiteral(R"(<input type="checkbox"([^>]*)/>)"));
    QString out;
    qsizetype from = 0;
    int index = 0;
    for (auto it = box.globalMatch(html); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        out += QStringView(html).mid(from, match.capturedStart() - from);
        from = match.capturedEnd();
        if (index >= lines.size())
            continue;
        const bool done = match.captured(1).contains(QLatin1StringView("checked"));
        out += QStringLiteral("<a href=\"task:%1\" style=\"text-decoration:none\">%2</a>")
                   .arg(lines[index++])
                   .arg(done ? QChar(0x2611) : QChar(0x2610));
    }
    out += QStringView(html).mid(from);
    // Qt's rich text knows <s>, not <del>.
    out.replace(QLatin1StringView("<del>"), QLatin1StringView("<s>")).replace(QLatin1StringView("</del>"), QLatin1StringView("</s>"));
    return out;
}

// Fenced code in a known language gets the highlighter's spans (styled by its style sheet).
QString colourCode(const QString& html)
{
    static const QRegularExpression block(QStringLiteral(R"re(<pre><code class="language-([^"]+)">(.*?)</code></pre>)re"),
                                          QRegularExpression::DotMatchesEverythingOption);
    QString out;
    qsizetype from = 0;
    for (auto it = block.globalMatch(html); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const SyntaxHighlighter::Language* language = SyntaxHighlighter::languageNamed(match.captured(1));
        if (!language)
            continue;
        QString code = match.captured(2);
        code.replace(QLatin1StringView("&lt;"), QLatin1StringView("<"))
            .replace(QLatin1StringView("&gt;"), QLatin1StringView(">"))
            .replace(QLatin1StringView("&quot;"), QLatin1StringView("\""))
            .replace(QLatin1StringView("&amp;"), QLatin1StringView("&"));
        out += QStringView(html).mid(from, match.capturedStart() - from);
        out += QStringLiteral("<pre><code class=\"language-%1\">").arg(match.captured(1));
        out += SyntaxHighlighter::html(code, *language);
        out += QStringLiteral("</code></pre>");
        from = match.capturedEnd();
    }
    out += QStringView(html).mid(from);
    return out;
}

} // namespace

RenderedNote renderMarkdown(const QString& text, const FilePath& folder)
{
    ensureExtensions();
    RenderedNote note;
    cmark_parser* parser = cmark_parser_new(CMARK_OPT_DEFAULT | CMARK_OPT_FOOTNOTES);
    for (const char* name : {"table", "strikethrough", "tasklist", "autolink"})
        if (cmark_syntax_extension* extension = cmark_find_syntax_extension(name))
            cmark_parser_attach_syntax_extension(parser, extension);
    const QByteArray utf8 = blankFrontMatter(text).toUtf8();
    cmark_parser_feed(parser, utf8.constData(), size_t(utf8.size()));
    cmark_node* document = cmark_parser_finish(parser);
    collect(document, folder, note);
    char* html = cmark_render_html(document, CMARK_OPT_DEFAULT | CMARK_OPT_FOOTNOTES, cmark_parser_get_syntax_extensions(parser));
    note.html = colourCode(linkTaskBoxes(QString::fromUtf8(html), note.taskLines));
    cmark_get_default_mem_allocator()->free(html);
    cmark_node_free(document);
    cmark_parser_free(parser);
    return note;
}

int taskLineOfLink(const QString& link)
{
    if (!link.startsWith(QLatin1StringView("task:")))
        return 0;
    bool ok = false;
    const int line = link.mid(5).toInt(&ok);
    return ok && line > 0 ? line : 0;
}

} // namespace orwick::preview
