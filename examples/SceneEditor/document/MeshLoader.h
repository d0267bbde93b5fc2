#pragma once

#include <examples/SceneEditor/document/MeshData.h>

#include <QtCore/QMetaType>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <memory>

namespace sceneeditor
{
using MeshPointer = std::shared_ptr<const MeshData>;

//! The filters of a dialog that asks for meshes.
QString meshFileFilter();

//! Reads one mesh at a time. The file is opened by a process of its own (libexec/orvekqtwidgets/orvek-mesh-reader
//! beside the folder of the program), so that a file that breaks its reader, asks for too much memory or never ends
//! costs no more than a message. Each load() ends in exactly one of loaded(), failed() and cancelled(); all signals
//! come on the loader's thread, never from inside load().
class MeshLoader : public QObject
{
    Q_OBJECT
public:
    explicit MeshLoader(QObject* parent = nullptr);
    //! Cancels and returns at once; no signal follows.
    ~MeshLoader() override;

    //! How long the reading process may be silent, in milliseconds from 1 on; it tells its progress. 60 seconds at
    //! first. For loads that come later.
    void setPatience(int milliseconds);
    //! A load that is still under way is cancelled first.
    void load(const QString& fileName);
    //! Ends the process that reads. Does nothing when no load is under way.
    void cancel();
    bool isLoading() const;
    //! Of the load under way or else the last one.
    QString fileName() const;

Q_SIGNALS:
    //! 0..1, rising, at most some hundred times per load.
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
