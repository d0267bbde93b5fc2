#pragma once

#include <examples/SceneEditor/document/MeshData.h>

#include <QtCore/QMetaType>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <memory>

namespace sceneeditor
{
using MeshPointer = std::shared_ptr<const MeshData>;

//! The filters for a file dialog that asks for meshes.
QString meshFileFilter();

//! Reads one mesh at a time. The file is opened by a separate process (libexec/orvekqtwidgets/orvek-mesh-reader beside
//! the folder of the program), so a file that crashes its reader, needs too much memory or never ends only causes a
//! message. Each load() ends in exactly one of loaded(), failed() and cancelled(); all signals come on the loader's
//! thread, never from inside load().
class MeshLoader : public QObject
{
    Q_OBJECT
public:
    explicit MeshLoader(QObject* parent = nullptr);
    //! Cancels and returns at once; no signal follows.
    ~MeshLoader() override;

    //! How long the reader process may send nothing, not even progress: milliseconds, at least 1. 60 seconds by
    //! default. Applies to later loads.
    void setPatience(int milliseconds);
    //! A load that is still under way is cancelled first.
    void load(const QString& fileName);
    //! Ends the reader process. Does nothing if no load is under way.
    void cancel();
    bool isLoading() const;
    //! Of the load under way, or else of the last one.
    QString fileName() const;

Q_SIGNALS:
    //! 0..1, rising, at most about a hundred times per load.
    void progress(double fraction);
    void loaded(const sceneeditor::MeshPointer& mesh);
    //! The text names the file and what was expected.
    void failed(const QString& error);
    void cancelled();

private:
    struct Job;

    void finish(const std::shared_ptr<Job>& job, const MeshPointer& mesh, const QString& error);

    std::shared_ptr<Job> m_job; // shared with the thread; null when idle
    QString m_fileName;
    int m_patience = 60'000;
};
} // namespace sceneeditor

Q_DECLARE_METATYPE(sceneeditor::MeshPointer)
