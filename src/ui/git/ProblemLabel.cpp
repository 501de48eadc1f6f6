#include "ui/git/ProblemLabel.h"

#include "ui/theme/Theme.h"

#include <QLabel>

namespace orwick {

QLabel* makeProblemLabel(QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setWordWrap(true);
    QPalette red = label->palette();
    red.setColor(QPalette::WindowText, theme::negative());
    label->setPalette(red);
    label->hide();
    return label;
}

} // namespace orwick
