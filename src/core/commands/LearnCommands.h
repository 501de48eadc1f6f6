#pragma once
// The learn family of the command catalogue: one command per topic of the Orwick Guide,
// "learn." + the topic's id, titled as the topic, which opens the guide at its article. Last in
// the catalogue's list. The topics are fixed, so the family is too.

#include "commands/AppCommand.h"

#include <QList>

namespace orwick::LearnCommands {

inline constexpr QLatin1StringView kPrefix("learn.");

const QList<AppCommand>& family();

// "Orwick Guide": the guide at the article read last in this window, else at the first topic.
void openGuide(WindowState& window);

} // namespace orwick::LearnCommands
