#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/OrvekQtWidgetsExport.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/ui_QAccordion.h>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <memory>

QT_BEGIN_NAMESPACE
class QSettings;
QT_END_NAMESPACE
class SectionBorder;

//! A section that folds: a check box with the title and, below it, one contents widget. A search filters the direct
//! children of the contents: editors and further sections.
//!
//! The contents are the first widget created with the section as its parent, or the last one that the host put into the
//! section's layout. The section does not own them beyond Qt's parent-child rules; when they are destroyed, the next
//! such widget takes their place. A host may lay them out itself, with stretch or alignment. Contents adopted while the
//! section is closed stay visible until it is opened or closed again.
//!
//! A search marks its matches with the dynamic property "highlighted" (bool), for use in style sheets. The children
//! "accordionCheckBox" and "verticalLayout" belong to the section.
class ORVEKQTWIDGETS_EXPORT QAccordion : public QWidget
{
    Q_OBJECT
    //! Text of the check box, and the window title, which the search of an enclosing section compares. Default
    //! "Accordion".
    Q_PROPERTY(QString title READ title WRITE setTitle)
    //! Whether the contents are shown. Default true.
    Q_PROPERTY(bool open READ isOpen WRITE setOpen)

public:
    explicit QAccordion(QWidget* parent = nullptr);
    ~QAccordion() override;

    QString title() const;
    void setTitle(QString title);
    bool isOpen() const;
    void setOpen(bool open);

    //! Opens or closes the section as stored under its object name in the current group of the settings. Without an
    //! entry it closes.
    void readSettings(QSettings& settings);
    //! Stores whether the section is open, as a bool, under its object name in the current group of the settings.
    //! Sections with the same object name share an entry.
    void writeSettings(QSettings& settings);

public Q_SLOTS:
    //! Shows or hides the contents to match the check box.
    void on_accordionCheckBox_toggled();
    //! Shows the children of the contents whose window title contains the text, ignoring case, and hides the others; a
    //! push button or check box without a window title is compared by its text. If the section's own title contains the
    //! text, all are shown. Opens the section when there is a match, and gives it a yellow border in place of its own
    //! style sheet. An empty text shows everything and removes the border. Does nothing without contents.
    void setSearchText(const QString& text);

protected:
    void childEvent(QChildEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    friend class SectionBorder;
    void hookupContentsWidget();

    Ui::Accordion m_ui;             // the children belong to the section
    QPointer<QCheckBox> m_checkBox; // the form's; a host may delete it
    bool m_constructed = false;
    QPointer<QWidget> m_contentsWidget; // not owned; null until there is one
    const std::unique_ptr<SectionBorder> m_border;
};
