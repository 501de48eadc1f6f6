#pragma once
// PreviewLoad: keeps one preview loading at a time for a view. show(path) asks for an item: it
// loads at once when nothing else is loading; requests that come while a load runs (the cursor
// running down a list faster than items load) are coalesced so that only the last is loaded. Each load runs off
// the GUI thread (preparePreview); starting one cancels the one before, and a result that is not
// the newest is dropped (its document freed off the GUI thread). A folder's total size follows
// as a second, slower task.
//
// Signals: ready() follows every load that was not superseded, with the prepared preview;
// sizeMeasured() follows a folder's ready() when its size is known. Lives on the GUI thread.

#include "async/Background.h"
#include "ui/preview/PreparedPreview.h"

#include <QObject>
#include <QTimer>

namespace orwick {

class PreviewLoad : public QObject {
    Q_OBJECT
public:
    explicit PreviewLoad(QObject* parent = nullptr);

    // The box pictures are decoded for (device pixels), for loads from now on.
    // The width of a note's text column (device-independent pixels), for its pictures.
    void setBox(QSize box, int columnWidth = 800)
    {
        m_box = box;
        m_columnWidth = columnWidth;
    }
    // The room a picture has in the view (device pixels), for loads from now on.
    void setPictureRoom(QSize room) { m_pictureRoom = room; }
    // Loads `path`; the same path again reloads it only when `force` is set (it changed).
    void show(const FilePath& path, bool force = false);
    // Forgets the item and cancels what runs.
    void clear();
    const FilePath& path() const { return m_path; }
    bool isLoading() const { return m_delay.isActive() || m_task.isRunning(); }

Q_SIGNALS:
    void ready(std::shared_ptr<orwick::PreparedPreview> prepared);
    void sizeMeasured(const orwick::FilePath& folder, const QString& line);

private:
    void start();
    void measure(const FilePath& folder);

    QTimer m_delay;
    TaskSlot m_task;
    TaskSlot m_sizeTask;
    FilePath m_path;
    QSize m_box{900, 900};
    int m_columnWidth = 800;
    QSize m_pictureRoom;
};

} // namespace orwick
