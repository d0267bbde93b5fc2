#include "snippets.h"

#include <Orvek/Host/Description.h>
#include <Orvek/Host/ObjectFile.h>
#include <Orvek/Host/QObjectType.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QDir>

using namespace orvek::host;

//! [struct]
enum class Shading
{
    Lit,
    Flat
};

struct Coat
{
    bool on = false;
    float thickness = 0.1F; // millimetres
};

struct Layer
{
    QString texture;
    float opacity = 1.0F;
};

struct Material
{
    QString name = QStringLiteral("Material");
    Shading shading = Shading::Lit;
    float roughness = 0.5F;
    QColor colour = Qt::white;
    QVector3D emission;
    Coat coat;
    QVector<Layer> layers;
};
//! [struct]

namespace
{
QString tr(const char* text)
{
    return QCoreApplication::translate("Material", text);
}
} // namespace

//! [describe]
std::shared_ptr<const ObjectType> materialType()
{
    Description<Coat> coat("Coat");
    coat.flag("on", &Coat::on).title(tr("Has a coat"));
    coat.number("thickness", &Coat::thickness)
        .range(0.01, 10.0)
        .logarithmic()
        .units("mm")
        .enabledWhen([](const Coat& c) { return c.on; });

    Description<Layer> layer("Layer");
    layer.file("texture", &Layer::texture).fileFilter(tr("Images (*.png *.exr)"));
    layer.number("opacity", &Layer::opacity);

    Description<Material> material("Material");
    material.text("name", &Material::name).title(tr("Name"));
    material.section(tr("Surface"));
    material.choice("shading", &Material::shading)
        .title(tr("Shading"))
        .entry("lit", tr("Lit"), Shading::Lit)
        .entry("flat", tr("Flat"), Shading::Flat);
    material.number("roughness", &Material::roughness).title(tr("Roughness")).step(0.005).toolTip(tr("0 is a mirror."));
    material.colour("colour", &Material::colour).title(tr("Colour"));
    material.colour("emission", &Material::emission).title(tr("Emission")).range(0.0, 100.0);
    material.section(tr("Coat"));
    material.nested("coat", &Material::coat, coat.type());
    material.section(tr("Layers"));
    material.list("layers", &Material::layers, layer.type());
    return material.type();
}
//! [describe]

//! [QObject]
class Fog : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("property:density", "minimum=0.001; maximum=1; logarithmic; units=1/m; section=Air")
    Q_CLASSINFO("property:density", "title=Density; toolTip=How much light one metre takes away")
    Q_CLASSINFO("property:colour", "kind=colour; enabledWhen=visible")
    Q_PROPERTY(double density READ density WRITE setDensity NOTIFY densityChanged)
    Q_PROPERTY(QColor colour MEMBER m_colour NOTIFY colourChanged)
    Q_PROPERTY(bool visible MEMBER m_visible NOTIFY visibleChanged)
    //! [QObject]
public:
    double density() const { return m_density; }
    void setDensity(double density)
    {
        m_density = density;
        emit densityChanged();
    }
Q_SIGNALS:
    void densityChanged();
    void colourChanged();
    void visibleChanged();

private:
    double m_density = 0.01;
    QColor m_colour = Qt::gray;
    bool m_visible = true;
};

std::shared_ptr<const ObjectType> fogType()
{
    //! [QObjectType]
    const Fog sample; // its values are the defaults
    auto type = std::make_shared<QObjectType>(&Fog::staticMetaObject, &Fog::staticMetaObject, &sample);
    for (const QString& error : type->errors())
        qWarning() << error;
    //! [QObjectType]
    return type;
}

namespace
{
// An engine's own table of its components' members.
struct Field
{
    const char* name;
    double minimum;
    double maximum;
    size_t offset;
};

//! [own]
class ComponentType : public ObjectType
{
public:
    ComponentType(const QString& name, const QVector<Field>& fields) : ObjectType(name), m_fields(fields)
    {
        QVector<Property> properties;
        for (const Field& field : fields)
        {
            Property property;
            property.name = field.name;
            property.minimum = field.minimum;
            property.maximum = field.maximum;
            properties << property;
        }
        setProperties(properties);
    }

    QVariant read(const void* object, int property) const override
    {
        return *reinterpret_cast<const double*>(static_cast<const char*>(object) + m_fields[property].offset);
    }

    bool write(void* object, int property, const QVariant& value) const override
    {
        if (value.userType() != QMetaType::Double)
            return false;
        *reinterpret_cast<double*>(static_cast<char*>(object) + m_fields[property].offset) = value.toDouble();
        return true;
    }

private:
    QVector<Field> m_fields;
};
//! [own]
} // namespace

std::shared_ptr<const ObjectType> componentType()
{
    return std::make_shared<ComponentType>("Spring", QVector<Field>{{"stiffness", 0.0, 100.0, 0}});
}

//! [file]
bool load(const QString& fileName, Material& material)
{
    ObjectFile file(materialType());
    file.setHeader({{"format", "material"}, {"version", 1}});
    if (!file.read(fileName, &material))
    {
        // material.json: layers[2].opacity: expected a number from 0 to 1, found "abc"
        qWarning() << file.errorString();
        return false;
    }
    for (const QString& warning : file.warnings())
        qWarning() << warning;
    return true;
}
//! [file]

void keepNamesRelative(ObjectFile& file, const QDir& folder)
{
    //! [names]
    file.setFileNames([folder](const QString& inFile) { return QDir::cleanPath(folder.absoluteFilePath(inFile)); },
                      [folder](const QString& inObject) { return folder.relativeFilePath(inObject); });
    //! [names]
}

//! [test]
bool everythingIsSaved()
{
    const auto type = materialType();
    ObjectFile file(type);
    Material material;
    bool all = true;
    const QStringList unchanged = type->changeEach(
        &material,
        [&](const QString& path)
        {
            Material loaded;
            QJsonObject json;
            if (!file.toJson(&material, &json) || !file.fromJson(json, &loaded) || !type->equal(&material, &loaded))
            {
                qWarning() << path << "is not saved:" << file.errorString();
                all = false;
            }
        });
    return all && unchanged.isEmpty();
}
//! [test]

#include "describe.moc"
