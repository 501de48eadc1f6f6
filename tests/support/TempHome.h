#pragma once
// Test isolation: every test program points HOME and the XDG variables at a fresh temporary
// folder before anything reads them, so no test ever touches the real home.

#include "base/FilePath.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace orwick::test {

// The temporary home of this test program (made by the test main).
FilePath tempHome();

// Points HOME, XDG_DATA_HOME, XDG_CONFIG_HOME, XDG_CACHE_HOME and XDG_RUNTIME_DIR under `root`.
void pointHomeAt(const QByteArray& root);

// A temporary folder, removed with its contents when the object goes.
class TempTree {
public:
    TempTree();
    FilePath root() const { return m_root; }
    FilePath path(const QString& relative) const { return m_root.child(relative); }

    // Makes a file (and its parent folders) with the given content; returns its path.
    FilePath file(const QString& relative, const QByteArray& content = {}) const;
    FilePath file(const QByteArray& relativeBytes, const QByteArray& content) const;
    FilePath file(const char* relative, const QByteArray& content = {}) const { return file(QByteArray(relative), content); }
    FilePath folder(const QString& relative) const;
    FilePath link(const QString& relative, const QByteArray& target) const;
    // Sets the modification time (seconds since the epoch).
    void touch(const FilePath& path, qint64 seconds) const;

private:
    QTemporaryDir m_dir;
    FilePath m_root;
};

// Writes `content` to `path`, wherever it is (its parent folders made), over what was there;
// false when it couldn't.
bool writeFile(const FilePath& path, const QByteArray& content);
// Reads a whole file; empty when unreadable.
QByteArray readAll(const FilePath& path);
bool exists(const FilePath& path);

} // namespace orwick::test
