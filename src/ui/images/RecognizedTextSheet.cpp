#include "ui/images/RecognizedTextSheet.h"

#include "state/WindowState.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace orwick {

namespace {
QString wordCount(const QString& text)
{
    const qsizetype words = text.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts).size();
    return words == 1 ? QStringLiteral("1 word") : QStringLiteral("%1 words").arg(words);
}
} // namespace

RecognizedTextSheet::RecognizedTextSheet(const QString& title, const QString& text, QWidget* window)
    : PanelSheet(title, QStringLiteral("recognized text"), window)
{
    m_text = new QPlainTextEdit(this);
    m_text->setReadOnly(true);
    m_text->setPlainText(text);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_copy = new QPushButton(QStringLiteral("Copy"), this);
    m_copy->setToolTip(QStringLiteral("Copy all of the text (Ctrl+C copies what is selected)"));
    tools()->addWidget(m_copy);
    body()->addWidget(m_text, 1);
    setFooter(wordCount(text) + QStringLiteral(" · Esc closes"));
    connect(m_copy, &QPushButton::clicked, this, [this] {
        if (QClipboard* clipboard = QGuiApplication::clipboard())
            clipboard->setText(m_text->toPlainText());
        setFooter(QStringLiteral("Copied ") + wordCount(m_text->toPlainText()));
    });
    present(m_text);
}

void RecognizedTextSheet::follow(WindowState& state, QMainWindow* window)
{
    QObject::connect(&state, &WindowState::textSheetRequested, window, [window](const QString& title, const QString& text) {
        PanelSheet::closeOpenSheet(window);
        new RecognizedTextSheet(title, text, window);
    });
}

} // namespace orwick
