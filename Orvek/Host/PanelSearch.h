#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QObject>

#include <memory>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace orvek::host
{
//! Makes the search of a panel complete, and free of traces.
//!
//! Follows all sections below the panel and sends them the search texts in the panel's place, outer ones first. So
//! sections and rows added during a search are filtered too, and what was folded or hidden before is folded or hidden
//! again when the field is cleared. What the user folds, or the host shows or hides, during a search stays that way.
//! Create it before the first search; if a search is already active, what it opened stays open.
class ORVEKQTHOST_EXPORT PanelSearch : public QObject
{
    Q_OBJECT
public:
    //! The panel is a QPropertyPanel, or any widget with a signal setSearchText(const QString&) and a child QLineEdit
    //! "search". Not owned; may die first. If it is null or lacks the signal, this object does nothing.
    explicit PanelSearch(QWidget* panel, QObject* parent = nullptr);
    //! Gives the sections back to the panel. If a search is active, sections without a match are shown again.
    ~PanelSearch() override;

    //! Whether clearing the field restores what was folded and hidden. Default true; otherwise everything is opened and
    //! shown, as the sections do by themselves.
    bool restores() const;
    void setRestores(bool on);
    //! Whether a section with a match is shown wherever it is nested: the sections around it open and show it. A
    //! section inside one whose own title matches is then shown with all its rows. Default true.
    bool showsNested() const;
    void setShowsNested(bool on);
    //! Whether sections without a match are hidden during a search. Default true.
    bool hidesUnmatched() const;
    void setHidesUnmatched(bool on);
    //! Whether a line below the search field says that nothing matches. Default true.
    bool tellsNothingFound() const;
    void setTellsNothingFound(bool on);
    //! Whether the keys for find (Ctrl+F), find next (F3) and find previous (Shift+F3) work in the panel's window; the
    //! latter two during a search only. Switch it off if the window has its own actions for them, and connect those to
    //! the slots. Default true.
    bool hasShortcut() const;
    void setShortcut(bool on);
    //! Whether Esc in the search field clears it and returns the focus to where it was, and Return goes to the first
    //! match. With nothing to clear and nowhere to return to, Esc goes on to the window. Default true.
    bool hasFieldKeys() const;
    void setFieldKeys(bool on);

public Q_SLOTS:
    //! Moves the focus to the search field and selects its text.
    void find();
    //! Moves the focus to the topmost match and scrolls to it: to the first field of an editor, or the check box of a
    //! section whose title matches. Without a match it does nothing; nor do the next two.
    void findFirst();
    //! Goes on from the match that has the focus or was visited last; after the last one, to the first.
    void findNext();
    //! The same backwards; before the first match comes the last one.
    void findPrevious();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void onSearchText(const QString& text);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
