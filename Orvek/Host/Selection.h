#pragma once

#include <Orvek/Host/Inspector.h>

#include <QtCore/QPointer>

#include <memory>
#include <vector>

namespace orvek::host
{
// A property that all objects of a selection share: its index in the type of each group.
using SharedProperty = QVector<int>;

// Objects of one or several types whose values are shown and changed together. Undo steps keep the selection they
// changed, so it may outlive its display and must look for its objects again before it writes to them. Private.
class Selection final
{
public:
    struct Keys
    {
        Inspector::KeyOf of;
        Inspector::ObjectOf object;
    };
    // The values of one property in all objects, in the order of the groups.
    struct State
    {
        std::shared_ptr<Selection> selection;
        SharedProperty property;
        QString path; // the name given to Inspector::edited()
        QVector<QVariant> values;
    };

    //! Groups that contain only null pointers are omitted.
    Selection(const QVector<Inspector::Objects>& objects, const Keys& keys);
    //! The elements with that index in a list.
    Selection(std::shared_ptr<Selection> owner, SharedProperty list, int index);

    bool isEmpty() const { return m_groups.empty(); }
    //! The types of the groups, in their order.
    QVector<const ObjectType*> types() const;
    //! All objects; for elements of a list, the objects that own them.
    QVector<void*> roots() const;
    //! The properties of the first type that all the others have too, with the same name and kind.
    QVector<SharedProperty> shared() const;
    const Property& description(const SharedProperty& property) const;
    QString sectionTitle(const SharedProperty& property) const;

    //! Finds the objects again: elements of a list, objects known by keys, destroyed objects.
    void resolve();
    //! Whether some objects no longer exist, and those that do.
    bool hasGaps() const { return m_hasGaps; }
    QVector<Inspector::Objects> remaining() const;
    //! The value of the first object.
    QVariant first(const SharedProperty& property) const;
    unsigned differences(const SharedProperty& property) const;
    //! Calls visit(type, index, object) for each existing object until it returns false.
    template <typename Visit>
    void forEach(const SharedProperty& property, Visit visit) const
    {
        for (std::size_t i = 0; i < m_groups.size(); ++i)
            for (void* object : m_groups[i].objects)
                if (object && !visit(*m_groups[i].type, property[int(i)], object))
                    return;
    }
    //! Calls visit for each type.
    template <typename Visit>
    void forEachDescription(const SharedProperty& property, Visit visit) const
    {
        for (std::size_t i = 0; i < m_groups.size(); ++i)
            visit(m_groups[i].type->properties().at(property[int(i)]));
    }
    QVector<QVariant> values(const SharedProperty& property) const;
    void write(const SharedProperty& property, const QVector<QVariant>& values) const;
    //! The length of the shortest list.
    int count(const SharedProperty& list) const;
    //! The objects as QObjects; null for those that are not.
    QVector<QObject*> notifiers() const;

private:
    struct Group
    {
        std::shared_ptr<const ObjectType> type;
        QVector<void*> objects;            // null for those that no longer exist
        QVector<QPointer<QObject>> guards; // for objects that are QObjects, otherwise empty
        QVariantList keys;                 // if the host has given keys, otherwise empty
    };

    std::vector<Group> m_groups;
    bool m_hasGaps = false;
    Keys m_keys;
    // For elements only:
    std::shared_ptr<Selection> m_owner;
    SharedProperty m_list;
    int m_index = 0;
};
} // namespace orvek::host

Q_DECLARE_METATYPE(std::shared_ptr<const orvek::host::Selection::State>)
