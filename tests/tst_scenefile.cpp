#include <examples/SceneEditor/document/SceneDescription.h>
#include <examples/SceneEditor/document/SceneFile.h>

#include <tests/testsupport.h>

using namespace sceneeditor;

namespace
{
using BadScenes = Table<QByteArray, const char*, const char*>; // members, place of the error, part of the message

void write(const QString& fileName, const QByteArray& members)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{ \"format\": \"orvek-scene\", \"version\": 1" + members + " }");
}
} // namespace

class tst_SceneFile : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_directory.reset(new QTemporaryDir);
        QVERIFY(m_directory->isValid());
        m_file = m_directory->filePath("scene.json");
    }

    void descriptionsAreSound()
    {
        for (const Type& type : {sceneType(), objectType(), objectPanelType(), scenePanelType()})
        {
            QVERIFY(type);
            QCOMPARE(type->errors(), QStringList());
        }
        // What the panel leaves out on purpose is shown elsewhere; everything else must have a row.
        const QStringList elsewhere{"mesh", "visible", "objects"};
        for (const auto& [type, panelType] :
             {qMakePair(objectType(), objectPanelType()), {sceneType(), scenePanelType()}})
            for (const orvek::host::Property& property : type->properties())
                QVERIFY2(elsewhere.contains(property.name) || panelType->indexOf(property.name) >= 0,
                         qPrintable(property.name));
    }

    void everyMemberIsSavedAndCompared()
    {
        Scene scene;
        scene.name = QString::fromUtf8("Sz\xc3\xa9k \"1\"\n");
        scene.objects.resize(2);
        // Names of files are absolute in memory, changed ones too.
        scene.view.environmentImage = m_directory->filePath("sky");
        for (Object& object : scene.objects)
            object.meshFile = m_directory->filePath("mesh");
        const Scene before = scene;
        int count = 0;
        const QStringList unchanged =
            sceneType()->changeEach(&scene,
                                    [&](const QString& path)
                                    {
                                        ++count;
                                        QVERIFY2(!(scene == before), qPrintable(path));
                                        QVERIFY2(writeScene(scene, m_file, &m_error), qPrintable(m_error));
                                        const auto read = readScene(m_file, &m_error);
                                        QVERIFY2(read && *read == scene, qPrintable(path + QLatin1Char(' ') + m_error));
                                    });
        QCOMPARE(unchanged, QStringList());
        QVERIFY(count > 60);
        QVERIFY(scene == before);
    }

    // A scene and its meshes can be moved to another directory together.
    void fileNamesFollowTheScene()
    {
        const QDir home(m_directory->path());
        QVERIFY(home.mkpath("a/meshes"));
        QVERIFY(home.mkpath("b"));
        Scene scene;
        scene.objects.resize(3);
        scene.objects[0].meshFile = home.filePath("a/meshes/x.obj");
        scene.objects[1].meshFile = home.filePath("shared.obj");
        scene.objects[2].meshFile = home.filePath("a/:x.obj"); // no resource
        scene.view.environmentImage = home.filePath("a/sky.png");
        const QString original = home.filePath("a/scene.json");
        const QString copy = home.filePath("b/scene.json");
        QVERIFY2(writeScene(scene, original, &m_error), qPrintable(m_error));
        QVERIFY(*readScene(original, &m_error) == scene);

        QVERIFY(QFile::copy(original, copy));
        const auto moved = readScene(copy, &m_error);
        QVERIFY2(moved, qPrintable(m_error));
        QCOMPARE(moved->objects[0].meshFile, home.filePath("b/meshes/x.obj"));
        QCOMPARE(moved->objects[1].meshFile, home.filePath("shared.obj"));
        QCOMPARE(moved->view.environmentImage, home.filePath("b/sky.png"));
    }

    void leftOutMembersHaveDefaults()
    {
        write(m_file, ", \"objects\": [{ \"material\": { \"gloss\": 1 } }], \"camera\": { \"distance\": 2 }");
        Scene expected;
        expected.objects.resize(1);
        expected.camera.distance = 2.0;
        QStringList warnings;
        const auto read = readScene(m_file, &m_error, &warnings);
        QVERIFY2(read, qPrintable(m_error));
        QVERIFY(*read == expected);
        QCOMPARE(warnings.size(), 1);
        QVERIFY2(warnings.first().startsWith("objects[0].material.gloss"), qPrintable(warnings.first()));
    }

    void badScenesAreRefused_data()
    {
        const BadScenes row;
        row("newer version", ", \"version\": 2", "version", "expected 1, found 2");
        row("camera at a pole", ", \"camera\": { \"elevation\": 90 }", "camera.elevation", "from -89 to 89");
        QByteArray many = ", \"objects\": [{}";
        for (int i = 0; i < maximumObjectCount; ++i)
            many += ",{}";
        row("too many objects", many + "]", "objects", "10000");
        row("too large", QByteArray(int(maximumSceneFileSize) + 1, ' '), "", "16777216 bytes");
    }

    void badScenesAreRefused()
    {
        const auto [members, place, expectation] = BadScenes::current();
        write(m_file, members);
        QVERIFY(!readScene(m_file, &m_error));
        const QString prefix = QDir::toNativeSeparators(m_file) + ": " + place;
        QVERIFY2(m_error.startsWith(prefix), qPrintable(m_error));
        QVERIFY2(m_error.contains(expectation), qPrintable(m_error));
    }

private:
    QScopedPointer<QTemporaryDir> m_directory;
    QString m_file;
    QString m_error;
};

QTEST_GUILESS_MAIN(tst_SceneFile)
#include "tst_scenefile.moc"
