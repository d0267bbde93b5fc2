#include "hostsupport.h"

#include <QtWidgets/QDialogButtonBox>

using namespace hostsupport;

namespace
{
QString text(const QVector3D& v)
{
    return QString("%1 %2 %3").arg(double(v.x())).arg(double(v.y())).arg(double(v.z()));
}

QString fields(const QWidget& edit)
{
    QStringList texts;
    for (const QLineEdit* field : fieldsOf(edit))
        texts << field->text();
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

// Base class; properties with their defaults; signals; slots; size, least size and children in order.
const QHash<QString, QStringList> contracts{
    {"QIntSliderEdit",
     {"QWidget",
      "QString title=label, int labelWidth=80, int textWidth=80, QString units=, int unitsWidth=40, int minimum=0, "
      "int maximum=100, int defaultValue=0, bool showDefaultButton=false, QVariant value=0, bool powerOfTwo=false, "
      "Qt::Orientation orientation=1, bool readOnlyText=false, QStringList enums=",
      "valueChanged() startedEdit()",
      "setOrientation(Qt::Orientation) on_reset_clicked() on_slider_sliderPressed() on_slider_sliderMoved(int) "
      "on_slider_valueChanged(int) on_lineEdit_editingFinished()",
      "270x38 270x38 label slider lineEdit units reset"}},
    {"QSliderEdit",
     {"QPropertyEditWidget",
      "QString title=label, bool liveUpdate=false, int labelWidth=80, int textWidth=80, QString units=, "
      "int unitsWidth=40, bool showButtons=false, bool showDefaultButton=false, double minimum=0, double maximum=1, "
      "double defaultValue=0, double step=0, QVariant value=0, bool logarithmic=false, Qt::Orientation orientation=1",
      "valueChanged() startedEdit()",
      "on_increment_clicked() on_decrement_clicked() on_reset_clicked() on_slider_sliderPressed() "
      "on_slider_sliderMoved(int) on_slider_valueChanged(int) on_lineEdit_editingFinished()",
      "270x38 270x38 label decrement slider increment lineEdit units reset"}},
    {"QVectorEdit",
     {"QPropertyEditWidget",
      "QString title=label, bool colourEdit=false, bool liveUpdate=false, int labelWidth=80, int textWidth=80, "
      "QString units=, int unitsWidth=40, QVector3D value=",
      "startedEdit() valueChanged()",
      "on_reset_clicked() on_x_editingFinished() on_y_editingFinished() on_z_editingFinished()",
      "453x132 270x132 label xLabel x yLabel y zLabel z units reset"}},
    {"QColourEdit",
     {"QPropertyEditWidget", "QString label=colour, int labelWidth=80, bool showAlpha=false", "valueChanged()",
      "on_red_editingFinished() on_green_editingFinished() on_blue_editingFinished() on_alpha_editingFinished()",
      "346x38 0x0 blue red green alpha label"}},
    {"QLabelEdit",
     {"QWidget",
      "bool showDefaultButton=true, bool readOnly=false, QString value=, QString defaultValue=, QString title=label, "
      "int labelWidth=80, QString units=, int unitsWidth=40",
      "valueChanged() startedEdit()", "on_lineEdit_editingFinished() on_reset_clicked()",
      "270x87 270x0 label lineEdit units reset"}},
    {"QFileEdit",
     {"QAbstractEdit",
      "bool showDefaultButton=true, bool readOnly=false, bool mustExist=true, QString filename=, QString defaultPath=, "
      "QString defaultFilename=, QString filter=, QString title=File name, int labelWidth=80, int unitsWidth=40",
      "valueChanged() startedEdit()", "on_lineEdit_editingFinished() on_browse_clicked() on_reset_clicked()",
      "515x261 270x0 label lineEdit browse units reset"}}};

using Editors = Table<Create>;
void addEditors()
{
    const Editors row;
    for (const Kind& kind : editorKinds)
        row(kind.name, kind.create);
}
using Component = Table<QString, bool, float>;

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

} // namespace

class tst_Editors : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void contract_data() { addEditors(); }
    void contract()
    {
        QVERIFY2(contracts.contains(QTest::currentDataTag()), "no contract in this file");
        const QStringList expected = contracts.value(QTest::currentDataTag());
        const auto [createEditor] = Editors::current();
        const std::unique_ptr<QWidget> edit(createEditor());
        const QMetaObject& meta = *edit->metaObject();
        QCOMPARE(meta.className(), QTest::currentDataTag());
        QCOMPARE(meta.superClass()->className(), expected[0]);
        QCOMPARE(edit->objectName(), QTest::currentDataTag());
        QStringList declared;
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        {
            const QMetaProperty property = meta.property(i);
            QVERIFY2(property.isWritable() && property.isDesignable() && property.isStored() &&
                         property.isScriptable() && !property.hasNotifySignal(),
                     property.name());
            const QVariant value = property.read(edit.get());
            // Qt 6 would name it.
            const QString text = property.isEnumType() ? QString::number(value.toInt()) : value.toString();
            declared << QString("%1 %2=%3").arg(property.typeName(), property.name(), text);
        }
        QCOMPARE(declared.join(", "), expected[1]);
        QCOMPARE(methods(meta, QMetaMethod::Signal), expected[2]);
        QCOMPARE(methods(meta, QMetaMethod::Slot), expected[3]);
        const QSize size = edit->size();
        const QSize minimum = edit->minimumSize();
        QString found =
            QString("%1x%2 %3x%4").arg(size.width()).arg(size.height()).arg(minimum.width()).arg(minimum.height());
        const auto children = edit->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        for (const QWidget* part : children)
            found += ' ' + part->objectName();
        QCOMPARE(found, expected[4]);
        edit->show(); // or no alpha can be shown
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        {
            const QMetaProperty property = meta.property(i);
            const QVariant old = property.read(edit.get());
            const bool isFlag = property.userType() == QMetaType::Bool;
            const QVariant written = isFlag ? QVariant(!old.toBool()) : QVariant(QString::number(old.toInt() + 1));
            if (property.isEnumType() || property.userType() == QMetaType::QVector3D) // in tests of their own
                continue;
            QVERIFY2(property.write(edit.get(), written), property.name());
            QVERIFY2(property.read(edit.get()).toString() == written.toString(), property.name());
        }
    }

    void isDocumented_data() { addEditors(); }
    void isDocumented()
    {
        const QString name = QTest::currentDataTag();
        const QDir source(ORVEK_SOURCE_DIRECTORY);
        QVERIFY(source.exists("docs/src/" + name.toLower() + ".qdoc"));
        QVERIFY(source.exists("docs/images/" + name.toLower() + ".png"));
        QFile readme(source.filePath("README.md"));
        QVERIFY(readme.open(QIODevice::ReadOnly) && readme.readAll().contains(("| `" + name + "` |").toUtf8()));
    }

    void textsAndWidths()
    {
        for (const Kind& kind : editorKinds)
        {
            ContextTranslator translator;
            QCoreApplication::installTranslator(&translator);
            const std::unique_ptr<QWidget> edit(kind.create());
            QCoreApplication::removeTranslator(&translator);
            const QString name = edit->metaObject()->className();
            const bool isFile = name == "QFileEdit";
            const bool isColour = name == "QColourEdit";
            const auto* label = child<QLabel>(*edit, "label");
            QCOMPARE(label->text(), name + (isFile ? "|File name" : isColour ? "|colour" : "|label"));
            QCOMPARE(edit->windowTitle(), isFile ? QString("QFileEdit|QFileEdit") : label->text());
            if (name == "QVectorEdit")
                QCOMPARE(child<QLabel>(*edit, "xLabel")->text(), QString("X")); // the same in every language
            edit->setProperty(isColour ? "label" : "title", "Sun && Moon");
            QCOMPARE(label->text(), QString("Sun && Moon"));
            QCOMPARE(edit->windowTitle(), QString("Sun && Moon"));

            edit->resize(900, edit->height());
            edit->show();
            const QPair<const char*, QStringList> widths[] = {
                {"labelWidth", {"label"}}, {"unitsWidth", {"units"}}, {"textWidth", {"lineEdit", "x", "y", "z"}}};
            for (const auto& [property, parts] : widths)
            {
                if (edit->metaObject()->indexOfProperty(property) < 0)
                    continue;
                for (const int width : {edit->property(property).toInt(), 123, 0, -5})
                {
                    if (width != edit->property(property)) // the first one is the default
                        edit->setProperty(property, width);
                    QTest::qWait(0);
                    QCOMPARE(edit->property(property), QVariant(width));
                    for (const QString& part : parts)
                        if (const auto* widget = edit->findChild<QWidget*>(part))
                            QVERIFY2(widget->width() == qMax(0, width) && widget->maximumHeight() == QWIDGETSIZE_MAX,
                                     qPrintable(name + ' ' + part));
                }
            }
        }
    }

    // A host that pushes its values makes the field commit when it is left, whether or not the text is another one.
    void pushesOfTheSameValueAreLikeOthers()
    {
        for (const Kind& kind : editorKinds)
        {
            QWidget window;
            QLineEdit elsewhere(&window);
            QWidget* editor = kind.create();
            editor->setParent(&window);
            if (qobject_cast<QColourEdit*>(editor)) // shows no value
                continue;
            QLineEdit* field = fieldsOf(*editor).first();
            showActive(window);
            QSignalSpy changes(editor, SIGNAL(valueChanged()));
            for (const bool pushed : {true, false, true})
            {
                if (pushed) // each kind takes what is for it
                    for (const QVariant& value : {QVariant(1), QVariant(QVector3D(1, 2, 3))})
                        editor->setProperty(qobject_cast<QFileEdit*>(editor) ? "filename" : "value", value);
                changes.clear();
                field->setFocus();
                elsewhere.setFocus();
                QVERIFY2(changes.isEmpty() != pushed, kind.name);
            }
        }
    }

    void returnInADialogPressesNoButton()
    {
        for (const Kind& kind : editorKinds)
        {
            QDialog dialog;
            QWidget* edit = kind.create();
            (new QVBoxLayout(&dialog))->addWidget(edit);
            int clicks = 0;
            for (QPushButton* button : edit->findChildren<QPushButton*>())
            {
                button->disconnect(edit);
                button->setEnabled(true);
                connect(button, &QPushButton::clicked, this, [&clicks] { ++clicks; });
            }
            showActive(dialog);
            commitText(fieldsOf(*edit).first(), "1");
            QVERIFY2(clicks == 0, kind.name);
        }
    }

    void vectorComponent_data()
    {
        const Component row;
        const float infinity = std::numeric_limits<float>::infinity();
        row("number", "2.5", true, 2.5F);
        row("same number", "7", true, 7.0F);
        row("exponent", "1e3", true, 1000.0F);
        row("blanks", " 2 ", true, 2.0F);
        row("beyond float", "1e300", true, infinity);
        row("below float", "1e-300", true, 0.0F);
        row("not a number", "nan", true, std::numeric_limits<float>::quiet_NaN());
        row("decimal comma", "1,5", false, 7.0F);
        row("letters", "abc", false, 7.0F);
        row("empty", "", false, 7.0F);
        row("beyond double", "1e400", false, 7.0F);
    }

    void vectorComponent()
    {
        const auto [typed, taken, component] = Component::current();
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German));
        QVectorEdit edit;
        edit.setValue({1.0F, 7.0F, 3.0F});
        edit.setDefaultValue({1.0F, component, 3.0F});
        QSignalSpy changed(&edit, &QVectorEdit::valueChanged);
        commitText(child<QLineEdit>(edit, "y"), typed);
        QLocale::setDefault(before);
        QCOMPARE(changed.count(), taken ? 1 : 0);
        QCOMPARE(fields(edit), QString("1 %1 3").arg(typed)); // as typed
        QCOMPARE(text(edit.value()), text({1.0F, component, 3.0F}));
        QCOMPARE(child<QPushButton>(edit, "reset")->isEnabled(), std::isnan(component)); // it differs even from itself
    }

    void vectorValues()
    {
        QVectorEdit edit;
        const auto* reset = child<QPushButton>(edit, "reset");
        QVERIFY(reset->toolTip().isEmpty() && !reset->isEnabled());
        QStringList log;
        connect(&edit, &QVectorEdit::startedEdit, this, [&] { log << "started"; });
        connect(&edit, &QVectorEdit::valueChanged, this, [&] { log << text(edit.value()); });
        edit.blockSignals(true);
        edit.setValue({1.0F / 3.0F, 1234567.0F, 0.1F});
        QVERIFY(!edit.signalsBlocked() && reset->isEnabled());
        QCOMPARE(fields(edit), QString("0.333333 1.23457e+06 0.1"));
        edit.setValue({4.0F, 5.0F, 6.0F}, false);
        QCOMPARE(fields(edit), QString("  "));
        commitText(child<QLineEdit>(edit, "z"), "60");
        QCOMPARE(fields(edit), QString("  60"));
        commitText(child<QLineEdit>(edit, "x"), "40");
        edit.setDefaultValue({40.0F, 5.0F, std::nextafter(60.0F, 61.0F)});
        QVERIFY(reset->isEnabled()); // the last bit counts
        edit.setDefaultValue({40.0F, 5.0F, 60.0F});
        QVERIFY(!reset->isEnabled());
        edit.setDefaultValue({0.5F, 0.0F, -1.0F});
        QTest::mouseClick(child<QPushButton>(edit, "reset"), Qt::LeftButton);
        QCOMPARE(log, (QStringList{"4 5 60", "40 5 60", "0.5 0 -1"}));
        QVERIFY(!reset->isEnabled());
        for (const bool colour : {true, false})
        {
            edit.setColourEdit(colour);
            const QString captions = child<QLabel>(edit, "xLabel")->text() + child<QLabel>(edit, "yLabel")->text() +
                                     child<QLabel>(edit, "zLabel")->text();
            QCOMPARE(captions, QString(colour ? "RGB" : "XYZ"));
            QCOMPARE(fields(edit), QString("0.5 0 -1"));
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
        QCOMPARE(fields(edit), QString("   "));
        QCOMPARE(log, QStringList());

        commitText(child<QLineEdit>(edit, "green"), "2.5"); // no range
        QTest::keyClick(child<QLineEdit>(edit, "green"), Qt::Key_Return);
        commitText(child<QLineEdit>(edit, "alpha"), "-1");
        commitText(child<QLineEdit>(edit, "red"), "x");
        commitText(child<QLineEdit>(edit, "red"), "1,5");
        commitText(child<QLineEdit>(edit, "red"), "");
        commitText(child<QLineEdit>(edit, "blue"), " 1e-3 ");
        commitText(child<QLineEdit>(edit, "red"), "9");
        QCOMPARE(log,
                 (QStringList{"0 2.5 0.2 0.3", "0 2.5 0.2 0.3", "0 2.5 0.2 -1", "0 2.5 0.001 -1", "9 2.5 0.001 -1"}));
        QCOMPARE(fields(edit), QString("9 2.5  1e-3  -1"));

        const auto* alpha = child<QLineEdit>(edit, "alpha");
        QVERIFY(!edit.showAlpha()); // not on the screen yet
        edit.show();
        QVERIFY(edit.showAlpha());
        edit.setShowAlpha(false);
        QVERIFY(!edit.showAlpha() && !alpha->isVisible() && child<QLineEdit>(edit, "blue")->isVisible());
        edit.setShowAlpha(true);
        QVERIFY(edit.showAlpha());
        QCOMPARE(fields(edit), QString("9 2.5  1e-3  -1"));
        edit.hide();
        QVERIFY(!edit.showAlpha());
    }

    // A text's editor and a file's, which announces the start of each edit as well.
    void textsAndFileNames()
    {
        checkText<QLabelEdit>("value", "defaultValue", false);
        checkText<QFileEdit>("filename", "defaultFilename", true);
    }

    void filesAreBrowsed()
    {
        QTemporaryDir folder;
        const QString chosen = QDir(folder.path()).filePath("mesh.obj");
        QVERIFY(QFile(chosen).open(QIODevice::WriteOnly));
        auto edit = std::make_unique<QFileEdit>();
        QStringList heard;
        connect(edit.get(), &QFileEdit::startedEdit, this, [&] { heard << "started " + edit->filename(); });
        connect(edit.get(), &QFileEdit::valueChanged, this, [&] { heard << "changed " + edit->filename(); });
        edit->setFilename("old");
        edit->setTitle("Mesh");
        edit->setFilter("Meshes (*.obj *.ply);;All files (*)");
        edit->setDefaultPath(folder.path());
        edit->setDefaultFilename(chosen);
        showActive(*edit);
        auto* button = child<QPushButton>(*edit, "browse");
        button->setFocus(); // a field that loses the focus would be heard
        heard.clear();
        // Clicks browse and plays the user in the dialog that opens; what was announced, nothing if none did.
        const auto browse = [&](const std::function<void(QFileDialog*)>& play)
        {
            QTimer poll;
            connect(&poll, &QTimer::timeout, this,
                    [&]
                    {
                        const QPointer<QFileDialog> dialog(
                            qobject_cast<QFileDialog*>(QApplication::activeModalWidget()));
                        if (!dialog || !dialog->isVisible())
                            return;
                        poll.stop();
                        play(dialog);
                        if (dialog && dialog->isVisible())
                            dialog->reject(); // a failed check would hang
                    });
            poll.start(10);
            QTest::mouseClick(button, Qt::LeftButton);
            return std::exchange(heard, {}).join(", ");
        };
        const auto cancel = [](QFileDialog* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); };
        edit->setReadOnly(true);
        QVERIFY(button->isEnabled());
        QCOMPARE(browse(cancel), QString());
        edit->setReadOnly(false);
        QCOMPARE(browse(cancel), QString("started old, changed old"));
        const auto choose = [&](QFileDialog* dialog)
        {
            QCOMPARE(heard, QStringList{"started old"});
            QCOMPARE(dialog->windowTitle(), QString("Mesh"));
            QCOMPARE(dialog->parentWidget(), edit.get());
            QCOMPARE(dialog->directory().canonicalPath(), QDir(folder.path()).canonicalPath());
            QCOMPARE(dialog->nameFilters(), (QStringList{"Meshes (*.obj *.ply)", "All files (*)"}));
            QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFile);
            child<QLineEdit>(*dialog, "fileNameEdit")->setText("mesh.obj"); // keys would open a list of suggestions
            auto* open = child<QDialogButtonBox>(*dialog, "buttonBox")->button(QDialogButtonBox::Open);
            QTRY_VERIFY(open->isEnabled());
            QTest::mouseClick(open, Qt::LeftButton);
        };
        QCOMPARE(browse(choose), "started old, changed " + chosen);
        QCOMPARE(child<QLineEdit>(*edit, "lineEdit")->text(), chosen);
        QVERIFY(!child<QPushButton>(*edit, "reset")->isEnabled());
        QCOMPARE(browse([&edit](QFileDialog*) { edit.reset(); }), "started " + chosen);
        QVERIFY(!edit);
    }

private:
    template <typename Editor>
    void checkText(const char* value, const char* defaultValue, bool isFile)
    {
        Editor edit;
        auto* reset = child<QPushButton>(edit, "reset");
        auto* field = child<QLineEdit>(edit, "lineEdit");
        QStringList log;
        connect(&edit, &Editor::startedEdit, this, [&] { log << "started " + edit.property(value).toString(); });
        connect(&edit, &Editor::valueChanged, this, [&] { log << edit.property(value).toString(); });
        // What an act announces, with the values before and after it.
        const auto isTold = [&](const QString& before, const QString& after)
        {
            const QStringList expected = isFile ? QStringList{"started " + before, after} : QStringList{after};
            return std::exchange(log, {}) == expected && edit.property(value) == after && field->text() == after;
        };
        QVERIFY(reset->isEnabled()); // though there is nothing to reset
        QTest::mouseClick(reset, Qt::LeftButton);
        QVERIFY(isTold("", "") && !reset->isEnabled());
        commitText(field, " Abc ");
        QVERIFY(isTold("", " Abc ") && !reset->isEnabled()); // typing leaves it as it was
        QTest::keyClick(field, Qt::Key_Return);
        QVERIFY(isTold(" Abc ", " Abc "));

        edit.blockSignals(true);
        edit.setProperty(value, "Abc");
        QVERIFY(!edit.signalsBlocked() && reset->isEnabled());
        edit.setShowDefaultButton(false);
        QVERIFY(!reset->isEnabled());
        edit.setProperty(defaultValue, "abc");
        QVERIFY(edit.showDefaultButton() && reset->isEnabled());
        edit.setProperty(defaultValue, "Abc");
        QVERIFY(!reset->isEnabled());
        edit.setProperty(defaultValue, "other");
        commitText(field, "other");
        QVERIFY(isTold("Abc", "other") && reset->isEnabled());
        QTest::mouseClick(reset, Qt::LeftButton);
        QVERIFY(isTold("other", "other") && !reset->isEnabled());

        edit.setReadOnly(true);
        edit.setProperty(value, "fixed");
        commitText(field, "typed");
        QTest::mouseClick(reset, Qt::LeftButton);
        QVERIFY(reset->isEnabled() && log.isEmpty());
        QCOMPARE(edit.property(value), QVariant("fixed"));
        QCOMPARE(field->text(), QString("fixed"));
        edit.setReadOnly(false);
        showActive(edit);
        field->setFocus();
        commitText(field, "typed");
        QVERIFY(isTold("fixed", "typed"));
        reset->setFocus(); // leaving the field unchanged is no edit of its own, but the field of Qt 5 reports it
        QVERIFY(QT_VERSION_MAJOR == 5 ? isTold("typed", "typed") : log.isEmpty());
    }
};

QTEST_MAIN(tst_Editors)
#include "tst_editors.moc"
