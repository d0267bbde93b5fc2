#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtGui/QBackingStore>
#include <QtGui/QPainter>
#include <QtGui/QWindow>

#include <memory>
#include <unordered_map>

//! The picture, a colour wheel, and the drag that turns it.
class Wheel final : public orvek::crossplatform::PlatformRendererInterface, public orvek::base::BaseMouseHandler
{
public:
    void draw(QPainter& painter, const QRect& area) const
    {
        constexpr int colours = 24;
        painter.fillRect(area, QColor(32, 34, 40));
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.translate(QRectF(area).center());
        painter.rotate(m_angle);
        const double radius = 0.4 * qMin(area.width(), area.height());
        for (int i = 0; i < colours; ++i)
        {
            painter.setBrush(QColor::fromHsvF(double(i) / colours, 0.6, 0.95));
            painter.drawEllipse(QPointF(radius, 0.0), radius / 10.0, radius / 10.0);
            painter.rotate(360.0 / colours);
        }
    }

    void MouseDown(int button, int x, int) override
    {
        m_dragging = button == Qt::LeftButton;
        m_lastX = x;
    }
    void MouseUp(int, int, int) override { m_dragging = false; }
    void MouseDoubleClick(int, int, int) override { m_angle = 0.0; }
    void MouseMove(int x, int) override
    {
        if (m_dragging)
            m_angle += 0.5 * (x - m_lastX);
        m_lastX = x;
    }
    void MouseWheel(int delta, int) override { m_angle += delta / 8.0; }
    void KeyboardInput(unsigned int, bool, int) override {}

private:
    double m_angle = 0.0; // degrees
    int m_lastX = 0;
    bool m_dragging = false;
};

//! Draws in software, on a backing store for each window. Unknown windows are skipped: Render() is also called after
//! shutdown(), or with the handle of a recreated native window.
class Surfaces final : public orvek::crossplatform::DisplaySurfaceManagerInterface
{
public:
    void AddWindow(HWND window, orvek::crossplatform::PlatformRendererInterface* renderer, int) override
    {
        m_views[window].wheel = static_cast<Wheel*>(renderer); // this engine knows no other renderers
    }
    void RemoveWindow(HWND window) override { m_views.erase(window); }
    void ResizeSurface(HWND) override {} // not called on a manager that is set later, so Render() asks for the size
    void Render(HWND window) override
    {
        const auto found = m_views.find(window);
        if (found == m_views.end() || !found->second.wheel)
            return;
        std::unique_ptr<QBackingStore>& store = found->second.store;
        if (!store)
            store = std::make_unique<QBackingStore>(QWidget::find(WId(window))->windowHandle());
        const QRect area(QPoint(), store->window()->size());
        store->resize(area.size());
        store->beginPaint(area);
        {
            QPainter painter(store->paintDevice());
            found->second.wheel->draw(painter, area);
        }
        store->endPaint();
        store->flush(area);
    }
    int GetWindowViewId(HWND) override
    {
        return 0; // all windows show the same
    }

private:
    struct View
    {
        const Wheel* wheel = nullptr; // not owned; null draws nothing
        std::unique_ptr<QBackingStore> store;
    };
    std::unordered_map<HWND, View> m_views;
};
