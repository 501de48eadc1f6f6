#include "ui/pane/StatusLine.h"

#include "base/Formatting.h"
#include "ui/theme/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>

namespace orwick {

StatusLine::StatusLine(PaneState* pane, QWidget* parent) : QWidget(parent), m_pane(pane)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 3, 10, 3);
    m_left = new QLabel(this);
    m_right = new QLabel(this);
    for (QLabel* label : {m_left, m_right}) {
        label->setForegroundRole(QPalette::PlaceholderText); // dim, and follows the theme
        QFont font = label->font();
        font.setPointSizeF(font.pointSizeF() * 0.92);
        label->setFont(font);
    }
    layout->addWidget(m_left, 1);
    layout->addWidget(m_right);
    connect(pane, &PaneState::itemsChanged, this, &StatusLine::update);
    connect(pane, &PaneState::selectionChanged, this, &StatusLine::update);
    connect(pane, &PaneState::loadingChanged, this, &StatusLine::update);
    connect(pane, &PaneState::loadProgressChanged, this, &StatusLine::update);
    connect(pane, &PaneState::locationChanged, this, &StatusLine::update);
    connect(pane->folderSizes(), &FolderSizes::changed, this, &StatusLine::update);
    update();
}

QString StatusLine::describe(const PaneState& pane)
{
    // A search shows its results while it walks; the line says it is still looking.
    const bool searching = pane.isLoading() && pane.listing() && pane.listing()->kind == Listing::Kind::search;
    if (pane.listing() && pane.listing()->kind == Listing::Kind::thisMac)
        return {}; // the drives view tells its own story; it has no items to count
    if (pane.isLoading() && pane.items().isEmpty())
        return searching ? QStringLiteral("Searching…") : pane.loadingText(); // quiet for a quick load
    const qint64 shown = pane.items().size();
    QString text = formatCount(shown, QStringLiteral("item"));
    const qint64 selected = pane.selection().size();
    if (selected > 0) {
        text = QStringLiteral("%1 of %2 selected").arg(QLocale(QLocale::English).toString(selected), QLocale(QLocale::English).toString(shown));
        const qint64 bytes = pane.selectedSize();
        if (bytes > 0)
            text += QStringLiteral(", ") + formatByteCount(bytes);
    }
    if (pane.showHidden())
        text += QStringLiteral(" · hidden files shown");
    if (searching)
        text += QStringLiteral(" · searching…");
    else if (const QString loading = pane.loadingText(); !loading.isEmpty())
        text += QStringLiteral(" · ") + loading; // the first rows of a large folder, the rest coming
    return text;
}

void StatusLine::update() { m_left->setText(describe(*m_pane)); }

QString StatusLine::text() const { return m_left->text(); }

void StatusLine::setTrailingText(const QString& text, const QString& toolTip)
{
    m_right->setText(text);
    m_right->setToolTip(toolTip);
}

} // namespace orwick
