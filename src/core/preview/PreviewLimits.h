#pragma once
// PreviewLimits: how much one preview may read, decode and spend, so that a 4 GB file, a
// 20,000 × 20,000 picture or a huge archive never stalls the panel or exhausts memory. Every
// loader takes one, with the CancelFlag of its task.

#include "base/CancelFlag.h"

#include <QElapsedTimer>
#include <QSize>

namespace orwick {

struct PreviewLimits {
    qint64 textBytes = 512 * 1024;     // text, Markdown, CSV: read at most this much
    int lineChars = 4000;              // a longer line is cut, with a note
    qint64 hexBytes = 4096;            // shown as a hex dump
    QSize box{1200, 1200};             // pictures are decoded to fit in this
    qint64 maxPixels = 40'000'000; // larger pictures are refused unless their format decodes at a smaller size (JPEG, SVG)
    qint64 imageFileBytes = 256 * 1024 * 1024; // pictures larger than this on disk are not decoded
    int markdownImages = 12;           // pictures of a note decoded at most
    int tableRows = 500;
    int tableColumns = 40;
    int archiveEntries = 2000;
    qint64 archiveBytes = 512LL * 1024 * 1024; // compressed bytes read while listing
    qint64 fontBytes = 32 * 1024 * 1024;
    int milliseconds = 3000;           // archives and folder sizes stop after this, with a note
};

// A load's stop conditions in one place: cancelled by its owner, or out of time.
class PreviewBudget {
public:
    PreviewBudget(const CancelFlag& cancel, int milliseconds) : m_cancel(cancel), m_milliseconds(milliseconds) { m_clock.start(); }
    bool isCancelled() const { return m_cancel.isCancelled(); }
    bool isOutOfTime() const { return m_clock.elapsed() > m_milliseconds; }
    bool shouldStop() const { return isCancelled() || isOutOfTime(); }

private:
    const CancelFlag& m_cancel;
    QElapsedTimer m_clock;
    int m_milliseconds;
};

} // namespace orwick
