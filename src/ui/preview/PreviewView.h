#pragma once
// PreviewView: draws one PreparedPreview — a title with details over the content, and under it
// the note of a limit that was hit. The content: text and hex in a plain text view, a note as
// rendered HTML, pictures, tables and archive entries, or words (a message; a folder's counts
// and size, or a media file's details, one to a line). Used by the preview panel
// and by Quick Look.
//
// In a rendered note each task box is a link; clicking it, or pressing Space while it has the
// keyboard (Tab moves between links), emits taskToggleRequested(). Showing the same item again
// (after it changed) keeps the scroll position. The header and the page are placed by hand, so a
// new item repaints the view without laying out the window again. Lives on the GUI thread.

#include "ui/preview/PreparedPreview.h"

#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QStackedWidget;
class QTableView;
class QTextBrowser;

namespace orwick {

class PreviewHeaderLine;
class PreviewImageView;
class PreviewTableModel;

class PreviewView : public QWidget {
    Q_OBJECT
public:
    explicit PreviewView(QWidget* parent = nullptr);
    ~PreviewView() override;

    void showPrepared(PreparedPreview prepared);
    // A line of text in place of a preview ("Select a file to preview it").
    void showPlaceholder(const QString& text);
    // Adds a detail, when `path` is still shown (a folder's measured size): under the title, or on
    // the page where the details fill it.
    void addDetail(const FilePath& path, const QString& line);

    const FilePath& shownPath() const { return m_path; }
    PreviewContent::Kind shownKind() const { return m_kind; }
    // The room a picture has in the view (device pixels), which loads fit pictures to.
    QSize pictureRoom() const;
    QString titleText() const;
    QString detailsText() const;
    QString noteText() const;
    // The words on the page when it shows words (a message, a folder's or a media file's details).
    QString pageText() const;
    QTextBrowser* noteView() const { return m_noteView; }
    QPlainTextEdit* textView() const { return m_text; }
    PreviewImageView* imageView() const { return m_image; }
    QTableView* tableView() const { return m_table; }
    // The widget that should get the keyboard for the shown kind.
    QWidget* focusTarget() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void taskToggleRequested(const orwick::FilePath& note, int line);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void onLink(const QUrl& url);
    void setHeader(const PreviewContent& content);
    void placeChildren();
    void fitTableColumns();
    int headerHeight() const;
    // Detaches `document` from the views and frees it off the GUI thread (DocumentDisposal.h).
    void letGoOf(std::shared_ptr<QTextDocument> document);

    PreviewHeaderLine* m_title;
    PreviewHeaderLine* m_details;
    PreviewHeaderLine* m_noteLine;
    QStackedWidget* m_stack;
    QPlainTextEdit* m_text;
    QTextBrowser* m_noteView;
    PreviewImageView* m_image;
    QTableView* m_table;
    PreviewTableModel* m_tableModel;
    QLabel* m_message;
    std::shared_ptr<QTextDocument> m_document; // the shown text or note
    FilePath m_path;
    PreviewContent::Kind m_kind = PreviewContent::Kind::none;
};

} // namespace orwick
