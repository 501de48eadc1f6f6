#pragma once
// Session: the saveable layout of one window — its tabs, each tab's pane grid and folders, the
// selected tab and whether the preview is shown. A plain value; WindowState::session() makes one
// and WindowState::restore() rebuilds a window from one.
//
// JSON: {"tabs": [tab…], "selected": int, "showPreview": bool}, each tab
// {"left": path, "right"?: path, "rightIsActive": bool, "columns"?: [[path…]…], "active"?: int,
//  "terminals"?: [path…], "showTerminal"?: bool}.
// "left"/"right" are the first two panes; "columns" and "active" carry the whole grid when it is
// more than one pane or two panes side by side. "terminals" (the folders of the terminal panel's
// shells) and "showTerminal" are there when the tab has any. Paths are written as StoredPath text, so a path
// that is not UTF-8 comes back byte for byte.
//
// The last window's session is kept in the preferences store under "session"; only the first
// window of a run takes it back (forNewWindow).

#include "base/FilePath.h"
#include "base/Result.h"

#include <QJsonObject>
#include <QList>
#include <optional>

namespace orwick {

struct Session {
    struct Tab {
        FilePath left;
        std::optional<FilePath> right;
        bool rightIsActive = false;
        std::optional<QList<QList<FilePath>>> columns; // column by column, top to bottom
        std::optional<int> active;                   // in the grid, counted column by column
        QList<FilePath> terminals;                   // the folders of the terminal panel's shells
        bool showTerminal = false;                   // the terminal panel is open

        // A tab of this grid (columns left to right) with the pane at `activeIndex` active.
        static Tab ofGrid(const QList<QList<FilePath>>& grid, int activeIndex);
        // The grid to rebuild: "columns" when present (empty columns dropped), else "left" and
        // "right"; never empty. Paths are as saved (see Session::folder).
        QList<QList<FilePath>> grid() const;
        // The active pane's index in grid(), within range.
        int activeIndex() const;

        QJsonObject toJson() const;
        // Nothing when a required key is missing or of the wrong type.
        static std::optional<Tab> fromJson(const QJsonObject& object);
        bool operator==(const Tab&) const = default;
    };

    QList<Tab> tabs;
    int selected = 0;
    bool showPreview = false;

    QJsonObject toJson() const;
    QByteArray encoded() const;
    // Nothing when the JSON is not a session (a required key missing or mistyped, no tabs).
    static std::optional<Session> fromJson(const QJsonObject& object);
    static std::optional<Session> decode(const QByteArray& bytes);
    bool operator==(const Session&) const = default;

    // The key of the preferences store that holds the last window's session.
    static constexpr const char* kSettingsKey = "session";
    // Stores the encoded session under "session", replacing the last one.
    Status save() const;
    // Stores already encoded bytes; safe on any thread (it opens its own settings handle).
    static Status saveEncoded(const QByteArray& bytes);
    // The stored session for the first window of a run; every later call, and a missing or
    // undecodable value, gives nothing (a fresh window). A first window that opens folders of
    // its own (`wanted` false) passes its turn without reading the store, and later windows
    // still start fresh.
    static std::optional<Session> forNewWindow(bool wanted = true);
    // Starts a new run: the next forNewWindow() reads the stored session again (tests that
    // play several starts of the program).
    static void beginRun();

    // The folder to show for a saved path: the path when it is an existing folder, else the home
    // folder (a folder deleted or moved since it was saved).
    static FilePath folder(const FilePath& path);
};

} // namespace orwick
