#include "snippets.h"

//! [headers]
#include <Orvek/Host/Description.h>
#include <Orvek/Host/Inspector.h>
//! [headers]
#include <Orvek/Host/QObjectType.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

#include <QtCore/QTimer>
#include <QtWidgets/QPushButton>
#include <QUndoStack>

using orvek::host::Description;
using orvek::host::Inspector;
using orvek::host::ObjectType;

namespace
{
//! [struct]
enum class Shape
{
    Point,
    Spot,
    Sun
};

struct Light
{
    QString name = QStringLiteral("Light");
    Shape shape = Shape::Spot;
    float power = 800.0F;
    float angle = 45.0F;
    QColor colour = Qt::white;
    QVector3D position;
    bool shadows = true;
    int mapSize = 1024;
    QString profile;
};
//! [struct]

//! [describe]
std::shared_ptr<const ObjectType> lightType()
{
    Description<Light> light(QStringLiteral("Light"));
    light.text("name", &Light::name);
    light.vector("position", &Light::position).units(QStringLiteral("m"));
    light.section(QStringLiteral("Emission"));
    light.choice("shape", &Light::shape)
        .entry(QStringLiteral("point"), QStringLiteral("Point"), Shape::Point)
        .entry(QStringLiteral("spot"), QStringLiteral("Spot"), Shape::Spot)
        .entry(QStringLiteral("sun"), QStringLiteral("Sun"), Shape::Sun);
    light.number("power", &Light::power).range(1.0, 10000.0).logarithmic().units(QStringLiteral("W"));
    light.number("angle", &Light::angle)
        .range(1.0, 90.0)
        .units(QStringLiteral("°"))
        .shownWhen([](const Light& one) { return one.shape == Shape::Spot; });
    light.colour("colour", &Light::colour);
    light.file("profile", &Light::profile).fileFilter(QStringLiteral("Profiles (*.ies)"));
    light.section(QStringLiteral("Shadow"));
    light.flag("shadows", &Light::shadows);
    light.powerOfTwo("mapSize", &Light::mapSize)
        .range(256, 4096)
        .enabledWhen([](const Light& one) { return one.shadows; });
    return light.type();
}
//! [describe]

struct Scene
{
    Scene()
    {
        lights.resize(3);
        for (int i = 0; i < 3; ++i)
        {
            lights[i].power = 400.0F * float(i + 1);
            lights[i].position = {1.5F * float(i), 2.75F, -1.0F};
            lights[i].colour = QColor::fromRgbF(1.0, 0.85, 0.4 + 0.2 * i);
        }
        lights[1].shape = Shape::Point;
        lights[2].shadows = false;
    }
    void redraw() {}

    QVector<Light> lights;
};
} // namespace

QWidget* lightInspector(QUndoStack& undoStack)
{
    static Scene scene;
    //! [inspector]
    auto* panel = new QPropertyPanel;
    auto* inspector = new Inspector(panel, &undoStack, panel);
    inspector->setObjects(lightType(), {&scene.lights[0], &scene.lights[1], &scene.lights[2]});
    //! [inspector]
    //! [edited]
    QObject::connect(inspector, &Inspector::edited, panel, [] { scene.redraw(); });
    //! [edited]
    //! [refresh]
    auto* frames = new QTimer(panel);
    QObject::connect(frames, &QTimer::timeout, inspector, &Inspector::refresh);
    frames->start(16);
    //! [refresh]
    return panel;
}

[[maybe_unused]] static void extendInspector(Inspector* inspector, QVector<Light>& lights)
{
    //! [factory]
    inspector->setEditorFactory(QStringLiteral("power"),
                                [](const orvek::host::Property&)
                                {
                                    auto* editor = new QSliderEdit;
                                    editor->setShowButtons(true);
                                    return editor;
                                });
    inspector->addRow(new QPushButton(QStringLiteral("Bake")), QStringLiteral("Shadow"), QStringLiteral("mapSize"));
    //! [factory]
    //! [keys]
    inspector->setKeys([&lights](void* object) { return int(static_cast<Light*>(object) - lights.data()); },
                       [&lights](const QVariant& index) -> void*
                       { return index.toInt() < lights.size() ? &lights[index.toInt()] : nullptr; });
    //! [keys]
}

void inspectObject(Inspector* inspector, QWidget* window, QWidget* form)
{
    //! [object]
    inspector->setObjects(std::make_shared<orvek::host::QObjectType>(window->metaObject()), {window});
    //! [object]
    //! [form]
    const QStringList missing = inspector->bind(form);
    //! [form]
    Q_UNUSED(missing)
}
