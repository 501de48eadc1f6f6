#include "ui/notes/NoteEditor.h"

#include "fileops/FileOperations.h"
#include "notes/NoteFile.h"
#include "ui/notes/LivePreview.h"
#include "ui/notes/MarkdownHighlighter.h"
#include "ui/preview/PreviewView.h"
#include "ui/text/LiteralText.h"
#include "ui/theme/Theme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QShortcut>
#include <QSplitter>
#include <QTextBlock>
#include <QVBoxLayout>

namespace orwick {

namespace {

QLabel* dimLabel(QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, theme::dimText());
    label->setPalette(palette);
    return label;
}

} // namespace

NoteEditor::NoteEditor(WindowState* window, const FilePath& file, QWidget* parent)
    : QWidget(parent), m_window(window),
      m_session(new EditSession(file, FileOperations::shared(), window->undoStack(), this)), m_isNote(notefile::isNote(file))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto* header = new QHBoxLayout;
    header->setContentsMargins(10, 6, 10, 6);
    m_title = new QLabel(this);
    m_title->setTextFormat(Qt::PlainText);
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_note = dimLabel(this);
    m_note->setObjectName(QStringLiteral("editorNote"));
    m_note->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_previewButton = new QPushButton(this);
    m_previewButton->setFocusPolicy(Qt::NoFocus);
    m_previewButton->setVisible(m_isNote);
    connect(m_previewButton, &QPushButton::clicked, this, [this] {
        m_window->setDocumentMode(m_window->documentMode() == DocumentMode::split ? DocumentMode::edit : DocumentMode::split);
    });
    header->addWidget(m_title);
    header->addSpacing(8);
    header->addWidget(m_note, 1);
    header->addWidget(m_previewButton);
    layout->addLayout(header);

    m_offer = new QFrame(this);
    m_offer->setObjectName(QStringLiteral("editorOffer"));
    m_offer->setAutoFillBackground(true);
    QPalette offerPalette = m_offer->palette();
    offerPalette.setColor(QPalette::Window, theme::accentFill());
    m_offer->setPalette(offerPalette);
    auto* offerRow = new QHBoxLayout(m_offer);
    offerRow->setContentsMargins(10, 6, 10, 6);
    m_offerText = new QLabel(m_offer);
    m_offerText->setTextFormat(Qt::PlainText);
    m_offerText->setWordWrap(true);
    m_reload = new QPushButton(QStringLiteral("Reload"), m_offer);
    m_keepMine = new QPushButton(QStringLiteral("Keep Mine"), m_offer);
    offerRow->addWidget(m_offerText, 1);
    offerRow->addWidget(m_reload);
    offerRow->addWidget(m_keepMine);
    connect(m_reload, &QPushButton::clicked, this, &NoteEditor::reload);
    connect(m_keepMine, &QPushButton::clicked, this, &NoteEditor::keepMine);
    m_offer->hide();
    layout->addWidget(m_offer);

    m_split = new QSplitter(Qt::Horizontal, this);
    m_split->setChildrenCollapsible(false);
    m_text = new QPlainTextEdit(m_split);
    m_text->setObjectName(QStringLiteral("noteEditorText"));
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    m_text->setTabChangesFocus(false);
    m_text->document()->setDocumentMargin(10);
    m_text->installEventFilter(this);
    if (m_isNote)
        new MarkdownHighlighter(m_text->document());
    m_preview = new PreviewView(m_split);
    m_split->addWidget(m_text);
    m_split->addWidget(m_preview);
    m_split->setStretchFactor(0, 1);
    m_split->setStretchFactor(1, 1);
    layout->addWidget(m_split, 1);
    m_live = new LivePreview(file, m_preview, this);
    connect(m_preview, &PreviewView::taskToggleRequested, this, [this](const FilePath&, int line) { toggleTask(line); });

    // The rendered note beside the text comes and goes with the button or Ctrl+Shift+E.
    auto* previewKey = new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E), this, m_previewButton, &QPushButton::click,
                                     Qt::WidgetWithChildrenShortcut);
    m_previewButton->setToolTip(previewKey->key().toString(QKeySequence::NativeText));
    auto* saveKey = new QShortcut(QKeySequence::Save, this, this, &NoteEditor::save, Qt::WidgetWithChildrenShortcut);
    saveKey->setObjectName(QStringLiteral("saveShortcut"));
    connect(m_text->document(), &QTextDocument::modificationChanged, this, [this](bool modified) {
        m_session->setModified(modified);
        updateHeader();
    });
    connect(m_text->document(), &QTextDocument::contentsChanged, this, [this] {
        if (m_isNote && m_preview->isVisible())
            m_live->setText(currentText());
    });
    connect(m_session, &EditSession::changedOnDisk, this, &NoteEditor::diskChanged);
    connect(m_session, &EditSession::saveFinished, this, &NoteEditor::saveFinished);
}

NoteEditor::~NoteEditor() = default;

Status NoteEditor::open()
{
    if (Status loaded = m_session->load(); !loaded)
        return loaded;
    m_text->setPlainText(m_session->loaded().text);
    m_text->setReadOnly(m_session->isReadOnly());
    m_text->document()->setModified(false);
    if (m_isNote)
        m_live->setText(m_session->loaded().text, true);
    setMode(m_window->documentMode());
    updateHeader();
    return {};
}

void NoteEditor::setMode(DocumentMode mode)
{
    const bool beside = m_isNote && mode == DocumentMode::split;
    const bool appearing = beside && m_preview->isHidden();
    m_preview->setVisible(beside);
    m_previewButton->setText(beside ? QStringLiteral("Hide Preview") : QStringLiteral("Show Preview"));
    if (appearing)
        m_live->setText(currentText(), true);
}

QString NoteEditor::currentText() const
{
    // The raw text keeps what toPlainText would change (a no-break space becomes a space there).
    QString text = m_text->document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    return text;
}

bool NoteEditor::isModified() const { return m_text->document()->isModified(); }

bool NoteEditor::holdsUnsaved() const { return (isModified() && !m_session->isReadOnly()) || m_session->isSaving(); }

QString NoteEditor::offerText() const { return m_offer->isHidden() ? QString() : m_offerText->text(); }

QString NoteEditor::noteText() const { return m_note->text(); }

void NoteEditor::updateHeader()
{
    const QString name = literalText(file().fileName());
    m_title->setText(isModified() ? name + QStringLiteral(" — Edited") : name);
    QStringList notes;
    if (m_session->isReadOnly())
        notes.append(m_session->loaded().readOnlyReason);
    else if (!m_session->loaded().note.isEmpty())
        notes.append(m_session->loaded().note);
    if (!m_reloadedNote.isEmpty())
        notes.append(m_reloadedNote);
    if (notes.isEmpty() && !m_session->isReadOnly())
        notes.append(QStringLiteral("Ctrl+S saves · Esc or Ctrl+E saves and goes back to the preview"));
    m_note->setText(notes.join(QStringLiteral(" · ")));
    m_note->setToolTip(m_note->text());
}

void NoteEditor::save()
{
    if (m_session->isSaving())
        return;
    m_savingText = currentText();
    m_reloadedNote.clear();
    m_session->save(m_savingText);
}

void NoteEditor::saveBeforeLeaving(std::function<void(bool)> done)
{
    if (!isModified() || m_session->isReadOnly()) {
        done(true);
        return;
    }
    m_afterSave.append(std::move(done));
    if (!m_session->isSaving())
        save();
}

void NoteEditor::saveFinished(bool ok)
{
    if (ok) {
        if (currentText() == m_savingText)
            m_text->document()->setModified(false);
        m_offer->hide();
    } else {
        offer(m_session->refusal(), m_session->disk() != EditSession::Disk::same);
    }
    updateHeader();
    for (const auto& done : std::exchange(m_afterSave, {}))
        done(ok);
}

void NoteEditor::diskChanged()
{
    if (m_session->disk() == EditSession::Disk::changed && !isModified() && !m_session->isSaving()) {
        reload(); // nothing typed would be lost: take their text, the editor's undo keeps ours
        m_reloadedNote = QStringLiteral("Reloaded: another program changed it");
        updateHeader();
        return;
    }
    offer(m_session->changeText(), true);
}

void NoteEditor::offer(const QString& sentence, bool changed)
{
    m_offerText->setText(literalText(sentence));
    const bool gone = m_session->disk() == EditSession::Disk::gone;
    m_reload->setVisible(changed);
    m_reload->setText(gone ? QStringLiteral("Close Without Saving") : QStringLiteral("Reload"));
    m_keepMine->setVisible(changed && !m_session->isReadOnly());
    m_offer->show();
}

void NoteEditor::replaceText(const QString& text)
{
    // One edit of the document, so that the editor's own undo gives the text before back.
    QTextCursor cursor(m_text->document());
    const int position = m_text->textCursor().position();
    cursor.beginEditBlock();
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
    cursor.endEditBlock();
    QTextCursor caret = m_text->textCursor();
    caret.setPosition(std::min(position, m_text->document()->characterCount() - 1));
    m_text->setTextCursor(caret);
}

void NoteEditor::reload()
{
    m_offer->hide();
    if (m_session->disk() == EditSession::Disk::gone) {
        m_text->document()->setModified(false);
        m_window->stopEditing();
        return;
    }
    if (Status loaded = m_session->load(); !loaded) {
        offer(loaded.error(), false);
        return;
    }
    replaceText(m_session->loaded().text);
    m_text->setReadOnly(m_session->isReadOnly());
    m_text->document()->setModified(false);
    updateHeader();
}

void NoteEditor::keepMine()
{
    m_offer->hide();
    m_savingText = currentText();
    m_session->overwrite(m_savingText);
}

void NoteEditor::toggleTask(int line)
{
    if (m_text->isReadOnly())
        return;
    const QTextBlock block = m_text->document()->findBlockByNumber(line - 1);
    static const QRegularExpression box(QStringLiteral(R"(^\s*(?:>\s*)?(?:[-*+]|\d{1,9}[.)])\s+\[( |x|X)\])"));
    const QRegularExpressionMatch match = box.match(block.text());
    if (!block.isValid() || !match.hasMatch())
        return;
    QTextCursor cursor(block);
    cursor.setPosition(block.position() + int(match.capturedStart(1)));
    cursor.setPosition(block.position() + int(match.capturedEnd(1)), QTextCursor::KeepAnchor);
    cursor.insertText(match.captured(1) == u" " ? QStringLiteral("x") : QStringLiteral(" "));
}

bool NoteEditor::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_text && event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Escape && key->modifiers() == Qt::NoModifier) {
            m_window->stopEditing();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace orwick
