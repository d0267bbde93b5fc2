#include <examples/VulkanView/VulkanEngine.h>

#include <KnotFragmentShader.h>
#include <KnotVertexShader.h>

#include <xcb/xcb.h>

#include <vulkan/vulkan_xcb.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace
{
constexpr VkFormat colourFormat = VK_FORMAT_B8G8R8A8_UNORM; // the only one of X11 windows
constexpr VkFormat depthFormat = VK_FORMAT_D16_UNORM;       // every device has it
constexpr uint64_t patience = 200'000'000;                  // nanoseconds; the user waits meanwhile

// An error of Vulkan. Caught in Render(), so that no exception reaches Qt.
struct Refusal : std::runtime_error
{
    Refusal(VkResult why, const char* what)
        : std::runtime_error("Vulkan cannot " + std::string(what) + " (" + std::to_string(why) + ")"), result(why)
    {
    }
    VkResult result;
};

void check(VkResult result, const char* what)
{
    if (result < 0)
        throw Refusal(result, what);
}

// All items listed by one of Vulkan's functions.
template <typename Item, typename Function, typename... Arguments>
std::vector<Item> listOf(Function function, Arguments... arguments)
{
    uint32_t count = 0;
    function(arguments..., &count, nullptr);
    std::vector<Item> items(count);
    function(arguments..., &count, items.data());
    items.resize(count);
    return items;
}

// Laid out exactly as the shaders read it.
struct PushConstants
{
    float toClip[16];
    float eye[4];
    float light[4];
    float colour[4];
};

void store(const QVector3D& vector, float (&target)[4])
{
    target[0] = vector.x();
    target[1] = vector.y();
    target[2] = vector.z();
}
} // namespace

VulkanEngine::~VulkanEngine()
{
    while (!m_views.empty())
        RemoveWindow(m_views.begin()->first);
    if (m_logical)
    {
        vkDestroyBuffer(m_logical, m_mesh, nullptr);
        vkFreeMemory(m_logical, m_meshMemory, nullptr);
        vkDestroyPipeline(m_logical, m_pipeline, nullptr);
        vkDestroyPipelineLayout(m_logical, m_layout, nullptr);
        vkDestroyRenderPass(m_logical, m_pass, nullptr);
        vkDestroyCommandPool(m_logical, m_pool, nullptr);
        vkDestroyDevice(m_logical, nullptr);
    }
    if (m_instance)
        vkDestroyInstance(m_instance, nullptr);
    // Last, as the driver uses it until then.
    if (m_connection)
        xcb_disconnect(m_connection);
}

// Also called for a known window, with another renderer or with null.
void VulkanEngine::AddWindow(HWND window, orvek::crossplatform::PlatformRendererInterface* renderer, int)
{
    const auto [view, added] = m_views.try_emplace(window);
    view->second.scene = static_cast<const OrbitView*>(renderer); // this engine knows no other renderers
    if (added)
        view->second.id = m_nextId++;
}

// May be called twice. Afterwards the window may be destroyed at any time, so none of its resources may still be in
// use.
void VulkanEngine::RemoveWindow(HWND window)
{
    const auto found = m_views.find(window);
    if (found == m_views.end())
        return;
    release(found->second);
    m_views.erase(found);
}

// Not every driver reports a swap chain of the wrong size, so it is recreated here.
void VulkanEngine::ResizeSurface(HWND window)
{
    const auto found = m_views.find(window);
    if (found != m_views.end())
        releaseTargets(found->second);
}

void VulkanEngine::Render(HWND window)
{
    const auto found = m_views.find(window);
    if (found == m_views.end() || !found->second.scene || !m_error.isEmpty())
        return;
    View& view = found->second;
    try
    {
        if (!m_pipeline)
        {
            makeDevice();
            makePipeline();
            makeMesh();
        }
        if (!view.surface)
            makeSurface(window, view);
        // Again if the window's size has changed since the swap chain was created.
        if (!draw(view))
        {
            releaseTargets(view);
            if (!draw(view))
                QWidget::find(WId(window))->update();
        }
    }
    catch (const Refusal& refusal)
    {
        if (refusal.result == VK_ERROR_SURFACE_LOST_KHR)
            RemoveWindow(window); // it no longer exists
        else
            m_error = QString::fromLatin1(refusal.what());
    }
}

int VulkanEngine::GetWindowViewId(HWND window)
{
    const auto found = m_views.find(window);
    return found == m_views.end() ? -1 : found->second.id;
}

void VulkanEngine::makeDevice()
{
    // Qt has a connection too, but reveals it only in private headers. Window handles are the same on all connections.
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        throw Refusal(VK_ERROR_INCOMPATIBLE_DRIVER, "draw to windows other than those of X11");
    int screenNumber = 0;
    m_connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(m_connection))
        throw Refusal(VK_ERROR_INITIALIZATION_FAILED, "reach the X server");
    xcb_screen_iterator_t screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
    while (screenNumber-- > 0)
        xcb_screen_next(&screen);

    VkApplicationInfo application{};
    application.sType = VK_STRUCTURE_TYPE_APPLICATION_INFO;
    application.apiVersion = VK_API_VERSION_1_0;
    const std::array extensions{VK_KHR_SURFACE_EXTENSION_NAME, VK_KHR_XCB_SURFACE_EXTENSION_NAME};
    VkInstanceCreateInfo instance{};
    instance.sType = VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO;
    instance.pApplicationInfo = &application;
    instance.enabledExtensionCount = uint32_t(extensions.size());
    instance.ppEnabledExtensionNames = extensions.data();
    check(vkCreateInstance(&instance, nullptr, &m_instance), "find a driver");

    // Uses the first device that can draw and present. A tool would let its users choose.
    for (VkPhysicalDevice gpu : listOf<VkPhysicalDevice>(vkEnumeratePhysicalDevices, m_instance))
    {
        const auto families = listOf<VkQueueFamilyProperties>(vkGetPhysicalDeviceQueueFamilyProperties, gpu);
        for (uint32_t i = 0; i < families.size() && !m_gpu; ++i)
        {
            if ((families[i].queueFlags & VK_QUEUE_GRAPHICS_BIT) &&
                vkGetPhysicalDeviceXcbPresentationSupportKHR(gpu, i, m_connection, screen.data->root_visual))
            {
                m_gpu = gpu;
                m_family = i;
            }
        }
    }
    if (!m_gpu)
        throw Refusal(VK_ERROR_INITIALIZATION_FAILED, "find a device that draws to this X server");
    VkPhysicalDeviceProperties properties;
    vkGetPhysicalDeviceProperties(m_gpu, &properties);
    m_device = QString::fromUtf8(properties.deviceName);

    const float priority = 1.0f;
    VkDeviceQueueCreateInfo queue{};
    queue.sType = VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO;
    queue.queueFamilyIndex = m_family;
    queue.queueCount = 1;
    queue.pQueuePriorities = &priority;
    const std::array deviceExtensions{VK_KHR_SWAPCHAIN_EXTENSION_NAME};
    VkDeviceCreateInfo device{};
    device.sType = VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO;
    device.queueCreateInfoCount = 1;
    device.pQueueCreateInfos = &queue;
    device.enabledExtensionCount = uint32_t(deviceExtensions.size());
    device.ppEnabledExtensionNames = deviceExtensions.data();
    check(vkCreateDevice(m_gpu, &device, nullptr, &m_logical), "open the device");
    vkGetDeviceQueue(m_logical, m_family, 0, &m_queue);

    VkCommandPoolCreateInfo pool{};
    pool.sType = VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO;
    pool.flags = VK_COMMAND_POOL_CREATE_RESET_COMMAND_BUFFER_BIT; // each view records its own for every frame
    pool.queueFamilyIndex = m_family;
    check(vkCreateCommandPool(m_logical, &pool, nullptr, &m_pool), "make a command pool");
}

void VulkanEngine::makePipeline()
{
    std::array<VkAttachmentDescription, 2> attachments{};
    attachments[0].format = colourFormat;
    attachments[0].samples = VK_SAMPLE_COUNT_1_BIT;
    attachments[0].loadOp = VK_ATTACHMENT_LOAD_OP_CLEAR;
    attachments[0].storeOp = VK_ATTACHMENT_STORE_OP_STORE;
    attachments[0].stencilLoadOp = VK_ATTACHMENT_LOAD_OP_DONT_CARE;
    attachments[0].stencilStoreOp = VK_ATTACHMENT_STORE_OP_DONT_CARE;
    attachments[0].finalLayout = VK_IMAGE_LAYOUT_PRESENT_SRC_KHR;
    attachments[1] = attachments[0];
    attachments[1].format = depthFormat;
    attachments[1].storeOp = VK_ATTACHMENT_STORE_OP_DONT_CARE;
    attachments[1].finalLayout = VK_IMAGE_LAYOUT_DEPTH_STENCIL_ATTACHMENT_OPTIMAL;
    const VkAttachmentReference colour{0, VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL};
    const VkAttachmentReference depth{1, VK_IMAGE_LAYOUT_DEPTH_STENCIL_ATTACHMENT_OPTIMAL};
    VkSubpassDescription subpass{};
    subpass.pipelineBindPoint = VK_PIPELINE_BIND_POINT_GRAPHICS;
    subpass.colorAttachmentCount = 1;
    subpass.pColorAttachments = &colour;
    subpass.pDepthStencilAttachment = &depth;
    // Colours are written once the image is acquired, depths once the previous frame no longer uses them.
    VkSubpassDependency dependency{};
    dependency.srcSubpass = VK_SUBPASS_EXTERNAL;
    dependency.srcStageMask = VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT | VK_PIPELINE_STAGE_LATE_FRAGMENT_TESTS_BIT;
    dependency.srcAccessMask = VK_ACCESS_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT;
    dependency.dstStageMask =
        VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT | VK_PIPELINE_STAGE_EARLY_FRAGMENT_TESTS_BIT;
    dependency.dstAccessMask = VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT | VK_ACCESS_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT;
    VkRenderPassCreateInfo pass{};
    pass.sType = VK_STRUCTURE_TYPE_RENDER_PASS_CREATE_INFO;
    pass.attachmentCount = uint32_t(attachments.size());
    pass.pAttachments = attachments.data();
    pass.subpassCount = 1;
    pass.pSubpasses = &subpass;
    pass.dependencyCount = 1;
    pass.pDependencies = &dependency;
    check(vkCreateRenderPass(m_logical, &pass, nullptr, &m_pass), "make the render pass");

    const VkPushConstantRange constants{VK_SHADER_STAGE_VERTEX_BIT | VK_SHADER_STAGE_FRAGMENT_BIT, 0,
                                        sizeof(PushConstants)};
    VkPipelineLayoutCreateInfo layout{};
    layout.sType = VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO;
    layout.pushConstantRangeCount = 1;
    layout.pPushConstantRanges = &constants;
    check(vkCreatePipelineLayout(m_logical, &layout, nullptr, &m_layout), "make the layout of the pipeline");

    const auto shader = [this](const auto& code)
    {
        VkShaderModuleCreateInfo info{};
        info.sType = VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO;
        info.codeSize = sizeof(code);
        info.pCode = code;
        VkShaderModule result = VK_NULL_HANDLE;
        check(vkCreateShaderModule(m_logical, &info, nullptr, &result), "make a shader");
        return result;
    };
    std::array<VkPipelineShaderStageCreateInfo, 2> stages{};
    stages[0].sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO;
    stages[0].pName = "main";
    stages[1] = stages[0];
    stages[0].stage = VK_SHADER_STAGE_VERTEX_BIT;
    stages[0].module = shader(knotVertexShader);
    stages[1].stage = VK_SHADER_STAGE_FRAGMENT_BIT;
    stages[1].module = shader(knotFragmentShader);

    const VkVertexInputBindingDescription binding{0, sizeof(Mesh::Vertex), VK_VERTEX_INPUT_RATE_VERTEX};
    const std::array<VkVertexInputAttributeDescription, 2> attributes{
        {{0, 0, VK_FORMAT_R32G32B32_SFLOAT, offsetof(Mesh::Vertex, position)},
         {1, 0, VK_FORMAT_R32G32B32_SFLOAT, offsetof(Mesh::Vertex, normal)}}};
    VkPipelineVertexInputStateCreateInfo input{};
    input.sType = VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO;
    input.vertexBindingDescriptionCount = 1;
    input.pVertexBindingDescriptions = &binding;
    input.vertexAttributeDescriptionCount = uint32_t(attributes.size());
    input.pVertexAttributeDescriptions = attributes.data();
    VkPipelineInputAssemblyStateCreateInfo assembly{};
    assembly.sType = VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO;
    assembly.topology = VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST;
    VkPipelineViewportStateCreateInfo viewport{};
    viewport.sType = VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO;
    viewport.viewportCount = 1;
    viewport.scissorCount = 1;
    VkPipelineRasterizationStateCreateInfo rasterization{};
    rasterization.sType = VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO;
    rasterization.cullMode = VK_CULL_MODE_BACK_BIT;
    rasterization.frontFace = VK_FRONT_FACE_COUNTER_CLOCKWISE;
    rasterization.lineWidth = 1.0f;
    VkPipelineMultisampleStateCreateInfo samples{};
    samples.sType = VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO;
    samples.rasterizationSamples = VK_SAMPLE_COUNT_1_BIT;
    VkPipelineDepthStencilStateCreateInfo depths{};
    depths.sType = VK_STRUCTURE_TYPE_PIPELINE_DEPTH_STENCIL_STATE_CREATE_INFO;
    depths.depthTestEnable = VK_TRUE;
    depths.depthWriteEnable = VK_TRUE;
    depths.depthCompareOp = VK_COMPARE_OP_LESS;
    VkPipelineColorBlendAttachmentState opaque{};
    opaque.colorWriteMask =
        VK_COLOR_COMPONENT_R_BIT | VK_COLOR_COMPONENT_G_BIT | VK_COLOR_COMPONENT_B_BIT | VK_COLOR_COMPONENT_A_BIT;
    VkPipelineColorBlendStateCreateInfo blend{};
    blend.sType = VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO;
    blend.attachmentCount = 1;
    blend.pAttachments = &opaque;
    // So one pipeline serves views of all sizes.
    const std::array dynamics{VK_DYNAMIC_STATE_VIEWPORT, VK_DYNAMIC_STATE_SCISSOR};
    VkPipelineDynamicStateCreateInfo dynamic{};
    dynamic.sType = VK_STRUCTURE_TYPE_PIPELINE_DYNAMIC_STATE_CREATE_INFO;
    dynamic.dynamicStateCount = uint32_t(dynamics.size());
    dynamic.pDynamicStates = dynamics.data();
    VkGraphicsPipelineCreateInfo pipeline{};
    pipeline.sType = VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO;
    pipeline.stageCount = uint32_t(stages.size());
    pipeline.pStages = stages.data();
    pipeline.pVertexInputState = &input;
    pipeline.pInputAssemblyState = &assembly;
    pipeline.pViewportState = &viewport;
    pipeline.pRasterizationState = &rasterization;
    pipeline.pMultisampleState = &samples;
    pipeline.pDepthStencilState = &depths;
    pipeline.pColorBlendState = &blend;
    pipeline.pDynamicState = &dynamic;
    pipeline.layout = m_layout;
    pipeline.renderPass = m_pass;
    const VkResult result = vkCreateGraphicsPipelines(m_logical, VK_NULL_HANDLE, 1, &pipeline, nullptr, &m_pipeline);
    for (const auto& stage : stages)
        vkDestroyShaderModule(m_logical, stage.module, nullptr);
    check(result, "make the pipeline");
}

void VulkanEngine::makeMesh()
{
    const Mesh mesh = makeKnot();
    const size_t vertexBytes = mesh.vertices.size() * sizeof(mesh.vertices[0]);
    const size_t indexBytes = mesh.indices.size() * sizeof(mesh.indices[0]);
    m_indexOffset = vertexBytes;
    m_indexCount = uint32_t(mesh.indices.size());

    VkBufferCreateInfo buffer{};
    buffer.sType = VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO;
    buffer.size = vertexBytes + indexBytes;
    buffer.usage = VK_BUFFER_USAGE_VERTEX_BUFFER_BIT | VK_BUFFER_USAGE_INDEX_BUFFER_BIT;
    check(vkCreateBuffer(m_logical, &buffer, nullptr, &m_mesh), "make a buffer for the mesh");
    VkMemoryRequirements needs;
    vkGetBufferMemoryRequirements(m_logical, m_mesh, &needs);
    m_meshMemory = memoryFor(needs, VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT);
    check(vkBindBufferMemory(m_logical, m_mesh, m_meshMemory, 0), "place the mesh");
    void* bytes = nullptr;
    check(vkMapMemory(m_logical, m_meshMemory, 0, buffer.size, 0, &bytes), "write the mesh");
    std::memcpy(bytes, mesh.vertices.data(), vertexBytes);
    std::memcpy(static_cast<char*>(bytes) + vertexBytes, mesh.indices.data(), indexBytes);
    vkUnmapMemory(m_logical, m_meshMemory);
}

void VulkanEngine::makeSurface(HWND window, View& view)
{
    VkXcbSurfaceCreateInfoKHR surface{};
    surface.sType = VK_STRUCTURE_TYPE_XCB_SURFACE_CREATE_INFO_KHR;
    surface.connection = m_connection;
    surface.window = xcb_window_t(window);
    check(vkCreateXcbSurfaceKHR(m_instance, &surface, nullptr, &view.surface), "make a surface of the window");
    VkBool32 supported = VK_FALSE;
    check(vkGetPhysicalDeviceSurfaceSupportKHR(m_gpu, m_family, view.surface, &supported), "ask for the window");
    const auto formats = listOf<VkSurfaceFormatKHR>(vkGetPhysicalDeviceSurfaceFormatsKHR, m_gpu, view.surface);
    if (!supported || std::none_of(formats.begin(), formats.end(),
                                   [](const VkSurfaceFormatKHR& one) { return one.format == colourFormat; }))
        throw Refusal(VK_ERROR_FORMAT_NOT_SUPPORTED, "draw to this kind of window");

    VkCommandBufferAllocateInfo commands{};
    commands.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO;
    commands.commandPool = m_pool;
    commands.level = VK_COMMAND_BUFFER_LEVEL_PRIMARY;
    commands.commandBufferCount = 1;
    check(vkAllocateCommandBuffers(m_logical, &commands, &view.commands), "make a command buffer");
    VkFenceCreateInfo fence{};
    fence.sType = VK_STRUCTURE_TYPE_FENCE_CREATE_INFO;
    fence.flags = VK_FENCE_CREATE_SIGNALED_BIT; // there is no frame before the first
    check(vkCreateFence(m_logical, &fence, nullptr, &view.finished), "make a fence");
    VkSemaphoreCreateInfo semaphore{};
    semaphore.sType = VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO;
    check(vkCreateSemaphore(m_logical, &semaphore, nullptr, &view.acquired), "make a semaphore");
}

// The view has no swap chain while its window has no area.
void VulkanEngine::makeSwapChain(View& view)
{
    VkSurfaceCapabilitiesKHR now;
    check(vkGetPhysicalDeviceSurfaceCapabilitiesKHR(m_gpu, view.surface, &now), "ask for the size of the window");
    view.size = now.currentExtent; // in device pixels; on X11 it is always that of the window
    VkSwapchainKHR old = std::exchange(view.swapChain, VkSwapchainKHR(VK_NULL_HANDLE));
    VkResult result = VK_SUCCESS;
    if (view.size.width > 0 && view.size.height > 0)
    {
        // The mode that always exists waits for the screen, so several views would wait for one another.
        const auto modes = listOf<VkPresentModeKHR>(vkGetPhysicalDeviceSurfacePresentModesKHR, m_gpu, view.surface);
        const bool mailbox = std::count(modes.begin(), modes.end(), VK_PRESENT_MODE_MAILBOX_KHR) > 0;
        VkSwapchainCreateInfoKHR chain{};
        chain.sType = VK_STRUCTURE_TYPE_SWAPCHAIN_CREATE_INFO_KHR;
        chain.surface = view.surface;
        chain.minImageCount = now.minImageCount + 1;
        if (now.maxImageCount > 0)
            chain.minImageCount = std::min(chain.minImageCount, now.maxImageCount);
        chain.imageFormat = colourFormat;
        chain.imageColorSpace = VK_COLOR_SPACE_SRGB_NONLINEAR_KHR;
        chain.imageExtent = view.size;
        chain.imageArrayLayers = 1;
        chain.imageUsage = VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT;
        chain.preTransform = now.currentTransform;
        chain.compositeAlpha = VK_COMPOSITE_ALPHA_OPAQUE_BIT_KHR;
        chain.presentMode = mailbox ? VK_PRESENT_MODE_MAILBOX_KHR : VK_PRESENT_MODE_FIFO_KHR;
        chain.clipped = VK_TRUE;
        chain.oldSwapchain = old;
        result = vkCreateSwapchainKHR(m_logical, &chain, nullptr, &view.swapChain);
    }
    vkDestroySwapchainKHR(m_logical, old, nullptr); // no longer needed, even if creating the new one failed
    check(result, "make a swap chain");
    if (!view.swapChain)
        return;

    VkImageCreateInfo depth{};
    depth.sType = VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO;
    depth.imageType = VK_IMAGE_TYPE_2D;
    depth.format = depthFormat;
    depth.extent = {view.size.width, view.size.height, 1};
    depth.mipLevels = 1;
    depth.arrayLayers = 1;
    depth.samples = VK_SAMPLE_COUNT_1_BIT;
    depth.usage = VK_IMAGE_USAGE_DEPTH_STENCIL_ATTACHMENT_BIT;
    check(vkCreateImage(m_logical, &depth, nullptr, &view.depth), "make the depth buffer");
    VkMemoryRequirements needs;
    vkGetImageMemoryRequirements(m_logical, view.depth, &needs);
    view.depthMemory = memoryFor(needs, VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT);
    check(vkBindImageMemory(m_logical, view.depth, view.depthMemory, 0), "place the depth buffer");

    const auto viewOf = [this](VkImage image, VkFormat format, VkImageAspectFlags aspect)
    {
        VkImageViewCreateInfo info{};
        info.sType = VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO;
        info.image = image;
        info.viewType = VK_IMAGE_VIEW_TYPE_2D;
        info.format = format;
        info.subresourceRange = {aspect, 0, 1, 0, 1};
        VkImageView made = VK_NULL_HANDLE;
        check(vkCreateImageView(m_logical, &info, nullptr, &made), "make an image view");
        return made;
    };
    view.depthView = viewOf(view.depth, depthFormat, VK_IMAGE_ASPECT_DEPTH_BIT);
    for (VkImage image : listOf<VkImage>(vkGetSwapchainImagesKHR, m_logical, view.swapChain))
    {
        Target& target = view.targets.emplace_back();
        target.view = viewOf(image, colourFormat, VK_IMAGE_ASPECT_COLOR_BIT);
        const std::array attachments{target.view, view.depthView};
        VkFramebufferCreateInfo frame{};
        frame.sType = VK_STRUCTURE_TYPE_FRAMEBUFFER_CREATE_INFO;
        frame.renderPass = m_pass;
        frame.attachmentCount = uint32_t(attachments.size());
        frame.pAttachments = attachments.data();
        frame.width = view.size.width;
        frame.height = view.size.height;
        frame.layers = 1;
        check(vkCreateFramebuffer(m_logical, &frame, nullptr, &target.frame), "make a frame buffer");
        VkSemaphoreCreateInfo semaphore{};
        semaphore.sType = VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO;
        check(vkCreateSemaphore(m_logical, &semaphore, nullptr, &target.drawn), "make a semaphore");
    }
}

// Returns false if the swap chain no longer fits the window.
bool VulkanEngine::draw(View& view)
{
    if (view.targets.empty())
        makeSwapChain(view);
    if (!view.swapChain)
        return true;
    // A hidden window may get no image until it is visible again: then this frame is skipped. Nothing waits forever
    // here, as this is the GUI thread.
    if (vkWaitForFences(m_logical, 1, &view.finished, VK_TRUE, patience) == VK_TIMEOUT)
        return true;
    uint32_t index = 0;
    VkResult result = vkAcquireNextImageKHR(m_logical, view.swapChain, patience, view.acquired, VK_NULL_HANDLE, &index);
    if (result == VK_ERROR_OUT_OF_DATE_KHR)
        return false;
    check(result, "get an image to draw on");
    if (result == VK_TIMEOUT || result == VK_NOT_READY)
        return true;
    const Target& target = view.targets[index];
    record(view, target);

    // Not earlier, as nothing would signal the fence of a skipped frame.
    check(vkResetFences(m_logical, 1, &view.finished), "reset the fence");
    const VkPipelineStageFlags stage = VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT;
    VkSubmitInfo submit{};
    submit.sType = VK_STRUCTURE_TYPE_SUBMIT_INFO;
    submit.waitSemaphoreCount = 1;
    submit.pWaitSemaphores = &view.acquired;
    submit.pWaitDstStageMask = &stage;
    submit.commandBufferCount = 1;
    submit.pCommandBuffers = &view.commands;
    submit.signalSemaphoreCount = 1;
    submit.pSignalSemaphores = &target.drawn;
    check(vkQueueSubmit(m_queue, 1, &submit, view.finished), "draw");
    VkPresentInfoKHR present{};
    present.sType = VK_STRUCTURE_TYPE_PRESENT_INFO_KHR;
    present.waitSemaphoreCount = 1;
    present.pWaitSemaphores = &target.drawn;
    present.swapchainCount = 1;
    present.pSwapchains = &view.swapChain;
    present.pImageIndices = &index;
    result = vkQueuePresentKHR(m_queue, &present);
    if (result == VK_ERROR_OUT_OF_DATE_KHR || result == VK_SUBOPTIMAL_KHR)
        return false;
    check(result, "show the frame");
    return true;
}

void VulkanEngine::record(const View& view, const Target& target) const
{
    VkCommandBufferBeginInfo begin{};
    begin.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO;
    begin.flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT;
    check(vkBeginCommandBuffer(view.commands, &begin), "write commands");
    std::array<VkClearValue, 2> clear{};
    clear[0].color = {{background[0], background[1], background[2], 1.0f}};
    clear[1].depthStencil = {1.0f, 0};
    VkRenderPassBeginInfo pass{};
    pass.sType = VK_STRUCTURE_TYPE_RENDER_PASS_BEGIN_INFO;
    pass.renderPass = m_pass;
    pass.framebuffer = target.frame;
    pass.renderArea.extent = view.size;
    pass.clearValueCount = uint32_t(clear.size());
    pass.pClearValues = clear.data();
    vkCmdBeginRenderPass(view.commands, &pass, VK_SUBPASS_CONTENTS_INLINE);

    const float width = float(view.size.width);
    const float height = float(view.size.height);
    // In Vulkan's clip space y points down and depths are from 0 to 1.
    const QMatrix4x4 fromOpenGl(1.0f, 0.0f, 0.0f, 0.0f,  //
                                0.0f, -1.0f, 0.0f, 0.0f, //
                                0.0f, 0.0f, 0.5f, 0.5f,  //
                                0.0f, 0.0f, 0.0f, 1.0f);
    const QMatrix4x4 toClip = fromOpenGl * view.scene->matrix(width / height);
    PushConstants constants{};
    std::copy_n(toClip.constData(), 16, constants.toClip);
    store(view.scene->eye(), constants.eye);
    store(lightDirection(), constants.light);
    store(view.scene->colour(), constants.colour);
    const VkViewport viewport{0.0f, 0.0f, width, height, 0.0f, 1.0f};
    const VkDeviceSize offset = 0;
    vkCmdBindPipeline(view.commands, VK_PIPELINE_BIND_POINT_GRAPHICS, m_pipeline);
    vkCmdSetViewport(view.commands, 0, 1, &viewport);
    vkCmdSetScissor(view.commands, 0, 1, &pass.renderArea);
    vkCmdPushConstants(view.commands, m_layout, VK_SHADER_STAGE_VERTEX_BIT | VK_SHADER_STAGE_FRAGMENT_BIT, 0,
                       sizeof(constants), &constants);
    vkCmdBindVertexBuffers(view.commands, 0, 1, &m_mesh, &offset);
    vkCmdBindIndexBuffer(view.commands, m_mesh, m_indexOffset, VK_INDEX_TYPE_UINT32);
    vkCmdDrawIndexed(view.commands, m_indexCount, 1, 0, 0, 0);
    vkCmdEndRenderPass(view.commands);
    check(vkEndCommandBuffer(view.commands), "write commands");
}

// Releases everything that depends on the size except the swap chain, from which the next one is made.
void VulkanEngine::releaseTargets(View& view)
{
    if (!m_logical)
        return;
    vkDeviceWaitIdle(m_logical); // also for images being presented, which no fence covers
    for (const Target& target : view.targets)
    {
        vkDestroySemaphore(m_logical, target.drawn, nullptr);
        vkDestroyFramebuffer(m_logical, target.frame, nullptr);
        vkDestroyImageView(m_logical, target.view, nullptr);
    }
    view.targets.clear();
    vkDestroyImageView(m_logical, std::exchange(view.depthView, VkImageView(VK_NULL_HANDLE)), nullptr);
    vkDestroyImage(m_logical, std::exchange(view.depth, VkImage(VK_NULL_HANDLE)), nullptr);
    vkFreeMemory(m_logical, std::exchange(view.depthMemory, VkDeviceMemory(VK_NULL_HANDLE)), nullptr);
}

void VulkanEngine::release(View& view)
{
    releaseTargets(view);
    if (m_logical)
    {
        vkDestroySwapchainKHR(m_logical, view.swapChain, nullptr);
        vkDestroySemaphore(m_logical, view.acquired, nullptr);
        vkDestroyFence(m_logical, view.finished, nullptr);
        if (view.commands)
            vkFreeCommandBuffers(m_logical, m_pool, 1, &view.commands);
    }
    if (m_instance)
        vkDestroySurfaceKHR(m_instance, view.surface, nullptr);
}

VkDeviceMemory VulkanEngine::memoryFor(const VkMemoryRequirements& needs, VkMemoryPropertyFlags properties) const
{
    VkPhysicalDeviceMemoryProperties memory;
    vkGetPhysicalDeviceMemoryProperties(m_gpu, &memory);
    for (uint32_t type = 0; type < memory.memoryTypeCount; ++type)
    {
        if (!(needs.memoryTypeBits & (1u << type)) ||
            (memory.memoryTypes[type].propertyFlags & properties) != properties)
            continue;
        VkMemoryAllocateInfo info{};
        info.sType = VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO;
        info.allocationSize = needs.size;
        info.memoryTypeIndex = type;
        VkDeviceMemory result = VK_NULL_HANDLE;
        check(vkAllocateMemory(m_logical, &info, nullptr, &result), "allocate memory");
        return result;
    }
    throw Refusal(VK_ERROR_OUT_OF_DEVICE_MEMORY, "find memory of the right kind");
}
