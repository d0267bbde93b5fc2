// A view drawn with plain Vulkan; VulkanEngine.cpp shows how, from top to bottom.
#include <examples/VulkanView/VulkanEngine.h>

int main(int argc, char** argv)
{
    return runEngine<VulkanEngine>(argc, argv);
}
