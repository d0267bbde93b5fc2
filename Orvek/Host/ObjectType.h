#pragma once

#include <Orvek/Host/Property.h>

#include <QtCore/QHash>
#include <QtCore/QMetaMethod>
#include <QtCore/QObject>

namespace orvek::host
{
//! The properties that objects of one type have, and how they are read and written.
//!
//! It is the one interface to an engine's own reflection: derive from it, list the properties, read and write them.
//! Structs get theirs from Description<T>, QObjects from QObjectType. An object is only an address to it: what kind of
//! thing lies there, the derived class knows. Indices are those of properties(), and valid; objects are not null and
//! not owned.
class ORVEKQTHOST_EXPORT ObjectType
{
public:
    virtual ~ObjectType();

    //! Names the type in messages, for example "Material".
    QString name() const { return m_name; }
    //! In the order shown.
    const QVector<Property>& properties() const { return m_properties; }
    //! The index of the property of this name, -1 if there is none.
    int indexOf(const QString& name) const;
    //! The section of the property, or what stands for it if it is empty: the last part of the nested struct's name, or
    //! the name of the type, in words.
    QString sectionTitle(int property) const;

    //! The value of the property in the object, in its own precision and of the type that PropertyKind says: writing it
    //! back changes no bit of the object.
    virtual QVariant read(const void* object, int property) const = 0;
    //! Stores the value. Returns false and changes nothing if the object cannot hold it: the wrong type, a number that
    //! does not fit its member, a read-only property of a QObject. Ranges and choices are not its concern, as undo must
    //! be able to put back whatever was there.
    virtual bool write(void* object, int property, const QVariant& value) const = 0;

    //! Which components of the property differ among the objects: bit 0 for a number, a text, a flag and the first
    //! component of a vector or colour, bits 1 to 3 for the others. 0 if all are equal to the last bit. By default it
    //! reads all values; a type that can compare in place is faster with many objects.
    virtual unsigned differences(const QVector<void*>& objects, int property) const;

    //! For lists: how many elements the object has, the address of one, valid until the list changes, and a new length;
    //! new elements have their defaults. Defaults: 0, null, false.
    virtual int count(const void* object, int property) const;
    virtual void* element(void* object, int property, int index) const;
    virtual bool resize(void* object, int property, int count) const;

    //! The signal that tells of a change of the property, for objects that are QObjects; otherwise null and an invalid
    //! method, which are the defaults.
    virtual QObject* notifier(void* object, int property) const;
    virtual QMetaMethod notifySignal(int property) const;

    //! What is wrong with the descriptions, one message each, which names type and property: an empty name, two of one
    //! name, minimum above maximum, a default outside of the range or of the wrong type, a step below 0, a logarithmic
    //! range that reaches 0, a choice without entries or with two of one key or value, a power of two that is not one,
    //! a list without a type, a name that is also that of a nested struct. Empty if all is well.
    QStringList errors() const;

    //! Whether all stored properties of the objects a and b are equal to the last bit, those of lists too.
    bool equal(const void* a, const void* b) const;
    //! Copies all stored properties from one object to another. Returns false if that refused one; it has the others
    //! then.
    bool copy(const void* from, void* to) const;
    //! Changes one stored property of the object after the other, and one component of a vector or colour after the
    //! other, to another valid value, calls visit and puts the old value back. Lists have one element more during the
    //! call, and so have those that are empty while the members of their elements are changed. With it a test proves
    //! that files, copies and undo of a host leave out none of them. The path is "layers[0].thickness" or
    //! "position[2]". Returns the paths of what could not be changed, as there is only one valid value or write()
    //! refused the other.
    QStringList changeEach(void* object, const std::function<void(const QString& path)>& visit) const;

protected:
    //! Has a name for messages, and the properties.
    explicit ObjectType(QString name, QVector<Property> properties = {});
    //! For types that find their properties while they are constructed.
    void setProperties(QVector<Property> properties);
    //! Adds the message to errors(), for what the derived class finds; it names type and property.
    void addError(const QString& message) { m_errors << message; }

private:
    Q_DISABLE_COPY(ObjectType)
    const QString m_name;
    QVector<Property> m_properties;
    QHash<QString, int> m_indices;
    QStringList m_errors;
};

//! Whether two values are equal to the last bit, also if they are NaN, which QVariant's own comparison does not ask.
//! The types must be equal. Colours are equal if they are as RGB of 16 bits.
ORVEKQTHOST_EXPORT bool identical(const QVariant& a, const QVariant& b);
} // namespace orvek::host
