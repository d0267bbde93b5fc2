#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QTemporaryFile>

#include <cmath>
#include <memory>

// The name of a file that lives as long as the program: a million triangles as OBJ without normals.
inline QString sphere()
{
    static const std::unique_ptr<QTemporaryFile> file = []
    {
        constexpr int side = 708;
        auto out = std::make_unique<QTemporaryFile>(QStringLiteral("sphere-XXXXXX.obj"));
        if (!out->open())
            qFatal("no temporary file");
        for (int row = 0; row <= side; ++row)
        {
            const double elevation = M_PI * row / side;
            for (int column = 0; column < side; ++column)
            {
                const double azimuth = 2.0 * M_PI * column / side;
                out->write(QByteArray("v ") + QByteArray::number(std::sin(elevation) * std::cos(azimuth), 'f') + ' ' +
                           QByteArray::number(std::cos(elevation), 'f') + ' ' +
                           QByteArray::number(std::sin(elevation) * std::sin(azimuth), 'f') + '\n');
            }
        }
        const auto face = [&out](int a, int b, int c)
        {
            out->write("f " + QByteArray::number(a + 1) + ' ' + QByteArray::number(b + 1) + ' ' +
                       QByteArray::number(c + 1) + '\n');
        };
        for (int i = 0; i < side * side; ++i)
        {
            const int next = i % side + 1 < side ? i + 1 : i + 1 - side;
            face(i, next, next + side);
            face(i, next + side, i + side);
        }
        out->flush();
        return out;
    }();
    return file->fileName();
}
