#include "testsupport.h"
#include "ui_LightForm.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QLibrary>
#include <QtCore/QPluginLoader>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QXmlStreamReader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <QtUiTools/QUiLoader>

#include <memory>

namespace
{
const QString PluginDirectory = QStringLiteral(ORVEK_PLUGIN_DIRECTORY);

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

// An element as name, attributes and contents; whitespace between elements does not count.
QString outline(QXmlStreamReader& xml)
{
    QString result = xml.name().toString();
    const QXmlStreamAttributes attributes = xml.attributes();
    for (const QXmlStreamAttribute& attribute : attributes)
        result += QStringLiteral(" %1=%2").arg(attribute.name(), attribute.value());
    result += QLatin1Char('{');
    while (!xml.atEnd() && xml.readNext() != QXmlStreamReader::EndElement)
    {
        if (xml.isStartElement())
            result += outline(xml);
        else if (xml.isCharacters())
            result += xml.text().trimmed();
    }
    return result + QLatin1Char('}');
}

QString geometry(int width, int height)
{
    return QStringLiteral("property name=geometry{rect{x{0}y{0}width{%1}height{%2}}}").arg(width).arg(height);
}

QString texts(const QString& toolTip, const QString& whatsThis)
{
    return QStringLiteral("property name=toolTip{string{%1}}property name=whatsThis{string{%2}}")
        .arg(toolTip, whatsThis);
}

QString column(const QString& name)
{
    QString result = QStringLiteral("layout class=QVBoxLayout name=%1{").arg(name);
    for (const char* property : {"spacing", "leftMargin", "topMargin", "rightMargin", "bottomMargin"})
        result += QStringLiteral("property name=%1{number{2}}").arg(QLatin1String(property));
    return result + QLatin1Char('}');
}

QStringList outputLines(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return {};
    return QString::fromLocal8Bit(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QWidget* loadedForm()
{
    QUiLoader loader;
    loader.addPluginPath(PluginDirectory);
    QFile file(QStringLiteral(ORVEK_SOURCE_DIRECTORY "/examples/FormAtRunTime/LightForm.ui"));
    return file.open(QIODevice::ReadOnly) ? loader.load(&file) : nullptr;
}

QWidget* compiledForm()
{
    auto* form = new QWidget;
    Ui::LightForm().setupUi(form);
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

    void castsByName()
    {
        QObject* root = m_loader.instance();
        auto* collection = qobject_cast<Collection*>(root);
        QVERIFY(collection);
        QCOMPARE(root->metaObject()->className(), "WidgetCollection");
        QCOMPARE(root->qt_metacast("WidgetCollection"), static_cast<void*>(root));
        QCOMPARE(root->qt_metacast("QDesignerCustomWidgetCollectionInterface"), static_cast<void*>(collection));
        QCOMPARE(root->qt_metacast("QDesignerCustomWidgetInterface"), nullptr);

        // Both casts, by the interface's name and by its identifier, for each; the parts are the ones that are listed.
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

    void describesWidget_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < widgetNames().size(); ++i)
            QTest::newRow(qPrintable(widgetNames().at(i))) << i;
    }

    void describesWidget()
    {
        QFETCH(int, index);
        const QString name = widgetNames().at(index);
        // A collection of its own, whose flags nobody has set yet.
        delete m_loader.instance();
        Interface* entry = qobject_cast<Collection*>(m_loader.instance())->customWidgets().at(index);

        QCOMPARE(entry->group(), QStringLiteral("Orvek"));
        QCOMPARE(entry->includeFile(), QStringLiteral("Orvek/PlugIns/Qt/OrvekQtWidgets/%1.h").arg(name));
        QVERIFY(QFile::exists(QStringLiteral(ORVEK_SOURCE_DIRECTORY "/") + entry->includeFile()));
        QCOMPARE(entry->toolTip() + entry->whatsThis() + entry->codeTemplate(), QString());
        QVERIFY(entry->icon().isNull());
        QCOMPARE(entry->isContainer(), name == QLatin1String("QPropertyPanel") || name == QLatin1String("QAccordion"));

        QVERIFY(!entry->isInitialized());
        entry->initialize(nullptr);
        QVERIFY(entry->isInitialized());
        entry->initialize(nullptr);
        QVERIFY(entry->isInitialized());

        QWidget parent;
        const QWidget* inside = entry->createWidget(&parent);
        const std::unique_ptr<QWidget> free(entry->createWidget(nullptr));
        QCOMPARE(inside->parentWidget(), &parent);
        QVERIFY(free->isWindow());
        for (const QWidget* widget : {inside, const_cast<const QWidget*>(free.get())})
            QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), name);
    }

    void snippet_data()
    {
        QTest::addColumn<QString>("objectName");
        QTest::addColumn<QString>("contents");
        const QString row = geometry(100, 24) + texts(QString(), QStringLiteral("."));
        QTest::newRow("QSliderEdit") << "sliderEdit" << row;
        QTest::newRow("QIntSliderEdit") << "intSliderEdit" << row;
        QTest::newRow("QLabelEdit") << "labelEdit" << row;
        QTest::newRow("QVectorEdit") << "VectorEdit" << row;
        QTest::newRow("QFileEdit") << "FileEdit" << row;
        QTest::newRow("QRenderWidget") << "RenderWidget"
                                       << geometry(120, 100) + texts(QStringLiteral("A rendering view for any API"),
                                                                     QStringLiteral("The Rendering Widget."));
        QTest::newRow("QAccordion") << "accordion"
                                    << row + QStringLiteral("widget class=QWidget name=contentsWidget native=true{%1}")
                                                 .arg(column(QStringLiteral("accContentsVLayout")));
        QTest::newRow("QPropertyPanel")
            << "PropertyPanel"
            << geometry(372, 474) +
                   QStringLiteral("property name=minimumSize{size{width{0}height{48}}}"
                                  "property name=windowTitle{string{QPropertyPanel}}"
                                  "widget class=QScrollArea name=scrollArea{"
                                  "property name=verticalScrollBarPolicy{enum{Qt::ScrollBarAlwaysOn}}"
                                  "property name=horizontalScrollBarPolicy{enum{Qt::ScrollBarAlwaysOff}}"
                                  "property name=sizeAdjustPolicy{enum{QAbstractScrollArea::AdjustIgnored}}"
                                  "property name=widgetResizable{bool{true}}"
                                  "widget class=QWidget name=scrollAreaWidgetContents{%1%2}}")
                       .arg(geometry(349, 446), column(QStringLiteral("verticalLayout_3")));
    }

    void snippet()
    {
        QFETCH(QString, objectName);
        QFETCH(QString, contents);
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        const auto* collection = qobject_cast<Collection*>(m_loader.instance());
        const QString text = collection->customWidgets().at(widgetNames().indexOf(name))->domXml();

        QXmlStreamReader xml(text);
        QVERIFY(xml.readNextStartElement());
        QCOMPARE(outline(xml),
                 QStringLiteral("ui language=c++{widget class=%1 name=%2{%3}}").arg(name, objectName, contents));
        while (!xml.atEnd())
            xml.readNext();
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));

        QVERIFY(text.endsWith(QLatin1Char('\n')));
        const QStringList lines = text.split(QLatin1Char('\n'));
        for (const QString& line : lines)
            QVERIFY2(line.count(QRegularExpression(QStringLiteral("<\\w"))) <= 1, qPrintable(line));
    }

    void formWorks_data()
    {
        QTest::addColumn<bool>("compiled");
        QTest::newRow("loaded at run time") << false;
        QTest::newRow("compiled") << true;
    }

    void formWorks()
    {
        QFETCH(bool, compiled);
        WarningWatch watch;
        const std::unique_ptr<QWidget> form(compiled ? compiledForm() : loadedForm());
        QVERIFY(form);
        form->show();
        QVERIFY(QTest::qWaitForWindowExposed(form.get()));

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
        QVERIFY(!intensity->isVisible());
        QVERIFY(environment->isVisible());
        QTest::keyClicks(child<QLineEdit>(*child<QPropertyPanel>(*form, "panel"), "search"), QStringLiteral("direct"));
        QVERIFY(light->isOpen());
        QVERIFY(direction->isVisible());
        QVERIFY(!intensity->isVisible());
        QVERIFY(!environment->isVisible());
        QCOMPARE(WarningWatch::count(), 0);
    }

    // The ten widgets and the two entry points. What the linker adds itself is not told apart by name.
    void exportsNothingElse()
    {
        const QStringList lines = outputLines(QStringLiteral(ORVEK_NM), {"-DC", "--defined-only", pluginFile()});
        QStringList classes;
        QStringList others;
        const QRegularExpression symbol(QStringLiteral("^[0-9a-f]+ \\w (.*)$"));
        const QRegularExpression member(QStringLiteral(
            "^(?:vtable for |typeinfo for |typeinfo name for |non-virtual thunk to |guard variable for )?"
            "(\\w+)(?:::|$)"));
        QStringList expected = widgetNames() + QStringList({"QColourEdit", "QPropertyEditWidget"});
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
        QCOMPARE(others, QStringList({"qt_plugin_instance", "qt_plugin_query_metadata"}));
        classes.sort();
        QStringList twice = expected + expected;
        twice.sort();
        QCOMPARE(classes, twice);
    }

    void needsNoDesignerLibrary()
    {
        const QStringList needed =
            outputLines(QStringLiteral(ORVEK_READELF), {"-d", pluginFile()}).filter(QStringLiteral("(NEEDED)"));
        QCOMPARE(needed.filter(QStringLiteral("libQt5")).size(), 3);
        for (const char* library : {"libQt5Core", "libQt5Gui", "libQt5Widgets"})
            QCOMPARE(needed.filter(QLatin1String(library)).size(), 1);
    }

private:
    QPluginLoader m_loader;
};

QTEST_MAIN(tst_DesignerPlugin)
#include "tst_designerplugin.moc"
