#include <Orvek/Host/Editor.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

#include <QtCore/QHash>
#include <QtCore/QMetaMethod>
#include <QtGui/QVector3D>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <type_traits>

namespace orvek::host
{
namespace
{
enum Part
{
    Other = -1,
    Label,
    Units,
    Slider,
    Reset,
    FirstField // followed by the others, in the order of the components
};

constexpr int FieldCount = 8;

int partNamed(const QString& name)
{
    static const QHash<QString, int> parts = []
    {
        const char* const names[] = {"label", "units", "slider", "reset", "lineEdit", "x",
                                     "y",     "z",     "red",    "green", "blue",     "alpha"};
        static_assert(std::size(names) == FirstField + FieldCount);
        QHash<QString, int> found;
        for (const char* part : names)
            found.insert(QLatin1String(part), int(found.size()));
        return found;
    }();
    return parts.value(name, Other);
}

template <typename Child>
Child* directChild(const QWidget* parent, const char* name)
{
    return parent->findChild<Child*>(QLatin1String(name), Qt::FindDirectChildrenOnly);
}

const char* valueProperty(const QWidget* editor)
{
    return editor->metaObject()->indexOfProperty("filename") >= 0 ? "filename" : "value";
}

QString componentText(double component)
{
    return QStringLiteral("%1").arg(component);
}
} // namespace

bool isEditor(const QWidget* widget)
{
    if (widget->metaObject()->indexOfSignal("valueChanged()") < 0)
        return false;
    const QObjectList& children = widget->children();
    return std::any_of(children.begin(), children.end(),
                       [](QObject* child)
                       { return partNamed(child->objectName()) >= FirstField && qobject_cast<QLineEdit*>(child); });
}

// A single pass over the children: panels have thousands of editors, and each class of this library asks for their
// parts.
EditorParts partsOf(const QWidget* editor)
{
    EditorParts parts;
    QLineEdit* fields[FieldCount] = {};
    const auto take = [](auto*& part, QObject* child)
    {
        if (!part)
            part = qobject_cast<std::remove_reference_t<decltype(part)>>(child);
    };
    for (QObject* child : editor->children())
    {
        const int part = partNamed(child->objectName());
        if (part == Label)
            take(parts.label, child);
        else if (part == Units)
            take(parts.units, child);
        else if (part == Slider)
            take(parts.slider, child);
        else if (part == Reset)
            take(parts.reset, child);
        else if (part >= FirstField)
            take(fields[part - FirstField], child);
    }
    for (QLineEdit* field : fields)
        if (field)
            parts.fields << field;
    return parts;
}

bool isSection(const QWidget* widget)
{
    const int slot = widget->metaObject()->indexOfSlot("setSearchText(QString)");
    return slot >= 0 && directChild<QCheckBox>(widget, "accordionCheckBox");
}

bool isColour(const QWidget* editor)
{
    return qobject_cast<const QColourEdit*>(editor) || editor->property("colourEdit").toBool();
}

QString titleOf(const QWidget* editor)
{
    if (!editor->windowTitle().isEmpty())
        return editor->windowTitle();
    const auto* label = directChild<QLabel>(editor, "label");
    return label ? label->text() : QString();
}

bool operator==(const EditorValue& a, const EditorValue& b)
{
    if (a.isKnown != b.isKnown || a.text != b.text || a.numbers.size() != b.numbers.size())
        return false;
    for (int i = 0; i < a.numbers.size(); ++i)
    {
        const bool bothNan = std::isnan(a.numbers[i]) && std::isnan(b.numbers[i]);
        if (!bothNan && a.numbers[i] != b.numbers[i])
            return false;
    }
    return true;
}

EditorValue readValue(const QWidget* editor)
{
    if (const auto* colourEdit = qobject_cast<const QColourEdit*>(editor))
    {
        const double* colour = colourEdit->colour();
        return {{colour[0], colour[1], colour[2], colour[3]}, QString()};
    }
    const QVariant value = editor->property(valueProperty(editor));
    switch (static_cast<int>(value.userType()))
    {
    case QMetaType::QString:
        return {{}, value.toString()};
    case QMetaType::QVector3D:
    {
        const auto vector = value.value<QVector3D>();
        return {{double(vector.x()), double(vector.y()), double(vector.z())}, QString()};
    }
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Float:
    case QMetaType::Double:
        return {{value.toDouble()}, QString()};
    default:
        return {{}, QString(), false};
    }
}

void writeValue(QWidget* editor, const EditorValue& value)
{
    if (!value.isKnown)
        return;
    if (auto* colourEdit = qobject_cast<QColourEdit*>(editor))
    {
        colourEdit->setColour(value.numbers.constData());
        const QVector<QLineEdit*> fields = partsOf(editor).fields;
        for (int i = 0; i < fields.size() && i < value.numbers.size(); ++i)
            fields[i]->setText(componentText(value.numbers[i]));
        return;
    }
    const char* property = valueProperty(editor);
    if (value.numbers.isEmpty())
        editor->setProperty(property, value.text);
    else if (value.numbers.size() == 3)
        editor->setProperty(property,
                            QVector3D(float(value.numbers[0]), float(value.numbers[1]), float(value.numbers[2])));
    else
        editor->setProperty(property, value.numbers[0]);
}

QStringList textsOfValue(QWidget* editor)
{
    const EditorValue value = readValue(editor);
    if (auto* sliderEdit = qobject_cast<QSliderEdit*>(editor))
        return {sliderEdit->valueToText(value.numbers.value(0))};
    if (auto* integerEdit = qobject_cast<QIntSliderEdit*>(editor))
        return {integerEdit->valueToText(int(value.numbers.value(0)))};
    if (value.numbers.isEmpty())
        return {value.text};
    QString text;
    if (value.numbers.size() == 1 && editor->metaObject()->indexOfMethod("valueToText(double)") >= 0 &&
        QMetaObject::invokeMethod(editor, "valueToText", Q_RETURN_ARG(QString, text), Q_ARG(double, value.numbers[0])))
        return {text};
    QStringList texts;
    for (const double number : value.numbers)
        texts << componentText(number);
    return texts;
}
} // namespace orvek::host
