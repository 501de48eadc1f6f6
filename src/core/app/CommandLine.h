#pragma once
// CommandLine: what the `orwick` program was asked to do, read from its arguments as bytes.
//
//   orwick [--new-window] [FOLDER|FILE|file://URL|orwick://open?path=…]…
//   orwick --show trash|recents|screenshots|drives|tag:NAME
//   orwick --help | --version
//   --activation-token=TOKEN   (added by a later `orwick` that was given XDG_ACTIVATION_TOKEN)
//
// Qt's own options (-platform, -style NAME…) are left to Qt. A later `orwick` hands its
// arguments to the running one, which reads them with the same parse().

#include "app/OpenRequest.h"
#include "base/Result.h"
#include "files/Listing.h"

#include <QByteArrayList>

namespace orwick {

struct CommandLine {
    enum class Action { open, help, version };
    Action action = Action::open;
    bool newWindow = false;
    QList<QByteArray> items;        // paths, file:// URLs and links, as given
    std::optional<Listing> listing; // --show
    QByteArray activationToken;     // lets the window that shows the items take the focus

    // The arguments after the program's name; a failure is the line to print.
    static Result<CommandLine> parse(const QList<QByteArray>& arguments);
    // The items as requests, relative paths taken from `workingFolder`.
    OpenRequests requests(const FilePath& workingFolder) const;

    static QString helpText();
    static QString versionText();
};

} // namespace orwick
