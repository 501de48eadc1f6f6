#pragma once
// PreviewImageView: a picture (a photo, a PDF page, a font sample) drawn centred, shrunk to fit
// the widget and never enlarged. The picture was decoded off the GUI thread at about the size it
// is shown, so painting is a plain blit.

#include <QImage>
#include <QWidget>

namespace orwick {

class PreviewImageView : public QWidget {
    Q_OBJECT
public:
    explicit PreviewImageView(QWidget* parent = nullptr);

    // `paper`: draw a white page behind (PDF pages are transparent where nothing is printed).
    void setImage(QImage image, bool paper);
    const QImage& image() const { return m_image; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_image;
    bool m_paper = false;
};

} // namespace orwick
