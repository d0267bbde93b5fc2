#include <examples/SceneEditor/MainWindow.h>

#include <examples/SceneEditor/document/SceneFile.h>
#include <examples/SceneEditor/Languages.h>
#include <examples/SceneEditor/Looks.h>
#include <examples/SceneEditor/SceneView.h>
#include <Orvek/Host/ColumnAligner.h>
#include <Orvek/Host/EditorUndo.h>
#include <Orvek/Host/PanelHost.h>
#include <Orvek/Host/SectionStates.h>
#include <Orvek/Host/ViewInput.h>

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QSettings>
#include <QtGui/QCloseEvent>
#include <QtGui/QImageReader>
#include <QtGui/QPainter>
#include <QtWidgets/QActionGroup>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolButton>

#include <cmath>

using namespace orvek::host;

namespace sceneeditor
{
namespace
{
constexpr int maximumRecentFiles = 8;
constexpr int maximumNameLength = 200;
constexpr int progressSteps = 1000;
constexpr qint64 maximumEnvironmentPixels = 34'000'000; // 8192 × 4096 and a little more
constexpr int copyDelay = 2000;                         // milliseconds from a change to the copy that has it
constexpr int narrowestRow = 360;                       // that the columns hold in, pixels
constexpr int sideListHeight = 190;                     // of the list of objects and its buttons, pixels

QString meshFilter()
{
    return MainWindow::tr("Meshes (%1);;All files (*)").arg(meshFilePatterns().join(QLatin1Char(' ')));
}

QString sceneFilter()
{
    return MainWindow::tr("Scenes (*.json);;All files (*)");
}

QString freeName(const QString& wanted, const QVector<Object>& objects)
{
    const auto taken = [&objects](const QString& name)
    { return std::any_of(objects.cbegin(), objects.cend(), [&name](const Object& o) { return o.name == name; }); };
    QString name = wanted;
    for (int number = 2; taken(name); ++number)
        name = QStringLiteral("%1 %2").arg(wanted).arg(number);
    return name;
}

// Some platforms have no keys for some of the standard actions.
void setKeys(QAction* action, QKeySequence::StandardKey standard, int otherwise)
{
    QList<QKeySequence> keys = QKeySequence::keyBindings(standard);
    if (keys.isEmpty())
        keys << QKeySequence(otherwise);
    action->setShortcuts(keys);
}

QImage readEnvironment(const QString& fileName, QString* error)
{
    QImageReader reader(fileName);
    // The engine shows less than this; a picture of a few bytes can claim to be of any size.
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > maximumEnvironmentPixels)
    {
        *error = MainWindow::tr("%1: expected a picture of at most %2 million pixels, found %3 × %4")
                     .arg(QDir::toNativeSeparators(fileName))
                     .arg(maximumEnvironmentPixels / 1000000)
                     .arg(size.width())
                     .arg(size.height());
        return QImage();
    }
    QImage image = reader.read();
    if (image.isNull())
        *error = MainWindow::tr("%1: expected a picture of the surroundings: %2")
                     .arg(QDir::toNativeSeparators(fileName), reader.errorString());
    return image;
}

// A section's contents; null while the section has none.
QWidget* contentsOf(const QAccordion* section)
{
    return section->findChild<QWidget*>(
        QString(section->objectName()).replace(QStringLiteral("Section"), QStringLiteral("Contents")));
}
} // namespace

//! Everything that changes the list of objects itself. The objects share their data, so two whole lists cost little.
class MainWindow::ObjectsCommand : public QUndoCommand
{
public:
    ObjectsCommand(MainWindow* window, const QString& text, const QVector<Object>& objects, int selected)
        : QUndoCommand(text),
          m_window(window),
          m_before(window->m_scene.objects),
          m_after(objects),
          m_selectedBefore(window->m_selected),
          m_selectedAfter(selected)
    {
    }
    void undo() override { m_window->setObjects(m_before, m_selectedBefore); }
    void redo() override { m_window->setObjects(m_after, m_selectedAfter); }

private:
    MainWindow* const m_window;
    const QVector<Object> m_before;
    const QVector<Object> m_after;
    const int m_selectedBefore;
    const int m_selectedAfter;
};

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent)
{
    m_ui.setupUi(this);
    m_ui.messageBar->hide();
    addSceneView();
    setUpActions();
    setUpLooks();
    setUpEditors();
    // At first wide enough for all texts, or a third of the window. Where it is narrower, they are cut.
    const QMargins margins = m_ui.sectionsLayout->contentsMargins();
    const int aroundRows = margins.left() + margins.right() + m_ui.scrollArea->verticalScrollBar()->sizeHint().width();
    const int panelWidth = qMin(m_panelHost->columns()->uncutWidth() + aroundRows, width() / 3);
    m_ui.scrollArea->setMinimumWidth(narrowestRow + aroundRows);
    m_ui.splitter->setStretchFactor(0, 1);
    m_ui.splitter->setSizes({width() - panelWidth, panelWidth});
    m_ui.sideSplitter->setStretchFactor(1, 1);
    m_ui.sideSplitter->setSizes({sideListHeight, height() - sideListHeight});
    setUpStatusBar();
    readSettings();
    m_copyTimer.setSingleShot(true);
    m_copyTimer.setInterval(copyDelay);
    connect(&m_copyTimer, &QTimer::timeout, this, &MainWindow::storeCopy);
    connect(&m_undoStack, &QUndoStack::indexChanged, this, &MainWindow::scheduleCopy);
    connect(&m_undoStack, &QUndoStack::cleanChanged, this, &MainWindow::scheduleCopy);
    setDocument(Scene(), QString());
}

MainWindow::~MainWindow()
{
    // The form outlives the members. A field of it that loses the focus then has nobody to tell.
    delete m_panelHost;
    // It ends empty, which is no reason to give up the copy of what was not saved.
    m_undoStack.disconnect(this);
    m_ui.meshFile->disconnect(this);
    m_ui.objectList->disconnect(this);
    // The widgets of the other views have no parent that would delete them.
    while (m_views.size() > 1)
        delete m_views.last()->widget();
    // The form's view is destroyed only after the members that it draws with.
    delete m_views.first();
}

QString MainWindow::fileName() const
{
    return m_fileName;
}

const Scene& MainWindow::scene() const
{
    return m_scene;
}

int MainWindow::selectedObject() const
{
    return m_selected;
}

void MainWindow::selectObject(int index)
{
    m_selected = index >= 0 && index < m_scene.objects.size() ? index : -1;
    m_panelHost->undo()->setContext(m_selected);
    {
        const QSignalBlocker blocker(m_ui.objectList);
        m_ui.objectList->setCurrentRow(m_selected);
    }
    for (QAccordion* section : {m_ui.objectSection, m_ui.materialSection})
        contentsOf(section)->setEnabled(m_selected >= 0);
    for (QAction* action : {m_ui.actionDuplicate, m_ui.actionDelete})
        action->setEnabled(m_selected >= 0);
    for (QPushButton* button : {m_ui.duplicateButton, m_ui.removeButton})
        button->setEnabled(m_selected >= 0);
    showEditors();
    updateViews();
}

bool MainWindow::isLoading() const
{
    return m_loading != nullptr;
}

void MainWindow::openScene(const QString& fileName)
{
    Loading loading;
    loading.sceneFile = QFileInfo(fileName).absoluteFilePath();
    loading.document = loading.sceneFile;
    readScene(loading);
}

bool MainWindow::offerUnsavedChanges()
{
    while (const std::shared_ptr<Recovery> copy = Recovery::takeAbandoned())
    {
        Loading loading;
        loading.copy = copy;
        loading.sceneFile = copy->copyFile();
        loading.document = copy->document();
        const QString name =
            loading.document.isEmpty() ? tr("A scene without a file") : QDir::toNativeSeparators(loading.document);
        const QDateTime time = QFileInfo(loading.sceneFile).lastModified();
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
        // Otherwise it is there at the next start again.
        if (answer == QMessageBox::Open)
            readScene(loading);
        return answer == QMessageBox::Open;
    }
    return false;
}

void MainWindow::readScene(Loading loading)
{
    QString error;
    QStringList warnings;
    const QString absolute = loading.sceneFile;
    const std::optional<Scene> scene = sceneeditor::readScene(absolute, &error, &warnings);
    if (!scene)
        return failLoading(error);
    if (!warnings.isEmpty())
        showMessage(tr("%1: %2").arg(QDir::toNativeSeparators(absolute), warnings.join(QStringLiteral("; "))));

    loading.scene = *scene;
    loading.undoIndex = m_undoStack.index();
    if (!scene->view.environmentImage.isEmpty())
    {
        loading.environment = readEnvironment(scene->view.environmentImage, &error);
        if (loading.environment.isNull())
            return failLoading(tr("%1: view.environmentImage: %2").arg(QDir::toNativeSeparators(absolute), error));
    }
    for (const Object& object : scene->objects)
    {
        if (!object.meshFile.isEmpty() && !loading.meshFiles.contains(object.meshFile))
            loading.meshFiles << object.meshFile;
    }
    startLoading(loading);
}

bool MainWindow::saveScene(const QString& fileName)
{
    commitTyping();
    QString error;
    const QString absolute = QFileInfo(fileName).absoluteFilePath();
    if (!writeScene(m_scene, absolute, &error))
    {
        showMessage(error);
        return false;
    }
    m_fileName = absolute;
    m_undoStack.setClean();
    rememberRecentFile(absolute);
    updateTitle();
    return true;
}

void MainWindow::importMesh(const QString& fileName)
{
    Loading loading;
    loading.purpose = Loading::Import;
    loading.meshFiles << QDir::cleanPath(QFileInfo(fileName).absoluteFilePath());
    startLoading(loading);
}

void MainWindow::setSearchText(const QString& text)
{
    m_ui.propertyPanel->findChild<QLineEdit*>(QStringLiteral("search"))->setText(text);
}

QPixmap MainWindow::picture()
{
    QPixmap picture = grab();
    // grab() has Qt's widgets only; the engine draws to the view's own window.
    QRenderWidget* view = m_ui.renderView;
    const QRect area(view->mapTo(this, QPoint(0, 0)), view->size());
    const QImage frame = m_surfaceManager.grabFrame(view->GetHWND());
    QPainter painter(&picture);
    if (!frame.isNull())
    {
        painter.drawImage(area, frame);
        return picture;
    }
    painter.fillRect(area, palette().color(QPalette::Dark));
    painter.setPen(palette().color(QPalette::BrightText));
    painter.drawText(area.adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap,
                     m_surfaceManager.errorText(view->GetHWND()));
    return picture;
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    commitTyping();
    if (!maybeSave())
    {
        event->ignore();
        return;
    }
    writeSettings();
    m_copyTimer.stop();
    m_recovery->clear();
    while (m_views.size() > 1)
        delete m_views.last()->widget();
    event->accept();
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
    // Not the platform's keys for deleting, which on some include the one for duplicating.
    m_ui.actionDelete->setShortcut(Qt::Key_Delete);

    connect(m_ui.actionNew, &QAction::triggered, this, &MainWindow::newScene);
    connect(m_ui.actionOpen, &QAction::triggered, this, &MainWindow::chooseScene);
    connect(m_ui.actionSave, &QAction::triggered, this, &MainWindow::save);
    connect(m_ui.actionSaveAs, &QAction::triggered, this, &MainWindow::saveAs);
    connect(m_ui.actionQuit, &QAction::triggered, this, &QWidget::close);
    connect(m_ui.actionDuplicate, &QAction::triggered, this, &MainWindow::duplicateObject);
    connect(m_ui.duplicateButton, &QPushButton::clicked, this, &MainWindow::duplicateObject);
    connect(m_ui.actionDelete, &QAction::triggered, this, &MainWindow::removeObject);
    connect(m_ui.removeButton, &QPushButton::clicked, this, &MainWindow::removeObject);
    connect(m_ui.actionImportMesh, &QAction::triggered, this, &MainWindow::chooseMesh);
    connect(m_ui.addButton, &QPushButton::clicked, this, &MainWindow::chooseMesh);
    connect(m_ui.actionNewView, &QAction::triggered, this, &MainWindow::addSceneView);
    connect(m_ui.actionAbout, &QAction::triggered, this, &MainWindow::about);
    connect(m_ui.messageClose, &QPushButton::clicked, m_ui.messageBar, &QWidget::hide);
    connect(m_ui.actionResetCamera, &QAction::triggered, this,
            [this] { m_views.first()->cameraController().goHome(); });
    for (const bool open : {false, true})
    {
        connect(open ? m_ui.actionUnfoldAll : m_ui.actionFoldAll, &QAction::triggered, this,
                [this, open]
                {
                    const QVector<QAccordion*> all = sections();
                    for (QAccordion* section : all)
                        section->setOpen(open);
                });
    }

    // Not the stack's own actions: what is being typed is taken over first and is then the step to be undone.
    connect(m_ui.actionUndo, &QAction::triggered, this,
            [this]
            {
                commitTyping();
                m_undoStack.undo();
            });
    connect(m_ui.actionRedo, &QAction::triggered, this,
            [this]
            {
                commitTyping();
                m_undoStack.redo();
            });
    connect(&m_undoStack, &QUndoStack::undoTextChanged, this,
            [this](const QString& text) { m_ui.actionUndo->setText(tr("&Undo %1").arg(text).trimmed()); });
    connect(&m_undoStack, &QUndoStack::redoTextChanged, this,
            [this](const QString& text) { m_ui.actionRedo->setText(tr("&Redo %1").arg(text).trimmed()); });
    connect(&m_undoStack, &QUndoStack::canUndoChanged, m_ui.actionUndo, &QAction::setEnabled);
    connect(&m_undoStack, &QUndoStack::canRedoChanged, m_ui.actionRedo, &QAction::setEnabled);
    connect(&m_undoStack, &QUndoStack::cleanChanged, this, &MainWindow::updateTitle);
    m_ui.actionUndo->setEnabled(false);
    m_ui.actionRedo->setEnabled(false);

    connect(m_ui.objectList, &QListWidget::currentRowChanged, this, &MainWindow::selectObject);
    connect(m_ui.objectList, &QListWidget::itemChanged, this, &MainWindow::onListItemChanged);
}

// A menu of which one entry, kept in the settings, is checked: the first one when the stored one is not there.
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

    // Each by its own name, for who cannot read the others.
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

void MainWindow::setUpEditors()
{
    // What the reset buttons return to is what a new scene and a new object have.
    Scene defaults;
    defaults.objects.resize(1);
    const Scene& d = defaults;
    const auto ofObject = [this](EditorBinding binding)
    {
        binding.ofObject = true;
        m_bindings << binding;
    };
    ofObject(bindEditor(m_ui.nameEdit, objectValue(&Object::name)));
    ofObject(bindEditor(m_ui.meshFile, objectValue(&Object::meshFile)));
    ofObject(bindVector(m_ui.position, objectValue(&Object::position), ranges::coordinate, d));
    ofObject(bindVector(m_ui.rotation, objectValue(&Object::rotation), ranges::rotation, d));
    ofObject(bindVector(m_ui.scale, objectValue(&Object::scale), ranges::scale, d));
    ofObject(bindColour(m_ui.baseColour, materialValue(&Material::baseColour), d));
    ofObject(bindEditor(m_ui.roughness, materialValue(&Material::roughness), ranges::unit, 0.005, d));
    ofObject(bindEditor(m_ui.metallic, materialValue(&Material::metallic), ranges::unit, 0.005, d));
    ofObject(bindColour(m_ui.emissionColour, materialValue(&Material::emissionColour), d));
    ofObject(bindEditor(m_ui.emission, materialValue(&Material::emission), ranges::emission, 0.1, d));

    const auto camera = [](auto value) { return sceneValue(&Scene::camera, value); };
    m_bindings << bindVector(m_ui.cameraTarget, camera(&Camera::target), ranges::coordinate, d)
               << bindEditor(m_ui.cameraDistance, camera(&Camera::distance), ranges::cameraDistance, 0.0, d)
               << bindEditor(m_ui.cameraAzimuth, camera(&Camera::azimuth), ranges::azimuth, 1.0, d)
               << bindEditor(m_ui.cameraElevation, camera(&Camera::elevation), ranges::cameraElevation, 1.0, d)
               << bindEditor(m_ui.fieldOfView, camera(&Camera::fieldOfView), ranges::fieldOfView, 1.0, d);

    const auto light = [](auto value) { return sceneValue(&Scene::light, value); };
    m_bindings << bindEditor(m_ui.lightKind, light(&Light::kind), 0, m_ui.lightKind->enums().size() - 1, d)
               << bindEditor(m_ui.lightColour, light(&Light::colour))
               << bindEditor(m_ui.lightIntensity, light(&Light::intensity), ranges::lightIntensity, 0.0, d)
               << bindEditor(m_ui.lightAzimuth, light(&Light::azimuth), ranges::azimuth, 1.0, d)
               << bindEditor(m_ui.lightElevation, light(&Light::elevation), ranges::lightElevation, 1.0, d)
               << bindEditor(m_ui.lightDistance, light(&Light::distance), ranges::lightDistance, 0.0, d)
               << bindEditor(m_ui.ambient, light(&Light::ambient), ranges::ambient, 0.01, d)
               << bindEditor(m_ui.shadowMapSize, light(&Light::shadowMapSize), ranges::shadowMapSizeMinimum,
                             ranges::shadowMapSizeMaximum, d)
               << bindEditor(m_ui.shadows, light(&Light::shadows));

    const auto animation = [](auto value) { return sceneValue(&Scene::animation, value); };
    m_bindings << bindEditor(m_ui.turntableSpeed, animation(&Animation::turntableSpeed), ranges::turntableSpeed, 5.0, d)
               << bindEditor(m_ui.playing, animation(&Animation::playing));

    const auto view = [](auto value) { return sceneValue(&Scene::view, value); };
    m_bindings << bindEditor(m_ui.sceneName, [](auto& scene, int) { return &scene.name; })
               << bindEditor(m_ui.shading, view(&View::shading), 0, m_ui.shading->enums().size() - 1, d)
               << bindEditor(m_ui.exposure, view(&View::exposure), ranges::exposure, 0.0, d)
               << bindEditor(m_ui.environmentImage, view(&View::environmentImage))
               << bindEditor(m_ui.textureFilter, view(&View::textureFilter), 0, m_ui.textureFilter->enums().size() - 1,
                             d)
               << bindEditor(m_ui.environmentBackground, view(&View::environmentBackground))
               << bindColour(m_ui.backgroundColour, view(&View::backgroundColour), d)
               << bindEditor(m_ui.grid, view(&View::grid))
               << bindEditor(m_ui.gridCellSize, view(&View::gridCellSize), ranges::gridCellSize, 0.0, d)
               << bindEditor(m_ui.gridExtent, view(&View::gridExtent), ranges::gridExtentMinimum,
                             ranges::gridExtentMaximum, d)
               << bindEditor(m_ui.highlightSelection, view(&View::highlightSelection));

    m_ui.meshFile->setFilter(meshFilter());
    for (QLabelEdit* editor : {m_ui.nameEdit, m_ui.sceneName})
        editor->findChild<QLineEdit*>(QStringLiteral("lineEdit"))->setMaxLength(maximumNameLength);
    // Rows of equal height; the colour editor has the style's margins.
    m_ui.lightColour->layout()->setContentsMargins(2, 2, 2, 2);
    m_ui.lightColour->setShowAlpha(false);

    for (const EditorBinding& binding : qAsConst(m_bindings))
    {
        if (auto* editor = qobject_cast<QPropertyEditWidget*>(binding.editor))
            editor->applyParentTooltip();
        if (auto* reset = binding.editor->findChild<QPushButton*>(QStringLiteral("reset")))
            reset->setToolTip(tr("Back to the default"));
    }
    m_panelHost = new PanelHost(m_ui.propertyPanel, &m_undoStack, this);
    connect(m_panelHost->columns(), &ColumnAligner::aligned, this, &MainWindow::indentCheckBoxes);
    // Another mesh is a step of its own, made once the file has been read.
    m_panelHost->undo()->remove(m_ui.meshFile);
    connect(m_ui.meshFile, &QFileEdit::valueChanged, this, [this] { replaceMesh(m_ui.meshFile->filename()); });
    connect(m_panelHost->undo(), &EditorUndo::edited, this, &MainWindow::onEdited);
    connect(m_panelHost->undo(), &EditorUndo::aboutToRestore, this,
            [this](const QWidget* editor, const QVariant& context)
            {
                for (const EditorBinding& binding : qAsConst(m_bindings))
                {
                    if (binding.editor == editor && binding.ofObject && context.toInt() != m_selected)
                        selectObject(context.toInt());
                }
            });
}

// They have no titles of their own before them, so they begin where the fields beside them do.
void MainWindow::indentCheckBoxes()
{
    for (const EditorBinding& binding : qAsConst(m_bindings))
    {
        if (!qobject_cast<QCheckBox*>(binding.editor))
            continue;
        const auto* title = binding.editor->parentWidget()->findChild<QLabel*>(QStringLiteral("label"));
        const QString style = QStringLiteral("margin-left: %1px").arg(title->maximumWidth() + 3);
        if (style != binding.editor->styleSheet())
            binding.editor->setStyleSheet(style);
    }
}

void MainWindow::setUpStatusBar()
{
    m_statusText = new QLabel;
    m_statusText->setIndent(6);
    m_progressText = new QLabel;
    m_progress = new QProgressBar;
    m_progress->setRange(0, progressSteps);
    m_progress->setMaximumSize(180, 16);
    m_cancel = new QToolButton;
    m_cancel->setText(tr("Cancel"));
    m_cancel->setObjectName(QStringLiteral("cancel"));
    connect(m_cancel, &QToolButton::clicked, this,
            [this]
            {
                if (m_loader)
                    m_loader->cancel();
            });
    m_ui.statusBar->addWidget(m_statusText, 1);
    for (QWidget* widget :
         {static_cast<QWidget*>(m_progressText), static_cast<QWidget*>(m_progress), static_cast<QWidget*>(m_cancel)})
    {
        m_ui.statusBar->addPermanentWidget(widget);
        widget->hide();
    }
}

void MainWindow::readSettings()
{
    QSettings settings;
    restoreGeometry(settings.value(QStringLiteral("geometry")).toByteArray());
    m_ui.splitter->restoreState(settings.value(QStringLiteral("splitter")).toByteArray());
    m_ui.sideSplitter->restoreState(settings.value(QStringLiteral("sideSplitter")).toByteArray());
    m_recentFiles = settings.value(QStringLiteral("recentFiles")).toStringList();
    updateRecentFiles();
    settings.beginGroup(QStringLiteral("sections"));
    m_panelHost->states()->restore(settings);
}

void MainWindow::writeSettings()
{
    QSettings settings;
    settings.setValue(QStringLiteral("geometry"), saveGeometry());
    settings.setValue(QStringLiteral("splitter"), m_ui.splitter->saveState());
    settings.setValue(QStringLiteral("sideSplitter"), m_ui.sideSplitter->saveState());
    settings.setValue(QStringLiteral("recentFiles"), m_recentFiles);
    settings.beginGroup(QStringLiteral("sections"));
    m_panelHost->states()->save(settings);
}

QVector<QAccordion*> MainWindow::sections() const
{
    return {m_ui.objectSection, m_ui.materialSection,  m_ui.cameraSection,
            m_ui.lightSection,  m_ui.animationSection, m_ui.viewSection};
}

void MainWindow::newScene()
{
    commitTyping();
    if (!maybeSave())
        return;
    endLoading();
    clearMeshes();
    setDocument(Scene(), QString());
}

void MainWindow::chooseScene()
{
    commitTyping();
    if (!maybeSave())
        return;
    const QString chosen =
        QFileDialog::getOpenFileName(this, tr("Open Scene"), QFileInfo(m_fileName).path(), sceneFilter());
    if (!chosen.isEmpty())
        openScene(chosen);
}

bool MainWindow::save()
{
    return m_fileName.isEmpty() ? saveAs() : saveScene(m_fileName);
}

bool MainWindow::saveAs()
{
    QFileDialog dialog(this, tr("Save Scene"), QFileInfo(m_fileName).path(), sceneFilter());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("json"));
    dialog.selectFile(m_fileName.isEmpty() ? tr("untitled.json") : QFileInfo(m_fileName).fileName());
    return dialog.exec() == QDialog::Accepted && saveScene(dialog.selectedFiles().value(0));
}

// False when the user wants to go on with the open scene.
bool MainWindow::maybeSave()
{
    if (m_undoStack.isClean())
        return true;
    const auto answer = QMessageBox::warning(
        this, tr("Unsaved Changes"),
        tr("%1 has changes that were not saved.").arg(m_fileName.isEmpty() ? tr("The scene") : m_fileName),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save)
        return save();
    return answer == QMessageBox::Discard;
}

void MainWindow::chooseMesh()
{
    const QString chosen =
        QFileDialog::getOpenFileName(this, tr("Import Mesh"), m_ui.meshFile->defaultPath(), meshFilter());
    if (!chosen.isEmpty())
        importMesh(chosen);
}

void MainWindow::rememberRecentFile(const QString& fileName)
{
    m_recentFiles.removeAll(fileName);
    m_recentFiles.prepend(fileName);
    m_recentFiles = m_recentFiles.mid(0, maximumRecentFiles);
    updateRecentFiles();
}

void MainWindow::updateRecentFiles()
{
    m_ui.menuRecent->clear();
    m_ui.menuRecent->setEnabled(!m_recentFiles.isEmpty());
    for (const QString& recent : qAsConst(m_recentFiles))
    {
        // An ampersand would be taken for a mnemonic.
        QString text = QDir::toNativeSeparators(recent);
        QAction* action = m_ui.menuRecent->addAction(text.replace(QLatin1Char('&'), QLatin1String("&&")));
        connect(action, &QAction::triggered, this,
                [this, recent]
                {
                    commitTyping();
                    if (maybeSave())
                        openScene(recent);
                });
    }
}

void MainWindow::setDocument(const Scene& scene, const QString& fileName)
{
    m_scene = scene;
    m_fileName = fileName;
    m_turntableAngle = 0.0;
    m_undoStack.clear();
    m_undoStack.setClean();
    for (SceneView* view : qAsConst(m_views))
    {
        view->cameraController().setHomeCamera(scene.camera);
        view->cameraController().setCamera(scene.camera);
    }
    QString error;
    if (!updateEnvironment(&error))
        showMessage(error);
    const QString folder = fileName.isEmpty() ? QString() : QFileInfo(fileName).path();
    m_ui.meshFile->setDefaultPath(folder);
    m_ui.environmentImage->setDefaultPath(folder);
    showObjectList();
    selectObject(0);
    updatePlaying();
    updateTitle();
}

void MainWindow::updateTitle()
{
    const QString name = m_fileName.isEmpty() ? tr("Untitled") : QFileInfo(m_fileName).fileName();
    setWindowTitle(tr("%1[*] – Scene Editor").arg(name));
    setWindowModified(!m_undoStack.isClean());
}

void MainWindow::scheduleCopy()
{
    if (m_undoStack.isClean())
    {
        m_copyTimer.stop();
        m_recovery->clear();
    }
    else if (!m_copyTimer.isActive())
    {
        m_copyTimer.start();
    }
}

void MainWindow::storeCopy()
{
    QString error;
    const bool stored = m_recovery->store(m_scene, m_fileName, &error);
    // Said once, not with every change.
    if (!stored && !m_copyFailed)
        showMessage(tr("Unsaved changes would be lost if the program ended unexpectedly: %1").arg(error));
    m_copyFailed = !stored;
}

void MainWindow::startLoading(const Loading& loading)
{
    endLoading();
    m_loading = std::make_unique<Loading>(loading);
    m_loading->meshCount = loading.meshFiles.size();
    m_loader = new MeshLoader(this);
    connect(m_loader, &MeshLoader::progress, this,
            [this](double fraction)
            {
                const int done = m_loading->meshCount - m_loading->meshFiles.size();
                m_progress->setValue(int((done + fraction) * progressSteps / m_loading->meshCount));
            });
    connect(m_loader, &MeshLoader::loaded, this,
            [this](const MeshPointer& mesh)
            {
                m_loading->meshes.insert(m_loading->meshFiles.takeFirst(), mesh);
                loadNext();
            });
    connect(m_loader, &MeshLoader::failed, this, &MainWindow::failLoading);
    connect(m_loader, &MeshLoader::cancelled, this,
            [this]
            {
                endLoading();
                showEditors();
            });
    loadNext();
}

void MainWindow::loadNext()
{
    if (m_loading->meshFiles.isEmpty())
        return finishLoading();
    const QString next = m_loading->meshFiles.first();
    m_progressText->setText(tr("Reading %1").arg(QFileInfo(next).fileName()));
    for (QWidget* widget :
         {static_cast<QWidget*>(m_progressText), static_cast<QWidget*>(m_progress), static_cast<QWidget*>(m_cancel)})
        widget->show();
    m_loader->load(next);
}

void MainWindow::finishLoading()
{
    const Loading loading = *m_loading;
    endLoading();
    if (loading.purpose == Loading::Open)
    {
        // The window stayed usable, so there can be changes that the user has not been asked about.
        if (m_undoStack.index() != loading.undoIndex && !maybeSave())
            return;
        clearMeshes();
        addMeshes(loading.meshes);
        m_environment = loading.environment;
        m_environmentFile = loading.scene.view.environmentImage;
        setDocument(loading.scene, loading.document);
        for (SceneView* view : qAsConst(m_views))
            view->renderer().setEnvironmentImage(m_environment);
        if (loading.copy)
        {
            m_recovery = loading.copy;
            m_undoStack.resetClean();
        }
        if (!loading.document.isEmpty())
            rememberRecentFile(loading.document);
        Q_EMIT sceneOpened();
        return;
    }

    addMeshes(loading.meshes);
    const QString meshFile = loading.meshes.constBegin().key();
    QVector<Object> objects = m_scene.objects;
    if (loading.purpose == Loading::Import)
    {
        Object object;
        object.name = freeName(QFileInfo(meshFile).completeBaseName(), objects);
        object.meshFile = meshFile;
        objects << object;
        pushObjects(tr("Import of %1").arg(object.name), objects, objects.size() - 1);
    }
    else
    {
        objects[loading.object].meshFile = meshFile;
        pushObjects(tr("Change of mesh"), objects, loading.object);
    }
}

void MainWindow::failLoading(const QString& error)
{
    QString text = error;
    if (m_loading && m_loading->purpose == Loading::Open)
    {
        // Where the scene asks for the file that could not be read.
        for (int i = 0; i < m_loading->scene.objects.size(); ++i)
        {
            if (m_loading->scene.objects[i].meshFile == m_loading->meshFiles.first())
            {
                text = tr("%1: objects[%2].mesh: %3")
                           .arg(QDir::toNativeSeparators(m_loading->sceneFile), QString::number(i), error);
                break;
            }
        }
    }
    endLoading();
    showMessage(text);
    showEditors();
    Q_EMIT loadFailed(text);
}

void MainWindow::endLoading()
{
    if (m_loader)
    {
        // Not deleted at once: this may be a slot of its signal.
        m_loader->disconnect(this);
        m_loader->cancel();
        m_loader->deleteLater();
        m_loader = nullptr;
    }
    m_loading.reset();
    m_progress->setValue(0);
    for (QWidget* widget :
         {static_cast<QWidget*>(m_progressText), static_cast<QWidget*>(m_progress), static_cast<QWidget*>(m_cancel)})
        widget->hide();
}

void MainWindow::addMeshes(const QHash<QString, MeshPointer>& meshes)
{
    for (auto it = meshes.cbegin(); it != meshes.cend(); ++it)
    {
        m_meshes.insert(it.key(), it.value());
        for (SceneView* view : qAsConst(m_views))
            view->renderer().setMesh(it.key(), it.value());
    }
}

void MainWindow::clearMeshes()
{
    for (auto it = m_meshes.cbegin(); it != m_meshes.cend(); ++it)
    {
        for (SceneView* view : qAsConst(m_views))
            view->renderer().setMesh(it.key(), nullptr);
    }
    m_meshes.clear();
}

void MainWindow::onEdited(QWidget* editor)
{
    for (const EditorBinding& binding : qAsConst(m_bindings))
    {
        if (binding.editor == editor)
            binding.take(m_scene, m_selected);
    }
    if (editor == m_ui.nameEdit)
    {
        const QSignalBlocker blocker(m_ui.objectList);
        m_ui.objectList->item(m_selected)->setText(m_scene.objects[m_selected].name);
    }
    else if (editor == m_ui.environmentImage)
    {
        QString error;
        if (!updateEnvironment(&error))
        {
            // Keeps what it had; EditorUndo then finds nothing changed.
            m_scene.view.environmentImage = m_environmentFile;
            m_ui.environmentImage->setFilename(m_environmentFile);
            showMessage(error);
        }
    }
    else if (editor == m_ui.playing)
    {
        updatePlaying();
    }
    m_ui.lightDistance->setEnabled(m_scene.light.kind == LightKind::Point);
    m_views.first()->cameraController().setCamera(m_scene.camera);
    updateViews();
}

void MainWindow::replaceMesh(const QString& fileName)
{
    if (m_selected < 0 || fileName == m_scene.objects[m_selected].meshFile)
        return;
    Loading loading;
    loading.purpose = Loading::Replace;
    loading.object = m_selected;
    if (fileName.isEmpty() || m_meshes.contains(fileName))
    {
        QVector<Object> objects = m_scene.objects;
        objects[m_selected].meshFile = fileName;
        pushObjects(tr("Change of mesh"), objects, m_selected);
        return;
    }
    // A name without a folder is one beside the scene.
    const QDir folder(m_fileName.isEmpty() ? QDir::currentPath() : QFileInfo(m_fileName).path());
    loading.meshFiles << QDir::cleanPath(folder.absoluteFilePath(fileName));
    startLoading(loading);
}

void MainWindow::onListItemChanged(QListWidgetItem* item)
{
    const int row = m_ui.objectList->row(item);
    QVector<Object> objects = m_scene.objects;
    if (row < 0 || row >= objects.size())
        return;
    Object& object = objects[row];
    const bool visible = item->checkState() == Qt::Checked;
    const bool renamed = object.name != item->text();
    const QString text = renamed ? tr("Renaming of %1").arg(object.name)
                                 : (visible ? tr("Showing of %1") : tr("Hiding of %1")).arg(object.name);
    object.visible = visible;
    object.name = item->text().left(maximumNameLength);
    if (objects != m_scene.objects)
        pushObjects(text, objects, m_selected);
}

void MainWindow::duplicateObject()
{
    if (m_selected < 0)
        return;
    QVector<Object> objects = m_scene.objects;
    Object copy = objects[m_selected];
    copy.name = freeName(copy.name, objects);
    // Beside the original, where it can be seen.
    copy.position.setX(float(ranges::coordinate.clamp(double(copy.position.x()) + 0.5)));
    objects.insert(m_selected + 1, copy);
    pushObjects(tr("Duplicate of %1").arg(objects[m_selected].name), objects, m_selected + 1);
}

void MainWindow::removeObject()
{
    if (m_selected < 0)
        return;
    QVector<Object> objects = m_scene.objects;
    const QString name = objects.takeAt(m_selected).name;
    pushObjects(tr("Removal of %1").arg(name), objects, qMin(m_selected, objects.size() - 1));
}

void MainWindow::pushObjects(const QString& text, const QVector<Object>& objects, int selected)
{
    m_undoStack.push(new ObjectsCommand(this, text, objects, selected));
}

void MainWindow::setObjects(const QVector<Object>& objects, int selected)
{
    // The mesh being read may be for an object that is somewhere else now.
    if (m_loading && m_loading->purpose == Loading::Replace && objects.size() != m_scene.objects.size())
        endLoading();
    m_scene.objects = objects;
    showObjectList();
    selectObject(selected);
}

// A field takes over what was typed when it loses the focus, which a shortcut does not cause by itself.
void MainWindow::commitTyping()
{
    auto* field = qobject_cast<QLineEdit*>(focusWidget());
    if (!field || !field->isModified())
        return;
    field->clearFocus();
    field->setFocus();
}

// False when the picture that the scene names cannot be read; everything is as before then.
bool MainWindow::updateEnvironment(QString* error)
{
    const QString& wanted = m_scene.view.environmentImage;
    if (wanted == m_environmentFile)
        return true;
    const QImage image = wanted.isEmpty() ? QImage() : readEnvironment(wanted, error);
    if (image.isNull() && !wanted.isEmpty())
        return false;
    m_environmentFile = wanted;
    m_environment = image;
    for (SceneView* view : qAsConst(m_views))
        view->renderer().setEnvironmentImage(m_environment);
    return true;
}

void MainWindow::showObjectList()
{
    const QSignalBlocker blocker(m_ui.objectList);
    m_ui.objectList->clear();
    for (const Object& object : qAsConst(m_scene.objects))
    {
        auto* item = new QListWidgetItem(object.name, m_ui.objectList);
        item->setFlags(item->flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
        item->setCheckState(object.visible ? Qt::Checked : Qt::Unchecked);
    }
}

void MainWindow::showEditors()
{
    for (const EditorBinding& binding : qAsConst(m_bindings))
        binding.show(m_scene, m_selected);
    m_ui.lightDistance->setEnabled(m_scene.light.kind == LightKind::Point);
}

void MainWindow::updateViews()
{
    for (SceneView* view : qAsConst(m_views))
    {
        view->renderer().setSelectedObject(m_selected);
        view->setScene(m_scene);
    }
    updateStatus();
}

void MainWindow::updatePlaying()
{
    m_lastFrame = 0;
    m_views.first()->input().setContinuousUpdate(m_scene.animation.playing);
}

void MainWindow::updateStatus()
{
    int triangles = 0;
    for (const Object& object : qAsConst(m_scene.objects))
    {
        if (const MeshPointer mesh = m_meshes.value(object.meshFile))
            triangles += mesh->triangleCount();
    }
    m_statusText->setText(tr("%1 objects, %L2 triangles").arg(m_scene.objects.size()).arg(triangles));
}

void MainWindow::showMessage(const QString& text)
{
    m_ui.messageText->setText(text);
    m_ui.messageBar->show();
}

// The first is the view of the form, each later one a window of its own with a camera of its own.
void MainWindow::addSceneView()
{
    const bool isMain = m_views.isEmpty();
    QRenderWidget* widget = isMain ? m_ui.renderView : new QRenderWidget;
    auto* view = new SceneView(&m_surfaceManager, widget, this);
    m_views << view;
    connect(&view->cameraController(), &CameraController::clicked, this,
            [this, view](const QPoint& position)
            {
                const int index = view->objectAt(position);
                if (index >= 0)
                    selectObject(index);
            });
    if (isMain)
    {
        connect(&view->cameraController(), &CameraController::cameraChanged, this, &MainWindow::onCameraChanged);
        connect(widget, &QRenderWidget::viewUpdated, this, &MainWindow::onViewUpdated);
        return;
    }
    for (auto it = m_meshes.cbegin(); it != m_meshes.cend(); ++it)
        view->renderer().setMesh(it.key(), it.value());
    view->renderer().setEnvironmentImage(m_environment);
    view->renderer().setTurntableAngle(m_turntableAngle);
    view->cameraController().setCamera(m_scene.camera);
    view->cameraController().setHomeCamera(m_scene.camera);
    view->renderer().setSelectedObject(m_selected);
    view->setScene(m_scene);
    connect(widget, &QObject::destroyed, view,
            [this, view]
            {
                m_views.removeOne(view);
                view->deleteLater();
            });
    widget->setAttribute(Qt::WA_DeleteOnClose);
    widget->setWindowTitle(tr("View %1 – Scene Editor").arg(m_views.size()));
    widget->resize(640, 480);
    widget->show();
}

// Moving about the scene does not edit it: no step, and the scene counts as unmodified. Saving stores the camera as it
// is then. A camera editor that the user changes is another matter.
void MainWindow::onCameraChanged()
{
    m_scene.camera = m_views.first()->cameraController().camera();
    for (const EditorBinding& binding : qAsConst(m_bindings))
    {
        if (m_ui.cameraSection->isAncestorOf(binding.editor))
            binding.show(m_scene, m_selected);
    }
}

void MainWindow::onViewUpdated()
{
    Q_EMIT viewDrawn();
    if (!m_scene.animation.playing)
        return;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (m_lastFrame > 0)
        m_turntableAngle =
            std::fmod(m_turntableAngle + m_scene.animation.turntableSpeed * (now - m_lastFrame) / 1000.0, 360.0);
    m_lastFrame = now;
    for (SceneView* view : qAsConst(m_views))
    {
        view->renderer().setTurntableAngle(m_turntableAngle);
        if (view != m_views.first())
            view->widget()->Update();
    }
}

void MainWindow::about()
{
    QMessageBox::about(this, tr("About Scene Editor"),
                       tr("<p>Scene Editor, an example of OrvekQtWidgets %1.</p>"
                          "<p>Its property panel is a form built from the library's widgets; the view is drawn by a "
                          "small OpenGL engine through the library's render widget.</p><p>Graphics: %2</p>")
                           .arg(QApplication::applicationVersion(), m_surfaceManager.graphicsName().isEmpty()
                                                                        ? tr("none")
                                                                        : m_surfaceManager.graphicsName()));
}
} // namespace sceneeditor
