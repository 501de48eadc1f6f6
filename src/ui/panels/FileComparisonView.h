#pragma once
// FileComparisonView: two files compared — "These files are identical" when their bytes are
// equal, else "Different contents" and, for text, the unified diff with each line coloured by its
// DiffText kind, or (V) side by side with the changed words marked inside changed lines. The
// bytes and the diff are worked out in the background when the view opens.

#include "async/Background.h"
#include "disktools/DiffText.h"

#include <QWidget>
#include <optional>

class QLabel;
class QPlainTextEdit;
class QStackedWidget;
class QTextBrowser;

namespace orwick {

class FileComparisonView : public QWidget {
    Q_OBJECT
public:
    FileComparisonView(const FilePath& left, const FilePath& right, QWidget* parent);
    ~FileComparisonView() override;

    std::optional<bool> sameBytes() const { return m_sameBytes; }
    const std::optional<DiffText::Diff>& diff() const { return m_diff; }
    QString headline() const;
    bool isSideBySide() const { return m_sideBySide; }
    void setSideBySide(bool on);
    QPlainTextEdit* unifiedView() const { return m_unified; }
    void stop() { m_task.cancel(); }

Q_SIGNALS:
    void footerChanged(const QString& text);
    void compared();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Outcome {
        std::optional<bool> sameBytes; // none: a file couldn't be read
        std::optional<DiffText::Diff> diff;
        QStringList leftLines, rightLines;
    };
    static Outcome work(const FilePath& left, const FilePath& right, const CancelFlag& cancel);
    void show(Outcome outcome);
    void fillUnified();
    void fillSideBySide();

    FilePath m_left;
    FilePath m_right;
    TaskSlot m_task;
    std::optional<bool> m_sameBytes;
    std::optional<DiffText::Diff> m_diff;
    QStringList m_leftLines, m_rightLines;
    bool m_sideBySide = false;

    QLabel* m_headline;
    QStackedWidget* m_stack;
    QLabel* m_placeholder;
    QPlainTextEdit* m_unified;
    QTextBrowser* m_columns;
};

} // namespace orwick
