#pragma once

#include <Orvek/Host/ObjectType.h>

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>

#include <functional>
#include <memory>

namespace orvek::host
{
//! Reads and writes objects of one type as JSON, member by member as their properties are described.
//!
//! The parts of a property's name are objects within objects, lists are arrays. What is written is read back to the
//! same bits: what cannot be, such as NaN or an enumerator without a key, is an error when it is written. Reading
//! changes all of an object or nothing. Messages name the file, the place and what is expected, in the user's language.
//! An object of this class keeps what the last call had to say, and serves one open file.
class ORVEKQTHOST_EXPORT ObjectFile
{
public:
    //! What becomes of members of a file that the type does not have: each is named in warnings(), or it is kept and
    //! written again by the next write. In elements of lists, which may go, they are never kept.
    enum class UnknownMembers
    {
        Warn,
        Keep
    };

    //! Without a type all operations fail.
    explicit ObjectFile(std::shared_ptr<const ObjectType> type);
    ~ObjectFile();

    //! Reads the object from the file called fileName. Members that the file does not have keep their values; elements
    //! of lists have their defaults before they are read. Returns false and leaves the object as it is if anything is
    //! wrong.
    bool read(const QString& fileName, void* object);
    //! Reads the object from the contents of a file, and returns the same as read().
    bool fromBytes(const QByteArray& contents, void* object);
    //! Reads the object from json, which the host has parsed, and returns the same as read().
    bool fromJson(const QJsonObject& json, void* object);

    //! Writes the object to the file called fileName; an old one is replaced when all is written. Returns false, and
    //! leaves the file as it is, if the object has a value that could not be read again, or the file cannot be written.
    bool write(const QString& fileName, const void* object);
    //! Puts the object into json, which must not be null. Returns false and leaves json as it is if the object has a
    //! value that could not be read again.
    bool toJson(const void* object, QJsonObject* json);

    //! What was wrong in the last call: "materials[2].roughness: expected a number from 0 to 1, found "abc"", behind
    //! the name of the file if there is one. Empty if it succeeded.
    QString errorString() const;
    //! What the last call had to ignore, at most 20 lines and one with the number of the others.
    QStringList warnings() const;

    //! Default UnknownMembers::Warn.
    UnknownMembers unknownMembers() const;
    void setUnknownMembers(UnknownMembers treatment);

    //! Members that are written beside those of the object, and must be in a file with these values to be read: the
    //! name of the format and its version. Must not have names of properties. Default empty.
    QJsonObject header() const;
    void setHeader(const QJsonObject& header);

    //! Called with each name of a file in the object unless it is empty: read returns what the object gets for a name
    //! in the file, write the opposite, for example a name relative to the folder. Empty functions, the default, leave
    //! names as they are.
    void setFileNames(std::function<QString(const QString& inFile)> read,
                      std::function<QString(const QString& inObject)> write);

    //! The most bytes that a file may have to be read or written. Default 64 MiB. Values below 1 are 1.
    qint64 maximumSize() const;
    void setMaximumSize(qint64 bytes);

private:
    Q_DISABLE_COPY(ObjectFile)
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
