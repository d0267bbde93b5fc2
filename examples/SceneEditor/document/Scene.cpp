#include <examples/SceneEditor/document/Scene.h>

namespace sceneeditor
{
namespace
{
// QColor's own comparison also tells apart how the same colour was given (RGB, HSV and so on) and the alpha,
// which is not saved.
bool sameColour(const QColor& a, const QColor& b)
{
    const QRgba64 x = a.rgba64();
    const QRgba64 y = b.rgba64();
    return x.red() == y.red() && x.green() == y.green() && x.blue() == y.blue();
}
} // namespace

bool operator==(const Camera& a, const Camera& b)
{
    return a.target == b.target && a.distance == b.distance && a.azimuth == b.azimuth && a.elevation == b.elevation &&
           a.fieldOfView == b.fieldOfView;
}

bool operator==(const Light& a, const Light& b)
{
    return a.kind == b.kind && a.azimuth == b.azimuth && a.elevation == b.elevation && a.distance == b.distance &&
           sameColour(a.colour, b.colour) && a.intensity == b.intensity && a.ambient == b.ambient &&
           a.shadows == b.shadows && a.shadowMapSize == b.shadowMapSize;
}

bool operator==(const Material& a, const Material& b)
{
    return sameColour(a.baseColour, b.baseColour) && a.roughness == b.roughness && a.metallic == b.metallic &&
           sameColour(a.emissionColour, b.emissionColour) && a.emission == b.emission;
}

bool operator==(const Object& a, const Object& b)
{
    return a.name == b.name && a.meshFile == b.meshFile && a.position == b.position && a.rotation == b.rotation &&
           a.scale == b.scale && a.visible == b.visible && a.material == b.material;
}

bool operator==(const Animation& a, const Animation& b)
{
    return a.turntableSpeed == b.turntableSpeed && a.playing == b.playing;
}

bool operator==(const View& a, const View& b)
{
    return a.shading == b.shading && a.textureFilter == b.textureFilter && a.environmentImage == b.environmentImage &&
           a.environmentBackground == b.environmentBackground && sameColour(a.backgroundColour, b.backgroundColour) &&
           a.exposure == b.exposure && a.grid == b.grid && a.gridCellSize == b.gridCellSize &&
           a.gridExtent == b.gridExtent && a.highlightSelection == b.highlightSelection;
}

bool operator==(const Scene& a, const Scene& b)
{
    return a.name == b.name && a.camera == b.camera && a.light == b.light && a.view == b.view &&
           a.animation == b.animation && a.objects == b.objects;
}
} // namespace sceneeditor
