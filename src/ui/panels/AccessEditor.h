#pragma once
// AccessEditor: the information panel's permissions — a grid of read / write / execute boxes
// for owner, group and others (Tab moves between them, Space toggles one), and owner and group
// choosers that only root may use. It draws a FileAccess and reports the access the user asks
// for with accessRequested(); it changes nothing on disk itself.

#include "fileops/FileAccess.h"

#include <QWidget>
#include <array>

class QCheckBox;
class QComboBox;

namespace orwick {

class AccessEditor : public QWidget {
    Q_OBJECT
public:
    explicit AccessEditor(QWidget* parent = nullptr);

    // Shows `access`; `editable` is false for an item whose permissions can't be set (a link).
    void show(const FileAccess& access, const QString& ownerName, const QString& groupName, bool editable);
    // The box for one permission: `who` 0 owner, 1 group, 2 others; `what` 0 read, 1 write, 2 execute.
    QCheckBox* box(int who, int what) const { return m_boxes[who * 3 + what]; }

Q_SIGNALS:
    void accessRequested(const orwick::FileAccess& wanted);

private:
    void boxToggled(int index, bool on);
    void choose(QComboBox* chooser, bool owner);

    std::array<QCheckBox*, 9> m_boxes{};
    QComboBox* m_owner;
    QComboBox* m_group;
    FileAccess m_access;
    bool m_showing = false; // set while show() fills the boxes, so no request follows
};

} // namespace orwick
