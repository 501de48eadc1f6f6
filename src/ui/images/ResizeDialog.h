#pragma once
// ResizeDialog: what "Image: Resize…" asks — the new size as the longest side in pixels, a
// percentage or an exact width × height; the quality, shown when a picture is saved lossily (JPEG,
// WebP, AVIF); and "Replace originals" (otherwise new files go beside them). Return resizes
// through imageActions::resize (one job, one undo step) and closes; Esc cancels and changes
// nothing. Typing in a size's field, or reaching it by Tab, chooses that way of sizing. The
// choices made are offered again the next time.

#include "base/FilePath.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace orwick {

class WindowState;

class ResizeDialog : public QDialog {
    Q_OBJECT
public:
    ResizeDialog(WindowState* state, const QList<FilePath>& pictures, QWidget* window);

    // Opens the dialog over `window` each time `state` asks for resize options.
    static void follow(WindowState* state, QWidget* window);

    QRadioButton* longestChoice() const { return m_longestChoice; }
    QRadioButton* percentChoice() const { return m_percentChoice; }
    QRadioButton* exactChoice() const { return m_exactChoice; }
    QSpinBox* longestField() const { return m_longest; }
    QSpinBox* percentField() const { return m_percent; }
    QSpinBox* widthField() const { return m_width; }
    QSpinBox* heightField() const { return m_height; }
    QSpinBox* qualityField() const { return m_quality; } // hidden when nothing is lossy
    QCheckBox* replaceOriginals() const { return m_replace; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void run();

    WindowState* m_state;
    QList<FilePath> m_pictures;
    QRadioButton* m_longestChoice;
    QRadioButton* m_percentChoice;
    QRadioButton* m_exactChoice;
    QSpinBox* m_longest;
    QSpinBox* m_percent;
    QSpinBox* m_width;
    QSpinBox* m_height;
    QSpinBox* m_quality;
    QCheckBox* m_replace;
};

} // namespace orwick
