#include "ui/preview/PreparedPreview.h"

#include "highlight/SyntaxHighlighter.h"
#include "theme/ThemeStore.h"
#include "ui/preview/PdfPage.h"
#include "ui/preview/PreviewImageView.h"
#include "ui/theme/Theme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <QPlainTextDocumentLayout>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>
#include <QThread>

namespace orwick {

PreviewStyle PreviewStyle::fromApplication()
{
    PreviewStyle style;
    style.textFont = QApplication::font();
    style.fixedFont = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    const QPalette palette = QApplication::palette();
    style.text = theme::text();
    style.dimText = theme::dimText();
    style.link = palette.color(QPalette::Link);
    style.codeBackground = palette.color(QPalette::AlternateBase);
    style.border = theme::separator();
    style.dark = theme::isDark();
    const ThemeStore& themes = ThemeStore::shared();
    style.syntax = SyntaxHighlighter::SyntaxPalette::fromLookup([&themes](const QString& key) { return themes.syntaxColor(key); });
    return style;
}

namespace {

// Rules for the rendered note, in Qt's rich-text subset.
QString noteStyleSheet(const PreviewStyle& style)
{
    return QStringLiteral("a { color: %1; }"
                          "pre { background-color: %2; }"
                          "code { background-color: %2; font-family: '%3'; }"
                          "table { border-collapse: collapse; }"
                          "th, td { border: 1px solid %4; padding: 3px 6px; }"
                          "blockquote { color: %5; }")
               .arg(style.link.name(), style.codeBackground.name(), style.fixedFont.family(), style.border.name(), style.dimText.name())
        + SyntaxHighlighter::css(style.dark, style.syntax);
}

// The document of a text or hex preview, made ready for the view's QPlainTextEdit so that
// taking it on the GUI thread passes over each of its thousands of blocks once, cheaply: it
// already has the view's wrap mode (a different one would lay every block out again there) and
// every block its QTextLayout (else made one by one on the GUI thread as the view sizes them).
std::shared_ptr<QTextDocument> plainDocument(const QString& text, const QFont& font)
{
    auto document = std::make_shared<QTextDocument>();
    document->setDocumentLayout(new QPlainTextDocumentLayout(document.get()));
    document->setDefaultFont(font);
    QTextOption option = document->defaultTextOption();
    option.setWrapMode(QTextOption::NoWrap);
    document->setDefaultTextOption(option);
    document->setPlainText(text);
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next())
        block.layout();
    return document;
}

// Text beyond this is shown plain: colouring it would cost more than it gives.
constexpr qsizetype kColouredChars = 256 * 1024;

// Colours source text in the document, block by block, as QSyntaxHighlighter would, but once
// and off the GUI thread.
void colour(QTextDocument& document, const QString& text, const FilePath& path, const PreviewStyle& style)
{
    const SyntaxHighlighter::Language* language = SyntaxHighlighter::languageFor(path);
    if (!language || text.size() > kColouredChars)
        return;
    const auto ranges = SyntaxHighlighter::attributed(QStringView(text), *language, style.fixedFont, style.syntax, style.dark);
    qsizetype next = 0;
    for (QTextBlock block = document.begin(); block.isValid() && next < ranges.size(); block = block.next()) {
        const int start = block.position();
        const int end = start + block.length();
        QList<QTextLayout::FormatRange> inBlock;
        // A range may run over several blocks (a block comment): each gets its part.
        for (qsizetype i = next; i < ranges.size() && ranges[i].start < end; ++i) {
            const int from = std::max(ranges[i].start, start);
            const int to = std::min(ranges[i].start + ranges[i].length, end);
            if (to > from)
                inBlock.append({from - start, to - from, ranges[i].format});
            if (ranges[i].start + ranges[i].length <= end)
                next = i + 1;
        }
        if (!inBlock.isEmpty())
            block.layout()->setFormats(inBlock);
    }
}

// Task items show their box only: each leaves its bulleted list and keeps the list's indent, so
// the box stands where the item's words would start. A plain item beside them keeps its bullet.
void unbulletTasks(QTextDocument& document)
{
    QList<QTextBlock> tasks;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (!block.textList() || block.text().isEmpty())
            continue;
        const QChar first = block.text().front();
        const QTextCharFormat format = QTextCursor(block).charFormat(); // of the block's first character
        if ((first == QChar(0x2610) || first == QChar(0x2611)) && format.anchorHref().startsWith(QLatin1StringView("task:")))
            tasks.append(block);
    }
    for (QTextBlock& block : tasks) {
        QTextList* list = block.textList();
        const int indent = list->format().indent();
        const bool lastOfList = block.next().textList() != list; // the tasks after it are still in the list
        list->remove(block);
        QTextBlockFormat format = block.blockFormat();
        format.setIndent(indent);
        if (lastOfList) // the room a list keeps below it, as a paragraph does
            format.setBottomMargin(std::max(format.bottomMargin(), 12.0));
        QTextCursor(block).setBlockFormat(format);
    }
}

std::shared_ptr<QTextDocument> noteDocument(const PreviewContent& content, const PreviewStyle& style)
{
    auto document = std::make_shared<QTextDocument>();
    document->setDefaultFont(style.textFont);
    document->setDefaultStyleSheet(noteStyleSheet(style));
    for (auto it = content.images.cbegin(); it != content.images.cend(); ++it)
        document->addResource(QTextDocument::ImageResource, QUrl(it.key()), it.value());
    document->setHtml(content.html);
    unbulletTasks(*document);
    return document;
}

} // namespace

PreparedPreview preparePreview(const PreviewRequest& request, const PreviewStyle& style, const CancelFlag& cancel)
{
    PreparedPreview prepared;
    prepared.content = loadPreview(request, cancel);
    PreviewContent& content = prepared.content;
    if (cancel.isCancelled())
        return {};
    switch (content.kind) {
    case PreviewContent::Kind::text:
    case PreviewContent::Kind::hex:
        prepared.document = plainDocument(content.text, style.fixedFont);
        if (content.kind == PreviewContent::Kind::text)
            colour(*prepared.document, content.text, content.path, style);
        break;
    case PreviewContent::Kind::markdown:
        prepared.document = noteDocument(content, style);
        break;
    case PreviewContent::Kind::pdf:
        if (auto page = renderPdfFirstPage(content.path, request.box)) {
            content.image = std::move(page->image);
            content.pageCount = page->pageCount;
            content.details.prepend(page->pageCount == 1 ? QStringLiteral("1 page") : QStringLiteral("%1 pages").arg(page->pageCount));
        } else {
            const QStringList details = content.details;
            content = PreviewContent::failed(content.path, page.error());
            content.details = details;
        }
        break;
    default:
        break;
    }
    const bool picture = content.kind == PreviewContent::Kind::image || content.kind == PreviewContent::Kind::pdf
                      || content.kind == PreviewContent::Kind::font;
    if (picture && !content.image.isNull() && style.pictureRoom.isValid()) {
        const QSize shown = PreviewImageView::shownSize(content.image.size(), style.pictureRoom);
        if (shown != content.image.size() && !cancel.isCancelled())
            prepared.fitted = content.image.scaled(shown, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    if (prepared.document)
        prepared.document->moveToThread(QCoreApplication::instance()->thread());
    return prepared;
}

PreparedPreview prepareNoteText(const QString& text, const PreviewRequest& request, const PreviewStyle& style,
                                const CancelFlag& cancel)
{
    PreparedPreview prepared;
    prepared.content = preview::renderNoteText(text, request, cancel);
    if (cancel.isCancelled() || prepared.content.isEmpty())
        return {};
    prepared.document = noteDocument(prepared.content, style);
    prepared.document->moveToThread(QCoreApplication::instance()->thread());
    return prepared;
}

} // namespace orwick
