#pragma once

#include <Orvek/Host/ObjectType.h>

#include <type_traits>

namespace orvek::host
{
//! What all descriptions of structs have in common; hosts use Description<T>. A member is known by its distance from
//! the beginning of the struct and by its type in memory, so that nothing is instantiated for each struct.
class DescriptionBase
{
public:
    //! Type of a member in memory.
    enum class Storage
    {
        Float,
        Double,
        Int8,
        UInt8,
        Int16,
        UInt16,
        Int32, //!< of unsigned ones the same bits
        Bool,
        Vector,
        Colour,
        Text,
        Utf8, //!< std::string
        List
    };
    //! How the elements of a list are reached.
    struct ListOperations
    {
        int (*count)(const void* list);
        void* (*element)(void* list, int index);
        void (*resize)(void* list, int count);
    };

    //! The finished type, for Inspector, ObjectFile and the rest. Null if a description is wrong: each of errors() is
    //! written as a warning then. What is described afterwards is in types that are asked for later.
    ORVEKQTHOST_EXPORT std::shared_ptr<const ObjectType> type() const;
    //! What type() would warn about. Empty if all is well.
    ORVEKQTHOST_EXPORT QStringList errors() const;
    //! The property of that index, to be changed.
    ORVEKQTHOST_EXPORT Property& property(int index);

protected:
    //! Structs are told from each other by nameOf(); hosts may be built without RTTI.
    ORVEKQTHOST_EXPORT DescriptionBase(const QString& name, const char* structType);
    ORVEKQTHOST_EXPORT ~DescriptionBase();
    //! Title of the section of what is described from here on. Default empty, which is Property::section's default.
    ORVEKQTHOST_EXPORT void setSection(const QString& title);
    //! Describes the member at that distance, and returns the index of the property. Its default is what the sample
    //! has.
    ORVEKQTHOST_EXPORT int add(PropertyKind kind, const char* name, const void* sample, size_t offset, Storage storage);
    ORVEKQTHOST_EXPORT int addList(const char* name, size_t offset, const ListOperations& operations,
                                   const std::shared_ptr<const ObjectType>& elementType, const char* elementStruct);
    //! Describes all that the type describes once more, for the struct at that distance.
    ORVEKQTHOST_EXPORT void addNested(const char* name, const void* sample, size_t offset,
                                      const std::shared_ptr<const ObjectType>& type, const char* nestedStruct);

    //! A text that names the struct; nobody reads it.
    template <typename T>
    static const char* nameOf()
    {
        return Q_FUNC_INFO;
    }

    //! The storage of a whole number or enumerator.
    template <typename M>
    static constexpr Storage wholeStorage()
    {
        constexpr bool IsSigned = std::is_signed<M>::value;
        if constexpr (std::is_enum_v<M>)
            return wholeStorage<std::underlying_type_t<M>>();
        else if constexpr (sizeof(M) == 1)
            return IsSigned ? Storage::Int8 : Storage::UInt8;
        else if constexpr (sizeof(M) == 2)
            return IsSigned ? Storage::Int16 : Storage::UInt16;
        else
            return Storage::Int32;
    }

private:
    Q_DISABLE_COPY(DescriptionBase)
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
