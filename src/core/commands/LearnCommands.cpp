#include "commands/LearnCommands.h"

#include "help/GuideTopics.h"
#include "state/WindowState.h"

namespace orwick::LearnCommands {

const QList<AppCommand>& family()
{
    static const QList<AppCommand> list = [] {
        QList<AppCommand> made;
        for (const GuideTopic& topic : guide::topics()) {
            AppCommand command;
            command.id = kPrefix + topic.id;
            command.title = topic.title;
            command.symbol = QStringLiteral("graduationcap");
            command.run = [id = topic.id](WindowState& w) { w.setLearnArticle(id); };
            made.append(command);
        }
        return made;
    }();
    return list;
}

void openGuide(WindowState& window)
{
    const QString last = window.lastLearnArticle();
    window.setLearnArticle(guide::find(last) ? last : guide::topics().first().id);
}

} // namespace orwick::LearnCommands
