#include <Orvek/Host/PropertyEditors.h>

#include <Orvek/Host/Editor.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QFileEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QLabelEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtCore/QSignalBlocker>
#include <QtGui/QColor>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>

#include <cmath>
#include <limits>

namespace orvek::host
{
namespace
{
// The same as in the editors' forms.
constexpr int rowHeight = 24;
constexpr int rowMargin = 2;
constexpr int resetWidth = 14;
constexpr int titleGap = 1;

QPushButton* createReset(QWidget* parent)
{
    auto* reset = new QPushButton(parent);
    reset->setObjectName(QStringLiteral("reset"));
    reset->setFixedWidth(resetWidth);
    reset->setAutoDefault(false);
    reset->setEnabled(false);
    return reset;
}

void hideInPlace(QWidget* part)
{
    QSizePolicy policy = part->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    part->setSizePolicy(policy);
    part->hide();
}

// For a vector, whose reset button cannot be switched off.
void hideReset(QWidget* editor)
{
    if (QPushButton* reset = partsOf(editor).reset)
        hideInPlace(reset);
}

// For a number without a range. The slider keeps its place, so the fields stay in their column.
void hideSlider(QWidget* editor)
{
    if (QSlider* slider = partsOf(editor).slider)
        hideInPlace(slider);
}

void describeSlider(QSliderEdit* editor, const Property& property, bool all)
{
    if (!std::isfinite(property.maximum - property.minimum))
        hideSlider(editor);
    editor->setMinimum(property.minimum);
    editor->setMaximum(property.maximum);
    editor->setLogarithmic(property.logarithmic);
    if (property.step > 0.0)
        editor->setStep(property.step);
    editor->setLiveUpdate(property.live);
    if (property.defaultValue.isValid())
        editor->setDefaultValue(property.defaultValue.toDouble());
    if (all)
        editor->setUnits(property.units);
}

void describeInteger(QIntSliderEdit* editor, const Property& property, bool all)
{
    if (property.kind == PropertyKind::Choice)
    {
        editor->setMinimum(0);
        setChoices(editor, property, QString());
        for (int i = 0; i < property.choices.size(); ++i)
            if (property.defaultValue.isValid() && property.choices[i].value == property.defaultValue.toInt())
                editor->setDefaultValue(i);
        // The editor itself would read a name as 0.
        editor->setReadOnlyText(true);
        return;
    }
    if (property.maximum - property.minimum >= std::numeric_limits<int>::max())
        hideSlider(editor);
    editor->setMaximum(int(property.maximum));
    editor->setMinimum(int(property.minimum));
    editor->setPowerOfTwo(property.kind == PropertyKind::PowerOfTwo);
    if (property.step > 0.0)
        editor->setProperty("step", property.step);
    if (property.defaultValue.isValid())
        editor->setDefaultValue(property.defaultValue.toInt());
    if (all)
        editor->setUnits(property.units);
}

void describeVector(QVectorEdit* editor, const Property& property, bool all)
{
    editor->setColourEdit(property.kind != PropertyKind::Vector);
    if (property.step > 0.0)
        editor->setProperty("step", property.step);
    if (all)
        editor->setUnits(property.units);
    const QVariant& value = property.defaultValue;
    const QVector<double> numbers = shownNumbers(value);
    if (numbers.size() >= 3)
        editor->setDefaultValue(QVector3D(float(numbers[0]), float(numbers[1]), float(numbers[2])));
    else
        hideReset(editor);
}

void setReadOnly(QWidget* editor)
{
    const EditorParts parts = partsOf(editor);
    if (editor->metaObject()->indexOfProperty("readOnly") >= 0)
        editor->setProperty("readOnly", true);
    else if (parts.fields.isEmpty() || isColour(editor) || qobject_cast<QIntSliderEdit*>(editor))
        editor->setEnabled(false);
    else
    {
        // Read-only, not disabled, so the numbers can be copied.
        for (QLineEdit* field : parts.fields)
            field->setReadOnly(true);
        if (parts.slider)
            parts.slider->setEnabled(false);
        if (auto* slider = qobject_cast<QSliderEdit*>(editor))
            slider->setShowDefaultButton(false);
        else
            hideReset(editor);
    }
}

void setTitle(QWidget* editor, const QString& title)
{
    const char* property = editor->metaObject()->indexOfProperty("title") >= 0 ? "title" : "label";
    if (editor->metaObject()->indexOfProperty(property) >= 0)
        editor->setProperty(property, title);
    else if (auto* button = qobject_cast<QAbstractButton*>(editor))
        button->setText(title);
    if (editor->windowTitle() != title)
        editor->setWindowTitle(title);
}

QWidget* newEditor(const Property& property)
{
    switch (property.kind)
    {
    case PropertyKind::Number:
        return new QSliderEdit;
    case PropertyKind::Integer:
    case PropertyKind::Choice:
    case PropertyKind::PowerOfTwo:
        return new QIntSliderEdit;
    case PropertyKind::Vector:
    case PropertyKind::Colour:
        return new QVectorEdit;
    case PropertyKind::ColourWithAlpha:
    {
        auto* editor = new QColourEdit;
        auto* grid = qobject_cast<QGridLayout*>(editor->layout());
        if (grid && property.defaultValue.isValid())
            grid->addWidget(createReset(editor), 0, grid->columnCount());
        return editor;
    }
    case PropertyKind::Text:
        return new QLabelEdit;
    case PropertyKind::File:
        return new QFileEdit;
    case PropertyKind::Flag:
    case PropertyKind::List:
        break;
    }
    return nullptr;
}
} // namespace

FlagRow createFlagRow(const Property& property)
{
    FlagRow made;
    made.row = new QWidget;
    made.row->setWindowTitle(property.displayTitle());
    made.row->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    made.row->setMinimumHeight(rowHeight);
    auto* layout = new QHBoxLayout(made.row);
    layout->setContentsMargins(rowMargin, rowMargin, rowMargin, rowMargin);
    layout->setSpacing(titleGap);
    auto* label = new QLabel(property.displayTitle());
    label->setObjectName(QStringLiteral("label"));
    label->setTextFormat(Qt::PlainText);
    layout->addWidget(label);
    made.box = new QCheckBox;
    made.box->setObjectName(property.name);
    made.box->setAccessibleName(property.displayTitle());
    label->setBuddy(made.box);
    layout->addWidget(made.box, 1);
    layout->addWidget(createReset(made.row));
    return made;
}

void alignFlagRow(const QWidget* row, const QWidget* panel, int position)
{
    // Above all, the title must be readable.
    if (auto* label = row->findChild<QLabel*>(QStringLiteral("label"), Qt::FindDirectChildrenOnly))
        label->setFixedWidth(
            qMax(position - label->mapTo(panel, QPoint()).x(), label->minimumSizeHint().width() + rowMargin));
}

QWidget* createEditor(const Property& property)
{
    QWidget* editor = newEditor(property);
    // The forms give them different heights, some much higher than a row.
    if (editor)
        editor->setMinimumHeight(rowHeight);
    return editor;
}

QVector<double> shownNumbers(const QVariant& value)
{
    if (value.userType() == QMetaType::QVector3D)
    {
        const auto vector = value.value<QVector3D>();
        return {double(vector.x()), double(vector.y()), double(vector.z())};
    }
    if (value.userType() == QMetaType::QColor)
    {
        const auto colour = value.value<QColor>();
        QVector<double> numbers{double(colour.redF()), double(colour.greenF()), double(colour.blueF()),
                                double(colour.alphaF())};
        for (double& number : numbers)
            number = std::round(number * 1e4) / 1e4;
        return numbers;
    }
    return {value.toDouble()};
}

bool fits(const QWidget* editor, PropertyKind kind)
{
    if (qobject_cast<const QAbstractButton*>(editor))
        return kind == PropertyKind::Flag && qobject_cast<const QCheckBox*>(editor);
    const EditorValue value = readValue(editor);
    if (!value.isKnown)
        return false;
    const int count = int(value.numbers.size());
    switch (kind)
    {
    case PropertyKind::Vector:
        return count == 3;
    case PropertyKind::Colour:
    case PropertyKind::ColourWithAlpha:
        return count >= 3;
    case PropertyKind::Text:
    case PropertyKind::File:
        return count == 0;
    case PropertyKind::List:
        return false;
    default:
        return count == 1;
    }
}

void describe(QWidget* editor, const Property& property, bool describesAll)
{
    const QSignalBlocker silence(editor);
    if (describesAll)
        setTitle(editor, property.displayTitle());
    if (auto* slider = qobject_cast<QSliderEdit*>(editor))
        describeSlider(slider, property, describesAll);
    else if (auto* integer = qobject_cast<QIntSliderEdit*>(editor))
        describeInteger(integer, property, describesAll);
    else if (auto* vector = qobject_cast<QVectorEdit*>(editor))
        describeVector(vector, property, describesAll);
    else if (auto* text = qobject_cast<QLabelEdit*>(editor))
    {
        text->setDefaultValue(property.defaultValue.toString());
        text->setShowDefaultButton(property.defaultValue.isValid());
        if (describesAll)
            text->setUnits(property.units);
    }
    else if (auto* file = qobject_cast<QFileEdit*>(editor))
    {
        file->setDefaultFilename(property.defaultValue.toString());
        file->setShowDefaultButton(property.defaultValue.isValid());
        file->setFilter(property.fileFilter);
    }
    const bool isText = property.kind == PropertyKind::Text || property.kind == PropertyKind::File;
    const QVector<QLineEdit*> fields = partsOf(editor).fields;
    if (isText && property.maximumLength > 0)
        for (QLineEdit* field : fields)
            field->setMaxLength(property.maximumLength);
    if (!property.toolTip.isEmpty())
        editor->setToolTip(property.toolTip);
    if (property.readOnly)
        setReadOnly(editor);
}

void setChoices(QWidget* editor, const Property& property, const QString& more)
{
    auto* integer = qobject_cast<QIntSliderEdit*>(editor);
    if (!integer)
        return;
    QStringList names;
    for (const PropertyChoice& choice : property.choices)
        names << (choice.title.isEmpty() ? choice.key : choice.title);
    if (!more.isNull())
        names << more;
    // Otherwise the new end would move the handle and emit valueChanged().
    const int last = int(names.size()) - 1;
    if (integer->value().toInt() > last)
        integer->setValue(last);
    const QSignalBlocker silence(editor);
    integer->setEnums(names);
    integer->setMaximum(last);
}
} // namespace orvek::host
