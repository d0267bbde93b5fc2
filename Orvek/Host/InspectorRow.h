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
// One property and the editor that shows it: transfers values between the objects of a selection and the editor, in
// both directions. Undo steps keep it alive; once the editor is gone it only serves them. Private.
class InspectorRow final : public EditorSource
{
public:
    using Edited = std::function<void(const QVector<void*>& objects, const QString& path)>;

    //! The row is the widget to hide when the property is not shown: the editor, or the widget around a check box.
    //! Neither is owned.
    InspectorRow(const Property& description, QString path, QWidget* editor, QWidget* row, Edited edited);
    ~InspectorRow() override;
    Q_DISABLE_COPY(InspectorRow)

    const QString& path() const { return m_path; }
    QWidget* editor() const { return m_editor.data(); }
    QWidget* widget() const { return m_row.data(); }

    //! Shows a property of these objects from the next refresh() on. Without a selection the editor is disabled.
    void bind(std::shared_ptr<Selection> selection, const SharedProperty& property);
    //! Shows the values if they have changed; false if the editor is in use and has to be updated later.
    bool refresh();
    //! Applies the edit to one component of each object.
    void change(int component, const Relative& edit);
    //! While a dialog is open between these calls, it changes the values at once; if cancelled, it restores what it
    //! found.
    void beginAct();
    void endAct() { m_start.clear(); }
    //! Sets all objects to the default.
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
    const QPointer<QCheckBox> m_box; // the editor, if it is one
    QVector<QPointer<QLineEdit>> m_fields;
    QPointer<QSlider> m_slider;
    QPointer<QPushButton> m_reset; // of rows whose editor has none itself
    QMetaObject::Connection m_resetting;
    const Edited m_edited;

    std::shared_ptr<Selection> m_selection;
    SharedProperty m_property;
    bool m_hasEnabledWhen = false; // in any of the types
    bool m_hasShownWhen = false;
    bool m_isHidden = false; // as shownWhen demands
    // What the editor shows:
    bool m_isShown = false;
    bool m_isShowing = false; // at this moment; what the editor announces now is not an edit
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
    std::optional<Change> m_change; // during the change
    QVariant m_start;               // at the start of an act
    EditorValue m_startShown;
};
} // namespace orvek::host
