#pragma once

#include <Orvek/Host/DescriptionBase.h>

#include <QtGui/QColor>
#include <QtGui/QVector3D>

#include <string>
#include <utility>
#include <vector>

namespace orvek::host
{
//! Refines the description of one property by chained calls. Property documents each setting.
template <typename T, typename Value = void>
class DescribedProperty
{
public:
    //! Each sets the member of Property with its name, and returns the property for the next call.
    DescribedProperty title(const QString& text) { return set(&Property::title, text); }
    DescribedProperty section(const QString& title) { return set(&Property::section, title); }
    DescribedProperty units(const QString& text) { return set(&Property::units, text); }
    DescribedProperty toolTip(const QString& text) { return set(&Property::toolTip, text); }
    DescribedProperty fileFilter(const QString& filter) { return set(&Property::fileFilter, filter); }
    DescribedProperty step(double distance) { return set(&Property::step, distance); }
    DescribedProperty logarithmic(bool on = true) { return set(&Property::logarithmic, on); }
    DescribedProperty readOnly(bool on = true) { return set(&Property::readOnly, on); }
    DescribedProperty live(bool on) { return set(&Property::live, on); }
    DescribedProperty stored(bool on) { return set(&Property::stored, on); }
    DescribedProperty maximumLength(int length) { return set(&Property::maximumLength, length); }

    //! Replaces the sample's value; must have the type listed at PropertyKind. An invalid one removes the default.
    DescribedProperty defaultValue(const QVariant& value) { return set(&Property::defaultValue, value); }
    //! Both ends of the range, in the unit of the value.
    DescribedProperty range(double minimum, double maximum)
    {
        return set(&Property::minimum, minimum).set(&Property::maximum, maximum);
    }
    //! Adds an entry to a choice: its key in files, its title for users, and an enumerator or number.
    template <typename E>
    DescribedProperty entry(const QString& key, const QString& title, E value)
    {
        static_assert(!std::is_void_v<Value>, "only choices have entries");
        static_assert(std::is_same_v<E, Value> || std::is_integral_v<Value>, "an enumerator of another type");
        property().choices.append({key, title, static_cast<int>(value)});
        return *this;
    }
    //! When the editor is enabled: a function bool(const T&), called with the object.
    template <typename F>
    DescribedProperty enabledWhen(F condition)
    {
        property().enabledWhen = onStruct(std::move(condition));
        return *this;
    }
    //! When the row is shown: a function bool(const T&), called with the object.
    template <typename F>
    DescribedProperty shownWhen(F condition)
    {
        property().shownWhen = onStruct(std::move(condition));
        return *this;
    }

private:
    template <typename>
    friend class Description;
    DescribedProperty(DescriptionBase& description, int index) : m_description(&description), m_index(index) {}
    Property& property() { return m_description->property(m_index); }
    template <typename M, typename V>
    DescribedProperty set(M Property::*member, const V& value)
    {
        property().*member = value;
        return *this;
    }
    template <typename F>
    static std::function<bool(const void*)> onStruct(F condition)
    {
        return [condition = std::move(condition)](const void* object)
        { return bool(condition(*static_cast<const T*>(object))); };
    }

    DescriptionBase* m_description; // not owned
    int m_index;
};

//! Describes a struct by pointers to its members, once for panel, file, comparison and undo.
//!
//! Each property takes one line; Property documents the chained settings and their defaults. Members of base classes
//! are described like the struct's own; private ones need a function of the struct. The description may be destroyed
//! after type() has been called.
template <typename T>
class Description : private DescriptionBase
{
public:
    //! The name is used in messages. The values of the sample are the defaults of the properties; without a sample,
    //! those of a default-constructed T.
    explicit Description(const QString& name) : DescriptionBase(name, nameOf<T>()), m_sample() {}
    Description(const QString& name, T sample) : DescriptionBase(name, nameOf<T>()), m_sample(std::move(sample)) {}

    using DescriptionBase::errors;
    using DescriptionBase::type;

    //! Title of the section for the properties described from here on.
    void section(const QString& title) { setSection(title); }

    //! A float or double.
    template <typename B, typename M>
    DescribedProperty<T> number(const char* name, M B::*member)
    {
        static_assert(std::is_same_v<M, float> || std::is_same_v<M, double>, "a number is a float or double");
        return added(PropertyKind::Number, name, member, std::is_same_v<M, float> ? Storage::Float : Storage::Double);
    }
    //! A whole number of at most the size of an int, and not an unsigned int.
    template <typename B, typename M>
    DescribedProperty<T> integer(const char* name, M B::*member)
    {
        static_assert(std::is_integral_v<M> && !std::is_same_v<M, bool> &&
                          (sizeof(M) < 4 || (sizeof(M) == 4 && std::is_signed_v<M>)),
                      "a whole number fits an int");
        return added(PropertyKind::Integer, name, member, wholeStorage<M>());
    }
    //! An enumeration or whole number of at most 32 bits, with an entry() for each value.
    template <typename B, typename M>
    DescribedProperty<T, M> choice(const char* name, M B::*member)
    {
        static_assert((std::is_enum_v<M> || std::is_integral_v<M>)&&sizeof(M) <= 4 && !std::is_same_v<M, bool>,
                      "a choice is an enumeration or a whole number of at most 32 bits");
        return added<M>(PropertyKind::Choice, name, member, wholeStorage<M>());
    }
    //! A whole number of at most 32 bits.
    template <typename B, typename M>
    DescribedProperty<T> powerOfTwo(const char* name, M B::*member)
    {
        static_assert(std::is_integral_v<M> && sizeof(M) <= 4 && !std::is_same_v<M, bool>,
                      "a power of two is a whole number of at most 32 bits");
        return added(PropertyKind::PowerOfTwo, name, member, wholeStorage<M>());
    }
    //! Three numbers, unlimited unless a range is set.
    template <typename B>
    DescribedProperty<T> vector(const char* name, QVector3D B::*member)
    {
        return added(PropertyKind::Vector, name, member, Storage::Vector);
    }
    //! An opaque colour: a QColor, or a QVector3D for linear ones.
    template <typename B, typename M>
    DescribedProperty<T> colour(const char* name, M B::*member)
    {
        static_assert(std::is_same_v<M, QColor> || std::is_same_v<M, QVector3D>, "a colour is a QColor or QVector3D");
        return added(PropertyKind::Colour, name, member, std::is_same_v<M, QColor> ? Storage::Colour : Storage::Vector);
    }
    //! A colour that may be transparent.
    template <typename B>
    DescribedProperty<T> colourWithAlpha(const char* name, QColor B::*member)
    {
        return added(PropertyKind::ColourWithAlpha, name, member, Storage::Colour);
    }
    //! A QString, or a std::string in UTF-8.
    template <typename B, typename M>
    DescribedProperty<T> text(const char* name, M B::*member)
    {
        return added(PropertyKind::Text, name, member, textStorage<M>());
    }
    //! A file name in a QString, or in a std::string in UTF-8.
    template <typename B, typename M>
    DescribedProperty<T> file(const char* name, M B::*member)
    {
        return added(PropertyKind::File, name, member, textStorage<M>());
    }
    //! True or false.
    template <typename B>
    DescribedProperty<T> flag(const char* name, bool B::*member)
    {
        return added(PropertyKind::Flag, name, member, Storage::Bool);
    }

    //! A struct within the struct: all of its properties, with the name before theirs. The type must come from the
    //! Description of that struct. Properties keep their sections; those without one go into a section named like the
    //! member, unless section() sets another. The defaults are those of this sample.
    template <typename B, typename M>
    void nested(const char* name, M B::*member, const std::shared_ptr<const ObjectType>& type)
    {
        addNested(name, &m_sample, offsetOf(member), type, nameOf<M>());
    }

    //! A list of structs: a QVector or std::vector with default-constructible elements. A type from the Description of
    //! another struct is an error.
    template <typename B, typename L>
    DescribedProperty<T> list(const char* name, L B::*member, const std::shared_ptr<const ObjectType>& elementType)
    {
        using Element = typename L::value_type;
        static_assert(std::is_same_v<L, QVector<Element>> || std::is_same_v<L, std::vector<Element>>,
                      "a list is a QVector or std::vector");
        constexpr ListOperations Operations = {
            [](const void* list) { return int(static_cast<const L*>(list)->size()); },
            [](void* list, int index) -> void* { return &(*static_cast<L*>(list))[index]; },
            [](void* list, int count) { static_cast<L*>(list)->resize(count); }};
        return {*this, addList(name, offsetOf(member), Operations, elementType, nameOf<Element>())};
    }

private:
    template <typename B, typename M>
    size_t offsetOf(M B::*member) const
    {
        static_assert(std::is_base_of_v<B, T>, "a member of another struct");
        return size_t(reinterpret_cast<const char*>(&(m_sample.*member)) - reinterpret_cast<const char*>(&m_sample));
    }
    template <typename Value = void, typename B, typename M>
    DescribedProperty<T, Value> added(PropertyKind kind, const char* name, M B::*member, Storage storage)
    {
        return {*this, add(kind, name, &m_sample, offsetOf(member), storage)};
    }
    template <typename M>
    static constexpr Storage textStorage()
    {
        static_assert(std::is_same_v<M, QString> || std::is_same_v<M, std::string>,
                      "a text is a QString or std::string");
        return std::is_same_v<M, QString> ? Storage::Text : Storage::Utf8;
    }

    const T m_sample;
};
} // namespace orvek::host
