#pragma once

#include <tests/testsupport.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QFileEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QLabelEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtWidgets/QDialog>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionSlider>
#include <QtWidgets/QVBoxLayout>
#include <QUndoStack>

#include <memory>

// What most of these tests ask for comes with this: the widgets with the children of their forms, and QtCore with
// QtTest. Every kind of editor, in every kind of window: what the tests of the host library run on.
namespace hostsupport
{
using Create = QWidget* (*)();
}
Q_DECLARE_METATYPE(hostsupport::Create)

namespace hostsupport
{
template <typename Widget>
QWidget* create()
{
    return new Widget;
}

struct Kind
{
    const char* name;
    Create create;
};
inline const Kind editorKinds[] = {{"slider", create<QSliderEdit>}, {"integer", create<QIntSliderEdit>},
                                   {"vector", create<QVectorEdit>}, {"colour", create<QColourEdit>},
                                   {"text", create<QLabelEdit>},    {"file", create<QFileEdit>}};
inline const Kind windowKinds[] = {{"widget", create<QWidget>}, {"dialog", create<QDialog>}};

//! Columns "window" and "editor": each kind of editor in each kind of window.
inline void addKinds()
{
    QTest::addColumn<Create>("window");
    QTest::addColumn<Create>("editor");
    for (const Kind& window : windowKinds)
        for (const Kind& editor : editorKinds)
            QTest::addRow("%s in %s", editor.name, window.name) << window.create << editor.create;
}

//! The editor's fields in the order of the components.
inline QVector<QLineEdit*> fieldsOf(const QWidget& editor)
{
    QVector<QLineEdit*> fields;
    for (const char* name : {"lineEdit", "x", "y", "z", "red", "green", "blue", "alpha"})
        if (auto* field = editor.findChild<QLineEdit*>(QLatin1String(name), Qt::FindDirectChildrenOnly))
            fields << field;
    return fields;
}

inline void showActive(QWidget& window)
{
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

//! The editor of the row that addKinds() made, in its window, which shows it once the test says so.
struct Hosted
{
    static QWidget* make(const char* column)
    {
        return (*static_cast<Create*>(QTest::qData(column, qMetaTypeId<Create>())))();
    }
    Hosted() { (new QVBoxLayout(window.get()))->addWidget(editor); }
    const std::unique_ptr<QWidget> window{make("window")};
    QWidget* const editor = make("editor");
    const QVector<QLineEdit*> fields = fieldsOf(*editor);
};

inline void setTitle(QWidget* editor, const QString& title)
{
    editor->setProperty(qobject_cast<QColourEdit*>(editor) ? "label" : "title", title);
}

//! Sets a value whose text does not say all of it, in a field that was written since it was last left. Each kind of
//! editor takes what is for it.
inline void setOddValue(QWidget* editor)
{
    constexpr double third = 1.0 / 3.0;
    const QPair<const char*, QVariant> properties[] = {{"enums", QStringList{"none", "some", "all"}},
                                                       {"maximum", 3},
                                                       {"value", 2 + third},
                                                       {"value", QVector3D(float(third), 0, 0)},
                                                       {"filename", "deep/mesh.obj"}};
    for (const auto& [name, value] : properties)
        if (editor->metaObject()->indexOfProperty(name) >= 0)
            editor->setProperty(name, value);
    QLineEdit* field = fieldsOf(*editor).first();
    field->setText(field->text());
    if (auto* colour = qobject_cast<QColourEdit*>(editor))
    {
        colour->setColour(third, third, third, third);
        field->setText("0.333333");
    }
}

//! The editor's value, to be compared exactly.
inline QByteArray bitsOf(const QWidget* editor)
{
    if (const auto* colour = qobject_cast<const QColourEdit*>(editor))
        return {reinterpret_cast<const char*>(colour->colour()), 4 * sizeof(double)};
    QByteArray bits;
    QDataStream stream(&bits, QIODevice::WriteOnly);
    stream << editor->property("value") << editor->property("filename");
    return bits;
}

//! The middle of a slider's handle, at the position that it has or would have.
inline QPoint handleOf(QSlider* slider, int position)
{
    struct Open : QSlider
    {
        using QSlider::initStyleOption;
    };
    QStyleOptionSlider option;
    (slider->*&Open::initStyleOption)(&option);
    option.sliderPosition = position;
    return slider->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider).center();
}

//! With the button held, which QTest's moves are without.
inline void moveMouse(QWidget* widget, const QPoint& to, Qt::MouseButton button = Qt::LeftButton)
{
    QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, button, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &move);
}

//! A panel with sections: addSection() and then addRow() fill it, show() it yourself.
struct Panel
{
    Panel()
    {
        auto* area = new QScrollArea;
        area->setWidgetResizable(true);
        column = new QWidget;
        auto* rows = new QVBoxLayout(column);
        rows->setAlignment(Qt::AlignTop);
        area->setWidget(column);
        area->setParent(&panel);
        panel.resize(420, 600);
    }
    QAccordion* addSection(const QString& title, QWidget* inside = nullptr)
    {
        auto* section = new QAccordion;
        section->setTitle(title);
        section->setObjectName(title);
        auto* contents = new QWidget(section);
        new QVBoxLayout(contents);
        (inside ? inside : column)->layout()->addWidget(section);
        return section;
    }
    static QWidget* contentsOf(QAccordion* section) { return section->layout()->itemAt(1)->widget(); }
    template <typename Editor = QSliderEdit>
    static Editor* addRow(QAccordion* section, const QString& title)
    {
        auto* editor = new Editor;
        setTitle(editor, title);
        contentsOf(section)->layout()->addWidget(editor);
        return editor;
    }
    QLineEdit* search() { return child<QLineEdit>(panel, "search"); }

    QPropertyPanel panel;
    QWidget* column = nullptr;
};
} // namespace hostsupport
