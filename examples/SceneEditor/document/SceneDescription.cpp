#include <examples/SceneEditor/document/SceneDescription.h>

#include <Orvek/Host/Description.h>

#include <QtCore/QCoreApplication>

using namespace orvek::host;

namespace sceneeditor
{
namespace
{
constexpr int MaximumTextLength = 4096; // characters of a name or a file name

struct SceneDescriptionText
{
    Q_DECLARE_TR_FUNCTIONS(Scene)
};

const QString Degrees = QStringLiteral("°");
const QString Factor = QStringLiteral("×");
const QString Metres = QStringLiteral("m");

template <typename Property>
void setRange(Property property, const Range& range)
{
    property.range(range.minimum, range.maximum);
}

Type describeCamera()
{
    Description<Camera> d(QStringLiteral("Camera"));
    d.section(SceneDescriptionText::tr("Camera"));
    setRange(d.vector("target", &Camera::target)
                 .title(SceneDescriptionText::tr("Target"))
                 .units(Metres)
                 .toolTip(SceneDescriptionText::tr("The point that the camera looks at")),
             ranges::coordinate);
    setRange(d.number("distance", &Camera::distance)
                 .title(SceneDescriptionText::tr("Distance"))
                 .units(Metres)
                 .logarithmic()
                 .toolTip(SceneDescriptionText::tr("From the target to the camera")),
             ranges::cameraDistance);
    setRange(d.number("azimuth", &Camera::azimuth)
                 .title(SceneDescriptionText::tr("Azimuth"))
                 .units(Degrees)
                 .step(1.0)
                 .toolTip(SceneDescriptionText::tr("Where the camera stands around the target")),
             ranges::azimuth);
    setRange(d.number("elevation", &Camera::elevation)
                 .title(SceneDescriptionText::tr("Elevation"))
                 .units(Degrees)
                 .step(1.0)
                 .toolTip(SceneDescriptionText::tr("How high the camera stands; above 0 it looks down")),
             ranges::cameraElevation);
    setRange(d.number("fieldOfView", &Camera::fieldOfView)
                 .title(SceneDescriptionText::tr("Field of view"))
                 .units(Degrees)
                 .step(1.0)
                 .toolTip(SceneDescriptionText::tr("Opening angle from bottom to top")),
             ranges::fieldOfView);
    return d.type();
}

Type describeLight()
{
    Description<Light> d(QStringLiteral("Light"));
    d.section(SceneDescriptionText::tr("Light"));
    d.choice("kind", &Light::kind)
        .entry(QStringLiteral("directional"), SceneDescriptionText::tr("Directional"), LightKind::Directional)
        .entry(QStringLiteral("point"), SceneDescriptionText::tr("Point"), LightKind::Point)
        .entry(QStringLiteral("spot"), SceneDescriptionText::tr("Spot"), LightKind::Spot)
        .title(SceneDescriptionText::tr("Kind"))
        .toolTip(SceneDescriptionText::tr(
            "A directional light shines from far away, a point light from its place, a spot light from "
            "its place towards the origin"));
    d.colour("colour", &Light::colour)
        .title(SceneDescriptionText::tr("Colour"))
        .toolTip(SceneDescriptionText::tr("Red, green and blue from 0 to 1"));
    d.number("intensity", &Light::intensity)
        .title(SceneDescriptionText::tr("Intensity"))
        .units(Factor)
        .range(0.01, 100.0)
        .logarithmic()
        .toolTip(SceneDescriptionText::tr("Strength of the light"));
    setRange(d.number("azimuth", &Light::azimuth)
                 .title(SceneDescriptionText::tr("Azimuth"))
                 .units(Degrees)
                 .step(1.0)
                 .toolTip(SceneDescriptionText::tr("Where the light stands around the scene")),
             ranges::azimuth);
    d.number("elevation", &Light::elevation)
        .title(SceneDescriptionText::tr("Elevation"))
        .units(Degrees)
        .range(-90.0, 90.0)
        .step(1.0)
        .toolTip(SceneDescriptionText::tr("How high the light stands"));
    d.number("distance", &Light::distance)
        .title(SceneDescriptionText::tr("Distance"))
        .units(Metres)
        .range(0.1, 1000.0)
        .logarithmic()
        .enabledWhen([](const Light& light) { return light.kind != LightKind::Directional; })
        .toolTip(SceneDescriptionText::tr("From the origin to the light"));
    const auto isSpot = [](const Light& light) { return light.kind == LightKind::Spot; };
    d.number("coneAngle", &Light::coneAngle)
        .title(SceneDescriptionText::tr("Cone"))
        .units(Degrees)
        .range(1.0, 120.0)
        .step(1.0)
        .enabledWhen(isSpot)
        .toolTip(SceneDescriptionText::tr("Opening of a spot light from edge to edge"));
    d.number("coneSoftness", &Light::coneSoftness)
        .title(SceneDescriptionText::tr("Cone softness"))
        .step(0.01)
        .enabledWhen(isSpot)
        .toolTip(SceneDescriptionText::tr("How much of the cone fades towards its edge: 0 is sharp"));
    d.number("ambient", &Light::ambient)
        .title(SceneDescriptionText::tr("Ambient"))
        .units(Factor)
        .range(0.0, 4.0)
        .step(0.01)
        .toolTip(SceneDescriptionText::tr("Strength of the light from the surroundings"));
    d.powerOfTwo("shadowMapSize", &Light::shadowMapSize)
        .title(SceneDescriptionText::tr("Shadow size"))
        .units(QStringLiteral("px"))
        .range(16, 4096)
        .enabledWhen([](const Light& light) { return light.shadows; })
        .toolTip(SceneDescriptionText::tr("Edge of the shadow map: larger is sharper and slower"));
    d.flag("shadows", &Light::shadows)
        .title(SceneDescriptionText::tr("Shadows"))
        .toolTip(SceneDescriptionText::tr("Whether the light casts shadows"));
    return d.type();
}

Type describeAnimation()
{
    Description<Animation> d(QStringLiteral("Animation"));
    d.section(SceneDescriptionText::tr("Animation"));
    d.number("turntableSpeed", &Animation::turntableSpeed)
        .title(SceneDescriptionText::tr("Turntable"))
        .units(QStringLiteral("°/s"))
        .range(-360.0, 360.0)
        .step(5.0)
        .live(false)
        .toolTip(SceneDescriptionText::tr("Speed of the turntable; changes when the handle is let go"));
    d.flag("playing", &Animation::playing)
        .title(SceneDescriptionText::tr("Play"))
        .toolTip(SceneDescriptionText::tr("Turn the objects about the camera's target"));
    return d.type();
}

Type describeView()
{
    Description<View> d(QStringLiteral("View"));
    d.section(SceneDescriptionText::tr("View"));
    d.choice("shading", &View::shading)
        .entry(QStringLiteral("lit"), SceneDescriptionText::tr("Lit"), ShadingMode::Lit)
        .entry(QStringLiteral("flat"), SceneDescriptionText::tr("Flat"), ShadingMode::Flat)
        .entry(QStringLiteral("normals"), SceneDescriptionText::tr("Normals"), ShadingMode::Normals)
        .entry(QStringLiteral("wireframe"), SceneDescriptionText::tr("Wireframe"), ShadingMode::Wireframe)
        .title(SceneDescriptionText::tr("Shading"))
        .toolTip(SceneDescriptionText::tr("What the view shows of the objects"));
    d.number("exposure", &View::exposure)
        .title(SceneDescriptionText::tr("Exposure"))
        .units(Factor)
        .range(0.01, 100.0)
        .logarithmic()
        .toolTip(SceneDescriptionText::tr("Brightness of the picture"));
    d.file("environmentImage", &View::environmentImage)
        .title(SceneDescriptionText::tr("Environment"))
        .maximumLength(MaximumTextLength)
        .fileFilter(SceneDescriptionText::tr("Images (*.png *.jpg *.jpeg *.bmp);;All files (*)"))
        .toolTip(SceneDescriptionText::tr("Picture of the surroundings, twice as wide as high"));
    d.choice("textureFilter", &View::textureFilter)
        .entry(QStringLiteral("nearest"), SceneDescriptionText::tr("Nearest"), TextureFilter::Nearest)
        .entry(QStringLiteral("bilinear"), SceneDescriptionText::tr("Bilinear"), TextureFilter::Bilinear)
        .entry(QStringLiteral("trilinear"), SceneDescriptionText::tr("Trilinear"), TextureFilter::Trilinear)
        .title(SceneDescriptionText::tr("Filtering"))
        .toolTip(SceneDescriptionText::tr("How pictures on objects and of the surroundings are sampled"));
    d.flag("environmentBackground", &View::environmentBackground)
        .title(SceneDescriptionText::tr("Backdrop"))
        .toolTip(SceneDescriptionText::tr(
            "The picture of the surroundings behind the scene, in place of the background colour"));
    d.colour("backgroundColour", &View::backgroundColour)
        .title(SceneDescriptionText::tr("Background"))
        .toolTip(SceneDescriptionText::tr("Red, green and blue from 0 to 1"));
    d.flag("grid", &View::grid)
        .title(SceneDescriptionText::tr("Grid"))
        .toolTip(SceneDescriptionText::tr("Lines on the floor"));
    d.number("gridCellSize", &View::gridCellSize)
        .title(SceneDescriptionText::tr("Grid cell"))
        .units(Metres)
        .range(0.001, 1000.0)
        .logarithmic()
        .enabledWhen([](const View& view) { return view.grid; })
        .toolTip(SceneDescriptionText::tr("Edge of a cell of the grid"));
    d.powerOfTwo("gridExtent", &View::gridExtent)
        .title(SceneDescriptionText::tr("Grid extent"))
        .units(SceneDescriptionText::tr("cells"))
        .range(1, 1024)
        .enabledWhen([](const View& view) { return view.grid; })
        .toolTip(SceneDescriptionText::tr("From the centre to an edge"));
    d.flag("highlightSelection", &View::highlightSelection)
        .title(SceneDescriptionText::tr("Outline"))
        .toolTip(SceneDescriptionText::tr("A line around the selected objects"));
    return d.type();
}

Type describeMaterial()
{
    Description<Material> d(QStringLiteral("Material"));
    d.section(SceneDescriptionText::tr("Material"));
    d.colour("baseColour", &Material::baseColour)
        .title(SceneDescriptionText::tr("Base colour"))
        .toolTip(SceneDescriptionText::tr("Red, green and blue from 0 to 1"));
    setRange(d.number("roughness", &Material::roughness)
                 .title(SceneDescriptionText::tr("Roughness"))
                 .step(0.005)
                 .toolTip(SceneDescriptionText::tr("0 is a mirror, 1 is chalk")),
             ranges::unit);
    setRange(d.number("metallic", &Material::metallic)
                 .title(SceneDescriptionText::tr("Metallic"))
                 .step(0.005)
                 .toolTip(SceneDescriptionText::tr("0 is plastic or stone, 1 is bare metal")),
             ranges::unit);
    d.colour("emissionColour", &Material::emissionColour)
        .title(SceneDescriptionText::tr("Emission colour"))
        .toolTip(SceneDescriptionText::tr("Colour of the light that the material gives off"));
    setRange(d.number("emission", &Material::emission)
                 .title(SceneDescriptionText::tr("Emission"))
                 .units(Factor)
                 .step(0.1)
                 .toolTip(SceneDescriptionText::tr("Strength of the light that the material gives off")),
             ranges::emission);
    return d.type();
}

Type describeObject(bool isPanel)
{
    Description<Object> d(QStringLiteral("Object"));
    d.section(SceneDescriptionText::tr("Object"));
    d.text("name", &Object::name)
        .title(SceneDescriptionText::tr("Name"))
        .maximumLength(MaximumTextLength)
        .defaultValue({})
        .toolTip(SceneDescriptionText::tr("Name of the selected object"));
    if (!isPanel)
    {
        d.file("mesh", &Object::meshFile).title(SceneDescriptionText::tr("Mesh")).maximumLength(MaximumTextLength);
        d.flag("visible", &Object::visible).title(SceneDescriptionText::tr("Visible"));
    }
    setRange(d.vector("position", &Object::position)
                 .title(SceneDescriptionText::tr("Position"))
                 .units(Metres)
                 .toolTip(SceneDescriptionText::tr("Position of the object's origin")),
             ranges::coordinate);
    d.vector("rotation", &Object::rotation)
        .title(SceneDescriptionText::tr("Rotation"))
        .units(Degrees)
        .range(-360.0, 360.0)
        .toolTip(SceneDescriptionText::tr("Turn about X, then Y, then Z"));
    d.vector("scale", &Object::scale)
        .title(SceneDescriptionText::tr("Scale"))
        .units(Factor)
        .range(0.001, 1000.0)
        .toolTip(SceneDescriptionText::tr("Factor along each axis"));
    d.nested("material", &Object::material, describeMaterial());
    return d.type();
}

Type describeScene(bool isPanel)
{
    Description<Scene> d(QStringLiteral("Scene"));
    d.nested("camera", &Scene::camera, describeCamera());
    d.nested("light", &Scene::light, describeLight());
    d.nested("animation", &Scene::animation, describeAnimation());
    d.section(SceneDescriptionText::tr("View"));
    d.text("name", &Scene::name)
        .title(SceneDescriptionText::tr("Scene name"))
        .maximumLength(MaximumTextLength)
        .defaultValue({})
        .toolTip(SceneDescriptionText::tr("Name of the scene"));
    d.nested("view", &Scene::view, describeView());
    if (!isPanel)
        d.list("objects", &Scene::objects, objectType()).maximumLength(maximumObjectCount);
    return d.type();
}
} // namespace

const Type& sceneType()
{
    static const Type type = describeScene(false);
    return type;
}

const Type& objectType()
{
    static const Type type = describeObject(false);
    return type;
}

const Type& objectPanelType()
{
    static const Type type = describeObject(true);
    return type;
}

const Type& scenePanelType()
{
    static const Type type = describeScene(true);
    return type;
}

bool operator==(const Camera& a, const Camera& b)
{
    static const Type type = describeCamera();
    return type->equal(&a, &b);
}

bool operator==(const Light& a, const Light& b)
{
    static const Type type = describeLight();
    return type->equal(&a, &b);
}

bool operator==(const Object& a, const Object& b)
{
    return objectType()->equal(&a, &b);
}

bool operator==(const Scene& a, const Scene& b)
{
    return sceneType()->equal(&a, &b);
}
} // namespace sceneeditor
