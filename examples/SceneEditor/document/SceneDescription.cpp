#include <examples/SceneEditor/document/SceneDescription.h>

#include <Orvek/Host/Description.h>

#include <QtCore/QCoreApplication>

using namespace orvek::host;

namespace sceneeditor
{
namespace
{
constexpr int MaximumTextLength = 4096; // characters of a name or a file name

struct Text
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
    d.section(Text::tr("Camera"));
    setRange(d.vector("target", &Camera::target)
                 .title(Text::tr("Target"))
                 .units(Metres)
                 .toolTip(Text::tr("The point that the camera looks at")),
             ranges::coordinate);
    setRange(d.number("distance", &Camera::distance)
                 .title(Text::tr("Distance"))
                 .units(Metres)
                 .logarithmic()
                 .toolTip(Text::tr("From the target to the camera")),
             ranges::cameraDistance);
    setRange(d.number("azimuth", &Camera::azimuth)
                 .title(Text::tr("Azimuth"))
                 .units(Degrees)
                 .step(1.0)
                 .toolTip(Text::tr("Where the camera stands around the target")),
             ranges::azimuth);
    setRange(d.number("elevation", &Camera::elevation)
                 .title(Text::tr("Elevation"))
                 .units(Degrees)
                 .step(1.0)
                 .toolTip(Text::tr("How high the camera stands; above 0 it looks down")),
             ranges::cameraElevation);
    setRange(d.number("fieldOfView", &Camera::fieldOfView)
                 .title(Text::tr("Field of view"))
                 .units(Degrees)
                 .step(1.0)
                 .toolTip(Text::tr("Opening angle from bottom to top")),
             ranges::fieldOfView);
    return d.type();
}

Type describeLight()
{
    Description<Light> d(QStringLiteral("Light"));
    d.section(Text::tr("Light"));
    d.choice("kind", &Light::kind)
        .entry(QStringLiteral("directional"), Text::tr("Directional"), LightKind::Directional)
        .entry(QStringLiteral("point"), Text::tr("Point"), LightKind::Point)
        .entry(QStringLiteral("spot"), Text::tr("Spot"), LightKind::Spot)
        .title(Text::tr("Kind"))
        .toolTip(Text::tr("A directional light shines from far away, a point light from its place, a spot light from "
                          "its place towards the origin"));
    d.colour("colour", &Light::colour).title(Text::tr("Colour")).toolTip(Text::tr("Red, green and blue from 0 to 1"));
    d.number("intensity", &Light::intensity)
        .title(Text::tr("Intensity"))
        .units(Factor)
        .range(0.01, 100.0)
        .logarithmic()
        .toolTip(Text::tr("Strength of the light"));
    setRange(d.number("azimuth", &Light::azimuth)
                 .title(Text::tr("Azimuth"))
                 .units(Degrees)
                 .step(1.0)
                 .toolTip(Text::tr("Where the light stands around the scene")),
             ranges::azimuth);
    d.number("elevation", &Light::elevation)
        .title(Text::tr("Elevation"))
        .units(Degrees)
        .range(-90.0, 90.0)
        .step(1.0)
        .toolTip(Text::tr("How high the light stands"));
    d.number("distance", &Light::distance)
        .title(Text::tr("Distance"))
        .units(Metres)
        .range(0.1, 1000.0)
        .logarithmic()
        .enabledWhen([](const Light& light) { return light.kind != LightKind::Directional; })
        .toolTip(Text::tr("From the origin to the light"));
    const auto isSpot = [](const Light& light) { return light.kind == LightKind::Spot; };
    d.number("coneAngle", &Light::coneAngle)
        .title(Text::tr("Cone"))
        .units(Degrees)
        .range(1.0, 120.0)
        .step(1.0)
        .enabledWhen(isSpot)
        .toolTip(Text::tr("Opening of a spot light from edge to edge"));
    d.number("coneSoftness", &Light::coneSoftness)
        .title(Text::tr("Cone softness"))
        .step(0.01)
        .enabledWhen(isSpot)
        .toolTip(Text::tr("How much of the cone fades towards its edge: 0 is sharp"));
    d.number("ambient", &Light::ambient)
        .title(Text::tr("Ambient"))
        .units(Factor)
        .range(0.0, 4.0)
        .step(0.01)
        .toolTip(Text::tr("Strength of the light from the surroundings"));
    d.powerOfTwo("shadowMapSize", &Light::shadowMapSize)
        .title(Text::tr("Shadow size"))
        .units(QStringLiteral("px"))
        .range(16, 4096)
        .enabledWhen([](const Light& light) { return light.shadows; })
        .toolTip(Text::tr("Edge of the shadow map: larger is sharper and slower"));
    d.flag("shadows", &Light::shadows).title(Text::tr("Shadows")).toolTip(Text::tr("Whether the light casts shadows"));
    return d.type();
}

Type describeAnimation()
{
    Description<Animation> d(QStringLiteral("Animation"));
    d.section(Text::tr("Animation"));
    d.number("turntableSpeed", &Animation::turntableSpeed)
        .title(Text::tr("Turntable"))
        .units(QStringLiteral("°/s"))
        .range(-360.0, 360.0)
        .step(5.0)
        .live(false)
        .toolTip(Text::tr("Speed of the turntable; changes when the handle is let go"));
    d.flag("playing", &Animation::playing)
        .title(Text::tr("Play"))
        .toolTip(Text::tr("Turn the objects about the camera's target"));
    return d.type();
}

Type describeView()
{
    Description<View> d(QStringLiteral("View"));
    d.section(Text::tr("View"));
    d.choice("shading", &View::shading)
        .entry(QStringLiteral("lit"), Text::tr("Lit"), ShadingMode::Lit)
        .entry(QStringLiteral("flat"), Text::tr("Flat"), ShadingMode::Flat)
        .entry(QStringLiteral("normals"), Text::tr("Normals"), ShadingMode::Normals)
        .entry(QStringLiteral("wireframe"), Text::tr("Wireframe"), ShadingMode::Wireframe)
        .title(Text::tr("Shading"))
        .toolTip(Text::tr("What the view shows of the objects"));
    d.number("exposure", &View::exposure)
        .title(Text::tr("Exposure"))
        .units(Factor)
        .range(0.01, 100.0)
        .logarithmic()
        .toolTip(Text::tr("Brightness of the picture"));
    d.file("environmentImage", &View::environmentImage)
        .title(Text::tr("Environment"))
        .maximumLength(MaximumTextLength)
        .fileFilter(Text::tr("Images (*.png *.jpg *.jpeg *.bmp);;All files (*)"))
        .toolTip(Text::tr("Picture of the surroundings, twice as wide as high"));
    d.choice("textureFilter", &View::textureFilter)
        .entry(QStringLiteral("nearest"), Text::tr("Nearest"), TextureFilter::Nearest)
        .entry(QStringLiteral("bilinear"), Text::tr("Bilinear"), TextureFilter::Bilinear)
        .entry(QStringLiteral("trilinear"), Text::tr("Trilinear"), TextureFilter::Trilinear)
        .title(Text::tr("Filtering"))
        .toolTip(Text::tr("How pictures on objects and of the surroundings are sampled"));
    d.flag("environmentBackground", &View::environmentBackground)
        .title(Text::tr("Backdrop"))
        .toolTip(Text::tr("The picture of the surroundings behind the scene, in place of the background colour"));
    d.colour("backgroundColour", &View::backgroundColour)
        .title(Text::tr("Background"))
        .toolTip(Text::tr("Red, green and blue from 0 to 1"));
    d.flag("grid", &View::grid).title(Text::tr("Grid")).toolTip(Text::tr("Lines on the floor"));
    d.number("gridCellSize", &View::gridCellSize)
        .title(Text::tr("Grid cell"))
        .units(Metres)
        .range(0.001, 1000.0)
        .logarithmic()
        .enabledWhen([](const View& view) { return view.grid; })
        .toolTip(Text::tr("Edge of a cell of the grid"));
    d.powerOfTwo("gridExtent", &View::gridExtent)
        .title(Text::tr("Grid extent"))
        .units(Text::tr("cells"))
        .range(1, 1024)
        .enabledWhen([](const View& view) { return view.grid; })
        .toolTip(Text::tr("From the centre to an edge"));
    d.flag("highlightSelection", &View::highlightSelection)
        .title(Text::tr("Outline"))
        .toolTip(Text::tr("A line around the selected objects"));
    return d.type();
}

Type describeMaterial()
{
    Description<Material> d(QStringLiteral("Material"));
    d.section(Text::tr("Material"));
    d.colour("baseColour", &Material::baseColour)
        .title(Text::tr("Base colour"))
        .toolTip(Text::tr("Red, green and blue from 0 to 1"));
    setRange(d.number("roughness", &Material::roughness)
                 .title(Text::tr("Roughness"))
                 .step(0.005)
                 .toolTip(Text::tr("0 is a mirror, 1 is chalk")),
             ranges::unit);
    setRange(d.number("metallic", &Material::metallic)
                 .title(Text::tr("Metallic"))
                 .step(0.005)
                 .toolTip(Text::tr("0 is plastic or stone, 1 is bare metal")),
             ranges::unit);
    d.colour("emissionColour", &Material::emissionColour)
        .title(Text::tr("Emission colour"))
        .toolTip(Text::tr("Colour of the light that the material gives off"));
    setRange(d.number("emission", &Material::emission)
                 .title(Text::tr("Emission"))
                 .units(Factor)
                 .step(0.1)
                 .toolTip(Text::tr("Strength of the light that the material gives off")),
             ranges::emission);
    return d.type();
}

Type describeObject(bool isPanel)
{
    Description<Object> d(QStringLiteral("Object"));
    d.section(Text::tr("Object"));
    d.text("name", &Object::name)
        .title(Text::tr("Name"))
        .maximumLength(MaximumTextLength)
        .defaultValue({})
        .toolTip(Text::tr("Name of the selected object"));
    if (!isPanel)
    {
        d.file("mesh", &Object::meshFile).title(Text::tr("Mesh")).maximumLength(MaximumTextLength);
        d.flag("visible", &Object::visible).title(Text::tr("Visible"));
    }
    setRange(d.vector("position", &Object::position)
                 .title(Text::tr("Position"))
                 .units(Metres)
                 .toolTip(Text::tr("Position of the object's origin")),
             ranges::coordinate);
    d.vector("rotation", &Object::rotation)
        .title(Text::tr("Rotation"))
        .units(Degrees)
        .range(-360.0, 360.0)
        .toolTip(Text::tr("Turn about X, then Y, then Z"));
    d.vector("scale", &Object::scale)
        .title(Text::tr("Scale"))
        .units(Factor)
        .range(0.001, 1000.0)
        .toolTip(Text::tr("Factor along each axis"));
    d.nested("material", &Object::material, describeMaterial());
    return d.type();
}

Type describeScene(bool isPanel)
{
    Description<Scene> d(QStringLiteral("Scene"));
    d.nested("camera", &Scene::camera, describeCamera());
    d.nested("light", &Scene::light, describeLight());
    d.nested("animation", &Scene::animation, describeAnimation());
    d.section(Text::tr("View"));
    d.text("name", &Scene::name)
        .title(Text::tr("Scene name"))
        .maximumLength(MaximumTextLength)
        .defaultValue({})
        .toolTip(Text::tr("Name of the scene"));
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
