#pragma once

struct FCVXProviderProfile;

/** Which stored profiles name a model that takes no images. */
namespace CVXVisionSupport
{
/** Whether the profile's model, or the local server behind it, is taken to be without vision. Any thread. */
bool LacksVision(const FCVXProviderProfile& Profile);
} // namespace CVXVisionSupport
