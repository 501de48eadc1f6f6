#include "ui/notes/FilterRowEditor.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

namespace orwick {

FilterRowEditor::FilterRowEditor(const PropertyFilter& filter, const QStringList& keys, TypeOf typeOf, QWidget* parent)
    : QDialog(parent)
    , m_filter(filter)
    , m_typeOf(std::move(typeOf))
    , m_key(new QComboBox(this))
    , m_condition(new QComboBox(this))
    , m_value(new QLineEdit(this))
{
    setWindowTitle(QStringLiteral("Filter"));
    m_key->setEditable(true);
    m_key->addItems(keys);
    m_key->setCurrentText(filter.key);
    m_value->setText(filter.value);

    auto* form = new QFormLayout(this);
    form->addRow(QStringLiteral("Property"), m_key);
    form->addRow(QStringLiteral("Condition"), m_condition);
    form->addRow(QStringLiteral("Value"), m_value);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_condition, &QComboBox::currentIndexChanged, this, &FilterRowEditor::conditionChanged);
    connect(m_key, &QComboBox::currentTextChanged, this, [this, buttons](const QString& key) {
        buttons->button(QDialogButtonBox::Ok)->setEnabled(!key.trimmed().isEmpty());
        keyChanged();
    });
    buttons->button(QDialogButtonBox::Ok)->setEnabled(!filter.key.trimmed().isEmpty());
    keyChanged();
}

void FilterRowEditor::keyChanged()
{
    const QString key = m_key->currentText().trimmed();
    const auto chosen = m_condition->count() > 0 ? PropertyFilter::Condition(m_condition->currentData().toInt())
                                                 : m_filter.condition;
    const PropertyType type = m_typeOf ? m_typeOf(key) : PropertyType::text;
    QList<PropertyFilter::Condition> offered = PropertyFilter::conditions(type);
    if (key == m_filter.key && !offered.contains(m_filter.condition))
        offered.append(m_filter.condition);
    const QSignalBlocker quiet(m_condition);
    m_condition->clear();
    for (PropertyFilter::Condition condition : offered)
        m_condition->addItem(PropertyFilter::title(condition), int(condition));
    m_condition->setCurrentIndex(std::max(0, int(offered.indexOf(chosen))));
    m_value->setPlaceholderText(type == PropertyType::date     ? QStringLiteral("A date, as 2024-05-17")
                                : type == PropertyType::number ? QStringLiteral("A number")
                                                               : QStringLiteral("Value"));
    conditionChanged();
}

QStringList FilterRowEditor::conditionTitles() const
{
    QStringList titles;
    for (int i = 0; i < m_condition->count(); ++i)
        titles.append(m_condition->itemText(i));
    return titles;
}

void FilterRowEditor::conditionChanged()
{
    // "is checked", "is empty"… take no operand: the Value row goes, label and all.
    const auto condition = PropertyFilter::Condition(m_condition->currentData().toInt());
    if (auto* form = qobject_cast<QFormLayout*>(layout()))
        form->setRowVisible(m_value, PropertyFilter::needsValue(condition));
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
