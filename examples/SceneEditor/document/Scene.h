#pragma once

#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QVector3D>

#include <vector>

namespace sceneeditor
{
//! A closed interval.
struct Range
{
    double minimum;
    double maximum;

    constexpr double clamp(double value) const
    {
        return value < minimum ? minimum : (value > maximum ? maximum : value);
    }
};

//! Ranges that the mouse in a view and the materials of mesh files keep to as well. All others are only in the
//! description of the scene.
namespace ranges
{
constexpr Range coordinate{-1.0e6, 1.0e6};    //!< each component of a position or target, metres
constexpr Range cameraDistance{0.01, 1.0e5};  //!< metres
constexpr Range fieldOfView{5.0, 120.0};      //!< degrees, vertical
constexpr Range azimuth{-360.0, 360.0};       //!< degrees
constexpr Range cameraElevation{-89.0, 89.0}; //!< degrees; the poles have no up direction
constexpr Range unit{0.0, 1.0};               //!< roughness, metallic
constexpr Range emission{0.0, 100.0};         //!< factor on the emission colour
} // namespace ranges

//! Looks at the target from outside a sphere around it. Y is up, azimuth 0 looks along -Z.
struct Camera
{
    QVector3D target{0.0f, 0.6f, 0.0f};
    double distance = 6.0;
    double azimuth = 30.0;   //!< counter-clockwise seen from above
    double elevation = 18.0; //!< positive looks down
    double fieldOfView = 35.0;
};

enum class LightKind
{
    Directional,
    Point,
    Spot
};

//! The one light of the scene. Azimuth and elevation say where it stands, seen from the origin.
struct Light
{
    LightKind kind = LightKind::Directional;
    double azimuth = -40.0;
    double elevation = 48.0;
    double distance = 8.0;     //!< not of a directional light; at this distance all kinds are equally bright
    double coneAngle = 45.0;   //!< of a spot light, which shines at the origin; degrees from edge to edge
    double coneSoftness = 0.3; //!< part of the cone that fades towards the edge, 0 to 1
    QColor colour{255, 244, 229};
    double intensity = 3.0;
    double ambient = 1.0;
    bool shadows = true;
    int shadowMapSize = 1024;
};

//! Colours are opaque sRGB.
struct Material
{
    QColor baseColour{200, 200, 205};
    double roughness = 0.45;
    double metallic = 0.0;
    QColor emissionColour{255, 255, 255};
    double emission = 0.0;
};

struct Object
{
    QString name;
    //! Absolute in memory, relative to the scene's file in the file. Empty: nothing is drawn.
    QString meshFile;
    QVector3D position;
    //! Degrees about X, then Y, then Z.
    QVector3D rotation;
    QVector3D scale{1.0f, 1.0f, 1.0f};
    bool visible = true;
    Material material;
};

//! The turntable turns all objects about the Y axis through the camera's target.
struct Animation
{
    double turntableSpeed = 20.0;
    bool playing = false;
};

//! In the order of the entries in an editor.
enum class ShadingMode
{
    Lit,
    Flat, //!< base colours only
    Normals,
    Wireframe
};

enum class TextureFilter
{
    Nearest,
    Bilinear,
    Trilinear
};

struct View
{
    ShadingMode shading = ShadingMode::Lit;
    TextureFilter textureFilter = TextureFilter::Trilinear;
    //! Equirectangular; absolute in memory, relative in the file. Empty: an even light of neutral grey.
    QString environmentImage;
    bool environmentBackground = false; //!< show the image behind the scene instead of the background colour
    QColor backgroundColour{58, 62, 69};
    double exposure = 1.0;
    bool grid = true;
    double gridCellSize = 0.5;
    int gridExtent = 16;
    bool highlightSelection = true;
};

struct Scene
{
    QString name;
    Camera camera;
    Light light;
    View view;
    Animation animation;
    //! Not implicitly shared: the panel writes into the objects through pointers, and copies must not see that.
    std::vector<Object> objects;
};

// All comparisons are exact and cover all that a file has: they use the description of the scene.
bool operator==(const Camera& a, const Camera& b);
bool operator==(const Light& a, const Light& b);
bool operator==(const Object& a, const Object& b);
bool operator==(const Scene& a, const Scene& b);

inline bool operator!=(const Camera& a, const Camera& b)
{
    return !(a == b);
}
} // namespace sceneeditor
