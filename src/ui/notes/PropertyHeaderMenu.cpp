#include "ui/notes/PropertyHeaderMenu.h"

#include "ui/text/LiteralText.h"
#include "ui/theme/Theme.h"

#include <QMenu>
#include <QPainter>
#include <QPixmap>

namespace orwick {

namespace {

QString quoted(const QString& text) { return QStringLiteral("“%1”").arg(text); }

void reportFailure(const HeaderMenuContext& context, const Status& status)
{
    if (!status && context.report)
        context.report(status.error());
}

// Changes the folder's settings (columns, types, flags) and saves them.
void changeColumns(const HeaderMenuContext& context, const std::function<void(FolderColumns&)>& change)
{
    if (!context.store)
        return;
    FolderColumns columns = context.store->columns(context.folder);
    change(columns);
    reportFailure(context, context.store->setColumns(context.folder, columns));
}

QIcon swatch(std::optional<int> color)
{
    QPixmap pixmap(14, 14);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(theme::optionColor(color));
    painter.setPen(theme::separator());
    painter.drawRoundedRect(QRectF(1, 1, 12, 12), 3, 3);
    return QIcon(pixmap);
}

void addTypeMenu(QMenu* menu, const HeaderMenuContext& context, const QString& key, PropertyType current)
{
    QMenu* types = menu->addMenu(QStringLiteral("Type"));
    const std::pair<PropertyType, const char*> names[] = {
        {PropertyType::text, "Text"},         {PropertyType::number, "Number"}, {PropertyType::date, "Date"},
        {PropertyType::checkbox, "Checkbox"}, {PropertyType::select, "Select"}, {PropertyType::list, "List"}};
    for (const auto& [type, name] : names) {
        QAction* action = types->addAction(QString::fromUtf8(name));
        action->setCheckable(true);
        action->setChecked(type == current);
        QObject::connect(action, &QAction::triggered, menu, [context, key, type = type] {
            changeColumns(context, [&](FolderColumns& columns) { columns.types.insert(key, type); });
        });
    }
}

void addOptionMenu(QMenu* options, const HeaderMenuContext& context, const QString& key, const QStringList& all,
                   qsizetype at, std::optional<int> color)
{
    const QString option = all[at];
    QMenu* menu = options->addMenu(swatch(color), literalText(option));
    QObject::connect(menu->addAction(QStringLiteral("Rename…")), &QAction::triggered, options, [context, key, option] {
        if (!context.ask || !context.store)
            return;
        const auto name = context.ask(QStringLiteral("Rename Option"), QStringLiteral("New name for %1:").arg(quoted(option)), option);
        if (name)
            reportFailure(context, context.store->renameOption(key, option, name->trimmed(), context.folder, context.items,
                                                               context.undo));
    });
    QObject::connect(menu->addAction(QStringLiteral("Delete")), &QAction::triggered, options, [context, key, option] {
        if (context.store)
            reportFailure(context, context.store->deleteOption(option, key, context.folder, context.items, context.undo));
    });
    menu->addSeparator();
    QAction* up = menu->addAction(QStringLiteral("Move Up"));
    up->setEnabled(at > 0);
    QObject::connect(up, &QAction::triggered, options, [context, key, option, before = at > 0 ? all[at - 1] : QString()] {
        if (context.store)
            context.store->moveOption(option, key, before, context.folder, context.items, context.undo);
    });
    QAction* down = menu->addAction(QStringLiteral("Move Down"));
    down->setEnabled(at + 1 < all.size());
    const std::optional<QString> afterNext = at + 2 < all.size() ? std::optional(all[at + 2]) : std::nullopt;
    QObject::connect(down, &QAction::triggered, options, [context, key, option, afterNext] {
        if (context.store)
            context.store->moveOption(option, key, afterNext, context.folder, context.items, context.undo);
    });
    QMenu* colors = menu->addMenu(QStringLiteral("Color"));
    QList<std::pair<QString, std::optional<int>>> choices{{QStringLiteral("Default"), std::nullopt}};
    const QStringList names = theme::optionColorNames();
    for (int i = 0; i < names.size(); ++i)
        choices.append({names[i], i});
    for (const auto& [name, index] : choices) {
        QAction* action = colors->addAction(swatch(index), name);
        action->setCheckable(true);
        action->setChecked(index == color);
        QObject::connect(action, &QAction::triggered, options, [context, key, option, index = index] {
            if (context.store)
                context.store->setColor(index, option, key, context.folder, context.undo);
        });
    }
}

void addPropertyActions(QMenu* menu, const HeaderMenuContext& context, const QString& key)
{
    FileProperties* store = context.store;
    QObject::connect(menu->addAction(literalText(QStringLiteral("Rename %1…").arg(quoted(key)))), &QAction::triggered, menu, [context, key] {
        if (!context.ask || !context.store)
            return;
        if (const auto name = context.ask(QStringLiteral("Rename Property"), QStringLiteral("New name for %1:").arg(quoted(key)), key))
            reportFailure(context, context.store->rename(key, name->trimmed(), context.folder, context.items, context.undo));
    });
    QObject::connect(menu->addAction(literalText(QStringLiteral("Delete %1").arg(quoted(key)))), &QAction::triggered, menu, [context, key] {
        if (context.store)
            reportFailure(context, context.store->remove(key, context.folder, context.items, context.undo));
    });
    QObject::connect(menu->addAction(QStringLiteral("Hide Column")), &QAction::triggered, menu, [context, key] {
        changeColumns(context, [&](FolderColumns& columns) { columns.shown.removeAll(key); });
    });
    const PropertyType type = store->type(key, context.folder, context.items);
    addTypeMenu(menu, context, key, type);
    if (type == PropertyType::select || type == PropertyType::list) {
        QMenu* options = menu->addMenu(QStringLiteral("Options"));
        const QStringList all = store->options(key, context.folder, context.items);
        const QMap<QString, int> colors = store->columns(context.folder).optionColors.value(key);
        if (all.isEmpty())
            options->addAction(QStringLiteral("No Options Yet"))->setEnabled(false);
        for (qsizetype at = 0; at < all.size(); ++at)
            addOptionMenu(options, context, key, all, at,
                          colors.contains(all[at]) ? std::optional(colors.value(all[at])) : std::nullopt);
    }
    menu->addSeparator();
}

void addBuiltInColumn(QMenu* menu, const HeaderMenuContext& context, const QString& title, bool shown,
                      std::function<void(FolderColumns&, bool)> set)
{
    QAction* action = menu->addAction(title);
    action->setCheckable(true);
    action->setChecked(shown);
    QObject::connect(action, &QAction::triggered, menu, [context, set](bool checked) {
        changeColumns(context, [&](FolderColumns& columns) { set(columns, checked); });
    });
}

} // namespace

void fillHeaderMenu(QMenu* menu, const HeaderMenuContext& context)
{
    if (!context.store || context.folder.isEmpty())
        return;
    if (context.key)
        addPropertyActions(menu, context, *context.key);

    const FolderColumns settings = context.store->columns(context.folder);
    QStringList keys = context.store->keys(context.items);
    for (const QString& key : settings.shown)
        if (!keys.contains(key))
            keys.append(key);
    menu->addSection(QStringLiteral("Property Columns"));
    if (keys.isEmpty())
        menu->addAction(QStringLiteral("No Properties in This Folder"))->setEnabled(false);
    for (const QString& key : std::as_const(keys)) {
        QAction* action = menu->addAction(literalText(key));
        action->setCheckable(true);
        action->setChecked(settings.shown.contains(key));
        QObject::connect(action, &QAction::triggered, menu, [context, key](bool checked) {
            changeColumns(context, [&](FolderColumns& columns) {
                columns.shown.removeAll(key);
                if (checked)
                    columns.shown.append(key);
            });
        });
    }
    QObject::connect(menu->addAction(QStringLiteral("New Property Column…")), &QAction::triggered, menu, [context] {
        if (!context.ask)
            return;
        const auto name = context.ask(QStringLiteral("New Property Column"), QStringLiteral("Property name:"), QString());
        const QString key = name ? name->trimmed() : QString();
        if (key.isEmpty())
            return;
        changeColumns(context, [&](FolderColumns& columns) {
            if (!columns.shown.contains(key))
                columns.shown.append(key);
        });
    });

    menu->addSection(QStringLiteral("File Columns"));
    addBuiltInColumn(menu, context, QStringLiteral("Date Modified"), !settings.hidesModified,
                     [](FolderColumns& columns, bool shown) { columns.hidesModified = !shown; });
    addBuiltInColumn(menu, context, QStringLiteral("Size"), !settings.hidesSize,
                     [](FolderColumns& columns, bool shown) { columns.hidesSize = !shown; });
    addBuiltInColumn(menu, context, QStringLiteral("Kind"), settings.showsKind,
                     [](FolderColumns& columns, bool shown) { columns.showsKind = shown; });
}

} // namespace orwick
