#pragma once
// LiteralText: text that is not ours — a file or folder name, a path, a tag, a workspace or an
// application's name — made safe for the widgets that read "&" as the mark of a keyboard
// mnemonic (tab titles, buttons, check boxes, menu and action texts, buddied labels). Without
// it "R&D" shows as "RD" with an underlined D, and "Tom && Jerry" would lose an ampersand.
//
// Every place that hands such text to one of those widgets goes through literalText(); text
// that means a mnemonic ("&File") is written with its "&" in place and never passes here.
// Control and bidirectional formatting characters are already drawn visibly by visibleName()
// (files/FilePath.h) when a name is made from its bytes.

#include <QString>

namespace orwick {

// `text` with every "&" doubled, so that a mnemonic-reading widget shows it as written.
QString literalText(const QString& text);

} // namespace orwick
