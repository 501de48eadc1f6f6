#include "fileops/CopyProgress.h"

namespace orwick {

CopyProgress::Snapshot CopyProgress::snapshot() const
{
    QMutexLocker locker(&m_lock);
    Snapshot copy = m_state;
    copy.currentFile = QString::fromUtf8(m_currentName);
    copy.isCancelled = isCancelled();
    return copy;
}

void CopyProgress::setTotalBytes(qint64 bytes)
{
    QMutexLocker locker(&m_lock);
    m_state.totalBytes = bytes;
}

void CopyProgress::setTotalItems(qint64 items)
{
    QMutexLocker locked(&m_lock);
    m_state.totalBytes = items;
    m_state.countsItems = true;
}

void CopyProgress::addTotalBytes(qint64 bytes)
{
    QMutexLocker locker(&m_lock);
    m_state.totalBytes += bytes;
}

void CopyProgress::startFile(QByteArrayView name, qint64 size)
{
    {
        QMutexLocker locker(&m_lock);
        m_currentName = name.toByteArray();
        m_state.currentFileSize = size;
        m_state.currentFileBytes = 0;
    }
    if (m_fileObserver)
        m_fileObserver(name);
}

void CopyProgress::advance(qint64 bytes)
{
    QMutexLocker locker(&m_lock);
    m_state.currentFileBytes += bytes;
    m_state.finishedBytes += bytes;
}

void CopyProgress::addFinished(qint64 bytes)
{
    QMutexLocker locker(&m_lock);
    m_state.finishedBytes += bytes;
}

void CopyProgress::setFailure(const QString& message)
{
    QMutexLocker locker(&m_lock);
    if (!m_state.failure)
        m_state.failure = message;
}

} // namespace orwick
