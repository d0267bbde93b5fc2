#include <examples/SceneEditor/document/Document.h>

#include <examples/SceneEditor/document/EnvironmentImage.h>
#include <examples/SceneEditor/document/SceneDescription.h>
#include <examples/SceneEditor/document/SceneFile.h>

#include <QtCore/QFileInfo>
#include <QtCore/QLockFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace sceneeditor
{
namespace
{
constexpr int CopyDelay = 2000; // milliseconds from a change to its copy
constexpr float Beside = 0.5f;  // metres from an object to its duplicate
constexpr float Gap = 0.25f;    // metres between an imported object and the others

QVector3D clamped(const QVector3D& position)
{
    const auto clamp = [](float value) { return float(ranges::coordinate.clamp(double(value))); };
    return {clamp(position.x()), clamp(position.y()), clamp(position.z())};
}

// Gives names that no object has: "Cube" and "Cube 2" both lead to "Cube 3".
class FreeNames
{
public:
    explicit FreeNames(const std::vector<Object>& objects)
    {
        for (const Object& object : objects)
            m_taken << object.name;
    }

    // The returned name counts as taken from then on.
    QString take(const QString& wanted)
    {
        static const QRegularExpression number(QStringLiteral(" [0-9]+$"));
        const QString base = QString(wanted).remove(number) + QLatin1Char(' ');
        QString name = wanted;
        int& next = m_next[base];
        next = qMax(next, 2);
        while (m_taken.contains(name))
            name = base + QString::number(next++);
        m_taken << name;
        return name;
    }

private:
    QSet<QString> m_taken;
    QHash<QString, int> m_next; // the next number, by the text before it; all lower ones are taken
};
} // namespace

// A change of the list of objects itself, or of several objects at once.
class Document::ObjectsStep : public QUndoCommand
{
public:
    ObjectsStep(Document* document, const QString& text, std::vector<Object> objects, QVector<int> selection, int id)
        : QUndoCommand(text),
          m_document(document),
          m_before(document->m_scene.objects),
          m_after(std::move(objects)),
          m_selectionBefore(document->m_selection),
          m_selectionAfter(std::move(selection)),
          m_id(id)
    {
    }
    void undo() override { m_document->setObjects(m_before, m_selectionBefore); }
    void redo() override { m_document->setObjects(m_after, m_selectionAfter); }
    int id() const override { return m_id; }
    bool mergeWith(const QUndoCommand* command) override
    {
        m_after = static_cast<const ObjectsStep*>(command)->m_after;
        return true;
    }

private:
    Document* const m_document;
    const std::vector<Object> m_before;
    std::vector<Object> m_after;
    const QVector<int> m_selectionBefore;
    const QVector<int> m_selectionAfter;
    const int m_id; // equal for steps of one user action, -1 for others
};

Document::Document(QObject* parent) : QObject(parent)
{
    m_copyTimer.setSingleShot(true);
    m_copyTimer.setInterval(CopyDelay);
    connect(&m_copyTimer, &QTimer::timeout, this, &Document::storeCopy);
    connect(&m_undoStack, &QUndoStack::indexChanged, this, &Document::scheduleCopy);
    connect(&m_undoStack, &QUndoStack::cleanChanged, this, &Document::scheduleCopy);
}

Document::~Document()
{
    // The stack becomes empty as it is destroyed, which must not discard the copy.
    m_undoStack.disconnect(this);
}

void Document::setSelection(QVector<int> selection)
{
    std::sort(selection.begin(), selection.end());
    selection.erase(std::unique(selection.begin(), selection.end()), selection.end());
    const int count = int(m_scene.objects.size());
    const auto isGone = [count](int index) { return index < 0 || index >= count; };
    selection.erase(std::remove_if(selection.begin(), selection.end(), isGone), selection.end());
    if (selection == m_selection)
        return;
    m_selection = selection;
    Q_EMIT selectionChanged();
}

bool Document::isModified() const
{
    return !m_undoStack.isClean() || m_scene.camera != m_savedCamera;
}

bool Document::save(const QString& fileName, QString* error)
{
    const QString absolute = QFileInfo(fileName).absoluteFilePath();
    if (!writeScene(m_scene, absolute, error))
        return false;
    m_fileName = absolute;
    lockFile();
    m_savedCamera = m_scene.camera;
    m_undoStack.setClean();
    scheduleCopy();
    return true;
}

bool Document::isOpenElsewhere() const
{
    return m_lock && m_lock->error() == QLockFile::LockFailedError;
}

void Document::discardCopy()
{
    m_copyTimer.stop();
    m_recovery->clear();
}

void Document::clear()
{
    open({});
}

void Document::open(const OpenedScene& opened)
{
    discardCopy();
    m_scene = opened.scene;
    m_fileName = opened.fileName;
    lockFile();
    m_savedCamera = m_scene.camera;
    m_environment = opened.environment;
    m_environmentFile = m_scene.view.environmentImage;
    m_meshes = opened.meshes;
    m_selection.clear();
    m_undoStack.clear();
    m_undoStack.setClean();
    if (opened.copy)
    {
        m_recovery = opened.copy;
        m_undoStack.resetClean();
    }
    if (!m_scene.objects.empty())
        m_selection << 0;
    Q_EMIT this->opened();
    Q_EMIT objectsChanged();
    Q_EMIT selectionChanged();
    Q_EMIT stateChanged();
}

void Document::addMesh(const QString& fileName, const MeshPointer& mesh)
{
    m_meshes.insert(fileName, mesh);
    Q_EMIT meshAdded(fileName);
}

void Document::valueChanged(const QString& property)
{
    if (property == QLatin1String("scene.view.environmentImage"))
    {
        QString error;
        if (!readEnvironment(&error))
        {
            m_scene.view.environmentImage = m_environmentFile;
            Q_EMIT failed(error);
        }
    }
    if (property == QLatin1String("name"))
        Q_EMIT objectsChanged();
    Q_EMIT changed();
}

void Document::setCamera(const Camera& camera)
{
    m_scene.camera = camera;
    scheduleCopy();
    Q_EMIT cameraMoved();
}

QString Document::addObjectsOf(QStringList meshFiles)
{
    float edge = -std::numeric_limits<float>::infinity();
    for (const Object& object : m_scene.objects)
        if (const MeshPointer mesh = this->mesh(object.meshFile))
            edge = qMax(edge, object.position.x() + object.scale.x() * mesh->maximum.x());
    std::vector<Object> objects = m_scene.objects;
    QVector<int> selection;
    FreeNames names(objects);
    meshFiles.sort();
    for (const QString& file : std::as_const(meshFiles))
    {
        const MeshData& mesh = *m_meshes[file];
        Object object;
        object.name = names.take(QFileInfo(file).completeBaseName());
        object.meshFile = file;
        if (const int main = mesh.mainMaterial(); main >= 0)
            object.material = mesh.materials[size_t(main)].material;
        const float middle = (mesh.minimum.x() + mesh.maximum.x()) / 2.0f;
        object.position =
            QVector3D(std::isinf(edge) ? -middle : edge + Gap - mesh.minimum.x(), -mesh.minimum.y(), 0.0f);
        edge = object.position.x() + mesh.maximum.x();
        selection << int(objects.size());
        objects.push_back(std::move(object));
    }
    QString name = selection.size() == 1 ? objects.back().name : tr("%1 meshes").arg(selection.size());
    push(tr("Import of %1").arg(name), std::move(objects), selection);
    return name;
}

void Document::duplicateSelection()
{
    if (m_selection.isEmpty())
        return;
    std::vector<Object> objects;
    QVector<int> selection;
    FreeNames names(m_scene.objects);
    for (size_t i = 0; i < m_scene.objects.size(); ++i)
    {
        objects.push_back(m_scene.objects[i]);
        if (!isSelected(int(i)))
            continue;
        Object copy = m_scene.objects[i];
        copy.name = names.take(copy.name);
        // Beside the original, where it can be seen.
        copy.position = clamped(copy.position + QVector3D(Beside, 0.0f, 0.0f));
        selection << int(objects.size());
        objects.push_back(std::move(copy));
    }
    push(tr("Duplicate of %1").arg(selectedName()), std::move(objects), selection);
}

void Document::removeSelection()
{
    if (m_selection.isEmpty())
        return;
    std::vector<Object> objects;
    for (size_t i = 0; i < m_scene.objects.size(); ++i)
        if (!isSelected(int(i)))
            objects.push_back(m_scene.objects[i]);
    QVector<int> selection;
    if (!objects.empty())
        selection << qMin(m_selection.first(), int(objects.size()) - 1);
    push(tr("Removal of %1").arg(selectedName()), std::move(objects), selection);
}

void Document::rename(int object, const QString& name)
{
    std::vector<Object> objects = m_scene.objects;
    Object& renamed = objects[size_t(object)];
    if (renamed.name == name)
        return;
    const QString before = std::exchange(renamed.name, name);
    push(tr("Renaming of %1").arg(before), std::move(objects), m_selection);
}

void Document::setVisible(const QVector<int>& indices, bool visible)
{
    std::vector<Object> objects = m_scene.objects;
    bool isOther = false;
    for (const int index : indices)
        isOther = std::exchange(objects[size_t(index)].visible, visible) != visible || isOther;
    if (!isOther)
        return;
    const QString name =
        indices.size() == 1 ? objects[size_t(indices.first())].name : tr("%1 objects").arg(indices.size());
    push((visible ? tr("Showing of %1") : tr("Hiding of %1")).arg(name), std::move(objects), m_selection);
}

void Document::reorder(const QVector<int>& order)
{
    std::vector<Object> objects;
    QVector<int> selection;
    for (const int old : order)
    {
        if (isSelected(old))
            selection << int(objects.size());
        objects.push_back(m_scene.objects[size_t(old)]);
    }
    push(tr("New order"), std::move(objects), selection);
}

void Document::setMesh(const QVector<int>& indices, const QString& fileName)
{
    std::vector<Object> objects = m_scene.objects;
    for (const int index : indices)
        objects[size_t(index)].meshFile = fileName;
    push(tr("Change of mesh"), std::move(objects), m_selection);
}

void Document::beginMove()
{
    ++m_moveId;
    m_moveStart = m_scene.objects;
}

void Document::moveSelection(const QVector3D& delta)
{
    // Undoing while the mouse is down may have changed the list.
    if (m_moveStart.size() != m_scene.objects.size())
        return;
    std::vector<Object> objects = m_moveStart;
    for (const int index : std::as_const(m_selection))
        objects[size_t(index)].position = clamped(objects[size_t(index)].position + delta);
    push(tr("Move of %1").arg(selectedName()), std::move(objects), m_selection, m_moveId);
}

void Document::endMove()
{
    m_moveStart.clear();
}

void Document::push(const QString& text, std::vector<Object> objects, const QVector<int>& selection, int id)
{
    m_undoStack.push(new ObjectsStep(this, text, std::move(objects), selection, id));
}

void Document::setObjects(const std::vector<Object>& objects, const QVector<int>& selection)
{
    m_scene.objects = objects;
    const bool isOther = selection != m_selection;
    m_selection = selection;
    Q_EMIT objectsChanged();
    if (isOther)
        Q_EMIT selectionChanged();
    Q_EMIT changed();
}

bool Document::isSelected(int object) const
{
    return std::binary_search(m_selection.begin(), m_selection.end(), object);
}

QString Document::selectedName() const
{
    return m_selection.size() == 1 ? m_scene.objects[size_t(m_selection.first())].name
                                   : tr("%1 objects").arg(m_selection.size());
}

// Returns false if the picture that the scene names cannot be read; the old one stays.
bool Document::readEnvironment(QString* error)
{
    const QString& wanted = m_scene.view.environmentImage;
    if (wanted == m_environmentFile)
        return true;
    const QImage image = wanted.isEmpty() ? QImage() : readEnvironmentImage(wanted, error);
    if (image.isNull() && !wanted.isEmpty())
        return false;
    m_environmentFile = wanted;
    m_environment = image;
    Q_EMIT environmentChanged();
    return true;
}

// Nobody can lose changes in a file that cannot be written.
void Document::lockFile()
{
    m_lock.reset(); // it may be for the same file
    if (QFileInfo(m_fileName).isWritable())
        m_lock = lockOfScene(m_fileName);
}

void Document::scheduleCopy()
{
    if (!isModified())
        discardCopy();
    else if (!m_copyTimer.isActive())
        m_copyTimer.start();
    Q_EMIT stateChanged();
}

void Document::storeCopy()
{
    QString error;
    const bool isStored = m_recovery->store(m_scene, m_fileName, &error);
    // Reported once, not for every change.
    if (!isStored && !m_copyFailed)
        Q_EMIT failed(tr("Unsaved changes would be lost if the program ended unexpectedly: %1").arg(error));
    m_copyFailed = !isStored;
}
} // namespace sceneeditor
