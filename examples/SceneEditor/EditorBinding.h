#pragma once

#include <examples/SceneEditor/document/Scene.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QFileEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QLabelEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtWidgets/QCheckBox>

#include <functional>

namespace sceneeditor
{
//! One editor and the value of the scene that it edits. The index is that of the selected object; values that belong
//! to no object ignore it.
struct EditorBinding
{
    QWidget* editor = nullptr;
    bool ofObject = false;
    //! Scene to editor, without valueChanged(). Nothing when there is no such object.
    std::function<void(const Scene& scene, int index)> show;
    //! Editor to scene. Numbers outside of the scene's ranges are clamped, in the editor too.
    std::function<void(Scene& scene, int index)> take;
};

// The accessors below name a value once for both directions: as pointers to the members that lead to it. They return
// the address of the value, or null.

template <typename Part, typename T>
auto sceneValue(Part Scene::*part, T Part::*value)
{
    return [part, value](auto& scene, int) { return &(scene.*part.*value); };
}

template <typename T>
auto objectValue(T Object::*value)
{
    return [value](auto& scene, int index)
    { return index >= 0 && index < scene.objects.size() ? &(scene.objects[index].*value) : nullptr; };
}

template <typename T>
auto materialValue(T Material::*value)
{
    return [value](auto& scene, int index)
    { return index >= 0 && index < scene.objects.size() ? &(scene.objects[index].material.*value) : nullptr; };
}

// Conversions between the scene's types and those of the editors, one pair of overloads for each kind of editor.

void showValue(QSliderEdit* editor, double value);
void takeValue(QSliderEdit* editor, double& value);
void showValue(QIntSliderEdit* editor, int value);
void takeValue(QIntSliderEdit* editor, int& value);
void showValue(QVectorEdit* editor, const QColor& value);
void takeValue(QVectorEdit* editor, QColor& value);
void showValue(QColourEdit* editor, const QColor& value);
void takeValue(QColourEdit* editor, QColor& value);
void showValue(QLabelEdit* editor, const QString& value);
void takeValue(QLabelEdit* editor, QString& value);
void showValue(QFileEdit* editor, const QString& value);
void takeValue(QFileEdit* editor, QString& value);
void showValue(QCheckBox* editor, bool value);
void takeValue(QCheckBox* editor, bool& value);
//! The three components, 0..1.
QVector3D colourVector(const QColor& colour);
//! Clamps into the range, which the editor itself does not have.
void takeVector(QVectorEdit* editor, QVector3D& value, const Range& range);

// Enumerations are the editor's indices.
template <typename Enum, typename = std::enable_if_t<std::is_enum_v<Enum>>>
void showValue(QIntSliderEdit* editor, Enum value)
{
    showValue(editor, static_cast<int>(value));
}

template <typename Enum, typename = std::enable_if_t<std::is_enum_v<Enum>>>
void takeValue(QIntSliderEdit* editor, Enum& value)
{
    value = static_cast<Enum>(editor->value().toInt());
}

template <typename Editor, typename Access>
EditorBinding bindEditor(Editor* editor, Access access)
{
    EditorBinding binding;
    binding.editor = editor;
    binding.show = [editor, access](const Scene& scene, int index)
    {
        if (const auto* value = access(scene, index))
            showValue(editor, *value);
    };
    binding.take = [editor, access](Scene& scene, int index)
    {
        if (auto* value = access(scene, index))
            takeValue(editor, *value);
    };
    return binding;
}

//! Also gives the editor the range, the step and the default of the value, in the order in which it needs them.
template <typename Access>
EditorBinding bindEditor(QSliderEdit* editor, Access access, const Range& range, double step, const Scene& defaults)
{
    editor->setMinimum(range.minimum);
    editor->setMaximum(range.maximum);
    editor->setLogarithmic(range.logarithmic);
    editor->setStep(step);
    editor->setDefaultValue(*access(defaults, 0));
    return bindEditor(editor, access);
}

template <typename Access>
EditorBinding bindEditor(QIntSliderEdit* editor, Access access, int minimum, int maximum, const Scene& defaults)
{
    editor->setMaximum(maximum);
    editor->setMinimum(minimum);
    editor->setDefaultValue(static_cast<int>(*access(defaults, 0)));
    return bindEditor(editor, access);
}

template <typename Access>
EditorBinding bindVector(QVectorEdit* editor, Access access, const Range& range, const Scene& defaults)
{
    editor->setDefaultValue(*access(defaults, 0));
    EditorBinding binding;
    binding.editor = editor;
    binding.show = [editor, access](const Scene& scene, int index)
    {
        if (const QVector3D* value = access(scene, index))
            editor->setValue(*value);
    };
    binding.take = [editor, access, range](Scene& scene, int index)
    {
        if (QVector3D* value = access(scene, index))
            takeVector(editor, *value, range);
    };
    return binding;
}

template <typename Access>
EditorBinding bindColour(QVectorEdit* editor, Access access, const Scene& defaults)
{
    editor->setDefaultValue(colourVector(*access(defaults, 0)));
    return bindEditor(editor, access);
}
} // namespace sceneeditor
