#include <Orvek/Host/Selection.h>

#include <Orvek/Host/ObjectType.h>
#include <Orvek/Host/PropertyValue.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace orvek::host
{
Selection::Selection(const QVector<Inspector::Objects>& objects, const Keys& keys) : m_keys(keys)
{
    for (const Inspector::Objects& given : objects)
    {
        Group group{given.type, given.objects, {}, {}};
        group.objects.removeAll(nullptr);
        if (!group.type || group.objects.isEmpty())
            continue;
        const bool hasKeys = m_keys.of && m_keys.object;
        const bool areObjects = !group.type->properties().isEmpty() && group.type->notifier(group.objects.first(), 0);
        for (void* object : std::as_const(group.objects))
        {
            if (hasKeys)
                group.keys << m_keys.of(object);
            if (areObjects)
                group.guards << QPointer<QObject>(group.type->notifier(object, 0));
        }
        m_groups.push_back(std::move(group));
    }
}

Selection::Selection(std::shared_ptr<Selection> owner, SharedProperty list, int index)
    : m_owner(std::move(owner)), m_list(std::move(list)), m_index(index)
{
    for (std::size_t i = 0; i < m_owner->m_groups.size(); ++i)
    {
        const Group& group = m_owner->m_groups[i];
        const Property& described = group.type->properties().at(m_list[int(i)]);
        m_groups.push_back({described.elementType, QVector<void*>(group.objects.size()), {}, {}});
    }
    resolve();
}

QVector<const ObjectType*> Selection::types() const
{
    QVector<const ObjectType*> types;
    for (const Group& group : m_groups)
        types << group.type.get();
    return types;
}

QVector<void*> Selection::roots() const
{
    if (m_owner)
        return m_owner->roots();
    QVector<void*> roots;
    for (const Group& group : m_groups)
        for (void* object : group.objects)
            if (object)
                roots << object;
    return roots;
}

QVector<SharedProperty> Selection::shared() const
{
    QVector<SharedProperty> shared;
    if (m_groups.empty())
        return shared;
    const QVector<Property>& described = m_groups.front().type->properties();
    for (int i = 0; i < described.size(); ++i)
    {
        SharedProperty property;
        for (const Group& group : m_groups)
        {
            const int index = group.type->indexOf(described[i].name);
            if (index < 0)
                break;
            const Property& other = group.type->properties().at(index);
            if (other.kind != described[i].kind || other.elementType != described[i].elementType)
                break;
            property << index;
        }
        if (property.size() == int(m_groups.size()))
            shared << property;
    }
    return shared;
}

const Property& Selection::description(const SharedProperty& property) const
{
    return m_groups.front().type->properties().at(property.first());
}

QString Selection::sectionTitle(const SharedProperty& property) const
{
    return m_groups.front().type->sectionTitle(property.first());
}

void Selection::resolve()
{
    if (m_owner)
        m_owner->resolve();
    m_hasGaps = false;
    for (std::size_t i = 0; i < m_groups.size(); ++i)
    {
        Group& group = m_groups[i];
        for (int j = 0; j < group.objects.size(); ++j)
        {
            if (m_owner)
            {
                const Group& owners = m_owner->m_groups[i];
                void* owner = owners.objects[j];
                const int list = m_list[int(i)];
                const bool exists = owner && m_index < owners.type->count(owner, list);
                group.objects[j] = exists ? owners.type->element(owner, list, m_index) : nullptr;
            }
            else if (!group.keys.isEmpty())
                group.objects[j] = m_keys.object(group.keys[j]);
            else if (!group.guards.isEmpty() && !group.guards[j])
                group.objects[j] = nullptr;
            m_hasGaps = m_hasGaps || !group.objects[j];
        }
    }
}

QVector<Inspector::Objects> Selection::remaining() const
{
    QVector<Inspector::Objects> remaining;
    for (const Group& group : m_groups)
    {
        remaining << Inspector::Objects{group.type, group.objects};
        remaining.last().objects.removeAll(nullptr);
    }
    return remaining;
}

QVariant Selection::first(const SharedProperty& property) const
{
    QVariant value;
    forEach(property,
            [&value](const ObjectType& type, int index, void* object)
            {
                value = type.read(object, index);
                return false;
            });
    return value;
}

unsigned Selection::differences(const SharedProperty& property) const
{
    unsigned different = 0;
    QVariant known;
    for (std::size_t i = 0; i < m_groups.size(); ++i)
    {
        const Group& group = m_groups[i];
        if (m_hasGaps && group.objects.contains(nullptr))
            continue;
        if (group.objects.size() > 1)
            different |= group.type->differences(group.objects, property[int(i)]);
        if (m_groups.size() < 2)
            break;
        const QVariant value = group.type->read(group.objects.first(), property[int(i)]);
        if (known.isValid())
            different |= differentComponents(known, value);
        known = value;
    }
    return different;
}

QVector<QVariant> Selection::values(const SharedProperty& property) const
{
    QVector<QVariant> values;
    for (std::size_t i = 0; i < m_groups.size(); ++i)
        for (void* object : m_groups[i].objects)
            values << (object ? m_groups[i].type->read(object, property[int(i)]) : QVariant());
    return values;
}

void Selection::write(const SharedProperty& property, const QVector<QVariant>& values) const
{
    int next = 0;
    for (std::size_t i = 0; i < m_groups.size(); ++i)
        for (void* object : m_groups[i].objects)
        {
            const QVariant& value = values[next++];
            if (object && value.isValid())
                m_groups[i].type->write(object, property[int(i)], value);
        }
}

int Selection::count(const SharedProperty& list) const
{
    int count = std::numeric_limits<int>::max();
    forEach(list,
            [&count](const ObjectType& type, int index, void* object)
            {
                count = std::min(count, type.count(object, index));
                return true;
            });
    return count == std::numeric_limits<int>::max() ? 0 : count;
}

QVector<QObject*> Selection::notifiers() const
{
    QVector<QObject*> notifiers;
    for (const Group& group : m_groups)
        for (const QPointer<QObject>& guard : group.guards)
            notifiers << guard;
    return notifiers;
}
} // namespace orvek::host
