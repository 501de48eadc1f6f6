#include "theme/BuiltInThemes.h"

namespace orwick {

namespace {

// Seven colours in the order of the base keys.
QMap<QString, QString> baseColors(std::initializer_list<const char*> values)
{
    QMap<QString, QString> map;
    qsizetype i = 0;
    for (const char* value : values)
        map.insert(themekeys::base().at(i++), QString::fromLatin1(value));
    return map;
}

ThemeDefinition builtIn(const char* name, std::initializer_list<const char*> light, std::initializer_list<const char*> dark)
{
    ThemeDefinition theme;
    theme.name = QString::fromUtf8(name);
    theme.light = baseColors(light);
    theme.dark = baseColors(dark);
    return theme;
}

// The seven tag colours in the order of themekeys::tag() (gray, green, purple, blue, yellow, red,
// orange), for a theme whose own palette has its red, its green…
ThemeDefinition withTags(ThemeDefinition theme, std::initializer_list<const char*> light, std::initializer_list<const char*> dark)
{
    for (const auto& [map, values] : {std::pair{&theme.light, light}, std::pair{&theme.dark, dark}}) {
        qsizetype i = 0;
        for (const char* value : values)
            map->insert(themekeys::tag().at(i++), QString::fromLatin1(value));
    }
    return theme;
}

QMap<QString, QString> pairs(std::initializer_list<std::pair<const char*, const char*>> entries)
{
    QMap<QString, QString> map;
    for (const auto& [key, value] : entries)
        map.insert(QString::fromLatin1(key), QString::fromLatin1(value));
    return map;
}

} // namespace

const QMap<QString, QString>& defaultColors(Appearance appearance)
{
    static const QMap<QString, QString> light = pairs({
        {"background", "#FFFFFF"}, {"sidebar", "#F4F5F7"}, {"elevated", "#FFFFFF"}, {"text", "#1D1E21"},
        {"textSecondary", "#676A72"}, {"textTertiary", "#9EA1A8"}, {"accent", "#2F6FDE"},
        {"keyword", "#A626A4"}, {"string", "#C0392B"}, {"comment", "#7A8290"}, {"number", "#1C4FD6"},
        {"type", "#0E7C86"}, {"function", "#2D6A31"}, {"property", "#7B4BB7"}, {"attribute", "#9A6700"},
        {"warning", "#D97A0B"}, {"positive", "#2E9E55"}, {"negative", "#D64541"}, {"informative", "#3B7DDD"},
        {"category.folder", "#2F80D8"}, {"category.app", "#8E5CD9"}, {"category.package", "#9A7B4F"},
        {"category.image", "#2EA86A"}, {"category.video", "#D94F70"}, {"category.audio", "#E07B39"},
        {"category.pdf", "#D6453D"}, {"category.archive", "#A0844A"}, {"category.code", "#3B9EB5"},
        {"category.data", "#6B8E23"}, {"category.text", "#6A737D"}, {"category.diskImage", "#708090"},
        {"category.other", "#8A9096"},
        {"tag.gray", "#8E8E93"}, {"tag.green", "#34A853"}, {"tag.purple", "#A852DE"}, {"tag.blue", "#1F7AF0"},
        {"tag.yellow", "#F2BE00"}, {"tag.red", "#EE3B30"}, {"tag.orange", "#F58A00"},
    });
    static const QMap<QString, QString> dark = pairs({
        {"background", "#1C1D20"}, {"sidebar", "#17181A"}, {"elevated", "#26272B"}, {"text", "#E6E7EA"},
        {"textSecondary", "#A2A5AD"}, {"textTertiary", "#6C6F77"}, {"accent", "#5B9BFF"},
        {"keyword", "#F07DC0"}, {"string", "#F2917A"}, {"comment", "#7E8794"}, {"number", "#D8C778"},
        {"type", "#7DD3C8"}, {"function", "#8FCB7E"}, {"property", "#B99AF2"}, {"attribute", "#E3A857"},
        {"warning", "#F08C1A"}, {"positive", "#4CB86B"}, {"negative", "#EB6666"}, {"informative", "#4D8FF2"},
        {"category.folder", "#5AA9F0"}, {"category.app", "#A57BE6"}, {"category.package", "#B8976A"},
        {"category.image", "#45C183"}, {"category.video", "#E86A88"}, {"category.audio", "#F0924F"},
        {"category.pdf", "#EC6259"}, {"category.archive", "#BFA062"}, {"category.code", "#52B6CC"},
        {"category.data", "#8DB33A"}, {"category.text", "#B8BEC6"}, {"category.diskImage", "#8C9AA8"},
        {"category.other", "#9AA0A6"},
        {"tag.gray", "#98989D"}, {"tag.green", "#3FC25E"}, {"tag.purple", "#BF5AF2"}, {"tag.blue", "#2F8CFF"},
        {"tag.yellow", "#FFD60A"}, {"tag.red", "#FF453A"}, {"tag.orange", "#FF9F0A"},
    });
    return appearance == Appearance::dark ? dark : light;
}

const QStringList& defaultTerminalColors(Appearance appearance)
{
    static const QStringList light{"#1D1E21", "#C4372F", "#2E8B46", "#A86F00", "#2F6FDE", "#A626A4", "#0E7C86", "#D5D7DB",
                                   "#676A72", "#E0463D", "#36A654", "#C98A06", "#4D8AF0", "#C03FBE", "#1597A3", "#FFFFFF"};
    static const QStringList dark{"#2A2B2F", "#EB6666", "#4CB86B", "#E3B341", "#5B9BFF", "#D77EE0", "#52B6CC", "#D5D7DB",
                                  "#6C6F77", "#FF8A80", "#6BD38A", "#F5CC66", "#85B6FF", "#EBA1F2", "#7DD3E4", "#FFFFFF"};
    return appearance == Appearance::dark ? dark : light;
}

const QList<ThemeDefinition>& builtInThemes()
{
    static const QList<ThemeDefinition> themes = [] {
        ThemeDefinition orwick;
        orwick.name = kDefaultThemeName; // the default colour set itself
        return QList<ThemeDefinition>{
            orwick,
            builtIn("Paper", {"#FFFFFF", "#F7F7F5", "#FFFFFF", "#37352F", "#787774", "#A5A29C", "#2383E2"},
                    {"#191919", "#202020", "#252525", "#E3E2E0", "#9B9A97", "#5F5E5B", "#529CCA"}),
            withTags(builtIn("Nord", {"#ECEFF4", "#E5E9F0", "#F5F7FA", "#2E3440", "#4C566A", "#7B88A1", "#5E81AC"},
                             {"#2E3440", "#292E39", "#3B4252", "#ECEFF4", "#A3ACBC", "#616E88", "#88C0D0"}),
                     {"#7B88A1", "#8AA46E", "#A2779A", "#5E81AC", "#D9A441", "#BF616A", "#D08770"},
                     {"#8E99AE", "#A3BE8C", "#B48EAD", "#81A1C1", "#EBCB8B", "#BF616A", "#D08770"}),
            withTags(builtIn("Dracula", {"#FFFBEB", "#F7F2DC", "#FFFDF4", "#1F1F1F", "#6C664B", "#8F8970", "#644AC9"},
                             {"#282A36", "#21222C", "#343746", "#F8F8F2", "#BDBFCA", "#6272A4", "#BD93F9"}),
                     {"#8F8970", "#14710A", "#644AC9", "#036A96", "#846E15", "#CB3A2A", "#A34D14"},
                     {"#6272A4", "#50FA7B", "#BD93F9", "#8BE9FD", "#F1FA8C", "#FF5555", "#FFB86C"}),
            withTags(builtIn("Solarized", {"#FDF6E3", "#EEE8D5", "#FDF6E3", "#073642", "#586E75", "#839496", "#268BD2"},
                             {"#002B36", "#00232C", "#073642", "#EEE8D5", "#93A1A1", "#839496", "#268BD2"}),
                     {"#93A1A1", "#859900", "#6C71C4", "#268BD2", "#B58900", "#DC322F", "#CB4B16"},
                     {"#839496", "#859900", "#6C71C4", "#268BD2", "#B58900", "#DC322F", "#CB4B16"}),
            withTags(builtIn("Catppuccin", {"#EFF1F5", "#E6E9EF", "#F7F8FA", "#4C4F69", "#6C6F85", "#9CA0B0", "#8839EF"},
                             {"#1E1E2E", "#181825", "#313244", "#CDD6F4", "#A6ADC8", "#6C7086", "#CBA6F7"}),
                     {"#9CA0B0", "#40A02B", "#8839EF", "#1E66F5", "#DF8E1D", "#D20F39", "#FE640B"},
                     {"#7F849C", "#A6E3A1", "#CBA6F7", "#89B4FA", "#F9E2AF", "#F38BA8", "#FAB387"}),
        };
    }();
    return themes;
}

} // namespace orwick
