#pragma once

#include <examples/SceneEditor/document/Scene.h>

#include <QtCore/QString>

#include <memory>

class QLockFile;

namespace sceneeditor
{
//! For the window that has the file open. Not locked if another window has it, or where locks cannot be written.
std::unique_ptr<QLockFile> lockOfScene(const QString& fileName);

//! The copy of a scene with changes that were not saved, for when the program does not live to save them. It lies in
//! the user's folder for the program's data, one for each window; what a program left there that is gone can be taken
//! over.
class Recovery
{
public:
    Recovery();
    //! Leaves the copy where it is.
    ~Recovery();

    //! Replaces the copy. The document is the file that the scene belongs to; empty for one that was never saved. False
    //! with an error when it could not be written.
    bool store(const Scene& scene, const QString& document, QString* error);
    //! Removes the copy, if there is one.
    void clear();

    //! The oldest copy that nobody owns any more; null when there is none.
    static std::shared_ptr<Recovery> takeAbandoned();

    //! The scene; empty while there is none.
    QString copyFile() const;
    //! The document that was stored with it.
    QString document() const;

private:
    Q_DISABLE_COPY(Recovery)

    std::unique_ptr<QLockFile> m_lock; // held as long as there is a copy
    QString m_base;                    // of the names of its files; empty while there is none
};
} // namespace sceneeditor
