#pragma once

#include <examples/EngineWindow.h>

#include <vulkan/vulkan_core.h>

#include <map>

struct xcb_connection_t;

//! Draws the knot with plain Vulkan on X11. All windows share one device; each has a surface with its own swap chain.
//! Everything is created in the first Render(), as the window is not real before.
class VulkanEngine final : public Engine
{
public:
    VulkanEngine() = default;
    ~VulkanEngine();

    void AddWindow(HWND window, orvek::crossplatform::PlatformRendererInterface* renderer, int viewId) override;
    void RemoveWindow(HWND window) override;
    void ResizeSurface(HWND window) override;
    void Render(HWND window) override;
    //! Numbers from 0; -1 for an unknown window.
    int GetWindowViewId(HWND window) override;

private:
    // An image of the swap chain.
    struct Target
    {
        VkImageView view = VK_NULL_HANDLE;
        VkFramebuffer frame = VK_NULL_HANDLE;
        VkSemaphore drawn = VK_NULL_HANDLE; // signalled when it can be shown
    };
    struct View
    {
        const OrbitView* scene = nullptr; // not owned; null draws nothing
        int id = 0;
        VkSurfaceKHR surface = VK_NULL_HANDLE;
        VkSemaphore acquired = VK_NULL_HANDLE;
        VkFence finished = VK_NULL_HANDLE; // signalled by the last frame; then its commands can be recorded again
        VkCommandBuffer commands = VK_NULL_HANDLE;
        // These depend on the size.
        VkSwapchainKHR swapChain = VK_NULL_HANDLE; // null while the window has no area
        VkExtent2D size{};
        std::vector<Target> targets;
        VkImage depth = VK_NULL_HANDLE;
        VkDeviceMemory depthMemory = VK_NULL_HANDLE;
        VkImageView depthView = VK_NULL_HANDLE;
    };

    void makeDevice();
    void makePipeline();
    void makeMesh();
    void makeSurface(HWND window, View& view);
    void makeSwapChain(View& view);
    bool draw(View& view);
    void record(const View& view, const Target& target) const;
    void releaseTargets(View& view);
    void release(View& view);
    VkDeviceMemory memoryFor(const VkMemoryRequirements& needs, VkMemoryPropertyFlags properties) const;

    xcb_connection_t* m_connection = nullptr;
    VkInstance m_instance = VK_NULL_HANDLE;
    VkPhysicalDevice m_gpu = VK_NULL_HANDLE;
    VkDevice m_logical = VK_NULL_HANDLE;
    VkQueue m_queue = VK_NULL_HANDLE;
    uint32_t m_family = 0; // queue family
    VkCommandPool m_pool = VK_NULL_HANDLE;
    VkRenderPass m_pass = VK_NULL_HANDLE;
    VkPipelineLayout m_layout = VK_NULL_HANDLE;
    VkPipeline m_pipeline = VK_NULL_HANDLE;
    VkBuffer m_mesh = VK_NULL_HANDLE; // the vertices, then the indices
    VkDeviceMemory m_meshMemory = VK_NULL_HANDLE;
    VkDeviceSize m_indexOffset = 0;
    uint32_t m_indexCount = 0;
    std::map<HWND, View> m_views;
    int m_nextId = 0;
};
