#include "testsupport.h"

#include <Orvek/Host/Description.h>
#include <Orvek/Host/ObjectFile.h>
#include <Orvek/Host/QObjectType.h>

#include <csignal>
#include <cstring>
#ifdef Q_OS_UNIX
#include <sys/resource.h>
#include <sys/stat.h>
#endif

using namespace orvek::host;

namespace
{
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

enum class Kind : unsigned char
{
    Lit,
    Flat = 7
};

struct Coat
{
    bool on = false;
    float thickness = 0.1F;
    QColor tint = Qt::white;
};

struct Layer
{
    QString name = QStringLiteral("layer");
    double opacity = 1.0;
    std::vector<Coat> coats;
};

struct Named
{
    std::string name = "unnamed";
};

// A member of each type that can be described.
struct Material : Named
{
    float roughness = 0.5F;
    double exposure = 0.25;
    int samples = 4;
    signed char priority = 0;
    quint16 seed = 1;
    Kind kind = Kind::Flat;
    quint32 mapSize = 512;
    QVector3D offset;
    QVector3D emission;
    QColor baseColour = Qt::red;
    QColor glow = QColor(1, 2, 3, 4);
    QString texture;
    bool visible = true;
    Coat coat{true, 0.7F, Qt::blue};
    QVector<Layer> layers;
    int frames = 0; // only shown
};

std::shared_ptr<const ObjectType> coatType()
{
    Description<Coat> coat(QStringLiteral("Coat"));
    coat.flag("on", &Coat::on);
    coat.number("thickness", &Coat::thickness)
        .range(0.1, 1)
        .enabledWhen([](const Coat& c) { return c.thickness > 0.2F; });
    coat.colour("tint", &Coat::tint).section(QStringLiteral("Tints"));
    return coat.type();
}

std::shared_ptr<const ObjectType> layerType()
{
    Description<Layer> layer(QStringLiteral("Layer"));
    layer.text("name", &Layer::name).maximumLength(8);
    layer.number("opacity", &Layer::opacity);
    layer.list("coats", &Layer::coats, coatType()).maximumLength(3);
    return layer.type();
}

std::shared_ptr<const ObjectType> materialType()
{
    using T = Material;
    Description<T> material(QStringLiteral("Material"));
    material.text("name", &T::name);
    material.section(QStringLiteral("Surface"));
    material.number("roughness", &T::roughness).range(0.001, 0.9).logarithmic();
    material.number("exposure", &T::exposure).range(-Infinity, Infinity);
    material.integer("samples", &T::samples).range(1, 64);
    material.integer("priority", &T::priority).range(-128, 127);
    material.integer("seed", &T::seed).range(0, 65535);
    material.choice("kind", &T::kind)
        .entry(QStringLiteral("lit"), QStringLiteral("Lit"), Kind::Lit)
        .entry(QStringLiteral("flat"), QStringLiteral("Flat"), Kind::Flat);
    material.powerOfTwo("mapSize", &T::mapSize);
    material.vector("offset", &T::offset);
    material.colour("emission", &T::emission).range(0, 100);
    material.colour("baseColour", &T::baseColour);
    material.colourWithAlpha("glow", &T::glow);
    material.file("texture", &T::texture).fileFilter(QStringLiteral("Images (*.png)"));
    material.flag("visible", &T::visible);
    material.section(QString());
    material.nested("coat", &T::coat, coatType());
    material.list("layers", &T::layers, layerType());
    material.integer("frames", &T::frames).stored(false);
    return material.type();
}

Material materialWithLayers()
{
    Material material;
    material.layers.resize(2);
    material.layers[1].coats.resize(1);
    return material;
}

// An engine's own reflection: values by name, of which the second refuses what is too large.
class Registry : public ObjectType
{
public:
    explicit Registry(const QVector<Property>& properties) : ObjectType(QStringLiteral("Registry"), properties) {}
    QVariant read(const void* object, int property) const override
    {
        return static_cast<const QVariantList*>(object)->at(property);
    }
    bool write(void* object, int property, const QVariant& value) const override
    {
        if (property == 1 && value.toDouble() > 0.5)
            return false;
        (*static_cast<QVariantList*>(object))[property] = value;
        return true;
    }
};

Property ofKind(const char* name, PropertyKind kind)
{
    Property described;
    described.name = QString::fromLatin1(name);
    described.kind = kind;
    return described;
}

using M = Material;
using D = Description<Material>;
using WrongDescriptions = Table<void (*)(D& m)>; // the name is the error
using WrongValues = Table<void (*)(M& m)>;       // here, too
using WrongFiles = Table<QString>;               // the name is the file, this the error
} // namespace

class Lamp : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("author", "minimum of information")
    Q_CLASSINFO("property:power", "minimum=0.5; maximum=1000; logarithmic; units=W; section=Light; default=60")
    Q_CLASSINFO("property:power", "title=Electric Power; enabledWhen=!broken")
    Q_CLASSINFO("property:map", "kind=powerOfTwo; maximum=2048; live=false")
    Q_CLASSINFO("property:tint", "kind=colour; default=#ff8000")
    Q_CLASSINFO("property:profile", "fileFilter=Profiles (*.ies);;All (*); toolTip=How it shines")
    Q_CLASSINFO("property:secret", "hidden")
    Q_PROPERTY(float power MEMBER power NOTIFY powerChanged)
    Q_PROPERTY(Shape shape MEMBER shape)
    Q_PROPERTY(int map MEMBER map)
    Q_PROPERTY(short priority MEMBER priority)
    Q_PROPERTY(QVector3D direction MEMBER direction)
    Q_PROPERTY(QColor tint MEMBER tint)
    Q_PROPERTY(QColor shade MEMBER shade)
    Q_PROPERTY(QUrl profile MEMBER profile)
    Q_PROPERTY(bool broken MEMBER broken)
    Q_PROPERTY(double heat READ heat)
    Q_PROPERTY(int secret MEMBER secret)
    Q_PROPERTY(QRect notShown MEMBER notShown)

public:
    enum Shape
    {
        RoundBulb = 1,
        Tube = 3
    };
    Q_ENUM(Shape)
    double heat() const { return 40; }
    float power = 60;
    Shape shape = Tube;
    int map = 512;
    short priority = -1;
    QVector3D direction{0, -1, 0};
    QColor tint = Qt::white;
    QColor shade = QColor(1, 2, 3, 4);
    QUrl profile;
    bool broken = false;
    int secret = 0;
    QRect notShown;
Q_SIGNALS:
    void powerChanged();
};

class WrongLamp : public Lamp
{
    Q_OBJECT
    Q_CLASSINFO("property:wattage", "minimum=0")
    Q_CLASSINFO("property:power", "maximun=5; step=much")
    Q_CLASSINFO("property:notShown", "title=Rectangle")
    Q_CLASSINFO("property:map", "kind=file; readOnly=perhaps")
    Q_CLASSINFO("property:shape", "default=Square; shownWhen=power")
    Q_CLASSINFO("property:priority", "default=1; minimum=2")
};
class tst_Describe : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void structIsDescribed()
    {
        const auto type = materialType();
        QVERIFY(type);
        const auto described = [&](const char* name) { return type->properties().at(type->indexOf(QString(name))); };
        QCOMPARE(described("name").defaultValue, QVariant(QStringLiteral("unnamed")));
        QCOMPARE(described("baseColour").displayTitle(), QStringLiteral("Base Colour"));
        QCOMPARE(described("coat.tint").displayTitle(), QStringLiteral("Tint"));
        QCOMPARE(described("kind").choiceTitle(7), QStringLiteral("Flat"));
        // Those of the struct around it, not of a coat alone.
        QCOMPARE(described("coat.thickness").defaultValue, QVariant(double(0.7F)));
        QCOMPARE(described("coat.on").defaultValue, QVariant(true));
        QCOMPARE(type->indexOf(QStringLiteral("coat")), -1);
        QStringList sections;
        for (const char* name : {"name", "visible", "coat.on", "coat.tint"})
            sections << type->sectionTitle(type->indexOf(QString(name)));
        QCOMPARE(sections.join(' '), "Material Surface Coat Tints");
        Material material;
        QVERIFY(described("coat.thickness").enabledWhen(&material));
        material.coat.thickness = 0.15F;
        QVERIFY(!described("coat.thickness").enabledWhen(&material));
    }

    void wrongDescriptionIsNamed_data()
    {
        const WrongDescriptions row;
        row("x: two properties of this name", [](D& m) { m.flag("x", &M::visible), m.flag("x", &M::visible); });
        row("coat: a property and a nested struct of this name",
            [](D& m) { m.flag("coat", &M::visible), m.nested("coat", &M::coat, coatType()); });
        row("a..b: a part of the name is empty", [](D& m) { m.flag("a..b", &M::visible); });
        row("x: the minimum 2 exceeds the maximum 1", [](D& m) { m.number("x", &M::exposure).range(2, 1); });
        row("x: an end of the range is not a number", [](D& m) { m.number("x", &M::exposure).range(double(NaN), 1); });
        row("x: a logarithmic range from 0, which is not above 0",
            [](D& m) { m.number("x", &M::exposure).logarithmic(); });
        row("x: the step -1 is not a number of at least 0", [](D& m) { m.number("x", &M::exposure).step(-1); });
        row("x: the default 0.5 is outside the range 1 to 2", [](D& m) { m.number("x", &M::roughness).range(1, 2); });
        row("x: the default is of the type int", [](D& m) { m.number("x", &M::roughness).defaultValue(1); });
        row("x: the default is outside the range 1 to 2", [](D& m) { m.vector("x", &M::offset).range(1, 2); });
        row("x: the default is not opaque", [](D& m) { m.colour("x", &M::glow); });
        row("x: the end 0.5 of the range is not a whole number",
            [](D& m) { m.integer("x", &M::samples).range(0.5, 5); });
        row("x: the end 3 of the range is not a power of two",
            [](D& m) { m.powerOfTwo("x", &M::mapSize).range(3, 512); });
        row("x: the default 500 is outside the range 1 to 4096 or not a power of two",
            [](D& m) { m.powerOfTwo("x", &M::mapSize).defaultValue(500); });
        row("x: the range 0 to 128 does not fit the member's type",
            [](D& m) { m.integer("x", &M::priority).range(0, 128); });
        row("x: a choice without entries", [](D& m) { m.choice("x", &M::kind); });
        row("x: two entries with the key \"a\"",
            [](D& m) { m.choice("x", &M::kind).entry("a", "", Kind::Lit).entry("a", "", Kind::Flat); });
        row("x: two entries with the value 7",
            [](D& m) { m.choice("x", &M::kind).entry("a", "", Kind::Flat).entry("b", "", Kind::Flat); });
        row("x: the entry of the value 7 has no key", [](D& m) { m.choice("x", &M::kind).entry("", "", Kind::Flat); });
        row("x: the default 7 is not one of the choices",
            [](D& m) { m.choice("x", &M::kind).entry("a", "", Kind::Lit); });
        row("x: the default has more than 3 characters", [](D& m) { m.text("x", &M::name).maximumLength(3); });
        row("x: a list without the type of its elements", [](D& m) { m.list("x", &M::layers, nullptr); });
        row("x: \"Coat\" is the type of another struct", [](D& m) { m.list("x", &M::layers, coatType()); });
        row("x: \"Layer\" is not the type of this struct", [](D& m) { m.nested("x", &M::coat, layerType()); });
        row("x: a struct without its type", [](D& m) { m.nested("x", &M::coat, nullptr); });
    }
    void wrongDescriptionIsNamed()
    {
        const QString error = QStringLiteral("Material.") + QTest::currentDataTag();
        Description<Material> material(QStringLiteral("Material"));
        std::get<0>(WrongDescriptions::current())(material);
        QCOMPARE(material.errors(), QStringList(error));
        expectWarning('^' + QRegularExpression::escape(error) + '$');
        QVERIFY(!material.type());
    }

    void ownReflectionIsChecked()
    {
        QCOMPARE(Registry({ofKind("", PropertyKind(99))}).errors(),
                 QStringList({"Registry: property 0 has no name", "Registry.: unknown kind 99"}));
    }

    void writingRefusesWhatCannotBe()
    {
        const auto type = materialType();
        Material material;
        const auto writes = [&](const char* name, const QVariant& value)
        { return type->write(&material, type->indexOf(QString(name)), value); };
        QVERIFY(!writes("roughness", 1e39) && !writes("roughness", 1) && !writes("priority", 128) &&
                !writes("seed", -1));
        QVERIFY(!writes("kind", 256) && !writes("kind", 1.0) && !writes("baseColour", QVector3D()) &&
                !writes("emission", QColor(Qt::red)));
        QVERIFY(!writes("layers", QVariantList()) && type->equal(&material, std::make_unique<Material>().get()));
        // Ranges are not its concern: undo must be able to put back what was there.
        QVERIFY(writes("roughness", Infinity) && writes("samples", -5) && writes("kind", 1));
        QVERIFY(writes("priority", -128) && material.priority == -128);
    }

    // By construction: each member, whatever is described, makes a difference, is copied and is saved.
    void eachMemberIsComparedCopiedAndSaved()
    {
        const auto type = materialType();
        Material material = materialWithLayers();
        const Material original = material;
        ObjectFile file(type);
        QStringList paths;
        const QStringList unchanged = type->changeEach(
            &material,
            [&](const QString& path)
            {
                paths << path;
                QVERIFY2(!type->equal(&original, &material), qPrintable(path));
                Material copied = original;
                QVERIFY2(type->copy(&material, &copied) && type->equal(&material, &copied), qPrintable(path));
                QJsonObject json;
                QVERIFY2(file.toJson(&material, &json), qPrintable(path + file.errorString()));
                Material loaded = materialWithLayers();
                QVERIFY2(file.fromBytes(QJsonDocument(json).toJson(), &loaded), qPrintable(file.errorString()));
                QVERIFY2(type->equal(&material, &loaded) && file.warnings().isEmpty(), qPrintable(path));
                // What compares in place finds what reading all values finds.
                for (int i = 0; i < type->properties().size(); ++i)
                {
                    const QVector<void*> both{const_cast<Material*>(&original), &material};
                    QCOMPARE(type->differences(both, i), type->ObjectType::differences(both, i));
                }
            });
        QVERIFY(type->equal(&original, &material) && unchanged.isEmpty());
        QCOMPARE(material.layers.size(), 2);
        QCOMPARE(paths.size(), 45);
        QCOMPARE(paths.mid(7, 4).join(' ') + ' ' + paths.last(),
                 "mapSize offset[0] offset[1] offset[2] layers[1].coats[0].tint[2]");
    }

    void everyBitSurvivesTheFile()
    {
        struct Bits
        {
            float single = 0;
            double twice = 0;
            QVector3D vector;
            QColor colour;
        };
        Description<Bits> description(QStringLiteral("Bits"));
        description.number("single", &Bits::single).range(-Infinity, Infinity);
        description.number("twice", &Bits::twice).range(-Infinity, Infinity);
        description.vector("vector", &Bits::vector);
        description.colourWithAlpha("colour", &Bits::colour);
        const auto type = description.type();
        ObjectFile file(type);
        QRandomGenerator random(15);
        const float special[] = {-0.0F, std::numeric_limits<float>::denorm_min(), -std::numeric_limits<float>::max(),
                                 0.1F};
        for (int i = 0; i < 5000; ++i)
        {
            Bits bits;
            const quint32 pattern = random.generate();
            const quint64 pattern64 = random.generate64();
            std::memcpy(&bits.single, &pattern, sizeof pattern);
            std::memcpy(&bits.twice, &pattern64, sizeof pattern64);
            if (i < 4)
                bits.twice = double(bits.single = special[i]);
            if (!std::isfinite(bits.single) || !std::isfinite(bits.twice))
                continue;
            bits.vector = QVector3D(1, -bits.single, bits.single);
            bits.colour = i == 0       ? QColor()
                          : i % 2 == 0 ? QColor::fromRgba(pattern)
                                       : QColor(QRgba64::fromRgba64(pattern64));
            Bits read;
            QJsonObject written;
            QVERIFY2(file.toJson(&bits, &written), qPrintable(file.errorString()));
            const QByteArray json = QJsonDocument(written).toJson();
            QVERIFY2(file.fromBytes(json, &read), qPrintable(file.errorString()));
            QVERIFY2(type->equal(&bits, &read) && std::memcmp(&bits.twice, &read.twice, sizeof read.twice) == 0 &&
                         std::memcmp(&bits.vector, &read.vector, sizeof read.vector) == 0,
                     json.constData());
            QVERIFY2(i != 3 || json.contains("\"single\": 0.1,"), json.constData());
        }
    }

    void wrongFileChangesNothing_data()
    {
        const WrongFiles row;
        row("{\"roughness\": \"abc\"}", "roughness: expected a number from 0.001 to 0.9, found \"abc\"");
        row("{\"roughness\": 1e300}", "roughness: expected a number from 0.001 to 0.9, found 1e+300");
        row("{\"exposure\": null}", "exposure: expected a number, found null");
        row("{\"samples\": 2.5}", "samples: expected a whole number from 1 to 64, found 2.5");
        row("{\"samples\": 1e10}", "samples: expected a whole number from 1 to 64, found 1e+10");
        row("{\"mapSize\": 500}", "mapSize: expected a power of two from 1 to 4096, found 500");
        row("{\"kind\": \"Lit\"}", "kind: expected one of \"lit\", \"flat\", found \"Lit\"");
        row("{\"kind\": 7}", "kind: expected one of \"lit\", \"flat\", found 7");
        row("{\"offset\": [1, 2]}", "offset: expected an array of three numbers, found an array of 2");
        row("{\"offset\": [1, 2, true]}", "offset[2]: expected a number, found true");
        row("{\"offset\": [1, 2, 1e39]}", "offset[2]: expected a number, found 1e+39");
        row("{\"emission\": [1, -1, 0]}", "emission[1]: expected a number from 0 to 100, found -1");
        row("{\"emission\": \"#102030\"}", "emission: expected an array of three numbers, found \"#102030\"");
        row("{\"baseColour\": \"#80102030\"}",
            "baseColour: expected a colour such as \"#ff8000\", found \"#80102030\"");
        row("{\"glow\": \"#+1020304\"}", "glow: expected a colour such as \"#80ff8000\", found \"#+1020304\"");
        row("{\"glow\": \"red\"}", "glow: expected a colour such as \"#80ff8000\", found \"red\"");
        row("{\"texture\": {}}", "texture: expected a text, found an object");
        row("{\"visible\": 1}", "visible: expected true or false, found 1");
        row("{\"coat\": []}", "coat: expected an object, found an array of 0");
        row("{\"coat\": {\"thickness\": 2}}", "coat.thickness: expected a number from 0.1 to 1, found 2");
        row("{\"layers\": {}}", "layers: expected an array, found an object");
        row("{\"layers\": [3]}", "layers[0]: expected an object, found 3");
        row("{\"layers\": [{}, {\"name\": \"123456789\"}]}",
            "layers[1].name: expected a text of at most 8 characters, found \"123456789\"");
        row("{\"layers\": [{\"coats\": [{}, {}, {\"on\": 0}]}]}",
            "layers[0].coats[2].on: expected true or false, found 0");
        row("{\"layers\": [{\"coats\": [{}, {}, {}, {}]}]}",
            "layers[0].coats: expected an array of at most 3, found an array of 4");
        row("[]", "1:1: expected an object, found an array");
        row("{\n  \"name\": \"\xc3\xa4\" \"x\"}", "2:16: not valid JSON, unterminated object");
    }
    void wrongFileChangesNothing()
    {
        QByteArray json = QTest::currentDataTag();
        // The first of the members is right.
        if (json.startsWith("{\""))
            json.replace(0, 1, "{\"aaa\": 0, \"name\": \"changed\", \"visible\": false, ");
        const auto type = materialType();
        Material material = materialWithLayers();
        const Material before = material;
        ObjectFile file(type);
        QVERIFY(!file.fromBytes(json, &material));
        QCOMPARE(file.errorString(), std::get<0>(WrongFiles::current()));
        QVERIFY(type->equal(&material, &before));
    }

    void whatIsMissingInFiles()
    {
        Material material = materialWithLayers();
        material.roughness = 0.25F;
        material.layers[0].opacity = 0.5;
        QVERIFY(ObjectFile(materialType()).fromBytes("{\"layers\": [{}]}", &material));
        QCOMPARE(material.roughness, 0.25F);
        // Elements have nothing to do with those that were there.
        QCOMPARE(material.layers.size(), 1);
        QCOMPARE(material.layers[0].opacity, 1.0);
    }

    void refusedWriteChangesNothing()
    {
        const Registry registry({ofKind("a", PropertyKind::Number), ofKind("b", PropertyKind::Number)});
        QVariantList object{0.1, 0.2};
        ObjectFile file(std::shared_ptr<const ObjectType>(&registry, [](const ObjectType*) {}));
        QVERIFY(!file.fromJson({{"a", 0.5}, {"b", 0.75}}, &object));
        QCOMPARE(file.errorString(), QStringLiteral("b: Registry refuses the value"));
        QCOMPARE(object, QVariantList({0.1, 0.2}));
        QVERIFY(file.fromJson({{"a", 0.5}, {"b", 0.25}}, &object));
        QCOMPARE(object, QVariantList({0.5, 0.25}));
        QVERIFY(!ObjectFile(nullptr).fromJson({}, &object));
    }

#ifdef Q_OS_UNIX
    void savingReplacesFilesOnly()
    {
        const QTemporaryDir folder;
        const QString name = folder.filePath("material");
        const QString link = folder.filePath("link");
        const QString pipe = folder.filePath("pipe");
        Material material = materialWithLayers();
        ObjectFile file(materialType());
        QVERIFY(file.write(name, &material) && QFile::link(name, link));
        material.name = "changed";
        QVERIFY(file.write(link, &material) && QFileInfo(link).isSymLink());
        Material read;
        QVERIFY(file.read(name, &read) && read.name == material.name);
        QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
        QVERIFY(!file.write(pipe, &material) && !QFileInfo(pipe).isFile());
        QVERIFY2(file.errorString().contains("named pipe"), qPrintable(file.errorString()));
        // A disk that fills up while the file is written.
        material.name.assign(10000, 'x');
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit old;
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &old), 0);
        const rlimit small = {4096, old.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        const bool isWritten = file.write(name, &material);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &old), 0);
        QVERIFY(!isWritten);
        QVERIFY2(file.errorString().contains("File too large"), qPrintable(file.errorString()));
        QVERIFY(file.read(name, &read) && read.name == "changed");
    }
#endif

    void whatCannotBeReadAgainIsNotWritten_data()
    {
        const WrongValues row;
        row("exposure: expected a number, found nan", [](M& m) { m.exposure = double(NaN); });
        row("offset[1]: expected a number, found inf", [](M& m) { m.offset.setY(float(Infinity)); });
        row("kind: expected one of \"lit\", \"flat\", found 3", [](M& m) { m.kind = Kind(3); });
        row("coat.thickness: expected a number from 0.1 to 1, found 0", [](M& m) { m.coat.thickness = 0; });
        row("texture: the text is not valid Unicode", [](M& m) { m.texture = QChar(0xd800); });
        row("glow: the value cannot be written exactly",
            [](M& m) { m.glow = QColor::fromRgbF(0.5, 0.5, 0.5).convertTo(QColor::ExtendedRgb); });
        row("baseColour: expected a colour such as \"#ff8000\", found \"#80000000\"",
            [](M& m) { m.baseColour = QColor(0, 0, 0, 128); });
        row("layers[1].coats: expected at most 3, found 4", [](M& m) { m.layers[1].coats.resize(4); });
    }
    void whatCannotBeReadAgainIsNotWritten()
    {
        QTemporaryDir directory;
        const QString name = directory.filePath("material.json");
        Material material = materialWithLayers();
        ObjectFile file(materialType());
        QVERIFY(file.write(name, &material));
        std::get<0>(WrongValues::current())(material);
        QVERIFY(!file.write(name, &material));
        QCOMPARE(file.errorString(), name + ": not saved, " + QTest::currentDataTag());
        QVERIFY(file.read(name, &material));
    }

    void filesAreNamedInErrors()
    {
        QTemporaryDir directory;
        const QString name = directory.filePath("x.json");
        Material material;
        ObjectFile file(materialType());
        const auto failsToRead = [&](const QString& path, const QString& error)
        { return !file.read(path, &material) && file.errorString().startsWith(path + error); };
        QVERIFY(failsToRead(name, ": cannot be read: "));
        QVERIFY(failsToRead(directory.path(), ": is a directory, expected a file"));
        QVERIFY(!file.write(directory.filePath("none/x.json"), &material));
        QVERIFY(file.errorString().contains("x.json: cannot be written: "));
        QFile text(name);
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write("{\n}}") > 0);
        text.close();
        QVERIFY(failsToRead(name, ":2:2: not valid JSON, "));
        file.setMaximumSize(3);
        QVERIFY(failsToRead(name, ": has more than 3 bytes"));
        QVERIFY(!file.write(name, &material));
        QCOMPARE(file.errorString(), name + ": not saved, has more than 3 bytes");
    }

    void headerAndFileNames()
    {
        ObjectFile file(materialType());
        file.setHeader({{"format", "material"}, {"version", 2}});
        file.setFileNames([](const QString& inFile) { return "/assets/" + inFile; },
                          [](const QString& inObject) { return inObject.mid(8); });
        Material material;
        QJsonObject json;
        QVERIFY(file.toJson(&material, &json));
        QCOMPARE(json.value("texture"), QJsonValue(QString()));
        material.texture = "/assets/wood.png";
        QVERIFY(file.toJson(&material, &json));
        QCOMPARE(json.value("texture"), QJsonValue("wood.png"));
        QCOMPARE(json.value("version"), QJsonValue(2));
        Material read;
        QVERIFY(file.fromJson(json, &read) && file.warnings().isEmpty());
        QCOMPARE(read.texture, material.texture);
        json.insert("version", 3);
        QVERIFY(!file.fromJson(json, &read));
        QCOMPARE(file.errorString(), QStringLiteral("version: expected 2, found 3"));
        file.setHeader({{"name", "x"}});
        QVERIFY(!file.toJson(&material, &json));
    }

    void unknownMembers()
    {
        ObjectFile file(materialType());
        Material material;
        QJsonObject json{{"later", 1},
                         {"coat", QJsonObject{{"sheen", 2}, {"on", true}}},
                         {"layers", QJsonArray{QJsonObject{{"mask", 3}}}}};
        QVERIFY(file.fromJson(json, &material));
        QCOMPARE(file.warnings(), QStringList({"coat.sheen: unknown, ignored", "later: unknown, ignored",
                                               "layers[0].mask: unknown, ignored"}));
        QJsonObject kept;
        QVERIFY(file.toJson(&material, &kept) && !kept.contains("later"));
        file.setUnknownMembers(ObjectFile::UnknownMembers::Keep);
        QVERIFY(file.fromJson(json, &material));
        QCOMPARE(file.warnings(), QStringList("layers[0].mask: unknown, ignored"));
        QVERIFY(file.toJson(&material, &kept));
        QCOMPARE(kept.value("later"), QJsonValue(1));
        QCOMPARE(kept.value("coat").toObject().value("sheen"), QJsonValue(2));
        QVERIFY(kept.value("coat").toObject().contains("thickness"));
        file.setUnknownMembers(ObjectFile::UnknownMembers::Warn);
        for (int i = 0; i < 30; ++i)
            json.insert(QString::number(i), i);
        QVERIFY(file.fromJson(json, &material));
        QCOMPARE(file.warnings().size(), 21);
        QCOMPARE(file.warnings().last(), QStringLiteral("13 more unknown members, ignored"));
    }

    void objectByItsMetaObject()
    {
        Lamp lamp;
        const auto type = std::make_shared<QObjectType>(&Lamp::staticMetaObject, &Lamp::staticMetaObject, &lamp);
        QCOMPARE(type->errors(), QStringList());
        QStringList names;
        for (const Property& described : type->properties())
            names << described.name;
        QCOMPARE(names.join(' '), "power shape map priority direction tint shade profile broken heat");
        const auto described = [&](const char* name) { return type->properties().at(type->indexOf(QString(name))); };
        const Property power = described("power");
        QVERIFY(power.minimum == 0.5 && power.maximum == 1000.0 && power.logarithmic && power.singlePrecision &&
                power.live && power.enabledWhen(&lamp));
        QCOMPARE(power.title + power.units + power.section, QStringLiteral("Electric PowerWLight"));
        lamp.broken = true;
        QVERIFY(!power.enabledWhen(&lamp));
        QVERIFY(described("map").kind == PropertyKind::PowerOfTwo && !described("map").live);
        QCOMPARE(described("shape").choiceTitle(1), QStringLiteral("Round Bulb"));
        QCOMPARE(described("shape").defaultValue, QVariant(3));
        QVERIFY(described("tint").kind == PropertyKind::Colour &&
                described("shade").kind == PropertyKind::ColourWithAlpha);
        QCOMPARE(described("tint").defaultValue, QVariant(QColor(0xff, 0x80, 0)));
        QCOMPARE(described("profile").fileFilter, QStringLiteral("Profiles (*.ies);;All (*)"));
        QCOMPARE(described("profile").toolTip, QStringLiteral("How it shines"));
        QVERIFY(described("heat").readOnly && !described("heat").stored);
        QVERIFY(!type->write(&lamp, type->indexOf("heat"), 5.0) && type->write(&lamp, type->indexOf("shape"), 2));
        QCOMPARE(type->read(&lamp, type->indexOf("shape")), QVariant(2));
        lamp.shape = Lamp::Tube;
        QVERIFY(!type->write(&lamp, type->indexOf("priority"), 40000));

        QCOMPARE(type->notifier(&lamp, 0), &lamp);
        QCOMPARE(type->notifySignal(0).name(), QByteArray("powerChanged"));
        QVERIFY(!type->notifier(&lamp, 1));

        // All bases.
        QCOMPARE(QObjectType(&Lamp::staticMetaObject).properties().first().name, QStringLiteral("objectName"));
        ObjectFile file(type);
        Lamp other;
        QVERIFY2(type->changeEach(&lamp,
                                  [&](const QString& path)
                                  {
                                      QJsonObject json;
                                      QVERIFY2(file.toJson(&lamp, &json) && file.fromJson(json, &other) &&
                                                   type->equal(&lamp, &other),
                                               qPrintable(path + file.errorString()));
                                  })
                     .isEmpty(),
                 "a member did not change");
        for (const char* address :
             {"file:///a%20b/c.ies", "file:///c.ies?x=1", "https://example.org/c.ies?x=1", "profiles/c.ies", ""})
        {
            lamp.profile = QUrl(address);
            const int index = type->indexOf("profile");
            QVERIFY(type->write(&other, index, type->read(&lamp, index)));
            QCOMPARE(other.profile, lamp.profile);
        }
        lamp.profile = QUrl("file:///a%20b/c.ies");
        QCOMPARE(type->read(&lamp, type->indexOf("profile")), QVariant("/a b/c.ies"));
    }

    void wrongClassInformationIsNamed()
    {
        const QStringList errors = QObjectType(&WrongLamp::staticMetaObject).errors();
        for (const char* error :
             {"WrongLamp: class information about \"wattage\", which is not a property",
              "WrongLamp.power: unknown word \"maximun\"", "WrongLamp.power: step is \"much\", expected a number",
              "WrongLamp.notShown: class information, but properties of the type QRect are left out",
              "WrongLamp.map: the kind \"file\" is unknown, or not for the type of the property",
              "WrongLamp.map: readOnly is \"perhaps\", expected true or false",
              "WrongLamp.shape: default is \"Square\", which is not a value of the property",
              "WrongLamp.shape: shownWhen is \"power\", expected the name of a flag",
              "WrongLamp.priority: the default 1 is outside the range 2 to 32767"})
            QVERIFY2(errors.contains(QString(error)),
                     qPrintable(QString(error) + "\nis none of\n" + errors.join('\n')));
        QCOMPARE(errors.size(), 9);
    }

    void identicalComparesBits()
    {
        QVERIFY(identical(double(NaN), double(NaN)) && !identical(0.0, -0.0) && !identical(1, 1.0));
        QVERIFY(!identical(QVector3D(0, 0, 0), QVector3D(0, 0, -0.0F)) && !identical(QColor(), QColor(Qt::black)));
        QVERIFY(identical(QColor(Qt::red), QColor(Qt::red).toHsv()));
    }
};

QTEST_MAIN(tst_Describe)
#include "tst_describe.moc"
