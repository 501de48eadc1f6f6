#pragma once
// OpenRequest: one item handed to Orwick from outside (the command line, an orwick:// link,
// another program's "Show in folder"). A folder is opened; a file, or any item with `reveal`,
// is selected in its parent folder.

#include "base/FilePath.h"

#include <QList>

namespace orwick {

struct OpenRequest {
    FilePath path;
    bool reveal = false;

    bool operator==(const OpenRequest&) const = default;
};

using OpenRequests = QList<OpenRequest>;

} // namespace orwick
