#include "testsupport.h"

#include <examples/SceneEditor/engine/CameraMath.h>
#include <examples/SceneEditor/engine/GpuResources.h>
#include <examples/SceneEditor/engine/SceneRenderer.h>
#include <examples/SceneEditor/engine/SurfaceManager.h>
#include <examples/SceneEditor/SceneView.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QOpenGLFramebufferObject>
#include <QtGui/QOffscreenSurface>

using namespace sceneeditor;

namespace
{
constexpr QPoint Corner(2, 2); // where there is nothing but background

MeshPointer triangle(const QVector3D& a, const QVector3D& b, const QVector3D& c)
{
    auto mesh = std::make_shared<MeshData>();
    const QVector3D normal = QVector3D::normal(a, b, c);
    mesh->vertices = {{a, normal}, {b, normal}, {c, normal}};
    mesh->indices = {0, 1, 2};
    for (int i = 0; i < 3; ++i)
        std::tie(mesh->minimum[i], mesh->maximum[i]) = std::minmax({a[i], b[i], c[i]});
    return mesh;
}

Object object(const char* mesh, const QVector3D& position)
{
    Object object;
    object.meshFile = QLatin1String(mesh);
    object.position = position;
    return object;
}

using Axes = Table<int, double>;        // axis, angle of the turntable
using Frames = Table<QSize, QVector3D>; // of the view, scale of the object

QByteArray dataUri(const QByteArray& data)
{
    return "\"data:application/octet-stream;base64," + data.toBase64() + '"';
}

// Two by two pixels: upper left, upper right, lower left, lower right.
QByteArray picture(std::initializer_list<QRgb> pixels)
{
    QImage image(2, 2, QImage::Format_RGB32);
    for (int i = 0; i < 4; ++i)
        image.setPixel(i % 2, i / 2, pixels.begin()[i]);
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return "{\"uri\":" + dataUri(buffer.data()) + '}';
}

// A square of one metre around the origin that faces +Z, with all kinds of pictures, and a green triangle right of it.
QByteArray picturesGltf()
{
    const float corners[] = {-0.5f, -0.5f, 0, 0.5f, -0.5f, 0, 0.5f, 0.5f, 0,    -0.5f, 0.5f,
                             0,     0.6f,  0, 0,    1,     0, 0,    1,    0.5f, 0};
    const float places[] = {0, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0}; // from the top
    const quint16 indices[] = {0, 1, 2, 0, 2, 3, 4, 5, 6};
    const auto view = [](const void* data, int size)
    {
        return "{\"byteLength\":" + QByteArray::number(size) +
               ",\"uri\":" + dataUri(QByteArray(static_cast<const char*>(data), size)) + '}';
    };
    return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],
"meshes":[{"primitives":[{"attributes":{"POSITION":0,"TEXCOORD_0":1},"indices":2,"material":0},
{"attributes":{"POSITION":0,"TEXCOORD_0":1},"indices":3,"material":1}]}],
"materials":[{"pbrMetallicRoughness":{"baseColorTexture":{"index":0},"metallicRoughnessTexture":{"index":1}},
"emissiveTexture":{"index":2},"emissiveFactor":[1,0,1],"normalTexture":{"index":3}},
{"pbrMetallicRoughness":{"baseColorFactor":[0,1,0,1]}}],
"textures":[{"source":0},{"source":1},{"source":2},{"source":3}],"images":[)" +
           picture({0xff0000, 0x808080, 0x0000ff, 0}) + ',' + picture({0x00ff00, 0x00ffff, 0x00ff00, 0x00ffff}) + ',' +
           picture({0, 0, 0, 0xffffff}) + ',' + picture({0x80ff80, 0xff8080, 0x8080ff, 0x8080ff}) +
           R"(],"bufferViews":[{"buffer":0,"byteLength":84},{"buffer":1,"byteLength":56},{"buffer":2,"byteLength":18}],
"accessors":[{"bufferView":0,"componentType":5126,"count":7,"type":"VEC3","min":[-0.5,-0.5,0],"max":[1,0.5,0]},
{"bufferView":1,"componentType":5126,"count":7,"type":"VEC2"},
{"bufferView":2,"componentType":5123,"count":6,"type":"SCALAR"},
{"bufferView":2,"byteOffset":12,"componentType":5123,"count":3,"type":"SCALAR"}],"buffers":[)" +
           view(corners, sizeof corners) + ',' + view(places, sizeof places) + ',' + view(indices, sizeof indices) +
           "]}";
}
} // namespace

class tst_SceneEngine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qRegisterMetaType<Qt::KeyboardModifiers>("Qt::KeyboardModifiers"); }
    void init()
    {
        m_widget = std::make_unique<QRenderWidget>();
        m_widget->resize(800, 600);
        m_view = std::make_unique<SceneView>(&m_manager, m_widget.get(), nullptr);
        m_scene = Scene();
        m_scene.objects = {object("flat", {0.5f, 0.5f, 0.0f}), object("large", {}),
                           object("flat", {-1.0f, 0.2f, 0.0f})};
        m_scene.objects[2].visible = false;
        m_meshes = {{QStringLiteral("flat"), triangle({-0.2f, 0, 0}, {0.2f, 0, 0}, {0, 0.3f, 0})},
                    {QStringLiteral("large"), triangle({-50, -50, -2}, {50, -50, -2}, {0, 100, -2})}};
        m_view->setMeshes(m_meshes);
        m_view->setScene(m_scene);
        m_widget->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_widget.get()));
    }

    void cleanup()
    {
        QVERIFY2(QGuiApplication::platformName() == QLatin1String("offscreen") ||
                     m_manager.errorText(m_widget->GetHWND()).isEmpty(),
                 qPrintable(m_manager.errorText(m_widget->GetHWND())));
        m_view.reset();
        m_widget.reset();
    }

    void arrowMovesTheSelectionAlongItsAxis_data()
    {
        const Axes row;
        row("x", 0, 0.0);
        row("y", 1, 0.0);
        row("z", 2, 0.0);
        row("x, turned", 0, 40.0);
    }

    void arrowMovesTheSelectionAlongItsAxis()
    {
        const auto [axis, turntable] = Axes::current();
        m_view->setTurntableAngle(turntable);
        m_view->setSelection({0, 7});
        ShownScene shown;
        shown.scene = m_scene;
        shown.scene.camera = camera();
        shown.turntable = turntable;
        const QVector3D middle = shown.turntableMatrix().map(QVector3D(0.5f, 0.65f, 0.0f));
        QVector3D along;
        along[axis] = 1.0f;
        const QVector3D inWorld = shown.turntableMatrix().mapVector(along);
        const auto pointAt = [&](float metres) { return place(middle + inWorld * metres); };

        const Camera before = camera();
        QSignalSpy started(&controller(), &CameraController::moveStarted);
        QSignalSpy moved(&controller(), &CameraController::moved);
        QSignalSpy finished(&controller(), &CameraController::moveFinished);
        QSignalSpy clicked(&controller(), &CameraController::clicked);
        press(pointAt(0.4f));
        dragTo(pointAt(0.9f));
        dragTo(pointAt(1.4f));
        QCOMPARE(finished.count(), 0);
        release(pointAt(1.4f));
        QCOMPARE(started.count(), 1);
        QCOMPARE(moved.count(), 2);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(clicked.count(), 0);
        // The pointer is exact to a pixel, of nearly a centimetre here.
        const auto delta = moved.last()[0].value<QVector3D>();
        QVERIFY2((delta - along).length() < 0.04f, qPrintable(QString::number(delta[axis])));
        QVERIFY(camera() == before);

        // Beside the arrows it orbits, and without a selection they are not there.
        drag(Corner, Corner + QPoint(60, 0));
        QCOMPARE(started.count(), 1);
        QVERIFY(camera() != before);
        controller().setCamera(before);
        m_view->setSelection({});
        drag(pointAt(0.4f), pointAt(1.4f));
        QCOMPARE(started.count(), 1);
    }

    void escapeEndsAMoveWhereItBegan()
    {
        m_view->setSelection({0});
        QSignalSpy moved(&controller(), &CameraController::moved);
        QSignalSpy finished(&controller(), &CameraController::moveFinished);
        QSignalSpy changed(&controller(), &CameraController::cameraChanged);
        press(place({0.9f, 0.65f, 0.0f}));
        dragTo(place({1.9f, 0.65f, 0.0f}));
        constexpr unsigned int escape = 0xff1b; // as on X11
        controller().KeyboardInput(escape, true, 0);
        QCOMPARE(moved.last()[0].value<QVector3D>(), QVector3D());
        QCOMPARE(finished.count(), 1);
        dragTo(place({1.4f, 0.65f, 0.0f}));
        release(place({1.4f, 0.65f, 0.0f}));
        QCOMPARE(moved.count(), 2);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(changed.count(), 0);
    }

    void clicksAndBoxesLeaveTheCamera()
    {
        QSignalSpy changed(&controller(), &CameraController::cameraChanged);
        QSignalSpy clicked(&controller(), &CameraController::clicked);
        QSignalSpy boxed(&controller(), &CameraController::boxSelected);
        for (const auto modifier : {Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier})
        {
            press(Corner, modifier);
            release(Corner, modifier);
            QCOMPARE(clicked.count(), 1);
            QCOMPARE(clicked[0][0].toPoint(), Corner);
            QCOMPARE(clicked.takeFirst()[1].value<Qt::KeyboardModifiers>(), Qt::KeyboardModifiers(modifier));
        }
        // Drawn to the top left.
        press({300, 200}, Qt::ShiftModifier);
        dragTo({100, 120});
        QCOMPARE(controller().selectionBox(), QRect(QPoint(100, 120), QPoint(300, 200)));
        release({100, 120}, Qt::ShiftModifier);
        QCOMPARE(boxed.count(), 1);
        QCOMPARE(boxed[0][0].toRect(), QRect(QPoint(100, 120), QPoint(300, 200)));
        QVERIFY(controller().selectionBox().isEmpty());
        QCOMPARE(clicked.count(), 0);
        QCOMPARE(changed.count(), 0);
    }

    void boxFindsWhatItTouches()
    {
        const QRect small(place({0.5f, 0.6f, 0.0f}), QSize(2, 2));
        // Within the large triangle, whose corners are all outside of the view, some of them behind the camera's sides.
        QCOMPARE(m_view->objectsIn(small), (QVector<int>{0, 1}));
        QCOMPARE(m_view->objectsIn(QRect(place({0.5f, 1.0f, 0.0f}), QSize(2, 2))), (QVector<int>{1}));
        QCOMPARE(m_view->objectsIn(QRect(place({-1.0f, 0.3f, 0.0f}), QSize(2, 2))), (QVector<int>{1}));
        QCOMPARE(m_view->objectAt(small.topLeft()), 0);
        m_scene.objects[1].position.setX(300);
        m_scene.objects[2].visible = true;
        m_view->setScene(m_scene);
        QCOMPARE(m_view->objectsIn(m_widget->rect()), (QVector<int>{0, 2}));
        QCOMPARE(m_view->objectsIn(QRect(Corner, QSize(20, 20))), QVector<int>());
        QCOMPARE(m_view->objectsIn(QRect()), QVector<int>());
        // Behind the camera nothing is in view.
        m_scene.objects[0].position = eyePosition(camera()) * 2.0f - camera().target;
        m_view->setScene(m_scene);
        QCOMPARE(m_view->objectsIn(m_widget->rect()), (QVector<int>{2}));
    }

    void frameFillsTheView_data()
    {
        const Frames row;
        row("wide view", {900, 300}, {1, 1, 1});
        row("high view", {300, 600}, {4, 1, 1});
        row("tiny", {500, 500}, {0.05f, 0.05f, 0.05f});
    }

    void frameFillsTheView()
    {
        const auto [size, scale] = Frames::current();
        m_scene.objects[0].scale = scale;
        m_scene.objects[0].position = QVector3D(-7, 3, 20);
        m_widget->resize(size);
        QTRY_COMPARE(m_widget->size(), size);
        m_view->setScene(m_scene);
        m_view->setSelection({0});
        constexpr unsigned int f = 0x66; // as on X11
        controller().KeyboardInput(f, true, 0);
        double widest = 0.0;
        ShownScene shown;
        shown.scene = m_scene;
        const QVector3D local[] = {{-0.2f, 0, 0}, {0.2f, 0, 0}, {0, 0.3f, 0}};
        for (const QVector3D& corner : local)
        {
            const QPointF at = positionOf(shown.matrix(m_scene.objects[0]).map(corner), camera(), size);
            widest =
                qMax(widest, qMax(qAbs(2.0 * at.x() / size.width() - 1.0), qAbs(2.0 * at.y() / size.height() - 1.0)));
        }
        QVERIFY2(widest > 0.7 && widest < 0.95, qPrintable(QString::number(widest)));
        QVERIFY(!m_view->frame({2, -1, 99}));
    }

    void spotLightEndsAtItsCone()
    {
        if (QGuiApplication::platformName() == QLatin1String("offscreen"))
            QSKIP("nothing is drawn");
        m_scene.objects.clear();
        m_scene.view.grid = false;
        m_scene.light.elevation = 90.0;
        m_scene.light.distance = 2.0;
        m_scene.light.coneAngle = 53.13; // 1 m around the origin
        m_scene.light.coneSoftness = 0.0;
        const auto brightness = [this](const QImage& frame, float x) {
            return qGray(frame.pixel(place({x, 0.0f, 0.0f})));
        };
        const QImage directional = drawn();
        m_scene.light.kind = LightKind::Spot;
        const QImage spot = drawn();
        QVERIFY(qAbs(brightness(directional, 0.95f) - brightness(directional, 1.05f)) <= 2);
        QVERIFY(brightness(spot, 0.95f) > 1.5 * brightness(spot, 1.05f));
        QVERIFY(brightness(spot, -0.95f) > 1.5 * brightness(spot, -1.05f));
    }

    void materialsOfFilesAreDrawn()
    {
        if (QGuiApplication::platformName() == QLatin1String("offscreen"))
            QSKIP("nothing is drawn");
        const QTemporaryDir directory;
        QFile file(directory.filePath(QStringLiteral("a.gltf")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(picturesGltf()) > 0 && file.flush());
        MeshLoader loader;
        QSignalSpy loaded(&loader, &MeshLoader::loaded);
        loader.load(file.fileName());
        QTRY_COMPARE_WITH_TIMEOUT(loaded.count(), 1, 30000);
        const auto mesh = loaded[0][0].value<MeshPointer>();
        QCOMPARE(mesh->mainMaterial(), 0);
        m_view->setMeshes({{QStringLiteral("a"), mesh}});
        m_scene.objects = {object("a", {0, 0.6f, 0})};
        m_scene.view.textureFilter = TextureFilter::Nearest;
        Material& material = m_scene.objects[0].material;
        material = mesh->materials[0].material;
        const auto draw = [this](ShadingMode shading)
        {
            m_scene.view.shading = shading;
            return drawn();
        };
        const auto at = [this](const QImage& frame, float x, float y) {
            return frame.pixelColor(place({x, 0.6f + y, 0}));
        };
        const auto isAbout = [](const QColor& found, const QColor& expected)
        {
            return qAbs(found.red() - expected.red()) < 20 && qAbs(found.green() - expected.green()) < 20 &&
                   qAbs(found.blue() - expected.blue()) < 20;
        };
        const int full = at(draw(ShadingMode::Flat), 0.9f, 0.2f).green();
        const QImage flat = draw(ShadingMode::Flat);
        QVERIFY(full > 200);
        QVERIFY(isAbout(at(flat, -0.25f, 0.25f), QColor(full, 0, 0)));
        QVERIFY(isAbout(at(flat, 0.25f, 0.25f), QColor(128, 128, 128)));
        QVERIFY(isAbout(at(flat, -0.25f, -0.25f), QColor(0, 0, full)));
        QVERIFY(isAbout(at(flat, 0.25f, -0.25f), QColor(full, 0, full)));
        const QImage normals = draw(ShadingMode::Normals);
        QVERIFY(isAbout(at(normals, -0.25f, 0.25f), QColor(128, 255, 128)));
        QVERIFY(isAbout(at(normals, 0.25f, 0.25f), QColor(255, 128, 128)));
        QVERIFY(isAbout(at(normals, 0.25f, -0.25f), QColor(128, 128, 255)));

        // The object's own material is that of most triangles, and goes with its pictures: on the left nothing is
        // metal.
        const QImage metal = draw(ShadingMode::Lit);
        material.metallic = 0.0;
        const QImage plastic = draw(ShadingMode::Lit);
        QCOMPARE(at(plastic, -0.25f, 0.25f), at(metal, -0.25f, 0.25f));
        QVERIFY(at(plastic, 0.25f, 0.25f) != at(metal, 0.25f, 0.25f));
        QCOMPARE(at(plastic, 0.9f, 0.2f), at(metal, 0.9f, 0.2f));
        material.baseColour = Qt::black;
        QVERIFY(isAbout(at(draw(ShadingMode::Flat), -0.25f, 0.25f), Qt::black));
        QVERIFY(isAbout(at(draw(ShadingMode::Flat), 0.9f, 0.2f), QColor(0, full, 0)));
    }

    // Another view is drawn between the slices, and what changes meanwhile is in the frame that comes.
    void slicesMakeTheSameFrame()
    {
        if (QGuiApplication::platformName() == QLatin1String("offscreen"))
            QSKIP("nothing is drawn");
        QSurfaceFormat format;
        format.setProfile(QSurfaceFormat::CoreProfile);
        format.setVersion(3, 3);
        QOpenGLContext context;
        context.setFormat(format);
        QOffscreenSurface surface;
        surface.setFormat(format);
        surface.create();
        QVERIFY(context.create() && context.makeCurrent(&surface));
        QString error;
        const std::unique_ptr<GpuResources> gpu = GpuResources::create(&error);
        QVERIFY2(gpu, qPrintable(error));
        const QSize size(400, 300);
        QOpenGLFramebufferObject target(size);
        SceneRenderer sliced;
        SceneRenderer whole;
        for (SceneRenderer* renderer : {&sliced, &whole})
        {
            renderer->setMeshes(m_meshes);
            renderer->setSelection({0});
            renderer->setGizmo(MoveGizmo(), -1);
        }
        const auto slice = [&] { return sliced.draw(*gpu, size, target.handle(), false, 0); };
        for (const bool changes : {false, true})
        {
            m_scene.objects[0].position.setX(0.0f);
            sliced.setScene(m_scene);
            int slices = 1;
            for (; slice() == SceneRenderer::Drawn::Partly; ++slices)
            {
                if (changes && slices < 4)
                {
                    m_scene.objects[0].position.setX(0.2f * float(slices));
                    sliced.setScene(m_scene);
                }
                whole.setScene(m_scene);
                QCOMPARE(whole.draw(*gpu, size, target.handle()), SceneRenderer::Drawn::Wholly);
            }
            QVERIFY(slices > 5);
            const QImage found = target.toImage();
            QCOMPARE(whole.draw(*gpu, size, target.handle()), SceneRenderer::Drawn::Wholly);
            QCOMPARE(found, target.toImage());
        }
        sliced.releaseGraphics(*gpu);
        whole.releaseGraphics(*gpu);
    }

private:
    CameraController& controller() { return m_view->cameraController(); }
    const Camera& camera() { return controller().camera(); }
    QPoint place(const QVector3D& point) { return positionOf(point, camera(), m_widget->size()).toPoint(); }
    void drag(const QPoint& from, const QPoint& to)
    {
        press(from);
        dragTo(to);
        release(to);
    }
    void press(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mousePress(m_widget.get(), Qt::LeftButton, modifiers, at);
    }
    QImage drawn()
    {
        m_view->setScene(m_scene);
        return m_manager.grabFrame(HWND(m_widget->winId()));
    }
    void dragTo(const QPoint& to)
    {
        QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_widget.get(), &move);
    }
    void release(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseRelease(m_widget.get(), Qt::LeftButton, modifiers, at);
    }

    SurfaceManager m_manager;
    std::unique_ptr<QRenderWidget> m_widget;
    std::unique_ptr<SceneView> m_view;
    Scene m_scene;
    QHash<QString, MeshPointer> m_meshes;
};

QTEST_MAIN(tst_SceneEngine)
#include "tst_sceneengine.moc"
