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
//! The parts of a property's name become nested objects, and lists become arrays. What is written is read back bit for
//! bit; what could not be, such as NaN or an enumerator without a key, is an error on writing. Reading changes all of
//! an object or nothing. Messages name the file, the place and what is expected, in the user's language. Each instance
//! keeps the messages of its last call, so use one per open file.
class ORVEKQTHOST_EXPORT ObjectFile
{
public:
    //! What happens to members of a file that the type does not have: each is named in warnings(), or it is kept and
    //! written again by the next write. In elements of lists, which may be removed, they are never kept.
    enum class UnknownMembers
    {
        Warn,
        Keep
    };

    //! Without a type all operations fail.
    explicit ObjectFile(std::shared_ptr<const ObjectType> type);
    ~ObjectFile();

    //! Reads the object from the file called fileName. Members missing in the file keep their values; elements of lists
    //! start with their defaults. If anything is wrong, returns false and leaves the object as it is.
    bool read(const QString& fileName, void* object);
    //! Reads the object from the contents of a file. Returns the same as read().
    bool fromBytes(const QByteArray& contents, void* object);
    //! Reads the object from json, which the host has parsed. Returns the same as read().
    bool fromJson(const QJsonObject& json, void* object);

    //! Writes the object to the file called fileName; an old one is replaced once everything is written. If the object
    //! has a value that could not be read again, or the file cannot be written, returns false and leaves the file as it
    //! is. A symbolic link stays, and its target is written; a pipe, a socket or a device is refused.
    bool write(const QString& fileName, const void* object);
    //! Writes the object into json, which must not be null. If the object has a value that could not be read again,
    //! returns false and leaves json as it is.
    bool toJson(const void* object, QJsonObject* json);

    //! What went wrong in the last call, after the file name if there is one: "materials[2].roughness: expected a
    //! number from 0 to 1, found "abc"". Empty if it succeeded.
    QString errorString() const;
    //! What the last call ignored: at most 20 lines, then one with the number of the others.
    QStringList warnings() const;

    //! Default UnknownMembers::Warn.
    UnknownMembers unknownMembers() const;
    void setUnknownMembers(UnknownMembers treatment);

    //! Members that are written beside those of the object and must be in a file, with these values, for it to be read:
    //! the name of the format and its version, for example. They must not have the name of a property. Default empty.
    QJsonObject header() const;
    void setHeader(const QJsonObject& header);

    //! Called for each file name in the object unless it is empty: read maps a name in the file to the one in the
    //! object, write does the opposite, for example to store names relative to the folder. Empty functions, the
    //! default, leave names as they are.
    void setFileNames(std::function<QString(const QString& inFile)> read,
                      std::function<QString(const QString& inObject)> write);

    //! The largest size of a file that is read or written, in bytes. Default 64 MiB. Values below 1 count as 1.
    qint64 maximumSize() const;
    void setMaximumSize(qint64 bytes);

private:
    Q_DISABLE_COPY(ObjectFile)
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
