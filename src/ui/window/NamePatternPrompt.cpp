#include "ui/window/NamePatternPrompt.h"

#include "state/WindowState.h"

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QVBoxLayout>

namespace orwick {
namespace {
constexpr auto kHint = "Wildcards * and ?; several patterns with “;”; after “|” the names to leave out";

// The last pattern used, offered again (the habit is to repeat or adjust it).
QString& lastPattern()
{
    static QString pattern = QStringLiteral("*.*");
    return pattern;
}
} // namespace

NamePatternPrompt::NamePatternPrompt(WindowState* state, PaneState::Mark mark, QWidget* window)
    : QDialog(window), m_state(state), m_mark(mark)
{
    const bool selecting = mark == PaneState::Mark::select;
    setWindowTitle(selecting ? QStringLiteral("Select by Pattern") : QStringLiteral("Deselect by Pattern"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    auto* label = new QLabel(selecting ? QStringLiteral("Select the items whose names match:") : QStringLiteral("Deselect the items whose names match:"), this);
    m_pattern = new QLineEdit(this);
    m_pattern->setPlaceholderText(QStringLiteral("*.txt"));
    m_pattern->setText(lastPattern());
    m_pattern->selectAll();
    label->setBuddy(m_pattern);
    m_note = new QLabel(QString::fromUtf8(kHint), this);
    m_note->setForegroundRole(QPalette::PlaceholderText);
    m_note->setWordWrap(true);
    layout->addWidget(label);
    layout->addWidget(m_pattern);
    layout->addWidget(m_note);
    connect(m_pattern, &QLineEdit::returnPressed, this, &NamePatternPrompt::apply);
    connect(m_pattern, &QLineEdit::textEdited, this, [this] {
        m_note->setForegroundRole(QPalette::PlaceholderText);
        m_note->setText(QString::fromUtf8(kHint));
    });
    setMinimumWidth(380);
}

QString NamePatternPrompt::note() const { return m_note->text(); }

void NamePatternPrompt::apply()
{
    const QString typed = m_pattern->text();
    const NamePattern pattern(typed);
    const auto say = [this](const QString& text) {
        m_note->setForegroundRole(QPalette::WindowText);
        m_note->setText(text);
    };
    if (pattern.isEmpty()) {
        say(NamePattern::emptyMessage());
        return;
    }
    if (m_state->activePane()->markMatching(pattern, m_mark) == 0) {
        say(QStringLiteral("No item here matches “%1”").arg(typed.trimmed()));
        return;
    }
    lastPattern() = typed.trimmed();
    accept();
}

void NamePatternPrompt::follow(WindowState* state, QWidget* window)
{
    QObject::connect(state, &WindowState::namePatternRequested, window, [state, window](PaneState::Mark mark) {
        auto* prompt = new NamePatternPrompt(state, mark, window);
        // The keyboard goes back to the window (and so to the pane), also where no window
        // manager hands it back.
        QObject::connect(prompt, &QDialog::finished, window, [window] { window->activateWindow(); });
        prompt->open();
        prompt->patternField()->setFocus();
    });
}

} // namespace orwick
