#pragma once
// ComparePanel: "Compare" on two folders, two files or two pictures (the window state's panel
// items, left then right). Folders show FolderComparisonView (what differs, with sync actions),
// pictures ImageComparisonView (side by side, slider, difference), other files
// FileComparisonView (identical or not, and the text diff). The kind is decided when the panel
// opens. "Compare the two versions" of a changed pair opens a new compare panel on that pair.

#include "ui/panels/PanelSheet.h"

namespace orwick {

class WindowState;

class ComparePanel : public PanelSheet {
    Q_OBJECT
public:
    // The panel for the state's two panel items; none when there aren't two.
    static PanelSheet* open(WindowState& state, QWidget* window);

    ComparePanel(WindowState& state, const FilePath& left, const FilePath& right, QWidget* window);

    const FilePath& left() const { return m_left; }
    const FilePath& right() const { return m_right; }
    QWidget* view() const { return m_view; }

    // Both pictures by their names' types (what QImageReader reads).
    static bool arePictures(const FilePath& left, const FilePath& right);

protected:
    void stopWork() override;

private:
    FilePath m_left;
    FilePath m_right;
    QWidget* m_view = nullptr;
};

} // namespace orwick
