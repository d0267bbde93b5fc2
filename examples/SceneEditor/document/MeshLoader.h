#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtGui/QVector3D>

#include <functional>
#include <memory>
#include <vector>

namespace sceneeditor
{
constexpr qint64 maximumMeshFileSize = qint64(512) << 20; //!< bytes
constexpr quint32 maximumTriangleCount = 5'000'000;       //!< so many take up to three gibibytes while they are read

//! A triangle mesh in model space, never empty and with finite numbers only. Not changed once it is shared.
struct MeshData
{
    struct Vertex
    {
        QVector3D position;
        QVector3D normal; //!< unit length
    };

    std::vector<Vertex> vertices;
    std::vector<quint32> indices; //!< three for each triangle, counter-clockwise seen from outside
    QVector3D minimum;            //!< of the bounding box
    QVector3D maximum;

    int triangleCount() const { return static_cast<int>(indices.size() / 3); }
};

using MeshPointer = std::shared_ptr<const MeshData>;

//! Called with 0..1 on the loading thread; false stops the load.
using MeshProgress = std::function<bool(double)>;

//! Reads the file on the calling thread. Null on failure, with an error that names the file and what was expected, and
//! null with an empty error when the progress function has stopped the load.
MeshPointer loadMesh(const QString& fileName, QString* error, const MeshProgress& progress = {});

//! File name patterns for a dialog: "*.obj" and so on.
QStringList meshFilePatterns();

//! Reads one mesh at a time on a thread of its own. Each load() ends in exactly one of loaded(), failed() and
//! cancelled(); all signals come on the loader's thread, never from inside load().
class MeshLoader : public QObject
{
    Q_OBJECT
public:
    explicit MeshLoader(QObject* parent = nullptr);
    //! Cancels and returns without waiting for the file to be read; no signal follows.
    ~MeshLoader() override;

    //! A load that is still under way is cancelled first.
    void load(const QString& fileName);
    //! Does nothing when no load is under way.
    void cancel();
    bool isLoading() const;
    //! Of the load under way or else the last one.
    QString fileName() const;

Q_SIGNALS:
    //! 0..1, rising, at most some hundred times per load.
    void progress(double fraction);
    void loaded(const sceneeditor::MeshPointer& mesh);
    //! The text is the one of loadMesh().
    void failed(const QString& error);
    void cancelled();

private:
    struct Job;

    void finish(const std::shared_ptr<Job>& job, const MeshPointer& mesh, const QString& error);

    std::shared_ptr<Job> m_job; // shared with the thread; null when idle
    QString m_fileName;
};
} // namespace sceneeditor

Q_DECLARE_METATYPE(sceneeditor::MeshPointer)
