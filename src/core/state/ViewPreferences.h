#pragma once
// ViewPreferences: how folders are shown — the default view, "grid for image and video folders",
// the view remembered per folder, Vim keys, the grid's tile size. One shared instance, kept in the
// settings store under "defaultViewMode", "gridForMedia", "folderViewModes", "vimKeys" and "iconSize".

#include "files/FileItem.h"

#include <QHash>
#include <QObject>

namespace orwick {

enum class ViewMode { grid, list, columns, table };

QString viewModeName(ViewMode mode);
std::optional<ViewMode> viewModeFromName(const QString& name);

class ViewPreferences : public QObject {
    Q_OBJECT
public:
    enum class Reason { saved, media, defaultMode };

    // Reads the settings store; anything missing or damaged takes its default.
    explicit ViewPreferences(QObject* parent = nullptr);

    ViewMode defaultViewMode() const { return m_defaultViewMode; }
    bool gridForMedia() const { return m_gridForMedia; }
    bool vimKeys() const { return m_vimKeys; }
    const QHash<QString, ViewMode>& folderViewModes() const { return m_folderViewModes; }
    // The grid's tile edge in pixels, within [kMinIconSize, kMaxIconSize].
    double iconSize() const { return m_iconSize; }
    static constexpr double kMinIconSize = 48, kMaxIconSize = 256, kDefaultIconSize = 112;

    void setDefaultViewMode(ViewMode mode);
    void setGridForMedia(bool on);
    void setVimKeys(bool on);
    void setIconSize(double size);

    // The mode for a folder: remembered, else grid for mostly media (when on), else the default.
    std::pair<ViewMode, Reason> mode(const FilePath& folder, bool isMostlyMedia) const;
    void remember(ViewMode mode, const FilePath& folder);

    // At least 3 non-folder items, and at least 60 % of them pictures or videos.
    static bool isMostlyMedia(const FileItems& items);

Q_SIGNALS:
    void changed();

private:
    void save() const;

    ViewMode m_defaultViewMode = ViewMode::list;
    bool m_gridForMedia = true;
    bool m_vimKeys = false;
    double m_iconSize = kDefaultIconSize;
    QHash<QString, ViewMode> m_folderViewModes;
};

} // namespace orwick
