#pragma once

#include <examples/SceneEditor/document/MeshLoader.h>
#include <examples/SceneEditor/document/Recovery.h>
#include <examples/SceneEditor/document/Scene.h>

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtCore/QVector>
#include <QtGui/QImage>
#include <QUndoStack>

#include <memory>
#include <vector>

class QLockFile;

namespace sceneeditor
{
//! A scene with everything that SceneOpener has read for it.
struct OpenedScene
{
    Scene scene;
    QString fileName;               //!< where it is saved; empty if it never was
    std::shared_ptr<Recovery> copy; //!< has the changes that the file lacks; null if none
    QImage environment;             //!< null if none
    QHash<QString, MeshPointer> meshes;
};

//! The scene that is being edited, with its selection, its undo stack, its file, the copy of unsaved changes, and the
//! meshes and the picture that it names. Views and panels show it and follow its signals; it knows none of them.
class Document final : public QObject
{
    Q_OBJECT
public:
    explicit Document(QObject* parent = nullptr);
    //! The copy of unsaved changes stays, for the next start, unless discardCopy() was called.
    ~Document() override;

    const Scene& scene() const { return m_scene; }
    //! For writing values, followed by valueChanged(). The list of objects itself must not be changed.
    Scene& scene() { return m_scene; }
    //! Indices of the selected objects, ascending.
    const QVector<int>& selection() const { return m_selection; }
    //! Indices that do not exist are left out.
    void setSelection(QVector<int> selection);
    QUndoStack& undoStack() { return m_undoStack; }

    //! Empty for a scene that was never saved.
    QString fileName() const { return m_fileName; }
    //! Whether saving would change the file: after steps, or after moving the camera.
    bool isModified() const;
    //! Returns false with a one-line error if it could not be written.
    bool save(const QString& fileName, QString* error);
    //! Whether another window already had the file open when it was opened or last saved here.
    bool isOpenElsewhere() const;
    void discardCopy();
    //! An empty scene without a file.
    void clear();
    void open(const OpenedScene& opened);

    //! Null if there is none of this name.
    MeshPointer mesh(const QString& fileName) const { return m_meshes.value(fileName); }
    //! Includes those of objects that undoing may bring back.
    const QHash<QString, MeshPointer>& meshes() const { return m_meshes; }
    void addMesh(const QString& fileName, const MeshPointer& mesh);
    const QImage& environment() const { return m_environment; }

    //! Call this after changing a value: a property of an object, or one of the scene with "scene." before its name. If
    //! a picture of the surroundings cannot be read, its name is reset and failed() is emitted.
    void valueChanged(const QString& property);
    //! Moving the camera is not an undo step, but it is saved.
    void setCamera(const Camera& camera);

    // Steps on the undo stack. Names become unique; indices must exist.

    //! Adds an object for each of these meshes, which must be known: side by side, beyond everything else along X,
    //! standing on the floor. Returns one name for all of them.
    QString addObjectsOf(QStringList meshFiles);
    void duplicateSelection();
    void removeSelection();
    void rename(int object, const QString& name);
    void setVisible(const QVector<int>& objects, bool visible);
    //! The new order: each old index once.
    void reorder(const QVector<int>& order);
    void setMesh(const QVector<int>& objects, const QString& fileName);
    //! Moves the selected objects, within the ranges of the scene. The offset is from where they were at beginMove();
    //! everything until endMove() is one step.
    void beginMove();
    void moveSelection(const QVector3D& delta);
    void endMove();

Q_SIGNALS:
    //! The scene was replaced: everything is different. Followed by objectsChanged() and selectionChanged().
    void opened();
    //! The list of objects changed, or what it shows of them. The objects' addresses have changed.
    void objectsChanged();
    void selectionChanged();
    //! A value changed, except the camera's when a view has set it.
    void changed();
    void cameraMoved();
    void meshAdded(const QString& fileName);
    void environmentChanged();
    //! The file's name changed, or whether there is something to save.
    void stateChanged();
    //! Something could not be done; the text is one line.
    void failed(const QString& text);

private:
    class ObjectsStep;

    void setObjects(const std::vector<Object>& objects, const QVector<int>& selection);
    void push(const QString& text, std::vector<Object> objects, const QVector<int>& selection, int id = -1);
    bool isSelected(int object) const;
    QString selectedName() const;
    bool readEnvironment(QString* error);
    void lockFile();
    void scheduleCopy();
    void storeCopy();

    Scene m_scene;
    QVector<int> m_selection;
    QUndoStack m_undoStack;
    QString m_fileName;
    std::unique_ptr<QLockFile> m_lock; // of the file, if it can be written
    Camera m_savedCamera;
    int m_moveId = 0; // of the step that the next move joins
    std::vector<Object> m_moveStart;

    QHash<QString, MeshPointer> m_meshes;
    QString m_environmentFile; // that m_environment was read from
    QImage m_environment;

    std::shared_ptr<Recovery> m_recovery = std::make_shared<Recovery>(); // has a copy while there are unsaved changes
    QTimer m_copyTimer; // started by the first change that the copy lacks
    bool m_copyFailed = false;
};
} // namespace sceneeditor
