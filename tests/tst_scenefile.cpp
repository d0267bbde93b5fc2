#include <examples/SceneEditor/document/SceneFile.h>

#include <tests/testsupport.h>

#include <cmath>
#include <csignal>
#include <limits>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

using namespace sceneeditor;

namespace
{
// Every member differs from its default, with numbers that have no short decimal form.
Scene unusualScene()
{
    Scene scene;
    scene.name = QString::fromUtf8("Sz\xc3\xa9k \"1\"\n");
    scene.camera = {QVector3D(0.1f, -2.0f / 3.0f, 1.0e6f), 1.0 / 3.0, -360.0, 89.0, 5.0000000000000009};
    scene.light = {LightKind::Point, 0.1, -90.0, 0.1, QColor::fromRgba64(1, 32768, 65534), 0.01, 4.0, false, 4096};
    scene.view.shading = ShadingMode::Wireframe;
    scene.view.textureFilter = TextureFilter::Nearest;
    scene.view.environmentBackground = true;
    scene.view.backgroundColour = QColor(1, 2, 3);
    scene.view.exposure = 1.0 / 7.0;
    scene.view.grid = false;
    scene.view.gridCellSize = 0.001;
    scene.view.gridExtent = 1024;
    scene.view.highlightSelection = false;
    scene.animation = {-360.0, true};
    Object object;
    object.name = QStringLiteral("Twin");
    object.position = QVector3D(1.1f, 2.2f, 3.3f);
    object.rotation = QVector3D(-360.0f, 0.1f, 360.0f);
    object.scale = QVector3D(0.001f, 1000.0f, 0.7f);
    object.visible = false;
    object.material = {QColor(255, 128, 0), 0.0, 1.0, QColor(9, 8, 7), 99.9};
    scene.objects << object << object;
    return scene;
}

void write(const QString& fileName, const QByteArray& data)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(data), qint64(data.size()));
}

QByteArray sceneText(const QByteArray& members)
{
    return "{ \"format\": \"orvek-scene\", \"version\": 1, " + members + " }";
}

QByteArray contentsOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

using Refusals = Table<QByteArray, QString, QString>; // contents, place and part of the message
} // namespace

class tst_SceneFile : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_directory.reset(new QTemporaryDir);
        QVERIFY(m_directory->isValid());
        m_file = m_directory->filePath(QStringLiteral("scene.json"));
    }

    void roundTripKeepsEverything()
    {
        const Scene scene = unusualScene();
        QString error;
        QVERIFY2(writeScene(scene, m_file, &error), qPrintable(error));
        QStringList warnings;
        const auto read = readScene(m_file, &error, &warnings);
        QVERIFY2(read, qPrintable(error));
        QCOMPARE(warnings, QStringList());
        QVERIFY(read->camera == scene.camera);
        QVERIFY(read->light == scene.light);
        QVERIFY(read->view == scene.view);
        QVERIFY(*read == scene);
        // Coordinates are floats, and a file is read by people and compared by tools.
        const QByteArray text = contentsOf(m_file).simplified().replace(' ', "");
        QVERIFY2(text.contains("[1.1,2.2,3.3]"), text.constData());
    }

    // A scene and its meshes can be moved to another directory together.
    void fileNamesFollowTheScene()
    {
        const QDir home(m_directory->path());
        QVERIFY(home.mkpath(QStringLiteral("a/meshes")));
        QVERIFY(home.mkpath(QStringLiteral("b")));
        Scene scene;
        scene.objects.resize(3);
        scene.objects[0].meshFile = home.filePath(QStringLiteral("a/meshes/x.obj"));
        scene.objects[1].meshFile = home.filePath(QStringLiteral("shared.obj"));
        scene.objects[2].meshFile = home.filePath(QStringLiteral("a/:x.obj")); // no resource
        scene.view.environmentImage = home.filePath(QStringLiteral("a/sky.png"));
        QString error;
        const QString original = home.filePath(QStringLiteral("a/scene.json"));
        const QString copy = home.filePath(QStringLiteral("b/scene.json"));
        QVERIFY2(writeScene(scene, original, &error), qPrintable(error));
        QVERIFY(*readScene(original, &error) == scene);

        QVERIFY(QFile::copy(original, copy));
        const auto moved = readScene(copy, &error);
        QVERIFY2(moved, qPrintable(error));
        QCOMPARE(moved->objects.at(0).meshFile, home.filePath(QStringLiteral("b/meshes/x.obj")));
        QCOMPARE(moved->objects.at(1).meshFile, home.filePath(QStringLiteral("shared.obj")));
        QCOMPARE(moved->view.environmentImage, home.filePath(QStringLiteral("b/sky.png")));
    }

    void membersMayBeLeftOutOrUnknown()
    {
        write(m_file, sceneText("\"objects\": [{}], \"camera\": { \"distance\": 2 }"));
        Scene expected;
        expected.objects.resize(1);
        expected.camera.distance = 2.0;
        QVERIFY(readScene(m_file, nullptr) == expected);

        write(m_file,
              sceneText("\"colour\": 1, \"objects\": [{}, { \"material\": { \"gloss\": 1, \"roughness\": 0.2 } }]"));
        QString error;
        QStringList warnings;
        const auto read = readScene(m_file, &error, &warnings);
        QVERIFY2(read, qPrintable(error));
        QCOMPARE(read->objects.at(1).material.roughness, 0.2);
        QCOMPARE(warnings.size(), 2);
        QVERIFY(warnings.filter(QStringLiteral("objects[1].material.gloss")).size() == 1);
        QVERIFY(warnings.filter(QRegularExpression(QStringLiteral("^colour:"))).size() == 1);

        // A whole file of them does not become a message of its size.
        QByteArray many = "\"" + QByteArray(100000, 'a') + "\": 1";
        for (int i = 0; i < 5000; ++i)
            many += ", \"b" + QByteArray::number(i) + "\": 1";
        write(m_file, sceneText(many));
        QVERIFY(readScene(m_file, &error, &warnings));
        const QString message = warnings.join(QLatin1Char('\n'));
        QVERIFY2(message.size() < 2000 && message.contains(QStringLiteral("4981")), qPrintable(message.left(2000)));
    }

    void badScenesAreRefused_data()
    {
        Refusals::addColumns();
        const auto row = [](const char* name, const QByteArray& data, const char* place, const char* expectation)
        { QTest::newRow(name) << data << QString::fromLatin1(place) << QString::fromLatin1(expectation); };
        row("empty", "", "1:1", "JSON");
        row("syntax", "{\n  \"format\": \"orvek-scene\",\n  \"version\" 1\n}", "3:", "JSON");
        row("cut off", "{ \"format\": \"orvek-sc", "1:", "JSON");
        row("array", "[]", "1:1", "expected an object");
        row("no format", "{ \"version\": 1 }", "format", "\"orvek-scene\"");
        row("other format", "{ \"format\": \"other\", \"version\": 1 }", "format", "\"other\"");
        row("newer version", "{ \"format\": \"orvek-scene\", \"version\": 2 }", "version", "expected 1, found 2");
        row("section", sceneText("\"camera\": 3"), "camera", "expected an object, found 3");
        row("text for number", sceneText("\"camera\": { \"distance\": \"far\" }"), "camera.distance", "found \"far\"");
        row("null for number", sceneText("\"view\": { \"exposure\": null }"), "view.exposure", "from 0.01 to 100");
        row("below range", sceneText("\"light\": { \"intensity\": 0 }"), "light.intensity", "from 0.01 to 100");
        row("above range", sceneText("\"objects\": [{}, { \"material\": { \"roughness\": 1.01 } }]"),
            "objects[1].material.roughness", "from 0 to 1, found 1.01");
        row("infinite", sceneText("\"camera\": { \"azimuth\": 1e999 }"), "1:", "JSON");
        row("number for flag", sceneText("\"animation\": { \"playing\": 1 }"), "animation.playing", "true or false");
        row("no power of two", sceneText("\"light\": { \"shadowMapSize\": 1000 }"), "light.shadowMapSize",
            "power of two from 16 to 4096");
        row("large power of two", sceneText("\"light\": { \"shadowMapSize\": 8192 }"), "light.shadowMapSize", "4096");
        row("fraction for integer", sceneText("\"view\": { \"gridExtent\": 2.5 }"), "view.gridExtent", "power of two");
        row("unknown name", sceneText("\"view\": { \"shading\": \"toon\" }"), "view.shading",
            "\"lit\", \"flat\", \"normals\", \"wireframe\"");
        row("short vector", sceneText("\"camera\": { \"target\": [1, 2] }"), "camera.target", "three numbers");
        row("text in vector", sceneText("\"objects\": [{ \"position\": [0, \"x\", 0] }]"), "objects[0].position[1]",
            "expected a number");
        row("vector component above range", sceneText("\"objects\": [{ \"scale\": [1, 1, 1e9] }]"),
            "objects[0].scale[2]", "from 0.001 to 1000");
        row("colour name", sceneText("\"light\": { \"colour\": \"red\" }"), "light.colour", "a colour such as");
        row("colour digits", sceneText("\"light\": { \"colour\": \"#12345g\" }"), "light.colour", "a colour such as");
        row("long name", sceneText("\"name\": \"" + QByteArray(5000, 'n') + "\""), "name", "at most 4096 characters");
        row("objects no array", sceneText("\"objects\": {}"), "objects", "an array");
        QByteArray many = "\"objects\": [";
        for (int i = 0; i <= maximumObjectCount; ++i)
            many += i == 0 ? "{}" : ",{}";
        row("too many objects", sceneText(many + "]"), "objects", "at most 10000");
        row("missing", QByteArray(), "cannot be read", "");
        row("directory", "directory", "is a directory", "");
        row("too large", QByteArray(int(maximumSceneFileSize) + 1, ' '), "", "at most 16 MiB");
    }

    void badScenesAreRefused()
    {
        const auto [data, place, expectation] = Refusals::row();
        if (data == "directory")
            QVERIFY(QDir().mkdir(m_file));
        else if (!data.isNull())
            write(m_file, data);
        QString error;
        QVERIFY(!readScene(m_file, &error));
        const QString prefix = QDir::toNativeSeparators(m_file) + QStringLiteral(": ") + place;
        QVERIFY2(error.startsWith(prefix), qPrintable(error));
        QVERIFY2(error.contains(expectation), qPrintable(error));
        QVERIFY2(!error.contains(QLatin1Char('\n')), qPrintable(error));
    }

    void badValuesAreNotSaved_data()
    {
        QTest::addColumn<QString>("place");
        QTest::newRow("number") << QStringLiteral("camera.distance");
        QTest::newRow("component") << QStringLiteral("camera.target[1]");
        QTest::newRow("directory") << QString();
    }

    // What could not be read back would be lost; the file that was there stays as it is.
    void badValuesAreNotSaved()
    {
        QFETCH(QString, place);
        Scene scene;
        if (place == QLatin1String("camera.distance"))
            scene.camera.distance = std::numeric_limits<double>::infinity();
        if (place == QLatin1String("camera.target[1]"))
            scene.camera.target.setY(std::numeric_limits<float>::quiet_NaN());
        QString fileName = m_file;
        if (place.isEmpty())
            fileName = m_directory->filePath(QStringLiteral("none/scene.json"));
        else
            write(m_file, "before");
        QString error;
        QVERIFY(!writeScene(scene, fileName, &error));
        QVERIFY2(error.startsWith(QDir::toNativeSeparators(fileName)) && error.contains(place), qPrintable(error));
        QCOMPARE(contentsOf(m_file), QByteArray(place.isEmpty() ? "" : "before"));
    }

    void fullDiskKeepsTheOldFile()
    {
#ifdef Q_OS_UNIX
        write(m_file, "before");
        Scene scene;
        scene.objects.resize(100);
        // No file of this program may grow beyond this, which is reported like a disk that is full.
        rlimit before;
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit low{4096, before.rlim_max};
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &low), 0);
        QString error;
        const bool saved = writeScene(scene, m_file, &error);
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
        QVERIFY(!saved);
        QVERIFY2(error.startsWith(QDir::toNativeSeparators(m_file)), qPrintable(error));
        QCOMPARE(QDir(m_directory->path()).entryList(QDir::Files), QStringList(QStringLiteral("scene.json")));
        QCOMPARE(contentsOf(m_file), QByteArray("before"));
#else
        QSKIP("There is no limit on the size of files here");
#endif
    }

private:
    QScopedPointer<QTemporaryDir> m_directory;
    QString m_file;
};

QTEST_GUILESS_MAIN(tst_SceneFile)
#include "tst_scenefile.moc"
