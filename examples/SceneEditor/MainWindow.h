#pragma once

#include <examples/SceneEditor/document/MeshLoader.h>
#include <examples/SceneEditor/document/Recovery.h>
#include <examples/SceneEditor/document/Scene.h>
#include <examples/SceneEditor/EditorBinding.h>
#include <examples/SceneEditor/engine/SurfaceManager.h>
#include <examples/SceneEditor/ui_MainWindow.h>

#include <QtCore/QHash>
#include <QtCore/QTimer>
#include <QtCore/QVector>
#include <QtGui/QImage>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QUndoStack>

#include <memory>

class QLabel;
class QProgressBar;
class QToolButton;

namespace orvek::host
{
class PanelHost;
}

namespace sceneeditor
{
class SceneView;

//! Edits one scene. The scene is a value; the window keeps it, the editors and the views the same.
class MainWindow final : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    //! Empty for a scene that was never saved.
    QString fileName() const;
    const Scene& scene() const;
    //! Index into the scene's objects; -1 when there are none.
    int selectedObject() const;
    void selectObject(int index);
    //! Whether files are being read.
    bool isLoading() const;

    //! Reads the scene and all that it names in the background; the open scene stays until everything is there, and for
    //! good when something is not. Ends in sceneOpened(), or in loadFailed(), or by cancelling in neither.
    void openScene(const QString& fileName);
    //! Where a program ended without saving, asks whether to open the copy of its changes, and does so as openScene()
    //! would. False when there is none or the user does not want it.
    bool offerUnsavedChanges();
    bool saveScene(const QString& fileName);
    //! Adds an object with the mesh once it is there.
    void importMesh(const QString& fileName);
    //! Filters the editors as if the text had been typed into the panel's search field.
    void setSearchText(const QString& text);

    //! The whole window with what the engine draws in it, in device pixels.
    QPixmap picture();

Q_SIGNALS:
    void sceneOpened();
    //! The text names the file, the place in it and what was expected there.
    void loadFailed(const QString& text);
    //! The main view has been drawn.
    void viewDrawn();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    class ObjectsCommand;

    //! What is being read in the background, and what is to be done with it.
    struct Loading
    {
        enum Purpose
        {
            Open,
            Import,
            Replace
        };
        Purpose purpose = Open;
        std::shared_ptr<Recovery> copy; // that is read, of changes that are not in the document
        QString sceneFile;              // the one that is read
        QString document;               // the one that the scene is saved to
        Scene scene;
        QImage environment;
        int undoIndex = 0;     // of the stack when the user was last asked about changes
        int object = -1;       // whose mesh is replaced
        QStringList meshFiles; // the first one is being read
        int meshCount = 0;
        QHash<QString, MeshPointer> meshes;
    };

    void setUpActions();
    void setUpChoice(QMenu* menu, const QString& key, const QVector<QPair<QString, QString>>& choices);
    void setUpLooks();
    void setUpEditors();
    void indentCheckBoxes();
    void setUpStatusBar();
    void readSettings();
    void writeSettings();
    QVector<QAccordion*> sections() const;

    // Files
    void newScene();
    void chooseScene();
    bool save();
    bool saveAs();
    bool maybeSave();
    void chooseMesh();
    void rememberRecentFile(const QString& fileName);
    void updateRecentFiles();
    void setDocument(const Scene& scene, const QString& fileName);
    void updateTitle();
    void scheduleCopy();
    void storeCopy();

    // Loading
    void readScene(Loading loading);
    void startLoading(const Loading& loading);
    void loadNext();
    void finishLoading();
    void failLoading(const QString& error);
    void endLoading();
    void addMeshes(const QHash<QString, MeshPointer>& meshes);
    void clearMeshes();

    // Editing
    void onEdited(QWidget* editor);
    void replaceMesh(const QString& fileName);
    void onListItemChanged(QListWidgetItem* item);
    void duplicateObject();
    void removeObject();
    void pushObjects(const QString& text, const QVector<Object>& objects, int selected);
    void setObjects(const QVector<Object>& objects, int selected);
    void commitTyping();
    bool updateEnvironment(QString* error);

    // Showing
    void showObjectList();
    void showEditors();
    void updateViews();
    void updatePlaying();
    void updateStatus();
    void showMessage(const QString& text);
    void addSceneView();
    void onCameraChanged();
    void onViewUpdated();
    void about();

    Ui::MainWindow m_ui;
    SurfaceManager m_surfaceManager; // outlives the views
    QVector<SceneView*> m_views;     // children; the first is the one in the form
    QUndoStack m_undoStack;
    orvek::host::PanelHost* m_panelHost = nullptr; // a child
    QVector<EditorBinding> m_bindings;

    Scene m_scene;
    QString m_fileName;
    int m_selected = -1;
    QHash<QString, MeshPointer> m_meshes; // of all objects that can come back by undoing, too
    QString m_environmentFile;            // that m_environment was read from
    QImage m_environment;

    std::shared_ptr<Recovery> m_recovery = std::make_shared<Recovery>(); // has a copy while there are unsaved changes
    QTimer m_copyTimer; // runs from the first change that the copy does not have
    bool m_copyFailed = false;

    std::unique_ptr<Loading> m_loading; // null when idle
    MeshLoader* m_loader = nullptr;     // a child; one for each m_loading
    QProgressBar* m_progress = nullptr; // these four belong to the status bar
    QToolButton* m_cancel = nullptr;
    QLabel* m_progressText = nullptr;
    QLabel* m_statusText = nullptr;

    QStringList m_recentFiles;
    double m_turntableAngle = 0.0; // degrees
    qint64 m_lastFrame = 0;        // when it was drawn while playing, milliseconds; 0 before
};
} // namespace sceneeditor
