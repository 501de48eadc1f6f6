#include "ui/panels/AccessEditor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace orwick {

namespace {

// Every user (or group) of the system by name, with its number; read when root opens a chooser.
void fillUsers(QComboBox* chooser)
{
    ::setpwent();
    while (const passwd* pw = ::getpwent())
        chooser->addItem(QString::fromLocal8Bit(pw->pw_name), uint(pw->pw_uid));
    ::endpwent();
}

void fillGroups(QComboBox* chooser)
{
    ::setgrent();
    while (const group* gr = ::getgrent())
        chooser->addItem(QString::fromLocal8Bit(gr->gr_name), uint(gr->gr_gid));
    ::endgrent();
}

void select(QComboBox* chooser, const QString& name, uint id)
{
    int index = chooser->findData(id);
    if (index < 0) {
        chooser->addItem(name, id);
        index = chooser->count() - 1;
    }
    chooser->setCurrentIndex(index);
}

} // namespace

AccessEditor::AccessEditor(QWidget* parent) : QWidget(parent)
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    const QStringList whats{QStringLiteral("Read"), QStringLiteral("Write"), QStringLiteral("Execute")};
    const QStringList whos{QStringLiteral("Owner"), QStringLiteral("Group"), QStringLiteral("Others")};
    for (int what = 0; what < 3; ++what)
        grid->addWidget(new QLabel(whats[what], this), 0, what + 1, Qt::AlignCenter);
    for (int who = 0; who < 3; ++who) {
        grid->addWidget(new QLabel(whos[who], this), who + 1, 0);
        for (int what = 0; what < 3; ++what) {
            const int index = who * 3 + what;
            auto* box = new QCheckBox(this);
            box->setAccessibleName(whos[who] + QLatin1Char(' ') + whats[what]);
            box->setToolTip(box->accessibleName());
            connect(box, &QCheckBox::toggled, this, [this, index](bool on) { boxToggled(index, on); });
            m_boxes[index] = box;
            grid->addWidget(box, who + 1, what + 1, Qt::AlignCenter);
        }
    }
    const bool root = ::geteuid() == 0;
    m_owner = new QComboBox(this);
    m_group = new QComboBox(this);
    for (QComboBox* chooser : {m_owner, m_group}) {
        chooser->setEnabled(root);
        chooser->setToolTip(root ? QString() : QStringLiteral("Only an administrator can give a file to someone else"));
    }
    if (root) {
        fillUsers(m_owner);
        fillGroups(m_group);
    }
    connect(m_owner, &QComboBox::activated, this, [this] { choose(m_owner, true); });
    connect(m_group, &QComboBox::activated, this, [this] { choose(m_group, false); });
    grid->addWidget(m_owner, 1, 4);
    grid->addWidget(m_group, 2, 4);
    grid->setColumnStretch(5, 1);
}

void AccessEditor::show(const FileAccess& access, const QString& ownerName, const QString& groupName, bool editable)
{
    m_showing = true;
    m_access = access;
    for (int index = 0; index < 9; ++index) {
        m_boxes[index]->setChecked(access.mode & (0400u >> index));
        m_boxes[index]->setEnabled(editable);
    }
    select(m_owner, ownerName, access.owner);
    select(m_group, groupName, access.group);
    m_showing = false;
}

void AccessEditor::boxToggled(int index, bool on)
{
    if (m_showing)
        return;
    FileAccess wanted = m_access;
    const unsigned bit = 0400u >> index;
    wanted.mode = on ? (wanted.mode | bit) : (wanted.mode & ~bit);
    m_access = wanted; // a second toggle before the reload builds on this one
    Q_EMIT accessRequested(wanted);
}

void AccessEditor::choose(QComboBox* chooser, bool owner)
{
    if (m_showing)
        return;
    FileAccess wanted = m_access;
    (owner ? wanted.owner : wanted.group) = chooser->currentData().toUInt();
    if (wanted == m_access)
        return;
    m_access = wanted;
    Q_EMIT accessRequested(wanted);
}

} // namespace orwick
