#pragma once

#include <examples/EngineWindow.h>

#include <map>
#include <memory>

namespace Ogre
{
class Camera;
class LogManager;
class RenderWindow;
class Root;
class SceneManager;
class SceneNode;
} // namespace Ogre

//! Draws the knot with OGRE 1.12 on X11, through OpenGL 3.3. Everything is made in the first Render(); the window is a
//! real one only then.
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
        Ogre::SceneNode* node = nullptr; // carries the camera
        Ogre::Camera* camera = nullptr;
    };

    void start();
    void makeScene();
    void makeView(HWND window, View& view);
    void draw(HWND window, View& view);

    std::unique_ptr<Ogre::LogManager> m_log; // before and after the root, which would write into a file otherwise
    std::unique_ptr<Ogre::Root> m_root;
    Ogre::SceneManager* m_scene = nullptr; // owned by the root
    std::map<HWND, View> m_views;
    int m_nextId = 0;
};
