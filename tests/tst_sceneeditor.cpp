#include "testsupport.h"

#include <examples/SceneEditor/document/SceneFile.h>
#include <examples/SceneEditor/MainWindow.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QToolButton>

using sceneeditor::MainWindow;
using sceneeditor::Scene;

namespace
{
QString studio()
{
    return QStringLiteral(SCENE_EDITOR_ASSETS "/studio.json");
}

void write(const QString& fileName, const QByteArray& contents)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contents);
}

// Answers the next message box with one of its buttons.
void answer(QMessageBox::StandardButton button)
{
    QTimer::singleShot(0, qApp,
                       [button]
                       {
                           if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
                               box->button(button)->click();
                       });
}

using BadFiles = Table<QByteArray, QStringList>;           // contents, parts of the message
using CommandLines = Table<QStringList, int, QStringList>; // arguments, exit code, parts of the message
} // namespace

class tst_SceneEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void typedSavedUndoneAndReopened();
    void undoSelectsTheObjectThatWasEdited();
    void objectsAreAddedRenamedHiddenAndRemoved();
    void cameraFollowsTheMouseAndTheEditors();
    void valuesOutsideOfTheScenesRangesAreClamped();
    void searchShowsWhatMatches();
    void sectionsStayFoldedInTheNextRun();
    void badFilesLeaveTheSceneAsItIs_data();
    void badFilesLeaveTheSceneAsItIs();
    void badMeshLeavesTheObjectAsItIs();
    void cancelledLoadLeavesTheSceneAsItIs();
    void unsavedChangesAreAskedAbout();
    void unsavedChangesOutliveTheProgram();
    void shortcutsAreComplete();
    void secondViewCanBeClosed();
    void commandLine_data();
    void commandLine();

private:
    void start();
    void open(const QString& fileName);
    template <typename T>
    T* find(const char* name)
    {
        return child<T>(*m_window, name);
    }

    void type(const char* editor, const char* field, const char* text);
    void trigger(const char* action) { find<QAction>(action)->trigger(); }

    QTemporaryDir m_directory;
    std::unique_ptr<MainWindow> m_window;
};

void tst_SceneEditor::initTestCase()
{
    QVERIFY(m_directory.isValid());
    // Not the settings of the person who runs the tests.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_directory.path());
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_directory.path()));
    QCoreApplication::setOrganizationName(QStringLiteral("Orvek"));
    QCoreApplication::setApplicationName(QStringLiteral("SceneEditorTest"));
}

void tst_SceneEditor::init()
{
    QSettings().clear();
    start();
}

void tst_SceneEditor::cleanup()
{
    m_window.reset();
}

void tst_SceneEditor::start()
{
    m_window.reset();
    m_window = std::make_unique<MainWindow>();
    open(studio());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QApplication::setActiveWindow(m_window.get());
    QTRY_VERIFY(m_window->isActiveWindow());
}

void tst_SceneEditor::open(const QString& fileName)
{
    QSignalSpy opened(m_window.get(), &MainWindow::sceneOpened);
    m_window->openScene(fileName);
    QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 1, 30000);
}

void tst_SceneEditor::type(const char* editor, const char* field, const char* text)
{
    auto* line = child<QLineEdit>(*find<QWidget>(editor), field);
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, QLatin1String(text));
    QTest::keyClick(line, Qt::Key_Return);
}

void tst_SceneEditor::typedSavedUndoneAndReopened()
{
    const Scene before = m_window->scene();
    QVERIFY(before.objects.size() >= 3);
    type("roughness", "lineEdit", "0.125");
    type("position", "y", "1.5");
    type("baseColour", "x", "0.5");
    type("lightColour", "green", "0.25");
    type("gridExtent", "lineEdit", "64");
    type("nameEdit", "lineEdit", "Stand");
    QTest::mouseClick(child<QPushButton>(*find<QWidget>("lightIntensity"), "increment"), Qt::LeftButton);
    find<QCheckBox>("shadows")->click();
    const Scene edited = m_window->scene();
    QCOMPARE(edited.objects[0].material.roughness, 0.125);
    QCOMPARE(edited.objects[0].position.y(), 1.5f);
    QCOMPARE(edited.objects[0].material.baseColour,
             QColor::fromRgbF(0.5, before.objects[0].material.baseColour.greenF(),
                              before.objects[0].material.baseColour.blueF()));
    QCOMPARE(edited.light.colour.greenF(), QColor::fromRgbF(0, 0.25, 0).greenF());
    QCOMPARE(edited.view.gridExtent, 64);
    QCOMPARE(find<QListWidget>("objectList")->item(0)->text(), QStringLiteral("Stand"));
    QVERIFY(edited.light.intensity > before.light.intensity);
    QCOMPARE(edited.light.shadows, !before.light.shadows);
    QVERIFY(m_window->isWindowModified());

    const QString file = m_directory.filePath(QStringLiteral("edited.json"));
    QVERIFY(m_window->saveScene(file));
    QVERIFY(!m_window->isWindowModified());
    for (int i = 0; i < 8; ++i)
        trigger("actionUndo");
    QVERIFY(m_window->scene() == before);
    QVERIFY(!find<QAction>("actionUndo")->isEnabled());
    QVERIFY(m_window->isWindowModified());
    open(file);
    QVERIFY(m_window->scene() == edited);
    QCOMPARE(m_window->fileName(), file);
}

void tst_SceneEditor::undoSelectsTheObjectThatWasEdited()
{
    const Scene before = m_window->scene();
    m_window->selectObject(2);
    type("scale", "z", "3");
    m_window->selectObject(1);
    QCOMPARE(child<QLineEdit>(*find<QWidget>("nameEdit"), "lineEdit")->text(), before.objects[1].name);
    type("lightAzimuth", "lineEdit", "5");
    trigger("actionUndo");
    QCOMPARE(m_window->selectedObject(), 1);
    trigger("actionUndo");
    QCOMPARE(m_window->selectedObject(), 2);
    QVERIFY(m_window->scene() == before);
    // Choosing another object is no step.
    QVERIFY(!find<QAction>("actionUndo")->isEnabled());
}

void tst_SceneEditor::objectsAreAddedRenamedHiddenAndRemoved()
{
    auto* list = find<QListWidget>("objectList");
    const Scene before = m_window->scene();
    QVector<Scene> states{before};
    m_window->importMesh(QFileInfo(studio()).dir().filePath(QStringLiteral("cube.obj")));
    QTRY_COMPARE(m_window->scene().objects.size(), before.objects.size() + 1);
    QCOMPARE(m_window->selectedObject(), before.objects.size());
    states << m_window->scene();
    type("position", "x", "-2");
    states << m_window->scene();
    QTest::mouseClick(find<QPushButton>("duplicateButton"), Qt::LeftButton);
    QVERIFY(m_window->scene().objects.last().name != m_window->scene().objects[before.objects.size()].name);
    states << m_window->scene();
    list->item(1)->setText(QStringLiteral("Renamed"));
    QCOMPARE(m_window->scene().objects[1].name, QStringLiteral("Renamed"));
    states << m_window->scene();
    list->item(0)->setCheckState(Qt::Unchecked);
    QVERIFY(!m_window->scene().objects[0].visible);
    states << m_window->scene();
    m_window->selectObject(0);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Delete);
    QCOMPARE(m_window->scene().objects.size(), before.objects.size() + 1);
    states << m_window->scene();
    for (int i = states.size() - 2; i >= 0; --i)
    {
        trigger("actionUndo");
        QVERIFY(m_window->scene() == states[i]);
        QCOMPARE(list->count(), states[i].objects.size());
    }
    for (int i = 1; i < states.size(); ++i)
    {
        trigger("actionRedo");
        QVERIFY(m_window->scene() == states[i]);
    }

    // Down to nothing, which disables what needs an object.
    while (!m_window->scene().objects.isEmpty())
        QTest::mouseClick(find<QPushButton>("removeButton"), Qt::LeftButton);
    QVERIFY(!find<QWidget>("roughness")->isEnabled());
    QVERIFY(!find<QAction>("actionDelete")->isEnabled());
}

void tst_SceneEditor::cameraFollowsTheMouseAndTheEditors()
{
    auto* view = find<QRenderWidget>("renderView");
    auto* azimuth = find<QSliderEdit>("cameraAzimuth");
    const double before = azimuth->value().toDouble();
    QTest::mousePress(view, Qt::LeftButton, Qt::NoModifier, QPoint(100, 100));
    for (int x = 110; x <= 160; x += 10)
    {
        QMouseEvent move(QEvent::MouseMove, QPoint(x, 100), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view, &move);
    }
    QTest::mouseRelease(view, Qt::LeftButton, Qt::NoModifier, QPoint(160, 100));
    QVERIFY(azimuth->value().toDouble() != before);
    QCOMPARE(m_window->scene().camera.azimuth, azimuth->value().toDouble());
    QVERIFY(!m_window->isWindowModified());

    const double orbited = m_window->scene().camera.azimuth;
    type("cameraDistance", "lineEdit", "3");
    QCOMPARE(m_window->scene().camera.distance, 3.0);
    QVERIFY(m_window->isWindowModified());
    trigger("actionUndo");
    QCOMPARE(m_window->scene().camera.azimuth, orbited);
    trigger("actionResetCamera");
    QCOMPARE(azimuth->value().toDouble(), before);
}

void tst_SceneEditor::valuesOutsideOfTheScenesRangesAreClamped()
{
    const struct
    {
        const char *editor, *field, *text, *kept;
    } rows[] = {{"position", "x", "1e9", "1e+06"},
                {"scale", "z", "1e99", "1000"},
                {"scale", "y", "nan", "1"},
                {"baseColour", "y", "-1", "0"},
                {"lightColour", "blue", "7", "1"}};
    for (const auto& row : rows)
    {
        type(row.editor, row.field, row.text);
        auto* line = child<QLineEdit>(*find<QWidget>(row.editor), row.field);
        line->clearFocus();
        QCOMPARE(line->text().toLatin1(), row.kept);
        // Only scenes within the ranges can be saved.
        QVERIFY(m_window->saveScene(m_directory.filePath(QStringLiteral("clamped.json"))));
    }
}

void tst_SceneEditor::searchShowsWhatMatches()
{
    auto* search = find<QLineEdit>("search");
    find<QAccordion>("lightSection")->setOpen(false);
    QTest::keyClicks(search, "INTENS");
    QVERIFY(find<QWidget>("lightIntensity")->isVisible());
    QVERIFY(find<QAccordion>("lightSection")->isOpen());
    QVERIFY(!find<QWidget>("lightColour")->isVisible());
    QVERIFY(!find<QWidget>("roughness")->isVisible());
    QVERIFY(!find<QWidget>("shadows")->isVisible());
    search->selectAll();
    QTest::keyClicks(search, "shadows");
    QVERIFY(find<QWidget>("shadows")->isVisible());
    search->clear();
    QVERIFY(find<QWidget>("roughness")->isVisible());
    QVERIFY(!find<QAccordion>("lightSection")->isOpen());
}

void tst_SceneEditor::sectionsStayFoldedInTheNextRun()
{
    for (const char* section : {"objectSection", "viewSection"})
        QVERIFY(find<QAccordion>(section)->isOpen());
    QTest::mouseClick(child<QCheckBox>(*find<QAccordion>("materialSection"), "accordionCheckBox"), Qt::LeftButton,
                      Qt::NoModifier, QPoint(12, 12));
    QVERIFY(!find<QAccordion>("materialSection")->isOpen());
    QVERIFY(m_window->close());
    start();
    QVERIFY(!find<QAccordion>("materialSection")->isOpen());
    QVERIFY(find<QAccordion>("objectSection")->isOpen());
    const QList<QAction*> recent = find<QMenu>("menuRecent")->actions();
    QCOMPARE(recent.size(), 1);
    QCOMPARE(recent.first()->text(), QDir::toNativeSeparators(studio()));
    trigger("actionUnfoldAll");
    QVERIFY(find<QAccordion>("materialSection")->isOpen());
    trigger("actionFoldAll");
    QVERIFY(!find<QAccordion>("objectSection")->isOpen());
}

void tst_SceneEditor::badFilesLeaveTheSceneAsItIs_data()
{
    BadFiles::addColumns();
    const QByteArray head("{\"format\": \"orvek-scene\", \"version\": 1, ");
    QTest::newRow("missing") << QByteArray() << QStringList{"bad.json"};
    QTest::newRow("syntax") << QByteArray("{\n  \"format\": orvek }") << QStringList{"bad.json", "2:"};
    QTest::newRow("range") << head + "\"camera\": {\"fieldOfView\": 500}}"
                           << QStringList{"camera.fieldOfView", "expected", "500"};
    QTest::newRow("mesh missing") << head + "\"objects\": [{}, {\"mesh\": \"none.obj\"}]}"
                                  << QStringList{"bad.json", "objects[1].mesh", "none.obj"};
    QTest::newRow("environment missing") << head + "\"view\": {\"environmentImage\": \"none.png\"}}"
                                         << QStringList{"view.environmentImage", "none.png", "expected"};
    // A PNG file that claims to have 30000 x 30000 pixels.
    write(m_directory.filePath(QStringLiteral("huge.png")),
          QByteArray::fromBase64("iVBORw0KGgoAAAANSUhEUgAAdTAAAHUwCAIAAADpRW/tAAAADElEQVR4nGNgoD0AAABkAAGGZDw1"));
    QTest::newRow("environment huge") << head + "\"view\": {\"environmentImage\": \"huge.png\"}}"
                                      << QStringList{"view.environmentImage", "huge.png", "30000"};
}

void tst_SceneEditor::badFilesLeaveTheSceneAsItIs()
{
    const auto [contents, named] = BadFiles::row();
    const QString file = m_directory.filePath(QStringLiteral("bad.json"));
    QFile::remove(file);
    if (!contents.isEmpty())
        write(file, contents);
    type("roughness", "lineEdit", "0.125");
    const Scene before = m_window->scene();
    QSignalSpy failed(m_window.get(), &MainWindow::loadFailed);
    m_window->openScene(file);
    QTRY_COMPARE(failed.count(), 1);
    const QString message = find<QLabel>("messageText")->text();
    QVERIFY(find<QLabel>("messageText")->isVisible());
    for (const QString& part : named)
        QVERIFY2(message.contains(part), qPrintable(message));
    QVERIFY(m_window->scene() == before);
    QCOMPARE(m_window->fileName(), QFileInfo(studio()).absoluteFilePath());
    QVERIFY(m_window->isWindowModified());
    trigger("actionUndo");
    QVERIFY(m_window->scene() != before);
}

void tst_SceneEditor::badMeshLeavesTheObjectAsItIs()
{
    const Scene before = m_window->scene();
    const QString broken = m_directory.filePath(QStringLiteral("broken.obj"));
    write(broken, "v 0 0\nf 1 2 3\n");
    QSignalSpy failed(m_window.get(), &MainWindow::loadFailed);
    type("meshFile", "lineEdit", qPrintable(broken));
    QTRY_COMPARE(failed.count(), 1);
    QVERIFY2(find<QLabel>("messageText")->text().contains(QStringLiteral("broken.obj")),
             qPrintable(find<QLabel>("messageText")->text()));
    QVERIFY(m_window->scene() == before);
    QCOMPARE(find<QFileEdit>("meshFile")->filename(), before.objects[0].meshFile);

    // The same for the surroundings, and then a mesh that can be read.
    type("environmentImage", "lineEdit", qPrintable(broken));
    QVERIFY(m_window->scene() == before);
    QCOMPARE(find<QFileEdit>("environmentImage")->filename(), before.view.environmentImage);
    QVERIFY(!find<QAction>("actionUndo")->isEnabled());
    type("meshFile", "lineEdit", "vase.obj");
    QTRY_COMPARE(QFileInfo(m_window->scene().objects[0].meshFile).fileName(), QStringLiteral("vase.obj"));
    trigger("actionUndo");
    QVERIFY(m_window->scene() == before);
}

void tst_SceneEditor::cancelledLoadLeavesTheSceneAsItIs()
{
    const Scene before = m_window->scene();
    QByteArray large("o large\n");
    for (int i = 0; i < 400000; ++i)
        large += "v " + QByteArray::number(i % 1000) + " " + QByteArray::number(i / 1000) + " 0\n";
    for (int i = 1; i < 399000; ++i)
        large +=
            "f " + QByteArray::number(i) + " " + QByteArray::number(i + 1) + " " + QByteArray::number(i + 1000) + "\n";
    const QString file = m_directory.filePath(QStringLiteral("large.obj"));
    write(file, large);
    m_window->importMesh(file);
    QVERIFY(m_window->isLoading());
    auto* cancel = find<QToolButton>("cancel");
    QVERIFY(cancel->isVisible());
    // The window stays usable meanwhile.
    type("roughness", "lineEdit", "0.125");
    QCOMPARE(m_window->scene().objects[0].material.roughness, 0.125);
    trigger("actionUndo");
    if (m_window->isLoading())
        QTest::mouseClick(cancel, Qt::LeftButton);
    QTRY_VERIFY(!m_window->isLoading());
    QVERIFY(!cancel->isVisible());
    QVERIFY(m_window->scene() == before);
}

void tst_SceneEditor::unsavedChangesAreAskedAbout()
{
    const Scene before = m_window->scene();
    answer(QMessageBox::Cancel);
    trigger("actionNew"); // nothing to lose, so nobody is asked
    QVERIFY(m_window->scene().objects.isEmpty());
    open(studio());
    // Typed, but neither confirmed nor left.
    auto* field = child<QLineEdit>(*find<QWidget>("roughness"), "lineEdit");
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, "0.125");
    answer(QMessageBox::Cancel);
    QVERIFY(!m_window->close());
    QVERIFY(m_window->isVisible());
    QCOMPARE(m_window->scene().objects[0].material.roughness, 0.125);
    answer(QMessageBox::Discard);
    QVERIFY(m_window->close());
}

void tst_SceneEditor::unsavedChangesOutliveTheProgram()
{
    QDir copies(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/recovery"));
    QVERIFY(copies.path().startsWith(m_directory.path()) && copies.removeRecursively());
    const auto isCopied = [&copies] { return !copies.entryList({QStringLiteral("*.json")}).isEmpty(); };
    // Undone, there is nothing to be kept.
    type("roughness", "lineEdit", "0.25");
    QTRY_VERIFY_WITH_TIMEOUT(isCopied(), 10000);
    trigger("actionUndo");
    QVERIFY(!isCopied());

    type("roughness", "lineEdit", "0.125");
    const Scene changed = m_window->scene();
    QTRY_VERIFY_WITH_TIMEOUT(isCopied(), 10000);
    // It belongs to a window that is still there.
    QVERIFY(!MainWindow().offerUnsavedChanges());
    m_window = std::make_unique<MainWindow>();
    answer(QMessageBox::Cancel);
    QVERIFY(!m_window->offerUnsavedChanges());
    QVERIFY(isCopied());

    QSignalSpy opened(m_window.get(), &MainWindow::sceneOpened);
    answer(QMessageBox::Open);
    QVERIFY(m_window->offerUnsavedChanges());
    QTRY_COMPARE(opened.count(), 1);
    QVERIFY(m_window->scene() == changed);
    QCOMPARE(m_window->fileName(), QFileInfo(studio()).absoluteFilePath());
    QVERIFY(m_window->isWindowModified());
    QVERIFY(isCopied());
    QVERIFY(m_window->saveScene(m_directory.filePath(QStringLiteral("recovered.json"))));
    QVERIFY(copies.entryList(QDir::Files).isEmpty());

    m_window->selectObject(0);
    trigger("actionDuplicate");
    QTRY_VERIFY_WITH_TIMEOUT(isCopied(), 10000);
    m_window = std::make_unique<MainWindow>();
    answer(QMessageBox::Discard);
    QVERIFY(!m_window->offerUnsavedChanges());
    QVERIFY(copies.entryList(QDir::Files).isEmpty());
}

void tst_SceneEditor::shortcutsAreComplete()
{
    QStringList keys;
    const auto actions = m_window->findChildren<QAction*>(QRegularExpression(QStringLiteral("^action")));
    for (const QAction* action : actions)
    {
        if (action->objectName() != QLatin1String("actionAbout"))
            QVERIFY2(!action->shortcut().isEmpty(), qPrintable(action->objectName()));
        for (const QKeySequence& key : action->shortcuts())
            keys << key.toString();
    }

    // Two actions with the same key get none of its presses.
    QCOMPARE(keys.removeDuplicates(), 0);
}

void tst_SceneEditor::secondViewCanBeClosed()
{
    for (int i = 0; i < 2; ++i)
        trigger("actionNewView");
    QList<QRenderWidget*> views;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows)
    {
        if (auto* view = qobject_cast<QRenderWidget*>(window))
            views << view;
    }
    QCOMPARE(views.size(), 2);
    QVERIFY(QTest::qWaitForWindowExposed(views[0]));
    const QPointer<QRenderWidget> closed(views[0]);
    views[0]->close();
    QTRY_VERIFY(closed.isNull());
    type("roughness", "lineEdit", "0.125");
    // The other one goes with the window.
    const QPointer<QRenderWidget> other(views[1]);
    m_window.reset();
    QVERIFY(other.isNull());
}

void tst_SceneEditor::commandLine_data()
{
    CommandLines::addColumns();
    const QString picture = m_directory.filePath(QStringLiteral("picture.png"));
    const QString bad = m_directory.filePath(QStringLiteral("command.json"));
    write(bad, "{\"format\": \"orvek-scene\", \"version\": 1, \"light\": {\"kind\": \"sun\"}}");
    const auto row = [](const char* name, const QStringList& arguments, int exitCode, const QStringList& said)
    { QTest::newRow(name) << arguments << exitCode << said; };
    row("picture", {"--size", "900x620", "--search", "colour", "--screenshot", picture}, 0, {});
    row("bad scene", {"--screenshot", picture, bad}, 2, {"command.json", "light.kind", "sun", "point"});
    row("no such scene", {m_directory.filePath(QStringLiteral("none.json"))}, 2, {"none.json"});
    row("bad size", {"--size", "big"}, 2, {"--size", "expected"});
    row("no display", {}, 1, {"no display"});
}

void tst_SceneEditor::commandLine()
{
    const auto [arguments, exitCode, said] = CommandLines::row();
    const QString picture = m_directory.filePath(QStringLiteral("picture.png"));
    QFile::remove(picture);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_directory.path());
    if (exitCode == 1)
    {
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    }
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(SCENE_EDITOR_PROGRAM), arguments);
    QVERIFY(program.waitForFinished(120000));
    const QString errors = QString::fromLocal8Bit(program.readAllStandardError());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QVERIFY2(program.exitCode() == exitCode, qPrintable(errors));
    for (const QString& part : said)
        QVERIFY2(errors.contains(part), qPrintable(errors));
    QCOMPARE(QFile::exists(picture), exitCode == 0);
    if (exitCode == 0)
        QCOMPARE(QImage(picture).size(), QSize(900, 620));
}

QTEST_MAIN(tst_SceneEditor)
#include "tst_sceneeditor.moc"
