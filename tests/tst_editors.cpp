#include "testsupport.h"

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QFileEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QLabelEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtCore/QMetaProperty>
#include <QtCore/QPointer>
#include <QtCore/QTranslator>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFileDialog>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

namespace
{
using Factory = QWidget* (*)();
template <typename Editor>
QWidget* make()
{
    return new Editor;
}
const QMap<QByteArray, Factory> factories = {
    {"QSliderEdit", &make<QSliderEdit>}, {"QIntSliderEdit", &make<QIntSliderEdit>}, {"QVectorEdit", &make<QVectorEdit>},
    {"QColourEdit", &make<QColourEdit>}, {"QLabelEdit", &make<QLabelEdit>},         {"QFileEdit", &make<QFileEdit>}};

std::unique_ptr<QWidget> create(const QByteArray& name)
{
    return std::unique_ptr<QWidget>(factories.value(name)());
}

void allEditors()
{
    QTest::addColumn<QByteArray>("name");
    for (const QByteArray& name : factories.keys())
        QTest::newRow(name) << name;
}

void showActive(QWidget& window)
{
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        qFatal("the window did not come to the screen");
}

void type(QLineEdit* field, const QString& typed)
{
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, typed);
    QTest::keyClick(field, Qt::Key_Return);
}

QString text(const QVector3D& v)
{
    return QString("%1 %2 %3").arg(double(v.x())).arg(double(v.y())).arg(double(v.z()));
}

QString fields(const QVectorEdit& edit)
{
    QStringList texts;
    for (const char* name : {"x", "y", "z"})
        texts << child<QLineEdit>(edit, name)->text();
    return texts.join(' ');
}

QString colourText(const QColourEdit& edit)
{
    const double* c = edit.colour();
    return QString("%1 %2 %3 %4").arg(c[0]).arg(c[1]).arg(c[2]).arg(c[3]);
}

QString methods(const QMetaObject& meta, QMetaMethod::MethodType type)
{
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        if (meta.method(i).methodType() == type && meta.method(i).access() == QMetaMethod::Public)
            signatures << QString::fromLatin1(meta.method(i).methodSignature());
    return signatures.join(' ');
}

// Marks every text with the context that it was asked for in.
class ContextTranslator : public QTranslator
{
public:
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        return QString("%1|%2").arg(context, source);
    }

    bool isEmpty() const override { return false; }
};

// A file editor that writes down what it announces, with the name that a host would read then.
struct FileFixture
{
    FileFixture()
    {
        log(edit.get());
        edit->setFilename("old");
        showActive(*edit);
        part<QPushButton>("browse")->setFocus(); // a field that loses the focus would be heard
        heard.clear();
    }

    void log(QFileEdit* file)
    {
        QObject::connect(file, &QFileEdit::startedEdit, [this, file] { heard << "started " + file->filename(); });
        QObject::connect(file, &QFileEdit::valueChanged, [this, file] { heard << "changed " + file->filename(); });
    }

    template <typename T>
    T* part(const char* name) const
    {
        return child<T>(*edit, name);
    }

    // Clicks browse and plays the user in the dialog that opens; false if none did.
    bool browse(const std::function<void(QFileDialog*)>& play) const
    {
        bool opened = false;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout,
                         [&]
                         {
                             auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
                             if (!dialog || !dialog->isVisible())
                                 return;
                             poll.stop();
                             opened = true;
                             const QPointer<QFileDialog> alive(dialog);
                             play(dialog);
                             if (alive && alive->isVisible())
                                 alive->reject(); // a failed check would hang
                         });
        poll.start(10);
        QTest::mouseClick(part<QPushButton>("browse"), Qt::LeftButton);
        return opened;
    }

    QStringList heard;
    std::unique_ptr<QFileEdit> edit = std::make_unique<QFileEdit>();
};
} // namespace

class tst_Editors : public WatchedTest
{
    Q_OBJECT
private Q_SLOTS:
    void contract_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("properties");
        QTest::addColumn<QString>("signatures");
        QTest::addColumn<QString>("slotSignatures");
        QTest::addColumn<QString>("form"); // size, minimum, children in order of creation

        QTest::newRow("integer")
            << QByteArray("QIntSliderEdit") << "QWidget"
            << "QString title=label, int labelWidth=80, int textWidth=80, QString units=, "
               "int unitsWidth=40, int minimum=0, int maximum=100, int defaultValue=0, "
               "bool showDefaultButton=false, QVariant value=0, bool powerOfTwo=false, "
               "Qt::Orientation orientation=1, bool readOnlyText=false, QStringList enums="
            << "valueChanged() startedEdit()"
            << "setOrientation(Qt::Orientation) on_reset_clicked() on_slider_sliderPressed() "
               "on_slider_sliderMoved(int) on_slider_valueChanged(int) on_lineEdit_editingFinished()"
            << "270x38 270x38 label slider lineEdit units reset";
        QTest::newRow("slider")
            << QByteArray("QSliderEdit") << "QPropertyEditWidget"
            << "QString title=label, bool liveUpdate=false, int labelWidth=80, int textWidth=80, QString units=, "
               "int unitsWidth=40, bool showButtons=false, bool showDefaultButton=false, double minimum=0, "
               "double maximum=1, double defaultValue=0, double step=0, QVariant value=0, bool logarithmic=false, "
               "Qt::Orientation orientation=1"
            << "valueChanged() startedEdit()"
            << "on_increment_clicked() on_decrement_clicked() on_reset_clicked() on_slider_sliderPressed() "
               "on_slider_sliderMoved(int) on_slider_valueChanged(int) on_lineEdit_editingFinished()"
            << "270x38 270x38 label decrement slider increment lineEdit units reset";
        QTest::newRow("vector")
            << QByteArray("QVectorEdit") << "QPropertyEditWidget"
            << "QString title=label, bool colourEdit=false, bool liveUpdate=false, int labelWidth=80, "
               "int textWidth=80, QString units=, int unitsWidth=40, QVector3D value="
            << "startedEdit() valueChanged()"
            << "on_reset_clicked() on_x_editingFinished() on_y_editingFinished() "
               "on_z_editingFinished()"
            << "453x132 270x132 label xLabel x yLabel y zLabel z units reset";
        QTest::newRow("colour") << QByteArray("QColourEdit") << "QPropertyEditWidget"
                                << "QString label=colour, int labelWidth=80, bool showAlpha=false"
                                << "valueChanged()"
                                << "on_red_editingFinished() on_green_editingFinished() on_blue_editingFinished() "
                                   "on_alpha_editingFinished()"
                                << "346x38 0x0 blue red green alpha label";
        QTest::newRow("text") << QByteArray("QLabelEdit") << "QWidget"
                              << "bool showDefaultButton=true, bool readOnly=false, QString value=, "
                                 "QString defaultValue=, QString title=label, int labelWidth=80, QString units=, "
                                 "int unitsWidth=40"
                              << "valueChanged() startedEdit()"
                              << "on_lineEdit_editingFinished() on_reset_clicked()"
                              << "270x87 270x0 label lineEdit units reset";
        QTest::newRow("file") << QByteArray("QFileEdit") << "QAbstractEdit"
                              << "bool showDefaultButton=true, bool readOnly=false, bool mustExist=true, "
                                 "QString filename=, QString defaultPath=, QString defaultFilename=, QString filter=, "
                                 "QString title=File name, int labelWidth=80, int unitsWidth=40"
                              << "valueChanged() startedEdit()"
                              << "on_lineEdit_editingFinished() on_browse_clicked() on_reset_clicked()"
                              << "515x261 270x0 label lineEdit browse units reset";
    }

    void contract()
    {
        QFETCH(QByteArray, name);
        const auto edit = create(name);
        const QMetaObject& meta = *edit->metaObject();
        QCOMPARE(QByteArray(meta.className()), name);
        QTEST(QString(meta.superClass()->className()), "base");
        QCOMPARE(edit->objectName(), QString(name));
        QStringList properties;
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        {
            const QMetaProperty property = meta.property(i);
            QVERIFY2(property.isWritable() && property.isDesignable() && property.isStored() &&
                         property.isScriptable() && !property.hasNotifySignal(),
                     property.name());
            properties
                << QString("%1 %2=%3").arg(property.typeName(), property.name(), property.read(edit.get()).toString());
        }
        QTEST(properties.join(", "), "properties");
        QTEST(methods(meta, QMetaMethod::Signal), "signatures");
        QTEST(methods(meta, QMetaMethod::Slot), "slotSignatures");
        const QSize size = edit->size();
        const QSize minimum = edit->minimumSize();
        QString form =
            QString("%1x%2 %3x%4").arg(size.width()).arg(size.height()).arg(minimum.width()).arg(minimum.height());
        const auto children = edit->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        for (const QWidget* part : children)
            form += ' ' + part->objectName();
        QTEST(form, "form");
    }

    void title_data() { allEditors(); }

    void title()
    {
        QFETCH(QByteArray, name);
        const auto edit = create(name);
        const bool isColour = name == "QColourEdit";
        auto* label = child<QLabel>(*edit, "label");
        const QString first = name == "QFileEdit" ? "QFileEdit" : label->text();
        QCOMPARE(edit->windowTitle(), first);
        edit->setProperty(isColour ? "label" : "title", "Sun && Moon");
        QCOMPARE(label->text(), QString("Sun && Moon"));
        QCOMPARE(edit->windowTitle(), QString("Sun && Moon"));
    }

    void widths_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QStringList>("parts");

        for (const QByteArray& name : factories.keys())
        {
            QTest::newRow(name + " label") << name << QByteArray("labelWidth") << QStringList{"label"};
            if (name != "QColourEdit")
                QTest::newRow(name + " units") << name << QByteArray("unitsWidth") << QStringList{"units"};
        }
        QTest::newRow("slider text") << QByteArray("QSliderEdit") << QByteArray("textWidth") << QStringList{"lineEdit"};
        QTest::newRow("integer text") << QByteArray("QIntSliderEdit") << QByteArray("textWidth")
                                      << QStringList{"lineEdit"};
        QTest::newRow("vector text") << QByteArray("QVectorEdit") << QByteArray("textWidth")
                                     << QStringList{"x", "y", "z"};
    }

    void widths()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, property);
        QFETCH(QStringList, parts);
        const auto edit = create(name);
        edit->resize(900, edit->height());
        edit->show();
        for (const int width : {123, 0, -5})
        {
            edit->setProperty(property, width);
            QTest::qWait(0);
            QCOMPARE(edit->property(property), QVariant(width));
            for (const QString& part : parts)
            {
                const auto* widget = edit->findChild<QWidget*>(part);
                QCOMPARE(widget->width(), qMax(0, width));
                QCOMPARE(widget->maximumHeight(), QWIDGETSIZE_MAX);
            }
        }
    }

    void formTextsAreTranslated_data() { allEditors(); }

    void formTextsAreTranslated()
    {
        QFETCH(QByteArray, name);
        ContextTranslator translator;
        QCoreApplication::installTranslator(&translator);
        const auto edit = create(name);
        QCoreApplication::removeTranslator(&translator);
        const bool isFile = name == "QFileEdit";
        const QString title = name + (isFile ? "|File name" : name == "QColourEdit" ? "|colour" : "|label");
        QCOMPARE(child<QLabel>(*edit, "label")->text(), title);
        QCOMPARE(edit->windowTitle(), isFile ? QString("QFileEdit|QFileEdit") : title);
        if (name == "QVectorEdit")
            QCOMPARE(child<QLabel>(*edit, "xLabel")->text(), QString("X")); // the same in every language
    }

    void wheelPassesASliderWithoutEffect_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("slider") << QByteArray("QSliderEdit");
        QTest::newRow("integer") << QByteArray("QIntSliderEdit");
    }

    void wheelPassesASliderWithoutEffect()
    {
        QFETCH(QByteArray, name);
        const auto edit = create(name);
        edit->show();
        QSignalSpy changed(edit.get(), SIGNAL(valueChanged()));
        const auto isAccepted = [](QWidget* widget)
        {
            QWheelEvent wheel({5, 5}, widget->mapToGlobal(QPoint(5, 5)), {}, {0, 120}, Qt::NoButton, {},
                              Qt::NoScrollPhase, false);
            wheel.ignore();
            QCoreApplication::sendEvent(widget, &wheel);
            return wheel.isAccepted();
        };
        QVERIFY(isAccepted(child<QSlider>(*edit, "slider"))); // else a scroll area around the editor would scroll
        QVERIFY(!isAccepted(child<QLabel>(*edit, "label")));
        QCOMPARE(child<QSlider>(*edit, "slider")->value(), 0);
        QVERIFY(changed.isEmpty());
    }

    // A host that pushes its values makes the field commit when it is left, whether or not the text is another one.
    void pushesOfTheSameValueAreLikeOthers_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("slider") << QByteArray("QSliderEdit") << QVariant(0.25);
        QTest::newRow("integer") << QByteArray("QIntSliderEdit") << QVariant(3);
        QTest::newRow("vector") << QByteArray("QVectorEdit") << QVariant(QVector3D(1, 2, 3));
        QTest::newRow("text") << QByteArray("QLabelEdit") << QVariant("fog");
        QTest::newRow("file") << QByteArray("QFileEdit") << QVariant("fog.png");
    }

    void pushesOfTheSameValueAreLikeOthers()
    {
        QFETCH(QByteArray, name);
        QFETCH(QVariant, value);
        QWidget window;
        QLineEdit elsewhere(&window);
        QWidget* editor = factories.value(name)();
        editor->setParent(&window);
        auto* field = editor->findChild<QLineEdit*>();
        showActive(window);
        const char* property = name == "QFileEdit" ? "filename" : "value";
        editor->setProperty(property, value);
        field->setFocus();
        elsewhere.setFocus(); // what the first push has armed
        QSignalSpy changes(editor, SIGNAL(valueChanged()));
        field->setFocus();
        elsewhere.setFocus();
        QCOMPARE(changes.size(), 0);
        editor->setProperty(property, value);
        field->setFocus();
        elsewhere.setFocus();
        QVERIFY(!changes.isEmpty());
    }

    void returnInADialogPressesNoButton_data() { allEditors(); }

    void returnInADialogPressesNoButton()
    {
        QFETCH(QByteArray, name);
        QDialog dialog;
        auto* rows = new QVBoxLayout(&dialog);
        rows->addWidget(create(name).release());
        QWidget* edit = rows->itemAt(0)->widget();
        int clicks = 0;
        for (QPushButton* button : edit->findChildren<QPushButton*>())
        {
            button->disconnect(edit);
            button->setEnabled(true);
            connect(button, &QPushButton::clicked, this, [&clicks] { ++clicks; });
        }
        showActive(dialog);
        auto* field = edit->findChild<QLineEdit*>();
        field->setFocus();
        QTest::keyClicks(field, "1\r");
        QCOMPARE(clicks, 0);
    }

    void tips()
    {
        QVectorEdit vector;
        QCOMPARE(child<QPushButton>(vector, "reset")->toolTip(), QString());
        vector.setToolTip("Position");
        vector.applyParentTooltip();
        QCOMPARE(child<QLineEdit>(vector, "z")->toolTip(), QString("Position"));
        vector.setToolTip(QString());
        vector.applyParentTooltip();
        QCOMPARE(child<QLineEdit>(vector, "z")->toolTip(), QString());
    }

    void vectorComponent_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("taken");
        QTest::addColumn<float>("component");

        const float infinity = std::numeric_limits<float>::infinity();
        QTest::newRow("number") << "2.5" << true << 2.5F;
        QTest::newRow("same number") << "7" << true << 7.0F;
        QTest::newRow("exponent") << "1e3" << true << 1000.0F;
        QTest::newRow("blanks") << " 2 " << true << 2.0F;
        QTest::newRow("beyond float") << "1e300" << true << infinity;
        QTest::newRow("below float") << "1e-300" << true << 0.0F;
        QTest::newRow("not a number") << "nan" << true << std::numeric_limits<float>::quiet_NaN();
        QTest::newRow("decimal comma") << "1,5" << false << 7.0F;
        QTest::newRow("letters") << "abc" << false << 7.0F;
        QTest::newRow("empty") << "" << false << 7.0F;
        QTest::newRow("beyond double") << "1e400" << false << 7.0F;
    }

    void vectorComponent()
    {
        QFETCH(QString, typed);
        QFETCH(bool, taken);
        QFETCH(float, component);
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German));
        QVectorEdit edit;
        edit.setValue({1.0F, 7.0F, 3.0F});
        edit.setDefaultValue({1.0F, component, 3.0F});
        QSignalSpy changed(&edit, &QVectorEdit::valueChanged);
        type(child<QLineEdit>(edit, "y"), typed);
        QLocale::setDefault(before);
        QCOMPARE(changed.count(), taken ? 1 : 0);
        QCOMPARE(fields(edit), QString("1 %1 3").arg(typed)); // as typed
        QCOMPARE(text(edit.value()), text({1.0F, component, 3.0F}));
        QCOMPARE(child<QPushButton>(edit, "reset")->isEnabled(), std::isnan(component)); // it differs even from itself
    }

    void vectorFieldsAndComponents()
    {
        QVectorEdit edit;
        QStringList log;
        connect(&edit, &QVectorEdit::startedEdit, this, [&] { log << "started"; });
        connect(&edit, &QVectorEdit::valueChanged, this, [&] { log << text(edit.value()); });
        type(child<QLineEdit>(edit, "x"), "1");
        type(child<QLineEdit>(edit, "z"), "3");
        type(child<QLineEdit>(edit, "y"), "2");
        QVERIFY(child<QPushButton>(edit, "reset")->isEnabled());
        edit.setDefaultValue({0.5F, 0.0F, -1.0F});
        QTest::mouseClick(child<QPushButton>(edit, "reset"), Qt::LeftButton);
        QCOMPARE(log, (QStringList{"1 0 0", "1 0 3", "1 2 3", "0.5 0 -1"}));
        QCOMPARE(fields(edit), QString("0.5 0 -1"));
        QVERIFY(!child<QPushButton>(edit, "reset")->isEnabled());
    }

    void vectorHostValues()
    {
        QVectorEdit edit;
        QSignalSpy changed(&edit, &QVectorEdit::valueChanged);
        edit.blockSignals(true);
        edit.setValue({1.0F / 3.0F, 1234567.0F, 0.1F});
        QVERIFY(!edit.signalsBlocked());
        QCOMPARE(fields(edit), QString("0.333333 1.23457e+06 0.1"));
        edit.setValue({4.0F, 5.0F, 6.0F}, false);
        QCOMPARE(fields(edit), QString("  "));
        QCOMPARE(edit.value(), QVector3D(4.0F, 5.0F, 6.0F));
        QCOMPARE(changed.count(), 0);
        type(child<QLineEdit>(edit, "y"), "50");
        QCOMPARE(fields(edit), QString(" 50 "));
        QCOMPARE(edit.value(), QVector3D(4.0F, 50.0F, 6.0F));
        QCOMPARE(changed.count(), 1);
    }

    void vectorDefault()
    {
        QVectorEdit edit;
        const auto* reset = child<QPushButton>(edit, "reset");
        const float nearlyTwo = std::nextafter(2.0F, 3.0F);
        QVERIFY(!reset->isEnabled());
        edit.setValue({0.0F, 0.0F, nearlyTwo});
        QVERIFY(reset->isEnabled());
        edit.setDefaultValue({0.0F, 0.0F, 2.0F});
        QVERIFY(reset->isEnabled()); // the last bit counts
        edit.setDefaultValue({0.0F, 0.0F, nearlyTwo});
        QVERIFY(!reset->isEnabled());
    }

    void vectorCaptions()
    {
        QVectorEdit edit;
        edit.setValue({1.0F, 2.0F, 3.0F});
        for (const bool colour : {true, false})
        {
            edit.setColourEdit(colour);
            const QString captions = child<QLabel>(edit, "xLabel")->text() + child<QLabel>(edit, "yLabel")->text() +
                                     child<QLabel>(edit, "zLabel")->text();
            QCOMPARE(captions, QString(colour ? "RGB" : "XYZ"));
            QCOMPARE(fields(edit), QString("1 2 3"));
        }
    }

    void colourTabOrder()
    {
        QColourEdit edit;
        showActive(edit);
        QStringList order;
        child<QLineEdit>(edit, "blue")->setFocus();
        for (int i = 0; i < 4; ++i)
        {
            order << QApplication::focusWidget()->objectName();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(order.join(' '), QString("blue red green alpha"));
        int right = 0;
        for (const char* name : {"label", "red", "green", "blue", "alpha"})
        {
            const QRect place = child<QWidget>(edit, name)->geometry();
            QVERIFY2(place.left() > right, name);
            right = place.right();
        }
    }

    void colourComponents()
    {
        QColourEdit edit;
        QCOMPARE(colourText(edit), QString("0 0 0 0"));
        QStringList log;
        connect(&edit, &QColourEdit::valueChanged, this, [&] { log << colourText(edit); });
        const double rgba[] = {0.5, 0.25, 1.0, 1.0};
        edit.setColour(rgba);
        edit.setColour(nullptr);
        QCOMPARE(colourText(edit), QString("0.5 0.25 1 1"));
        edit.setColour(0.0, 0.1, 0.2, 0.3);
        for (const char* name : {"red", "green", "blue", "alpha"})
            QCOMPARE(child<QLineEdit>(edit, name)->text(), QString());
        QCOMPARE(log, QStringList());

        type(child<QLineEdit>(edit, "green"), "2.5"); // no range
        QTest::keyClick(child<QLineEdit>(edit, "green"), Qt::Key_Return);
        type(child<QLineEdit>(edit, "alpha"), "-1");
        type(child<QLineEdit>(edit, "red"), "x");
        type(child<QLineEdit>(edit, "red"), "1,5");
        type(child<QLineEdit>(edit, "red"), "");
        type(child<QLineEdit>(edit, "blue"), " 1e-3 ");
        type(child<QLineEdit>(edit, "red"), "9");
        QCOMPARE(log,
                 (QStringList{"0 2.5 0.2 0.3", "0 2.5 0.2 0.3", "0 2.5 0.2 -1", "0 2.5 0.001 -1", "9 2.5 0.001 -1"}));
        QCOMPARE(child<QLineEdit>(edit, "blue")->text(), QString(" 1e-3 "));
    }

    void colourAlphaField()
    {
        QColourEdit edit;
        auto* alpha = child<QLineEdit>(edit, "alpha");
        type(alpha, "0.5");
        QVERIFY(!edit.showAlpha()); // not on the screen yet
        edit.show();
        QVERIFY(edit.showAlpha());
        edit.setShowAlpha(false);
        QVERIFY(!edit.showAlpha() && !alpha->isVisible() && child<QLineEdit>(edit, "blue")->isVisible());
        QCOMPARE(colourText(edit), QString("0 0 0 0.5"));
        edit.setShowAlpha(true);
        QVERIFY(edit.showAlpha());
        QCOMPARE(alpha->text(), QString("0.5"));
        edit.hide();
        QVERIFY(!edit.showAlpha());
    }

    void labelReset()
    {
        QLabelEdit edit;
        auto* reset = child<QPushButton>(edit, "reset");
        auto* field = child<QLineEdit>(edit, "lineEdit");
        QStringList log;
        connect(&edit, &QLabelEdit::startedEdit, this, [&] { log << "started"; });
        connect(&edit, &QLabelEdit::valueChanged, this, [&] { log << edit.value(); });
        QVERIFY(reset->isEnabled()); // though there is nothing to reset
        QTest::mouseClick(reset, Qt::LeftButton);
        QVERIFY(!reset->isEnabled());
        type(field, " Abc ");
        QVERIFY(!reset->isEnabled()); // typing leaves it as it was
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(log, (QStringList{"", " Abc ", " Abc "}));

        edit.blockSignals(true);
        edit.setValue("Abc");
        QVERIFY(!edit.signalsBlocked());
        QVERIFY(reset->isEnabled());
        edit.setShowDefaultButton(false);
        QVERIFY(!reset->isEnabled());
        edit.setDefaultValue("abc");
        QVERIFY(edit.showDefaultButton() && reset->isEnabled());
        edit.setDefaultValue("Abc");
        QVERIFY(!reset->isEnabled());
        edit.setDefaultValue("other");
        type(field, "other");
        QVERIFY(reset->isEnabled());
        log.clear();
        QTest::mouseClick(reset, Qt::LeftButton);
        QCOMPARE(log, QStringList{"other"});
        QCOMPARE(field->text(), QString("other"));
    }

    void labelReadOnly()
    {
        QLabelEdit edit;
        auto* field = child<QLineEdit>(edit, "lineEdit");
        QSignalSpy changed(&edit, &QLabelEdit::valueChanged);
        edit.setValue("fixed");
        edit.setReadOnly(true);
        type(field, "typed");
        QTest::mouseClick(child<QPushButton>(edit, "reset"), Qt::LeftButton);
        QVERIFY(child<QPushButton>(edit, "reset")->isEnabled());
        QCOMPARE(edit.value(), QString("fixed"));
        QCOMPARE(field->text(), QString("fixed"));
        QCOMPARE(changed.count(), 0);
        edit.setValue("from the host");
        QCOMPARE(field->text(), QString("from the host"));
        edit.setReadOnly(false);
        type(field, "typed");
        QCOMPARE(edit.value(), QString("typed"));
    }

    void fileTyped()
    {
        FileFixture f;
        auto* field = f.part<QLineEdit>("lineEdit");
        QVERIFY(f.part<QPushButton>("reset")->isEnabled());
        field->setFocus();
        type(field, " no such file ");
        f.part<QPushButton>("browse")->setFocus(); // leaving the field unchanged is no edit of its own
        QCOMPARE(f.heard.mid(0, 2), (QStringList{"started old", "changed  no such file "}));
        QCOMPARE(f.heard.count(), 4); // nor is it silent
        QCOMPARE(f.edit->filename(), QString(" no such file "));
        QVERIFY(f.part<QPushButton>("reset")->isEnabled());
    }

    void fileReset()
    {
        FileFixture f;
        auto* reset = f.part<QPushButton>("reset");
        f.edit->setDefaultFilename("old");
        QVERIFY(!reset->isEnabled());
        type(f.part<QLineEdit>("lineEdit"), "new");
        QVERIFY(!reset->isEnabled()); // typing leaves it as it was
        f.edit->setShowDefaultButton(false);
        f.edit->setDefaultFilename("default");
        QVERIFY(reset->isEnabled());
        reset->setFocus();
        f.heard.clear();
        QTest::mouseClick(reset, Qt::LeftButton);
        QCOMPARE(f.heard, (QStringList{"started new", "changed default"}));
        QCOMPARE(f.part<QLineEdit>("lineEdit")->text(), QString("default"));
        QVERIFY(!reset->isEnabled());
        f.edit->blockSignals(true);
        f.edit->setFilename("host");
        QVERIFY(!f.edit->signalsBlocked() && reset->isEnabled());
        QCOMPARE(f.heard.count(), 2);
    }

    void fileReadOnly()
    {
        FileFixture f;
        f.edit->setReadOnly(true);
        type(f.part<QLineEdit>("lineEdit"), "new");
        QVERIFY(f.part<QPushButton>("browse")->isEnabled() && f.part<QPushButton>("reset")->isEnabled());
        QVERIFY(!f.browse([](QFileDialog* dialog) { dialog->reject(); }));
        QTest::mouseClick(f.part<QPushButton>("reset"), Qt::LeftButton);
        QCOMPARE(f.edit->filename(), QString("old"));
        QCOMPARE(f.part<QLineEdit>("lineEdit")->text(), QString("old"));
        QCOMPARE(f.heard, QStringList());
    }

    void fileBrowseAccepted()
    {
        QTemporaryDir folder;
        const QString chosen = QDir(folder.path()).filePath("mesh.obj");
        QFile file(chosen);
        QVERIFY(file.open(QIODevice::WriteOnly));
        FileFixture f;
        f.edit->setTitle("Mesh");
        f.edit->setFilter("Meshes (*.obj *.ply);;All files (*)");
        f.edit->setDefaultPath(folder.path());
        f.edit->setDefaultFilename(chosen);
        QVERIFY(f.browse(
            [&](QFileDialog* dialog)
            {
                QCOMPARE(f.heard, QStringList{"started old"});
                QCOMPARE(dialog->windowTitle(), QString("Mesh"));
                QCOMPARE(dialog->parentWidget(), f.edit.get());
                QCOMPARE(dialog->directory().canonicalPath(), QDir(folder.path()).canonicalPath());
                QCOMPARE(dialog->nameFilters(), (QStringList{"Meshes (*.obj *.ply)", "All files (*)"}));
                QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFile);
                child<QLineEdit>(*dialog, "fileNameEdit")
                    ->setText("mesh.obj"); // typed keys would open a list of suggestions
                auto* open = child<QDialogButtonBox>(*dialog, "buttonBox")->button(QDialogButtonBox::Open);
                QTRY_VERIFY(open->isEnabled());
                QTest::mouseClick(open, Qt::LeftButton);
            }));
        QCOMPARE(f.heard, (QStringList{"started old", "changed " + chosen}));
        QCOMPARE(f.part<QLineEdit>("lineEdit")->text(), chosen);
        QVERIFY(!f.part<QPushButton>("reset")->isEnabled());
    }

    void fileBrowseCancelled()
    {
        FileFixture f;
        QVERIFY(f.browse([](QFileDialog* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); }));
        QCOMPARE(f.heard, (QStringList{"started old", "changed old"}));
        QCOMPARE(f.part<QLineEdit>("lineEdit")->text(), QString("old"));
    }

    void fileDeletedWhileBrowsing()
    {
        FileFixture f;
        QVERIFY(f.browse([&f](QFileDialog*) { f.edit.reset(); }));
        QVERIFY(!f.edit);
        QCOMPARE(f.heard, QStringList{"started old"});
    }
};

int main(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication app(argc, argv);
    tst_Editors test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_editors.moc"
