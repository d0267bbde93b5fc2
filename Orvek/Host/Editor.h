#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;
class QWidget;

// What the classes of this library know of an editor: its children by their fixed names and its properties. An editor
// of a host's own that has the same names is served like those of the widget library. Private; no meta-object.
namespace orvek::host
{
//! The parts of an editor; any but the fields may be null. Valid for as long as the editor lives.
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
//! Whether the widget is a section: one with a check box "accordionCheckBox" and a slot setSearchText(QString).
bool isSection(const QWidget* widget);
//! The title that the user sees: the window title, which the widgets keep equal to it, or the label's text.
QString titleOf(const QWidget* editor);

//! The value of an editor in a form that compares exactly: a QVariant compares numbers with tolerance.
struct EditorValue
{
    QVector<double> numbers; // one, three or four; an int or bool is one number
    QString text;            // for editors of texts; the numbers are empty then
    bool isKnown = true;     // false if the editor has no value that can be read
};
bool operator==(const EditorValue& a, const EditorValue& b);
inline bool operator!=(const EditorValue& a, const EditorValue& b)
{
    return !(a == b);
}

//! Reads "value", "filename" or, of a QColourEdit, the colour.
EditorValue readValue(const QWidget* editor);
//! Writes it back, silently as the editors' setters are. Also writes the fields of a QColourEdit, which show only what
//! is typed into them. Does nothing with an unknown value.
void writeValue(QWidget* editor, const EditorValue& value);
//! What the editor would show in each of its fields for the value that it has: asks its valueToText(), also a derived
//! one's, and that of a host's own if Qt can invoke it by name.
QStringList textsOfValue(QWidget* editor);
} // namespace orvek::host
