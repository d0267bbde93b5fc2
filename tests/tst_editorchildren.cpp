#include "testsupport.h"

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QFileEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QLabelEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtWidgets/QHBoxLayout>

#include <memory>

namespace
{
using Create = QWidget* (*)();

template <typename Editor>
QWidget* create()
{
    return new Editor;
}

// All properties of the editor's own, in both forms of a row, and all slots that need no number.
void useAll(QWidget* editor)
{
    const QMetaObject* meta = editor->metaObject();
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal})
    {
        for (int i = QWidget::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i)
        {
            const QMetaProperty property = meta->property(i);
            const bool isOrientation = qstrcmp(property.name(), "orientation") == 0;
            property.write(editor, isOrientation ? QVariant(orientation) : property.read(editor));
            if (property.userType() == QMetaType::Bool)
                property.write(editor, true);
        }
        for (int i = QWidget::staticMetaObject.methodCount(); i < meta->methodCount(); ++i)
        {
            const QByteArray name = meta->method(i).name();
            if (meta->method(i).parameterCount() == 0 && name != "on_browse_clicked")
                QVERIFY(meta->method(i).invoke(editor, Qt::DirectConnection));
        }
    }
}
} // namespace

Q_DECLARE_METATYPE(Create)

class tst_EditorChildren : public WatchedTest
{
    Q_OBJECT
private Q_SLOTS:
    void anyMayBeDeleted_data()
    {
        QTest::addColumn<Create>("create");
        QTest::addColumn<QString>("name");
        const Create all[] = {create<QSliderEdit>, create<QIntSliderEdit>, create<QVectorEdit>,
                              create<QColourEdit>, create<QLabelEdit>,     create<QFileEdit>};
        for (const Create create : all)
        {
            const std::unique_ptr<QWidget> editor(create());
            const QWidgetList children = editor->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
            for (const QWidget* child : children)
                QTest::addRow("%s, %s", editor->metaObject()->className(), qPrintable(child->objectName()))
                    << create << child->objectName();
            QTest::addRow("%s, all", editor->metaObject()->className()) << create << QString();
        }
    }

    void anyMayBeDeleted()
    {
        QFETCH(Create, create);
        QFETCH(QString, name);
        const std::unique_ptr<QWidget> editor(create());
        editor->show();
        qDeleteAll(editor->findChildren<QWidget*>(name, Qt::FindDirectChildrenOnly));
        const int left = editor->findChildren<QWidget*>().size();
        useAll(editor.get());
        editor->setProperty("title", QStringLiteral("Sun"));
        editor->setProperty("label", QStringLiteral("Sun"));
        QCOMPARE(editor->windowTitle(), QStringLiteral("Sun"));
        // What is in place of the deleted ones cannot be seen.
        const QWidgetList now = editor->findChildren<QWidget*>();
        for (const QWidget* child : now.mid(left))
            QVERIFY(!child->isVisible() || child->size().isEmpty());
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (const QWidget* window : windows)
            QVERIFY(window == editor.get() || !window->isVisible());
    }

    void maySurviveTheEditor()
    {
        QWidget elsewhere;
        auto editor = std::make_unique<QSliderEdit>();
        auto* units = child<QLabel>(*editor, "units");
        units->setParent(&elsewhere);
        delete child<QLabel>(*editor, "label");
        const int windows = QApplication::topLevelWidgets().size();
        editor.reset();
        QCOMPARE(QApplication::topLevelWidgets().size(), windows - 2); // the editor and what was in place of the label
        delete units;
    }

    void mayGoWithAnotherWindow()
    {
        auto window = std::make_unique<QWidget>();
        auto* inner = new QWidget(window.get());
        auto* editor = new QLabelEdit(inner);
        // The child is destroyed before its editor, in a window that is half destroyed by then.
        auto* before = new QWidget(window.get());
        inner->setParent(nullptr);
        inner->setParent(window.get());
        child<QPushButton>(*editor, "reset")->setParent(before);
        child<QLabel>(*editor, "units")->setParent(before);
        window.reset();
    }

    void mayBeDeletedWhenTheValueChanges()
    {
        QSliderEdit edit;
        connect(&edit, &QSliderEdit::valueChanged, &edit, [&edit] { delete edit.findChild<QSlider*>("slider"); });
        auto* text = child<QLineEdit>(edit, "lineEdit");
        text->setText("0.5");
        QTest::keyClick(text, Qt::Key_Return);
        QCOMPARE(edit.value().toDouble(), 0.5);
        QVERIFY(!edit.findChild<QSlider*>("slider"));
    }

    // Two companions of one item: the editor places only those that are still its own.
    void mayMoveElsewhere()
    {
        QWidget elsewhere;
        QSliderEdit edit;
        edit.setOrientation(Qt::Vertical);
        auto* units = child<QLabel>(edit, "units");
        units->setParent(&elsewhere);
        const QRect place(5, 300, 40, 20);
        units->setGeometry(place);
        units->show();
        edit.show();
        edit.resize(200, 400);
        QCOMPARE(units->geometry(), place);
    }

    // A ring of parents would never end.
    void mayHoldTheEditor()
    {
        QWidget root;
        auto* edit = new QSliderEdit(&root);
        auto* slider = child<QSlider>(*edit, "slider");
        slider->setParent(&root);
        edit->setParent(slider);
        edit->setOrientation(Qt::Vertical);
        QCOMPARE(slider->parentWidget(), &root);
        QCOMPARE(edit->orientation(), Qt::Vertical);
    }
};

QTEST_MAIN(tst_EditorChildren)
#include "tst_editorchildren.moc"
