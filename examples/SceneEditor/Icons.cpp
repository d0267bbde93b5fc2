#include <examples/SceneEditor/Icons.h>

#include <QtGui/QIconEngine>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QPalette>
#include <QtWidgets/QApplication>

#include <initializer_list>

namespace sceneeditor
{
namespace
{
constexpr double Grid = 24.0; // of the coordinates below
constexpr double Stroke = 1.8;

void line(QPainterPath& path, std::initializer_list<QPointF> points)
{
    path.moveTo(*points.begin());
    for (const QPointF& point : points)
        path.lineTo(point);
}

void arrowAround(QPainterPath& path, bool isRight)
{
    QPainterPath arrow;
    line(arrow, {{8, 5}, {4, 9}, {8, 13}});
    arrow.moveTo(4, 9);
    arrow.lineTo(14, 9);
    arrow.arcTo(QRectF(9, 9, 10, 10), 90, -180);
    arrow.lineTo(9, 19);
    path.addPath(isRight ? QTransform(-1, 0, 0, 1, Grid, 0).map(arrow) : arrow);
}

QPainterPath pathOf(Icon which)
{
    QPainterPath path;
    switch (which)
    {
    case Icon::Open:
        line(path, {{3, 19}, {3, 5}, {9, 5}, {11, 8}, {19, 8}, {19, 11}});
        line(path, {{3, 19}, {6, 11}, {22, 11}, {19, 19}, {3, 19}});
        break;
    case Icon::Save:
        line(path, {{4, 4}, {17, 4}, {20, 7}, {20, 20}, {4, 20}, {4, 4}});
        line(path, {{8, 4}, {8, 9}, {15, 9}, {15, 4}});
        line(path, {{7, 20}, {7, 14}, {17, 14}, {17, 20}});
        break;
    case Icon::Undo:
    case Icon::Redo:
        arrowAround(path, which == Icon::Redo);
        break;
    case Icon::Add:
        line(path, {{12, 5}, {12, 19}});
        line(path, {{5, 12}, {19, 12}});
        break;
    case Icon::Duplicate:
        path.addRect(8, 8, 12, 12);
        line(path, {{16, 4}, {4, 4}, {4, 16}});
        break;
    case Icon::Remove:
        line(path, {{4, 7}, {20, 7}});
        line(path, {{9, 7}, {9, 4}, {15, 4}, {15, 7}});
        line(path, {{6, 7}, {7, 20}, {17, 20}, {18, 7}});
        break;
    case Icon::Frame:
        for (const QPointF& corner : {QPointF(4, 4), QPointF(20, 4), QPointF(20, 20), QPointF(4, 20)})
        {
            const double inX = corner.x() < Grid / 2 ? 5 : -5;
            const double inY = corner.y() < Grid / 2 ? 5 : -5;
            line(path, {corner + QPointF(inX, 0), corner, corner + QPointF(0, inY)});
        }
        path.addRect(10, 10, 4, 4);
        break;
    case Icon::Home:
        line(path, {{3, 12}, {12, 4}, {21, 12}});
        line(path, {{6, 10}, {6, 20}, {18, 20}, {18, 10}});
        break;
    }
    return path;
}

class LineIcon final : public QIconEngine
{
public:
    explicit LineIcon(Icon which) : m_which(which) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const QPalette palette = QApplication::palette();
        QColor colour = palette.color(QPalette::Active, QPalette::WindowText);
        if (mode == QIcon::Disabled)
            colour = palette.color(QPalette::Disabled, QPalette::WindowText);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / Grid, rect.height() / Grid);
        painter->strokePath(pathOf(m_which), QPen(colour, Stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new LineIcon(m_which); }

private:
    const Icon m_which;
};
} // namespace

QIcon icon(Icon which)
{
    return QIcon(new LineIcon(which));
}
} // namespace sceneeditor
