#pragma once

#include <Orvek/Host/ObjectType.h>

#include <type_traits>

namespace orvek::host
{
//! The common part of all descriptions of structs; hosts use Description<T>. A member is known by its offset in the
//! struct and its type in memory, so little code is instantiated for each struct.
class DescriptionBase
{
public:
    //! The type of a member in memory.
    enum class Storage
    {
        Float,
        Double,
        Int8,
        UInt8,
        Int16,
        UInt16,
        Int32, //!< also for unsigned ones, with the same bits
        Bool,
        Vector,
        Colour,
        Text,
        Utf8, //!< std::string
        List
    };
    //! Access to the elements of a list.
    struct ListOperations
    {
        int (*count)(const void* list);
        void* (*element)(void* list, int index);
        void (*resize)(void* list, int count);
    };

    //! The finished type, for Inspector, ObjectFile and the rest. Null if a description is wrong; then each of errors()
    //! is printed as a warning. Properties described later only appear in types requested after that.
    ORVEKQTHOST_EXPORT std::shared_ptr<const ObjectType> type() const;
    //! What type() would warn about; empty if there is nothing.
    ORVEKQTHOST_EXPORT QStringList errors() const;
    //! The property with that index, for changing it.
    ORVEKQTHOST_EXPORT Property& property(int index);

protected:
    //! Structs are distinguished by nameOf(), as hosts may be built without RTTI.
    ORVEKQTHOST_EXPORT DescriptionBase(const QString& name, const char* structType);
    ORVEKQTHOST_EXPORT ~DescriptionBase();
    //! Title of the section for the properties described from here on. Default empty, which is Property::section's
    //! default.
    ORVEKQTHOST_EXPORT void setSection(const QString& title);
    //! Describes the member at that offset and returns the index of the property. Its default is the value in the
    //! sample.
    ORVEKQTHOST_EXPORT int add(PropertyKind kind, const char* name, const void* sample, size_t offset, Storage storage);
    ORVEKQTHOST_EXPORT int addList(const char* name, size_t offset, const ListOperations& operations,
                                   const std::shared_ptr<const ObjectType>& elementType, const char* elementStruct);
    //! Describes all properties of the type again, for the struct at that offset.
    ORVEKQTHOST_EXPORT void addNested(const char* name, const void* sample, size_t offset,
                                      const std::shared_ptr<const ObjectType>& type, const char* nestedStruct);

    //! A text that is different for each struct; never shown.
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
