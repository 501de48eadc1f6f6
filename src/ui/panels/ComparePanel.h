#pragma once
// ComparePanel: "Compare" on two folders, two files or two pictures (the window state's panel
// items, left then right). Folders show FolderComparisonView (what differs, with sync actions),
// pictures ImageComparisonView (side by side, slider, difference), other files
// FileComparisonView (identical or not, and the text diff). The kind is decided when the panel
// opens. "Compare the two versions" of a changed pair shows that pair in the same sheet, over the
// folder list: Esc goes back to the list as it was (its result and row kept), a second Esc closes.

#include "ui/panels/PanelSheet.h"

#include <QPointer>

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
    // The file pair shown over the folder list, if one is.
    QWidget* pairView() const { return m_pair; }

    // Both pictures by their names' types (what QImageReader reads).
    static bool arePictures(const FilePath& left, const FilePath& right);

protected:
    void stopWork() override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // The view of two files or two pictures; its footer goes through showFooter().
    QWidget* makeFileView(const FilePath& left, const FilePath& right);
    void openPair(const FilePath& left, const FilePath& right);
    void closePair();
    // A view's footer; a pair's says that Esc goes back to the folders.
    void showFooter(QWidget* from, const QString& text);

    FilePath m_left;
    FilePath m_right;
    QWidget* m_view = nullptr;
    QPointer<QWidget> m_pair;
    QString m_pairName;     // the pair's path below the folders
    QString m_folderFooter; // the folder list's, shown again when the pair goes
};

} // namespace orwick
