#include "testsupport.h"
#include "ui_LightForm.h"

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/EditorList.h>

#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <QtUiTools/QUiLoader>

namespace
{
const QString PluginDirectory = QStringLiteral(ORVEK_PLUGIN_DIRECTORY);
// Qt names it anew where its format changes.
const QString MetadataSymbol =
    QT_VERSION_MAJOR == 5 ? QStringLiteral("qt_plugin_query_metadata") : QStringLiteral("qt_plugin_query_metadata_v2");

using Collection = QDesignerCustomWidgetCollectionInterface;
using Interface = QDesignerCustomWidgetInterface;

QString pluginFile()
{
    return PluginDirectory + QLatin1Char('/') + QDir(PluginDirectory).entryList(QDir::Files | QDir::System).value(0);
}

QStringList widgetNames()
{
    return {"QSliderEdit", "QIntSliderEdit", "QLabelEdit", "QVectorEdit",
            "QFileEdit",   "QPropertyPanel", "QAccordion", "QRenderWidget"};
}

QStringList namesOf(QObject* root)
{
    QStringList names;
    const auto* collection = qobject_cast<Collection*>(root);
    const QList<Interface*> interfaces = collection ? collection->customWidgets() : QList<Interface*>();
    for (const Interface* entry : interfaces)
        names.append(entry->name());
    return names;
}

QStringList outputLines(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return {};
    return QString::fromLocal8Bit(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

std::unique_ptr<QWidget> loadedForm()
{
    QUiLoader loader;
    loader.addPluginPath(PluginDirectory);
    QFile file(QStringLiteral(ORVEK_SOURCE_DIRECTORY "/examples/FormAtRunTime/LightForm.ui"));
    return file.open(QIODevice::ReadOnly) ? std::unique_ptr<QWidget>(loader.load(&file)) : nullptr;
}

std::unique_ptr<QWidget> compiledForm()
{
    auto form = std::make_unique<QWidget>();
    Ui::LightForm().setupUi(form.get());
    return form;
}
} // namespace

class tst_DesignerPlugin : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        m_loader.setFileName(pluginFile());
        QVERIFY2(m_loader.load(), qPrintable(m_loader.errorString()));
    }

    // A copy would be a second library in a program that links the first: here both are used, and must be the same one.
    void directoryHoldsOneRelativeLink()
    {
        const QStringList entries =
            QDir(PluginDirectory).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        QCOMPARE(entries.size(), 1);
        QVERIFY(QFileInfo(pluginFile()).isSymLink());
        const QStringList listing =
            outputLines(QStringLiteral("readlink"), {QDir(PluginDirectory).filePath(entries.constFirst())});
        QCOMPARE(listing, QStringList(QStringLiteral("../../lib/") + entries.constFirst()));

        auto* collection = qobject_cast<Collection*>(m_loader.instance());
        QVERIFY(collection);
        const std::unique_ptr<QWidget> edit(collection->customWidgets().constFirst()->createWidget(nullptr));
        QCOMPARE(edit->metaObject(), &QSliderEdit::staticMetaObject);
    }

    void metadataNamesTheInterface()
    {
        const QJsonObject data = m_loader.metaData();
        QVERIFY(data.value(QStringLiteral("MetaData")).toObject().isEmpty());
        QVERIFY(data.value(QStringLiteral("debug")).isBool());
        QCOMPARE(data.value(QStringLiteral("version")).toInt() >> 8, QT_VERSION >> 8);
        QCOMPARE(data.value(QStringLiteral("IID")).toString(), QStringLiteral("orvek.OrvekWidgets"));
        QCOMPARE(data.value(QStringLiteral("className")).toString(), QStringLiteral("WidgetCollection"));
    }

    void instanceIsKeptUntilItIsDeleted()
    {
        const auto entry = reinterpret_cast<QObject* (*)()>(QLibrary::resolve(pluginFile(), "qt_plugin_instance"));
        QVERIFY(entry);
        QPointer<QObject> first = m_loader.instance();
        QVERIFY(first);
        QCOMPARE(entry(), first.data());
        QCOMPARE(namesOf(first), widgetNames());
        QCOMPARE(first->children().size(), widgetNames().size());
        const QPointer<QObject> firstChild = first->children().constFirst();

        delete first;
        QVERIFY(!firstChild);
        const QObject* second = entry();
        QVERIFY(second);
        QCOMPARE(m_loader.instance(), second);
        QCOMPARE(namesOf(entry()), widgetNames());
    }

    // Both casts, by the interface's name and by its identifier, for each; the parts are the ones that are listed.
    void castsByName()
    {
        QObject* root = m_loader.instance();
        auto* collection = qobject_cast<Collection*>(root);
        QVERIFY(collection);
        QCOMPARE(root->metaObject()->className(), "WidgetCollection");
        QCOMPARE(root->qt_metacast("WidgetCollection"), static_cast<void*>(root));
        QCOMPARE(root->qt_metacast("QDesignerCustomWidgetCollectionInterface"), static_cast<void*>(collection));
        QCOMPARE(root->qt_metacast("QDesignerCustomWidgetInterface"), nullptr);
        const QList<Interface*> interfaces = collection->customWidgets();
        for (int i = 0; i < interfaces.size(); ++i)
        {
            QObject* object = root->children().at(i);
            const QByteArray className = interfaces.at(i)->name().toLatin1() + "Interface";
            QCOMPARE(object->metaObject()->className(), className.constData());
            QCOMPARE(object->metaObject()->superClass(), &QObject::staticMetaObject);
            QCOMPARE(object->qt_metacast(className.constData()), static_cast<void*>(object));
            QCOMPARE(object->qt_metacast("QDesignerCustomWidgetInterface"), static_cast<void*>(interfaces.at(i)));
            QCOMPARE(qobject_cast<Interface*>(object), interfaces.at(i));
            QCOMPARE(object->qt_metacast("QDesignerCustomWidgetCollectionInterface"), nullptr);
        }
    }

    void describesWidgets()
    {
        // A collection of its own, whose flags nobody has set yet.
        delete m_loader.instance();
        const QList<Interface*> interfaces = qobject_cast<Collection*>(m_loader.instance())->customWidgets();
        for (Interface* entry : interfaces)
        {
            const QString name = entry->name();
            QCOMPARE(entry->group(), QStringLiteral("Orvek"));
            QCOMPARE(entry->includeFile(), QStringLiteral("Orvek/PlugIns/Qt/OrvekQtWidgets/%1.h").arg(name));
            QVERIFY(QFile::exists(QStringLiteral(ORVEK_SOURCE_DIRECTORY "/") + entry->includeFile()));
            QCOMPARE(entry->toolTip() + entry->whatsThis() + entry->codeTemplate(), QString());
            QVERIFY(entry->icon().isNull());
            QCOMPARE(entry->isContainer(), name == "QPropertyPanel" || name == "QAccordion");
            QVERIFY(!entry->isInitialized());
            for (int i = 0; i < 2; ++i)
            {
                entry->initialize(nullptr);
                QVERIFY(entry->isInitialized());
            }
            QWidget parent;
            const QWidget* inside = entry->createWidget(&parent);
            const std::unique_ptr<const QWidget> free(entry->createWidget(nullptr));
            QCOMPARE(inside->parentWidget(), &parent);
            QVERIFY(free->isWindow());
            for (const QWidget* widget : {inside, free.get()})
                QCOMPARE(QString(widget->metaObject()->className()), name);
        }
    }

    // What Designer makes of the snippets.
    void snippetsBuildWidgets()
    {
        const QString editor = "%1 100x24 '' '.'";
        const QStringList expected{editor.arg("sliderEdit"),
                                   editor.arg("intSliderEdit"),
                                   editor.arg("labelEdit"),
                                   editor.arg("VectorEdit"),
                                   editor.arg("FileEdit"),
                                   "PropertyPanel 372x474 '' '' verticalLayout_3 in scrollAreaWidgetContents",
                                   editor.arg("accordion") + " accContentsVLayout in contentsWidget",
                                   "RenderWidget 120x100 'A rendering view for any API' 'The Rendering Widget.'"};
        QUiLoader loader;
        loader.addPluginPath(PluginDirectory);
        const QList<Interface*> interfaces = qobject_cast<Collection*>(m_loader.instance())->customWidgets();
        for (int i = 0; i < interfaces.size(); ++i)
        {
            QByteArray text = interfaces.at(i)->domXml().toUtf8();
            QVERIFY(text.startsWith("<ui language=\"c++\">\n") && text.endsWith('\n'));
            for (const QByteArray& line : text.split('\n'))
                QVERIFY2(QString(line).count(QRegularExpression("<\\w")) <= 1, line.constData());
            // As Designer writes a plain widget that holds others.
            QCOMPARE(text.contains("native=\"true\">"), widgetNames().at(i) == "QAccordion");
            const auto size = QRegularExpression("<width>(\\d+)</width>\\s*<height>(\\d+)").match(text);
            QBuffer buffer(&text);
            const std::unique_ptr<QWidget> widget(loader.load(&buffer));
            QVERIFY2(widget, qPrintable(loader.errorString()));
            QCOMPARE(QString(widget->metaObject()->className()), widgetNames().at(i));
            QString built = QString("%1 %2x%3 '%4' '%5'")
                                .arg(widget->objectName(), size.captured(1), size.captured(2), widget->toolTip(),
                                     widget->whatsThis());
            const QRegularExpression columns("accContentsVLayout|verticalLayout_3");
            for (const auto* column : widget->findChildren<QVBoxLayout*>(columns))
            {
                built += QString(" %1 in %2").arg(column->objectName(), column->parentWidget()->objectName());
                QCOMPARE(column->contentsMargins(), QMargins(2, 2, 2, 2));
                QCOMPARE(column->spacing(), 2);
            }
            QCOMPARE(built, expected.at(i));
            if (const auto* area = widget->findChild<QScrollArea*>("scrollArea"))
            {
                QVERIFY(area->isAncestorOf(child<QWidget>(*widget, "scrollAreaWidgetContents")));
                QCOMPARE(widget->minimumSize(), QSize(0, 48));
                QCOMPARE(widget->windowTitle(), QString("QPropertyPanel"));
                QCOMPARE(area->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
                QCOMPARE(area->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
                QCOMPARE(area->sizeAdjustPolicy(), QAbstractScrollArea::AdjustIgnored);
                QVERIFY(area->widgetResizable());
            }
        }
    }

    void formLoadedAtRunTimeWorks() { checkForm(loadedForm()); }
    void compiledFormWorks() { checkForm(compiledForm()); }

    // The widgets and the two entry points. What the linker adds itself is not told apart by name.
    void exportsNothingElse()
    {
        const QStringList lines = outputLines(QStringLiteral(ORVEK_NM), {"-DC", "--defined-only", pluginFile()});
        QStringList classes;
        QStringList others;
        const QRegularExpression symbol(QStringLiteral("^[0-9a-f]+ \\w (.*)$"));
        const QRegularExpression member(QStringLiteral(
            "^(?:vtable for |typeinfo for |typeinfo name for |non-virtual thunk to |guard variable for )?"
            "(\\w+)(?:::|$)"));
#define ORVEK_NAME(Editor) << #Editor
        QStringList expected{"QAccordion", "QPropertyEditWidget", "QPropertyPanel", "QRenderWidget"};
        expected ORVEK_EDITORS(ORVEK_NAME);
        expected.sort();
        for (const QString& line : lines)
        {
            const QString name = symbol.match(line).captured(1);
            const QString owner = member.match(name).captured(1);
            if (!expected.contains(owner))
                others.append(name);
            else if (name.startsWith(QLatin1String("vtable for ")) ||
                     name.endsWith(QLatin1String("::staticMetaObject")))
                classes.append(owner);
        }
        others.sort();
        QCOMPARE(others, QStringList({"qt_plugin_instance", MetadataSymbol}));
        classes.sort();
        QStringList twice = expected + expected;
        twice.sort();
        QCOMPARE(classes, twice);
    }

    void needsNoDesignerLibrary()
    {
        const QStringList needed =
            outputLines(QStringLiteral(ORVEK_READELF), {"-d", pluginFile()}).filter(QStringLiteral("(NEEDED)"));
        const QString qt = QStringLiteral("libQt%1").arg(QT_VERSION_MAJOR);
        QCOMPARE(needed.filter(qt).size(), 3);
        for (const char* library : {"Core", "Gui", "Widgets"})
            QCOMPARE(needed.filter(qt + QLatin1String(library)).size(), 1);
    }

private:
    static void checkForm(const std::unique_ptr<QWidget>& form)
    {
        QVERIFY(form);
        showActive(*form);

        const auto* intensity = child<QSliderEdit>(*form, "intensity");
        QCOMPARE(intensity->maximum(), 8.0);
        QCOMPARE(child<QLineEdit>(*child<QIntSliderEdit>(*form, "shadows"), "lineEdit")->text(), QStringLiteral("Off"));
        QCOMPARE(child<QLabelEdit>(*form, "sceneName")->value(), QStringLiteral("Studio"));
        const auto* direction = child<QVectorEdit>(*form, "direction");
        const auto* environment = child<QFileEdit>(*form, "environment");
        QVERIFY(child<QRenderWidget>(*form, "view")->isVisible());

        // What lies in a section must be its contents, and the sections must be known to the panel.
        auto* light = child<QAccordion>(*form, "lightSection");
        QVERIFY(intensity->isVisible());
        light->setOpen(false);
        QVERIFY(!intensity->isVisible() && environment->isVisible());
        QTest::keyClicks(child<QLineEdit>(*child<QPropertyPanel>(*form, "panel"), "search"), QStringLiteral("direct"));
        QVERIFY(light->isOpen() && direction->isVisible() && !intensity->isVisible() && !environment->isVisible());
    }

    QPluginLoader m_loader;
};

QTEST_MAIN(tst_DesignerPlugin)
#include "tst_designerplugin.moc"
