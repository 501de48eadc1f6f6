#pragma once
// The process-wide stores that window actions reach (git, …). Set once at start by the program
// (or by a test); absent ones make their commands disabled.

namespace orwick {

class ExternalPrograms;
class Frecency;
class FileProperties;
class Git;

struct Services {
    Git* git = nullptr;
    Frecency* frecency = nullptr; // folder visits, for the palette
    FileProperties* properties = nullptr; // typed file properties and folder database settings
    ExternalPrograms* programs = nullptr; // the code editor and terminal "Open in …" uses
};

Services& services();

} // namespace orwick
