#include <examples/OgreView/OgreEngine.h>

#include <Ogre.h>
#include <OgreRTShaderSystem.h>

#include <xcb/xcb.h>

#include <cstdlib>

namespace
{
constexpr auto material = "Knot";

Ogre::Vector3 converted(const QVector3D& vector)
{
    return {vector.x(), vector.y(), vector.z()};
}

Ogre::ColourValue colour(const QVector3D& vector)
{
    return Ogre::ColourValue(vector.x(), vector.y(), vector.z());
}

// The options for each window of OGRE.
Ogre::NameValuePairList windowOptions()
{
    return {{"vsync", "false"}}; // several views would wait for one another
}
} // namespace

OgreEngine::OgreEngine() = default;

OgreEngine::~OgreEngine()
{
    while (!m_views.empty())
        RemoveWindow(m_views.begin()->first);
    if (m_root)
        Ogre::RTShader::ShaderGenerator::destroy();
    m_exposures.reset();
    if (m_connection)
        xcb_disconnect(m_connection);
}

// Also called for a known window, with another renderer or with null.
void OgreEngine::AddWindow(HWND window, orvek::crossplatform::PlatformRendererInterface* renderer, int)
{
    const auto [view, added] = m_views.try_emplace(window);
    view->second.scene = static_cast<const OrbitView*>(renderer); // this engine knows no other renderers
    if (added)
        view->second.id = m_nextId++;
}

// May be called twice. Afterwards the window may be destroyed at any time.
void OgreEngine::RemoveWindow(HWND window)
{
    const auto found = m_views.find(window);
    if (found == m_views.end())
        return;
    const View& view = found->second;
    // Each before the objects it refers to.
    if (view.window)
    {
        view.window->removeAllViewports();
        m_root->destroyRenderTarget(view.window);
    }
    if (view.camera)
        m_scene->destroyCamera(view.camera);
    if (view.node)
        m_scene->destroySceneNode(view.node);
    m_views.erase(found);
}

// Render() compares the size before each frame, as this is not called on a manager that is set later.
void OgreEngine::ResizeSurface(HWND) {}

void OgreEngine::Render(HWND window)
{
    const auto found = m_views.find(window);
    if (found == m_views.end() || !found->second.scene || !m_error.isEmpty())
        return;
    try
    {
        if (!m_scene)
            start();
        if (!found->second.window)
            makeView(window, found->second);
        draw(window, found->second);
    }
    catch (const std::exception& exception) // including OGRE's own; none may reach Qt
    {
        m_error = QString::fromUtf8(exception.what());
    }
}

int OgreEngine::GetWindowViewId(HWND window)
{
    const auto found = m_views.find(window);
    return found == m_views.end() ? -1 : found->second.id;
}

void OgreEngine::start()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        throw std::runtime_error("OGRE cannot draw to windows other than those of X11");
    m_connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(m_connection))
        throw std::runtime_error("OGRE cannot reach the X server");
    m_exposures = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read);
    QObject::connect(m_exposures.get(), &QSocketNotifier::activated, m_exposures.get(), [this] { updateExposed(); });
    m_log = std::make_unique<Ogre::LogManager>();
    m_log->createLog("", true, false, true);           // no file, no output
    m_root = std::make_unique<Ogre::Root>("", "", ""); // no configuration files
    m_root->loadPlugin(OGRE_PLUGINS "/RenderSystem_GL3Plus");
    m_root->setRenderSystem(m_root->getAvailableRenderers().front());
    m_root->initialise(false);
    // The first window owns the context that all others share, so the user must not be able to close it.
    Ogre::NameValuePairList options = windowOptions();
    options["hidden"] = "true";
    m_context = m_root->createRenderWindow("Context", 1, 1, false, &options);
    m_device = QString::fromStdString(m_root->getRenderSystem()->getCapabilities()->getDeviceName());
    makeScene();
}

void OgreEngine::makeScene()
{
    // OpenGL 3.3 needs shaders, and this generates them for materials without any.
    Ogre::ResourceGroupManager& groups = Ogre::ResourceGroupManager::getSingleton();
    groups.addResourceLocation(OGRE_MEDIA "/RTShaderLib/GLSL", "FileSystem", Ogre::RGN_INTERNAL);
    groups.addResourceLocation(OGRE_MEDIA "/ShadowVolume", "FileSystem",
                               Ogre::RGN_INTERNAL); // the others include a header from there
    groups.initialiseAllResourceGroups();
    if (!Ogre::RTShader::ShaderGenerator::initialize())
        throw std::runtime_error("OGRE cannot make shaders");
    m_scene = m_root->createSceneManager();
    auto& shaders = Ogre::RTShader::ShaderGenerator::getSingleton();
    shaders.addSceneManager(m_scene);
    const Ogre::String& scheme = Ogre::RTShader::ShaderGenerator::DEFAULT_SCHEME_NAME;
    shaders.getRenderState(scheme)->addTemplateSubRenderState(
        shaders.createSubRenderState(Ogre::RTShader::PerPixelLighting::Type));

    const Ogre::MaterialPtr knot = Ogre::MaterialManager::getSingleton().create(material, Ogre::RGN_INTERNAL);
    knot->setSpecular(0.4f, 0.4f, 0.4f, 1.0f);
    knot->setShininess(40.0f);
    shaders.createShaderBasedTechnique(*knot, Ogre::MaterialManager::DEFAULT_SCHEME_NAME, scheme);
    shaders.validateMaterial(scheme, material, Ogre::RGN_INTERNAL);

    const Mesh mesh = makeKnot();
    Ogre::ManualObject* object = m_scene->createManualObject();
    object->estimateVertexCount(mesh.vertices.size());
    object->estimateIndexCount(mesh.indices.size());
    object->begin(knot, Ogre::RenderOperation::OT_TRIANGLE_LIST);
    for (const Mesh::Vertex& vertex : mesh.vertices)
    {
        object->position(converted(vertex.position));
        object->normal(converted(vertex.normal));
    }
    for (const quint32 index : mesh.indices)
        object->index(index);
    object->end();
    Ogre::SceneNode* root = m_scene->getRootSceneNode();
    root->attachObject(object);

    m_scene->setAmbientLight(Ogre::ColourValue(0.35f, 0.35f, 0.35f));
    Ogre::Light* light = m_scene->createLight();
    light->setType(Ogre::Light::LT_DIRECTIONAL);
    light->setDiffuseColour(0.65f, 0.65f, 0.65f);
    light->setSpecularColour(1.0f, 1.0f, 1.0f);
    Ogre::SceneNode* lamp = root->createChildSceneNode();
    lamp->setDirection(-converted(lightDirection()), Ogre::Node::TS_WORLD);
    lamp->attachObject(light);
}

void OgreEngine::makeView(HWND window, View& view)
{
    // As a child of the widget's window: Qt created that one without a depth buffer, so OGRE would have none.
    Ogre::NameValuePairList options = windowOptions();
    options["parentWindowHandle"] = std::to_string(window);
    view.window = m_root->createRenderWindow("View " + std::to_string(view.id), 1, 1, false, &options);
    view.window->getCustomAttribute("WINDOW", &view.child);
    const uint32_t events = XCB_EVENT_MASK_EXPOSURE;
    xcb_change_window_attributes(m_connection, xcb_window_t(view.child), XCB_CW_EVENT_MASK, &events);
    xcb_flush(m_connection);
    view.window->setAutoUpdated(false); // frames are drawn by Render(), not whenever another view has one
    view.node = m_scene->getRootSceneNode()->createChildSceneNode();
    view.node->setFixedYawAxis(true); // otherwise lookAt() rolls the camera
    view.camera = m_scene->createCamera(view.window->getName());
    view.camera->setFOVy(Ogre::Degree(OrbitView::fieldOfView));
    view.camera->setNearClipDistance(OrbitView::nearest);
    // Makes the matrix of each view slightly different. OGRE does not send a value again that a shader already has,
    // even if it was set in the context of another view; this view would then keep its old value.
    view.camera->setFarClipDistance(OrbitView::farthest + 0.1f * float(view.id));
    view.node->attachObject(view.camera);
    Ogre::Viewport* viewport = view.window->addViewport(view.camera);
    viewport->setBackgroundColour(Ogre::ColourValue(background[0], background[1], background[2]));
    viewport->setMaterialScheme(Ogre::RTShader::ShaderGenerator::DEFAULT_SCHEME_NAME);
}

// A window is empty after it was covered or hidden. OGRE's window covers the widget's, so the X server reports this
// only for OGRE's, and Qt does not know that a frame is needed.
void OgreEngine::updateExposed()
{
    while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection))
    {
        for (const auto& [window, view] : m_views)
        {
            if ((event->response_type & 0x7f) == XCB_EXPOSE &&
                reinterpret_cast<const xcb_expose_event_t*>(event)->window == view.child)
                QWidget::find(WId(window))->update();
        }
        std::free(event);
    }
}

void OgreEngine::draw(HWND window, View& view)
{
    // In device pixels.
    const QWidget* widget = QWidget::find(WId(window));
    const QSize size = widget->size() * widget->devicePixelRatioF();
    if (size.isEmpty())
        return;
    if (size != QSize(int(view.window->getWidth()), int(view.window->getHeight())))
    {
        view.window->resize(unsigned(size.width()), unsigned(size.height()));
        view.window->windowMovedOrResized();
        view.camera->setAspectRatio(float(size.width()) / float(size.height()));
    }
    view.node->setPosition(converted(view.scene->eye()));
    view.node->lookAt(Ogre::Vector3::ZERO, Ogre::Node::TS_WORLD);
    // Views take turns, so one material serves all of them.
    const Ogre::MaterialPtr knot = Ogre::MaterialManager::getSingleton().getByName(material, Ogre::RGN_INTERNAL);
    knot->setAmbient(colour(view.scene->colour()));
    knot->setDiffuse(colour(view.scene->colour()));
    // OGRE makes a context current only when it switches between its own. Since the last frame Qt may have made another
    // one current, for a QOpenGLWidget of the host. So switch away and back.
    m_root->getRenderSystem()->_setRenderTarget(m_context);
    m_root->getRenderSystem()->_setRenderTarget(view.window);
    view.window->update(true);
}
