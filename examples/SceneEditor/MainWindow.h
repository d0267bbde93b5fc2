#pragma once

#include <examples/SceneEditor/document/Document.h>
#include <examples/SceneEditor/document/SceneOpener.h>
#include <examples/SceneEditor/SceneViews.h>
#include <examples/SceneEditor/ui_MainWindow.h>

#include <QtCore/QStringList>
#include <QtWidgets/QMainWindow>

class QLabel;
class QProgressBar;
class QToolButton;

namespace sceneeditor
{
//! Menus, dialogs, settings and messages around a document, its panel and its views.
class MainWindow final : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    Document& document() { return m_document; }
    //! Whether files are being read.
    bool isLoading() const { return m_opener.isBusy(); }

    //! Reads the scene and everything it names in the background. The open scene is replaced once all is there, and
    //! stays if anything fails. Ends with sceneOpened() or loadFailed(), or with neither if cancelled.
    void openScene(const QString& fileName);
    //! If a program ended without saving, asks whether to open the copy of its changes, and opens it as openScene()
    //! would. Returns false if there is no copy or the user declines.
    bool offerUnsavedChanges();
    bool saveScene(const QString& fileName);
    //! Adds an object for each mesh once all of them are there.
    void importMeshes(const QStringList& fileNames);
    //! Filters the editors as if the text had been typed into the panel's search field.
    void setSearchText(const QString& text);

    //! A picture of the whole window with the engine's view, in device pixels.
    QPixmap picture();

Q_SIGNALS:
    void sceneOpened();
    //! The text names the file, the place in it and what was expected there.
    void loadFailed(const QString& text);
    //! The main view has been drawn.
    void viewDrawn();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void setUpActions();
    void setUpUndo();
    void setUpChoice(QMenu* menu, const QString& key, const QVector<QPair<QString, QString>>& choices);
    void setUpLooks();
    void setUpStatusBar();
    void setUpOpener();
    void readSettings();
    void writeSettings();

    void newScene();
    void chooseScene();
    bool save();
    bool saveAs();
    bool maybeSave();
    void chooseMeshes();
    void rememberRecentFile(const QString& fileName);
    void updateRecentFiles();

    void onSceneRead(const OpenedScene& opened, const QStringList& warnings);
    void showWarnings(QStringList warnings);
    void onMeshesRead(const QHash<QString, MeshPointer>& meshes, const QVariant& purpose);
    void replaceMesh(const QString& fileName);
    void showProgress(const QString& text, double fraction);
    void hideProgress();

    void commitTyping();
    void resetProperty();
    void updateActions();
    void updateTitle();
    void updateStatus();
    void about();

    Document m_document; // outlives the panel and the views
    SceneOpener m_opener;
    Ui::MainWindow m_ui;
    SceneViews* m_views = nullptr; // a child
    int m_askedIndex = 0;          // index of the undo stack when the user was last asked about changes

    QProgressBar* m_progress = nullptr; // these four belong to the status bar
    QToolButton* m_cancel = nullptr;
    QLabel* m_progressText = nullptr;
    QLabel* m_statusText = nullptr;
    QStringList m_recentFiles;
};
} // namespace sceneeditor
