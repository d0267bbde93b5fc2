#include <examples/SceneEditor/document/MeshLoader.h>

#include <tests/testsupport.h>

#include <algorithm>
#include <memory>

using namespace sceneeditor;

namespace
{
// A unit square in the plane z = 0 that faces +Z.
const QByteArray squareObj = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3 4\n";

QByteArray squarePly()
{
    return "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\nproperty float z\n"
           "element face 1\nproperty list uchar int vertex_indices\nend_header\n"
           "0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n";
}

QByteArray binaryPly(const QByteArray& countType, const QByteArray& count)
{
    const float positions[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    const qint32 indices[] = {0, 1, 2, 3};
    QByteArray data = squarePly().replace("ascii", "binary_little_endian").replace("uchar", countType);
    data.truncate(data.indexOf("0 0 0"));
    data.append(reinterpret_cast<const char*>(positions), sizeof positions);
    return data.append(count).append(reinterpret_cast<const char*>(indices), sizeof indices);
}

QByteArray squareStl()
{
    return "solid s\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\nendloop\nendfacet\n"
           "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 1 0\nvertex 0 1 0\nendloop\nendfacet\nendsolid s\n";
}

// The square lies in a node that is moved along X.
QByteArray squareGltf()
{
    QByteArray binary;
    const float positions[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    const quint16 indices[] = {0, 1, 2, 0, 2, 3};
    binary.append(reinterpret_cast<const char*>(positions), sizeof positions);
    binary.append(reinterpret_cast<const char*>(indices), sizeof indices);
    return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],
"nodes":[{"mesh":0,"translation":[-2,0,0]}],
"meshes":[{"primitives":[{"attributes":{"POSITION":0},"indices":1}]}],
"buffers":[{"byteLength":60,"uri":"data:application/octet-stream;base64,)" +
           binary.toBase64() + R"("}],
"bufferViews":[{"buffer":0,"byteOffset":0,"byteLength":48},{"buffer":0,"byteOffset":48,"byteLength":12}],
"accessors":[{"bufferView":0,"componentType":5126,"count":4,"type":"VEC3","min":[0,0,0],"max":[1,1,0]},
{"bufferView":1,"componentType":5123,"count":6,"type":"SCALAR"}]})";
}

// Of this process, in bytes; 0 where the system does not tell.
qint64 peakMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const int at = text.indexOf("VmHWM:");
    return at < 0 ? 0 : text.mid(at + 6, text.indexOf(" kB", at) - at - 6).trimmed().toLongLong() * 1024;
}

// Large enough that reading it takes a while.
QByteArray largeObj()
{
    QByteArray data;
    constexpr int side = 300;
    for (int i = 0; i < side * side; ++i)
        data += "v " + QByteArray::number(i % side) + ' ' + QByteArray::number(i / side) + " 0\n";
    for (int y = 0; y + 1 < side; ++y)
    {
        for (int x = 0; x + 1 < side; ++x)
        {
            const int a = y * side + x + 1;
            data += "f " + QByteArray::number(a) + ' ' + QByteArray::number(a + 1) + ' ' +
                    QByteArray::number(a + side + 1) + ' ' + QByteArray::number(a + side) + '\n';
        }
    }
    return data;
}

using Refusals = Table<QByteArray, QString>; // contents of a file with the row's name, part of the message
} // namespace

class tst_MeshLoader : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_directory.isValid());
        m_large = file(QStringLiteral("large.obj"), largeObj());
    }

    void meshesLoad_data()
    {
        QTest::addColumn<QByteArray>("data"); // in a file with the row's name
        QTest::newRow("a.obj") << squareObj;
        QTest::newRow("\xc3\xa4.OBJ") << squareObj;
        QTest::newRow("a.ply") << squarePly();
        QTest::newRow("binary.ply") << binaryPly("uchar", "\4");
        QTest::newRow("a.stl") << squareStl();
        QTest::newRow("moved.gltf") << squareGltf();
    }

    void meshesLoad()
    {
        QFETCH(QByteArray, data);
        const QString name = QTest::currentDataTag();
        const QVector3D minimum(name == "moved.gltf" ? -2 : 0, 0, 0);
        QString error;
        const MeshPointer mesh = loadMesh(file(name, data), &error);
        QVERIFY2(mesh, qPrintable(error));
        QCOMPARE(mesh->triangleCount(), 2);
        QCOMPARE(mesh->vertices.size(), size_t(4)); // shared by the triangles, also where the file repeats them
        QCOMPARE(mesh->minimum, minimum);
        QCOMPARE(mesh->maximum, minimum + QVector3D(1, 1, 0));
        for (const MeshData::Vertex& vertex : mesh->vertices)
            QVERIFY((vertex.normal - QVector3D(0, 0, 1)).length() < 1e-5f);
    }

    void sharpEdgesStaySharp()
    {
        // Two squares that meet at a right angle have no vertices in common; at a flat one they share two.
        const auto bent = [this](const QByteArray& far)
        {
            return loadMesh(file(QStringLiteral("bent.obj"),
                                 "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n" + far + "f 1 2 3 4\nf 4 3 5 6\n"),
                            nullptr);
        };
        const MeshPointer sharp = bent("v 1 1 -1\nv 0 1 -1\n");
        const MeshPointer flat = bent("v 1 2 -0.1\nv 0 2 -0.1\n");
        QVERIFY(sharp && flat);
        QCOMPARE(sharp->vertices.size(), size_t(8));
        QCOMPARE(flat->vertices.size(), size_t(6));
    }

    void badMeshesAreRefused_data()
    {
        Refusals::addColumns();
        const auto row = [](const char* fileName, const QByteArray& data, const char* expectation)
        { QTest::newRow(fileName) << data << QString(expectation); };
        row("unknown kind.txt", "v 0 0 0\n", "*.obj, *.ply");
        row("empty.obj", "", "expected");
        row("prose.ply", "Dear reader, this is a letter.\n", "expected PLY");
        row("binary rubbish.glb", QByteArray(4096, '\x9c'), "expected GLB");
        row("broken gltf.gltf", "{ \"asset\": ", "expected GLTF");
        row("points only.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\n", "no faces");
        row("lines only.obj", "v 0 0 0\nv 1 0 0\nl 1 2\n", "no faces");
        row("index beyond the end.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 9\n", "expected");
        row("ply index beyond the end.ply", squarePly().replace("4 0 1 2 3", "4 0 1 2 77"), "expected");
        row("not a number.obj", "v 0 0 0\nv 1 0 0\nv 1 nan 0\nf 1 2 3\n", "finite");
        row("infinite.ply", squarePly().replace("1 1 0", "1 inf 0"), "finite");
        // What would take gigabytes, or the program down.
        row("ply with a huge list.ply", squarePly().replace("uchar", "uint").replace("4 0 1", "400000000 0 1"),
            "list of 400000000");
        row("binary ply with a huge list.ply", binaryPly("uint", QByteArray("\xff\xff\xff\x7f", 4)),
            "list of 2147483647");
        row("binary ply with many vertices.ply", binaryPly("uchar", "\4").replace("vertex 4", "vertex 400000000"),
            "400000000 entries of \"vertex\"");
        row("ply with many faces.ply", squarePly().replace("face 1", "face 400000000"), "400000000 entries");
        row("ply with many of something else.ply",
            squarePly().replace("end_header", "element fog 400000000\nproperty uchar a\nend_header"), "\"fog\"");
        row("obj of many groups.obj", squareObj + QByteArray("g a\n").repeated(60000), "parts");
        row("stl of many solids.stl", squareStl() + QByteArray("solid\nendsolid\n").repeated(60000), "parts");
        row("gltf without data.gltf",
            squareGltf().replace("\"bufferView\":0,\"componentType\":5126,\"count\":4",
                                 "\"sparse\":{},\"componentType\":5126,\"count\":400000000"),
            "400000000 vertices");
        row("gltf, two members with one name.gltf",
            squareGltf().replace("\"accessors\":", "\"accessors\":[],\"accessors\":"), "one name");
        row("deep gltf.gltf", QByteArray("[").repeated(2000000), "expected GLTF");
        row("glb with a huge chunk.glb", QByteArray("glTF\2\0\0\0\x40\0\0\0\xf0\xff\xff\xffJSON", 20) + "{}",
            "expected GLB");
        // Each node has the next one twice.
        QByteArray nodes = "\"nodes\":[";
        for (int i = 1; i <= 40; ++i)
            nodes += "{\"children\":[" + QByteArray::number(i) + ',' + QByteArray::number(i) + "]},";
        row("gltf that grows.gltf", squareGltf().replace("\"nodes\":[{\"mesh\"", nodes + "{\"mesh\""), "parts");
    }

    void badMeshesAreRefused()
    {
        const auto [data, expectation] = Refusals::row();
        const QString fileName = file(QTest::currentDataTag(), data);
        QString error;
        const qint64 before = peakMemory();
        QVERIFY(!loadMesh(fileName, &error));
        QVERIFY(peakMemory() - before < (qint64(256) << 20));
        QVERIFY2(error.startsWith(QDir::toNativeSeparators(fileName) + QStringLiteral(": ")), qPrintable(error));
        QVERIFY2(error.contains(expectation), qPrintable(error));
    }

    void progressRisesAndStops()
    {
        QVector<double> steps;
        QVERIFY(loadMesh(m_large, nullptr,
                         [&](double fraction)
                         {
                             steps << fraction;
                             return true;
                         }));
        QVERIFY(steps.size() > 5);
        QVERIFY(std::is_sorted(steps.begin(), steps.end()));
        QCOMPARE(steps.last(), 1.0);

        // Stopped wherever it is asked to, without an error and without a further question.
        for (const double limit : {0.0, 0.3, 0.75, 1.0})
        {
            QString error = QStringLiteral("untouched");
            int after = 0;
            bool stopped = false;
            const MeshPointer mesh = loadMesh(m_large, &error,
                                              [&](double fraction)
                                              {
                                                  after += stopped ? 1 : 0;
                                                  stopped = stopped || fraction >= limit;
                                                  return !stopped;
                                              });
            QVERIFY(!mesh);
            QCOMPARE(error, QString());
            QCOMPARE(after, 0);
        }
    }

    void loaderDeliversOnItsThread()
    {
        MeshLoader loader;
        QSignalSpy loaded(&loader, &MeshLoader::loaded);
        QSignalSpy failed(&loader, &MeshLoader::failed);
        QVector<double> steps;
        bool onThread = true;
        connect(
            &loader, &MeshLoader::progress, &loader,
            [&](double fraction)
            {
                onThread = onThread && QThread::currentThread() == loader.thread();
                steps << fraction;
            },
            Qt::DirectConnection);
        loader.load(m_large);
        QVERIFY(loader.isLoading());
        QCOMPARE(loaded.size(), 0);
        QTRY_COMPARE(loaded.size(), 1);
        QVERIFY(!loader.isLoading());
        QVERIFY(onThread);
        QVERIFY(!steps.isEmpty() && std::is_sorted(steps.begin(), steps.end()));
        QCOMPARE(loaded.first().first().value<MeshPointer>()->triangleCount(), 2 * 299 * 299);

        const QString missing = m_directory.filePath(QStringLiteral("missing.obj"));
        loader.load(missing);
        QTRY_COMPARE(failed.size(), 1);
        QVERIFY(failed.first().first().toString().contains(QStringLiteral("missing.obj")));
        loader.load(m_directory.path());
        QTRY_COMPARE(failed.size(), 2);
        QVERIFY(failed.at(1).first().toString().contains(QStringLiteral("directory")));
        QCOMPARE(loaded.size(), 1);
    }

    // A load may be cancelled, replaced by the next one, or go away with its loader.
    void endedLoadsDeliverNothingElse()
    {
        auto loader = std::make_unique<MeshLoader>();
        QSignalSpy loaded(loader.get(), &MeshLoader::loaded);
        QSignalSpy failed(loader.get(), &MeshLoader::failed);
        QSignalSpy cancelled(loader.get(), &MeshLoader::cancelled);
        const auto finish = []
        {
            QThreadPool::globalInstance()->waitForDone();
            QCoreApplication::processEvents();
        };
        loader->load(m_large);
        loader->cancel();
        loader->cancel();
        QVERIFY(!loader->isLoading());
        QCOMPARE(cancelled.size(), 0);
        QTRY_COMPARE(cancelled.size(), 1);
        finish();
        QCOMPARE(loaded.size() + failed.size(), 0);
        loader->load(m_large);
        loader->load(file(QStringLiteral("small.obj"), squareObj));
        QTRY_COMPARE(loaded.size(), 1);
        finish();
        QCOMPARE(cancelled.size(), 2);
        QCOMPARE(loaded.first().first().value<MeshPointer>()->triangleCount(), 2);
        loader->load(m_large);
        loader.reset();
        finish();
        QCOMPARE(loaded.size(), 1);
        QCOMPARE(cancelled.size() + failed.size(), 2);
    }

private:
    QString file(const QString& name, const QByteArray& data)
    {
        QFile out(m_directory.filePath(name));
        if (!out.open(QIODevice::WriteOnly) || out.write(data) != data.size())
            qFatal("cannot write %s", qPrintable(out.fileName()));
        return out.fileName();
    }

    QTemporaryDir m_directory;
    QString m_large;
};

QTEST_GUILESS_MAIN(tst_MeshLoader)
#include "tst_meshloader.moc"
