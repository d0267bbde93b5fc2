#pragma once

namespace orvek
{
namespace crossplatform
{
//! Draws the contents of a view. The widgets only pass the pointer to the display-surface manager and never call it;
//! what a renderer can do is up to the engine. Owned by the host, which must keep it alive as long as a manager knows
//! it.
class PlatformRendererInterface
{
protected:
    ~PlatformRendererInterface() = default;
};
} // namespace crossplatform
} // namespace orvek
