#pragma once

#include <Orvek/Host/Property.h>

class QCheckBox;
class QPushButton;
class QWidget;

// The library's editor for each kind of property. Private.
namespace orvek::host
{
// A row with a title, a check box and a button that returns to the default, in the columns of the editors.
struct FlagRow
{
    QWidget* row = nullptr;
    QCheckBox* box = nullptr;
};
FlagRow createFlagRow(const Property& property);
//! Lines the check boxes up with the fields: their column begins at that position, counted from the left of the panel.
void alignFlagRow(const QWidget* row, const QWidget* panel, int position);
//! Null for flags and lists.
QWidget* createEditor(const Property& property);
//! The components of a value as editors show them: those of a QColor, which have 16 bits, with four decimals.
QVector<double> shownNumbers(const QVariant& value);
//! Whether the editor can show such a property.
bool fits(const QWidget* editor, PropertyKind kind);
//! Applies the description to the editor, without a signal; title and units only if describesAll is true.
void describe(QWidget* editor, const Property& property, bool describesAll);
//! Offers the choices in a list of names, followed by one more if it is not null.
void setChoices(QWidget* editor, const Property& property, const QString& more);
} // namespace orvek::host
