#pragma once
// FilterRowEditor: the small dialog that adds or edits one filter row — the property, the
// condition ("is", "is not", "contains"… as the filter row words them) and, when the condition
// takes one, the operand (the Value row is hidden for "is checked", "is empty" and the like). The conditions offered are those that fit the chosen property's type
// (a checkbox is checked or not, a date is before or after…), and change with the property; a
// row saved with another condition keeps it while its property stays.

#include "notes/PropertyFilter.h"

#include <QDialog>
#include <functional>

class QComboBox;
class QLineEdit;

namespace orwick {

class FilterRowEditor : public QDialog {
    Q_OBJECT
public:
    // The type of a property, by key.
    using TypeOf = std::function<PropertyType(const QString& key)>;

    // `keys`: the properties offered (the key field also takes a typed one); `typeOf` decides
    // the conditions offered for each.
    FilterRowEditor(const PropertyFilter& filter, const QStringList& keys, TypeOf typeOf, QWidget* parent = nullptr);

    // The row as edited, keeping its id.
    PropertyFilter filter() const;

    // The conditions offered now, in their row's words (for tests).
    QStringList conditionTitles() const;

private:
    void conditionChanged();
    // Offers the conditions of the key's type, keeping the chosen one when it is among them.
    void keyChanged();

    PropertyFilter m_filter;
    TypeOf m_typeOf;
    QComboBox* m_key;
    QComboBox* m_condition;
    QLineEdit* m_value;
};

} // namespace orwick
