#pragma once

#include <examples/SceneEditor/document/Scene.h>

#include <QtCore/QString>

#include <memory>

class QLockFile;

namespace sceneeditor
{
//! The lock of the window that has the file open. Not locked if another window has it or it cannot be written.
std::unique_ptr<QLockFile> lockOfScene(const QString& fileName);

//! A copy of a scene with unsaved changes, in case the program ends unexpectedly. Each window has one, in the user's
//! folder for the program's data. If a program has ended and left its copy, another one can adopt it.
class Recovery
{
public:
    Recovery();
    //! Leaves the copy where it is.
    ~Recovery();

    //! Replaces the copy. The document is the file that the scene belongs to; empty for one that was never saved.
    //! Returns false with an error if it could not be written.
    bool store(const Scene& scene, const QString& document, QString* error);
    //! Removes the copy, if there is one.
    void clear();

    //! The oldest copy whose program has ended; null if there is none.
    static std::shared_ptr<Recovery> takeAbandoned();

    //! The scene; empty while there is none.
    QString copyFile() const;
    //! The document that was stored with it.
    QString document() const;

private:
    Q_DISABLE_COPY(Recovery)

    std::unique_ptr<QLockFile> m_lock; // held as long as there is a copy
    QString m_base;                    // what its files' names begin with; empty while there is none
};
} // namespace sceneeditor
