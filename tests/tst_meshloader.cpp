#include <examples/SceneEditor/document/MeshLoader.h>

#include <tests/testsupport.h>

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/stat.h>
#endif

using namespace sceneeditor;

namespace
{
constexpr int loadTimeout = 60000; // milliseconds, for a busy machine

// A unit square in the plane z = 0 that faces +Z.
const QByteArray squareObj = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3 4\n";

QByteArray squarePly()
{
    return "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\nproperty float z\n"
           "element face 1\nproperty list uchar int vertex_indices\nend_header\n"
           "0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n";
}

template <typename Number>
QByteArray bytes(std::initializer_list<Number> numbers)
{
    return QByteArray(reinterpret_cast<const char*>(numbers.begin()), int(numbers.size() * sizeof(Number)));
}

const QByteArray squareCorners = bytes<float>({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});

QByteArray binaryPly(const QByteArray& countType, const QByteArray& count)
{
    const QByteArray text = squarePly().replace("ascii", "binary_little_endian").replace("uchar", countType);
    return text.left(text.indexOf("0 0 0")) + squareCorners + count + bytes<qint32>({0, 1, 2, 3});
}

QByteArray squareStl()
{
    return "solid s\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\nendloop\nendfacet\n"
           "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 1 0\nvertex 0 1 0\nendloop\nendfacet\nendsolid s\n";
}

QByteArray dataUri(const char* type, const QByteArray& data)
{
    return QByteArray("data:") + type + ";base64," + data.toBase64();
}

QByteArray squareBuffer(std::initializer_list<quint16> indices = {0, 1, 2, 0, 2, 3})
{
    return dataUri("application/octet-stream", squareCorners + bytes<quint16>(indices));
}

// The square lies in a node that is moved along X.
QByteArray squareGltf(const QByteArray& buffer = squareBuffer())
{
    return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],
"nodes":[{"mesh":0,"translation":[-2,0,0]}],
"meshes":[{"primitives":[{"attributes":{"POSITION":0},"indices":1}]}],
"buffers":[{"byteLength":60,"uri":")" +
           buffer + R"("}],
"bufferViews":[{"buffer":0,"byteOffset":0,"byteLength":48},{"buffer":0,"byteOffset":48,"byteLength":12}],
"accessors":[{"bufferView":0,"componentType":5126,"count":4,"type":"VEC3","min":[0,0,0],"max":[1,1,0]},
{"bufferView":1,"componentType":5123,"count":6,"type":"SCALAR"}]})";
}

// The square with a material and a picture; its corners serve as texture coordinates too.
QByteArray materialGltf(const QByteArray& picture)
{
    return squareGltf()
        .replace("\"POSITION\":0}", R"("POSITION":0,"TEXCOORD_0":2},"material":0)")
        .replace("\"SCALAR\"}", R"("SCALAR"},{"bufferView":0,"componentType":5126,"count":4,"type":"VEC2"})")
        .replace("\"buffers\":", R"("materials":[{"name":"Tin","emissiveFactor":[0.5,0,0.25],"pbrMetallicRoughness":
{"baseColorFactor":[1,0.2140411,0,1],"metallicFactor":0.75,"roughnessFactor":0.25,"baseColorTexture":{"index":0}}}],
"textures":[{"source":0}],"images":[{"uri":")" +
                                     picture + "\"}],\"buffers\":");
}

QByteArray redPng()
{
    QImage image(2, 1, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return buffer.data();
}

// Large enough that reading it takes a while.
QByteArray largeObj()
{
    QByteArray data;
    constexpr int side = 300;
    const auto number = [](int value) { return QByteArray::number(value) + ' '; };
    for (int i = 0; i < side * side; ++i)
        data += "v " + number(i % side) + number(i / side) + "0\n";
    for (int a = 1; a <= side * (side - 1); ++a)
        if (a % side != 0)
            data += "f " + number(a) + number(a + 1) + number(a + side + 1) + number(a + side) + '\n';
    return data;
}

using BadMeshes = Table<const char*, QByteArray, const char*>; // name, contents, part of the message
using BrokenReaders = Table<int, const char*>;                 // signal, part of the message

struct Result
{
    MeshPointer mesh;
    QString error;
};

Result read(const QString& fileName, int patience = loadTimeout)
{
    MeshLoader loader;
    QSignalSpy loaded(&loader, &MeshLoader::loaded);
    QSignalSpy failed(&loader, &MeshLoader::failed);
    loader.setPatience(patience);
    loader.load(fileName);
    const auto ended = [&] { return loaded.size() + failed.size() > 0; };
    if (!QTest::qWaitFor(ended, loadTimeout + 10000))
        return {nullptr, QStringLiteral("neither loaded nor failed")};
    return {loaded.value(0).value(0).value<MeshPointer>(), failed.value(0).value(0).toString()};
}

#ifdef Q_OS_LINUX
// The processes that the threads of this one have started.
QVector<pid_t> readers()
{
    QVector<pid_t> readers;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
    {
        QFile file(tasks.filePath(task + QStringLiteral("/children")));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& reader : file.readAll().simplified().split(' '))
            if (!reader.isEmpty())
                readers << reader.toInt();
    }
    return readers;
}

// How many there were. One that has just begun is a copy of this program and left alone.
int signalReaders(int signal)
{
    int count = 0;
    for (const pid_t reader : readers())
        if (QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(reader)).endsWith(QLatin1String("mesh-reader")))
            count += kill(reader, signal) == 0 ? 1 : 0;
    return count;
}
#endif
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
        QTest::newRow("backwards.obj") << QByteArray(squareObj).replace("f 1 2 3 4", "f -4 -3 \\\n-2 -1");
        QTest::newRow("repeated.obj") << QByteArray(
            "v 0 0 0\nv 1 0 0\nv 1 1 0\nv -0 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3\nf 4 5 6\n");
        QTest::newRow("normals.obj") << QByteArray(squareObj).replace("f 1 2 3 4", "vn 0 0 9\nf 1//1 2//1 3//1 4");
        QTest::newRow("a.ply") << squarePly();
        QTest::newRow("binary.ply") << binaryPly("uchar", "\4");
        QTest::newRow("a.stl") << squareStl();
        QTest::newRow("moved.gltf") << squareGltf();
        QTest::newRow("mirrored.gltf")
            << squareGltf(squareBuffer({2, 1, 0, 3, 2, 0})).replace("\"translation\":[-2,0,0]", "\"scale\":[1,1,-1]");
    }

    void meshesLoad()
    {
        QFETCH(QByteArray, data);
        const QString name = QString::fromUtf8(QTest::currentDataTag());
        const QVector3D minimum(name == QLatin1String("moved.gltf") ? -2 : 0, 0, 0);
        const auto [mesh, error] = read(file(name, data));
        QVERIFY2(mesh, qPrintable(error));
        QCOMPARE(mesh->triangleCount(), 2);
        QCOMPARE(mesh->vertices.size(), size_t(4)); // shared by the triangles, also where the file repeats them
        QCOMPARE(mesh->minimum, minimum);
        QCOMPARE(mesh->maximum, minimum + QVector3D(1, 1, 0));
        QVERIFY(mesh->materials.empty());
        for (const MeshData::Vertex& vertex : mesh->vertices)
            QVERIFY((vertex.normal - QVector3D(0, 0, 1)).length() < 1e-5f);
    }

    void sharpEdgesStaySharp()
    {
        // Two squares that meet at a right angle have no vertices in common; at a flat one they share two.
        const auto bent = [this](const QByteArray& far)
        {
            return read(file(QStringLiteral("bent.obj"),
                             "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n" + far + "f 1 2 3 4\nf 4 3 5 6\n"))
                .mesh;
        };
        const MeshPointer sharp = bent("v 1 1 -1\nv 0 1 -1\n");
        const MeshPointer flat = bent("v 1 2 -0.1\nv 0 2 -0.1\n");
        QVERIFY(sharp && flat);
        QCOMPARE(sharp->vertices.size(), size_t(8));
        QCOMPARE(flat->vertices.size(), size_t(6));
    }

    void hollowFacesKeepTheirShape()
    {
        // An arrow's head and a comb, begun at each of their corners.
        for (const QByteArray outline : {"0 0 2 1 0 2 1 1", "0 0 5 0 5 3 4 3 4 1 3 1 3 3 2 3 2 1 1 1 1 3 0 3"})
        {
            const QByteArrayList numbers = outline.split(' ');
            QByteArray vertices;
            for (int i = 0; i < numbers.size(); i += 2)
                vertices += "v " + numbers[i] + ' ' + numbers[i + 1] + " 0\n";
            const int corners = numbers.size() / 2;
            for (int first = 0; first < corners; ++first)
            {
                QByteArray face = "f";
                for (int i = 0; i < corners; ++i)
                    face += ' ' + QByteArray::number((first + i) % corners + 1);
                const MeshPointer mesh = read(file(QStringLiteral("hollow.obj"), vertices + face + '\n')).mesh;
                QVERIFY(mesh);
                float area = 0.0f;
                for (size_t i = 0; i < mesh->indices.size(); i += 3)
                {
                    const auto at = [&](size_t corner) { return mesh->vertices[mesh->indices[i + corner]].position; };
                    const float z = QVector3D::crossProduct(at(1) - at(0), at(2) - at(0)).z();
                    QVERIFY(z > 0.0f);
                    area += z / 2.0f;
                }
                QCOMPARE(area, corners == 4 ? 1.0f : 11.0f);
            }
        }
    }

    void materialsComeAlong()
    {
        const auto [gltf, error] = read(file(QStringLiteral("tin.gltf"), materialGltf(dataUri("image/png", redPng()))));
        QVERIFY2(gltf, qPrintable(error));
        QCOMPARE(gltf->materials.size(), size_t(1));
        const MeshMaterial& tin = gltf->materials.front();
        QCOMPARE(tin.name, QStringLiteral("Tin"));
        QCOMPARE(tin.triangleCount, 2u);
        QCOMPARE(tin.material.baseColour.rgb(), QColor(255, 127, 0).rgb());
        QCOMPARE(tin.material.roughness, 0.25);
        QCOMPARE(tin.material.metallic, 0.75);
        QCOMPARE(tin.material.emission, 0.5);
        QCOMPARE(tin.material.emissionColour.rgb(), QColor(255, 0, 188).rgb());
        QCOMPARE(tin.baseColourImage, 0);
        QCOMPARE(tin.emissionImage, -1);
        QCOMPARE(gltf->images.at(0).size(), QSize(2, 1));
        QCOMPARE(gltf->images.at(0).pixelColor(1, 0), QColor(Qt::red));
        QCOMPARE(gltf->textureCoordinates.size(), gltf->vertices.size());

        // The triangles are sorted by material; unused ones are left out.
        file(QStringLiteral("red.png"), redPng());
        file(QStringLiteral("two.mtl"), "newmtl a\nKd 1 0 0\nPr 0.5\nPm 1\nnewmtl unused\nKd 1 1 1\n"
                                        "newmtl b\nKd 0 0 1\nKe 0 2 0\nmap_Kd red.png\n");
        const MeshPointer obj = read(file(QStringLiteral("two.obj"), "mtllib two.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\n"
                                                                     "vt 0.5 1\nusemtl b\nf 1/1 2/1 3/1\n"
                                                                     "usemtl a\nf 1 3 2\nusemtl none\nf 2 3 1\n"))
                                    .mesh;
        QVERIFY(obj);
        QCOMPARE(obj->materials.size(), size_t(2));
        QCOMPARE(obj->materials[0].material.baseColour, QColor::fromRgbF(1, 0, 0));
        QCOMPARE(obj->materials[0].material.roughness, 0.5);
        QCOMPARE(obj->materials[0].material.metallic, 1.0);
        QCOMPARE(obj->materials[1].material.emission, 2.0);
        QCOMPARE(obj->materials[1].baseColourImage, 0);
        QCOMPARE(obj->textureCoordinates[obj->indices.back()], QVector2D(0.5f, 1.0f));
        QCOMPARE(obj->vertices[obj->indices[4]].position, QVector3D(1, 1, 0));
    }

    void badMeshesAreRefused_data()
    {
        const BadMeshes row;
        row("unknown kind", "bad.txt", "v 0 0 0\n", "*.obj, *.ply");
        row("empty", "empty.obj", "", "expected");
        row("prose", "prose.ply", "Dear reader, this is a letter.\n", "expected PLY");
        row("binary rubbish", "rubbish.glb", QByteArray(4096, '\x9c'), "expected GLB");
        row("broken gltf", "broken.gltf", "{ \"asset\": ", "expected GLTF");
        row("points only", "points.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\n", "no faces");
        row("lines only", "lines.obj", "v 0 0 0\nv 1 0 0\nl 1 2\n", "no faces");
        row("index beyond the end", "index.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 9\n", "expected");
        row("ply index beyond the end", "index.ply", squarePly().replace("4 0 1 2 3", "4 0 1 2 77"), "expected");
        row("infinite", "inf.ply", squarePly().replace("1 1 0", "1 inf 0"), "finite");
        row("too large a number", "huge.obj", "v 0 0 0\nv 1 0 0\nv 1 1e300 0\nf 1 2 3\n", "finite");
        row("too many triangles", "many.obj", "v 0 0 0\n" + QByteArray("f 1 1 1\n").repeated(5000001),
            "expected at most");
        // A few bytes that ask for gigabytes.
        row("ply with a huge list", "list.ply", squarePly().replace("uchar", "uint").replace("4 0 1", "2000000000 0 1"),
            m_memory);
        row("ply with many vertices", "vertices.ply", squarePly().replace("vertex 4", "vertex 400000000"), m_memory);
        row("binary ply with many vertices", "bvertices.ply",
            binaryPly("uchar", "\4").replace("vertex 4", "vertex 400000000"), m_memory);
        row("gltf without data", "sparse.gltf",
            squareGltf().replace("\"bufferView\":0,\"componentType\":5126,\"count\":4",
                                 "\"sparse\":{},\"componentType\":5126,\"count\":400000000"),
            m_memory);
        // Each node has the next one twice.
        QByteArray nodes = "\"nodes\":[";
        for (int i = 1; i <= 40; ++i)
            nodes += "{\"children\":[" + QByteArray::number(i) + ',' + QByteArray::number(i) + "]},";
        row("gltf that grows", "nodes.gltf", squareGltf().replace("\"nodes\":[{\"mesh\"", nodes + "{\"mesh\""),
            m_memory);
        row("deep gltf", "deep.gltf", QByteArray("[").repeated(2000000), "cannot be read");
        row("glb with a huge chunk", "chunk.glb", QByteArray("glTF\2\0\0\0\x40\0\0\0\xf0\xff\xff\xffJSON", 20) + "{}",
            "be read");
    }

    void badMeshesAreRefused()
    {
        const auto [name, data, expectation] = BadMeshes::current();
        const QString fileName = file(name, data);
        const auto [mesh, error] = read(fileName);
        QVERIFY(!mesh);
        QVERIFY2(error.startsWith(QDir::toNativeSeparators(fileName) + QStringLiteral(": ")), qPrintable(error));
        QVERIFY2(error.contains(expectation), qPrintable(error));
    }

#ifdef Q_OS_LINUX
    // A pipe keeps whoever opens it waiting, a device can go on for ever.
    void onlyRegularFilesAreOpened()
    {
        const QString pipe = m_directory.filePath(QStringLiteral("pipe.obj"));
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        const auto link = [this](const QString& target, const char* name)
        {
            const QString path = m_directory.filePath(QLatin1String(name));
            return QFile::link(target, path) ? path : QString();
        };
        for (const QString& path :
             {pipe, link(pipe, "link.obj"), link(QStringLiteral("/dev/zero"), "zero.ply"), m_directory.path()})
        {
            const auto [mesh, error] = read(path);
            QVERIFY(!mesh);
            QVERIFY2(error.contains(QStringLiteral("regular")), qPrintable(error));
        }
        QVERIFY(read(link(file(QStringLiteral("target.obj"), squareObj), "regular.obj")).mesh);

        // What a mesh names is left out, or the mesh is refused where it cannot do without.
        const MeshPointer obj = read(file(QStringLiteral("piped.obj"), "mtllib pipe.obj\n" + squareObj)).mesh;
        QVERIFY(obj && obj->materials.empty());
        const MeshPointer gltf = read(file(QStringLiteral("image.gltf"), materialGltf("pipe.obj"))).mesh;
        QVERIFY(gltf && gltf->images.empty());
        const QString error = read(file(QStringLiteral("buffer.gltf"), squareGltf("pipe.obj"))).error;
        QVERIFY2(error.contains(QStringLiteral("expected GLTF")), qPrintable(error));
    }

    void brokenReadersCostAMessage_data()
    {
        const BrokenReaders row;
        row("crash", SIGSEGV, "it broke the program");
        row("endless", SIGSTOP, "nothing came of it for 0.3 seconds");
    }

    void brokenReadersCostAMessage()
    {
        const int signal = std::get<0>(BrokenReaders::current());
        const QString expectation = std::get<1>(BrokenReaders::current());
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [signal] { signalReaders(signal); });
        timer.start(0);
        const QString error = read(m_large, 300).error;
        QVERIFY2(error.contains(expectation), qPrintable(error));
        timer.stop();
        QTRY_VERIFY(readers().isEmpty());
        QVERIFY(read(m_large).mesh);
    }

    void readersMayBeKilledAnyTime()
    {
        for (int delay = 0; delay < 200; delay += 5)
        {
            // Ends with the load, so that it cannot meet the next one.
            QTimer timer;
            connect(&timer, &QTimer::timeout, this, [] { signalReaders(SIGKILL); });
            timer.start(delay);
            const auto [mesh, error] = read(m_large);
            QVERIFY2(mesh ? mesh->triangleCount() == 2 * 299 * 299 : error.contains(QStringLiteral("it broke")),
                     qPrintable(error));
        }
    }
#endif

    void loaderDeliversOnItsThread()
    {
        MeshLoader loader;
        QSignalSpy loaded(&loader, &MeshLoader::loaded);
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
        QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 1, loadTimeout);
        QVERIFY(!loader.isLoading());
        QVERIFY(onThread);
        QVERIFY(steps.size() > 5);
        QVERIFY(std::is_sorted(steps.begin(), steps.end()));
        QCOMPARE(steps.last(), 1.0);
        QCOMPARE(loaded.first().first().value<MeshPointer>()->triangleCount(), 2 * 299 * 299);
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
            QVERIFY(QThreadPool::globalInstance()->waitForDone(loadTimeout / 2));
            QCoreApplication::processEvents();
        };
        loader->load(m_large);
#ifdef Q_OS_LINUX
        // Also one that has stopped ends at once.
        QTRY_VERIFY(signalReaders(SIGSTOP) > 0);
#endif
        loader->cancel();
        loader->cancel();
        QVERIFY(!loader->isLoading());
        QCOMPARE(cancelled.size(), 0);
        QTRY_COMPARE(cancelled.size(), 1);
        finish();
        QCOMPARE(loaded.size() + failed.size(), 0);
        loader->load(m_large);
        loader->load(file(QStringLiteral("small.obj"), squareObj));
        QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 1, loadTimeout);
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

    // The sanitizers end a program rather than refuse it memory.
#ifdef ORVEK_SANITIZE
    const char* const m_memory = "it broke the program";
#else
    const char* const m_memory = "asks for more memory";
#endif
    QTemporaryDir m_directory;
    QString m_large;
};

QTEST_GUILESS_MAIN(tst_MeshLoader)
#include "tst_meshloader.moc"
