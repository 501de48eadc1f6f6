#pragma once
// makeProblemLabel: the line of a git sheet where a failure shows in GitTexts' words — word
// wrapped, in the theme's negative colour, hidden until there is something to say. The sheet
// adds it to its body and sets its text.

class QLabel;
class QWidget;

namespace orwick {

QLabel* makeProblemLabel(QWidget* parent);

} // namespace orwick
