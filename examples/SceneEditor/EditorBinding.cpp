#include <examples/SceneEditor/EditorBinding.h>

#include <QtWidgets/QLineEdit>

#include <cmath>

namespace sceneeditor
{
namespace
{
// QColor keeps 16 bits of a component. The shortest decimal that gives the same bits reads better in a field (0.5
// instead of 0.500008) and loses nothing on the way back.
double component(quint16 bits)
{
    constexpr double full = 65535.0;
    for (const double scale : {10.0, 100.0, 1000.0, 10000.0})
    {
        const double rounded = std::round(bits / full * scale) / scale;
        if (std::round(rounded * full) == bits)
            return rounded;
    }
    return std::round(bits / full * 1.0e5) / 1.0e5;
}

// NaN, which a text can be, counts as 0.
double unitValue(double value)
{
    return std::isnan(value) ? 0.0 : ranges::unit.clamp(value);
}
} // namespace

void showValue(QSliderEdit* editor, double value)
{
    editor->setValue(value);
}

void takeValue(QSliderEdit* editor, double& value)
{
    value = editor->value().toDouble();
}

void showValue(QIntSliderEdit* editor, int value)
{
    editor->setValue(value);
}

void takeValue(QIntSliderEdit* editor, int& value)
{
    value = editor->value().toInt();
}

QVector3D colourVector(const QColor& colour)
{
    const QRgba64 bits = colour.rgba64();
    return {float(component(bits.red())), float(component(bits.green())), float(component(bits.blue()))};
}

void showValue(QVectorEdit* editor, const QColor& value)
{
    editor->setValue(colourVector(value));
}

void takeValue(QVectorEdit* editor, QColor& value)
{
    const QVector3D given = editor->value();
    const QVector3D kept(float(unitValue(double(given.x()))), float(unitValue(double(given.y()))),
                         float(unitValue(double(given.z()))));
    if (kept != given)
        editor->setValue(kept);
    value = QColor::fromRgbF(double(kept.x()), double(kept.y()), double(kept.z()));
}

void showValue(QColourEdit* editor, const QColor& value)
{
    const QRgba64 bits = value.rgba64();
    editor->setColour(component(bits.red()), component(bits.green()), component(bits.blue()), 1.0);
    // The fields show only what is typed into them, so they are filled here.
    const double* colour = editor->colour();
    for (const char* name : {"red", "green", "blue", "alpha"})
        editor->findChild<QLineEdit*>(QLatin1String(name))->setText(QString::number(*colour++));
}

void takeValue(QColourEdit* editor, QColor& value)
{
    const double* given = editor->colour();
    const double kept[] = {unitValue(given[0]), unitValue(given[1]), unitValue(given[2])};
    value = QColor::fromRgbF(kept[0], kept[1], kept[2]);
    if (kept[0] != given[0] || kept[1] != given[1] || kept[2] != given[2])
        showValue(editor, value);
}

void showValue(QLabelEdit* editor, const QString& value)
{
    editor->setValue(value);
}

void takeValue(QLabelEdit* editor, QString& value)
{
    value = editor->value();
}

void showValue(QFileEdit* editor, const QString& value)
{
    editor->setFilename(value);
}

void takeValue(QFileEdit* editor, QString& value)
{
    value = editor->filename();
    // The reset button follows names that are set, not those that are typed.
    editor->setFilename(value);
}

void showValue(QCheckBox* editor, bool value)
{
    editor->setChecked(value);
}

void takeValue(QCheckBox* editor, bool& value)
{
    value = editor->isChecked();
}

void takeVector(QVectorEdit* editor, QVector3D& value, const Range& range)
{
    const QVector3D given = editor->value();
    for (int i = 0; i < 3; ++i)
        value[i] = std::isnan(given[i]) ? float(range.clamp(0.0)) : float(range.clamp(double(given[i])));
    if (value != given)
        editor->setValue(value);
}
} // namespace sceneeditor
