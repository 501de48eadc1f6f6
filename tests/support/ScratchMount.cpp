#include "support/ScratchMount.h"

#include <cerrno>
#include <cstring>
#include <sys/mount.h>
#include <unistd.h>

namespace orwick::test {

ScratchMount::ScratchMount(const char* type, const QByteArray& options) { mount(type, type, 0, options); }

ScratchMount::ScratchMount(const FilePath& source) { mount(source.c_str(), nullptr, MS_BIND, {}); }

bool ScratchMount::mount(const char* source, const char* type, unsigned long flags, const QByteArray& options)
{
    const QString what = type ? QLatin1String(type) : QStringLiteral("bind mount");
    if (geteuid() != 0) {
        m_why = QStringLiteral("needs root to mount a %1 (CI runs as root)").arg(what);
        return false;
    }
    m_mounted = ::mount(source, m_root.c_str(), type, flags, options.isEmpty() ? nullptr : options.constData()) == 0;
    if (!m_mounted)
        m_why = QStringLiteral("mounting a %1 failed: %2").arg(what, QString::fromLocal8Bit(strerror(errno)));
    return m_mounted;
}

bool ScratchMount::makeReadOnly()
{
    return m_mounted && ::mount(nullptr, m_root.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

ScratchMount::~ScratchMount()
{
    if (m_mounted)
        ::umount2(m_root.c_str(), MNT_DETACH);
}

} // namespace orwick::test
