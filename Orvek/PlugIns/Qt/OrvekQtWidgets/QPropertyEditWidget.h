#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/OrvekQtWidgetsExport.h>

#include <QtWidgets/QWidget>

//! Base of the editors that pass their tool tip on to their children: QSliderEdit, QVectorEdit and QColourEdit. The
//! children of every editor, with this base or not, belong to it and live as long as it does: hosts may change their
//! looks, but must not delete them or move them elsewhere.
class ORVEKQTWIDGETS_EXPORT QPropertyEditWidget : public QWidget
{
    Q_OBJECT
public:
    explicit QPropertyEditWidget(QWidget* parent);
    ~QPropertyEditWidget() override;

    //! Gives every descendant this widget's tool tip; an empty one clears theirs. The editors do this once, in their
    //! constructor, before a host can set a tip: call it again after setToolTip().
    void applyParentTooltip();
};
