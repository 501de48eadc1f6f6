#pragma once
// PreviewHeaderLine: one line of the preview's header (title, details, note), drawn elided to
// the width it has, with the whole text in its tooltip. Its size never depends on its text, so
// a new item repaints the line and nothing else: a QLabel would ask every layout up to the
// window to run again on each cursor move (milliseconds per frame in a large window).
// Dim lines draw in the palette's dim text colour, so a theme change reaches them.

#include <QWidget>

namespace orwick {

class PreviewHeaderLine : public QWidget {
    Q_OBJECT
public:
    enum class Tone { normal, dim };
    PreviewHeaderLine(Tone tone, QWidget* parent = nullptr);

    void setText(const QString& text);
    const QString& text() const { return m_text; }
    // The text as drawn in the current width (elided with "…" when it doesn't fit).
    QString shownText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    Tone m_tone;
    QString m_text;
};

} // namespace orwick
