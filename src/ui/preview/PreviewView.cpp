#include "ui/preview/PreviewView.h"

#include "preview/MarkdownRender.h"
#include "ui/preview/DocumentDisposal.h"
#include "ui/preview/PreviewHeaderLine.h"
#include "ui/preview/PreviewImageView.h"
#include "ui/preview/PreviewTableModel.h"
#include "ui/theme/Theme.h"

#include <QDesktopServices>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTableView>
#include <QTextBrowser>
#include <algorithm>

namespace orwick {

namespace {
// Room around the view's content, and between the header and what it shows.
constexpr QMargins kMargins{10, 8, 10, 8};
constexpr int kLineSpacing = 2;
constexpr int kHeaderGap = 8;
} // namespace

PreviewView::PreviewView(QWidget* parent) : QWidget(parent)
{
    m_title = new PreviewHeaderLine(PreviewHeaderLine::Tone::normal, this);
    QFont bold = m_title->font();
    bold.setBold(true);
    if (bold.pointSizeF() > 0)
        bold.setPointSizeF(bold.pointSizeF() * 1.1);
    m_title->setFont(bold);
    m_details = new PreviewHeaderLine(PreviewHeaderLine::Tone::dim, this);
    m_noteLine = new PreviewHeaderLine(PreviewHeaderLine::Tone::dim, this);
    m_stack = new QStackedWidget(this);

    m_text = new QPlainTextEdit(m_stack);
    m_text->setReadOnly(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    m_noteView = new QTextBrowser(m_stack);
    m_noteView->setOpenLinks(false);
    m_noteView->setFrameShape(QFrame::NoFrame);
    m_noteView->installEventFilter(this);
    connect(m_noteView, &QTextBrowser::anchorClicked, this, &PreviewView::onLink);

    m_image = new PreviewImageView(m_stack);

    m_table = new QTableView(m_stack);
    m_tableModel = new PreviewTableModel(m_table);
    m_table->setModel(m_tableModel);
    m_table->setFrameShape(QFrame::NoFrame);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->setDefaultSectionSize(theme::rowHeight());
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->horizontalHeader()->setDefaultSectionSize(140);
    m_table->horizontalHeader()->setStretchLastSection(true);
    // Calm rows as the file list has them: banded, no grid, titles over their cells' start.
    m_table->setShowGrid(false);
    m_table->setAlternatingRowColors(true);
    m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_table->verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);

    m_message = new QLabel(m_stack);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);
    m_message->setForegroundRole(QPalette::PlaceholderText);
    m_message->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_message->setContentsMargins(8, 24, 8, 8);

    for (QWidget* page : {static_cast<QWidget*>(m_text), static_cast<QWidget*>(m_noteView), static_cast<QWidget*>(m_image),
                          static_cast<QWidget*>(m_table), static_cast<QWidget*>(m_message)})
        m_stack->addWidget(page);
    placeChildren();
    showPlaceholder(QString());
}

PreviewView::~PreviewView()
{
    // The views let go of the shown document before it goes.
    m_text->setDocument(nullptr);
    m_noteView->setDocument(nullptr);
}

namespace {
// A folder's or a media file's details are all there is to show: they go on the page, one to a
// line and wrapped, instead of into the one header line, where a narrow column cut them short.
bool detailsFillThePage(PreviewContent::Kind kind)
{
    return kind == PreviewContent::Kind::folder || kind == PreviewContent::Kind::details;
}
} // namespace

void PreviewView::setHeader(const PreviewContent& content)
{
    m_title->setText(content.title);
    m_details->setText(detailsFillThePage(content.kind) ? QString() : content.details.join(QStringLiteral(" · ")));
    m_noteLine->setText(content.note);
}

void PreviewView::showPlaceholder(const QString& text)
{
    m_path = {};
    m_kind = PreviewContent::Kind::none;
    for (PreviewHeaderLine* line : {m_title, m_details, m_noteLine})
        line->setText({});
    m_message->setText(text);
    m_stack->setCurrentWidget(m_message);
    letGoOf(std::move(m_document));
}

void PreviewView::letGoOf(std::shared_ptr<QTextDocument> document)
{
    // A view never keeps a document it no longer shows; the document is then freed off the GUI thread.
    if (!document)
        return;
    if (m_text->document() == document.get())
        m_text->setDocument(nullptr);
    if (m_noteView->document() == document.get())
        m_noteView->setDocument(nullptr);
    disposeInBackground(std::move(document));
}

QSize PreviewView::pictureRoom() const { return m_image->room(); }

void PreviewView::showPrepared(PreparedPreview prepared)
{
    using Kind = PreviewContent::Kind;
    PreviewContent& content = prepared.content;
    const bool sameItem = content.path == m_path && content.kind == m_kind;
    m_path = content.path;
    m_kind = content.kind;
    setHeader(content);
    // The previous document goes only after the new one is shown.
    std::shared_ptr<QTextDocument> previous = std::move(m_document);
    m_document = std::move(prepared.document);
    switch (content.kind) {
    case Kind::text:
    case Kind::hex: {
        const int scroll = sameItem ? m_text->verticalScrollBar()->value() : 0;
        m_text->setDocument(m_document.get());
        m_text->verticalScrollBar()->setValue(scroll);
        m_stack->setCurrentWidget(m_text);
        break;
    }
    case Kind::markdown: {
        const int scroll = sameItem ? m_noteView->verticalScrollBar()->value() : 0;
        m_noteView->setDocument(m_document.get());
        m_noteView->verticalScrollBar()->setValue(scroll);
        m_stack->setCurrentWidget(m_noteView);
        break;
    }
    case Kind::image:
    case Kind::pdf:
    case Kind::font:
        m_image->setImage(std::move(content.image), content.kind == Kind::pdf, std::move(prepared.fitted));
        m_stack->setCurrentWidget(m_image);
        break;
    case Kind::table:
    case Kind::archive:
        m_tableModel->setRows(std::move(content.header), std::move(content.rows));
        m_table->verticalHeader()->setVisible(content.kind == Kind::table); // rows are numbered in tables only
        fitTableColumns();
        m_stack->setCurrentWidget(m_table);
        break;
    case Kind::message:
        m_message->setText(content.message);
        m_stack->setCurrentWidget(m_message);
        break;
    case Kind::folder:
    case Kind::details:
        m_message->setText(content.details.join(QLatin1Char('\n')));
        m_stack->setCurrentWidget(m_message);
        break;
    case Kind::none:
        m_message->clear();
        m_stack->setCurrentWidget(m_message);
        break;
    }
    if (m_stack->currentWidget() != m_image)
        m_image->setImage({}, false);
    if (previous != m_document)
        letGoOf(std::move(previous));
}

void PreviewView::addDetail(const FilePath& path, const QString& line)
{
    if (path != m_path)
        return;
    if (detailsFillThePage(m_kind)) {
        m_message->setText(m_message->text().isEmpty() ? line : m_message->text() + QLatin1Char('\n') + line);
        return;
    }
    const QString current = m_details->text();
    m_details->setText(current.isEmpty() ? line : current + QStringLiteral(" · ") + line);
}

QString PreviewView::titleText() const { return m_title->text(); }
QString PreviewView::detailsText() const { return m_details->text(); }
QString PreviewView::noteText() const { return m_noteLine->text(); }
QString PreviewView::pageText() const { return m_stack->currentWidget() == m_message ? m_message->text() : QString(); }

void PreviewView::fitTableColumns()
{
    // Each column as wide as its title and its first rows need, within bounds: a short column
    // isn't padded out to a fixed width while a longer one is cut. The first rows only, measured
    // by the font: the whole table would cost the frame that shows it.
    constexpr int kRowsMeasured = 24, kNarrowest = 48, kPadding = 16;
    const QFontMetrics metrics = m_table->fontMetrics();
    const int widest = std::max(160, m_stack->width() * 2 / 3);
    QHeaderView* columns = m_table->horizontalHeader();
    const int rows = std::min(kRowsMeasured, m_tableModel->rowCount());
    for (int column = 0; column < m_tableModel->columnCount(); ++column) {
        int width = metrics.horizontalAdvance(m_tableModel->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
        for (int row = 0; row < rows; ++row)
            width = std::max(width, metrics.horizontalAdvance(m_tableModel->index(row, column).data().toString()));
        columns->resizeSection(column, std::clamp(width + kPadding, kNarrowest, widest));
    }
}

// The lines around the page: title and details above, the note of a limit below.
int PreviewView::headerHeight() const
{
    return m_title->height() + kLineSpacing + m_details->height() + kHeaderGap + kLineSpacing + m_noteLine->height();
}

QSize PreviewView::sizeHint() const
{
    return m_stack->sizeHint().grownBy(kMargins) + QSize(0, headerHeight());
}

QSize PreviewView::minimumSizeHint() const { return QSize(120, headerHeight() + 60).grownBy(kMargins); }

void PreviewView::placeChildren()
{
    // The note ("Showing the first 512 kB…") sits under the page, where its empty line reads as
    // the view's margin rather than a gap between the header and the page.
    const QRect room = rect().marginsRemoved(kMargins);
    m_title->setGeometry(room.left(), room.top(), room.width(), m_title->height());
    m_details->setGeometry(room.left(), m_title->geometry().bottom() + 1 + kLineSpacing, room.width(), m_details->height());
    const int top = m_details->geometry().bottom() + 1 + kHeaderGap;
    const int noteTop = room.bottom() + 1 - m_noteLine->height();
    m_noteLine->setGeometry(room.left(), noteTop, room.width(), m_noteLine->height());
    m_stack->setGeometry(room.left(), top, room.width(), std::max(0, noteTop - kLineSpacing - top));
}

void PreviewView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeChildren();
}

bool PreviewView::event(QEvent* event)
{
    // Placed by hand, not by a QLayout, so that a new item's header or page never asks the
    // window's layouts to run again; a line's new height (a font change) comes here.
    if (event->type() == QEvent::LayoutRequest)
        placeChildren();
    return QWidget::event(event);
}

QWidget* PreviewView::focusTarget() const
{
    QWidget* shown = m_stack->currentWidget();
    return shown == m_message || shown == m_image ? const_cast<PreviewView*>(this) : shown;
}

void PreviewView::onLink(const QUrl& url)
{
    if (const int line = preview::taskLineOfLink(url.toString()); line > 0) {
        Q_EMIT taskToggleRequested(m_path, line);
        return;
    }
    if (url.scheme() == QLatin1StringView("http") || url.scheme() == QLatin1StringView("https")
        || url.scheme() == QLatin1StringView("mailto"))
        QDesktopServices::openUrl(url);
}

bool PreviewView::eventFilter(QObject* watched, QEvent* event)
{
    // Space on a task box (reached with Tab) toggles it, as a click does.
    if (watched == m_noteView && (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride)) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const QString href = m_noteView->textCursor().charFormat().anchorHref();
        if (key->key() == Qt::Key_Space && key->modifiers() == Qt::NoModifier && preview::taskLineOfLink(href) > 0) {
            event->accept();
            if (event->type() == QEvent::KeyPress)
                onLink(QUrl(href));
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace orwick
