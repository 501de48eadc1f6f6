#include "ui/preview/PreviewView.h"

#include "preview/MarkdownRender.h"
#include "ui/preview/DocumentDisposal.h"
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
#include <QVBoxLayout>

namespace orwick {

namespace {

// One line of the header. Lines keep their height whatever they hold, so a new item repaints
// the header without laying the column out again; the whole text is in the tooltip.
QLabel* makeLine(QWidget* parent, bool dim)
{
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    if (dim) {
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, theme::dimText());
        label->setPalette(palette);
    }
    return label;
}

} // namespace

PreviewView::PreviewView(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 8, 10, 8);
    layout->setSpacing(2);
    m_title = makeLine(this, false);
    QFont bold = m_title->font();
    bold.setBold(true);
    if (bold.pointSizeF() > 0)
        bold.setPointSizeF(bold.pointSizeF() * 1.1);
    m_title->setFont(bold);
    m_details = makeLine(this, true);
    m_noteLine = makeLine(this, true);
    for (QLabel* line : {m_title, m_details, m_noteLine})
        line->setFixedHeight(line->fontMetrics().height() + 2);
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

    m_message = makeLine(m_stack, true);
    m_message->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_message->setContentsMargins(8, 24, 8, 8);

    for (QWidget* page : {static_cast<QWidget*>(m_text), static_cast<QWidget*>(m_noteView), static_cast<QWidget*>(m_image),
                          static_cast<QWidget*>(m_table), static_cast<QWidget*>(m_message)})
        m_stack->addWidget(page);
    layout->addWidget(m_title);
    layout->addWidget(m_details);
    layout->addWidget(m_noteLine);
    layout->addSpacing(6);
    layout->addWidget(m_stack, 1);
    showPlaceholder(QString());
}

PreviewView::~PreviewView()
{
    // The views let go of the shown document before it goes.
    m_text->setDocument(nullptr);
    m_noteView->setDocument(nullptr);
}

void PreviewView::setHeader(const PreviewContent& content)
{
    setLine(m_title, content.title);
    setLine(m_details, content.details.join(QStringLiteral(" · ")));
    setLine(m_noteLine, content.note);
}

void PreviewView::setLine(QLabel* label, const QString& text)
{
    label->setProperty("fullText", text);
    label->setToolTip(text);
    label->setText(label->fontMetrics().elidedText(text, Qt::ElideRight, std::max(40, m_stack->width())));
}

void PreviewView::showPlaceholder(const QString& text)
{
    m_path = {};
    m_kind = PreviewContent::Kind::none;
    setLine(m_title, {});
    setLine(m_details, {});
    setLine(m_noteLine, {});
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
        m_stack->setCurrentWidget(m_table);
        break;
    case Kind::message:
        m_message->setText(content.message);
        m_stack->setCurrentWidget(m_message);
        break;
    case Kind::folder:
    case Kind::details:
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
    const QString current = m_details->property("fullText").toString();
    setLine(m_details, current.isEmpty() ? line : current + QStringLiteral(" · ") + line);
}

QString PreviewView::titleText() const { return m_title->property("fullText").toString(); }
QString PreviewView::detailsText() const { return m_details->property("fullText").toString(); }
QString PreviewView::noteText() const { return m_noteLine->property("fullText").toString(); }

void PreviewView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    for (QLabel* line : {m_title, m_details, m_noteLine})
        setLine(line, line->property("fullText").toString());
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
