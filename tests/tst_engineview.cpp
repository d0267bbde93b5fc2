// Compiled for each example of an engine: ENGINE is its class, in ENGINE_HEADER.
#include "testsupport.h"

#include ENGINE_HEADER

#include <examples/SceneEditor/engine/SceneRenderer.h>
#include <examples/SceneEditor/engine/SurfaceManager.h>

#include <QtGui/QVulkanInstance>

namespace
{
// What is on the screen, in device pixels.
QImage shown(const QRenderWidget& widget)
{
    return widget.screen()->grabWindow(widget.winId()).toImage().convertToFormat(QImage::Format_RGB32);
}

// The same object from the same side, as the OpenGL of the scene editor draws it: grey 200 on 33 and darker, with
// smooth edges.
QImage drawnByOpenGl(const OrbitView& view, const QSize& widgetSize)
{
    const Mesh knot = makeKnot();
    auto mesh = std::make_shared<sceneeditor::MeshData>();
    for (const Mesh::Vertex& vertex : knot.vertices)
        mesh->vertices.push_back({vertex.position, vertex.normal});
    mesh->indices = knot.indices;
    mesh->minimum = QVector3D(-2.0f, -2.0f, -2.0f);
    mesh->maximum = -mesh->minimum;
    const QVector3D eye = view.eye();
    sceneeditor::Scene scene;
    scene.camera = {QVector3D(), double(eye.length()), qRadiansToDegrees(std::atan2(double(eye.x()), double(eye.z()))),
                    qRadiansToDegrees(std::asin(double(eye.y() / eye.length()))), OrbitView::fieldOfView};
    scene.view.shading = sceneeditor::ShadingMode::Flat;
    scene.view.grid = false;
    scene.view.highlightSelection = false;
    scene.view.backgroundColour = QColor::fromRgbF(Engine::background[0], Engine::background[1], Engine::background[2]);
    scene.objects.resize(1);
    scene.objects[0].meshFile = QStringLiteral("knot");

    sceneeditor::SceneRenderer renderer;
    renderer.setScene(scene);
    renderer.setMeshes({{scene.objects[0].meshFile, mesh}});
    sceneeditor::SurfaceManager manager;
    QWidget target;
    target.resize(widgetSize);
    manager.AddWindow(HWND(target.winId()), &renderer, -1);
    return manager.grabFrame(HWND(target.winId()));
}

bool isObject(QRgb pixel)
{
    const auto& background = Engine::background;
    return qAbs(qRed(pixel) - 255 * background[0]) + qAbs(qGreen(pixel) - 255 * background[1]) +
               qAbs(qBlue(pixel) - 255 * background[2]) >
           12;
}

// Pixels in one silhouette only, per pixel in both. Infinite if the pictures cannot be compared.
double mismatch(const QImage& picture, const QImage& reference)
{
    const QSize apart = picture.size() - reference.size();
    if (qAbs(apart.width()) > 1 || qAbs(apart.height()) > 1) // half pixels at a scale of 1.5
        return qInf();
    int inBoth = 0;
    int inOne = 0;
    const QRect both = picture.rect() & reference.rect();
    for (int y = 0; y < both.height(); ++y)
        for (int x = 0; x < both.width(); ++x)
        {
            const bool in = isObject(picture.pixel(x, y));
            const bool expected = qGray(reference.pixel(x, y)) > 117;
            inBoth += in && expected;
            inOne += in != expected;
        }
    return inBoth > 0 ? double(inOne) / inBoth : qInf();
}

// Within half of what two engines may differ by, as each is compared with the third. With half pixels, at a scale
// of 1.5, the windows are up to a pixel larger or smaller than the reference.
bool isRight(const EngineWindow::View& view)
{
    static QVector3D eye; // of the reference, as making it takes longer than a try
    static QSize size;
    static QImage reference;
    if (eye != view.scene->eye() || size != view.widget->size())
    {
        eye = view.scene->eye();
        size = view.widget->size();
        reference = drawnByOpenGl(*view.scene, size);
    }
    const QImage picture = shown(*view.widget);
    const double wrong = mismatch(picture, reference);
    if (wrong <= (view.widget->devicePixelRatioF() == 1.0 ? 0.01 : 0.02))
        return true;
    qInfo("%s: %.2f %% of %d x %d pixels", qPrintable(view.dock->windowTitle()), 100.0 * wrong, picture.width(),
          picture.height());
    return false;
}

void waitForFrames(QRenderWidget& widget, int count)
{
    QSignalSpy frames(&widget, &QRenderWidget::viewUpdated);
    widget.Update();
    QTRY_VERIFY(frames.count() >= count);
}
} // namespace

class tst_EngineView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
#ifdef ENGINE_OF_VULKAN
        if (!QVulkanInstance().create())
            QSKIP("No driver of Vulkan here");
#endif
    }

    void bothViewsShowTheKnot()
    {
        ENGINE engine;
        EngineWindow window(&engine);
        window.show();
        for (int index : {0, 1})
        {
            EngineWindow::View& view = window.view(index);
            QTRY_VERIFY(isRight(view));
            QCOMPARE(engine.GetWindowViewId(view.widget->GetHWND()), index);
            // In its own colour, and lit from the upper left.
            const QImage picture = shown(*view.widget);
            QVector3D object, light; // sums of places, with their number
            QVector3D colour;
            for (int i = 0; i < picture.width() * picture.height(); ++i)
            {
                const QPoint at(i % picture.width(), i / picture.width());
                const QRgb pixel = picture.pixel(at);
                if (!isObject(pixel))
                    continue;
                colour += QVector3D(float(qRed(pixel)), float(qGreen(pixel)), float(qBlue(pixel)));
                (qGray(pixel) < 128 ? object : light) += QVector3D(float(at.x()), float(at.y()), 1.0F);
            }
            QVERIFY(light.z() > 100.0F);
            const QVector3D offset = light / light.z() - (object + light) / (object + light).z();
            QVERIFY(offset.x() < -10.0F && offset.y() < -10.0F);
            QVERIFY(QVector3D::dotProduct(colour.normalized(), view.scene->colour().normalized()) > 0.99f);
        }
        QVERIFY2(engine.error().isEmpty(), qPrintable(engine.error()));
    }

    void mouseAndWheelMoveOneCamera()
    {
        ENGINE engine;
        EngineWindow window(&engine);
        window.show();
        QTRY_VERIFY(isRight(window.view(0)));
        const QVector3D before = window.view(0).scene->eye();
        QRenderWidget* widget = window.view(0).widget;
        QTest::mousePress(widget, Qt::LeftButton, {}, QPoint(100, 100));
        QTest::mouseMove(widget, QPoint(220, 130));
        QTest::mouseRelease(widget, Qt::LeftButton, {}, QPoint(220, 130));
        QTRY_VERIFY(window.view(0).scene->eye() != before);
        QWheelEvent wheel(QPointF(50, 50), widget->mapToGlobal(QPoint(50, 50)), QPoint(), QPoint(0, 240), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(widget, &wheel);
        QVERIFY(window.view(0).scene->eye().length() < before.length() - 1.0f);
        QCOMPARE(window.view(1).scene->eye(), before);
        QTRY_VERIFY(isRight(window.view(0)));
        QTRY_VERIFY(isRight(window.view(1)));
    }

    void staysRight()
    {
        ENGINE engine;
        EngineWindow window(&engine);
        EngineWindow::View& first = window.view(0);
        EngineWindow::View& second = window.view(1);
        window.show();
        const auto check = [&](const char* act)
        {
            QTRY_VERIFY2(isRight(first) && isRight(second), act);
            QVERIFY2(engine.error().isEmpty(), qPrintable(act + engine.error()));
        };
        check("shown");
        for (int i = 0; i < 60; ++i)
        {
            window.resize(500 + i * 97 % 400, 300 + i * 53 % 300);
            QTest::qWait(i % 3 * 10);
        }
        check("60 resizes");
        second.dock->setFloating(true);
        QTRY_VERIFY(isRight(second)); // and covers the first one
        second.dock->setFloating(false);
        check("back");
        window.tabifyDockWidget(first.dock, second.dock);
        waitForFrames(*second.widget, 1);
        first.dock->raise();
        waitForFrames(*first.widget, 1);
        window.splitDockWidget(first.dock, second.dock, Qt::Vertical);
        check("onto a tab and back");
        window.hide();
        first.widget->repaint();
        window.show();
        check("hidden and shown");
        window.setEngine(nullptr);
        window.setEngine(&engine);
        first.widget->Update();
        second.widget->Update();
        check("taken away and given back");
        for (int i = 0; i < 2; ++i)
            first.widget->shutdown();
        first.widget->repaint();
        first.widget->SetPlatformRendererInterface(first.scene.get());
        first.widget->Update();
        check("removed twice");
        window.setWindowFlag(Qt::WindowStaysOnTopHint, true);
        window.show();
        check("always on top");
    }

    void closesDuringContinuousUpdate()
    {
        ENGINE engine;
        OrbitView scene(QVector3D(0.9f, 0.9f, 0.9f));
        QRenderWidget first;
        for (int i = 0; i < 3; ++i)
        {
            QRenderWidget second;
            for (QRenderWidget* widget : {&first, &second})
            {
                widget->SetPlatformRendererInterface(&scene);
                widget->SetDisplaySurfaceManagerInterface(&engine);
                widget->setContinuousUpdate(true);
                widget->show();
            }
            waitForFrames(first, 20);
            waitForFrames(second, 20);
        }
        waitForFrames(first, 5);
        first.close();
        QTest::qWait(20);
        QVERIFY2(engine.error().isEmpty(), qPrintable(engine.error()));
        first.SetDisplaySurfaceManagerInterface(nullptr);
    }

    void engineGoesFirst()
    {
        auto engine = std::make_unique<ENGINE>();
        EngineWindow window(engine.get());
        window.show();
        waitForFrames(*window.view(0).widget, 2);
        window.setEngine(nullptr);
        engine.reset();
        window.resize(600, 400);
        window.view(0).widget->repaint();
        QTest::qWait(50);
        // Another one works as the first did. Not in the old views: Qt has painted their message, so it paints on.
        ENGINE next;
        EngineWindow another(&next);
        another.show();
        QTRY_VERIFY(isRight(another.view(0)));
    }
};

QTEST_MAIN(tst_EngineView)
#include "tst_engineview.moc"
