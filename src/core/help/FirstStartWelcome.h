#pragma once
// The welcome sheet's first-start rule: Orwick greets a user once, at the first start that opens
// a plain window — one started with no folders or files to show and with no session to reopen
// (a start that shows something the user asked for is left as it is, and greets at a later plain
// start). Once greeted, the preferences store remembers it (settingsKey::welcomed) and no start
// greets again; the "Welcome to Orwick" command shows the sheet at any time.

#include <QSettings>

namespace orwick::firstStart {

enum class Start {
    plain,    // no paths or listings asked for, no session reopened
    shows,    // the start shows something: paths, a listing, or the reopened session
    measured, // a traced start (benchmarks, start-up tests): nothing is added to what is timed
};

// Whether this start greets the user; when it does, the store remembers that it has.
bool takeWelcome(QSettings& settings, Start start);

} // namespace orwick::firstStart
