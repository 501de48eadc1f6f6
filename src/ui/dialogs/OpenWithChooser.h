#pragma once
// OpenWithChooser: "Open With…" on the cursor's file — the desktop's applications for the file's
// type (DesktopApps::forType, the default first and marked), then "Other Application…", which
// lists every installed application instead. Return or Open starts the chosen one on the file
// (and adds the file to the desktop's recent files); with "Always use it for … files" ticked it
// becomes the type's default in the user's mimeapps.list. A program that can't start is said in
// the chooser, which stays open. Esc cancels.

#include "base/FilePath.h"
#include "platform/DesktopApps.h"

#include <QDialog>

class QCheckBox;
class QKeyEvent;
class QLabel;
class QListWidget;
class QPushButton;

namespace orwick {

class WindowState;

class OpenWithChooser : public QDialog {
    Q_OBJECT
public:
    OpenWithChooser(const FilePath& file, WindowState* state, QWidget* window);

    // Opens a chooser over `window` on the active pane's cursor each time `state` asks.
    static void follow(WindowState* state, QWidget* window);

    QListWidget* list() const { return m_list; }
    QCheckBox* makeDefault() const { return m_makeDefault; }
    QString note() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showApplications(const QList<DesktopApps::Application>& apps, bool withOther);
    void openChosen();

    FilePath m_file;
    QString m_mimeType;
    QString m_typeName; // the type's comment ("plain text document")
    WindowState* m_state;
    QList<DesktopApps::Application> m_apps; // in list order; "Other Application…" is the row after
    QListWidget* m_list;
    QLabel* m_note;
    QCheckBox* m_makeDefault;
    QPushButton* m_open;
};

} // namespace orwick
