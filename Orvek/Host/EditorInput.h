#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QObject>

#include <memory>

class QWidget;

namespace orvek::host
{
//! Makes typing into editors safe, and adds stepping, arithmetic, copying and pasting.
//!
//! It follows all editors below a widget: the library's, those derived from them, and a host's own with a signal
//! valueChanged() and a QLineEdit child named "lineEdit", "x", "y", "z", "red", "green", "blue" or "alpha". The
//! editor's textToValue() decides whether a text is a value, and valueToText() writes values; in a host's own editors
//! they are used if Qt can invoke them by name, with the types of QSliderEdit. Without them arithmetic still works, and
//! any other text is left to the editor. Editors of texts have no arithmetic, steps or "invalid" mark.
//!
//! Values are set through an editor's own slots, or its setter and one valueChanged(), so a host's connections need no
//! change. If several EditorInputs follow an editor, the first one acts.
class ORVEKQTHOST_EXPORT EditorInput : public QObject
{
    Q_OBJECT
    //! Whether fields that nobody typed into commit nothing, however they are left, even with Return: no signal, and
    //! the value keeps all of its bits. A text typed back to what it was counts as untouched. Default true, as for all
    //! the following.
    Q_PROPERTY(bool keepsUntouched READ keepsUntouched WRITE setKeepsUntouched)
    //! Whether Esc undoes what was typed since the last commit and stays in the field. With nothing to undo, Esc goes
    //! on to the window.
    Q_PROPERTY(bool restoresOnEscape READ restoresOnEscape WRITE setRestoresOnEscape)
    //! Whether Return in a field stops there instead of pressing a button of a dialog.
    Q_PROPERTY(bool holdsReturn READ holdsReturn WRITE setHoldsReturn)
    //! Whether the wheel over a slider scrolls the area around the editor, as it does elsewhere in the editor.
    Q_PROPERTY(bool scrollsWithWheel READ scrollsWithWheel WRITE setScrollsWithWheel)
    //! Whether the decimal key of the keypad types a point into a number where the keyboard's language has a comma.
    Q_PROPERTY(bool typesPoint READ typesPoint WRITE setTypesPoint)
    //! Whether Up and Down step a number in a field that is not read-only; with Shift ten steps, with Ctrl a tenth. A
    //! step is the property "step", in the unit of the value. If that is missing or 0, it is a hundredth of the range,
    //! on a logarithmic editor a hundredth of the ratio of its ends; 1 for whole numbers, a factor of two for powers of
    //! two; 0.01 for a colour, and 0.1 for anything else without a range. Typed text is committed first.
    Q_PROPERTY(bool stepsWithArrows READ stepsWithArrows WRITE setStepsWithArrows)
    //! Whether a field has the dynamic property "invalid", true, while its text is not a value. Such a text is never
    //! committed: leaving the field restores the text from before, and Return keeps it. Also, whether a field whose
    //! number could not be stored exactly, for example out of range, shows what was stored.
    Q_PROPERTY(bool checksText READ checksText WRITE setChecksText)
    //! Whether arithmetic in a number's field is computed on commit, in the units shown: "3*2", "1/3", "sqrt(2)",
    //! "2pi", with the functions of muParser and a decimal point. Whole numbers are rounded. "+=2", "-=2", "*=2" and
    //! "/=2" change the current value. Also accepts an editor's units behind the number, and the names of a
    //! QIntSliderEdit's values, ignoring case.
    Q_PROPERTY(bool evaluates READ evaluates WRITE setEvaluates)
    //! Whether whole values are copied and pasted: Copy without a selection in a number's field; Paste of three or four
    //! numbers, or of "#rrggbb" for a colour, in a field of a vector or colour, as one change; and a menu on the title.
    //! A colour between black and white is copied as "#rrggbb" together with its exact numbers, which Paste prefers;
    //! all else is copied as numbers.
    Q_PROPERTY(bool copiesWhole READ copiesWhole WRITE setCopiesWhole)
    //! Whether Tab stops at reset buttons. Otherwise they take clicks only; the menu on the title resets as well.
    Q_PROPERTY(bool tabsToReset READ tabsToReset WRITE setTabsToReset)

public:
    //! Follows every editor below root, including later ones, and root itself if it is one. Root must not be null. It
    //! is not owned and may die first.
    explicit EditorInput(QWidget* root, QObject* parent = nullptr);
    //! The editors behave again as without this object.
    ~EditorInput() override;

    bool keepsUntouched() const;
    void setKeepsUntouched(bool keeps);
    bool restoresOnEscape() const;
    void setRestoresOnEscape(bool restores);
    bool holdsReturn() const;
    void setHoldsReturn(bool holds);
    bool scrollsWithWheel() const;
    void setScrollsWithWheel(bool scrolls);
    bool typesPoint() const;
    void setTypesPoint(bool types);
    bool stepsWithArrows() const;
    void setStepsWithArrows(bool steps);
    bool checksText() const;
    void setChecksText(bool checks);
    bool evaluates() const;
    void setEvaluates(bool evaluates);
    bool copiesWhole() const;
    void setCopiesWhole(bool copies);
    bool tabsToReset() const;
    void setTabsToReset(bool tabs);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
