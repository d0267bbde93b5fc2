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
//! Saves and restores which sections below a root are open, and lets a click anywhere in a title line fold the section.
//!
//! The key of a section is its path, relative to the settings' current group: the object names of the widgets from the
//! root down to it, separated by "/", as in "Material/Advanced". Widgets without a name, Qt's own ("qt_...") and the
//! contents of sections are omitted. A section without a name of its own, which is then "Accordion", uses its title. If
//! two paths are equal, the second ends in "#2", in the order of creation. In names, "/", "\\", "%" and "#" are written
//! "%2F", "%5C", "%25" and "%23".
//!
//! A search does not affect what is saved: while the search field of the panel around a section has a text, or the
//! section is marked ("highlighted"), its state is the one from before, unless the user folds it. A section that is
//! only open because clearing the field opens all counts as closed until the user opens it.
class ORVEKQTHOST_EXPORT SectionStates : public QObject
{
    Q_OBJECT
public:
    //! Follows every section below root, including later ones. Not owned; may die first. Null is ignored.
    explicit SectionStates(QWidget* root, QObject* parent = nullptr);
    ~SectionStates() override;

    //! Writes a bool to the settings for each section, including those that have been removed. Other entries stay.
    void save(QSettings& settings) const;
    //! Opens and closes the sections as the settings say; those without an entry stay as they are. What was read is
    //! kept for sections added later, and a section that is removed and added again keeps its state. During a search it
    //! takes effect when the search ends.
    void restore(const QSettings& settings);

    //! Whether a click anywhere in the title line folds the section, like one on the check box: pressed and released
    //! inside. Default true.
    bool wholeTitleFolds() const;
    void setWholeTitleFolds(bool on);
    //! Whether all visible sections of the same parent follow one that the user folds while holding Ctrl. Default true.
    bool ctrlFoldsAll() const;
    void setCtrlFoldsAll(bool on);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
