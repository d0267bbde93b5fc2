#include <examples/SceneEditor/ScenePanel.h>

#include <examples/SceneEditor/document/Document.h>
#include <examples/SceneEditor/document/SceneDescription.h>
#include <examples/SceneEditor/Icons.h>
#include <Orvek/Host/ColumnAligner.h>
#include <Orvek/Host/EditorInput.h>
#include <Orvek/Host/EditorUndo.h>
#include <Orvek/Host/Inspector.h>
#include <Orvek/Host/PanelHost.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QFileEdit.h>

#include <QtCore/QFileInfo>
#include <QtCore/QTimer>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyle>

#include <functional>
#include <utility>

using namespace orvek::host;

namespace sceneeditor
{
namespace
{
constexpr int NarrowestRow = 360;     // pixels; the columns need this much
constexpr int ListHeight = 190;       // of the list of objects and its buttons, pixels
constexpr int PropertiesHeight = 700; // pixels at first, if there is room
constexpr int SettlingTime = 50;      // milliseconds for new rows to be aligned in columns
} // namespace

ScenePanel::ScenePanel(QWidget* parent) : QWidget(parent)
{
    m_ui.setupUi(this);
    m_ui.sideSplitter->setStretchFactor(1, 1);
    m_ui.sideSplitter->setSizes({ListHeight, PropertiesHeight});
    const QMargins margins = m_ui.sectionsLayout->contentsMargins();
    m_ui.scrollArea->setMinimumWidth(NarrowestRow + margins.left() + margins.right() +
                                     m_ui.scrollArea->verticalScrollBar()->sizeHint().width());
    m_ui.addButton->setIcon(icon(Icon::Add));
    m_ui.duplicateButton->setIcon(icon(Icon::Duplicate));
    m_ui.removeButton->setIcon(icon(Icon::Remove));
    connect(m_ui.addButton, &QPushButton::clicked, this, &ScenePanel::addRequested);
}

ScenePanel::~ScenePanel()
{
    // Delete it first: a field that loses the focus while the form is destroyed must not reach it.
    delete m_inspector;
}

void ScenePanel::setDocument(Document* document)
{
    m_document = document;
    m_ui.objectList->setDocument(document);
    connect(m_ui.duplicateButton, &QPushButton::clicked, document, &Document::duplicateSelection);
    connect(m_ui.removeButton, &QPushButton::clicked, document, &Document::removeSelection);

    m_inspector = new Inspector(m_ui.propertyPanel, &document->undoStack(), this);
    m_inspector->host()->input()->setTabsToReset(false);
    // Steps store the indices of objects, which are the same again when a step is undone.
    m_inspector->setKeys(
        [this](void* object) -> QVariant
        {
            const std::vector<Object>& objects = m_document->scene().objects;
            const auto* address = static_cast<const Object*>(object);
            const bool isObject = !objects.empty() && !std::less<>()(address, objects.data()) &&
                                  std::less<>()(address, objects.data() + objects.size());
            return isObject ? int(address - objects.data()) : -1;
        },
        [this](const QVariant& key) -> void*
        {
            Scene& scene = m_document->scene();
            const int index = key.toInt();
            if (index < 0)
                return &scene;
            return index < int(scene.objects.size()) ? &scene.objects[size_t(index)] : nullptr;
        });
    connect(m_inspector, &Inspector::edited, this, &ScenePanel::onEdited);

    connect(document, &Document::objectsChanged, this, &ScenePanel::showGroups);
    connect(document, &Document::selectionChanged, this, &ScenePanel::showGroups);
    connect(document, &Document::changed, m_inspector, &Inspector::refresh);
    connect(document, &Document::cameraMoved, m_inspector, &Inspector::refresh);
    showGroups();
}

PanelHost* ScenePanel::host() const
{
    return m_inspector ? m_inspector->host() : nullptr;
}

void ScenePanel::setSearchText(const QString& text)
{
    m_ui.propertyPanel->findChild<QLineEdit*>(QStringLiteral("search"))->setText(text);
}

void ScenePanel::setSectionsOpen(bool open)
{
    const auto sections = m_ui.propertyPanel->findChildren<QAccordion*>();
    for (QAccordion* section : sections)
        section->setOpen(open);
}

int ScenePanel::uncutWidth() const
{
    const QMargins margins = m_ui.sectionsLayout->contentsMargins();
    return m_inspector->host()->columns()->uncutWidth() + margins.left() + margins.right() +
           m_ui.scrollArea->verticalScrollBar()->sizeHint().width();
}

// Not a row of the inspector: a new mesh becomes a step only once its file has been read.
void ScenePanel::addMesh()
{
    m_mesh = new QFileEdit;
    m_mesh->setTitle(tr("Mesh"));
    m_mesh->setToolTip(tr("Mesh of the object; other files are read in the background"));
    m_mesh->setObjectName(QStringLiteral("mesh"));
    m_mesh->setShowDefaultButton(false);
    m_mesh->setFilter(meshFileFilter());
    m_inspector->addRow(m_mesh, objectPanelType()->sectionTitle(0), QStringLiteral("name"));
    m_inspector->host()->undo()->remove(m_mesh);
    connect(m_mesh, &QFileEdit::valueChanged, this,
            [this]
            {
                Q_EMIT meshRequested(m_mesh->filename());
                showMesh();
            });
}

void ScenePanel::showGroups()
{
    Scene& scene = m_document->scene();
    QVector<void*> selected;
    for (const int index : m_document->selection())
        selected << &scene.objects[size_t(index)];
    if (selected.isEmpty() != !m_mesh)
    {
        // Show new rows only once they are aligned; otherwise they are seen half done while the view draws.
        m_ui.propertyPanel->setUpdatesEnabled(false);
        QTimer::singleShot(SettlingTime, m_ui.propertyPanel, [this] { m_ui.propertyPanel->setUpdatesEnabled(true); });
    }
    if (selected.isEmpty())
        delete std::exchange(m_mesh, nullptr);
    else if (!m_mesh)
        addMesh();
    m_inspector->setGroups({{{objectPanelType(), selected}}, {{scenePanelType(), {&scene}}}});
    for (QPushButton* button : {m_ui.duplicateButton, m_ui.removeButton})
        button->setEnabled(!selected.isEmpty());
    showMesh();
}

void ScenePanel::showMesh()
{
    if (!m_mesh)
        return;
    const std::vector<Object>& objects = m_document->scene().objects;
    QString common;
    bool isMixed = false;
    for (const int index : m_document->selection())
    {
        const QString& file = objects[size_t(index)].meshFile;
        isMixed = isMixed || (index != m_document->selection().first() && file != common);
        common = file;
    }
    m_mesh->setFilename(isMixed ? QString() : common);
    // Mark different values as the inspector does.
    auto* field = m_mesh->findChild<QLineEdit*>(QStringLiteral("lineEdit"));
    field->setPlaceholderText(isMixed ? QStringLiteral("—") : QString());
    field->setProperty("mixed", isMixed ? QVariant(true) : QVariant());
    field->style()->unpolish(field);
    field->style()->polish(field);
    m_mesh->setDefaultPath(m_document->fileName().isEmpty() ? QString() : QFileInfo(m_document->fileName()).path());
}

void ScenePanel::onEdited(const QVector<void*>& objects, const QString& property)
{
    Scene& scene = m_document->scene();
    if (objects.contains(&scene))
    {
        m_document->valueChanged(QStringLiteral("scene.") + property);
        return;
    }
    // Undoing selects the objects that it changes.
    QVector<int> selection;
    for (void* object : objects)
        selection << int(static_cast<Object*>(object) - scene.objects.data());
    m_document->setSelection(selection);
    m_document->valueChanged(property);
}
} // namespace sceneeditor
