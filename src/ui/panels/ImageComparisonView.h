#pragma once
// ImageComparisonView: two pictures compared — side by side, one over the other with a slider
// between them (drag, or Left and Right), or the difference picture ImageDiff draws, with the
// summary line under them. S steps through the three views. Both pictures are read (at most 1600
// pixels on the longer side) and compared in the background when the view opens.

#include "async/Background.h"
#include "disktools/ImageDiff.h"

#include <QImage>
#include <QWidget>

namespace orwick {

class ImageComparisonView : public QWidget {
    Q_OBJECT
public:
    enum class Mode { sideBySide, slider, difference };

    ImageComparisonView(const FilePath& left, const FilePath& right, QWidget* parent);
    ~ImageComparisonView() override;

    Mode mode() const { return m_mode; }
    void setMode(Mode mode);
    static QString modeTitle(Mode mode); // "Side by side", "Slider", "Difference"
    QString summary() const;
    bool isLoaded() const { return m_loaded; }
    double slider() const { return m_slider; }
    void stop() { m_task.cancel(); }

Q_SIGNALS:
    void footerChanged(const QString& text);
    void compared();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    struct Loaded {
        QImage left, right;
        std::optional<ImageDiff::Result> result;
    };
    QRect fitted(const QSize& image, const QRect& area) const;
    void updateFooter();

    TaskSlot m_task;
    bool m_loaded = false;
    QImage m_leftImage, m_rightImage;
    std::optional<ImageDiff::Result> m_result;
    Mode m_mode = Mode::sideBySide;
    double m_slider = 0.5;
};

} // namespace orwick
