#pragma once

#include <Orvek/Host/ObjectType.h>

#include <memory>

namespace orvek::host
{
//! The properties of any class derived from QObject, by its meta-object.
//!
//! Properties of type double, float, whole numbers that fit an int, enumerations, bool, QString, QUrl, QVector3D and
//! QColor are listed, those of the base classes first. Others are left out, and so are dynamic ones. Q_CLASSINFO says
//! what a meta-object does not know of a property, for example its range:
//!
//! Q_CLASSINFO("property:roughness", "minimum=0; maximum=1; step=0.01; section=Surface")
//!
//! Objects are passed as QObject pointers, of that class or one derived from it. Changes are followed by the
//! properties' NOTIFY signals.
class ORVEKQTHOST_EXPORT QObjectType : public ObjectType
{
public:
    //! Lists the properties of the class with that metaObject, which must not be null, and of its bases up to and
    //! including first; null, the default, includes all up to QObject. If first is not one of them, only the class's
    //! own. The values of the sample are the properties' defaults unless the class says others; without one, a property
    //! has a default only if the class says it. The sample is not kept.
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
