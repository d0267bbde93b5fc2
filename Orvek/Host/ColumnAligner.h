#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QObject>

#include <memory>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace orvek::host
{
//! Lines up the editors below a widget: their titles, fields and units form columns, also across nested sections, and
//! what is too long for its column is cut where it does no harm. The texts themselves never change.
//!
//! Editors with a vertical slider are left alone. The editors' own widths (labelWidth, textWidth, unitsWidth) keep what
//! the host has set; they apply again when the columns are switched off or this object is destroyed.
class ORVEKQTHOST_EXPORT ColumnAligner : public QObject
{
    Q_OBJECT
    //! Whether the columns are aligned. Default true.
    Q_PROPERTY(bool alignsColumns READ alignsColumns WRITE setAlignsColumns)
    //! Whether a title or unit wider than its label ends in "…" and shows its whole text as a tool tip. Default true.
    Q_PROPERTY(bool elidesTitles READ elidesTitles WRITE setElidesTitles)
    //! Whether a field without the focus shows the end of a file name, the beginning of any other text, and a number
    //! with as few digits as fit; a tool tip has the whole text. Default true.
    Q_PROPERTY(bool fitsTexts READ fitsTexts WRITE setFitsTexts)
    //! The largest part of an outermost section's width that the titles may take, 0.1 to 0.9; other values are clamped,
    //! and NaN is ignored. Default 0.35.
    Q_PROPERTY(double titleShare READ titleShare WRITE setTitleShare)

public:
    //! Follows every editor below root, including later ones. Not owned; may be destroyed first.
    explicit ColumnAligner(QWidget* root, QObject* parent = nullptr);
    ~ColumnAligner() override;

    bool alignsColumns() const;
    void setAlignsColumns(bool align);
    bool elidesTitles() const;
    void setElidesTitles(bool elide);
    bool fitsTexts() const;
    void setFitsTexts(bool fit);
    double titleShare() const;
    void setTitleShare(double share);

    //! The smallest width of the root, in pixels, at which no title, unit or number is cut with the current texts and
    //! fonts. At least 270, the smallest width of an editor; down to that width the columns hold. If nothing is visible
    //! yet, add the width of the root's frames.
    int uncutWidth();
    //! Aligns now; otherwise it happens once before the next painting.
    void align();

Q_SIGNALS:
    //! The widths of some editors have changed. For hosts that line up widgets of their own with the titles.
    void aligned();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
