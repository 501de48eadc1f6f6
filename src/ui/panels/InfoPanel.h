#pragma once
// InfoPanel: "Get Info" — a sheet that shows the active pane's cursor item (or, with several
// items selected, a summary of them): name, kind, size, dates, owner, group and permissions, a
// link's target, the MIME type, tags, a note's properties, extended attributes, the
// applications that open it and, for a note, the notes that link to it (BacklinksView). It
// follows the cursor while open. Reading runs off the GUI thread (loadFileInfo); a folder is
// measured in the background with a live count and stops with the Stop button or when the sheet
// closes. Permission and owner changes go to FileOperations as
// one undoable step each; the panel reads the item again after every finished operation.
// A picture also shows its camera, date taken, place and the metadata groups it carries
// (PhotoFacts, read in the same background load, so a metadata strip shows at once).
// The footer names the item's place and the keys the sheet answers to, as the other sheets do.

#include "async/Background.h"
#include "files/FileInfo.h"
#include "images/ImageMetadata.h"
#include "ui/panels/PanelSheet.h"

#include <QMetaObject>
#include <QTimer>
#include <atomic>
#include <memory>

class QFormLayout;
class QLabel;
class QPushButton;

namespace orwick {

class AccessEditor;
class BacklinksView;
class WindowState;

class InfoPanel : public PanelSheet {
    Q_OBJECT
public:
    InfoPanel(WindowState& window, QWidget* parent);
    ~InfoPanel() override;

    static PanelSheet* open(WindowState& window, QWidget* parent);

    // What is shown: one item's facts (empty path while reading or with several items).
    const FileInfo& info() const { return m_info; }
    AccessEditor* accessEditor() const { return m_access; }
    BacklinksView* backlinks() const { return m_backlinks; }
    bool isMeasuring() const { return m_measure.isRunning(); }
    // The text of a row by its label ("Size"), for tests and screen readers.
    QString rowText(const QString& label) const;

protected:
    void stopWork() override;

private:
    // What one background read hands back.
    struct Loaded {
        QList<FileInfo> infos;
        std::optional<PhotoFacts> photo; // for one picture whose metadata could be read
    };

    void followPane();
    void reload();
    void showOne(FileInfo info);
    void showSummary(const QList<FileInfo>& infos);
    void startMeasuring(const QList<FilePath>& folders, qint64 filesBytes, qint64 filesCount);
    void showMeasured(bool finished, bool complete);
    void addRow(const QString& label, const QString& text);
    void addOpenWithRow(const FileInfo& info);
    void clearRows();

    WindowState& m_window;
    QList<FilePath> m_subject; // the items shown
    FileInfo m_info;
    std::optional<PhotoFacts> m_photo; // m_info's, when it is a picture
    TaskSlot m_load;
    TaskSlot m_measure;
    struct Counts {
        std::atomic<qint64> items{0};
        std::atomic<qint64> bytes{0};
    };
    std::shared_ptr<Counts> m_counts;
    qint64 m_baseBytes = 0; // files of a summary, added to the folders' bytes
    qint64 m_baseItems = 0;
    QTimer m_ticker; // samples the counts while measuring
    QFormLayout* m_form;
    QLabel* m_sizeLabel = nullptr;
    QPushButton* m_stop;
    AccessEditor* m_access;
    BacklinksView* m_backlinks; // a note's "Linked From" list
    QMetaObject::Connection m_paneSelection;
    QMetaObject::Connection m_tabPane;
};

} // namespace orwick
