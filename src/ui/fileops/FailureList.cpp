#include "ui/fileops/FailureList.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace orwick {

FailureList::FailureList(const QString& summary, const QStringList& messages, QWidget* window) : QDialog(window)
{
    setObjectName(QStringLiteral("failureList"));
    setWindowTitle(QStringLiteral("What Didn’t Work"));
    auto* layout = new QVBoxLayout(this);
    auto* heading = new QLabel(summary, this);
    heading->setWordWrap(true);
    heading->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    layout->addWidget(heading);

    m_list = new QPlainTextEdit(this);
    m_list->setReadOnly(true);
    m_list->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_list->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    m_list->setPlainText(messages.join(u'\n'));
    m_list->setAccessibleName(QStringLiteral("Every message"));
    layout->addWidget(m_list, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* copy = buttons->addButton(QStringLiteral("Copy All"), QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, this, [this] { QApplication::clipboard()->setText(m_list->toPlainText()); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);

    resize(640, 420);
    m_list->setFocus(); // arrows scroll, Shift+arrows and Ctrl+A select, Ctrl+C copies
}

FailureList* FailureList::showOver(QWidget* window, const QString& summary, const QStringList& messages)
{
    auto* list = new FailureList(summary, messages, window);
    list->setAttribute(Qt::WA_DeleteOnClose);
    list->setWindowModality(Qt::WindowModal);
    list->open();
    return list;
}

QStringList FailureList::messages() const { return m_list->toPlainText().split(u'\n'); }

} // namespace orwick
