#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QObject>

#include <memory>

QT_BEGIN_NAMESPACE
class QSettings;
class QWidget;
QT_END_NAMESPACE

namespace orvek::host
{
//! Saves and restores which sections below a root are open, and lets their whole title line fold them.
//!
//! The key of a section is its path, relative to the settings' current group: the object names of the widgets from the
//! root down to it, with "/" between them, as in "Material/Advanced". Left out are widgets without a name, Qt's own
//! ("qt_...") and the contents of sections. A section that has no name of its own, which is called "Accordion" then,
//! goes by its title. Of equal paths the second ends in "#2", in the order of creation. In names, "/", "\\", "%" and
//! "#" are written "%2F", "%5C", "%25" and "%23".
//!
//! A search leaves what is saved alone: while the search field of the panel around a section has a text, or the section
//! is marked ("highlighted"), its state is the one from before, unless the user folds it. A section that is only open
//! because clearing the field opens all counts as closed until the user opens it.
class ORVEKQTHOST_EXPORT SectionStates : public QObject
{
    Q_OBJECT
public:
    //! Follows every section below root, also those that come later. Not owned; may die first. Null is ignored.
    explicit SectionStates(QWidget* root, QObject* parent = nullptr);
    ~SectionStates() override;

    //! Writes a bool to the settings for each section, and for each that has left. Other entries stay.
    void save(QSettings& settings) const;
    //! Opens and closes the sections by the settings; those without an entry stay as they are. What was read is kept
    //! for sections that come later, and one that leaves and comes again has the state that it left with. During a
    //! search it takes effect at the end of it.
    void restore(const QSettings& settings);

    //! Whether a click anywhere in the title line folds, as one on the check box does: pressed and released inside.
    //! Default true.
    bool wholeTitleFolds() const;
    void setWholeTitleFolds(bool on);
    //! Whether all visible sections of the same parent follow one that the user folds with Ctrl held. Default true.
    bool ctrlFoldsAll() const;
    void setCtrlFoldsAll(bool on);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
