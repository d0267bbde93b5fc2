#pragma once

#include <examples/SceneEditor/document/Document.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace sceneeditor
{
//! Reads scenes and meshes in the background. One thing at a time: a new one cancels the one under way. Each ends in
//! exactly one of sceneRead() or meshesRead(), failed() and cancelled().
class SceneOpener final : public QObject
{
    Q_OBJECT
public:
    explicit SceneOpener(QObject* parent = nullptr);
    ~SceneOpener() override;

    //! Reads the scene and everything it names.
    void readScene(const QString& fileName);
    //! Reads a copy of unsaved changes.
    void readScene(const std::shared_ptr<Recovery>& copy);
    //! Reads the meshes only. The purpose comes back with them.
    void readMeshes(const QStringList& fileNames, const QVariant& purpose);
    //! Does nothing if nothing is under way.
    void cancel();
    bool isBusy() const { return m_isBusy; }

Q_SIGNALS:
    //! A text for users, and the progress from 0 to 1.
    void progressed(const QString& text, double fraction);
    void sceneRead(const sceneeditor::OpenedScene& opened, const QStringList& warnings);
    void meshesRead(const QHash<QString, sceneeditor::MeshPointer>& meshes, const QVariant& purpose);
    //! The text names the file, the place in it and what was expected there.
    void failed(const QString& text);
    void cancelled();

private:
    void read(const QString& sceneFile, OpenedScene opened);
    void start(const QStringList& meshFiles);
    void next();
    void report(double fraction);
    void finish();
    void fail(const QString& text);

    MeshLoader* m_loader = nullptr; // a child; one for each reading
    bool m_isBusy = false;
    bool m_isScene = false;
    QString m_sceneFile;
    OpenedScene m_opened;
    QStringList m_warnings;
    QVariant m_purpose;
    QStringList m_meshFiles; // the first one is being read
    int m_meshCount = 0;
};
} // namespace sceneeditor
