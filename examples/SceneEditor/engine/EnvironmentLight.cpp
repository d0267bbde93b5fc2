#include <examples/SceneEditor/engine/EnvironmentLight.h>

#include <QtGui/QColor>

#include <cmath>

namespace sceneeditor
{
namespace
{
constexpr int MaximumWidth = 2048;
constexpr double Pi = 3.14159265358979323846;

float toLinear(double c)
{
    return static_cast<float>(c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4));
}

// Pictures have no light brighter than white; what is nearly white was usually cut off there.
float restoredHighlight(const QVector3D& colour)
{
    const float brightest = qMax(colour.x(), qMax(colour.y(), colour.z()));
    return 1.0f + 3.0f * std::pow(brightest, 6.0f);
}

QImage usable(const QImage& picture)
{
    if (picture.isNull())
    {
        QImage grey(4, 2, QImage::Format_RGB32);
        grey.fill(QColor(150, 150, 150));
        return grey;
    }
    const QSize size(qMin(picture.width(), MaximumWidth), qMin(picture.height(), MaximumWidth / 2));
    const QImage scaled =
        size == picture.size() ? picture : picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return scaled.convertToFormat(QImage::Format_RGB32);
}
} // namespace

EnvironmentLight environmentLight(const QImage& picture)
{
    const QImage image = usable(picture);
    EnvironmentLight result;
    result.width = image.width();
    result.height = image.height();
    result.texels.reserve(size_t(result.width) * size_t(result.height) * 3);

    // Light from all around a surface is smooth: nine spherical harmonics are enough. The factors are those of the
    // basis functions, squared, times the cosine lobe, over pi; so the shader needs only plain polynomials.
    constexpr double factors[9] = {0.0795775, 0.159155,  0.159155, 0.159155, 0.298416,
                                   0.298416,  0.0248680, 0.298416, 0.0746039};
    std::array<std::array<double, 3>, 9> sums{};
    for (int y = 0; y < result.height; ++y)
    {
        const QRgb* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        const double polar = Pi * (y + 0.5) / result.height;
        const double weight = std::sin(polar) * (2.0 * Pi / result.width) * (Pi / result.height);
        for (int x = 0; x < result.width; ++x)
        {
            QVector3D colour = linear(QColor(line[x]));
            colour *= restoredHighlight(colour);
            const double around = 2.0 * Pi * ((x + 0.5) / result.width - 0.5);
            const double dx = std::sin(around) * std::sin(polar);
            const double dy = std::cos(polar);
            const double dz = -std::cos(around) * std::sin(polar);
            const double basis[9] = {
                1.0, dy, dz, dx, dx * dy, dy * dz, 3.0 * dz * dz - 1.0, dx * dz, dx * dx - dy * dy};
            for (int i = 0; i < 3; ++i)
            {
                result.texels.push_back(colour[i]);
                for (size_t k = 0; k < 9; ++k)
                    sums[k][size_t(i)] += basis[k] * weight * double(colour[i]);
            }
        }
    }
    for (size_t k = 0; k < 9; ++k)
        result.irradiance[k] =
            QVector3D(float(sums[k][0] * factors[k]), float(sums[k][1] * factors[k]), float(sums[k][2] * factors[k]));
    return result;
}

QVector3D linear(const QColor& colour)
{
    return {toLinear(colour.redF()), toLinear(colour.greenF()), toLinear(colour.blueF())};
}
} // namespace sceneeditor
