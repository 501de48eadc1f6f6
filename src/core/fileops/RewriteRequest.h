#pragma once
// rewriteRequest: how a batch rewrite's job request starts (FileOperations::rewriteFiles,
// keepAndReplace, makeFiles and replaceInPlace): named by its texts (RewriteTexts or
// TransformTexts: the job's title, the undo step's name), its step
// on the caller's undo stack, and the caller's Finished callback; the caller adds the work.
// A template over FileOperations' own request type, which only its members can name.

#include "fileops/FileOperations.h"

namespace orwick {

template <class JobRequest, class Texts>
JobRequest rewriteRequest(const Texts& texts, QUndoStack* undo, FileOperations::Finished finished)
{
    JobRequest request;
    request.title = texts.title;
    request.actionName = texts.actionName;
    request.undo = undo;
    request.finished = std::move(finished);
    return request;
}

} // namespace orwick
