#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtWidgets/QComboBox>

#include <memory>

class QIntSliderEdit;

namespace orvek::host
{
//! A drop-down list of the names of an integer editor, in place of or beside its slider.
//!
//! It offers those of the editor's "enums" whose value lies in the editor's range (and is a power of two if the editor
//! is set to powers of two), as the editor's valueToText() writes them. A value without a name is an entry with its
//! number for as long as the editor has it. Value, names and range are followed however they are set.
//!
//! A choice stores the value and is announced by one valueChanged() of the editor, without startedEdit(). The wheel
//! over it scrolls the panel and never chooses.
class ORVEKQTHOST_EXPORT ChoiceButton : public QComboBox
{
    Q_OBJECT
public:
    //! The editor is not owned and may die first; without one the list is empty and disabled.
    explicit ChoiceButton(QIntSliderEdit* editor, QWidget* parent = nullptr);
    ~ChoiceButton() override;

    //! Hides the slider and the field of the editor and puts a new list into their place in the row. The editor owns
    //! it; deleting it brings them back. Null without an editor.
    static ChoiceButton* addTo(QIntSliderEdit* editor);

    //! Null once it is destroyed.
    QIntSliderEdit* editor() const;

    void showPopup() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
