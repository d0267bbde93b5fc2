#include "testsupport.h"

#include <examples/SceneEditor/Languages.h>
#include <examples/SceneEditor/Looks.h>
#include <examples/SceneEditor/MainWindow.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

namespace
{
// As the guidelines for accessible web pages define it.
double luminance(const QColor& colour)
{
    const auto linear = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (qMax(a, b) + 0.05) / (qMin(a, b) + 0.05);
}

// The part of a widget's picture that has exactly this colour.
double shareOf(const QColor& colour, QWidget* widget)
{
    const QImage image =
        widget->window()->grab(QRect(widget->mapTo(widget->window(), QPoint()), widget->size())).toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == colour ? 1 : 0;
    return double(count) / (image.width() * image.height());
}

// A section with two editors, one of which can be found.
struct Section
{
    Section()
    {
        section.setTitle("Section");
        rows.addWidget(&found);
        rows.addWidget(&other);
        found.setTitle("Found");
        found.setDefaultValue(0.5);
        other.setTitle("Other");
        section.show();
    }
    QAccordion section;
    QVBoxLayout rows{new QWidget(&section)};
    QSliderEdit found;
    QSliderEdit other;
};

using Contrasts = Table<QString, double, double>; // look, least contrast of texts and of the rest
} // namespace

//! The looks and languages of the scene editor.
class tst_Looks : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_directory.path());
        QCoreApplication::setOrganizationName(QStringLiteral("Orvek"));
        QCoreApplication::setApplicationName(QStringLiteral("tst_looks"));
    }

    void cleanup() { sceneeditor::applyLook(QStringLiteral("system")); }

    void palettesAreReadable_data()
    {
        const Contrasts row;
        row("light", "light", 4.5, 3.0);
        row("dark", "dark", 4.5, 3.0);
        row("highcontrast", "highcontrast", 7.0, 4.5);
    }

    void palettesAreReadable()
    {
        const auto [look, text, other] = Contrasts::current();
        sceneeditor::applyLook(look);
        QSettings file(QStringLiteral(":/styles/%1.ini").arg(look), QSettings::IniFormat);
        const QStringList keys = file.allKeys();
        QVERIFY(keys.size() > 20);
        for (const QString& key : keys)
        {
            const QByteArray role = key.section(QLatin1Char('/'), 1).toLatin1();
            QVERIFY2(QMetaEnum::fromType<QPalette::ColorRole>().keyToValue(role.constData()) >= 0, qPrintable(key));
            QVERIFY2(QColor(file.value(key).toString()).isValid(), qPrintable(key));
        }

        const QPalette palette = QApplication::palette();
        const auto verify = [&](QPalette::ColorRole front, QPalette::ColorRole back, double least,
                                QPalette::ColorGroup group = QPalette::Active)
        {
            const double found = contrast(palette.color(group, front), palette.color(group, back));
            const auto roles = QMetaEnum::fromType<QPalette::ColorRole>();
            QVERIFY2(found >= least,
                     qPrintable(QStringLiteral("%1 on %2: %3")
                                    .arg(QLatin1String(roles.valueToKey(front)), QLatin1String(roles.valueToKey(back)))
                                    .arg(found)));
        };
        verify(QPalette::WindowText, QPalette::Window, text);
        verify(QPalette::WindowText, QPalette::Midlight, text); // titles of sections
        verify(QPalette::Text, QPalette::Base, text);
        verify(QPalette::ButtonText, QPalette::Button, text);
        verify(QPalette::HighlightedText, QPalette::Highlight, text); // titles that were found
        verify(QPalette::ToolTipText, QPalette::ToolTipBase, text);
        verify(QPalette::PlaceholderText, QPalette::Base, text);
        verify(QPalette::Highlight, QPalette::Window, other); // reset button and focus
        verify(QPalette::WindowText, QPalette::Window, 2.5, QPalette::Disabled);
        verify(QPalette::Text, QPalette::Base, 2.5, QPalette::Disabled);
    }

    void styleSheetsNameNoColours()
    {
        sceneeditor::lookNames();
        sceneeditor::applyLook(QStringLiteral("light"));
        const QRegularExpression number(QStringLiteral("#[0-9a-fA-F]{3,8}\\s*[;}]|rgb|hsv|hsl"));
        const QDir styles(QStringLiteral(":/styles"));
        const QStringList files = styles.entryList({QStringLiteral("*.qss")});
        QCOMPARE(files.size(), sceneeditor::lookNames().size() + 1); // and the chevrons
        for (const QString& name : files)
        {
            QFile file(styles.filePath(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString match = number.match(QString::fromUtf8(file.readAll())).captured();
            QVERIFY2(match.isEmpty(), qPrintable(name + QStringLiteral(": ") + match));
        }
    }

    void lookReplacesTheOneBefore()
    {
        const QPalette before = QApplication::palette();
        const QString sheet = qApp->styleSheet();
        sceneeditor::applyLook(QStringLiteral("highcontrast"));
        QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(Qt::black));
        QVERIFY(qApp->styleSheet() != sheet);
        sceneeditor::applyLook(QStringLiteral("system"));
        QCOMPARE(QApplication::palette().color(QPalette::Window), before.color(QPalette::Window));
        QCOMPARE(QApplication::palette().color(QPalette::Highlight), before.color(QPalette::Highlight));
        QCOMPARE(qApp->styleSheet(), sheet);
    }

    void marksAndResetButtonsAreSeen()
    {
        for (const QString& look : sceneeditor::lookNames())
        {
            sceneeditor::applyLook(look);
            Section s;
            const QColor mark = QApplication::palette().color(QPalette::Highlight);
            auto* title = child<QLabel>(s.found, "label");
            QCOMPARE(shareOf(mark, title), 0.0);
            s.section.setSearchText("foun");
            QVERIFY2(shareOf(mark, title) > 0.5, qPrintable(look));
            s.section.setSearchText(QString());
            QCOMPARE(shareOf(mark, title), 0.0);
            auto* reset = child<QPushButton>(s.found, "reset");
            s.found.setValue(0.5);
            QCOMPARE(shareOf(mark, reset), 0.0);
            s.found.setValue(0.6);
            QVERIFY2(shareOf(mark, reset) > 0.05, qPrintable(look));
        }
    }

    void chosenLookIsKept()
    {
        {
            sceneeditor::MainWindow window;
            child<QMenu>(window, "menuLook")->actions().at(2)->trigger();
            QVERIFY(contrast(QApplication::palette().color(QPalette::Window), Qt::black) < 3.0);
        }
        const QString stored = QSettings().value(QStringLiteral("look")).toString();
        QCOMPARE(stored, sceneeditor::lookNames().at(2));
        const sceneeditor::MainWindow window;
        QVERIFY(child<QMenu>(window, "menuLook")->actions().at(2)->isChecked());
    }

    void windowAndLibrarySpeakGerman()
    {
        if (!sceneeditor::languages().contains(QStringLiteral("de")))
            QSKIP("Built without translations");
        sceneeditor::installLanguage(QStringLiteral("de"));
        const sceneeditor::MainWindow window;
        // One text from each: the window's form, its code and the library.
        QCOMPARE(child<QMenu>(window, "menuFile")->title(), QStringLiteral("&Datei"));
        QVERIFY2(window.windowTitle().startsWith(QStringLiteral("Unbenannt")), qPrintable(window.windowTitle()));
        QCOMPARE(child<QLineEdit>(window, "search")->placeholderText(), QStringLiteral("Suchen"));
    }

private:
    QTemporaryDir m_directory;
};

QTEST_MAIN(tst_Looks)

#include "tst_looks.moc"
