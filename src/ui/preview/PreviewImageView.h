#pragma once
// PreviewImageView: a picture (a photo, a PDF page, a font sample) drawn centred, shrunk to fit
// the widget and never enlarged. The picture was decoded off the GUI thread at about the size it
// is shown, and a copy at exactly the shown size usually comes with it (made in the background
// for the room the view had when the load began), so painting is a plain blit. When the view's
// size has changed since, the picture is scaled once for the new size and kept, not on every paint.

#include <QImage>
#include <QWidget>

namespace orwick {

class PreviewImageView : public QWidget {
    Q_OBJECT
public:
    explicit PreviewImageView(QWidget* parent = nullptr);

    // `paper`: draw a white page behind (PDF pages are transparent where nothing is printed).
    // `fitted`: the picture already scaled to its shown size, when the loader made one.
    void setImage(QImage image, bool paper, QImage fitted = {});
    const QImage& image() const { return m_image; }
    // The room a picture has here, in device pixels (the widget less its margins).
    QSize room() const;
    // The size, in device pixels, a picture of `size` is shown at in `room`: shrunk to fit, never enlarged.
    static QSize shownSize(QSize size, QSize room);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_image;
    QImage m_fitted; // m_image at the size last shown
    bool m_paper = false;
};

} // namespace orwick
