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

//! What sort of value a property has, and with it the editor that shows it. Behind each: the type in which
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
    //! What files say; unique within the property, not translated.
    QString key;
    //! What users see.
    QString title;
    //! Unique within the property.
    int value = 0;
};

//! The description of one property: all that panel, file and undo need to know of it. Plain data.
struct Property
{
    //! Identifies it in files and forms. Unique within its type. That of a nested struct's member has the name of the
    //! struct before it: "material.roughness".
    QString name;
    //! What users see; translated by the host. If it is empty, the name's last part in words: "baseColour" is "Base
    //! Colour".
    QString title;
    //! Title of the section that shows it. Properties of one section need not follow each other. Empty: a section named
    //! like the nested struct, or like the type.
    QString section;
    //! What sort of value it has. Default PropertyKind::Number.
    PropertyKind kind = PropertyKind::Number;

    //! Lower end of the range: of the value, or of each component of a vector. Default 0; Description and QObjectType
    //! have others, according to the kind. Must not exceed the maximum. Choices have their values, and other kinds
    //! ignore it.
    double minimum = 0.0;
    //! Upper end of the range, like minimum. Default 1.
    double maximum = 1.0;
    //! Distance of two slider positions, in the unit of the value. 0, the default, is the editor's own.
    double step = 0.0;
    //! Equal ratios take equal distances on the slider. Default false. The minimum must be above 0 then.
    bool logarithmic = false;
    //! Behind the value, for example "m". Default empty.
    QString units;
    //! What resetting returns to, as read() returns it; within the range. Invalid: the property has no default, and its
    //! reset button is not used.
    QVariant defaultValue;
    //! Entries of a choice in the order shown; at least one. Other kinds have none.
    QVector<PropertyChoice> choices;
    //! Of the row and its parts. Default empty.
    QString toolTip;
    //! Of the dialog of a file: "Meshes (*.obj *.ply)". Default empty: all files.
    QString fileFilter;
    //! Shown but not changed by the user. Default false.
    bool readOnly = false;
    //! A drag of the slider changes the value all the while and not only at its end. Default true.
    bool live = true;
    //! In files and comparisons as well as in panels. Default true; false for what is only shown, such as a frame rate.
    bool stored = true;
    //! The object holds a float, not a double: files get the shortest decimal that is read back as the same float, and
    //! ranges are compared as floats. Of vectors it is always so. Default false.
    bool singlePrecision = false;
    //! The most characters of a text or file, or elements of a list, that files may have. Default 0: any number.
    int maximumLength = 0;

    //! Whether its editor is enabled for the object, which is of the type that the property belongs to. Empty, the
    //! default: always. Asked again whenever values may have changed.
    std::function<bool(const void* object)> enabledWhen;
    //! Whether its row is shown, like enabledWhen.
    std::function<bool(const void* object)> shownWhen;

    //! Of a list: the type of its elements, otherwise null.
    std::shared_ptr<const ObjectType> elementType;

    //! The title, or what stands for it if it is empty.
    ORVEKQTHOST_EXPORT QString displayTitle() const;
    //! The title of the choice with this value; an empty one if there is none.
    ORVEKQTHOST_EXPORT QString choiceTitle(int value) const;
};
} // namespace orvek::host
