#include <Orvek/Host/ObjectType.h>

#include <utility>

namespace orvek::host
{
ObjectType::ObjectType(QString name, QVector<Property> properties)
    : m_name(std::move(name)), m_properties(std::move(properties))
{
}

ObjectType::~ObjectType() = default;

void ObjectType::setProperties(QVector<Property> properties)
{
    m_properties = std::move(properties);
}

int ObjectType::indexOf(const QString& name) const
{
    for (int i = 0; i < m_properties.size(); ++i)
    {
        if (m_properties[i].name == name)
            return i;
    }
    return -1;
}

unsigned ObjectType::differences(const QVector<void*>& objects, int property) const
{
    Q_UNUSED(objects)
    Q_UNUSED(property)
    return 0; // to be written with identical()
}

int ObjectType::count(const void* object, int property) const
{
    Q_UNUSED(object)
    Q_UNUSED(property)
    return 0;
}

void* ObjectType::element(void* object, int property, int index) const
{
    Q_UNUSED(object)
    Q_UNUSED(property)
    Q_UNUSED(index)
    return nullptr;
}

bool ObjectType::resize(void* object, int property, int count) const
{
    Q_UNUSED(object)
    Q_UNUSED(property)
    Q_UNUSED(count)
    return false;
}

QObject* ObjectType::notifier(void* object, int property) const
{
    Q_UNUSED(object)
    Q_UNUSED(property)
    return nullptr;
}

QMetaMethod ObjectType::notifySignal(int property) const
{
    Q_UNUSED(property)
    return {};
}
} // namespace orvek::host
