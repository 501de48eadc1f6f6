#pragma once
// A PATH of the test's own: a temporary folder holding small executable scripts named like the
// programs a test wants installed (and nothing else), with $VISUAL, $EDITOR and $TERMINAL as the
// test sets them. The environment before is restored when the object goes.

#include "support/TempHome.h"

#include <QByteArray>
#include <QList>
#include <cstdlib>
#include <sys/stat.h>

namespace orwick::test {

class ProgramsOnPath {
public:
    explicit ProgramsOnPath(std::initializer_list<const char*> commands)
    {
        for (const char* variable : kVariables)
            m_saved.append({variable, qgetenv(variable), qEnvironmentVariableIsSet(variable)});
        for (const char* command : commands)
            add(command);
        qputenv("PATH", m_folder.root().native());
        for (const char* variable : {"VISUAL", "EDITOR", "TERMINAL"})
            qunsetenv(variable);
    }
    ~ProgramsOnPath()
    {
        for (const Saved& saved : m_saved)
            saved.wasSet ? qputenv(saved.name, saved.value) : qunsetenv(saved.name);
    }
    ProgramsOnPath(const ProgramsOnPath&) = delete;
    ProgramsOnPath& operator=(const ProgramsOnPath&) = delete;

    // Puts one more program on the PATH; returns its path.
    FilePath add(const char* command)
    {
        const FilePath path = m_folder.file(command, "#!/bin/sh\nexit 0\n");
        chmod(path.c_str(), 0755);
        return path;
    }
    FilePath folder() const { return m_folder.root(); }

private:
    static constexpr const char* kVariables[] = {"PATH", "VISUAL", "EDITOR", "TERMINAL"};
    struct Saved {
        const char* name;
        QByteArray value;
        bool wasSet;
    };
    TempTree m_folder;
    QList<Saved> m_saved;
};

} // namespace orwick::test
