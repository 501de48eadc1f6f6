#include "ui/fileops/ConflictDialog.h"

#include "ui/fileops/DialogFocus.h"

#include <QMessageBox>
#include <QPushButton>

namespace orwick {

void askConflict(QWidget* window, const FileOperations::ConflictQuestion& question, FileOperations::ConflictAnswer answer)
{
    using Choice = FileOperations::ConflictChoice;
    auto* box = new QMessageBox(QMessageBox::Warning, question.title, question.title, QMessageBox::NoButton, window);
    box->setInformativeText(question.message);
    box->setWindowModality(Qt::WindowModal);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* replace = box->addButton(QStringLiteral("Replace"), QMessageBox::DestructiveRole);
    QPushButton* keepBoth = box->addButton(QStringLiteral("Keep Both"), QMessageBox::AcceptRole);
    QPushButton* skip = box->addButton(QStringLiteral("Skip"), QMessageBox::NoRole);
    QPushButton* cancel = box->addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
    box->setDefaultButton(keepBoth);
    box->setEscapeButton(cancel);
    QObject::connect(box, &QMessageBox::finished, box, [box, replace, keepBoth, skip, answer] {
        const auto* clicked = box->clickedButton();
        answer(clicked == replace ? Choice::replace
               : clicked == keepBoth ? Choice::keepBoth
               : clicked == skip ? Choice::skip
                                 : Choice::cancel);
    });
    returnKeyboardWhenClosed(box);
    box->open();
}

} // namespace orwick
