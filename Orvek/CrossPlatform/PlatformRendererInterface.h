#pragma once

namespace orvek
{
namespace crossplatform
{
//! Draws the contents of a view. The widgets only carry the pointer to the display-surface manager and call nothing on
//! it; what a renderer can do is between the engine and its manager. Owned by the host, which keeps it alive for as
//! long as a manager knows it.
class PlatformRendererInterface
{
protected:
    ~PlatformRendererInterface() = default;
};
} // namespace crossplatform
} // namespace orvek
