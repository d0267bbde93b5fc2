#pragma once

#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorUndo.h>
#include <Orvek/Host/Expression.h>
#include <Orvek/Host/Selection.h>

#include <QtCore/QPointer>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QWidget>

#include <optional>

namespace orvek::host
{
// One property and the editor that shows it: both ways between the objects of a selection and the editor. Steps of undo
// keep it; without its editor it only serves them. Private.
class InspectorRow final : public EditorSource
{
public:
    using Edited = std::function<void(const QVector<void*>& objects, const QString& path)>;

    //! The row is what is hidden if the property is not shown: the editor, or what lies around a check box. Neither is
    //! owned.
    InspectorRow(const Property& description, QString path, QWidget* editor, QWidget* row, Edited edited);
    ~InspectorRow() override;
    Q_DISABLE_COPY(InspectorRow)

    const QString& path() const { return m_path; }
    QWidget* editor() const { return m_editor.data(); }
    QWidget* widget() const { return m_row.data(); }

    //! Shows a property of these objects from the next refresh() on. Without a selection the editor is disabled.
    void bind(std::shared_ptr<Selection> selection, const SharedProperty& property);
    //! Shows the values if they have changed; false if the editor is being used, and has to wait.
    bool refresh();
    //! Changes one component of each object by itself.
    void change(int component, const Relative& edit);
    //! Between these a dialog shows its choice at once, and puts back what it has found when it is cancelled.
    void beginAct();
    void endAct() { m_start.clear(); }
    //! The default for all objects.
    void reset();

    QString title() const override { return m_description.displayTitle(); }
    QVariant state() const override;
    bool isSame(const QVariant& a, const QVariant& b) const override;
    void take() override;
    void show() override;
    void restore(const QVariant& state) override;

private:
    QVariant changed(const QVariant& old, const EditorValue& now, unsigned components) const;
    QVariant related(const QVariant& old) const;
    unsigned editedComponents(const EditorValue& now) const;
    EditorValue editorValue(const QVariant& value, unsigned mixed);
    QVariant unlikeDefault() const;
    bool isShowing(const QVariant& value, unsigned mixed, const EditorValue& now) const;
    void show(const QVariant& value, unsigned mixed);
    void showFlag(bool value, bool mixed);
    void mark();
    void askConditions();
    bool isUsed() const;

    const Property m_description;
    const QString m_path;
    const QPointer<QWidget> m_editor;
    const QPointer<QWidget> m_row;
    const QPointer<QCheckBox> m_box; // the editor if it is one
    QVector<QPointer<QLineEdit>> m_fields;
    QPointer<QSlider> m_slider;
    QPointer<QPushButton> m_reset; // of a row whose editor has none itself
    QMetaObject::Connection m_resetting;
    const Edited m_edited;

    std::shared_ptr<Selection> m_selection;
    SharedProperty m_property;
    bool m_hasEnabledWhen = false; // any of the types
    bool m_hasShownWhen = false;
    bool m_isHidden = false; // as shownWhen says
    // What the editor shows:
    bool m_isShown = false;
    bool m_isShowing = false; // just now; what the editor announces is not an edit
    QVariant m_value;
    unsigned m_mixed = 0;
    unsigned m_marked = 0;
    EditorValue m_shown;
    QString m_moreChoice; // null if there is none
    struct Change
    {
        int component;
        Relative edit;
    };
    std::optional<Change> m_change; // while it is being made
    QVariant m_start;               // of an act
    EditorValue m_startShown;
};
} // namespace orvek::host
