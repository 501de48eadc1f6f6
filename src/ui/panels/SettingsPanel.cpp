#include "ui/panels/SettingsPanel.h"

#include "platform/XdgPaths.h"
#include "state/WindowState.h"
#include "ui/text/LiteralText.h"
#include "ui/theme/Theme.h"
#include "ui/theme/ThemeApplier.h"

#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

namespace orwick {

namespace {

// Makes `combo` offer `choices`, when they changed.
void syncChoices(QComboBox* combo, const QList<SettingChoice>& choices)
{
    bool same = combo->count() == choices.size();
    for (qsizetype i = 0; same && i < choices.size(); ++i)
        same = combo->itemData(int(i)).toString() == choices[i].value && combo->itemText(int(i)) == choices[i].title;
    if (same)
        return;
    combo->clear();
    for (const SettingChoice& choice : choices)
        combo->addItem(choice.title, choice.value);
}

// `colour` is asked again whenever the theme changes.
QLabel* paragraph(const QString& text, QColor (*colour)(), QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    theme::whenChanged(label, [label, colour] {
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, colour());
        label->setPalette(palette);
    });
    return label;
}

} // namespace

SettingsPanel::SettingsPanel(const SettingsSheet::Owners& owners, QWidget* window)
    : PanelSheet(QStringLiteral("Customize"), xdg::orwickConfigFile().abbreviated(), window), m_sheet(new SettingsSheet(owners, this))
{
    m_scroll = new QScrollArea(this);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    auto* page = new QWidget(m_scroll);
    page->setBackgroundRole(QPalette::Window);
    auto* pageLayout = new QHBoxLayout(page);
    pageLayout->setContentsMargins(4, 0, 4, 12);
    // Lines of help read best at a book's width, however wide the window.
    auto* content = new QWidget(page);
    content->setMaximumWidth(640);
    auto* rows = new QVBoxLayout(content);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(2);
    pageLayout->addWidget(content, 1);
    pageLayout->addStretch(0);

    for (const SettingsSection& section : m_sheet->sections()) {
        auto* heading = new QLabel(section.title, content);
        heading->setTextFormat(Qt::PlainText);
        QFont bold = heading->font();
        bold.setBold(true);
        heading->setFont(bold);
        heading->setContentsMargins(0, m_rows.isEmpty() ? 4 : 16, 0, 4);
        rows->addWidget(heading);
        if (!section.help.isEmpty()) {
            QLabel* help = paragraph(section.help, theme::dimText, content);
            help->setContentsMargins(6, 0, 6, 4);
            rows->addWidget(help);
        }
        for (const SettingRow& row : section.rows)
            addRow(row, content);
    }
    rows->addStretch(1);
    m_scroll->setWidget(page);
    body()->addWidget(m_scroll);
    setFooter(QStringLiteral("Changes apply at once, in every window, and are kept.   Tab or ↑ ↓ move · Space switches · ← → change a "
                             "choice · Esc closes"));

    connect(m_sheet, &SettingsSheet::changed, this, &SettingsPanel::refresh);
    // The tint of the row with the keyboard follows a theme or appearance chosen here.
    theme::whenChanged(this, [this] {
        for (const Row& row : std::as_const(m_rows))
            if (row.control->hasFocus())
                tint(row.control->parentWidget(), true);
    });
    refresh();
    QWidget* first = nullptr;
    for (const Row& row : std::as_const(m_rows))
        if (row.control->isEnabled()) {
            first = row.control;
            break;
        }
    present(first, Qt::TabFocusReason);
}

void SettingsPanel::addRow(const SettingRow& setting, QWidget* content)
{
    auto* layout = static_cast<QVBoxLayout*>(content->layout());
    auto* block = new QWidget(content);
    auto* lines = new QVBoxLayout(block);
    lines->setContentsMargins(6, 6, 6, 6);
    lines->setSpacing(3);
    int indent = 0;
    QWidget* control = nullptr;
    const SettingRow* row = &setting; // the sheet keeps its rows for as long as this panel lives
    if (setting.kind == SettingRow::Kind::toggle) {
        auto* box = new QCheckBox(literalText(setting.label), block);
        box->setFocusPolicy(Qt::StrongFocus);
        connect(box, &QCheckBox::toggled, this, [row](bool on) {
            if (row->setOn)
                row->setOn(on);
        });
        lines->addWidget(box);
        indent = style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, box)
                 + style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, box);
        control = box;
    } else {
        auto* line = new QHBoxLayout;
        auto* label = new QLabel(literalText(setting.label), block);
        auto* combo = new QComboBox(block);
        combo->setFocusPolicy(Qt::StrongFocus); // a wheel turned over the sheet scrolls it, not a choice
        for (const SettingChoice& choice : setting.choices)
            combo->addItem(choice.title, choice.value);
        label->setBuddy(combo);
        connect(combo, &QComboBox::currentIndexChanged, this, [row, combo](int index) {
            if (row->choose && index >= 0)
                row->choose(combo->itemData(index).toString());
        });
        line->addWidget(label);
        line->addWidget(combo);
        line->addStretch(1);
        lines->addLayout(line);
        control = combo;
    }
    QLabel* help = paragraph(setting.help, theme::dimText, block);
    help->setContentsMargins(indent, 0, 0, 0);
    lines->addWidget(help);
    QLabel* note = paragraph({}, theme::warning, block);
    note->setContentsMargins(indent, 0, 0, 0);
    lines->addWidget(note);
    layout->addWidget(block);
    control->installEventFilter(this);
    m_rows.append({row, control, note});
}

void SettingsPanel::refresh()
{
    for (const Row& row : std::as_const(m_rows)) {
        const QSignalBlocker quiet(row.control);
        if (auto* box = qobject_cast<QCheckBox*>(row.control)) {
            box->setChecked(row.setting->isOn && row.setting->isOn());
        } else if (auto* combo = qobject_cast<QComboBox*>(row.control)) {
            if (row.setting->liveChoices)
                syncChoices(combo, row.setting->liveChoices());
            const int index = combo->findData(row.setting->chosen ? row.setting->chosen() : QString());
            combo->setCurrentIndex(index >= 0 ? index : 0);
        }
        row.control->setEnabled(row.setting->isAvailable());
        const QString note = row.setting->noteText();
        row.note->setText(note);
        row.note->setVisible(!note.isEmpty());
    }
}

QWidget* SettingsPanel::control(const QString& key) const
{
    for (const Row& row : m_rows)
        if (row.setting->key == key)
            return row.control;
    return nullptr;
}

bool SettingsPanel::moveFocus(QWidget* from, int step, bool wrap)
{
    qsizetype at = -1;
    for (qsizetype i = 0; i < m_rows.size(); ++i)
        if (m_rows[i].control == from)
            at = i;
    const qsizetype count = m_rows.size();
    for (qsizetype n = 1; at >= 0 && n < count; ++n) {
        const qsizetype i = at + n * step;
        if (!wrap && (i < 0 || i >= count))
            break; // at either end the arrows stop
        QWidget* next = m_rows[(i % count + count) % count].control;
        if (next->isEnabled()) {
            next->setFocus(step > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            break;
        }
    }
    return true;
}

void SettingsPanel::tint(QWidget* block, bool focused)
{
    block->setAutoFillBackground(focused);
    if (!focused) {
        block->setPalette(QPalette()); // the sheet's colours again, whichever theme is chosen next
        return;
    }
    QPalette tinted = block->palette();
    tinted.setColor(QPalette::Window, theme::selection());
    block->setPalette(tinted);
}

bool SettingsPanel::eventFilter(QObject* watched, QEvent* event)
{
    auto* control = qobject_cast<QWidget*>(watched);
    const bool isRow = control && std::any_of(m_rows.cbegin(), m_rows.cend(), [control](const Row& row) { return row.control == control; });
    if (!isRow)
        return PanelSheet::eventFilter(watched, event);
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        // The row with the keyboard is tinted: a closed choice shows its focus only faintly.
        QWidget* block = control->parentWidget();
        const bool focused = event->type() == QEvent::FocusIn;
        tint(block, focused);
        if (focused)
            m_scroll->ensureWidgetVisible(block, 0, 24);
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    // Tab goes round the rows and stays in the sheet, rather than on to the panes beneath it.
    if (key->key() == Qt::Key_Tab && !(key->modifiers() & ~Qt::KeypadModifier))
        return moveFocus(control, 1, true);
    if (key->key() == Qt::Key_Backtab && !(key->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)))
        return moveFocus(control, -1, true);
    if (key->modifiers() & ~Qt::KeypadModifier)
        return false;
    auto* combo = qobject_cast<QComboBox*>(control);
    switch (key->key()) {
    case Qt::Key_Up: return moveFocus(control, -1, false);
    case Qt::Key_Down: return moveFocus(control, 1, false);
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (combo) {
            const int index = combo->currentIndex() + (key->key() == Qt::Key_Right ? 1 : -1);
            if (index >= 0 && index < combo->count())
                combo->setCurrentIndex(index);
            return true;
        }
        return false;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (auto* box = qobject_cast<QCheckBox*>(control)) {
            box->toggle();
            return true;
        }
        return false;
    default: return false;
    }
}

void SettingsPanel::follow(WindowState& state, QMainWindow* window)
{
    QObject::connect(&state, &WindowState::panelChanged, window, [&state, window] {
        SettingsPanel* open = nullptr;
        for (SettingsPanel* sheet : window->findChildren<SettingsPanel*>(Qt::FindDirectChildrenOnly))
            if (!sheet->isHidden())
                open = sheet;
        if (state.panel() != WindowState::Panel::settings) {
            if (open)
                open->closeSheet();
            return;
        }
        if (open) // asked again: the sheet is there already
            return;
        PanelSheet::closeOpenSheet(window);
        auto* sheet = new SettingsPanel(SettingsSheet::programOwners(state.preferences()), window);
        QObject::connect(sheet, &PanelSheet::closed, &state, [&state] {
            if (state.panel() == WindowState::Panel::settings)
                state.closePanel();
        });
    });
}

} // namespace orwick
