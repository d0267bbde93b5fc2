#pragma once

#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtGui/QVector3D>

#include <array>
#include <vector>

namespace sceneeditor
{
//! The light that comes from a picture of the surroundings.
struct EnvironmentLight
{
    int width = 0; //!< texels
    int height = 0;
    std::vector<float> texels; //!< linear red, green and blue, from the top left
    //! Light on a surface, by its normal: factors of nine polynomials, see irradianceAt() in environment.glsl.
    std::array<QVector3D, 9> irradiance;
};

//! The picture is equirectangular, up at the top, and scaled down to at most 2048 x 1024. A null one gives even grey.
EnvironmentLight environmentLight(const QImage& picture);

//! Linear red, green and blue of an sRGB colour.
QVector3D linear(const QColor& colour);
} // namespace sceneeditor
