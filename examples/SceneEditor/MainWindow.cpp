#include <examples/SceneEditor/MainWindow.h>

#include <examples/SceneEditor/Icons.h>
#include <examples/SceneEditor/Languages.h>
#include <examples/SceneEditor/Looks.h>
#include <examples/SceneEditor/SceneView.h>
#include <Orvek/Host/ColumnAligner.h>
#include <Orvek/Host/PanelHost.h>
#include <Orvek/Host/SectionStates.h>

#include <QActionGroup>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QMimeData>
#include <QtCore/QSettings>
#include <QtGui/QCloseEvent>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>

#include <algorithm>
#include <utility>

using namespace orvek::host;

namespace sceneeditor
{
namespace
{
constexpr int MaximumRecentFiles = 8;
constexpr int ProgressSteps = 1000;
constexpr int ReadingTime = 6000;     // milliseconds that the status bar shows a message
constexpr QSize FirstSize(1400, 900); // pixels, if the screen has room
constexpr double ShareOfScreen = 0.9; // for smaller screens

QString sceneFilter()
{
    return MainWindow::tr("Scenes (*.json);;All files (*)");
}

bool isScene(const QString& fileName)
{
    return fileName.endsWith(QLatin1String(".json"), Qt::CaseInsensitive);
}

QStringList localFiles(const QMimeData* data)
{
    QStringList files;
    const QList<QUrl> urls = data->urls();
    for (const QUrl& url : urls)
        if (url.isLocalFile())
            files << url.toLocalFile();
    return files;
}

// Some platforms have no keys for some of the standard actions.
void setKeys(QAction* action, QKeySequence::StandardKey standard, const QKeySequence& otherwise)
{
    QList<QKeySequence> keys = QKeySequence::keyBindings(standard);
    if (keys.isEmpty())
        keys << otherwise;
    action->setShortcuts(keys);
}
} // namespace

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent)
{
    m_ui.setupUi(this);
    setAcceptDrops(true);
    m_views = new SceneViews(&m_document, m_ui.renderView, this);
    m_ui.panel->setDocument(&m_document);
    connect(m_views, &SceneViews::drawn, this, &MainWindow::viewDrawn);
    setUpActions();
    setUpUndo();
    setUpLooks();
    setUpStatusBar();
    setUpOpener();
    connect(&m_document, &Document::stateChanged, this, &MainWindow::updateTitle);
    connect(&m_document, &Document::selectionChanged, this, &MainWindow::updateActions);
    connect(&m_document, &Document::objectsChanged, this, &MainWindow::updateStatus);
    connect(&m_document, &Document::failed, this,
            [this](const QString& text) { m_ui.messageBar->show(MessageBar::Error, text); });

    const QSize available = screen()->availableSize() * ShareOfScreen;
    resize(FirstSize.boundedTo(available));
    // At first wide enough for all texts, but at most a third of the window; then texts are cut.
    const int panelWidth = qMin(m_ui.panel->uncutWidth(), width() / 3);
    m_ui.splitter->setStretchFactor(0, 1);
    m_ui.splitter->setSizes({width() - panelWidth, panelWidth});
    readSettings();
    m_document.clear();
    updateActions();
}

MainWindow::~MainWindow()
{
    m_opener.disconnect(this);
    m_document.disconnect(this);
    // Both use the document, which is destroyed before this window's children.
    delete m_ui.panel;
    delete m_views;
}

void MainWindow::openScene(const QString& fileName)
{
    m_askedIndex = m_document.undoStack().index();
    m_opener.readScene(fileName);
}

bool MainWindow::offerUnsavedChanges()
{
    while (const std::shared_ptr<Recovery> copy = Recovery::takeAbandoned())
    {
        const QString name =
            copy->document().isEmpty() ? tr("A scene without a file") : QDir::toNativeSeparators(copy->document());
        const QDateTime time = QFileInfo(copy->copyFile()).lastModified();
        const auto answer =
            QMessageBox::question(this, tr("Unsaved Changes"),
                                  tr("%1 had changes that were not saved when the scene editor ended unexpectedly. "
                                     "Open them, as they were at %2?")
                                      .arg(name, QLocale().toString(time, QLocale::ShortFormat)),
                                  QMessageBox::Open | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Open);
        if (answer == QMessageBox::Discard)
        {
            copy->clear();
            continue;
        }
        // After Cancel, the copy is offered again at the next start.
        if (answer == QMessageBox::Open)
        {
            m_askedIndex = m_document.undoStack().index();
            m_opener.readScene(copy);
        }
        return answer == QMessageBox::Open;
    }
    return false;
}

bool MainWindow::saveScene(const QString& fileName)
{
    commitTyping();
    QString error;
    if (!m_document.save(fileName, &error))
    {
        m_ui.messageBar->show(MessageBar::Error, error);
        return false;
    }
    showWarnings({});
    m_ui.statusBar->showMessage(tr("Saved %1").arg(QFileInfo(fileName).fileName()), ReadingTime);
    rememberRecentFile(m_document.fileName());
    return true;
}

void MainWindow::importMeshes(const QStringList& fileNames)
{
    m_opener.readMeshes(fileNames, QVariant());
}

void MainWindow::setSearchText(const QString& text)
{
    m_ui.panel->setSearchText(text);
}

QPixmap MainWindow::picture()
{
    // Finish the layout first, as the user would see it a moment later.
    m_ui.panel->host()->columns()->align();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QPixmap picture = grab();
    // grab() captures only Qt's widgets; the engine draws to the view's own window.
    const QWidget* view = m_ui.renderView;
    const QRect area(view->mapTo(this, QPoint(0, 0)), view->size());
    QString error;
    const QImage frame = m_views->grabMain(&error);
    QPainter painter(&picture);
    if (!frame.isNull())
    {
        painter.drawImage(area, frame);
        return picture;
    }
    painter.fillRect(area, palette().color(QPalette::Dark));
    painter.setPen(palette().color(QPalette::BrightText));
    painter.drawText(area.adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap, error);
    return picture;
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!maybeSave())
    {
        event->ignore();
        return;
    }
    writeSettings();
    m_document.discardCopy();
    m_views->closeWindows();
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!localFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    const QStringList files = localFiles(event->mimeData());
    event->acceptProposedAction();
    const auto scene = std::find_if(files.begin(), files.end(), isScene);
    if (scene == files.end())
        return importMeshes(files);
    if (maybeSave())
        openScene(*scene);
}

void MainWindow::setUpActions()
{
    setKeys(m_ui.actionNew, QKeySequence::New, Qt::CTRL | Qt::Key_N);
    setKeys(m_ui.actionOpen, QKeySequence::Open, Qt::CTRL | Qt::Key_O);
    setKeys(m_ui.actionSave, QKeySequence::Save, Qt::CTRL | Qt::Key_S);
    setKeys(m_ui.actionSaveAs, QKeySequence::SaveAs, Qt::CTRL | Qt::SHIFT | Qt::Key_S);
    setKeys(m_ui.actionQuit, QKeySequence::Quit, Qt::CTRL | Qt::Key_Q);
    setKeys(m_ui.actionUndo, QKeySequence::Undo, Qt::CTRL | Qt::Key_Z);
    setKeys(m_ui.actionRedo, QKeySequence::Redo, Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
    setKeys(m_ui.actionSelectAll, QKeySequence::SelectAll, Qt::CTRL | Qt::Key_A);
    // Not the standard keys for deleting, which on some platforms include the one for duplicating.
    m_ui.actionDelete->setShortcut(Qt::Key_Delete);

    connect(m_ui.actionNew, &QAction::triggered, this, &MainWindow::newScene);
    connect(m_ui.actionOpen, &QAction::triggered, this, &MainWindow::chooseScene);
    connect(m_ui.actionSave, &QAction::triggered, this, &MainWindow::save);
    connect(m_ui.actionSaveAs, &QAction::triggered, this, &MainWindow::saveAs);
    connect(m_ui.actionQuit, &QAction::triggered, this, &QWidget::close);
    connect(m_ui.actionDuplicate, &QAction::triggered, &m_document, &Document::duplicateSelection);
    connect(m_ui.actionDelete, &QAction::triggered, &m_document, &Document::removeSelection);
    connect(m_ui.actionImportMesh, &QAction::triggered, this, &MainWindow::chooseMeshes);
    connect(m_ui.panel, &ScenePanel::addRequested, this, &MainWindow::chooseMeshes);
    connect(m_ui.panel, &ScenePanel::meshRequested, this, &MainWindow::replaceMesh);
    connect(m_ui.actionNewView, &QAction::triggered, m_views, &SceneViews::addWindow);
    connect(m_ui.actionAbout, &QAction::triggered, this, &MainWindow::about);
    connect(m_ui.actionFrame, &QAction::triggered, this,
            [this] { m_views->mainView()->frame(m_document.selection()); });
    connect(m_ui.actionResetCamera, &QAction::triggered, this,
            [this] { m_views->mainView()->cameraController().goHome(); });
    connect(m_ui.actionResetProperty, &QAction::triggered, this, &MainWindow::resetProperty);
    connect(m_ui.actionFoldAll, &QAction::triggered, this, [this] { m_ui.panel->setSectionsOpen(false); });
    connect(m_ui.actionUnfoldAll, &QAction::triggered, this, [this] { m_ui.panel->setSectionsOpen(true); });

    // A button for each action that artists use all the time; the menu names the step to undo.
    const QVector<QPair<QAction*, Icon>> tools{{m_ui.actionOpen, Icon::Open},       {m_ui.actionSave, Icon::Save},
                                               {m_ui.actionUndo, Icon::Undo},       {m_ui.actionRedo, Icon::Redo},
                                               {m_ui.actionImportMesh, Icon::Add},  {m_ui.actionFrame, Icon::Frame},
                                               {m_ui.actionResetCamera, Icon::Home}};
    for (const auto& tool : tools)
    {
        tool.first->setIcon(icon(tool.second));
        // Icons do not change in a highlighted entry, where lines in the text's colour would vanish.
        tool.first->setIconVisibleInMenu(false);
        m_ui.toolBar->addAction(tool.first);
    }

    // In a field or on a slider these keys belong to the text or the value.
    QListWidget* list = m_ui.panel->objectList();
    for (QAction* action : {m_ui.actionDelete, m_ui.actionFrame, m_ui.actionSelectAll, m_ui.actionRename})
    {
        action->setShortcutContext(Qt::WidgetShortcut);
        list->addAction(action);
        m_ui.renderView->addAction(action);
    }
    connect(m_ui.actionSelectAll, &QAction::triggered, list, &QAbstractItemView::selectAll);
    connect(m_ui.actionRename, &QAction::triggered, list,
            [this, list]
            {
                if (!m_document.selection().isEmpty())
                    list->editItem(list->item(m_document.selection().first()));
            });
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(list, &QWidget::customContextMenuRequested, this,
            [this, list](const QPoint& position)
            {
                QMenu menu;
                menu.addActions({m_ui.actionImportMesh, m_ui.actionRename, m_ui.actionDuplicate, m_ui.actionDelete,
                                 m_ui.actionFrame});
                menu.exec(list->viewport()->mapToGlobal(position));
            });
}

void MainWindow::setUpUndo()
{
    // Not the stack's own actions: text being typed must be committed first, and becomes the step to undo.
    QUndoStack* stack = &m_document.undoStack();
    connect(m_ui.actionUndo, &QAction::triggered, this,
            [this, stack]
            {
                commitTyping();
                stack->undo();
            });
    connect(m_ui.actionRedo, &QAction::triggered, this,
            [this, stack]
            {
                commitTyping();
                stack->redo();
            });
    connect(stack, &QUndoStack::undoTextChanged, this,
            [this](const QString& text) { m_ui.actionUndo->setText(tr("&Undo %1").arg(text).trimmed()); });
    connect(stack, &QUndoStack::redoTextChanged, this,
            [this](const QString& text) { m_ui.actionRedo->setText(tr("&Redo %1").arg(text).trimmed()); });
    connect(stack, &QUndoStack::canUndoChanged, m_ui.actionUndo, &QAction::setEnabled);
    connect(stack, &QUndoStack::canRedoChanged, m_ui.actionRedo, &QAction::setEnabled);
    m_ui.actionUndo->setEnabled(false);
    m_ui.actionRedo->setEnabled(false);
}

// A menu with one checked entry, kept in the settings; the first one if the stored entry does not exist.
void MainWindow::setUpChoice(QMenu* menu, const QString& key, const QVector<QPair<QString, QString>>& choices)
{
    auto* group = new QActionGroup(menu);
    const QString stored = QSettings().value(key).toString();
    for (const auto& choice : choices)
    {
        QAction* action = menu->addAction(choice.second);
        group->addAction(action);
        action->setCheckable(true);
        action->setChecked(choice.first == stored || group->actions().size() == 1);
        connect(action, &QAction::triggered, this, [key, value = choice.first] { QSettings().setValue(key, value); });
    }
}

void MainWindow::setUpLooks()
{
    QVector<QPair<QString, QString>> looks;
    const QStringList names = lookNames();
    for (const QString& name : names)
        looks << qMakePair(name, lookTitle(name));
    setUpChoice(m_ui.menuLook, QStringLiteral("look"), looks);
    const QList<QAction*> actions = m_ui.menuLook->actions();
    for (int i = 0; i < actions.size(); ++i)
        connect(actions[i], &QAction::triggered, this, [name = names[i]] { applyLook(name); });

    // Each language by its own name, so that its speakers find it.
    QVector<QPair<QString, QString>> choices{qMakePair(QString(), tr("&System"))};
    const QStringList codes = languages();
    for (const QString& code : codes)
    {
        QString name = QLocale(code).nativeLanguageName();
        if (code == QLatin1String("en"))
            name = QStringLiteral("English");
        choices << qMakePair(code, name);
    }
    setUpChoice(m_ui.menuLanguage, QStringLiteral("language"), choices);
}

void MainWindow::setUpStatusBar()
{
    m_statusText = new QLabel;
    m_statusText->setIndent(6);
    m_progressText = new QLabel;
    m_progress = new QProgressBar;
    m_progress->setObjectName(QStringLiteral("progress"));
    m_progress->setRange(0, ProgressSteps);
    m_progress->setMaximumSize(180, 16);
    m_cancel = new QToolButton;
    m_cancel->setText(tr("Cancel"));
    m_cancel->setObjectName(QStringLiteral("cancel"));
    connect(m_cancel, &QToolButton::clicked, &m_opener, &SceneOpener::cancel);
    m_ui.statusBar->addWidget(m_statusText, 1);
    for (QWidget* widget :
         {static_cast<QWidget*>(m_progressText), static_cast<QWidget*>(m_progress), static_cast<QWidget*>(m_cancel)})
        m_ui.statusBar->addPermanentWidget(widget);
    hideProgress();
}

void MainWindow::setUpOpener()
{
    connect(&m_opener, &SceneOpener::progressed, this, &MainWindow::showProgress);
    connect(&m_opener, &SceneOpener::sceneRead, this, &MainWindow::onSceneRead);
    connect(&m_opener, &SceneOpener::meshesRead, this, &MainWindow::onMeshesRead);
    connect(&m_opener, &SceneOpener::cancelled, this, &MainWindow::hideProgress);
    connect(&m_opener, &SceneOpener::failed, this,
            [this](const QString& text)
            {
                hideProgress();
                m_ui.messageBar->show(MessageBar::Error, text);
                Q_EMIT loadFailed(text);
            });
}

void MainWindow::readSettings()
{
    QSettings settings;
    restoreGeometry(settings.value(QStringLiteral("geometry")).toByteArray());
    m_ui.splitter->restoreState(settings.value(QStringLiteral("splitter")).toByteArray());
    m_ui.panel->splitter()->restoreState(settings.value(QStringLiteral("sideSplitter")).toByteArray());
    m_recentFiles = settings.value(QStringLiteral("recentFiles")).toStringList();
    updateRecentFiles();
    settings.beginGroup(QStringLiteral("sections"));
    m_ui.panel->host()->states()->restore(settings);
}

void MainWindow::writeSettings()
{
    QSettings settings;
    settings.setValue(QStringLiteral("geometry"), saveGeometry());
    settings.setValue(QStringLiteral("splitter"), m_ui.splitter->saveState());
    settings.setValue(QStringLiteral("sideSplitter"), m_ui.panel->splitter()->saveState());
    settings.setValue(QStringLiteral("recentFiles"), m_recentFiles);
    settings.beginGroup(QStringLiteral("sections"));
    m_ui.panel->host()->states()->save(settings);
}

void MainWindow::newScene()
{
    if (!maybeSave())
        return;
    m_opener.cancel();
    m_ui.messageBar->hide();
    m_document.clear();
}

void MainWindow::chooseScene()
{
    if (!maybeSave())
        return;
    const QString chosen =
        QFileDialog::getOpenFileName(this, tr("Open Scene"), QFileInfo(m_document.fileName()).path(), sceneFilter());
    if (!chosen.isEmpty())
        openScene(chosen);
}

bool MainWindow::save()
{
    return m_document.fileName().isEmpty() ? saveAs() : saveScene(m_document.fileName());
}

bool MainWindow::saveAs()
{
    const QFileInfo old(m_document.fileName());
    QFileDialog dialog(this, tr("Save Scene"), old.path(), sceneFilter());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("json"));
    dialog.selectFile(m_document.fileName().isEmpty() ? tr("untitled.json") : old.fileName());
    return dialog.exec() == QDialog::Accepted && saveScene(dialog.selectedFiles().value(0));
}

// Returns false if the user wants to keep working on the open scene.
bool MainWindow::maybeSave()
{
    commitTyping();
    if (!m_document.isModified())
        return true;
    const QString name = m_document.fileName();
    const auto answer =
        QMessageBox::warning(this, tr("Unsaved Changes"),
                             tr("%1 has changes that were not saved.").arg(name.isEmpty() ? tr("The scene") : name),
                             QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save)
        return save();
    return answer == QMessageBox::Discard;
}

void MainWindow::chooseMeshes()
{
    const QStringList chosen = QFileDialog::getOpenFileNames(this, tr("Import Mesh"),
                                                             QFileInfo(m_document.fileName()).path(), meshFileFilter());
    if (!chosen.isEmpty())
        importMeshes(chosen);
}

void MainWindow::rememberRecentFile(const QString& fileName)
{
    m_recentFiles.removeAll(fileName);
    m_recentFiles.prepend(fileName);
    m_recentFiles = m_recentFiles.mid(0, MaximumRecentFiles);
    updateRecentFiles();
}

void MainWindow::updateRecentFiles()
{
    m_ui.menuRecent->clear();
    m_ui.menuRecent->setEnabled(!m_recentFiles.isEmpty());
    for (const QString& recent : std::as_const(m_recentFiles))
    {
        // An ampersand would be taken for a mnemonic.
        QString text = QDir::toNativeSeparators(recent);
        QAction* action = m_ui.menuRecent->addAction(text.replace(QLatin1Char('&'), QLatin1String("&&")));
        connect(action, &QAction::triggered, this,
                [this, recent]
                {
                    if (maybeSave())
                        openScene(recent);
                });
    }
}

void MainWindow::onSceneRead(const OpenedScene& opened, const QStringList& warnings)
{
    hideProgress();
    // The window stayed usable, so there may be changes that the user has not been asked about.
    if (m_document.undoStack().index() != m_askedIndex && !maybeSave())
        return;
    m_document.open(opened);
    if (!opened.fileName.isEmpty())
        rememberRecentFile(opened.fileName);
    showWarnings(warnings);
    Q_EMIT sceneOpened();
}

// Replaces the text of the message bar with warnings about the open scene.
void MainWindow::showWarnings(QStringList warnings)
{
    if (m_document.isOpenElsewhere())
        warnings << tr("also open in another window; whichever saves last overwrites the other");
    m_ui.messageBar->hide();
    if (!warnings.isEmpty())
        m_ui.messageBar->show(MessageBar::Warning, tr("%1: %2").arg(QDir::toNativeSeparators(m_document.fileName()),
                                                                    warnings.join(QStringLiteral("; "))));
}

void MainWindow::onMeshesRead(const QHash<QString, MeshPointer>& meshes, const QVariant& purpose)
{
    hideProgress();
    m_ui.messageBar->hide();
    for (auto it = meshes.cbegin(); it != meshes.cend(); ++it)
        m_document.addMesh(it.key(), it.value());
    if (!purpose.isValid())
    {
        const QString name = m_document.addObjectsOf(meshes.keys());
        m_views->mainView()->frame(m_document.selection());
        m_ui.statusBar->showMessage(tr("Imported %1").arg(name), ReadingTime);
        return;
    }
    // The objects that were selected when the mesh was requested; the list may have changed since.
    QVector<int> objects;
    const QVariantList wanted = purpose.toList();
    for (const QVariant& index : wanted)
        if (index.toInt() < int(m_document.scene().objects.size()))
            objects << index.toInt();
    if (!objects.isEmpty() && !meshes.isEmpty())
        m_document.setMesh(objects, meshes.constBegin().key());
}

void MainWindow::replaceMesh(const QString& fileName)
{
    const QVector<int>& selection = m_document.selection();
    if (selection.isEmpty())
        return;
    if (fileName.isEmpty() || m_document.mesh(fileName))
        return m_document.setMesh(selection, fileName);
    // Relative names start at the scene's folder.
    const QString scene = m_document.fileName();
    const QDir folder(scene.isEmpty() ? QDir::currentPath() : QFileInfo(scene).path());
    QVariantList purpose;
    for (const int index : selection)
        purpose << index;
    m_opener.readMeshes({folder.absoluteFilePath(fileName)}, purpose);
}

void MainWindow::showProgress(const QString& text, double fraction)
{
    m_progressText->setText(text);
    m_progress->setValue(int(fraction * ProgressSteps));
    m_progressText->show();
    m_progress->show();
    m_cancel->show();
}

void MainWindow::hideProgress()
{
    m_progressText->hide();
    m_progress->hide();
    m_cancel->hide();
}

// A field commits its text when it loses the focus, and a shortcut alone does not move the focus.
void MainWindow::commitTyping()
{
    auto* field = qobject_cast<QLineEdit*>(focusWidget());
    if (!field || !field->isModified())
        return;
    field->clearFocus();
    field->setFocus();
}

// The keyboard's way to reset, as Tab skips the reset dots.
void MainWindow::resetProperty()
{
    for (QWidget* widget = focusWidget(); widget && widget != this; widget = widget->parentWidget())
        if (auto* reset = widget->findChild<QPushButton*>(QStringLiteral("reset"), Qt::FindDirectChildrenOnly))
            return reset->click();
}

void MainWindow::updateActions()
{
    const bool hasSelection = !m_document.selection().isEmpty();
    for (QAction* action : {m_ui.actionDuplicate, m_ui.actionDelete, m_ui.actionRename})
        action->setEnabled(hasSelection);
}

void MainWindow::updateTitle()
{
    const QString file = m_document.fileName();
    setWindowTitle(tr("%1[*] – Scene Editor").arg(file.isEmpty() ? tr("Untitled") : QFileInfo(file).fileName()));
    setWindowModified(m_document.isModified());
}

void MainWindow::updateStatus()
{
    int triangles = 0;
    for (const Object& object : m_document.scene().objects)
        if (const MeshPointer mesh = m_document.mesh(object.meshFile))
            triangles += mesh->triangleCount();
    const int objects = int(m_document.scene().objects.size());
    m_statusText->setText((objects == 1 ? tr("1 object") : tr("%L1 objects").arg(objects)) + QStringLiteral(", ") +
                          (triangles == 1 ? tr("1 triangle") : tr("%L1 triangles").arg(triangles)));
}

void MainWindow::about()
{
    const QString graphics = m_views->surfaces().graphicsName();
    QMessageBox::about(this, tr("About Scene Editor"),
                       tr("<p>Scene Editor, an example of OrvekQtWidgets %1.</p>"
                          "<p>Its property panel is made from a description of the scene; the view is drawn by a "
                          "small OpenGL engine through the library's render widget.</p><p>Graphics: %2</p>")
                           .arg(QApplication::applicationVersion(), graphics.isEmpty() ? tr("none") : graphics));
}
} // namespace sceneeditor
