#include "git/ChangeKind.h"

namespace orwick {

Change changeOf(char x, char y)
{
    if (x == '?' && y == '?')
        return Change::untracked;
    if (x == 'U' || y == 'U' || (x == 'A' && y == 'A') || (x == 'D' && y == 'D'))
        return Change::conflicted;
    if (x == 'A')
        return Change::added;
    if (x == 'R' || x == 'C')
        return Change::renamed;
    if (x == 'D' || y == 'D')
        return Change::deleted;
    return Change::modified;
}

std::string_view changeKeyword(Change change)
{
    switch (change) {
    case Change::modified: return "modified";
    case Change::added: return "added";
    case Change::deleted: return "deleted";
    case Change::renamed: return "renamed";
    case Change::untracked: return "untracked";
    case Change::conflicted: return "conflicted";
    }
    return {};
}

} // namespace orwick
