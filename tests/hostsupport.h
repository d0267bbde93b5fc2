#pragma once

#include <tests/testsupport.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/EditorList.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>

// What most tests of editors need: the widgets, and every kind of editor in every kind of window.
namespace hostsupport
{
using Create = QWidget* (*)();

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
#define EDITOR_KIND(Editor) {#Editor, create<Editor>},
inline const Kind editorKinds[] = {ORVEK_EDITORS(EDITOR_KIND)};
#undef EDITOR_KIND
inline const Kind windowKinds[] = {{"QWidget", create<QWidget>}, {"QDialog", create<QDialog>}};

using Kinds = Table<Create, Create>; // window, editor
inline Kinds everyKind()
{
    const Kinds row;
    for (const Kind& window : windowKinds)
        for (const Kind& editor : editorKinds)
            row(editor.name + QByteArray(" in ") + window.name, window.create, editor.create);
    return row;
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

//! The editor of a row of Kinds in its window, which the test shows.
struct Hosted
{
    explicit Hosted(const std::tuple<Create, Create>& row = Kinds::current())
        : window(std::get<0>(row)()), editor(std::get<1>(row)())
    {
        (new QVBoxLayout(window.get()))->addWidget(editor);
    }
    const std::unique_ptr<QWidget> window;
    QWidget* const editor;
    const QVector<QLineEdit*> fields = fieldsOf(*editor);
};

inline void setTitle(QWidget* editor, const QString& title)
{
    editor->setProperty(qobject_cast<QColourEdit*>(editor) ? "label" : "title", title);
}

//! Sets a value that its text shows rounded, in a field whose text was set since it was last left. Each kind of editor
//! gets the properties that it has.
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

//! The middle of a slider's handle at a position.
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

//! With the button held, unlike QTest::mouseMove().
inline void moveMouse(QWidget* widget, const QPoint& to, Qt::MouseButton button = Qt::LeftButton)
{
    QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, button, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &move);
}

//! Value, text, handle and reset button of an editor with a slider together: "0.25 '0.25' at 250 reset".
template <typename Editor>
QString shown(const Editor& editor)
{
    return editor.value().toString() + " '" + child<QLineEdit>(editor, "lineEdit")->text() + "' at " +
           QString::number(child<QSlider>(editor, "slider")->sliderPosition()) +
           (child<QPushButton>(editor, "reset")->isEnabled() ? " reset" : "");
}

//! What such an editor emits, each change with the value that a host reads then.
template <typename Editor>
class Log
{
public:
    explicit Log(Editor& editor) : m_editor(editor)
    {
        QObject::connect(&editor, &Editor::startedEdit, [this] { m_emitted += "started "; });
        QObject::connect(&editor, &Editor::valueChanged, [this] { m_emitted += m_editor.value().toString() + ' '; });
    }
    //! What was emitted since the last call, and what is shown: "started 0.3 | 0.3 '0.3' at 3".
    QString news() { return std::exchange(m_emitted, {}) + "| " + shown(m_editor); }

private:
    Editor& m_editor;
    QString m_emitted;
};

//! A panel for addSection() and then addRow() to fill. Not shown yet.
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
