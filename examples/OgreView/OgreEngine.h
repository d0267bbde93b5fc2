#pragma once

#include <examples/EngineWindow.h>

#include <QtCore/QSocketNotifier>

#include <map>
#include <memory>

struct xcb_connection_t;

namespace Ogre
{
class Camera;
class LogManager;
class RenderWindow;
class Root;
class SceneManager;
class SceneNode;
} // namespace Ogre

//! Draws the knot with OGRE 1.12 on X11, through OpenGL 3.3. Everything is created in the first Render(), as the window
//! is not real before.
class OgreEngine final : public Engine
{
public:
    OgreEngine();
    ~OgreEngine();

    void AddWindow(HWND window, orvek::crossplatform::PlatformRendererInterface* renderer, int viewId) override;
    void RemoveWindow(HWND window) override;
    void ResizeSurface(HWND window) override;
    void Render(HWND window) override;
    //! Numbers from 0; -1 for an unknown window.
    int GetWindowViewId(HWND window) override;

private:
    struct View
    {
        const OrbitView* scene = nullptr; // not owned; null draws nothing
        int id = 0;
        // Null before the first frame; owned by OGRE.
        Ogre::RenderWindow* window = nullptr;
        unsigned long child = 0;         // its handle
        Ogre::SceneNode* node = nullptr; // holds the camera
        Ogre::Camera* camera = nullptr;
    };

    void start();
    void makeScene();
    void makeView(HWND window, View& view);
    void updateExposed();
    void draw(HWND window, View& view);

    std::unique_ptr<Ogre::LogManager> m_log; // outlives the root, which would otherwise write to a file
    std::unique_ptr<Ogre::Root> m_root;
    Ogre::RenderWindow* m_context = nullptr; // hidden; owned by the root, as is the scene
    Ogre::SceneManager* m_scene = nullptr;
    xcb_connection_t* m_connection = nullptr; // for expose events
    std::unique_ptr<QSocketNotifier> m_exposures;
    std::map<HWND, View> m_views;
    int m_nextId = 0;
};
