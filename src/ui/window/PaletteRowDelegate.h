#pragma once
// Draws one palette row: icon, title, the dimmed subtitle after it and the command's shortcut
// right-aligned in its own column, so shortcuts line up whatever the title's length. Rows carry
// their parts in the item roles below; rows without a subtitle or shortcut leave them empty.
// Heading rows (no PaletteRowRole) are drawn as plain items.
// A row of a command that can't run here (DimmedRole) stays dimmed when selected: the selection
// is the theme's muted one (the disabled palette's highlight) and the title, its reason and its
// shortcut keep the dim text colour, which reads on that highlight in light and dark themes alike.

#include <QStyledItemDelegate>

namespace orwick {

class PaletteRowDelegate : public QStyledItemDelegate {
public:
    enum Role { PaletteRowRole = Qt::UserRole + 1, ShortcutRole, SubtitleRole, DimmedRole };

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // Where a shortcut is drawn within a row's text area: against its right end (empty for none).
    static QRect shortcutRect(const QRect& textRect, const QFontMetrics& metrics, const QString& shortcut);
};

} // namespace orwick
