#pragma once
// Lets go of a preview's plain-text document off the GUI thread. A 512 KB text holds thousands
// of blocks, each with the line layout the view made for it; freeing them takes milliseconds
// that would otherwise land in the frame that shows the next item (or in the frame where a load
// that lost to a newer one arrives).
//
// Only a document that nobody else holds and no view shows: the caller detaches it from its
// views first. Rich documents (notes) are freed as usual, on return, since their layout may keep
// timers of the GUI thread.

#include <QTextDocument>
#include <memory>

namespace orwick {

void disposeInBackground(std::shared_ptr<QTextDocument> document);

} // namespace orwick
