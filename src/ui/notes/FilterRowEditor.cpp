#include "ui/notes/FilterRowEditor.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

namespace orwick {

FilterRowEditor::FilterRowEditor(const PropertyFilter& filter, const QStringList& keys, QWidget* parent)
    : QDialog(parent)
    , m_filter(filter)
    , m_key(new QComboBox(this))
    , m_condition(new QComboBox(this))
    , m_value(new QLineEdit(this))
{
    setWindowTitle(QStringLiteral("Filter"));
    m_key->setEditable(true);
    m_key->addItems(keys);
    m_key->setCurrentText(filter.key);
    for (PropertyFilter::Condition condition : PropertyFilter::allCases())
        m_condition->addItem(PropertyFilter::title(condition), int(condition));
    m_condition->setCurrentIndex(int(PropertyFilter::allCases().indexOf(filter.condition)));
    m_value->setText(filter.value);
    m_value->setPlaceholderText(QStringLiteral("Value (dates as 2024-05-17)"));

    auto* form = new QFormLayout(this);
    form->addRow(QStringLiteral("Property"), m_key);
    form->addRow(QStringLiteral("Condition"), m_condition);
    form->addRow(QStringLiteral("Value"), m_value);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_condition, &QComboBox::currentIndexChanged, this, &FilterRowEditor::conditionChanged);
    connect(m_key, &QComboBox::currentTextChanged, this, [buttons](const QString& key) {
        buttons->button(QDialogButtonBox::Ok)->setEnabled(!key.trimmed().isEmpty());
    });
    buttons->button(QDialogButtonBox::Ok)->setEnabled(!filter.key.trimmed().isEmpty());
    conditionChanged();
}

void FilterRowEditor::conditionChanged()
{
    const auto condition = PropertyFilter::Condition(m_condition->currentData().toInt());
    m_value->setEnabled(PropertyFilter::needsValue(condition));
}

PropertyFilter FilterRowEditor::filter() const
{
    PropertyFilter edited = m_filter;
    edited.key = m_key->currentText().trimmed();
    edited.condition = PropertyFilter::Condition(m_condition->currentData().toInt());
    edited.value = PropertyFilter::needsValue(edited.condition) ? m_value->text() : QString();
    return edited;
}

} // namespace orwick
