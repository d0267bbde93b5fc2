#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/OrvekQtWidgetsExport.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/ui_QPropertyPanel.h>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

//! Container of an editing user interface: a search field above a scroll area with sections.
//!
//! The host adds one QScrollArea as a direct child. Unless the host has put it into the layout itself, the panel lays
//! it out below the search field at its next child event, at the latest when it is shown. The panel itself hides
//! nothing: it sends each search text to every widget in the scroll area that has a slot setSearchText(const QString&),
//! mainly the sections. It looks for them once, at the first change of the text, so build the panel before the user can
//! type; a finished widget moved directly into the panel is connected, too.
//!
//! Whenever its children change, the panel writes their object names to the standard output, for diagnosis. The child
//! "search" belongs to the panel.
class ORVEKQTWIDGETS_EXPORT QPropertyPanel : public QWidget
{
    Q_OBJECT
public:
    explicit QPropertyPanel(QWidget* parent = nullptr);

    //! Sends the current search text again to the widgets connected so far. Use it after refilling a section during a
    //! search.
    void setSearchText();
    //! Returns true: form designers may put widgets into a panel.
    bool isContainer() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    //! The search text, as typed; empty when there is no search. Outer sections receive it before those inside them.
    void setSearchText(const QString& text); // clazy:exclude=overloaded-signal

public Q_SLOTS:
    //! Sends the text to the sections; connects them to the panel the first time.
    void on_search_textChanged(const QString& text);

protected:
    void childEvent(QChildEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void connectSearch(const QList<QWidget*>& widgets);

    Ui::QPropertyPanel m_ui;      // the children belong to the panel
    QPointer<QLineEdit> m_search; // the form's; a host may delete it
    bool m_searchConnected = false;
    bool m_constructed = false;
    // None of these is owned. Each is looked for while it is null, so a destroyed one is replaced.
    QPointer<QWidget>
        m_scrollArea; // a plain widget: events still reach the filter while the scroll area is being destroyed
    QPointer<QWidget> m_scrollContents;
    QPointer<QLineEdit> m_searchEdit;
};
