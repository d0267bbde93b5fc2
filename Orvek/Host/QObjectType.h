#pragma once

#include <Orvek/Host/ObjectType.h>

#include <memory>

namespace orvek::host
{
//! The properties of any class derived from QObject, by its meta-object.
//!
//! Lists properties of type double, float, whole numbers that fit an int, enumerations, bool, QString, QUrl, QVector3D
//! and QColor, those of the base classes first. Others are left out, and so are dynamic ones. Q_CLASSINFO adds what a
//! meta-object does not know about a property, for example its range:
//!
//! Q_CLASSINFO("property:roughness", "minimum=0; maximum=1; step=0.01; section=Surface")
//!
//! Objects are passed as QObject pointers, of that class or one derived from it. Changes are followed by means of the
//! properties' NOTIFY signals.
class ORVEKQTHOST_EXPORT QObjectType : public ObjectType
{
public:
    //! Lists the properties of the class with that metaObject, which must not be null, and of its base classes up to
    //! and including first; null, the default, includes all of them. If first is not a base class, only the class's own
    //! are listed. Defaults come from Q_CLASSINFO, otherwise from the sample; without either a property has none. The
    //! sample is not kept.
    explicit QObjectType(const QMetaObject* metaObject, const QMetaObject* first = nullptr,
                         const QObject* sample = nullptr);
    ~QObjectType() override;

    //! See ObjectType.
    QVariant read(const void* object, int property) const override;
    bool write(void* object, int property, const QVariant& value) const override;
    QObject* notifier(void* object, int property) const override;
    QMetaMethod notifySignal(int property) const override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
