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
//! What a scene needs to be shown: all that SceneOpener has read.
struct OpenedScene
{
    Scene scene;
    QString fileName;               //!< it is saved to; empty for one that was never saved
    std::shared_ptr<Recovery> copy; //!< of changes that the file does not have; null without any
    QImage environment;             //!< null without one
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
    //! For whoever writes values into it, and calls valueChanged() then. Not for the list of objects itself.
    Scene& scene() { return m_scene; }
    //! Indices of the selected objects, ascending.
    const QVector<int>& selection() const { return m_selection; }
    //! Indices that do not exist are left out.
    void setSelection(QVector<int> selection);
    QUndoStack& undoStack() { return m_undoStack; }

    //! Empty for a scene that was never saved.
    QString fileName() const { return m_fileName; }
    //! Whether saving would change the file: by steps, or by a camera that was moved.
    bool isModified() const;
    //! Returns false with an error of one line if it could not be written.
    bool save(const QString& fileName, QString* error);
    //! Whether another window had the file open already when it was opened or last saved here.
    bool isOpenElsewhere() const;
    void discardCopy();
    //! An empty scene without a file.
    void clear();
    void open(const OpenedScene& opened);

    //! Null while there is none of this name.
    MeshPointer mesh(const QString& fileName) const { return m_meshes.value(fileName); }
    //! Also of objects that undoing may bring back.
    const QHash<QString, MeshPointer>& meshes() const { return m_meshes; }
    void addMesh(const QString& fileName, const MeshPointer& mesh);
    const QImage& environment() const { return m_environment; }

    //! A value has been changed: a property of an object, or one of the scene with "scene." before its name. A picture
    //! of the surroundings that cannot be read is taken back, with failed().
    void valueChanged(const QString& property);
    //! Moving about the scene is no step, but it is saved.
    void setCamera(const Camera& camera);

    // Steps on the undo stack. Names become unique; indices must exist.

    //! An object for each of these meshes, which must have been added: side by side, behind everything that is there
    //! along X, standing on the floor. Returns what they are called together.
    QString addObjectsOf(QStringList meshFiles);
    void duplicateSelection();
    void removeSelection();
    void rename(int object, const QString& name);
    void setVisible(const QVector<int>& objects, bool visible);
    //! The new order by the old indices, each of them once.
    void reorder(const QVector<int>& order);
    void setMesh(const QVector<int>& objects, const QString& fileName);
    //! Moves the selected objects, within the ranges of the scene: by so much from where they were at beginMove(). All
    //! until endMove() is one step.
    void beginMove();
    void moveSelection(const QVector3D& delta);
    void endMove();

Q_SIGNALS:
    //! Another scene: everything is different. Followed by objectsChanged() and selectionChanged().
    void opened();
    //! The list of objects, or what a list shows of them. Addresses of objects are others now.
    void objectsChanged();
    void selectionChanged();
    //! Some value, but for the camera's that a view has set.
    void changed();
    void cameraMoved();
    void meshAdded(const QString& fileName);
    void environmentChanged();
    //! The file's name or whether there is something to save.
    void stateChanged();
    //! Something could not be done; a text of one line.
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
    QTimer m_copyTimer; // runs from the first change that the copy does not have
    bool m_copyFailed = false;
};
} // namespace sceneeditor
