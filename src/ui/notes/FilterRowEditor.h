#pragma once
// FilterRowEditor: the small dialog that adds or edits one filter row — the property, the
// condition ("is", "is not", "contains"… as the filter row words them) and, when the condition
// takes one, the operand.

#include "notes/PropertyFilter.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace orwick {

class FilterRowEditor : public QDialog {
    Q_OBJECT
public:
    // `keys`: the properties offered (the key field also takes a typed one).
    FilterRowEditor(const PropertyFilter& filter, const QStringList& keys, QWidget* parent = nullptr);

    // The row as edited, keeping its id.
    PropertyFilter filter() const;

private:
    void conditionChanged();

    PropertyFilter m_filter;
    QComboBox* m_key;
    QComboBox* m_condition;
    QLineEdit* m_value;
};

} // namespace orwick
