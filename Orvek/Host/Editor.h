#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;
class QWidget;

// What this library knows about an editor: its children by their fixed names, and its properties. A host's own editor
// with the same names is served like those of the widget library. Private; no meta-object.
namespace orvek::host
{
//! The parts of an editor; any but the fields may be null. Valid as long as the editor lives.
struct EditorParts
{
    QLabel* label = nullptr;
    QLabel* units = nullptr;
    QSlider* slider = nullptr;
    QPushButton* reset = nullptr;
    QVector<QLineEdit*> fields; // in the order of the components: red before blue, whatever the order of creation
};

//! Whether the widget is an editor: it has a signal valueChanged() and a direct child QLineEdit of a known name.
bool isEditor(const QWidget* widget);
EditorParts partsOf(const QWidget* editor);
//! Whether the widget is a section, that is, has a check box "accordionCheckBox" and a slot setSearchText(QString).
bool isSection(const QWidget* widget);
//! Whether the editor's components are shades: a QColourEdit, or one whose property "colourEdit" is true.
bool isColour(const QWidget* editor);
//! The title that the user sees: the window title, which the widgets keep equal to it, or the label's text.
QString titleOf(const QWidget* editor);

//! An editor's value in a form that compares exactly, as QVariant compares numbers with a tolerance.
struct EditorValue
{
    QVector<double> numbers; // one, three or four; an int or bool is one number
    QString text;            // of editors of texts; the numbers are empty then
    bool isKnown = true;     // false if the editor has no readable value
};
bool operator==(const EditorValue& a, const EditorValue& b);
inline bool operator!=(const EditorValue& a, const EditorValue& b)
{
    return !(a == b);
}

//! Reads "value", "filename" or, from a QColourEdit, the colour.
EditorValue readValue(const QWidget* editor);
//! Writes the value back, silently, as the editors' setters do. Also writes the fields of a QColourEdit, which its
//! setter leaves alone. Ignores an unknown value.
void writeValue(QWidget* editor, const EditorValue& value);
//! What the editor would show in each field for its current value, by its valueToText(): that of a derived class too,
//! and that of a host's own editor if Qt can invoke it by name.
QStringList textsOfValue(QWidget* editor);
} // namespace orvek::host
