#pragma once

#include <Orvek/Host/Property.h>

#include <QtCore/QHash>
#include <QtCore/QMetaMethod>
#include <QtCore/QObject>

namespace orvek::host
{
//! The properties of the objects of one type, and how they are read and written.
//!
//! It is the one interface to an engine's own reflection: derive from it, list the properties, read and write them.
//! Structs get theirs from Description<T>, QObjects from QObjectType. An object is only an address here; the derived
//! class knows what it points to. Indices refer to properties() and are valid; objects are not null and not owned.
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
    //! The section of the property. If that is empty, the last part of the nested struct's name, or the name of the
    //! type, in words.
    QString sectionTitle(int property) const;

    //! The value of the property in the object, in its own precision and of the type listed at PropertyKind: writing it
    //! back changes no bit of the object.
    virtual QVariant read(const void* object, int property) const = 0;
    //! Stores the value. Returns false and changes nothing if the object cannot hold it: the wrong type, a number that
    //! does not fit its member, a read-only property of a QObject. Does not check ranges and choices, as undo must be
    //! able to restore any old value.
    virtual bool write(void* object, int property, const QVariant& value) const = 0;

    //! Which components of the property differ among the objects: bit 0 for a number, a text, a flag and the first
    //! component of a vector or colour, bits 1 to 3 for the others. 0 if all are equal to the last bit. By default it
    //! reads all values; a type that compares in place is faster with many objects.
    virtual unsigned differences(const QVector<void*>& objects, int property) const;

    //! For lists: the number of elements, the address of one, valid until the list changes, and setting the length; new
    //! elements have their defaults. By default these return 0, null and false.
    virtual int count(const void* object, int property) const;
    virtual void* element(void* object, int property, int index) const;
    virtual bool resize(void* object, int property, int count) const;

    //! For QObjects: the object and its signal that announce a change of the property. By default null and an invalid
    //! method.
    virtual QObject* notifier(void* object, int property) const;
    virtual QMetaMethod notifySignal(int property) const;

    //! What is wrong with the descriptions, one message each, which names type and property: an empty or repeated name,
    //! a minimum above the maximum, a default outside the range or of the wrong type, a step below 0, a logarithmic
    //! range that reaches 0, a choice without entries or with a repeated key or value, a power of two that is not one,
    //! a list without a type, a name that is also that of a nested struct. Empty if there is nothing.
    QStringList errors() const;

    //! Whether all stored properties of the objects a and b are equal to the last bit, including lists.
    bool equal(const void* a, const void* b) const;
    //! Copies all stored properties from one object to another. Returns false if the target refused one; the others are
    //! copied even then.
    bool copy(const void* from, void* to) const;
    //! Changes the stored properties of the object one by one, and vectors and colours component by component, to
    //! another valid value, calls visit and restores the old value. A list is one element longer during its call; an
    //! empty one also while the members of its elements are changed. A test can use this to prove that a host's files,
    //! copies and undo omit nothing. The path is "layers[0].thickness" or "position[2]". Returns the paths of what
    //! could not be changed, because there is only one valid value or write() refused the other.
    QStringList changeEach(void* object, const std::function<void(const QString& path)>& visit) const;

protected:
    //! The name is for messages; properties() returns the properties.
    explicit ObjectType(QString name, QVector<Property> properties = {});
    //! For types that find their properties while they are constructed.
    void setProperties(QVector<Property> properties);
    //! Adds the message to errors(), for problems that the derived class finds; it names type and property.
    void addError(const QString& message) { m_errors << message; }

private:
    Q_DISABLE_COPY(ObjectType)
    const QString m_name;
    QVector<Property> m_properties;
    QHash<QString, int> m_indices;
    QStringList m_errors;
};

//! Whether two values are equal to the last bit, even if they are NaN, which QVariant's own comparison cannot tell. The
//! types must be equal. Colours are equal if they are equal as 16-bit RGB.
ORVEKQTHOST_EXPORT bool identical(const QVariant& a, const QVariant& b);
} // namespace orvek::host
