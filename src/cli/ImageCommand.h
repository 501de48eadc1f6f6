#pragma once
// orwick-cli image: the picture tools on the command line (convert, resize, rotate, flip, sets,
// strip, ocr, pdf). The "image" command itself only dispatches; each form lives in its own file and adds
// itself here with a static ImageFormRegistration, so a form never touches another's file.

#include "cli/CliCommand.h"

namespace orwick::cli {

struct ImageForm {
    QByteArray verb; // "convert"
    // Gets the arguments after the verb; returns the process exit code.
    std::function<int(const Arguments& arguments)> run;
};

void registerImageForm(ImageForm form);

struct ImageFormRegistration {
    explicit ImageFormRegistration(ImageForm form) { registerImageForm(std::move(form)); }
};

// The usage of every form, for usage errors of any one of them.
extern const QString kImageUsage;

} // namespace orwick::cli
