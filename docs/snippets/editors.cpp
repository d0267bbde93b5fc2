#include "snippets.h"

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QFileEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QLabelEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtWidgets/QLineEdit>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace
{
struct Camera
{
    double focalLength = 50.0;
    QString name;
    QString mesh;
    QVector3D position;
    double tint[4] = {};
    int shadowMap = 0;
    int antialiasing = 0;
} camera;

QWidget* stacked(QWidget* first, QWidget* second)
{
    auto* both = new QWidget;
    auto* rows = new QVBoxLayout(both);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(first);
    rows->addWidget(second);
    return both;
}
} // namespace

QWidget* sliderEdit()
{
    //! [QSliderEdit]
    auto* focalLength = new QSliderEdit;
    focalLength->setTitle("Focal length");
    focalLength->setLabelWidth(96);
    focalLength->setUnits("mm");
    focalLength->setMinimum(18.0);
    focalLength->setMaximum(200.0);
    focalLength->setLogarithmic(true);
    focalLength->setShowButtons(true);
    focalLength->setDefaultValue(35.0);
    focalLength->setValue(50.0);
    QObject::connect(focalLength, &QSliderEdit::valueChanged,
                     [focalLength] { camera.focalLength = focalLength->value().toDouble(); });
    //! [QSliderEdit]
    focalLength->setObjectName("focalLength");
    return focalLength;
}

QWidget* intSliderEdit()
{
    //! [QIntSliderEdit]
    auto* shadowMap = new QIntSliderEdit;
    shadowMap->setTitle("Shadow map");
    shadowMap->setLabelWidth(96);
    shadowMap->setUnits("px");
    shadowMap->setMinimum(256);
    shadowMap->setMaximum(8192);
    shadowMap->setPowerOfTwo(true);
    shadowMap->setDefaultValue(1024);
    shadowMap->setValue(2048);
    QObject::connect(shadowMap, &QIntSliderEdit::valueChanged,
                     [shadowMap] { camera.shadowMap = shadowMap->value().toInt(); });

    auto* antialiasing = new QIntSliderEdit;
    antialiasing->setTitle("Antialiasing");
    antialiasing->setLabelWidth(96);
    antialiasing->setMaximum(3);
    antialiasing->setEnums({"Off", "2 samples", "4 samples", "8 samples"});
    antialiasing->setReadOnlyText(true);
    antialiasing->setValue(2);
    QObject::connect(antialiasing, &QIntSliderEdit::valueChanged,
                     [antialiasing] { camera.antialiasing = antialiasing->value().toInt(); });
    //! [QIntSliderEdit]
    return stacked(shadowMap, antialiasing);
}

QWidget* vectorEdit()
{
    //! [QVectorEdit]
    auto* position = new QVectorEdit;
    position->setTitle("Position");
    position->setLabelWidth(96);
    position->setUnits("m");
    position->setTextWidth(64);
    position->setMinimumHeight(38); // like the other rows; the default is 132
    position->setValue(QVector3D(1.5f, 0.0f, -2.25f));
    QObject::connect(position, &QVectorEdit::valueChanged, [position] { camera.position = position->value(); });
    //! [QVectorEdit]
    position->setObjectName("position");
    return position;
}

QWidget* colourEdit()
{
    //! [QColourEdit]
    auto* tint = new QColourEdit;
    tint->setLabel("Tint");
    tint->setLabelWidth(96);
    const double rgba[] = {1.0, 0.85, 0.6, 1.0};
    tint->setColour(rgba);
    // The fields show only what is written into them.
    const char* const fields[] = {"red", "green", "blue", "alpha"};
    for (int i = 0; i < 4; ++i)
        tint->findChild<QLineEdit*>(fields[i])->setText(QString::number(rgba[i]));
    QObject::connect(tint, &QColourEdit::valueChanged, [tint] { std::copy_n(tint->colour(), 4, camera.tint); });
    //! [QColourEdit]
    return tint;
}

QWidget* labelEdit()
{
    //! [QLabelEdit]
    auto* name = new QLabelEdit;
    name->setTitle("Name");
    name->setLabelWidth(96);
    name->setDefaultValue("Light");
    name->setValue("Key light");
    QObject::connect(name, &QLabelEdit::valueChanged, [name] { camera.name = name->value(); });
    //! [QLabelEdit]
    name->setObjectName("name");
    return name;
}

QWidget* fileEdit()
{
    //! [QFileEdit]
    auto* mesh = new QFileEdit;
    mesh->setTitle("Mesh");
    mesh->setLabelWidth(96);
    mesh->setDefaultPath("meshes");
    mesh->setFilter("Meshes (*.obj *.ply);;All files (*)");
    mesh->setFilename("meshes/vase.obj");
    QObject::connect(mesh, &QFileEdit::valueChanged, [mesh] { camera.mesh = mesh->filename(); });
    //! [QFileEdit]
    return mesh;
}

QWidget* tipsOnAllParts()
{
    //! [QPropertyEditWidget]
    auto* gain = new QSliderEdit;
    gain->setToolTip("Brightness of the light, before exposure");
    gain->applyParentTooltip(); // label, slider, field and buttons show it now
    //! [QPropertyEditWidget]
    return gain;
}
