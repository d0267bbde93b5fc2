#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <functional>
#include <memory>

namespace orvek::host
{
class ObjectType;

//! What sort of value a property has, which decides the editor that shows it. Each with the type in which
//! ObjectType::read() returns it.
enum class PropertyKind
{
    Number,          //!< double; a slider
    Integer,         //!< int; a slider of whole numbers
    Choice,          //!< int, one of the choices; a drop-down list
    PowerOfTwo,      //!< int; a slider through powers of two
    Vector,          //!< QVector3D; three fields
    Colour,          //!< QVector3D (linear, may exceed 1) or an opaque QColor; three fields and a swatch
    ColourWithAlpha, //!< QColor; four fields and a swatch
    Text,            //!< QString
    File,            //!< QString, the name of a file; a field with a browse button
    Flag,            //!< bool; a check box
    List             //!< objects of another type; read through ObjectType::count() and element()
};

//! One entry of a choice.
struct PropertyChoice
{
    //! Written to files; unique within the property, not translated.
    QString key;
    //! Shown to users.
    QString title;
    //! Unique within the property.
    int value = 0;
};

//! The description of one property: all that panel, file and undo need to know about it. Plain data.
struct Property
{
    //! Identifies it in files and forms. Unique within its type. Members of a nested struct have the struct's name
    //! before theirs: "material.roughness".
    QString name;
    //! Shown to users; translated by the host. If empty, the last part of the name in words: "baseColour" becomes "Base
    //! Colour".
    QString title;
    //! Title of the section that shows it. Properties of one section need not be consecutive. If empty, a section named
    //! after the nested struct or the type.
    QString section;
    //! What sort of value it has. Default PropertyKind::Number.
    PropertyKind kind = PropertyKind::Number;

    //! Lower end of the range: of the value, or of each component of a vector. Default 0; Description and QObjectType
    //! set others, depending on the kind. Must not exceed the maximum. Used for numbers, whole numbers, powers of two,
    //! vectors and linear colours only.
    double minimum = 0.0;
    //! Upper end of the range, like minimum. Default 1.
    double maximum = 1.0;
    //! Distance between two slider positions, in the unit of the value. Default 0: the editor's own.
    double step = 0.0;
    //! Whether equal distances on the slider stand for equal ratios. Default false. If true, the minimum must be above
    //! 0.
    bool logarithmic = false;
    //! Shown after the value, for example "m". Default empty.
    QString units;
    //! The value that resetting restores, of the type that read() returns and within the range. Invalid: the property
    //! cannot be reset.
    QVariant defaultValue;
    //! Entries of a choice in the order shown, at least one. Empty for other kinds.
    QVector<PropertyChoice> choices;
    //! Tool tip of the row and its parts. Default empty.
    QString toolTip;
    //! File types in the dialog of a file: "Meshes (*.obj *.ply)". Default empty: all files.
    QString fileFilter;
    //! Whether it is shown but cannot be changed by the user. Default false.
    bool readOnly = false;
    //! Whether the value changes during a drag of the slider, not only at its end. Default true.
    bool live = true;
    //! Whether it takes part in files and comparisons, not only in panels. Default true; false for what is only shown,
    //! such as a frame rate.
    bool stored = true;
    //! Whether the object holds a float, not a double: files get the shortest decimal that reads back as the same
    //! float, and ranges are compared as floats. Always so for vectors. Default false.
    bool singlePrecision = false;
    //! The largest number of characters of a text or file name, or of elements of a list, in files. Default 0:
    //! unlimited.
    int maximumLength = 0;

    //! Whether the editor is enabled for the object, which has the type that the property belongs to. Empty, the
    //! default: always. Called again whenever values may have changed.
    std::function<bool(const void* object)> enabledWhen;
    //! Whether the row is shown; otherwise like enabledWhen.
    std::function<bool(const void* object)> shownWhen;

    //! For a list, the type of its elements; otherwise null.
    std::shared_ptr<const ObjectType> elementType;

    //! The title; if it is empty, the one made from the name.
    ORVEKQTHOST_EXPORT QString displayTitle() const;
    //! The title of the choice with this value; empty if there is none.
    ORVEKQTHOST_EXPORT QString choiceTitle(int value) const;
};
} // namespace orvek::host
