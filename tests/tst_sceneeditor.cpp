#include "testsupport.h"

#include <examples/SceneEditor/document/SceneFile.h>
#include <examples/SceneEditor/MainWindow.h>
#include <examples/SceneEditor/SceneView.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QFileEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

#include <QtGui/QDropEvent>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressBar>

using sceneeditor::MainWindow;
using sceneeditor::Scene;

namespace
{
QString studio()
{
    return QStringLiteral(SCENE_EDITOR_ASSETS "/studio.json");
}

// For the tests of values, files and command lines.
using Clamped = Table<const char*, const char*, const char*, QByteArray>; // editor, field, text and what it becomes
using BadFiles = Table<QByteArray, QStringList>;                          // contents and parts of the message
using CommandLines = Table<QStringList, int, QStringList>;                // arguments, exit code, parts of the message

void write(const QString& fileName, const QByteArray& contents)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contents);
}

void drag(QWidget* view, Qt::MouseButton button, const QPoint& from, const QPoint& to)
{
    QTest::mousePress(view, button, Qt::NoModifier, from);
    QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, button, Qt::NoModifier);
    QCoreApplication::sendEvent(view, &move);
    QTest::mouseRelease(view, button, Qt::NoModifier, to);
}

QList<QRenderWidget*> secondViews()
{
    QList<QRenderWidget*> views;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows)
        if (auto* view = qobject_cast<QRenderWidget*>(window))
            views << view;
    return views;
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
} // namespace

class tst_SceneEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_directory.isValid());
        // Not the settings of the person who runs the tests.
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_directory.path());
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_directory.path()));
        QCoreApplication::setOrganizationName("Orvek");
        QCoreApplication::setApplicationName("SceneEditorTest");
    }

    void init()
    {
        QSettings().clear();
        start();
    }

    void cleanup() { m_window.reset(); }

    void typedSavedUndoneAndReopened()
    {
        const Scene before = scene();
        QVERIFY(before.objects.size() >= 3);
        type("material.roughness", "lineEdit", "0.125");
        type("position", "y", "1.5");
        type("material.baseColour", "x", "0.5");
        type("light.colour", "y", "0.25");
        type("view.gridExtent", "lineEdit", "64");
        type("name", "lineEdit", "Stand");
        type("light.intensity", "lineEdit", "+=0.5");
        find<QCheckBox>("light.shadows")->click();
        const Scene edited = scene();
        QCOMPARE(edited.objects[0].material.roughness, 0.125);
        QCOMPARE(edited.objects[0].position.y(), 1.5f);
        QCOMPARE(edited.objects[0].material.baseColour,
                 QColor::fromRgbF(0.5, before.objects[0].material.baseColour.greenF(),
                                  before.objects[0].material.baseColour.blueF()));
        QCOMPARE(edited.light.colour.greenF(), QColor::fromRgbF(0, 0.25, 0).greenF());
        QCOMPARE(edited.view.gridExtent, 64);
        QCOMPARE(find<QListWidget>("objectList")->item(0)->text(), "Stand");
        QVERIFY(edited.light.intensity > before.light.intensity);
        QCOMPARE(edited.light.shadows, !before.light.shadows);
        QVERIFY(m_window->isWindowModified());

        const QString file = m_directory.filePath("edited.json");
        QVERIFY(m_window->saveScene(file));
        QVERIFY(!m_window->isWindowModified());
        for (int i = 0; i < 8; ++i)
            trigger("actionUndo");
        QVERIFY(scene() == before);
        QVERIFY(!find<QAction>("actionUndo")->isEnabled());
        QVERIFY(m_window->isWindowModified());
        open(file);
        QVERIFY(scene() == edited);
        QCOMPARE(document().fileName(), file);
    }

    void undoSelectsTheObjectThatWasEdited()
    {
        const Scene before = scene();
        document().setSelection({2});
        type("scale", "z", "3");
        document().setSelection({1});
        QCOMPARE(child<QLineEdit>(*child<QWidget>(*find<QAccordion>("Object"), "name"), "lineEdit")->text(),
                 before.objects[1].name);
        type("light.azimuth", "lineEdit", "5");
        trigger("actionUndo");
        QCOMPARE(document().selection().value(0, -1), 1);
        trigger("actionUndo");
        QCOMPARE(document().selection().value(0, -1), 2);
        QVERIFY(scene() == before);
        // Choosing another object is no step.
        QVERIFY(!find<QAction>("actionUndo")->isEnabled());
    }

    void severalObjectsAreEditedInOneStep()
    {
        const Scene before = scene();
        auto* list = find<QListWidget>("objectList");
        for (const int row : {1, 2})
            QTest::mouseClick(list->viewport(), Qt::LeftButton, row == 1 ? Qt::NoModifier : Qt::ControlModifier,
                              list->visualItemRect(list->item(row)).center());
        QCOMPARE(document().selection(), (QVector<int>{1, 2}));
        QCOMPARE(child<QLineEdit>(*find<QWidget>("material.roughness"), "lineEdit")->text(), QString());
        type("material.roughness", "lineEdit", "*=0.5");
        for (const size_t i : {1U, 2U})
            QCOMPARE(scene().objects[i].material.roughness, before.objects[i].material.roughness * 0.5);
        // A move of the mouse is one step, however often it moves.
        document().beginMove();
        for (const float x : {0.25F, 0.5F})
            document().moveSelection(QVector3D(x, 0.0F, 0.0F));
        document().endMove();
        QCOMPARE(scene().objects[2].position.x(), before.objects[2].position.x() + 0.5F);
        trigger("actionUndo");
        trigger("actionUndo");
        QVERIFY(scene() == before);
        QVERIFY(!find<QAction>("actionUndo")->isEnabled());
        document().reorder({2, 0, 1, 3, 4, 5});
        QCOMPARE(list->item(0)->text(), before.objects[2].name);
        QCOMPARE(document().selection(), (QVector<int>{0, 2}));
        document().setSelection({1});
        trigger("actionDuplicate");
        trigger("actionDuplicate");
        QCOMPARE(scene().objects[3].name, before.objects[0].name + " 3");
    }

    void objectsAreAddedRenamedHiddenAndRemoved()
    {
        auto* list = find<QListWidget>("objectList");
        const Scene before = scene();
        std::vector<Scene> states{before};
        const QSignalSpy progress(find<QProgressBar>("progress"), &QProgressBar::valueChanged);
        const QString cube = QFileInfo(studio()).dir().filePath("cube.obj");
        QMimeData files;
        files.setUrls({QUrl::fromLocalFile(cube), QUrl::fromLocalFile(cube)});
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window.get(), &enter);
        QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window.get(), &drop);
        QTRY_COMPARE(scene().objects.size(), before.objects.size() + 1);
        QVERIFY(
            std::any_of(progress.cbegin(), progress.cend(), [](const QVariantList& step) { return step[0] == 500; }));
        QCOMPARE(document().selection(), QVector<int>{int(before.objects.size())});
        states.push_back(scene());
        type("position", "x", "-2");
        states.push_back(scene());
        QTest::mouseClick(find<QPushButton>("duplicateButton"), Qt::LeftButton);
        QVERIFY(scene().objects.back().name != scene().objects[before.objects.size()].name);
        states.push_back(scene());
        list->item(1)->setText("Renamed");
        QCOMPARE(scene().objects[1].name, "Renamed");
        states.push_back(scene());
        list->item(0)->setCheckState(Qt::Unchecked);
        QVERIFY(!scene().objects[0].visible);
        states.push_back(scene());
        document().setSelection({0});
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(scene().objects.size(), before.objects.size() + 1);
        states.push_back(scene());
        // The camera is no part of a step: importing frames the new object.
        for (size_t i = states.size() - 1; i-- > 0;)
        {
            trigger("actionUndo");
            QVERIFY(scene().objects == states[i].objects);
            QCOMPARE(list->count(), int(states[i].objects.size()));
        }
        for (size_t i = 1; i < states.size(); ++i)
        {
            trigger("actionRedo");
            QVERIFY(scene().objects == states[i].objects);
        }

        // Down to nothing, which disables what needs an object.
        while (!scene().objects.empty())
            QTest::mouseClick(find<QPushButton>("removeButton"), Qt::LeftButton);
        QVERIFY(!m_window->findChild<QWidget*>("material.roughness"));
        QVERIFY(!m_window->findChild<QWidget*>("mesh"));
        QVERIFY(!find<QAction>("actionDelete")->isEnabled());
    }

    void cameraFollowsTheMouseAndTheEditors()
    {
        auto* view = find<QRenderWidget>("renderView");
        auto* azimuth = find<QSliderEdit>("camera.azimuth");
        const double before = azimuth->value().toDouble();
        drag(view, Qt::LeftButton, QPoint(100, 100), QPoint(160, 100));
        QVERIFY(azimuth->value().toDouble() != before);
        QCOMPARE(scene().camera.azimuth, azimuth->value().toDouble());
        // No step, but quitting would lose it.
        QVERIFY(m_window->isWindowModified() && !find<QAction>("actionUndo")->isEnabled());

        // The right button moves the target, and selects nothing.
        const sceneeditor::Camera left = scene().camera;
        const QVector<int> selection = document().selection();
        drag(view, Qt::RightButton, view->rect().center(), view->rect().center() + QPoint(-40, 0));
        QTest::mouseClick(view, Qt::RightButton, Qt::NoModifier, view->rect().center());
        QVERIFY(scene().camera.target.x() > left.target.x());
        QCOMPARE(scene().camera.azimuth, left.azimuth);
        QCOMPARE(document().selection(), selection);

        const double orbited = scene().camera.azimuth;
        type("camera.distance", "lineEdit", "3");
        QCOMPARE(scene().camera.distance, 3.0);
        QVERIFY(m_window->isWindowModified());
        trigger("actionUndo");
        QCOMPARE(scene().camera.azimuth, orbited);
        trigger("actionResetCamera");
        QCOMPARE(azimuth->value().toDouble(), before);
    }

    void playingTurnsTheObjects()
    {
        constexpr int Cube = 4; // far from the axis
        const auto* view = m_window->findChild<sceneeditor::SceneView*>();
        const QSize size = view->widget()->size();
        QPoint place;
        for (int x = 0; x < size.width() && place.isNull(); x += 10)
            if (view->objectAt(QPoint(x, size.height() / 2)) == Cube)
                place = QPoint(x, size.height() / 2);
        QVERIFY(!place.isNull());
        const QSignalSpy drawn(view->widget(), &QRenderWidget::viewUpdated);
        const auto drawMore = [&drawn]
        { return QTest::qWaitFor([&, n = drawn.size()] { return drawn.size() > n + 5; }); };
        auto* play = find<QCheckBox>("animation.playing");
        type("animation.turntableSpeed", "lineEdit", "0");
        play->click();
        QVERIFY(drawMore());
        QCOMPARE(view->objectAt(place), Cube);
        type("animation.turntableSpeed", "lineEdit", "-90");
        QTRY_VERIFY(view->objectAt(place) != Cube);
        play->click();
        QCoreApplication::processEvents();
        const int before = drawn.size();
        QTest::qWait(100);
        QVERIFY(drawn.size() <= before + 1);
    }

    void settingsWithoutEffectAreDisabled()
    {
        using sceneeditor::LightKind;
        sceneeditor::Light& light = document().scene().light;
        for (const LightKind kind : {LightKind::Spot, LightKind::Point, LightKind::Directional})
        {
            light.kind = kind;
            light.shadows = kind == LightKind::Point;
            document().valueChanged("scene.light.kind");
            QTRY_COMPARE(find<QWidget>("light.distance")->isEnabled(), kind != LightKind::Directional);
            for (const char* cone : {"light.coneAngle", "light.coneSoftness"})
                QCOMPARE(find<QWidget>(cone)->isEnabled(), kind == LightKind::Spot);
            QCOMPARE(find<QWidget>("light.shadowMapSize")->isEnabled(), light.shadows);
        }
    }

    void valuesOutsideOfTheScenesRangesAreClamped_data()
    {
        const Clamped row;
        row("position", "position", "x", "1e9", "1e+06");
        row("infinite", "scale", "z", "1e99", "1");
        row("not a number", "scale", "y", "nan", "1");
        row("colour", "material.baseColour", "y", "-1", "0");
        row("roughness", "material.roughness", "lineEdit", "7", "1");
        row("no power of two", "light.shadowMapSize", "lineEdit", "99999", "4096");
    }

    void valuesOutsideOfTheScenesRangesAreClamped()
    {
        const auto [editor, field, text, kept] = Clamped::current();
        QLineEdit* line = typeOnly(editor, field, text);
        QTest::keyClick(line, Qt::Key_Return);
        line->clearFocus();
        QCOMPARE(line->text().toLatin1(), kept);
        // Only scenes within the ranges can be saved.
        QVERIFY(m_window->saveScene(m_directory.filePath("clamped.json")));
    }

    void searchShowsWhatMatches()
    {
        auto* search = find<QLineEdit>("search");
        find<QAccordion>("Light")->setOpen(false);
        QTest::keyClicks(search, "INTENS");
        QVERIFY(find<QWidget>("light.intensity")->isVisible() && find<QAccordion>("Light")->isOpen());
        for (const char* other : {"light.colour", "material.roughness", "light.shadows"})
            QVERIFY2(!find<QWidget>(other)->isVisible(), other);
        search->selectAll();
        QTest::keyClicks(search, "shadows");
        QVERIFY(find<QWidget>("light.shadows")->isVisible());
        search->clear();
        QVERIFY(find<QWidget>("material.roughness")->isVisible());
        QVERIFY(!find<QAccordion>("Light")->isOpen());
    }

    void sectionsStayFoldedInTheNextRun()
    {
        for (const char* section : {"Object", "View"})
            QVERIFY(find<QAccordion>(section)->isOpen());
        QTest::mouseClick(child<QCheckBox>(*find<QAccordion>("Material"), "accordionCheckBox"), Qt::LeftButton,
                          Qt::NoModifier, QPoint(12, 12));
        QVERIFY(!find<QAccordion>("Material")->isOpen());
        QVERIFY(m_window->close());
        start();
        QVERIFY(!find<QAccordion>("Material")->isOpen());
        QVERIFY(find<QAccordion>("Object")->isOpen());
        const QList<QAction*> recent = find<QMenu>("menuRecent")->actions();
        QCOMPARE(recent.size(), 1);
        QCOMPARE(recent.first()->text(), QDir::toNativeSeparators(studio()));
        trigger("actionUnfoldAll");
        QVERIFY(find<QAccordion>("Material")->isOpen());
        trigger("actionFoldAll");
        QVERIFY(!find<QAccordion>("Object")->isOpen());
    }

    void badFilesLeaveTheSceneAsItIs_data()
    {
        const BadFiles row;
        const QByteArray head("{\"format\": \"orvek-scene\", \"version\": 1, ");
        // A PNG file that claims to have 30000 x 30000 pixels.
        write(m_directory.filePath("huge.png"),
              QByteArray::fromBase64("iVBORw0KGgoAAAANSUhEUgAAdTAAAHUwCAIAAADpRW/tAAAADElEQVR4nGNgoD0AAABkAAGGZDw1"));
        row("missing", "", {"bad.json"});
        row("syntax", "{\n  \"format\": orvek }", {"bad.json", "2:"});
        row("range", head + "\"camera\": {\"fieldOfView\": 500}}", {"camera.fieldOfView", "expected", "500"});
        row("mesh missing", head + "\"objects\": [{}, {\"mesh\": \"none.obj\"}]}",
            {"bad.json", "objects[1].mesh", "none.obj"});
        row("environment missing", head + "\"view\": {\"environmentImage\": \"none.png\"}}",
            {"view.environmentImage", "none.png", "expected"});
        row("environment huge", head + "\"view\": {\"environmentImage\": \"huge.png\"}}",
            {"view.environmentImage", "huge.png", "30000"});
    }

    void badFilesLeaveTheSceneAsItIs()
    {
        const auto [contents, named] = BadFiles::current();
        const QString file = m_directory.filePath("bad.json");
        QFile::remove(file);
        if (!contents.isEmpty())
            write(file, contents);
        type("material.roughness", "lineEdit", "0.125");
        const Scene before = scene();
        QSignalSpy failed(m_window.get(), &MainWindow::loadFailed);
        m_window->openScene(file);
        QTRY_COMPARE(failed.count(), 1);
        const QString message = shownMessage();
        for (const QString& part : named)
            QVERIFY2(message.contains(part), qPrintable(message));
        QVERIFY(scene() == before);
        QCOMPARE(document().fileName(), QFileInfo(studio()).absoluteFilePath());
        QVERIFY(m_window->isWindowModified());
        trigger("actionUndo");
        QVERIFY(!(scene() == before));
    }

    void badMeshLeavesTheObjectAsItIs()
    {
        const Scene before = scene();
        const QString broken = m_directory.filePath("broken.obj");
        write(broken, "v 0 0\nf 1 2 3\n");
        QSignalSpy failed(m_window.get(), &MainWindow::loadFailed);
        type("mesh", "lineEdit", qPrintable(broken));
        QTRY_COMPARE(failed.count(), 1);
        QVERIFY2(shownMessage().contains("broken.obj"), qPrintable(shownMessage()));
        QVERIFY(scene() == before);
        QCOMPARE(find<QFileEdit>("mesh")->filename(), before.objects[0].meshFile);

        // The same for the surroundings, and then a mesh that can be read.
        type("view.environmentImage", "lineEdit", qPrintable(broken));
        QVERIFY(scene() == before);
        QCOMPARE(find<QFileEdit>("view.environmentImage")->filename(), before.view.environmentImage);
        QVERIFY(!find<QAction>("actionUndo")->isEnabled());
        type("mesh", "lineEdit", "vase.obj");
        QTRY_COMPARE(QFileInfo(scene().objects[0].meshFile).fileName(), "vase.obj");
        trigger("actionUndo");
        QVERIFY(scene() == before);
    }

    void cancelledLoadLeavesTheSceneAsItIs()
    {
        const Scene before = scene();
        const QString file = m_directory.filePath("large.obj");
        write(file, "v 0 0 0\nv 1 0 0\nv 0 1 0\n" + QByteArray("f 1 2 3\n").repeated(2000000));
        m_window->importMeshes({file});
        QVERIFY(m_window->isLoading());
        auto* cancel = find<QToolButton>("cancel");
        QVERIFY(cancel->isVisible());
        // The window stays usable meanwhile.
        type("material.roughness", "lineEdit", "0.125");
        QCOMPARE(scene().objects[0].material.roughness, 0.125);
        trigger("actionUndo");
        if (m_window->isLoading())
            QTest::mouseClick(cancel, Qt::LeftButton);
        QTRY_VERIFY(!m_window->isLoading());
        QVERIFY(!cancel->isVisible());
        QVERIFY(scene() == before);
    }

    void unsavedChangesAreAskedAbout()
    {
        const Scene before = scene();
        answer(QMessageBox::Cancel);
        trigger("actionNew"); // nothing to lose, so nobody is asked
        QVERIFY(scene().objects.empty());
        open(studio());
        // Typed, but neither confirmed nor left.
        typeOnly("material.roughness", "lineEdit", "0.125");
        answer(QMessageBox::Cancel);
        QVERIFY(!m_window->close());
        QVERIFY(m_window->isVisible());
        QCOMPARE(scene().objects[0].material.roughness, 0.125);
        answer(QMessageBox::Discard);
        QVERIFY(m_window->close());
    }

    void unsavedChangesOutliveTheProgram()
    {
        QDir copies(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/recovery");
        m_window.reset(); // it has a lock there
        QVERIFY(copies.path().startsWith(m_directory.path()) && copies.removeRecursively());
        start();
        const auto isCopied = [&copies] { return !copies.entryList({"*.json"}).isEmpty(); };
        // Undone, there is nothing to be kept.
        type("material.roughness", "lineEdit", "0.25");
        QTRY_VERIFY_WITH_TIMEOUT(isCopied(), 10000);
        trigger("actionUndo");
        QVERIFY(!isCopied());

        type("material.roughness", "lineEdit", "0.125");
        const Scene changed = scene();
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
        QVERIFY(scene() == changed);
        QCOMPARE(document().fileName(), QFileInfo(studio()).absoluteFilePath());
        QVERIFY(m_window->isWindowModified());
        QVERIFY(isCopied());
        QVERIFY(m_window->saveScene(m_directory.filePath("recovered.json")));
        const QStringList kinds{"*.json*", "*.document"};
        QCOMPARE(copies.entryList(kinds), QStringList());

        document().setSelection({0});
        trigger("actionDuplicate");
        QTRY_VERIFY_WITH_TIMEOUT(isCopied(), 10000);
        m_window = std::make_unique<MainWindow>();
        // Of a program that ended while it stored a copy, this year and long ago.
        for (const char* orphan : {"1.json.new", "2.document"})
        {
            QFile file(copies.filePath(QLatin1String(orphan)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            if (*orphan == '2')
                QVERIFY(file.setFileTime(QDateTime(QDate(2001, 1, 1), QTime()), QFileDevice::FileModificationTime));
        }
        answer(QMessageBox::Discard);
        QVERIFY(!m_window->offerUnsavedChanges());
        QCOMPARE(copies.entryList(kinds), QStringList("1.json.new"));
    }

    void savingCommitsTypingAndLocksTheFile()
    {
        const QString file = m_directory.filePath("typed.json");
        typeOnly("material.roughness", "lineEdit", "0.125");
        QVERIFY(m_window->saveScene(file));
        QString error;
        QCOMPARE(sceneeditor::readScene(file, &error)->objects[0].material.roughness, 0.125);
        // The window that came first is not bothered.
        QCOMPARE(shownMessage(), QString());
        const std::unique_ptr<MainWindow> first = std::move(m_window);
        m_window = std::make_unique<MainWindow>();
        open(file);
        QVERIFY2(shownMessage().contains("another window"), qPrintable(shownMessage()));
    }

    void shortcutsAreComplete()
    {
        QStringList keys;
        const auto actions = m_window->findChildren<QAction*>(QRegularExpression("^action"));
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

    void tabPassesTheDotsAndReachesTheView()
    {
        auto* roughness = child<QLineEdit>(*find<QWidget>("material.roughness"), "lineEdit");
        roughness->setFocus();
        QTest::keyClick(roughness, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), child<QSlider>(*find<QWidget>("material.metallic"), "slider"));
        roughness->setFocus();
        QTest::keyClick(roughness, Qt::Key_R, Qt::ControlModifier);
        QCOMPARE(scene().objects[0].material.roughness, sceneeditor::Material().roughness);
        const auto* view = find<QRenderWidget>("renderView");
        for (int i = 0; i < 200 && !view->hasFocus(); ++i)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(view->hasFocus());
    }

    // The picture of a view may be right while its window shows only a message, in two colours and what lies between
    // them.
    void viewsShowTheSceneOnTheScreen()
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            QSKIP("only an X server shows what OpenGL draws");
        trigger("actionNewView");
        const QList<QRenderWidget*> second = secondViews();
        QCOMPARE(second.size(), 1);
        for (QRenderWidget* view : {find<QRenderWidget>("renderView"), second[0]})
        {
            view->window()->raise();
            QVERIFY(QTest::qWaitForWindowExposed(view->window()));
            const auto colours = [view]
            {
                const QImage seen = view->screen()->grabWindow(view->winId()).toImage();
                QSet<QRgb> found;
                for (int y = 0; y < seen.height(); y += 4)
                    for (int x = 0; x < seen.width(); x += 4)
                        found.insert(seen.pixel(x, y));
                return int(found.size());
            };
            QTRY_VERIFY2(colours() > 500, qPrintable(QString::number(colours())));
        }
    }

    void secondViewCanBeClosed()
    {
        for (int i = 0; i < 2; ++i)
            trigger("actionNewView");
        const QList<QRenderWidget*> views = secondViews();
        QCOMPARE(views.size(), 2);
        QVERIFY(QTest::qWaitForWindowExposed(views[0]));
        const QPointer<QRenderWidget> closed(views[0]);
        views[0]->close();
        QTRY_VERIFY(closed.isNull());
        type("material.roughness", "lineEdit", "0.125");
        // The other one goes with the window.
        const QPointer<QRenderWidget> other(views[1]);
        m_window.reset();
        QVERIFY(other.isNull());
    }

    void commandLine_data()
    {
        const CommandLines row;
        const QString picture = m_directory.filePath("picture.png");
        const QString bad = m_directory.filePath("command.json");
        write(bad, "{\"format\": \"orvek-scene\", \"version\": 1, \"light\": {\"kind\": \"sun\"}}");
        row("picture", {"--size", "900x620", "--search", "colour", "--screenshot", picture}, 0, {});
        row("bad scene", {"--screenshot", picture, bad}, 2, {"command.json", "light.kind", "sun", "point"});
        row("no such scene", {m_directory.filePath("none.json")}, 2, {"none.json"});
        row("bad size", {"--size", "big"}, 2, {"--size", "expected"});
        row("no display", {}, 1, {"no display"});
    }

    void commandLine()
    {
        const auto [arguments, exitCode, said] = CommandLines::current();
        const QString picture = m_directory.filePath("picture.png");
        QFile::remove(picture);
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CONFIG_HOME", m_directory.path());
        if (QTest::currentDataTag() == QByteArray("no display"))
        {
            environment.remove("DISPLAY");
            environment.remove("WAYLAND_DISPLAY");
            environment.insert("QT_QPA_PLATFORM", "xcb");
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

private:
    void start()
    {
        m_window.reset();
        m_window = std::make_unique<MainWindow>();
        open(studio());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QApplication::setActiveWindow(m_window.get());
        QTRY_VERIFY(m_window->isActiveWindow());
    }

    void open(const QString& fileName)
    {
        QSignalSpy opened(m_window.get(), &MainWindow::sceneOpened);
        m_window->openScene(fileName);
        QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 1, 30000);
    }

    template <typename T>
    T* find(const char* name)
    {
        return child<T>(*m_window, name);
    }

    QString shownMessage()
    {
        const auto* label = find<QLabel>("messageText");
        return label->isVisibleTo(m_window.get()) ? label->text() : QString();
    }

    sceneeditor::Document& document() { return m_window->document(); }
    const Scene& scene() { return document().scene(); }

    QLineEdit* typeOnly(const char* editor, const char* field, const char* text)
    {
        // The scene has a name, too.
        QWidget* panel = qstrcmp(editor, "name") == 0 ? find<QAccordion>("Object") : find<QWidget>("propertyPanel");
        auto* line = child<QLineEdit>(*child<QWidget>(*panel, editor), field);
        line->setFocus();
        typeText(line, QLatin1String(text));
        return line;
    }

    void type(const char* editor, const char* field, const char* text)
    {
        QTest::keyClick(typeOnly(editor, field, text), Qt::Key_Return);
    }
    void trigger(const char* action) { find<QAction>(action)->trigger(); }

    QTemporaryDir m_directory;
    std::unique_ptr<MainWindow> m_window;
};

QTEST_MAIN(tst_SceneEditor)
#include "tst_sceneeditor.moc"
